// Settings as wild as a user and a file system can make them, from a fixed seed.
#pragma once

#include "settings/app_settings.h"

#include <cstdint>
#include <random>

namespace kvx::test {

/// Makes one record after another; the same seed gives the same records everywhere.
class RandomSettings {
public:
    explicit RandomSettings(std::uint32_t seed) : random_(seed) {}

    AppSettings Next();

    /// A whole number from 0 to `count` - 1.
    std::uint32_t Below(std::uint32_t count) {
        return static_cast<std::uint32_t>(random_() % count);
    }

private:
    bool Coin() { return Below(2) == 0; }
    std::u16string Text();
    float FontSize();
    std::vector<TextEncoding> Favorites();

    std::mt19937 random_;
};

} // namespace kvx::test
