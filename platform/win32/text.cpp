#include "platform/text.h"

#include "platform/win32/wide.h"

#include <windows.h>

namespace kvx {

int CompareIgnoringCase(std::u16string_view left, std::u16string_view right) {
    return ::CompareStringOrdinal(WideData(left), static_cast<int>(left.size()), WideData(right),
                                  static_cast<int>(right.size()), TRUE) -
           CSTR_EQUAL;
}

} // namespace kvx
