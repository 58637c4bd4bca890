#include "app/progress_throttle.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(ProgressThrottle, ShowsReportsThatAreNewAndNotTooSoon) {
    struct Row {
        std::uint64_t done;
        std::uint64_t tick;
        std::optional<std::uint64_t> shown;
    };
    // One operation of 1000 bytes, in order.
    const Row rows[] = {
        {0, 10'000, 0},
        {0, 10'099, std::nullopt},  // the same again
        {0, 10'100, 0},             // the same, a while later
        {10, 10'149, std::nullopt}, // within 50 ms of the last
        {10, 10'150, 1},
        {19, 10'249, std::nullopt}, // still 1 %
        {19, 10'250, 1},
        {990, 10'299, std::nullopt},
        {990, 10'300, 99},
        {1000, 10'300, 100}, // the end shows at once
        {1000, 10'399, std::nullopt},
        {2000, 10'400, 100}, // never above 100
    };
    ProgressThrottle throttle;
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.done << " at " << row.tick);
        EXPECT_EQ(throttle.Report(row.done, 1000, row.tick), row.shown);
    }
}

TEST(ProgressThrottle, ShowsTheFirstReportOfAnOperationWhateverItIs) {
    EXPECT_EQ(ProgressThrottle().Report(0, 0, 5'000), 100U);
    EXPECT_EQ(ProgressThrottle().Report(std::uint64_t{1} << 50, std::uint64_t{1} << 51, 5'000),
              50U);
}

} // namespace
} // namespace kvx
