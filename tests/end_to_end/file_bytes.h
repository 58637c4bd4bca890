// Files of known bytes and the bytes of files, for comparing what the program wrote.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace kvx::test {

/// `count` bytes that depend on `seed` alone.
inline std::string KnownBytes(std::size_t count, std::uint32_t seed = 1) {
    std::mt19937 random(seed);
    std::string bytes(count, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFFU);
    return bytes;
}

inline void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadFileBytes(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// True when both are the same; a failing comparison of millions of bytes would print them all.
inline bool FileEquals(const std::filesystem::path& path, const std::string& bytes) {
    return ReadFileBytes(path) == bytes;
}

} // namespace kvx::test
