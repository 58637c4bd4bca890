#include "app/search_query.h"

#include "app/search_history.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kvx {
namespace {

using testing::ElementsAre;
using Pattern = std::variant<Bytes, QueryError>;

constexpr QueryError kInvalidHex{"error.search_invalid_hex"};
constexpr QueryError kInvalidText{"error.search_invalid_text"};
constexpr QueryError kTooLong{"error.search_too_long"};

TEST(SearchQuery, HexIsPairsOfDigitsWithAnyWhiteSpaceAmongThem) {
    struct Case {
        std::u16string_view query;
        Pattern pattern;
    };
    const Case cases[] = {
        {u"0a 0B\t0c", Bytes{0x0A, 0x0B, 0x0C}},
        {u"F F\u3000e\r\ne", Bytes{0xFF, 0xEE}},
        {u"+7-1", Bytes{0x07, 0xFF}}, // each pair is a number, so it may have a sign
        {u"-0", Bytes{0x00}},
        {u"", kInvalidHex},
        {u" ", kInvalidHex},
        {u"123", kInvalidHex},
        {u"0x", kInvalidHex},
        {u"7+", kInvalidHex},
        {u"++", kInvalidHex},
        {u"0g", kInvalidHex},
        {u"12,3", kInvalidHex},
        {u"\uFF11\uFF11", kInvalidHex},
    };
    for (const Case& c : cases)
        EXPECT_EQ(BuildPattern(SearchType::Hex, c.query, TextEncoding::Utf8), c.pattern)
            << testing::PrintToString(c.query);
}

TEST(SearchQuery, TextIsBytesInTheEncodingOfTheView) {
    struct Case {
        TextEncoding encoding;
        std::u16string_view query;
        Pattern pattern;
    };
    const Case cases[] = {
        {TextEncoding::Ascii, u"a b", Bytes{'a', ' ', 'b'}},
        {TextEncoding::Ascii, u"\u00E9", kInvalidText},
        {TextEncoding::Ascii, u"", kInvalidText},
        {TextEncoding::Utf8, u"\u00E9", Bytes{0xC3, 0xA9}},
        {TextEncoding::Utf16Le, u"a\u3042", Bytes{0x61, 0x00, 0x42, 0x30}},
        {TextEncoding::Utf16Be, u"a\u3042", Bytes{0x00, 0x61, 0x30, 0x42}},
        {TextEncoding::ShiftJis, u"\u3042", Bytes{0x82, 0xA0}},
        {TextEncoding::ShiftJis, u"\uD55C", kInvalidText},
    };
    for (const Case& c : cases)
        EXPECT_EQ(BuildPattern(SearchType::Text, c.query, c.encoding), c.pattern)
            << testing::PrintToString(c.query);
}

TEST(SearchQuery, HasALimitOf4096BytesThatTheLimitsOfTypingLeaveRoomFor) {
    const auto hex = [](std::size_t bytes) { return std::u16string(2 * bytes, u'7'); };
    const auto build = [](SearchType type, const std::u16string& query) {
        return BuildPattern(type, query, TextEncoding::Utf8);
    };
    EXPECT_EQ(build(SearchType::Hex, hex(4096)), Pattern(Bytes(4096, 0x77)));
    EXPECT_EQ(build(SearchType::Hex, hex(4097)), Pattern(kTooLong));
    EXPECT_EQ(build(SearchType::Text, std::u16string(4096, u'a')), Pattern(Bytes(4096, 'a')));
    EXPECT_EQ(build(SearchType::Text, std::u16string(4096, u'\u00E9')), Pattern(kTooLong));
    for (std::uint32_t i = 0; i < kTextEncodingCount; ++i) {
        const auto encoding = static_cast<TextEncoding>(i);
        EXPECT_EQ(MaxQueryLength(SearchType::Text, encoding), i >= 2 && i <= 8 ? 2048U : 4096U);
        EXPECT_EQ(MaxQueryLength(SearchType::Hex, encoding), 12287U);
    }
}

TEST(SearchQuery, IsTrimmedOfBlanksAndLineEndsOnly) {
    EXPECT_EQ(TrimQuery(u" \t\r\n a b\n"), u"a b");
    EXPECT_EQ(TrimQuery(u"\u3000a\v"), u"\u3000a\v");
    EXPECT_EQ(TrimQuery(u" \t"), u"");
}

TEST(SearchQuery, StartsAtTheCaretOrStepsOverTheSelectionsFirstByte) {
    constexpr std::uint64_t kSize = 100;
    struct Case {
        bool hasSelection;
        std::uint64_t anchor;
        std::uint64_t end;
        std::optional<std::uint64_t> next;
        std::optional<std::uint64_t> previous;
    };
    const Case cases[] = {
        {false, 10, 20, 50, 50},        {true, 10, 20, 11, 9},  {true, 20, 10, 11, 9},
        {true, 0, 20, 1, std::nullopt}, {true, 98, 99, 99, 97}, {true, 99, 99, std::nullopt, 98},
    };
    for (const Case& c : cases) {
        HexViewState view;
        view.caret = 50;
        view.hasSelection = c.hasSelection;
        view.selAnchor = c.anchor;
        view.selEnd = c.end;
        EXPECT_EQ(SearchStart(view, kSize, SearchDirection::Next), c.next) << c.anchor;
        EXPECT_EQ(SearchStart(view, kSize, SearchDirection::Previous), c.previous) << c.anchor;
    }
}

TEST(SearchHistory, KeepsTheSixteenNewestOfBothTypes) {
    std::vector<SearchHistoryEntry> history;
    for (char16_t name = u'a'; name < u'a' + 20; ++name)
        AddToSearchHistory(history, SearchType::Text, {name});
    EXPECT_EQ(history.size(), 16U);
    EXPECT_EQ(history.front(), (SearchHistoryEntry{u"text", u"t"}));
    EXPECT_EQ(history.back(), (SearchHistoryEntry{u"text", u"e"}));
    history.resize(3);
    AddToSearchHistory(history, SearchType::Hex, u"s");
    AddToSearchHistory(history, SearchType::Text, u"s");
    EXPECT_THAT(history,
                ElementsAre(SearchHistoryEntry{u"text", u"s"}, SearchHistoryEntry{u"hex", u"s"},
                            SearchHistoryEntry{u"text", u"t"}, SearchHistoryEntry{u"text", u"r"}));
    EXPECT_THAT(QueriesOfType(history, SearchType::Hex), ElementsAre(u"s"));
    EXPECT_THAT(QueriesOfType(history, SearchType::Text), ElementsAre(u"s", u"t", u"r"));
}

} // namespace
} // namespace kvx
