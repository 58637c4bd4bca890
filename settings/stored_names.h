// The words that stand for enumeration values in the settings file. Readers and writers of older
// and newer versions share them: a word never changes its meaning.
#pragma once

#include "settings/app_settings.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kvx {

/// One enumeration's words, listed by value, and the value that every other word stands for.
template <typename Enum, std::size_t kCount>
struct StoredNames {
    std::array<std::string_view, kCount> names;
    Enum fallback;

    constexpr std::string_view NameOf(Enum value) const {
        const auto index = static_cast<std::size_t>(value);
        return names[index < kCount ? index : static_cast<std::size_t>(fallback)];
    }

    /// Exact and case-sensitive.
    constexpr Enum ValueOf(std::string_view name) const {
        for (std::size_t index = 0; index < kCount; ++index) {
            if (names[index] == name) return static_cast<Enum>(index);
        }
        return fallback;
    }
};

inline constexpr StoredNames<Theme, 3> kThemeNames{{"Light", "DarkBlue", "Black"}, Theme::DarkBlue};
inline constexpr StoredNames<UiLanguage, 3> kUiLanguageNames{{"System", "English", "Japanese"},
                                                             UiLanguage::System};
inline constexpr StoredNames<ByteArrayFormat, 2> kByteArrayFormatNames{{"hex", "ascii"},
                                                                       ByteArrayFormat::Hex};
inline constexpr StoredNames<Endian, 2> kEndianNames{{"little", "big"}, Endian::Little};
inline constexpr StoredNames<NumericBase, 2> kNumericBaseNames{{"hex", "dec"}, NumericBase::Hex};

/// Identifier that stands for `encoding`, for example "cp932"; values outside the enumeration count
/// as ASCII.
std::string_view EncodingIdentifier(TextEncoding encoding);

/// Language group that `encoding` is filed under; empty for the ones common to all languages.
std::string_view EncodingLanguageGroup(TextEncoding encoding);

/// Encoding of an identifier in any accepted spelling; case and punctuation do not count. Unknown
/// identifiers give ASCII.
TextEncoding EncodingOfIdentifier(std::string_view identifier);

/// Encoding of an identifier within its language group; empty when the two do not belong together.
std::optional<TextEncoding> EncodingOfCharset(std::string_view languageGroup,
                                              std::string_view identifier);

} // namespace kvx
