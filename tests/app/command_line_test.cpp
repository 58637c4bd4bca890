#include "app/command_line.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(CommandLine, OpensTheFirstArgumentOnly) {
    EXPECT_EQ(StartFileOf({u"kivra.exe", u"a.bin", u"b.bin"}), u"a.bin");
    EXPECT_EQ(StartFileOf({u"kivra.exe", u"", u"b.bin"}), std::nullopt);
    EXPECT_EQ(StartFileOf({u"kivra.exe"}), std::nullopt);
    EXPECT_EQ(StartFileOf({}), std::nullopt);
}

TEST(CommandLine, QuotesTheProgramAndTheFile) {
    EXPECT_EQ(NewProcessCommandLine(u"C:\\My Tools\\kivra.exe", u"D:\\my data\\a.bin"),
              u"\"C:\\My Tools\\kivra.exe\" \"D:\\my data\\a.bin\"");
}

} // namespace
} // namespace kvx
