#include "hexview/frame.h"

#include <array>

namespace kvx {
namespace {

constexpr Color Rgb(std::uint32_t rgb, float alpha = 1.0F) {
    return {.red = static_cast<float>(rgb >> 16U) / 255.0F,
            .green = static_cast<float>(rgb >> 8U & 0xFFU) / 255.0F,
            .blue = static_cast<float>(rgb & 0xFFU) / 255.0F,
            .alpha = alpha};
}

/// Colours in the order of ColorRole. `highlight` is part of every palette, but nothing is drawn in
/// it.
struct Palette {
    std::array<Color, kColorRoleCount> roles;
    Color highlight;
};

constexpr std::array<Palette, 3> kPalettes{{
    {.roles = {Rgb(0xF6F4EF), Rgb(0x202020), Rgb(0x5F6B76), Rgb(0x9FC5E8, 0.75F), Rgb(0x1B1B1B)},
     .highlight = Rgb(0x9FC5E8, 0.75F)},
    {.roles = {Rgb(0x0D1B2A), Rgb(0xE6EDF3), Rgb(0x8FB7E2), Rgb(0x1F6FEB, 0.45F), Rgb(0x9EC1FF)},
     .highlight = Rgb(0x2F81F7, 0.38F)},
    {.roles = {Rgb(0x111111), Rgb(0xF3F3F3), Rgb(0xB9B9B9), Rgb(0x707070, 0.48F), Rgb(0xF3F3F3)},
     .highlight = Rgb(0x5A5A5A, 0.55F)},
}};

} // namespace

Color ThemeColor(Theme theme, ColorRole role) {
    const auto index = static_cast<std::size_t>(theme);
    const Palette& palette = index < kPalettes.size() ? kPalettes[index] : kPalettes[0];
    return palette.roles[static_cast<std::size_t>(role)];
}

} // namespace kvx
