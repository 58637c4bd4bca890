// A sample record, and what becomes of its values in a file, stated independently of the writer and
// the reader.
#pragma once

#include "platform/text.h"
#include "settings/settings_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ostream>

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

/// What the reader makes of the written `settings`.
inline AppSettings AsReadBack(AppSettings settings) {
    ForEachString(settings, [](std::u16string& text) { text = WithoutLoneSurrogates(text); });
    char digits[32] = {}; // six significant ones
    std::snprintf(digits, sizeof digits, "%.6g", static_cast<double>(settings.fontSize));
    settings.fontSize = std::strtof(digits, nullptr);
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

} // namespace test
} // namespace kvx
