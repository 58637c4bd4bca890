#include "encoding/text_encoding.h"

#include <array>
#include <cstddef>

namespace kvx {
namespace {

/// In the order of the enumeration.
constexpr std::array<std::u16string_view, kTextEncodingCount> kDisplayNames = {
    u"ASCII",  u"UTF-8", u"UTF-16 LE", u"UTF-16 BE", u"Shift_JIS",    u"Windows-949",
    u"EUC-KR", u"Big5",  u"GBK",       u"TIS-620",   u"Windows-1258", u"ISCII (Devanagari)",
};

} // namespace

std::u16string_view EncodingDisplayName(TextEncoding encoding) {
    const auto index = static_cast<std::size_t>(encoding);
    return index < kDisplayNames.size() ? kDisplayNames[index] : kDisplayNames[0];
}

} // namespace kvx
