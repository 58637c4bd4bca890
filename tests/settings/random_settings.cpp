#include "tests/settings/random_settings.h"

#include <algorithm>
#include <array>

namespace kvx::test {

AppSettings RandomSettings::Next() {
    AppSettings settings;
    settings.dataInspectorVisible = Coin();
    settings.structViewVisible = Coin();
    settings.structViewFormat = {static_cast<ByteArrayFormat>(Below(2)),
                                 static_cast<Endian>(Below(2)), static_cast<NumericBase>(Below(2))};
    settings.appVersion = Text();
    settings.textEncoding = static_cast<TextEncoding>(Below(kTextEncodingCount));
    settings.favoriteEncodings = Favorites();
    settings.theme = static_cast<Theme>(Below(3));
    settings.uiLanguage = static_cast<UiLanguage>(Below(3));
    settings.fontFamily = Text();
    settings.fontSize = FontSize();
    settings.bold = Coin();
    settings.italic = Coin();
    for (std::uint32_t count = Below(8); count > 0; --count)
        settings.recentFiles.push_back(Text());
    for (std::uint32_t count = Below(8); count > 0; --count)
        settings.searchHistory.push_back({Coin() ? u"hex" : Text(), Text()});
    return settings;
}

std::u16string RandomSettings::Text() {
    // What can upset the file's text, mixed with what cannot. The few letters spell no key of the
    // file: a text that ends like a key would be found as one.
    static constexpr std::u16string_view kPlain = u"aZ09 /.:,'&=éあ日\uFFFD\u007F\u0080";
    static constexpr std::u16string_view kBrackets = u"\"\\[{}:,]";
    static constexpr std::u16string_view kNamedControls = u"\b\t\n\f\r";
    static constexpr std::array<char16_t, 5> kOtherControls = {0, 1, 0x0B, 0x1B, 0x1F};
    static constexpr std::array<char16_t, 4> kSurrogates = {0xD83D, 0xDE00, 0xDBFF, 0xDC00};
    const auto pick = [this](const auto& units) {
        return units[Below(static_cast<std::uint32_t>(units.size()))];
    };
    std::u16string text;
    for (std::uint32_t length = Below(12); length > 0; --length) {
        const std::uint32_t kind = Below(16);
        text += kind < 9    ? pick(kPlain)
                : kind < 12 ? pick(kBrackets)
                : kind < 13 ? pick(kNamedControls)
                : kind < 14 ? pick(kOtherControls)
                            : pick(kSurrogates);
    }
    return text;
}

float RandomSettings::FontSize() {
    static constexpr std::array kSizes = {12.0F, 10.5F, 8.0F, 0.1F, 1234567.0F, 1e-6F, 72.0F};
    if (Coin()) return kSizes[Below(kSizes.size())];
    return static_cast<float>(1 + Below(1U << 20U)) / 4096.0F;
}

std::vector<TextEncoding> RandomSettings::Favorites() {
    std::vector<TextEncoding> favorites;
    for (std::uint32_t tries = Below(kMaxFavoriteEncodings + 1); tries > 0; --tries) {
        const auto encoding = static_cast<TextEncoding>(Below(kTextEncodingCount));
        if (std::ranges::find(favorites, encoding) == favorites.end())
            favorites.push_back(encoding);
    }
    return favorites;
}

} // namespace kvx::test
