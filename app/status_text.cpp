#include "app/status_text.h"

#include "hexview/hex_digits.h"

#include <cmath>

namespace kvx {
namespace {

constexpr std::u16string_view kSeparator = u"  ";

constexpr StatusColors kThemeColors[] = {
    {std::nullopt, {0x20, 0x20, 0x20}},
    {RgbColor{0x0D, 0x1B, 0x2A}, {0xE6, 0xED, 0xF3}},
    {RgbColor{0x11, 0x11, 0x11}, {0xF3, 0xF3, 0xF3}},
};

std::u16string Percent(float zoom) {
    const std::string number = std::to_string(std::lroundf(zoom * 100.0F));
    return std::u16string(number.begin(), number.end()) + u"%";
}

std::u16string FieldsText(const StatusFields& file, const TextLookup& text) {
    std::u16string line = text("status.offset") + u": 0x";
    line += FormatOffset(file.caret, OffsetDigits(file.fileSize));
    line += kSeparator;
    line += text("status.encoding") + u": ";
    line += EncodingDisplayName(file.encoding);
    line += kSeparator;
    if (file.editable) {
        line += text("status.mode") + u": ";
        line += text(file.insertMode ? "status.mode.insert" : "status.mode.overwrite");
    } else {
        line += text("status.readonly");
    }
    if (file.modified) {
        line += kSeparator;
        line += text("status.modified");
    }
    line += kSeparator;
    line += text("status.zoom") + u": " + Percent(file.zoom);
    return line;
}

} // namespace

std::u16string StatusText(const StatusState& state, const TextLookup& text) {
    if (state.flash) return *state.flash;
    if (state.progress) return *state.progress;
    if (state.file) return FieldsText(*state.file, text);
    return text("status.no_file");
}

StatusColors StatusColorsOf(Theme theme) {
    const auto index = static_cast<std::size_t>(theme);
    return kThemeColors[index < std::size(kThemeColors) ? index : 0];
}

StatusColors StatusFlashColors() {
    return {RgbColor{0xB4, 0x20, 0x20}, {0xFF, 0xFF, 0xFF}};
}

} // namespace kvx
