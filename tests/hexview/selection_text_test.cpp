#include "hexview/selection_text.h"

#include "tests/hexview/memory_document.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>

namespace kvx {
namespace {

/// A document whose bytes cannot be brought into memory.
class MemorylessDocument final : public IReadOnlyDocument {
public:
    bool IsOpen() const override { return true; }
    std::uint64_t GetSize() const override { return 100; }
    std::u16string GetPath() const override { return {}; }
    Bytes ReadBytes(std::uint64_t, std::uint64_t) const override { throw std::bad_alloc(); }
};

TEST(SelectionText, SeparatesUpperCasePairsBySingleBlanks) {
    const MemoryDocument document({0x99, 0x0A, 0x1B, 0xFF, 0x00});
    EXPECT_EQ(HexText(document, 1, 3), u"0A 1B FF");
    EXPECT_EQ(HexText(document, 4, 4), u"00");
}

TEST(SelectionText, JoinsBlocksWithoutAGap) {
    const std::size_t count = 700'000; // three blocks
    const MemoryDocument document(CountingBytes(count));
    std::u16string expected;
    for (std::size_t i = 0; i < count; ++i)
        (expected += u"0123456789ABCDEF"[i / 16 % 16]) += {u"0123456789ABCDEF"[i % 16], u' '};
    expected.pop_back();
    EXPECT_EQ(HexText(document, 0, count - 1), expected);
    EXPECT_EQ(document.reads, 3U);
}

TEST(SelectionText, EndsWhereTheDocumentHasShrunkTo) {
    const MemoryDocument document({0x01, 0x02});
    EXPECT_EQ(HexText(document, 0, 9), u"01 02");
    EXPECT_EQ(HexText(document, 2, 9), std::nullopt);
}

TEST(SelectionText, IsNothingWhenThereIsNoMemoryForIt) {
    const HugeDocument huge(std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(HexText(huge, 0, huge.GetSize() - 1), std::nullopt);
    EXPECT_EQ(HexText(MemorylessDocument(), 0, 9), std::nullopt);
}

} // namespace
} // namespace kvx
