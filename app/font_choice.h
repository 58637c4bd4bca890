// What the font dialog offers and what it preselects.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

/// One font as the system lists it; most families are listed several times.
struct InstalledFont {
    std::u16string family;
    bool fixedPitch = false;
};

/// The hex view's font.
struct FontChoice {
    std::u16string family;
    float points = 0.0F;
    bool bold = false;
    bool italic = false;

    friend bool operator==(const FontChoice&, const FontChoice&) = default;
};

/// The sizes on offer, in points.
inline constexpr std::array kFontPoints = {8, 9, 10, 11, 12, 13, 14, 16, 18, 20, 24, 28};

/// The fixed-pitch families among `fonts`, each once, in alphabetical order; neither regards case.
/// Families for vertical writing, whose names begin with '@', are left out.
std::vector<std::u16string> FixedPitchFamilies(std::vector<InstalledFont> fonts);

/// Position of `family` in `families` without regard to case; 0 where it is missing.
std::size_t FamilyIndex(const std::vector<std::u16string>& families, std::u16string_view family);

/// Position in kFontPoints of the size nearest to `points` in whole points; 0 where it is missing.
std::size_t PointsIndex(float points);

} // namespace kvx
