#include "pattern/directives.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace kvx {
namespace {

consteval std::uint32_t Values(std::initializer_list<unsigned> values) {
    std::uint32_t bits = 0;
    for (const unsigned value : values)
        bits |= 1U << value;
    return bits;
}

// The sets are uneven on purpose: they are the sizes that occur in real formats.
using Settings = PatternSettings;
constexpr std::array kDirectives = {
    Directive{u"sizeof_short", &Settings::sizeofShort, Values({1, 2, 4, 8})},
    Directive{u"sizeof_int", &Settings::sizeofInt, Values({1, 2, 4, 8})},
    Directive{u"sizeof_long", &Settings::sizeofLong, Values({1, 2, 4, 8})},
    Directive{u"sizeof_long_long", &Settings::sizeofLongLong, Values({1, 2, 4, 8, 16})},
    Directive{u"sizeof_float", &Settings::sizeofFloat, Values({2, 4, 8, 16})},
    Directive{u"sizeof_double", &Settings::sizeofDouble, Values({4, 8, 16})},
    Directive{u"pointer_size", &Settings::pointerSize, Values({1, 2, 4, 8, 16})},
    Directive{u"member_align", &Settings::memberAlign, Values({0, 4, 8})},
};

} // namespace

std::span<const Directive> NumericDirectives() {
    return kDirectives;
}

const Directive* FindDirective(std::u16string_view name) {
    const auto found = std::ranges::find(kDirectives, name, &Directive::name);
    return found == kDirectives.end() ? nullptr : &*found;
}

} // namespace kvx
