#include "fuzz/settings_checks.h"

#include "settings/string_table.h"
#include "tests/settings/settings_testing.h"

#include <cmath>
#include <set>

namespace kvx {
namespace {

std::string_view AsText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string CheckValues(AppSettings settings) {
    const std::vector<TextEncoding>& favorites = settings.favoriteEncodings;
    if (settings.theme > Theme::Black) return "an unknown theme";
    if (settings.uiLanguage > UiLanguage::Japanese) return "an unknown language";
    if (static_cast<std::uint32_t>(settings.textEncoding) >= kTextEncodingCount)
        return "an unknown encoding";
    if (favorites.size() > kMaxFavoriteEncodings) return "too many favourites";
    if (std::set(favorites.begin(), favorites.end()).size() != favorites.size())
        return "the same favourite twice";
    if (!std::isfinite(settings.fontSize) || settings.fontSize <= 0) return "an odd font size";
    const AppSettings before = settings;
    test::ForEachString(settings, [](auto& text) { text = test::WithoutLoneSurrogates(text); });
    return before == settings ? "" : "half a character";
}

/// True when a text would be found in the file as one of its keys.
bool HoldsKey(AppSettings settings) {
    static constexpr std::u16string_view kKeys[] = {u"appVersion",
                                                    u"encoding",
                                                    u"kind",
                                                    u"common",
                                                    u"charset",
                                                    u"language",
                                                    u"code",
                                                    u"theme",
                                                    u"font",
                                                    u"family",
                                                    u"size",
                                                    u"bold",
                                                    u"italic",
                                                    u"analysis",
                                                    u"dataInspector",
                                                    u"visible",
                                                    u"structView",
                                                    u"endian",
                                                    u"byteArrayFormat",
                                                    u"numericBase",
                                                    u"query",
                                                    u"searchHistory",
                                                    u"recentFiles",
                                                    u"encodingFavorites"};
    bool holds = false;
    test::ForEachString(settings, [&](const std::u16string& text) {
        const std::u16string quoted = u'"' + text;
        for (const std::u16string_view key : kKeys)
            holds |= quoted.ends_with(u'"' + std::u16string(key));
    });
    return holds;
}

/// String files by their plain definition: unit by unit.
class PlainStringFile {
public:
    explicit PlainStringFile(std::u16string_view text) {
        for (const char16_t unit : text)
            unit == u'\n' ? EndLine() : line_.push_back(unit);
        EndLine();
    }

    StringMap table;

private:
    void EndLine() {
        const std::size_t equals = line_.find(u'=');
        if (equals != line_.npos && line_[0] != u'#') {
            std::string key;
            for (const char16_t unit : Trimmed(line_.substr(0, equals)))
                key += unit < 128 ? static_cast<char>(unit) : '?';
            if (!table.contains(key)) table[key] = Trimmed(line_.substr(equals + 1));
        }
        line_.clear();
    }

    static std::u16string Trimmed(std::u16string text) {
        const auto isBlank = [](char16_t unit) {
            return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
        };
        while (!text.empty() && isBlank(text.back()))
            text.pop_back();
        while (!text.empty() && isBlank(text.front()))
            text.erase(0, 1);
        return text;
    }

    std::u16string line_;
};

} // namespace

std::string CheckSettings(ByteView input) {
    const std::string text(AsText(input));
    AppSettings read;
    ReadSettingsText(text, read);
    if (std::string problem = CheckValues(read); !problem.empty()) return problem;
    AppSettings marked;
    ReadSettingsText("\xEF\xBB\xBF" + text, marked);
    if (marked != read) return "a byte-order mark changes values";
    AppSettings again;
    ReadSettingsText(WriteSettingsText(read), again);
    return HoldsKey(read) || again == test::AsReadBack(read) ? "" : "other values the second time";
}

std::string CheckStringFile(ByteView input) {
    const StringMap table = ParseStringFile(AsText(input));
    std::u16string text = Utf8ToUtf16(AsText(input));
    if (text.starts_with(u'\uFEFF')) text.erase(0, 1);
    return table == PlainStringFile(text).table ? "" : "other texts than by the plain definition";
}

} // namespace kvx
