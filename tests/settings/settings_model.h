// A sample record, and what becomes of a record's values on their way through a file, stated
// independently of the writer and the reader.
#pragma once

#include "settings/app_settings.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace kvx::test {

/// Differs from the defaults in every field.
inline AppSettings AllChanged(TextEncoding encoding) {
    AppSettings settings;
    settings.dataInspectorVisible = false;
    settings.structViewVisible = true;
    settings.structViewFormat = {ByteArrayFormat::Ascii, Endian::Big, NumericBase::Dec};
    settings.appVersion = kAppVersionLabel;
    settings.textEncoding = encoding;
    settings.favoriteEncodings = {TextEncoding::Utf8, TextEncoding::ShiftJis};
    settings.theme = Theme::Black;
    settings.uiLanguage = UiLanguage::Japanese;
    settings.fontFamily = u"ＭＳ ゴシック";
    settings.fontSize = 14.5F;
    settings.bold = true;
    settings.italic = true;
    settings.recentFiles = {u"C:\\data\\a.bin", u"D:\\日本.img"};
    settings.searchHistory = {{u"hex", u"4D 5A"}, {u"text", u"{[\"}"}};
    return settings;
}

/// UTF-8 has no lone surrogates: each becomes U+FFFD.
inline std::u16string WithoutLoneSurrogates(std::u16string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool high = text[i] >= 0xD800 && text[i] <= 0xDBFF;
        const bool low = text[i] >= 0xDC00 && text[i] <= 0xDFFF;
        const bool paired =
            high && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
        if (paired) {
            ++i;
        } else if (high || low) {
            text[i] = 0xFFFD;
        }
    }
    return text;
}

/// The file holds six significant digits.
inline float InSixDigits(float value) {
    char text[32] = {};
    std::snprintf(text, sizeof text, "%.6g", static_cast<double>(value));
    return std::strtof(text, nullptr);
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

/// The values that a written file holds.
inline AppSettings AsStored(AppSettings settings) {
    ForEachString(settings, [](std::u16string& text) { text = WithoutLoneSurrogates(text); });
    settings.fontSize = InSixDigits(settings.fontSize);
    return settings;
}

} // namespace kvx::test
