#include "encoding/row_decoder.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

Bytes AllBytes() {
    Bytes bytes(256, 0);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i);
    return bytes;
}

TEST(RowDecoder, ShowsPrintableAsciiAndAFullStopForEveryOtherByte) {
    const RowCells cells = DecodeRow(nullptr, 0, AllBytes(), TextEncoding::Ascii);
    std::u16string shown;
    for (const std::u16string& cell : cells)
        shown += cell;
    const std::u16string printable = u" !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                     u"[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~";
    EXPECT_EQ(shown, std::u16string(32, u'.') + printable + std::u16string(129, u'.'));
    EXPECT_EQ(cells.size(), 256U);
}

TEST(RowDecoder, DecodesAnUnknownEncodingAsAscii) {
    const auto unknown = static_cast<TextEncoding>(kTextEncodingCount);
    EXPECT_EQ(DecodeRow(nullptr, 32, AllBytes(), unknown),
              DecodeRow(nullptr, 32, AllBytes(), TextEncoding::Ascii));
}

TEST(RowDecoder, GivesNoCellsForAnEmptyRow) {
    EXPECT_TRUE(DecodeRow(nullptr, 0, ByteView(), TextEncoding::Ascii).empty());
}

} // namespace
} // namespace kvx
