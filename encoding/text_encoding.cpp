#include "encoding/text_encoding.h"

#include <array>
#include <cstddef>

namespace kvx {
namespace {

struct EncodingNames {
    std::u16string_view display;
    std::string_view menuKey;
};

/// In the order of the enumeration.
constexpr std::array<EncodingNames, kTextEncodingCount> kNames = {{
    {u"ASCII", "menu.view.encoding.ascii"},
    {u"UTF-8", "menu.view.encoding.utf8"},
    {u"UTF-16 LE", "menu.view.encoding.utf16le"},
    {u"UTF-16 BE", "menu.view.encoding.utf16be"},
    {u"Shift_JIS", "menu.view.encoding.shiftjis"},
    {u"Windows-949", "menu.view.encoding.windows949"},
    {u"EUC-KR", "menu.view.encoding.euckr"},
    {u"Big5", "menu.view.encoding.big5"},
    {u"GBK", "menu.view.encoding.gbk"},
    {u"TIS-620", "menu.view.encoding.tis620"},
    {u"Windows-1258", "menu.view.encoding.windows1258"},
    {u"ISCII (Devanagari)", "menu.view.encoding.iscii_devanagari"},
}};

const EncodingNames& NamesOf(TextEncoding encoding) {
    const auto index = static_cast<std::size_t>(encoding);
    return kNames[index < kNames.size() ? index : 0];
}

} // namespace

std::u16string_view EncodingDisplayName(TextEncoding encoding) {
    return NamesOf(encoding).display;
}

std::string_view EncodingMenuKey(TextEncoding encoding) {
    return NamesOf(encoding).menuKey;
}

} // namespace kvx
