#include "app/status_text.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(StatusText, ListsTheFieldsOfAnOpenFile) {
    struct Row {
        StatusFields file;
        std::u16string_view text; ///< of keys without their "status."
    };
    const Row rows[] = {
        {{.caret = 0xAB, .fileSize = 4096},
         u"offset: 0x000000AB  encoding: ASCII  readonly  zoom: 100%"},
        {{.editable = true, .modified = true, .zoom = 0.6F},
         u"offset: 0x00000000  encoding: ASCII  mode: mode.overwrite  modified  zoom: 60%"},
        {{.editable = true, .insertMode = true, .zoom = 1.0F - 0.1F - 0.1F - 0.1F},
         u"offset: 0x00000000  encoding: ASCII  mode: mode.insert  zoom: 70%"},
        {{.caret = 0xFFFF'FFFE, .fileSize = 1ULL << 32}, // wider from 4 GiB on
         u"offset: 0x00000000FFFFFFFE  encoding: ASCII  readonly  zoom: 100%"},
    };
    const auto shortKey = [](std::string_view key) { return KeyAsText(key.substr(7)); };
    for (const Row& row : rows)
        EXPECT_EQ(StatusText({std::nullopt, std::nullopt, row.file}, shortKey), row.text);
}

TEST(StatusText, PrefersTheWarningThenTheProgressThenTheFile) {
    const StatusFields file{.fileSize = 1};
    EXPECT_EQ(StatusText({u"read-only!", u"saving 5%", file}, KeyAsText), u"read-only!");
    EXPECT_EQ(StatusText({std::nullopt, u"saving 5%", file}, KeyAsText), u"saving 5%");
    EXPECT_EQ(StatusText({}, KeyAsText), u"status.no_file");
}

TEST(StatusColors, FollowTheTheme) {
    EXPECT_EQ(StatusColorsOf(Theme::Black),
              (StatusColors{RgbColor{0x11, 0x11, 0x11}, {0xF3, 0xF3, 0xF3}}));
    EXPECT_EQ(StatusColorsOf(static_cast<Theme>(9)),
              (StatusColors{std::nullopt, {0x20, 0x20, 0x20}}));
}

} // namespace
} // namespace kvx
