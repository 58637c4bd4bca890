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

struct Case {
    SearchType type;
    TextEncoding encoding;
    std::u16string_view query;
    Pattern pattern;
};

// Replaying what the fuzzer has collected compares many more with plain rules.
TEST(SearchQuery, IsPairsOfHexDigitsOrTextInTheEncodingOfTheView) {
    using enum TextEncoding;
    constexpr auto kHex = SearchType::Hex;
    constexpr auto kText = SearchType::Text;
    const Case cases[] = {
        {kHex, Utf8, u"F F\u3000e\r\ne\t0a", Bytes{0xFF, 0xEE, 0x0A}},
        {kHex, Utf8, u"+7-1", Bytes{0x07, 0xFF}}, // each pair is a number, so it may have a sign
        {kHex, Utf8, u" ", kInvalidHex},
        {kHex, Utf8, u"123", kInvalidHex},
        {kHex, Utf8, u"7+", kInvalidHex},
        {kHex, Utf8, u"0x", kInvalidHex},
        {kHex, Utf8, u"\uFF11\uFF11", kInvalidHex},
        {kText, Ascii, u"a b", Bytes{'a', ' ', 'b'}},
        {kText, Ascii, u"\u00E9", kInvalidText},
        {kText, Ascii, u"", kInvalidText},
        {kText, Utf16Be, u"a\u3042", Bytes{0x00, 0x61, 0x30, 0x42}},
        {kText, ShiftJis, u"\u3042", Bytes{0x82, 0xA0}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(BuildPattern(c.type, c.query, c.encoding), c.pattern)
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
    struct Row {
        std::uint64_t anchor;
        std::uint64_t end;
        std::optional<std::uint64_t> next;
        std::optional<std::uint64_t> previous;
    };
    HexViewState view{.caret = 50};
    EXPECT_EQ(SearchStart(view, 100, SearchDirection::Next), 50U);
    EXPECT_EQ(SearchStart(view, 100, SearchDirection::Previous), 50U);
    view.hasSelection = true;
    for (const auto& [anchor, end, next, previous] : {Row{10, 20, 11, 9},
                                                      {20, 10, 11, 9},
                                                      {0, 20, 1, std::nullopt},
                                                      {98, 99, 99, 97},
                                                      {99, 99, std::nullopt, 98}}) {
        view.selAnchor = anchor;
        view.selEnd = end;
        EXPECT_EQ(SearchStart(view, 100, SearchDirection::Next), next) << anchor;
        EXPECT_EQ(SearchStart(view, 100, SearchDirection::Previous), previous) << anchor;
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
