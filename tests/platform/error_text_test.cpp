#include "platform/file_layer.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(ErrorText, IsEmptyForNoErrorAndElseNamesTheNumberOfAnUnknownCode) {
    EXPECT_EQ(Win32ErrorText(0), u"");
    EXPECT_EQ(Win32ErrorText(0xE0000001), u"Win32 error: 3758096385");
}

TEST(ErrorText, IsOneTrimmedSentencePerKnownCode) {
    std::u16string previous;
    for (const ErrorCode code : {2U, 5U, 19U, 32U, 112U, 1117U}) {
        const std::u16string text = Win32ErrorText(code);
        EXPECT_GT(text.size(), 5U) << code;
        EXPECT_FALSE(text.starts_with(u"Win32 error")) << code;
        EXPECT_EQ(text.find_last_not_of(u"\r\n "), text.size() - 1) << code;
        EXPECT_NE(text, previous) << code;
        previous = text;
    }
}

} // namespace
} // namespace kvx
