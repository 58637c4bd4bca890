// Damaged files: whatever is in them, each setting is either as it was or has a valid value.
#include "settings/settings_file.h"
#include "tests/settings/random_settings.h"
#include "tests/settings/settings_model.h"
#include "tests/settings/settings_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string_view>

namespace kvx::test {
namespace {

template <typename Value>
void ExpectOneOf(const Value& actual, std::initializer_list<Value> allowed, const char* field) {
    EXPECT_NE(std::ranges::find(allowed, actual), allowed.end()) << field;
}

/// Each field of `read` is the one of `before` or of `written`; only a number can be cut in half.
void ExpectOldOrNew(const AppSettings& read, const AppSettings& before,
                    const AppSettings& written) {
#define KVX_OLD_OR_NEW(field) ExpectOneOf(read.field, {before.field, written.field}, #field)
    KVX_OLD_OR_NEW(dataInspectorVisible);
    KVX_OLD_OR_NEW(structViewVisible);
    KVX_OLD_OR_NEW(structViewFormat.byteArrayFormat);
    KVX_OLD_OR_NEW(structViewFormat.endian);
    KVX_OLD_OR_NEW(structViewFormat.numericBase);
    KVX_OLD_OR_NEW(appVersion);
    KVX_OLD_OR_NEW(textEncoding);
    KVX_OLD_OR_NEW(favoriteEncodings);
    KVX_OLD_OR_NEW(theme);
    KVX_OLD_OR_NEW(uiLanguage);
    KVX_OLD_OR_NEW(fontFamily);
    KVX_OLD_OR_NEW(bold);
    KVX_OLD_OR_NEW(italic);
    KVX_OLD_OR_NEW(recentFiles);
    KVX_OLD_OR_NEW(searchHistory);
#undef KVX_OLD_OR_NEW
    ExpectOneOf(read.fontSize, {before.fontSize, written.fontSize, 14.0F, 1.0F}, "fontSize");
}

TEST(DamagedSettings, CutOffAtAnyByteGiveOldOrNewValues) {
    for (const TextEncoding encoding : {TextEncoding::Utf16Be, TextEncoding::Big5}) {
        AppSettings written = AllChanged(encoding);
        const std::string text = WriteSettingsText(written);
        if (encoding == TextEncoding::Big5) written.uiLanguage = UiLanguage::System;
        for (std::size_t length = 0; length <= text.size(); ++length) {
            const AppSettings before;
            AppSettings read = before;
            ReadSettingsText(std::string_view(text).substr(0, length), read);
            SCOPED_TRACE("cut to " + std::to_string(length) + " bytes");
            ExpectOldOrNew(read, before, written);
            EXPECT_EQ(read == written,
                      length >= text.size() - std::string_view("\r\n}\r\n").size());
        }
    }
}

/// A valid record holds known enumeration values, at most three distinct favourites, a usable font
/// size and well-formed texts.
void ExpectValid(AppSettings settings) {
    EXPECT_LE(static_cast<std::uint32_t>(settings.theme), 2U);
    EXPECT_LE(static_cast<std::uint32_t>(settings.uiLanguage), 2U);
    EXPECT_LT(static_cast<std::uint32_t>(settings.textEncoding), kTextEncodingCount);
    const std::vector<TextEncoding>& favorites = settings.favoriteEncodings;
    EXPECT_LE(favorites.size(), kMaxFavoriteEncodings);
    EXPECT_EQ(std::set(favorites.begin(), favorites.end()).size(), favorites.size());
    EXPECT_TRUE(std::isfinite(settings.fontSize) && settings.fontSize > 0.0F);
    ForEachString(settings,
                  [](const std::u16string& text) { EXPECT_EQ(text, WithoutLoneSurrogates(text)); });
}

TEST(DamagedSettings, WithFlippedBitsGiveValidValues) {
    RandomSettings random(7);
    for (int step = 0; step < 5000; ++step) {
        std::string text = WriteSettingsText(random.Next());
        for (std::uint32_t flips = 1 + random.Below(16); flips > 0; --flips) {
            char& hit = text[random.Below(static_cast<std::uint32_t>(text.size()))];
            hit = static_cast<char>(hit ^ (1 << random.Below(8)));
        }
        AppSettings read;
        ReadSettingsText(text, read);
        ExpectValid(read);
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << "\n" << text;
    }
}

TEST(DamagedSettings, OfShuffledPiecesGiveValidValues) {
    static constexpr std::string_view kPieces[] = {R"("appVersion")",
                                                   R"("encoding")",
                                                   R"("kind")",
                                                   R"("common")",
                                                   R"("charset")",
                                                   R"("language")",
                                                   R"("code")",
                                                   R"("theme")",
                                                   R"("font")",
                                                   R"("size")",
                                                   R"("analysis")",
                                                   R"("visible")",
                                                   R"("endian")",
                                                   R"("structView")",
                                                   R"("query")",
                                                   R"("recentFiles")",
                                                   R"("searchHistory")",
                                                   R"("encodingFavorites")",
                                                   R"("japanese")",
                                                   R"("cp932")",
                                                   R"("big")",
                                                   "[",
                                                   "]",
                                                   "{",
                                                   "}",
                                                   ":",
                                                   ":",
                                                   ",",
                                                   "\"",
                                                   "\\",
                                                   "true",
                                                   "-1e38",
                                                   "12",
                                                   "\r\n",
                                                   "\xFF",
                                                   "\xED\xA0\x80",
                                                   std::string_view("\0", 1)};
    RandomSettings random(11);
    for (int step = 0; step < 20000; ++step) {
        std::string text;
        for (std::uint32_t pieces = random.Below(60); pieces > 0; --pieces)
            text += kPieces[random.Below(std::size(kPieces))];
        AppSettings read;
        ReadSettingsText(text, read);
        ExpectValid(read);
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << "\n" << text;
    }
}

} // namespace
} // namespace kvx::test
