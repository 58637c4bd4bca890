#include "settings/stored_names.h"

#include <algorithm>
#include <string>

namespace kvx {
namespace {

struct EncodingRow {
    std::string_view languageGroup;
    std::string_view identifier;
    std::array<std::string_view, 4> spellings; ///< folded; unused places are empty
};

/// Listed by value of the encoding.
constexpr std::array<EncodingRow, kTextEncodingCount> kEncodingRows{{
    {"", "ascii", {"ascii"}},
    {"", "utf8", {"utf8"}},
    {"", "utf16le", {"utf16le"}},
    {"", "utf16be", {"utf16be"}},
    {"japanese", "cp932", {"cp932", "windows31j", "shiftjis", "sjis"}},
    {"korean", "cp949", {"cp949", "windows949", "windows31k"}},
    {"korean", "euc-kr", {"euckr"}},
    {"chinese", "big5", {"big5"}},
    {"chinese", "gbk", {"gbk", "cp936"}},
    {"thai", "tis-620", {"tis620", "iso885911", "cp874", "windows874"}},
    {"vietnamese", "windows-1258", {"windows1258", "cp1258"}},
    {"indic", "iscii-devanagari", {"isciidevanagari", "iscii91devanagari", "iscii"}},
}};

const EncodingRow& RowOf(TextEncoding encoding) {
    const auto index = static_cast<std::size_t>(encoding);
    return kEncodingRows[index < kEncodingRows.size() ? index : 0];
}

/// ASCII letters in lower case and digits; everything else is dropped.
std::string Folded(std::string_view identifier) {
    std::string folded;
    for (const char c : identifier) {
        if (c >= 'A' && c <= 'Z') {
            folded += static_cast<char>(c - 'A' + 'a');
        } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            folded += c;
        }
    }
    return folded;
}

template <typename Accept>
std::optional<TextEncoding> FindEncoding(const std::string& folded, Accept accept) {
    if (folded.empty()) return std::nullopt;
    for (std::uint32_t value = 0; value < kTextEncodingCount; ++value) {
        const EncodingRow& row = kEncodingRows[value];
        if (accept(row) && std::ranges::find(row.spellings, folded) != row.spellings.end()) {
            return static_cast<TextEncoding>(value);
        }
    }
    return std::nullopt;
}

} // namespace

std::string_view EncodingIdentifier(TextEncoding encoding) {
    return RowOf(encoding).identifier;
}

std::string_view EncodingLanguageGroup(TextEncoding encoding) {
    return RowOf(encoding).languageGroup;
}

TextEncoding EncodingOfIdentifier(std::string_view identifier) {
    return FindEncoding(Folded(identifier), [](const EncodingRow&) { return true; })
        .value_or(TextEncoding::Ascii);
}

std::optional<TextEncoding> EncodingOfCharset(std::string_view languageGroup,
                                              std::string_view identifier) {
    const std::string group = Folded(languageGroup);
    return FindEncoding(Folded(identifier), [&group](const EncodingRow& row) {
        return !row.languageGroup.empty() && row.languageGroup == group;
    });
}

} // namespace kvx
