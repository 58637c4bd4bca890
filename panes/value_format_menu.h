// The struct view's menu of value formats.
#pragma once

#include "settings/app_settings.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace kvx {

/// One item of the menu. Its number, posted with PaneNotification::ValueFormat, is its index in
/// kValueFormatItems plus 1.
struct ValueFormatItem {
    std::uint32_t command; ///< in the popup menu
    std::string_view textKey;
};

/// Two items, one of them checked.
struct ValueFormatGroup {
    std::string_view captionKey;
    std::array<ValueFormatItem, 2> items;
};

inline constexpr std::array<ValueFormatGroup, 3> kValueFormatMenu = {{
    {"structview.valueformat.bytearray",
     {{{4201, "structview.valueformat.bytearray.hex"},
       {4202, "structview.valueformat.bytearray.ascii"}}}},
    {"structview.valueformat.endian",
     {{{4203, "structview.valueformat.endian.little"},
       {4204, "structview.valueformat.endian.big"}}}},
    {"structview.valueformat.numericbase",
     {{{4205, "structview.valueformat.numericbase.hex"},
       {4206, "structview.valueformat.numericbase.dec"}}}},
}};

/// The option's number (1 to 6) that a chosen command posts; 0 for any other result of the menu.
constexpr std::uint32_t ValueFormatOption(std::uint32_t command) {
    return command >= 4201 && command <= 4206 ? command - 4200 : 0;
}

/// True when `format` has that option chosen.
bool IsValueFormatChosen(const StructViewFormat& format, std::uint32_t option);

/// `format` with the option chosen; numbers outside 1 to 6 change nothing.
StructViewFormat WithValueFormat(StructViewFormat format, std::uint32_t option);

} // namespace kvx
