#include "hexview/selection_text.h"

#include "tests/hexview/memory_document.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(SelectionText, JoinsUpperCasePairsByBlanksWithoutAGapBetweenBlocks) {
    const std::size_t count = 700'000; // three blocks
    const MemoryDocument document(CountingBytes(count));
    std::u16string expected;
    for (std::size_t i = 0; i < count; ++i)
        (expected += u"0123456789ABCDEF"[i / 16 % 16]) += {u"0123456789ABCDEF"[i % 16], u' '};
    expected.pop_back();
    EXPECT_EQ(HexText(document, 0, count - 1), expected);
    EXPECT_EQ(document.reads, 3U);
    EXPECT_EQ(HexText(document, 0xFE, 0xFE), u"FE");
}

TEST(SelectionText, HoldsWhatTheDocumentStillGives) {
    MemoryDocument document({0x01, 0x02});
    EXPECT_EQ(HexText(document, 0, 9), u"01 02");
    EXPECT_EQ(HexText(document, 2, 9), std::nullopt);
    document.zerosBehind = ~0ULL - 2; // too long for memory
    EXPECT_EQ(HexText(document, 0, ~0ULL - 1), std::nullopt);
    document.outOfMemory = true;
    EXPECT_EQ(HexText(document, 0, 9), std::nullopt);
}

} // namespace
} // namespace kvx
