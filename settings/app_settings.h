// The user's choices. A default-constructed record holds the defaults of a first start.
#pragma once

#include "encoding/text_encoding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kvx {

enum class Theme : std::uint32_t { Light = 0, DarkBlue = 1, Black = 2 };
enum class UiLanguage : std::uint32_t { System = 0, English = 1, Japanese = 2 };
enum class ByteArrayFormat : std::uint32_t { Hex = 0, Ascii = 1 };
enum class Endian : std::uint32_t { Little = 0, Big = 1 };
enum class NumericBase : std::uint32_t { Hex = 0, Dec = 1 };

inline constexpr std::size_t kMaxFavoriteEncodings = 3;
inline constexpr std::size_t kMaxRecentFiles = 16;

/// The label of this version, stored into the settings at every save.
inline constexpr char16_t kAppVersionLabel[] = u"v1.04";

/// How the struct view writes values.
struct StructViewFormat {
    ByteArrayFormat byteArrayFormat = ByteArrayFormat::Hex;
    Endian endian = Endian::Little;
    NumericBase numericBase = NumericBase::Hex;

    friend bool operator==(const StructViewFormat&, const StructViewFormat&) = default;
};

/// One past search.
struct SearchHistoryEntry {
    std::u16string kind; ///< u"hex" or u"text"
    std::u16string query;

    friend bool operator==(const SearchHistoryEntry&, const SearchHistoryEntry&) = default;
};

/// The settings record, owned by the application window.
struct AppSettings {
    bool dataInspectorVisible = true;
    bool structViewVisible = false;
    StructViewFormat structViewFormat;
    std::u16string appVersion;
    TextEncoding textEncoding = TextEncoding::Ascii;
    std::vector<TextEncoding> favoriteEncodings; ///< in the order added, no duplicates
    Theme theme = Theme::DarkBlue;
    UiLanguage uiLanguage = UiLanguage::System;
    std::u16string fontFamily = u"Consolas";
    float fontSize = 12.0F; ///< points
    bool bold = false;
    bool italic = false;
    std::vector<std::u16string> recentFiles;       ///< paths, newest first
    std::vector<SearchHistoryEntry> searchHistory; ///< newest first

    friend bool operator==(const AppSettings&, const AppSettings&) = default;
};

} // namespace kvx
