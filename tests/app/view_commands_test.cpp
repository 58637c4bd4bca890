#include "app/view_commands.h"

#include "app/command_dispatch.h"
#include "settings/settings_file.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

class ViewCommands : public testing::Test {
protected:
    void Run(Command command) { EXPECT_TRUE(DispatchCommand(rig.shell, CommandId(command))); }

    AppSettings Stored() const {
        AppSettings stored;
        LoadSettings(rig.folder.Path(u"settings.json"), stored);
        return stored;
    }

    ShellRig rig;
};

TEST_F(ViewCommands, AChosenThemeIsShownAndStoredEvenWhenItIsTheSame) {
    EXPECT_EQ(Stored().appVersion, u"");
    Run(Command::ThemeDarkBlue);
    EXPECT_EQ(Stored().appVersion, u"v1.04");
    Run(Command::ThemeBlack);
    EXPECT_EQ(rig.stage.State().theme, Theme::Black);
    EXPECT_EQ(rig.host.background, StatusColorsOf(Theme::Black));
    EXPECT_EQ(Stored().theme, Theme::Black);
    EXPECT_TRUE(rig.host.menu[3].children[1].children[2].checked);
}

TEST_F(ViewCommands, TheZoomIsChangedButNotStored) {
    Run(Command::ZoomIn);
    EXPECT_FLOAT_EQ(rig.stage.State().zoom, 1.1F);
    Run(Command::ZoomOut);
    Run(Command::ZoomOut);
    EXPECT_FLOAT_EQ(rig.stage.State().zoom, 0.9F);
    Run(Command::ZoomReset);
    EXPECT_EQ(rig.stage.State().zoom, 1.0F);
    EXPECT_EQ(Stored().appVersion, u"");
}

TEST_F(ViewCommands, AChosenEncodingIsShownAndStoredEvenWhenItIsTheSame) {
    Run(Command::EncodingFirst);
    EXPECT_EQ(Stored().appVersion, u"v1.04");
    Run(Command::EncodingLast);
    EXPECT_EQ(rig.stage.State().encoding, TextEncoding::IsciiDevanagari);
    EXPECT_EQ(Stored().textEncoding, TextEncoding::IsciiDevanagari);
}

TEST_F(ViewCommands, FavouriteEncodingsAreAddedRemovedClearedChosenAndStored) {
    using Favorites = std::vector<TextEncoding>;
    Run(Command::FavoriteRemove);
    Run(Command::FavoriteClear);
    Run(Command::FavoriteFirst);
    EXPECT_EQ(Stored().appVersion, u"") << "there was nothing to do";
    for (const std::uint32_t number : {8U, 8U, 4U, 11U, 1U}) {
        Run(Command::EncodingFirst + number);
        Run(Command::FavoriteAdd);
    }
    EXPECT_EQ(Stored().favoriteEncodings, (Favorites{TextEncoding::Gbk, TextEncoding::ShiftJis,
                                                     TextEncoding::IsciiDevanagari}));
    Run(Command::FavoriteFirst + 1);
    EXPECT_EQ(Stored().textEncoding, TextEncoding::ShiftJis);
    Run(Command::FavoriteRemove);
    Run(Command::FavoriteRemove);
    EXPECT_EQ(Stored().favoriteEncodings,
              (Favorites{TextEncoding::Gbk, TextEncoding::IsciiDevanagari}));
    Run(Command::FavoriteLast);
    EXPECT_EQ(Stored().textEncoding, TextEncoding::ShiftJis) << "there is no third one any more";
    Run(Command::FavoriteClear);
    EXPECT_EQ(Stored().favoriteEncodings, Favorites{});
    EXPECT_EQ(rig.host.menu[3].children[0].children[0].kind, MenuItemKind::Separator);
}

TEST_F(ViewCommands, NumbersWithoutACommandAreLeftToTheSystem) {
    for (const std::uint32_t id : {0U, 1000U, 1036U, 1199U, 1203U, 3999U})
        EXPECT_FALSE(DispatchCommand(rig.shell, id)) << id;
    EXPECT_TRUE(DispatchCommand(rig.shell, 65'535)) << "a recent file, though none is there";
}

} // namespace
} // namespace kvx
