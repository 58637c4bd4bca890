// Measuring of text in the view's font, behind an interface so that geometry is tested without one.
#pragma once

#include <string>
#include <string_view>

namespace kvx {

/// The font as the view draws with it; size in DIPs, zoom included.
struct FontSpec {
    std::u16string family;
    float sizeDip = 16.0F;
    bool bold = false;
    bool italic = false;

    friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;

    /// Largest width in DIPs of the characters of `set`, each laid out alone.
    virtual float WidestCharacter(const FontSpec& font, std::u16string_view set) = 0;

    /// Line height in DIPs: ascent, descent and line gap of the family at the font's size.
    virtual float LineHeight(const FontSpec& font) = 0;
};

} // namespace kvx
