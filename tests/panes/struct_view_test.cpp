// The struct view's state and layout.
#include "panes/error_text.h"
#include "panes/pane_colors.h"
#include "panes/struct_view_layout.h"
#include "panes/struct_view_model.h"
#include "panes/value_format_menu.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/hexview/memory_document.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace kvx {
namespace {

/// A model whose texts are their keys, over a document of 12 bytes behind 5 others.
class StructViewModelTest : public testing::Test {
protected:
    StructViewModelTest() {
        model.SetTexts([](std::string_view key) { return std::u16string(key.begin(), key.end()); });
    }

    /// Asks and answers as the main window and the worker do.
    void Update(std::uint64_t caret = 5) {
        if (const std::optional<StructEvalRequest> request = model.MakeRequest(document, caret))
            model.SetRows(EvaluateStruct(*request));
    }
    std::string Copied() { return Utf16ToUtf8(ListCopyText(model)); }

    TempFolder folder;
    MemoryDocument document{CountingBytes(17)};
    StructViewModel model;
};

constexpr std::string_view kPair = "struct Pair { uint32_t first; uint16_t second; };";
constexpr std::string_view kCaptions = "structview.column.offset\tstructview.column.name\t"
                                       "structview.column.type\tstructview.column.value";

TEST_F(StructViewModelTest, ShowsTheMembersAtTheCaretAndTheFileInItsHeader) {
    EXPECT_EQ(model.DefinitionLine(), u"structview.header.definition");
    EXPECT_TRUE(model.Load(folder.Write(u"pair.kvpat", kPair)));
    Update();
    EXPECT_EQ(Copied(), std::string(kCaptions) + "\r\n0x5\tfirst\tuint32_t\t0x08070605"
                                                 "\r\n0x9\tsecond\tuint16_t\t0x0A09"
                                                 "\r\n0xB\t<padding>\tpadding\t0B 0C");
    EXPECT_EQ(model.SideText(0, kStructNameColumn), u"4");
    EXPECT_EQ(model.SideCaption(kStructNameColumn), u"structview.column.size");
    EXPECT_EQ(model.DefinitionLine(), u"structview.header.definition pair.kvpat");
    EXPECT_EQ(model.PathLine(), folder.Path(u"pair.kvpat"));
    EXPECT_EQ(model.EmptyMessage(), u"");
    Update(12);
    EXPECT_EQ(model.Text(0, 3), u"0x0F0E0D0C");
    EXPECT_EQ(model.Text(1, 3), u"inspector.data.value.unavailable") << "beyond the document";
}

TEST_F(StructViewModelTest, ReadsSoMuchOfTheDocumentAsTheRowsMayShow) {
    document = MemoryDocument(CountingBytes(1000));
    const auto bytesAsked = [&](std::string_view text) {
        model.Load(folder.Write(u"x.kvpat", text));
        return model.MakeRequest(document, 5)->bytes.size();
    };
    EXPECT_EQ(bytesAsked(kPair), 8U);
    EXPECT_EQ(bytesAsked("struct S { uint32_t length; char text[]; };"), 260U);
}

// A flexible array of an embedded struct shows no more than the entry struct holds.
TEST_F(StructViewModelTest, ShowsALargeStructAsIfItHadBeenReadWhole) {
    const std::pair<std::string, std::uint64_t> patterns[] = {
        {"struct Part { uint16_t kind; char name[70000]; };"
         "struct S { uint8_t tag; struct Part part; char text[100]; double d;"
         "uint32_t table[3]; char rest[]; };",
         256},
        {"struct Part { uint16_t kind; char rest[]; };"
         "struct S { char name[70000]; struct Part part; uint32_t last; };",
         0}};
    document.bytes.assign(70'500, 0x41);
    for (const auto& [text, beyond] : patterns) {
        ASSERT_TRUE(model.Load(folder.Write(u"large.kvpat", "@entry S @member_align 4 " + text)));
        for (const ByteArrayFormat format : {ByteArrayFormat::Hex, ByteArrayFormat::Ascii}) {
            model.SetFormat({.byteArrayFormat = format});
            // To the whole struct, one byte less of the document each time, and beyond its end.
            for (std::uint64_t caret = 300; caret <= 70'501; caret += caret < 510 ? 1 : 4999) {
                StructEvalRequest request = *model.MakeRequest(document, caret);
                EXPECT_TRUE(request.bytes.empty());
                const std::vector<StructViewRow> rows = EvaluateStruct(request);
                request.memberBytes.clear();
                request.bytes = document.ReadBytes(caret, request.pattern->Entry()->size + beyond);
                ASSERT_EQ(rows, EvaluateStruct(request)) << text << caret;
            }
        }
    }
}

TEST_F(StructViewModelTest, FormatsValuesAsChosenWithoutLoadingAgain) {
    model.Load(folder.Write(u"pair.kvpat", kPair));
    std::remove(Utf16ToUtf8(folder.Path(u"pair.kvpat")).c_str());
    EXPECT_TRUE(model.SetFormat({.endian = Endian::Big, .numericBase = NumericBase::Dec}));
    EXPECT_FALSE(model.SetFormat({.endian = Endian::Big, .numericBase = NumericBase::Dec}));
    Update();
    EXPECT_EQ(model.Text(1, 3), u"2314"); // 0x090A
}

TEST_F(StructViewModelTest, KeepsTheDefinitionWhenALoadFailsAndShowsWhy) {
    const std::u16string path = folder.Write(u"pair.kvpat", kPair);
    model.Load(path);
    Update();
    const std::string rows = Copied();
    model.ToggleInfo();

    folder.Write(u"pair.kvpat", "struct Pair { uint32_t 7; };");
    EXPECT_FALSE(model.Reload());
    Update();
    EXPECT_EQ(Copied(), rows);
    EXPECT_EQ(model.TextArea(), StructTextArea::Error);
    EXPECT_EQ(Utf16ToUtf8(model.ErrorText()),
              "structview.error.prefix\r\n"
              "Line 1, Col 15: Unexpected tokens after declaration name.\r\n"
              "struct Pair { uint32_t 7; };\r\n"
              "              ^");
    std::remove(Utf16ToUtf8(path).c_str());
    EXPECT_FALSE(model.Reload());
    EXPECT_EQ(model.ErrorText(), u"structview.error.prefix\r\nFailed to open definition file.");
    EXPECT_EQ(model.Path(), path);

    folder.Write(u"pair.kvpat", "struct Other { char c; };");
    EXPECT_TRUE(model.Reload());
    EXPECT_EQ(model.TextArea(), StructTextArea::None);
    Update();
    EXPECT_EQ(Copied(), std::string(kCaptions) + "\r\n0x5\tc\tchar\t0x05");
}

TEST_F(StructViewModelTest, PutsTheCaretOfAnErrorUnderItsColumnInAFixedPitch) {
    const std::pair<std::string, std::string> cases[] = {
        {"struct A {\t\tchar 7; };", "struct A {  char 7; };\r\n            ^"},
        {"/* 日本 ｱ é */ x", "/* 日本 ｱ é */ x\r\n   \u3000\u3000        ^"},
        {{"struct\0A", 8}, "struct A\r\n      ^"},
        {std::string(3000, 'a') + '#' + std::string(3000, 'b'),
         "..." + std::string(500, 'a') + '#' + std::string(499, 'b') + "...\r\n" +
             std::string(503, ' ') + '^'},
        {"a\r" + std::string(3000, 'b') + '#', "a\r\n" + std::string(1000, ' ') + '^'},
    };
    for (const auto& [line, shown] : cases) {
        model.Load(folder.Write(u"pair.kvpat", line));
        EXPECT_TRUE(Utf16ToUtf8(model.ErrorText()).ends_with("\r\n" + shown))
            << Utf16ToUtf8(model.ErrorText());
    }
    EXPECT_EQ(WithCaretInPlace(u"no row\t^"), u"no row\t^");
    EXPECT_TRUE(HasFullWidth(u"ｘ") && !HasFullWidth(u"xéЖｱ"));
}

TEST_F(StructViewModelTest, SaysSoWhenThereIsNothingToShow) {
    Update();
    EXPECT_EQ(model.EmptyMessage(), u"structview.empty.message");
    EXPECT_FALSE(model.Reload());
    model.Load(folder.Write(u"pair.kvpat", kPair));
    EXPECT_TRUE(model.MakeRequest(document, 0));
    EXPECT_EQ(model.EmptyMessage(), u"") << "rows are on their way";
    Update();
    document.open = false;
    Update();
    EXPECT_EQ(model.RowCount(), 0U);
    EXPECT_EQ(model.EmptyMessage(), u"structview.empty.message");
    document.open = true;
    Update();
    model.Close();
    EXPECT_FALSE(model.HasPattern());
    EXPECT_EQ(Copied(), kCaptions);
    EXPECT_EQ(model.DefinitionLine(), u"structview.header.definition");
    EXPECT_EQ(model.EmptyMessage(), u"structview.empty.message");
}

TEST_F(StructViewModelTest, TogglesTheSummaryOfALoadedFile) {
    const auto toggled = [&] {
        model.ToggleInfo();
        return model.TextArea();
    };
    EXPECT_EQ(toggled(), StructTextArea::None) << "of nothing";
    model.Load(folder.Write(u"pair.kvpat", kPair));
    EXPECT_EQ(toggled(), StructTextArea::Info);
    EXPECT_TRUE(model.InfoText().starts_with(u"entry = Pair (implicit)\r\n"));
    EXPECT_EQ(toggled(), StructTextArea::None);
    toggled();
    model.Close();
    EXPECT_EQ(model.TextArea(), StructTextArea::None);
}

TEST_F(StructViewModelTest, OpensWhereTheLastFileWas) {
    EXPECT_FALSE(model.Load(folder.Write(u"broken.kvpat", "struct")));
    EXPECT_EQ(model.StartFolder(u"program"), JoinPath(u"program", u"patterns"));
    model.Load(folder.Write(u"pair.kvpat", kPair));
    model.Close();
    EXPECT_EQ(model.StartFolder(u"program"), folder.Root().u16string());
}

TEST(ValueFormatMenu, ChecksAndSetsOneOptionOfEachGroup) {
    StructViewFormat format;
    const auto checkedAfter = [&](std::initializer_list<std::uint32_t> options) {
        for (const std::uint32_t option : options)
            format = WithValueFormat(format, option);
        std::string commands;
        for (const ValueFormatGroup& group : kValueFormatMenu) {
            for (const ValueFormatItem& item : group.items) {
                if (IsValueFormatChosen(format, ValueFormatOption(item.command)))
                    commands += std::to_string(item.command) + " ";
            }
        }
        return commands;
    };
    EXPECT_EQ(checkedAfter({}), "4201 4203 4205 ");
    EXPECT_EQ(checkedAfter({2, 4, 6, 0, 7}), "4202 4204 4206 ");
    EXPECT_EQ(checkedAfter({1, 3, 5}), "4201 4203 4205 ");
    EXPECT_EQ(ValueFormatOption(0), 0U);
    EXPECT_EQ(ValueFormatOption(4207), 0U);
}

TEST(StructViewLayout, PlacesButtonsFromTheRightAndTheListBelowTheTextArea) {
    StructViewLayout layout = LayOutStructView(700, 600, 96, StructTextArea::None);
    EXPECT_EQ(
        layout.buttons,
        (std::array<PaneRect, 4>{
            {{618, 10, 688, 36}, {530, 10, 610, 36}, {394, 10, 522, 36}, {296, 10, 386, 36}}}));
    EXPECT_EQ(layout.definitionLine, (PaneRect{12, 0, 288, 30}));
    EXPECT_EQ(layout.pathLine, (PaneRect{12, 28, 688, 62}));
    EXPECT_EQ(layout.listTopPx, 62);
    EXPECT_EQ(ValueFormatBox({100, 62, 320, 96}, 96), (PaneRect{300, 70, 320, 88}));

    layout = LayOutStructView(1050, 900, 144, StructTextArea::Error);
    EXPECT_EQ(layout.buttons[3], (PaneRect{444, 15, 579, 54}));
    EXPECT_EQ(layout.header, (PaneRect{0, 0, 1050, 93}));
    EXPECT_EQ(layout.textArea, (PaneRect{0, 93, 1050, layout.listTopPx}));
    EXPECT_EQ(layout.textBox, (PaneRect{18, 102, 1032, layout.listTopPx - 10}));
    // The smallest window keeps a text of some height, and the start of the file's name.
    layout = LayOutStructView(504, 221, 96, StructTextArea::Info);
    EXPECT_EQ(layout.listTopPx, 62 + 61);
    EXPECT_EQ(layout.definitionLine, (PaneRect{12, 0, 92, 30}));
    EXPECT_EQ(layout.pathLine, (PaneRect{12, 28, 492, 62}));
}

TEST(PaneColors, AreThoseOfTheTheme) {
    EXPECT_EQ(PaneColorsOf(Theme::DarkBlue).headerBand, 0x2A476EU);
    EXPECT_EQ(PaneColorsOf(static_cast<Theme>(9)), PaneColorsOf(Theme::Light));
    // 28 of 100 parts background: 0x11 and 0xF3 give 0xB3.
    EXPECT_EQ(PaneColorsOf(Theme::Black).DimmedText(), 0xB3B3B3U);
}

} // namespace
} // namespace kvx
