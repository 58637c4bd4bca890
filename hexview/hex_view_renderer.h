// Draws frames with Direct2D and measures text with DirectWrite. Owned by the hex view's window,
// main thread only.
#pragma once

#include "hexview/frame.h"
#include "hexview/text_measurer.h"

#include <memory>

#include <windows.h>

namespace kvx {

class HexViewRenderer final : public TextMeasurer {
public:
    HexViewRenderer();
    ~HexViewRenderer() override;

    float WidestCharacter(const FontSpec& font, std::u16string_view set) override;
    float LineHeight(const FontSpec& font) override;

    /// Draws one frame. `paintDc` is the DC of the running paint. Lost or failing devices are
    /// released and made again at the next call; false when this call drew nothing.
    bool Draw(HWND window, HDC paintDc, const Frame& frame, Theme theme, const FontSpec& font,
              std::uint32_t dpi);

    /// Drops the render target, its brushes and the text format.
    void ReleaseDeviceResources();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kvx
