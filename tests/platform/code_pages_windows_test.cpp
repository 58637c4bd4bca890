// The converters and the tables of other hosts against the system itself.
#include "platform/character_classes.h"
#include "platform/win32/wide.h"

#include "tests/platform/code_page_inputs.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <span>

namespace kvx {
namespace {

/// The system's own strict answers, one page of it.
struct SystemPage {
    UINT number;
    DWORD writingFlags;

    std::optional<std::u16string> operator()(ByteView bytes) const {
        char16_t text[8] = {};
        const int length = ::MultiByteToWideChar(
            number, MB_ERR_INVALID_CHARS, reinterpret_cast<const char*>(bytes.data()),
            static_cast<int>(bytes.size()), reinterpret_cast<wchar_t*>(text), 8);
        if (length <= 0) return std::nullopt;
        return std::u16string(text, static_cast<std::size_t>(length));
    }

    std::optional<Bytes> Write(std::u16string_view text) const {
        char bytes[16] = {};
        BOOL replaced = FALSE;
        const int length = ::WideCharToMultiByte(number, writingFlags, WideData(text),
                                                 static_cast<int>(text.size()), bytes, 16, nullptr,
                                                 number == CP_UTF8 ? nullptr : &replaced);
        if (length <= 0 || replaced != FALSE) return std::nullopt;
        const auto* const first = reinterpret_cast<const std::uint8_t*>(bytes);
        return Bytes(first, first + length);
    }
};

TEST(CodePagesOnWindows, ConvertAsTheSystem) {
    for (const CodePage page :
         {CodePage::Thai, CodePage::ShiftJis, CodePage::Gbk, CodePage::Korean949, CodePage::Big5,
          CodePage::Vietnamese, CodePage::Utf8}) {
        const SystemPage system{static_cast<UINT>(page), page == CodePage::Utf8
                                                             ? DWORD{WC_ERR_INVALID_CHARS}
                                                             : DWORD{WC_NO_BEST_FIT_CHARS}};
        SCOPED_TRACE(system.number);
        EXPECT_EQ(DecodedOtherwise(page, system), std::vector<std::string>());
        for (unsigned unit = 0; unit < 0x10000; ++unit) {
            const char16_t text[] = {static_cast<char16_t>(unit), u'?'};
            EXPECT_EQ(ToCodePage(page, {text, 2}), system.Write({text, 2})) << unit;
        }
    }
}

bool HasType(char16_t unit, DWORD kind, unsigned types) {
    const auto character = static_cast<wchar_t>(unit);
    WORD found = 0;
    const BOOL known = ::GetStringTypeW(kind, &character, 1, &found);
    return known == FALSE ? kind == CT_CTYPE1 : (found & types) != 0;
}

bool IsIn(std::span<const UnitRange> ranges, char16_t unit) {
    return std::ranges::any_of(ranges, [unit](const UnitRange& range) {
        return unit >= range.first && unit <= range.last;
    });
}

// When the table differs, write it anew with tools/write_character_classes.cpp.
TEST(CharacterClassesOnWindows, AreTheSystemsAndSoIsTheTableForOtherHosts) {
    for (unsigned number = 0; number < 0x10000; ++number) {
        const auto unit = static_cast<char16_t>(number);
        const bool control = HasType(unit, CT_CTYPE1, C1_CNTRL);
        const bool combining = HasType(unit, CT_CTYPE3, C3_NONSPACING | C3_DIACRITIC);
        EXPECT_EQ(IsControlCharacter(unit), control) << number;
        EXPECT_EQ(IsIn(kControlUnits, unit), control) << number;
        EXPECT_EQ(IsCombiningCharacter(unit), combining) << number;
        EXPECT_EQ(IsIn(kCombiningUnits, unit), combining) << number;
    }
}

} // namespace
} // namespace kvx
