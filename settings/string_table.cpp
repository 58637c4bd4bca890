#include "settings/string_table.h"

#include "platform/file_layer.h"
#include "platform/system.h"
#include "platform/text.h"
#include "settings/file_text.h"

#include <memory>
#include <utility>

namespace kvx {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::u16string_view kBlanks = u" \t\r\n";

std::u16string_view Trimmed(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Narrowed(std::u16string_view text) {
    std::string narrow;
    for (const char16_t unit : text)
        narrow += unit > 127 ? '?' : static_cast<char>(unit);
    return narrow;
}

std::u16string Widened(std::string_view text) {
    std::u16string wide;
    for (const char c : text)
        wide += static_cast<unsigned char>(c);
    return wide;
}

void ParseLine(std::string_view line, StringMap& table) {
    if (line.empty() || line.front() == '#') return;
    const std::u16string wide = Utf8ToUtf16(line);
    const std::u16string_view text = wide;
    const std::size_t equals = text.find(u'=');
    if (equals == std::u16string_view::npos) return;
    table.try_emplace(Narrowed(Trimmed(text.substr(0, equals))), Trimmed(text.substr(equals + 1)));
}

/// Empty when the file is missing or cannot be read.
StringMap LoadStringFile(const std::u16string& path) {
    ErrorCode error = 0;
    const std::unique_ptr<ReadableFile> file = SystemFileLayer().OpenForReading(path, error);
    if (!file) return {};
    return ParseStringFile(ReadWholeFile(*file).value_or(std::string{}));
}

} // namespace

UiLanguage ResolveEffectiveLanguage(UiLanguage language, const LocaleQuery& userLocale) {
    if (language == UiLanguage::English || language == UiLanguage::Japanese) return language;
    const std::optional<std::u16string> locale = userLocale();
    return locale && locale->starts_with(u"ja") ? UiLanguage::Japanese : UiLanguage::English;
}

std::u16string ResolveLocaleName(UiLanguage language, const LocaleQuery& userLocale) {
    const bool japanese = ResolveEffectiveLanguage(language, userLocale) == UiLanguage::Japanese;
    return japanese ? u"ja-JP" : u"en-US";
}

StringMap ParseStringFile(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    StringMap table;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        ParseLine(line, table);
        text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    }
    return table;
}

StringTable::StringTable(LocaleQuery userLocale)
    : userLocale_(userLocale ? std::move(userLocale) : UserLocaleName) {}

void StringTable::SetBaseFolder(std::u16string folder) {
    baseFolder_ = std::move(folder);
}

void StringTable::SetLanguage(UiLanguage language) {
    language_ = language;
    locale_.clear();
}

std::u16string StringTable::Get(std::string_view key) const {
    const StringMap& table = CurrentTable();
    const auto found = table.find(key);
    return found != table.end() ? found->second : Widened(key);
}

const StringMap& StringTable::CurrentTable() const {
    if (locale_.empty()) locale_ = ResolveLocaleName(language_, userLocale_);
    const auto cached = tables_.find(locale_);
    if (cached != tables_.end()) return cached->second;
    const std::u16string folder = JoinPath(JoinPath(baseFolder_, u"resources"), u"strings");
    return tables_.emplace(locale_, LoadStringFile(JoinPath(folder, locale_ + u".txt")))
        .first->second;
}

} // namespace kvx
