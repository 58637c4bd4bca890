#include "app/pane_commands.h"

#include "platform/system.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

constexpr std::string_view kPattern = "struct Pair { uint8_t first; uint16_t second; };";

/// Both panes beside the file 41 42 43 44 45 46.
class PaneCommands : public testing::Test {
protected:
    PaneCommands() {
        rig.shell.Settings().structViewVisible = true;
        StartPanes(rig.shell);
        ShowPanes(rig.shell);
        rig.Open("ABCDEF");
    }

    void MoveCaret(std::uint64_t offset) {
        rig.stage.view.SetCaret(offset);
        rig.shell.OnViewChanged();
    }
    void WritePattern(std::string_view text) { rig.folder.Write(u"pair.kvpat", text); }
    void OpenPattern() {
        WritePattern(kPattern);
        host.chosenPattern = rig.folder.Path(u"pair.kvpat");
        OpenStructPattern(rig.shell);
    }

    /// Row `row` of the inspector, once what the worker posts for the newest request is there.
    std::u16string Inspected(std::size_t row) {
        for (const int shown = host.inspectorShows; host.inspectorShows == shown;)
            ShowInspectorRows(rig.shell, host.inspectorRows.Take());
        return std::u16string(rig.shell.Panes().inspector.Text(row, 1));
    }

    /// The values in the struct view, separated by bars, once the newest are there.
    std::u16string Values() {
        for (const int shown = host.structShows; host.structShows == shown;)
            ShowStructRows(rig.shell, host.structRows.Take());
        return ValuesNow();
    }
    std::u16string ValuesNow() {
        std::u16string values;
        for (std::size_t row = 0; row < view.RowCount(); ++row) {
            values += view.Text(row, 3);
            values += u'|';
        }
        return values;
    }

    ShellRig rig;
    RecordingPaneHost& host = rig.paneHost;
    StructViewModel& view = rig.shell.Panes().structView;
};

TEST_F(PaneCommands, RowsFollowCaretEditsEncodingAndDocument) {
    EXPECT_EQ(Inspected(1), u"65 / 0x41");
    MoveCaret(2);
    MoveCaret(1);
    EXPECT_EQ(Inspected(1), u"66 / 0x42");
    rig.Run(Command::EncodingFirst + static_cast<std::uint32_t>(TextEncoding::Utf16Be));
    EXPECT_EQ(Inspected(11), u"\u4243 (U+4243)");
    ASSERT_TRUE(rig.shell.Document().OverwriteByte(1, 0x7A));
    rig.shell.OnViewChanged();
    EXPECT_EQ(Inspected(1), u"122 / 0x7A");
    rig.host.answers = {SaveChangesAnswer::No};
    CloseFile(rig.shell);
    EXPECT_EQ(Inspected(1), u"inspector.data.value.unavailable");
}

TEST_F(PaneCommands, RowsOfOldRequestsAndOfPanesThatAreGoneAreDropped) {
    EXPECT_EQ(Inspected(1), u"65 / 0x41");
    MoveCaret(1);
    PostedInspectorRows old = host.inspectorRows.Take();
    MoveCaret(2);
    const int shown = host.inspectorShows;
    ShowInspectorRows(rig.shell, std::move(old));
    EXPECT_EQ(host.inspectorShows, shown);
    old = host.inspectorRows.Take();
    rig.Run(Command::ToggleDataInspector);
    ShowInspectorRows(rig.shell, std::move(old));
    EXPECT_EQ(host.inspectorShows, shown);
    EXPECT_EQ(rig.shell.Panes().inspector.Text(1, 1), u"");
}

TEST_F(PaneCommands, PanesComeAndGoWithMenuAndCloseButtonAndAreRemembered) {
    OpenPattern();
    EXPECT_NE(Values(), u"");
    rig.Run(Command::ToggleStructView);
    EXPECT_FALSE(host.hasStructView);
    EXPECT_EQ(ValuesNow(), u"");
    EXPECT_FALSE(rig.Stored().structViewVisible);
    rig.Run(Command::ToggleStructView);
    EXPECT_TRUE(host.hasStructView);
    EXPECT_TRUE(rig.Stored().structViewVisible);
    OnStructViewClosed(rig.shell);
    OnInspectorClosed(rig.shell);
    EXPECT_FALSE(host.hasStructView || host.hasInspector);
    EXPECT_FALSE(rig.Stored().structViewVisible || rig.Stored().dataInspectorVisible);
    const MenuItem& analysis = rig.host.menu[3].children[3];
    EXPECT_FALSE(analysis.children[0].checked || analysis.children[1].checked);
    host.windowsCanBeMade = false;
    rig.Run(Command::ToggleDataInspector);
    EXPECT_FALSE(rig.Stored().dataInspectorVisible);
}

TEST_F(PaneCommands, PanesThatEndWithTheProgramComeAgainAtItsNextStart) {
    rig.shell.SaveSettings();
    StopPanes(rig.shell);
    EXPECT_FALSE(host.hasStructView || host.hasInspector);
    EXPECT_TRUE(rig.Stored().structViewVisible && rig.Stored().dataInspectorVisible);
}

TEST_F(PaneCommands, ThemeAndLanguageReachThePanes) {
    rig.Run(Command::ThemeBlack);
    EXPECT_EQ(host.theme, Theme::Black);
    rig.Run(Command::LanguageJapanese);
    EXPECT_EQ(host.textShows, 1);
    rig.Run(Command::ToggleStructView);
    rig.Run(Command::ThemeLight);
    rig.Run(Command::ToggleStructView);
    EXPECT_EQ(host.theme, Theme::Light);
}

TEST_F(PaneCommands, APatternIsOpenedReloadedKeptWhenBrokenAndClosed) {
    ReloadStructPattern(rig.shell);
    EXPECT_EQ(host.patternShows, 0) << "there is none yet";
    OpenPattern();
    EXPECT_EQ(Values(), u"0x41|42|0x4443|");
    OpenStructPattern(rig.shell);
    const std::u16string title = u"dialog.struct_definition.title|";
    EXPECT_EQ(host.dialogs, (std::vector{title + JoinPath(ProgramFolder(), u"patterns"),
                                         title + rig.folder.Root().u16string()}));
    MoveCaret(3);
    EXPECT_EQ(Values(), u"0x44|45|inspector.data.value.unavailable|");

    WritePattern("struct Pair { uint8_t first; };");
    ReloadStructPattern(rig.shell);
    EXPECT_EQ(Values(), u"0x44|");
    EXPECT_EQ(host.activations, 0);
    WritePattern("struct Pair {");
    host.structViewActive = true;
    ReloadStructPattern(rig.shell);
    EXPECT_EQ(host.activations, 1);
    EXPECT_EQ(view.TextArea(), StructTextArea::Error);
    EXPECT_EQ(Values(), u"0x44|");
    CloseStructPattern(rig.shell);
    EXPECT_EQ(ValuesNow(), u"");
    EXPECT_FALSE(view.HasPattern());
}

TEST_F(PaneCommands, FormatsAreAppliedAtOnceAndRemembered) {
    OpenPattern();
    EXPECT_EQ(Values(), u"0x41|42|0x4443|");
    for (const auto& [option, values] :
         {std::pair(4U, u"0x41|42|0x4344|"), std::pair(6U, u"65|42|17220|")}) {
        ChooseValueFormat(rig.shell, option);
        EXPECT_EQ(Values(), values);
    }
    const StructViewFormat chosen{ByteArrayFormat::Hex, Endian::Big, NumericBase::Dec};
    EXPECT_EQ(rig.Stored().structViewFormat, chosen);
    std::filesystem::remove(rig.folder.Path(u"settings.json"));
    for (const std::uint32_t unchanging : {4U, 6U, 0U, 7U})
        ChooseValueFormat(rig.shell, unchanging);
    EXPECT_FALSE(std::filesystem::exists(rig.folder.Path(u"settings.json")));
}

TEST_F(PaneCommands, NoPatternIsAskedForWhileAnotherQuestionWaits) {
    rig.host.duringModal = [&] { OpenPattern(); };
    rig.shell.ShowError(u"something");
    EXPECT_EQ(host.dialogs, std::vector<std::u16string>{});
}

} // namespace
} // namespace kvx
