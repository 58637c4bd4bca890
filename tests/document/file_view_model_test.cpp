#include "document/file_view_model.h"

#include "tests/document/faulty_file_layer.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kvx {
namespace {

std::string Text(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

class FileViewModelTest : public testing::Test {
protected:
    TempFolder folder_;
    FaultyFileLayer files_;
    FileViewModel model_{files_};
};

TEST_F(FileViewModelTest, ReadsAreCutAtTheEndAndAreOneReadOfTheFile) {
    ASSERT_TRUE(model_.Open(folder_.Write(u"f", "0123456789")));
    EXPECT_EQ(model_.GetSize(), 10U);
    EXPECT_EQ(model_.GetPath(), folder_.Path(u"f"));
    EXPECT_EQ(Text(model_.ReadBytes(0, 4)), "0123");
    EXPECT_EQ(files_.Count(Call::Read), 1);
    EXPECT_EQ(Text(model_.ReadBytes(9, ~std::uint64_t{0})), "9");
    EXPECT_TRUE(model_.ReadBytes(~std::uint64_t{0}, 1).empty());
    EXPECT_TRUE(model_.ReadBytes(3, 0).empty());
}

TEST_F(FileViewModelTest, AFailedReadIsEmptyAndTellsItsReason) {
    ASSERT_TRUE(model_.Open(folder_.Write(u"f", "0123456789")));
    files_.Arm({.call = Call::Read, .number = 1, .code = 1117},
               Fault{.call = Call::Read, .number = 2, .code = 23});
    EXPECT_TRUE(model_.ReadBytes(0, 10).empty());
    ErrorCode error = 0;
    Bytes target(4);
    EXPECT_EQ(model_.ReadInto(0, target, error), 0U);
    EXPECT_EQ(error, 23U);
    EXPECT_EQ(model_.ReadInto(0, target, error), 4U);
    EXPECT_EQ(error, 0U);
}

} // namespace
} // namespace kvx
