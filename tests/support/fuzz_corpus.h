// Replays what the fuzzers have collected.
#pragma once

#include "platform/bytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kvx {

/// Runs a check over the files of fuzz/corpus/<name>; it gives what is wrong, or nothing.
inline void ReplayCorpus(const std::string& name, std::string (*check)(ByteView)) {
    const auto root = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(root / "fuzz" / "corpus" / name)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(check({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()}),
                  "")
            << entry.path();
        ++count;
    }
    EXPECT_GE(count, 10);
}

} // namespace kvx
