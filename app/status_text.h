// What the status bar says and in which colours.
#pragma once

#include "encoding/text_encoding.h"
#include "settings/app_settings.h"
#include "settings/text_lookup.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// The fields that are shown while a file is open.
struct StatusFields {
    std::uint64_t caret = 0;    ///< byte offset
    std::uint64_t fileSize = 0; ///< bytes
    TextEncoding encoding = TextEncoding::Ascii;
    bool editable = false;
    bool insertMode = false;
    bool modified = false;
    float zoom = 1.0F;

    friend bool operator==(const StatusFields&, const StatusFields&) = default;
};

/// All that the status bar can show; the first that is set wins.
struct StatusState {
    std::optional<std::u16string> flash;    ///< the read-only warning
    std::optional<std::u16string> progress; ///< of a running save or search
    std::optional<StatusFields> file;       ///< empty: no file is open
};

std::u16string StatusText(const StatusState& state, const TextLookup& text);

/// Colour components from 0 to 255.
struct RgbColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const RgbColor&, const RgbColor&) = default;
};

struct StatusColors {
    std::optional<RgbColor> background; ///< empty: the system's button face
    RgbColor text;

    friend bool operator==(const StatusColors&, const StatusColors&) = default;
};

/// Colours of the status bar; a theme outside the enumeration looks as Light.
StatusColors StatusColorsOf(Theme theme);

/// Colours of the read-only warning, the same in every theme.
StatusColors StatusFlashColors();

} // namespace kvx
