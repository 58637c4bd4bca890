// A folder of its own for a test that needs real files.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

namespace kvx::test {

/// Named after the running test and a random number, and removed with all that is in it at the end.
class TempFolder {
public:
    TempFolder() {
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        const std::string number = std::to_string(std::random_device{}());
        path_ = std::filesystem::temp_directory_path() /
                (std::string("kivra-") + test->name() + "-" + number);
        std::filesystem::create_directories(path_);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    std::filesystem::path File(std::string_view name) const { return path_ / name; }

    /// The same as the program spells it.
    std::u16string Path(std::string_view name) const { return File(name).u16string(); }

    void Write(std::string_view name, std::string_view bytes) const {
        std::filesystem::create_directories(File(name).parent_path());
        std::ofstream file(File(name), std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        ASSERT_TRUE(file.good());
    }

    std::string Read(std::string_view name) const {
        std::ifstream file(File(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path path_;
};

} // namespace kvx::test
