// Text of the hex view by DirectWrite: measured, and drawn into any Direct2D target. Owned by
// HexViewRenderer, main thread only.
#pragma once

#include "hexview/frame.h"
#include "hexview/text_measurer.h"

#include <memory>
#include <span>

#include <d2d1.h>

namespace kvx {

/// Brushes by ColorRole.
using RoleBrushes = std::span<ID2D1SolidColorBrush* const, kColorRoleCount>;

/// Device pixels to the DIP of a target.
float PixelsPerDip(const ID2D1RenderTarget& target);

/// Keeps what it made for the last font it was asked about.
class TextRenderer {
public:
    TextRenderer();
    ~TextRenderer();
    TextRenderer(const TextRenderer&) = delete;
    TextRenderer& operator=(const TextRenderer&) = delete;

    /// As TextMeasurer. Without DirectWrite both are estimates from the font's size.
    float WidestCharacter(const FontSpec& font, std::u16string_view set);
    float LineHeight(const FontSpec& font);

    /// Draws texts between the target's BeginDraw and EndDraw; false when the font cannot be had.
    bool Draw(ID2D1RenderTarget& target, std::span<const FrameText> texts, const FontSpec& font,
              RoleBrushes brushes);

    /// Drops the text format and all that was made from it.
    void ReleaseFormat();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kvx
