#include "app/view_commands.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(ViewCommands, AChosenThemeIsShownAndStoredEvenWhenItIsTheSame) {
    ShellRig rig;
    EXPECT_EQ(rig.Stored().appVersion, u"");
    rig.Run(Command::ThemeDarkBlue);
    EXPECT_EQ(rig.Stored().appVersion, u"v1.04");
    rig.Run(Command::ThemeBlack);
    EXPECT_EQ(rig.stage.State().theme, Theme::Black);
    EXPECT_EQ(rig.host.background, StatusColorsOf(Theme::Black));
    EXPECT_EQ(rig.Stored().theme, Theme::Black);
    EXPECT_TRUE(rig.host.menu[3].children[1].children[2].checked);
}

TEST(ViewCommands, TheZoomIsChangedButNotStored) {
    ShellRig rig;
    rig.Run(Command::ZoomIn);
    EXPECT_FLOAT_EQ(rig.stage.State().zoom, 1.1F);
    rig.Run(Command::ZoomOut);
    rig.Run(Command::ZoomOut);
    EXPECT_FLOAT_EQ(rig.stage.State().zoom, 0.9F);
    rig.Run(Command::ZoomReset);
    EXPECT_EQ(rig.stage.State().zoom, 1.0F);
    EXPECT_EQ(rig.Stored().appVersion, u"");
}

TEST(ViewCommands, ARefusedEditShowsAWarningForAWhile) {
    ShellRig rig;
    rig.shell.OnEditRefused();
    EXPECT_EQ(rig.host.status, u"status.readonly_blocked");
    rig.shell.OnFlashTimer();
    EXPECT_EQ(rig.host.status, u"status.no_file");
}

TEST(ViewCommands, AChosenEncodingIsShownAndStoredEvenWhenItIsTheSame) {
    ShellRig rig;
    rig.Run(Command::EncodingFirst);
    EXPECT_EQ(rig.Stored().appVersion, u"v1.04");
    rig.Run(Command::EncodingLast);
    EXPECT_EQ(rig.stage.State().encoding, TextEncoding::IsciiDevanagari);
    EXPECT_EQ(rig.Stored().textEncoding, TextEncoding::IsciiDevanagari);
}

TEST(ViewCommands, FavouriteEncodingsAreAddedRemovedClearedChosenAndStored) {
    ShellRig rig;
    using Favorites = std::vector<TextEncoding>;
    rig.Run(Command::FavoriteRemove);
    rig.Run(Command::FavoriteClear);
    rig.Run(Command::FavoriteFirst);
    EXPECT_EQ(rig.Stored().appVersion, u"") << "there was nothing to do";
    for (const std::uint32_t number : {8U, 8U, 4U, 11U, 1U}) {
        rig.Run(Command::EncodingFirst + number);
        rig.Run(Command::FavoriteAdd);
    }
    EXPECT_EQ(rig.Stored().favoriteEncodings, (Favorites{TextEncoding::Gbk, TextEncoding::ShiftJis,
                                                         TextEncoding::IsciiDevanagari}));
    rig.Run(Command::FavoriteFirst + 1);
    EXPECT_EQ(rig.Stored().textEncoding, TextEncoding::ShiftJis);
    rig.Run(Command::FavoriteRemove);
    rig.Run(Command::FavoriteRemove);
    EXPECT_EQ(rig.Stored().favoriteEncodings,
              (Favorites{TextEncoding::Gbk, TextEncoding::IsciiDevanagari}));
    rig.Run(Command::FavoriteLast);
    EXPECT_EQ(rig.Stored().textEncoding, TextEncoding::ShiftJis)
        << "there is no third one any more";
    rig.Run(Command::FavoriteClear);
    EXPECT_EQ(rig.Stored().favoriteEncodings, Favorites{});
    EXPECT_EQ(rig.host.menu[3].children[0].children[0].kind, MenuItemKind::Separator);
}

} // namespace
} // namespace kvx
