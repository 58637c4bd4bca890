// Converts with tables that are drawn once per page from ICU, whose Windows pages are nearly the
// system's: the few differences are mended here.
#include "platform/host_code_pages.h"

#include "platform/character_classes.h"

#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace kvx {
namespace {

/// A byte, or the first byte of a pair times 256 plus the second.
using Code = std::uint16_t;
constexpr Code kNoCode = 0xFFFF;
constexpr char16_t kNoUnit = 0xFFFF;

/// Every character of the pages is one unit.
struct PageTable {
    std::vector<char16_t> units = std::vector<char16_t>(0x10000, kNoUnit); ///< By code.
    std::vector<Code> codes = std::vector<Code>(0x10000, kNoCode);         ///< By unit.

    void Set(Code code, char16_t unit) {
        units[code] = unit;
        codes[unit] = code;
    }
};

struct HostPage {
    CodePage page;
    const char* icuName;
};
constexpr std::array kPages = {
    HostPage{CodePage::Thai, "windows-874-2000"},
    HostPage{CodePage::ShiftJis, "ibm-943_P15A-2003"},
    HostPage{CodePage::Gbk, "windows-936-2000"},
    HostPage{CodePage::Korean949, "windows-949-2000"},
    HostPage{CodePage::Big5, "windows-950-2000"},
    HostPage{CodePage::Vietnamese, "ibm-5354_P100-1998"},
    HostPage{CodePage::EucKr, "windows-949-2000"},
};

/// Bytes that ICU's page takes otherwise than the system, which takes them so.
struct Correction {
    CodePage page;
    std::uint8_t byte;
    char16_t unit;
};
constexpr Correction kCorrections[] = {
    // ICU swaps three controls, as IBM's machines did.
    {CodePage::ShiftJis, 0x1A, 0x001A},
    {CodePage::ShiftJis, 0x1C, 0x001C},
    {CodePage::ShiftJis, 0x7F, 0x007F},
    // ICU leaves these undefined.
    {CodePage::ShiftJis, 0x80, 0x0080},
    {CodePage::ShiftJis, 0xA0, 0xF8F0},
    {CodePage::ShiftJis, 0xFD, 0xF8F1},
    {CodePage::ShiftJis, 0xFE, 0xF8F2},
    {CodePage::ShiftJis, 0xFF, 0xF8F3},
};

/// One of ICU's converters that stops where a character has no exact counterpart.
class StrictConverter {
public:
    /// Without ICU's data nothing converts.
    explicit StrictConverter(const char* name) {
        UErrorCode error = U_ZERO_ERROR;
        converter.reset(::ucnv_open(name, &error));
        if (!converter) return;
        ::ucnv_setFallback(converter.get(), false);
        ::ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                              &error);
        ::ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr,
                                nullptr, &error);
    }

    /// The unit for the bytes of one character, or kNoUnit.
    char16_t UnitOf(ByteView bytes) {
        UErrorCode error = U_ZERO_ERROR;
        char16_t units[4] = {};
        const std::int32_t length = ::ucnv_toUChars(
            converter.get(), units, std::size(units), reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::int32_t>(bytes.size()), &error);
        return U_SUCCESS(error) && length == 1 ? units[0] : kNoUnit;
    }

    /// Whether the unit becomes exactly `bytes`: some pairs share a unit, which is written as one.
    bool Writes(char16_t unit, ByteView bytes) {
        UErrorCode error = U_ZERO_ERROR;
        std::array<char, 8> found = {};
        const std::int32_t length =
            ::ucnv_fromUChars(converter.get(), found.data(), found.size(), &unit, 1, &error);
        return U_SUCCESS(error) &&
               std::ranges::equal(std::span(found).first(static_cast<std::size_t>(length)), bytes,
                                  {}, [](char c) { return static_cast<std::uint8_t>(c); });
    }

private:
    struct Close {
        void operator()(UConverter* open) const { ::ucnv_close(open); }
    };
    std::unique_ptr<UConverter, Close> converter;
};

/// Adds the character of one or two bytes; false when they are none.
bool AddCharacter(PageTable& table, StrictConverter& converter, ByteView bytes) {
    const char16_t unit = converter.UnitOf(bytes);
    if (unit == kNoUnit) return false;
    const auto code = static_cast<Code>(bytes.size() == 1 ? bytes[0] : bytes[0] << 8 | bytes[1]);
    table.units[code] = unit;
    if (converter.Writes(unit, bytes)) table.codes[unit] = code;
    return true;
}

PageTable BuildTable(const HostPage& page) {
    PageTable table;
    StrictConverter converter(page.icuName);
    std::array<std::uint8_t, 2> pair = {};
    for (unsigned lead = 0; lead < 0x100; ++lead) {
        pair[0] = static_cast<std::uint8_t>(lead);
        if (AddCharacter(table, converter, ByteView(pair).first(1))) continue;
        for (unsigned trail = 0; trail < 0x100; ++trail) {
            pair[1] = static_cast<std::uint8_t>(trail);
            AddCharacter(table, converter, pair);
        }
    }
    for (const Correction& row : kCorrections) {
        if (row.page == page.page) table.Set(row.byte, row.unit);
    }
    // Undefined bytes stand for private units; the system writes them but refuses to read them.
    const auto isPrivate = [](char16_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; };
    std::replace_if(table.units.begin(), table.units.begin() + 0x100, isPrivate, kNoUnit);
    return table;
}

/// Null for a page that the host does not bring.
const PageTable* TableOf(CodePage page) {
    static std::array<std::once_flag, kPages.size()> built;
    static std::array<std::optional<PageTable>, kPages.size()> tables;
    const auto* const row = std::ranges::find(kPages, page, &HostPage::page);
    if (row == kPages.end()) return nullptr;
    const auto index = static_cast<std::size_t>(row - kPages.begin());
    std::call_once(built[index], [&] { tables[index] = BuildTable(*row); });
    return &*tables[index];
}

using UnitSet = std::bitset<0x10000>;

UnitSet SetOf(std::span<const UnitRange> ranges) {
    UnitSet set;
    for (const UnitRange& range : ranges) {
        for (unsigned unit = range.first; unit <= range.last; ++unit)
            set.set(unit);
    }
    return set;
}

} // namespace

std::optional<std::u16string> FromHostPage(CodePage page, ByteView bytes) {
    const PageTable* const table = TableOf(page);
    if (table == nullptr) return std::nullopt;
    std::u16string text;
    for (std::size_t at = 0; at < bytes.size();) {
        unsigned code = bytes[at++];
        if (table->units[code] == kNoUnit && at < bytes.size()) code = code << 8 | bytes[at++];
        if (table->units[code] == kNoUnit) return std::nullopt;
        text.push_back(table->units[code]);
    }
    return text;
}

std::optional<Bytes> ToHostPage(CodePage page, std::u16string_view text) {
    const PageTable* const table = TableOf(page);
    if (table == nullptr) return std::nullopt;
    Bytes bytes;
    for (const char16_t unit : text) {
        const Code code = table->codes[unit];
        if (code == kNoCode) return std::nullopt;
        if (code > 0xFF) bytes.push_back(static_cast<std::uint8_t>(code >> 8));
        bytes.push_back(static_cast<std::uint8_t>(code));
    }
    return bytes;
}

bool IsControlCharacter(char16_t unit) {
    static const UnitSet set = SetOf(kControlUnits);
    return set[unit];
}

bool IsCombiningCharacter(char16_t unit) {
    static const UnitSet set = SetOf(kCombiningUnits);
    return set[unit];
}

bool IsShiftJisLeadByte(std::uint8_t byte) {
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

} // namespace kvx
