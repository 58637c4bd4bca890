// The tables against those of the C library's iconv, which come from elsewhere.
#include "platform/code_pages.h"

#include "tests/platform/code_page_inputs.h"

#include <gtest/gtest.h>

#include <iconv.h>

#include <cstring>
#include <map>

namespace kvx {
namespace {

/// Bytes, or pairs as one number, that iconv leaves undefined and the system reads as controls of
/// the same value, or that iconv reads and the system does not.
struct KnownCodes {
    CodePage page;
    int first;
    int last;
    bool isControl;
};
constexpr KnownCodes kKnownCodes[] = {
    // Undefined in the standards.
    {CodePage::Thai, 0x81, 0x84, true},
    {CodePage::Thai, 0x86, 0x90, true},
    {CodePage::Thai, 0x98, 0x9F, true},
    {CodePage::ShiftJis, 0x80, 0x80, true},
    {CodePage::Korean949, 0x80, 0x80, true},
    {CodePage::Vietnamese, 0x81, 0x81, true},
    {CodePage::Vietnamese, 0x8A, 0x8A, true},
    {CodePage::Vietnamese, 0x8D, 0x90, true},
    {CodePage::Vietnamese, 0x9A, 0x9A, true},
    {CodePage::Vietnamese, 0x9D, 0x9E, true},
    // Neither letters nor beginnings of pairs, which the row decoders never ask for.
    {CodePage::EucKr, 0x80, 0xA0, false},
    // A postal mark that the standard has only had since 2002.
    {CodePage::EucKr, 0xA2E8, 0xA2E8, false},
};

/// Pairs for users' own characters, undefined in iconv: those in the rectangle that iconv refuses
/// and no row before has taken are, in order, the private units from `unit` on.
struct UserPairs {
    CodePage page;
    std::uint8_t firstLead;
    std::uint8_t lastLead;
    std::uint8_t firstTrail;
    std::uint8_t lastTrail;
    char16_t unit;
};
constexpr UserPairs kUserPairs[] = {
    {CodePage::Gbk, 0xAA, 0xAF, 0xA1, 0xFE, 0xE000}, // three areas
    {CodePage::Gbk, 0xF8, 0xFE, 0xA1, 0xFE, 0xE234},
    {CodePage::Gbk, 0xA1, 0xA7, 0x40, 0xA0, 0xE4C6},
    {CodePage::Gbk, 0xA2, 0xA9, 0x40, 0xFE, 0xE766}, // gaps between the symbols
    {CodePage::Gbk, 0xD7, 0xD7, 0xFA, 0xFE, 0xE810}, // the end of the frequent ideographs
    {CodePage::Gbk, 0xFE, 0xFE, 0x50, 0xA0, 0xE815}, // what Unicode lacked at first
    {CodePage::Korean949, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000},
    {CodePage::Korean949, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E},
    {CodePage::EucKr, 0xC9, 0xC9, 0xA1, 0xFE, 0xE000},
    {CodePage::EucKr, 0xFE, 0xFE, 0xA1, 0xFE, 0xE05E},
    {CodePage::Big5, 0xFA, 0xFE, 0x40, 0xFE, 0xE000},
    {CodePage::Big5, 0x8E, 0xA0, 0x40, 0xFE, 0xE311},
    {CodePage::Big5, 0x81, 0x8D, 0x40, 0xFE, 0xEEB8},
};

bool IsTrail(CodePage page, unsigned byte) {
    return byte != 0x7F && (page != CodePage::Big5 || byte < 0x80 || byte > 0xA0);
}

using Text = std::optional<std::u16string>;

/// iconv for one page, with the known differences. Asked character by character, since it joins a
/// letter of page 1258 and its mark to one unit where the system keeps two.
class Oracle {
public:
    Oracle(CodePage itsPage, const char* name)
        : page(itsPage), converter(::iconv_open("UTF-16LE", name)) {
        EXPECT_NE(converter, iconv_t(-1)) << name;
        for (const UserPairs& row : kUserPairs) {
            if (row.page == page) AddUserPairs(row);
        }
    }
    ~Oracle() { ::iconv_close(converter); }
    Oracle(const Oracle&) = delete;
    Oracle& operator=(const Oracle&) = delete;

    Text operator()(ByteView bytes) const {
        const Text first = Character(bytes.first(1));
        if (bytes.size() == 1) return first;
        if (!first) return Character(bytes);
        const Text second = Character(bytes.subspan(1));
        return second ? Text(*first + *second) : std::nullopt;
    }

private:
    /// `bytes` as one character.
    Text Character(ByteView bytes) const {
        const int code = bytes.size() == 1 ? bytes[0] : bytes[0] << 8 | bytes[1];
        for (const KnownCodes& row : kKnownCodes) {
            if (row.page != page || code < row.first || code > row.last) continue;
            return row.isControl ? Text({bytes[0]}) : std::nullopt;
        }
        const auto found = userPairs.find(code);
        if (found != userPairs.end()) return Text({found->second});
        const Text text = Converted(bytes);
        return text && text->size() == 1 ? text : std::nullopt; // else it took the bytes apart
    }

    Text Converted(ByteView bytes) const {
        std::array<char, 2> in = {};
        std::memcpy(in.data(), bytes.data(), bytes.size());
        std::array<char16_t, 4> out = {};
        char* from = in.data();
        char* to = reinterpret_cast<char*>(out.data());
        std::size_t left = bytes.size();
        std::size_t room = sizeof out;
        ::iconv(converter, nullptr, nullptr, nullptr, nullptr);
        if (::iconv(converter, &from, &left, &to, &room) != 0) return std::nullopt;
        // What waits for a mark that might follow.
        ::iconv(converter, nullptr, nullptr, &to, &room);
        return std::u16string(out.data(), (sizeof out - room) / sizeof out[0]);
    }

    void AddUserPairs(const UserPairs& row) {
        char16_t unit = row.unit;
        for (int lead = row.firstLead; lead <= row.lastLead; ++lead) {
            for (int trail = row.firstTrail; trail <= row.lastTrail; ++trail) {
                const std::uint8_t pair[] = {static_cast<std::uint8_t>(lead),
                                             static_cast<std::uint8_t>(trail)};
                if (!IsTrail(page, pair[1]) || Character(pair)) continue;
                userPairs[lead << 8 | trail] = unit++;
            }
        }
    }

    CodePage page;
    iconv_t converter;
    std::map<int, char16_t> userPairs;
};

TEST(CodePagesOnPosix, DecodeAsIconvButForTheKnownDifferences) {
    const std::pair<CodePage, const char*> pages[] = {
        {CodePage::Thai, "CP874"},        {CodePage::ShiftJis, "CP932"}, {CodePage::Gbk, "CP936"},
        {CodePage::Korean949, "CP949"},   {CodePage::EucKr, "EUC-KR"},   {CodePage::Big5, "CP950"},
        {CodePage::Vietnamese, "CP1258"}, {CodePage::Utf8, "UTF-8"},
    };
    for (const auto& [page, name] : pages) {
        EXPECT_EQ(DecodedOtherwise(page, Oracle(page, name)), std::vector<std::string>()) << name;
    }
}

} // namespace
} // namespace kvx
