// Localised texts by key, from one text file per locale beside the program. Owned by the
// application window and used from the main thread.
#pragma once

#include "settings/app_settings.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kvx {

/// Answers the user's locale name; empty optional when the system does not tell.
using LocaleQuery = std::function<std::optional<std::u16string>()>;

/// Locale of the texts for a language choice: u"en-US" or u"ja-JP". System asks `userLocale` and is
/// Japanese exactly when the name begins with lower-case "ja".
std::u16string ResolveLocaleName(UiLanguage language, const LocaleQuery& userLocale);

/// The same rule as a language: English or Japanese, never System.
UiLanguage ResolveEffectiveLanguage(UiLanguage language, const LocaleQuery& userLocale);

/// Hashes keys so that a string_view finds a std::string without a copy.
struct StringKeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const {
        return std::hash<std::string_view>{}(key);
    }
};

/// Key to text for one locale.
using StringMap = std::unordered_map<std::string, std::u16string, StringKeyHash, std::equal_to<>>;

/// Reads the lines of a string file (UTF-8, key=value; '#' at the very start of a line makes it a
/// comment; the first of several equal keys wins).
StringMap ParseStringFile(std::string_view text);

class StringTable {
public:
    /// `userLocale` is asked for the System language; by default the operating system answers.
    explicit StringTable(LocaleQuery userLocale = {});

    /// Folder that holds resources/strings/; normally the program's own.
    void SetBaseFolder(std::u16string folder);

    /// For the next texts. The user's locale is asked once for each choice of System.
    void SetLanguage(UiLanguage language);
    UiLanguage Language() const { return language_; }

    /// The text for `key` in the current language, or the key itself when there is none.
    std::u16string Get(std::string_view key) const;

private:
    const StringMap& CurrentTable() const;

    LocaleQuery userLocale_;
    std::u16string baseFolder_;
    UiLanguage language_ = UiLanguage::System;
    mutable std::u16string locale_; ///< of the texts; empty until the first one is needed
    /// Each locale is loaded once, at first need, and kept even when its file was missing.
    mutable std::unordered_map<std::u16string, StringMap> tables_;
};

} // namespace kvx
