#include "app/font_choice.h"

#include "platform/characters.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvx {
namespace {

bool IsOffered(const InstalledFont& font) {
    return font.fixedPitch && !font.family.empty() && font.family.front() != u'@';
}

// Where the first element for which `matches` holds stands; 0 when there is none.
template <typename Range, typename Predicate>
std::size_t IndexOrFirst(const Range& range, Predicate matches) {
    const auto found = std::find_if(range.begin(), range.end(), matches);
    return found == range.end() ? 0 : static_cast<std::size_t>(found - range.begin());
}

} // namespace

std::vector<std::u16string> FixedPitchFamilies(std::vector<InstalledFont> fonts) {
    std::vector<std::u16string> families;
    for (InstalledFont& font : fonts) {
        if (IsOffered(font)) families.push_back(std::move(font.family));
    }
    // By the lower-case letters: file names, which go by the upper-case ones, put "_" behind them.
    const auto before = [](const std::u16string& left, const std::u16string& right) {
        return std::ranges::lexicographical_compare(left, right, {}, ToLower, ToLower);
    };
    const auto same = [](const std::u16string& left, const std::u16string& right) {
        return std::ranges::equal(left, right, {}, ToLower, ToLower);
    };
    std::stable_sort(families.begin(), families.end(), before); // the first spelling stays
    families.erase(std::unique(families.begin(), families.end(), same), families.end());
    return families;
}

std::size_t FamilyIndex(const std::vector<std::u16string>& families, std::u16string_view family) {
    return IndexOrFirst(families, [family](const std::u16string& each) {
        return CompareIgnoringCase(each, family) == 0;
    });
}

std::size_t PointsIndex(float points) {
    const long rounded = std::lroundf(points);
    return IndexOrFirst(kFontPoints, [rounded](int each) { return each == rounded; });
}

} // namespace kvx
