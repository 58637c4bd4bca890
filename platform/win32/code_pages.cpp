#include "platform/host_code_pages.h"

#include "platform/win32/wide.h"

#include <windows.h>

#include <bitset>
#include <climits>
#include <cstddef>
#include <vector>

namespace kvx {
namespace {

std::optional<std::u16string> FromSystemPage(UINT page, ByteView bytes) {
    if (bytes.size() > INT_MAX) return std::nullopt;
    const auto size = static_cast<int>(bytes.size());
    // No character of these pages gives more units than it has bytes.
    std::u16string text(bytes.size(), u'\0');
    const int length = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS,
                                             reinterpret_cast<const char*>(bytes.data()), size,
                                             AsWideBuffer(text), size);
    if (length <= 0) return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return text;
}

/// Some systems lack EUC-KR, others may have it without the strict mode.
bool HasStrictEucKr() {
    constexpr std::uint8_t kGa[] = {0xB0, 0xA1};
    return ::IsValidCodePage(51949) != 0 && FromSystemPage(51949, kGa) == u"\uAC00";
}

UINT SystemPage(CodePage page) {
    static const UINT eucKr = HasStrictEucKr() ? 51949 : 949;
    return page == CodePage::EucKr ? eucKr : static_cast<UINT>(page);
}

using UnitSet = std::bitset<0x10000>;

/// The units to which the system gives one of `types`; `otherwise` for each where it has no answer.
UnitSet UnitsOfType(DWORD kind, unsigned types, bool otherwise) {
    std::u16string units;
    for (unsigned unit = 0; unit < 0x10000; ++unit)
        units.push_back(static_cast<char16_t>(unit));
    std::vector<WORD> found(units.size());
    UnitSet set;
    if (!::GetStringTypeW(kind, WideData(units), static_cast<int>(units.size()), found.data()))
        return otherwise ? ~set : set;
    for (std::size_t unit = 0; unit < found.size(); ++unit)
        set[unit] = (found[unit] & types) != 0;
    return set;
}

} // namespace

std::optional<std::u16string> FromHostPage(CodePage page, ByteView bytes) {
    return FromSystemPage(SystemPage(page), bytes);
}

std::optional<Bytes> ToHostPage(CodePage page, std::u16string_view text) {
    constexpr std::size_t kMostBytesPerUnit = 2;
    if (text.size() > INT_MAX / kMostBytesPerUnit) return std::nullopt;
    Bytes bytes(text.size() * kMostBytesPerUnit);
    BOOL replaced = FALSE;
    const int length = ::WideCharToMultiByte(
        SystemPage(page), WC_NO_BEST_FIT_CHARS, WideData(text), static_cast<int>(text.size()),
        reinterpret_cast<char*>(bytes.data()), static_cast<int>(bytes.size()), nullptr, &replaced);
    if (length <= 0 || replaced != FALSE) return std::nullopt;
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

bool IsControlCharacter(char16_t unit) {
    static const UnitSet set = UnitsOfType(CT_CTYPE1, C1_CNTRL, true);
    return set[unit];
}

bool IsCombiningCharacter(char16_t unit) {
    static const UnitSet set = UnitsOfType(CT_CTYPE3, C3_NONSPACING | C3_DIACRITIC, false);
    return set[unit];
}

bool IsShiftJisLeadByte(std::uint8_t byte) {
    return ::IsDBCSLeadByteEx(932, byte) != 0;
}

} // namespace kvx
