#include "app/status_text.h"

#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

std::u16string TextOf(const StatusFields& file) {
    return StatusText({std::nullopt, std::nullopt, file}, KeyAsText);
}

TEST(StatusText, ListsTheFieldsOfAnOpenFile) {
    EXPECT_EQ(TextOf({.caret = 0xAB, .fileSize = 4096}),
              u"status.offset: 0x000000AB  status.encoding: ASCII  status.readonly  "
              u"status.zoom: 100%");
    EXPECT_EQ(TextOf({.fileSize = 1, .editable = true, .modified = true, .zoom = 0.6F}),
              u"status.offset: 0x00000000  status.encoding: ASCII  "
              u"status.mode: status.mode.overwrite  status.modified  status.zoom: 60%");
    EXPECT_EQ(TextOf({.fileSize = 1, .editable = true, .insertMode = true, .zoom = 2.5F}),
              u"status.offset: 0x00000000  status.encoding: ASCII  "
              u"status.mode: status.mode.insert  status.zoom: 250%");
}

TEST(StatusText, WidensTheOffsetAtFourGiB) {
    struct Row {
        std::uint64_t size;
        std::uint64_t caret;
        std::u16string_view offset;
    };
    const Row rows[] = {
        {0xFFFF'FFFF, 0xFFFF'FFFE, u"status.offset: 0xFFFFFFFE  "},
        {0x1'0000'0000, 0xFFFF'FFFE, u"status.offset: 0x00000000FFFFFFFE  "},
        {0x1'4000'0000, 0x1'2345'6789, u"status.offset: 0x0000000123456789  "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.size);
        EXPECT_TRUE(TextOf({.caret = row.caret, .fileSize = row.size}).starts_with(row.offset));
    }
}

TEST(StatusText, RoundsTheZoomThatStepsLeaveUneven) {
    EXPECT_TRUE(TextOf({.zoom = 1.0F + 0.1F + 0.1F + 0.1F}).ends_with(u": 130%"));
    EXPECT_TRUE(TextOf({.zoom = 1.0F - 0.1F - 0.1F - 0.1F}).ends_with(u": 70%"));
}

TEST(StatusText, PrefersTheWarningThenTheProgressThenTheFile) {
    const StatusFields file{.fileSize = 1};
    EXPECT_EQ(StatusText({u"read-only!", u"saving 5%", file}, KeyAsText), u"read-only!");
    EXPECT_EQ(StatusText({std::nullopt, u"saving 5%", file}, KeyAsText), u"saving 5%");
    EXPECT_EQ(StatusText({}, KeyAsText), u"status.no_file");
}

TEST(StatusColors, FollowTheTheme) {
    EXPECT_EQ(StatusColorsOf(Theme::Light), (StatusColors{std::nullopt, {0x20, 0x20, 0x20}}));
    EXPECT_EQ(StatusColorsOf(Theme::DarkBlue),
              (StatusColors{RgbColor{0x0D, 0x1B, 0x2A}, {0xE6, 0xED, 0xF3}}));
    EXPECT_EQ(StatusColorsOf(Theme::Black),
              (StatusColors{RgbColor{0x11, 0x11, 0x11}, {0xF3, 0xF3, 0xF3}}));
    EXPECT_EQ(StatusColorsOf(static_cast<Theme>(9)), StatusColorsOf(Theme::Light));
}

} // namespace
} // namespace kvx
