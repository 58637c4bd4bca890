// The settings file is a fixed template, printed line by line.
#include "platform/number_text.h"
#include "platform/text.h"
#include "settings/settings_file.h"
#include "settings/stored_names.h"

#include <array>
#include <charconv>

namespace kvx {
namespace {

/// The letter that stands for `c` after a backslash; 0 when `c` has none.
char EscapeLetter(char c) {
    switch (c) {
    case '\b':
        return 'b';
    case '\t':
        return 't';
    case '\n':
        return 'n';
    case '\f':
        return 'f';
    case '\r':
        return 'r';
    case '"':
        return '"';
    case '\\':
        return '\\';
    default:
        return '\0';
    }
}

std::string Quoted(std::u16string_view text) {
    std::string quoted = "\"";
    for (const char c : Utf16ToUtf8(text)) {
        const auto byte = static_cast<unsigned char>(c);
        if (const char letter = EscapeLetter(c)) {
            quoted += {'\\', letter};
        } else if (byte < 0x20) {
            quoted += "\\u00";
            for (const char16_t digit : HexPair(byte))
                quoted += static_cast<char>(digit);
        } else {
            quoted += c;
        }
    }
    return quoted += '"';
}

/// Quotes one of the program's own words, which need no escapes.
std::string Quoted(std::string_view word) {
    return '"' + std::string(word) + '"';
}

std::string Quoted(const SearchHistoryEntry& entry) {
    return R"({"kind": )" + Quoted(std::u16string_view(entry.kind)) + R"(, "query": )" +
           Quoted(std::u16string_view(entry.query)) + "}";
}

std::string Quoted(TextEncoding encoding) {
    return Quoted(EncodingIdentifier(encoding));
}

std::string_view Literal(bool value) {
    return value ? "true" : "false";
}

/// Six significant digits in the shorter of plain and exponent form, whatever the process's locale.
std::string Number(float value) {
    std::array<char, 32> text{};
    const std::to_chars_result result =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 6);
    return {text.data(), result.ptr};
}

template <typename Entry>
std::string List(const std::vector<Entry>& entries) {
    std::string list = "[";
    for (const Entry& entry : entries) {
        if (list.size() > 1) list += ", ";
        list += Quoted(entry);
    }
    return list += "]";
}

/// Collects the lines of the file.
class Template {
public:
    void Line(std::size_t depth, std::string_view text) {
        text_.append(2 * depth, ' ').append(text).append("\r\n");
    }

    void Member(std::size_t depth, std::string_view key, std::string_view value,
                std::string_view ending = ",") {
        Line(depth, Quoted(key) + ": " + std::string(value) + std::string(ending));
    }

    void LastMember(std::size_t depth, std::string_view key, std::string_view value) {
        Member(depth, key, value, "");
    }

    std::string Take() { return std::move(text_); }

private:
    std::string text_;
};

void WriteEncoding(Template& file, TextEncoding encoding) {
    const std::string_view languageGroup = EncodingLanguageGroup(encoding);
    file.Line(1, R"("encoding": {)");
    if (languageGroup.empty()) {
        file.Member(2, "kind", Quoted("common"));
        file.LastMember(2, "common", Quoted(encoding));
    } else {
        file.Member(2, "kind", Quoted("charset"));
        file.Line(2, R"("charset": {)");
        file.Member(3, "language", Quoted(languageGroup));
        file.LastMember(3, "code", Quoted(encoding));
        file.Line(2, "}");
    }
    file.Line(1, "},");
}

void WriteFont(Template& file, const AppSettings& settings) {
    file.Line(1, R"("font": {)");
    file.Member(2, "family", Quoted(settings.fontFamily));
    file.Member(2, "size", Number(settings.fontSize));
    file.Member(2, "bold", Literal(settings.bold));
    file.LastMember(2, "italic", Literal(settings.italic));
    file.Line(1, "},");
}

void WritePanes(Template& file, const AppSettings& settings) {
    const StructViewFormat& format = settings.structViewFormat;
    file.Line(1, R"("analysis": {)");
    file.Line(2, R"("dataInspector": {)");
    file.LastMember(3, "visible", Literal(settings.dataInspectorVisible));
    file.Line(2, "},");
    file.Line(2, R"("structView": {)");
    file.Member(3, "visible", Literal(settings.structViewVisible));
    file.Member(3, "byteArrayFormat", Quoted(kByteArrayFormatNames.NameOf(format.byteArrayFormat)));
    file.Member(3, "endian", Quoted(kEndianNames.NameOf(format.endian)));
    file.LastMember(3, "numericBase", Quoted(kNumericBaseNames.NameOf(format.numericBase)));
    file.Line(2, "}");
    file.Line(1, "},");
}

} // namespace

std::string WriteSettingsText(const AppSettings& settings) {
    Template file;
    file.Line(0, "{");
    file.Member(1, "appVersion", Quoted(settings.appVersion));
    WriteEncoding(file, settings.textEncoding);
    file.Member(1, "encodingFavorites", List(settings.favoriteEncodings));
    file.Member(1, "theme", Quoted(kThemeNames.NameOf(settings.theme)));
    file.Member(1, "language", Quoted(kUiLanguageNames.NameOf(settings.uiLanguage)));
    WriteFont(file, settings);
    WritePanes(file, settings);
    file.Member(1, "recentFiles", List(settings.recentFiles));
    file.LastMember(1, "searchHistory", List(settings.searchHistory));
    file.Line(0, "}");
    return file.Take();
}

} // namespace kvx
