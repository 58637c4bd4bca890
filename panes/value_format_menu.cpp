#include "panes/value_format_menu.h"

namespace kvx {

bool IsValueFormatChosen(const StructViewFormat& format, std::uint32_t option) {
    return WithValueFormat(format, option) == format;
}

StructViewFormat WithValueFormat(StructViewFormat format, std::uint32_t option) {
    switch (option) {
    case 1:
        format.byteArrayFormat = ByteArrayFormat::Hex;
        break;
    case 2:
        format.byteArrayFormat = ByteArrayFormat::Ascii;
        break;
    case 3:
        format.endian = Endian::Little;
        break;
    case 4:
        format.endian = Endian::Big;
        break;
    case 5:
        format.numericBase = NumericBase::Hex;
        break;
    case 6:
        format.numericBase = NumericBase::Dec;
        break;
    default:
        break;
    }
    return format;
}

} // namespace kvx
