// Sample and random records, and what becomes of their values in a file, stated independently of
// the writer and the reader.
#pragma once

#include "platform/text.h"
#include "settings/settings_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <random>

namespace kvx {

/// Lets a failing comparison show settings as their file would.
inline void PrintTo(const AppSettings& settings, std::ostream* stream) {
    *stream << "\n" << WriteSettingsText(settings);
}

namespace test {

/// Differs from the defaults in every field.
inline AppSettings AllChanged(TextEncoding encoding) {
    return {.dataInspectorVisible = false,
            .structViewVisible = true,
            .structViewFormat = {ByteArrayFormat::Ascii, Endian::Big, NumericBase::Dec},
            .appVersion = kAppVersionLabel,
            .textEncoding = encoding,
            .favoriteEncodings = {TextEncoding::Utf8, TextEncoding::ShiftJis},
            .theme = Theme::Black,
            .uiLanguage = UiLanguage::Japanese,
            .fontFamily = u"ＭＳ ゴシック",
            .fontSize = 14.5F,
            .bold = true,
            .italic = true,
            .recentFiles = {u"C:\\data\\a.bin", u"D:\\日本.img"},
            .searchHistory = {{u"hex", u"4D 5A"}, {u"text", u"{[\"}"}}};
}

/// Applies `change` to every string of `settings`.
template <typename Change>
void ForEachString(AppSettings& settings, Change change) {
    change(settings.appVersion);
    change(settings.fontFamily);
    for (std::u16string& path : settings.recentFiles)
        change(path);
    for (SearchHistoryEntry& entry : settings.searchHistory) {
        change(entry.kind);
        change(entry.query);
    }
}

/// UTF-8 has no lone surrogates: each becomes U+FFFD.
inline std::u16string WithoutLoneSurrogates(const std::u16string& text) {
    return Utf8ToUtf16(Utf16ToUtf8(text));
}

inline std::string InSixDigits(float value) {
    char digits[32] = {};
    std::snprintf(digits, sizeof digits, "%.6g", static_cast<double>(value));
    return digits;
}

/// The values that a written file holds: well-formed texts and six digits of the font size.
inline AppSettings AsStored(AppSettings settings) {
    ForEachString(settings, [](std::u16string& text) { text = WithoutLoneSurrogates(text); });
    settings.fontSize = std::strtof(InSixDigits(settings.fontSize).c_str(), nullptr);
    return settings;
}

/// What the reader makes of the written `settings`.
inline AppSettings AsReadBack(AppSettings settings) {
    settings = AsStored(std::move(settings));
    // Control characters without a letter of their own come back as the text of their code.
    static constexpr std::u16string_view kNamed = u"\b\t\n\f\r";
    ForEachString(settings, [](std::u16string& text) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char16_t unit = text[i];
            if (unit >= 0x20 || kNamed.find(unit) != kNamed.npos) continue;
            text.replace(i, 1,
                         {u'u', u'0', u'0', u"01"[unit / 16], u"0123456789ABCDEF"[unit % 16]});
        }
    });
    // The language group of the encoding stands before the language of the interface.
    if (settings.textEncoding >= TextEncoding::ShiftJis) settings.uiLanguage = UiLanguage::System;
    // The list ends at the first closing bracket, inside a path too.
    std::vector<std::u16string>& paths = settings.recentFiles;
    const auto hasBracket = [](const auto& path) { return path.find(u']') != path.npos; };
    paths.erase(std::ranges::find_if(paths, hasBracket), paths.end());
    return settings;
}

/// Settings as wild as a user and a file system can make them; the same seed gives the same ones.
class RandomSettings {
public:
    explicit RandomSettings(std::uint32_t seed) : random_(seed) {}

    AppSettings Next() {
        AppSettings settings{
            .dataInspectorVisible = Coin(),
            .structViewVisible = Coin(),
            .structViewFormat = {Any<ByteArrayFormat>(2), Any<Endian>(2), Any<NumericBase>(2)},
            .appVersion = Text(),
            .textEncoding = Any<TextEncoding>(kTextEncodingCount),
            .favoriteEncodings = {},
            .theme = Any<Theme>(3),
            .uiLanguage = Any<UiLanguage>(3),
            .fontFamily = Text(),
            .fontSize = FontSize(),
            .bold = Coin(),
            .italic = Coin(),
            .recentFiles = {},
            .searchHistory = {}};
        for (std::uint32_t tries = Below(kMaxFavoriteEncodings + 1); tries > 0; --tries) {
            const auto encoding = Any<TextEncoding>(kTextEncodingCount);
            if (std::ranges::count(settings.favoriteEncodings, encoding) == 0)
                settings.favoriteEncodings.push_back(encoding);
        }
        for (std::uint32_t count = Below(8); count > 0; --count)
            settings.recentFiles.push_back(Text());
        for (std::uint32_t count = Below(8); count > 0; --count)
            settings.searchHistory.push_back({Coin() ? u"hex" : Text(), Text()});
        return settings;
    }

    /// A whole number from 0 to `count` - 1.
    std::uint32_t Below(std::size_t count) { return static_cast<std::uint32_t>(random_() % count); }

private:
    bool Coin() { return Below(2) == 0; }

    template <typename Enum>
    Enum Any(std::uint32_t count) {
        return static_cast<Enum>(Below(count));
    }

    /// What can upset the file's text, mixed with what cannot. The few letters spell no key of the
    /// file: a text that ends like a key would be found as one.
    std::u16string Text() {
        static constexpr char16_t kOthers[] = {0,      1,      0x0B,   0x1B,  0x1F,
                                               0xD83D, 0xDE00, 0xDBFF, 0xDC00};
        static constexpr std::u16string_view kKinds[] = {u"aZ09 /.:,'&=éあ日\uFFFD\u007F\u0080",
                                                         u"aZ09 /.",
                                                         u"\"\\[{}:,]",
                                                         u"\b\t\n\f\r",
                                                         {kOthers, std::size(kOthers)}};
        std::u16string text;
        for (std::uint32_t length = Below(12); length > 0; --length) {
            const std::u16string_view units = kKinds[Below(std::size(kKinds))];
            text += units[Below(units.size())];
        }
        return text;
    }

    float FontSize() {
        static constexpr std::array kSizes = {12.0F, 0.1F, 1234567.0F, 1e-6F};
        if (Coin()) return kSizes[Below(kSizes.size())];
        return static_cast<float>(1 + Below(1U << 20U)) / 4096.0F;
    }

    std::mt19937 random_;
};

} // namespace test
} // namespace kvx
