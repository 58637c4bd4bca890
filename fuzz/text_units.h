// Text out of the bytes of a fuzzer's input: any units, half surrogate pairs included.
#pragma once

#include "platform/bytes.h"

#include <string>

namespace kvx {

inline std::u16string UnitsOf(ByteView bytes, bool highByteFirst = false) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const unsigned low = bytes[highByteFirst ? i + 1 : i];
        const unsigned high = bytes[highByteFirst ? i : i + 1];
        text += static_cast<char16_t>(high << 8U | low);
    }
    return text;
}

} // namespace kvx
