#include "hexview/hex_view_renderer.h"

#include "hexview/text_renderer.h"
#include "platform/system.h"
#include "platform/win32/com_ptr.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <d2d1.h>
#include <d2d1helper.h>

namespace kvx {
namespace {

D2D1_RECT_F ToD2d(const RectDip& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

D2D1_COLOR_F ToD2d(const Color& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

/// Drawing limited to a rectangle while it lives.
class ClipScope {
public:
    ClipScope(ID2D1RenderTarget& target, const RectDip& clip) : target_(target) {
        target_.PushAxisAlignedClip(ToD2d(clip), D2D1_ANTIALIAS_MODE_ALIASED);
    }
    ~ClipScope() { target_.PopAxisAlignedClip(); }
    ClipScope(const ClipScope&) = delete;
    ClipScope& operator=(const ClipScope&) = delete;

private:
    ID2D1RenderTarget& target_;
};

/// An outline on whole pixels: `rect` is its centre line.
struct PixelOutline {
    D2D1_RECT_F rect;
    float width; ///< DIPs
};

/// At 150 % a stroke of 1 DIP between pixels would be blurred on one side and bold on the other.
PixelOutline SnapToPixels(const RectDip& rect, float pixelsPerDip) {
    const float widthPx = std::max(1.0F, std::round(kOutlineWidth * pixelsPerDip));
    // The outer edges go to pixel borders, as those of the fill under the outline do.
    const auto place = [&](float center, float outwards) {
        const float edgePx = std::round((center + outwards * kOutlineWidth / 2.0F) * pixelsPerDip);
        return (edgePx - outwards * widthPx / 2.0F) / pixelsPerDip;
    };
    return {{place(rect.left, -1.0F), place(rect.top, -1.0F), place(rect.right, 1.0F),
             place(rect.bottom, 1.0F)},
            widthPx / pixelsPerDip};
}

/// Pixels of the window's client area.
D2D1_SIZE_U ClientSize(HWND window) {
    RECT client{};
    ::GetClientRect(window, &client);
    return {static_cast<UINT32>(client.right), static_cast<UINT32>(client.bottom)};
}

} // namespace

class HexViewRenderer::Impl {
public:
    bool Draw(HWND window, HDC paintDc, const Frame& frame, Theme theme, const FontSpec& font,
              std::uint32_t dpi);
    void ReleaseDeviceResources();

    TextRenderer text;

private:
    bool EnsureTarget(HWND window, HDC paintDc, D2D1_SIZE_U size);
    bool MakeWindowTarget(HWND window, D2D1_SIZE_U size);
    bool BindDcTarget(HDC paintDc, D2D1_SIZE_U size);
    bool SetBrushes(Theme theme);
    ID2D1SolidColorBrush* Brush(ColorRole role) const {
        return brushes_[static_cast<std::size_t>(role)].Get();
    }

    bool DrawFrame(const Frame& frame, Theme theme, const FontSpec& font);
    void DrawBoxes(const Frame& frame);
    bool DrawTexts(const FrameTextGroup& group, const FontSpec& font);

    ComPtr<ID2D1Factory> factory_;
    // One of the two: a window target, except where child windows cannot show one.
    ComPtr<ID2D1HwndRenderTarget> windowTarget_;
    ComPtr<ID2D1DCRenderTarget> dcTarget_;
    ID2D1RenderTarget* target_ = nullptr;                               ///< the one that was made
    std::array<ComPtr<ID2D1SolidColorBrush>, kColorRoleCount> brushes_; ///< of target_
};

bool HexViewRenderer::Impl::Draw(HWND window, HDC paintDc, const Frame& frame, Theme theme,
                                 const FontSpec& font, std::uint32_t dpi) {
    const D2D1_SIZE_U size = ClientSize(window);
    if (size.width == 0 || size.height == 0) return true; // nothing to be seen
    if (!EnsureTarget(window, paintDc, size) || !SetBrushes(theme)) {
        ReleaseDeviceResources();
        return false;
    }
    target_->SetDpi(static_cast<float>(dpi), static_cast<float>(dpi));
    target_->BeginDraw();
    const bool drawn = DrawFrame(frame, theme, font);
    const bool shown = SUCCEEDED(target_->EndDraw());
    if (!drawn || !shown) ReleaseDeviceResources();
    return drawn && shown;
}

bool HexViewRenderer::Impl::EnsureTarget(HWND window, HDC paintDc, D2D1_SIZE_U size) {
    if (!factory_) {
        const HRESULT result =
            ::D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                                reinterpret_cast<void**>(factory_.Put()));
        if (FAILED(result)) return false;
    }
    return RunsUnderWine() ? BindDcTarget(paintDc, size) : MakeWindowTarget(window, size);
}

bool HexViewRenderer::Impl::MakeWindowTarget(HWND window, D2D1_SIZE_U size) {
    if (windowTarget_) return true;
    if (FAILED(factory_->CreateHwndRenderTarget(D2D1::RenderTargetProperties(),
                                                D2D1::HwndRenderTargetProperties(window, size),
                                                windowTarget_.Put())))
        return false;
    target_ = windowTarget_.Get();
    return true;
}

bool HexViewRenderer::Impl::BindDcTarget(HDC paintDc, D2D1_SIZE_U size) {
    if (!dcTarget_) {
        const auto properties = D2D1::RenderTargetProperties(
            D2D1_RENDER_TARGET_TYPE_DEFAULT,
            D2D1::PixelFormat(DXGI_FORMAT_B8G8R8A8_UNORM, D2D1_ALPHA_MODE_IGNORE));
        if (FAILED(factory_->CreateDCRenderTarget(&properties, dcTarget_.Put()))) return false;
        target_ = dcTarget_.Get();
    }
    const RECT area{0, 0, static_cast<LONG>(size.width), static_cast<LONG>(size.height)};
    return SUCCEEDED(dcTarget_->BindDC(paintDc, &area));
}

bool HexViewRenderer::Impl::SetBrushes(Theme theme) {
    for (std::size_t i = 0; i < kColorRoleCount; ++i) {
        const D2D1_COLOR_F color = ToD2d(ThemeColor(theme, static_cast<ColorRole>(i)));
        if (brushes_[i]) {
            brushes_[i]->SetColor(color);
        } else if (FAILED(target_->CreateSolidColorBrush(color, brushes_[i].Put()))) {
            return false;
        }
    }
    return true;
}

bool HexViewRenderer::Impl::DrawFrame(const Frame& frame, Theme theme, const FontSpec& font) {
    const D2D1_COLOR_F background = ToD2d(ThemeColor(theme, ColorRole::Background));
    target_->Clear(background);
    DrawBoxes(frame);
    bool drawn = DrawTexts(frame.offsets, font) && DrawTexts(frame.hex, font);
    for (const FrameTextGroup& row : frame.cells)
        drawn = drawn && DrawTexts(row, font);
    return drawn;
}

void HexViewRenderer::Impl::DrawBoxes(const Frame& frame) {
    const ClipScope clip(*target_, frame.contentClip);
    // Neighbouring boxes of the selection share their edges: smoothed edges would show as seams.
    target_->SetAntialiasMode(D2D1_ANTIALIAS_MODE_ALIASED);
    for (const FrameBox& box : frame.fills)
        target_->FillRectangle(ToD2d(box.rect), Brush(box.color));
    target_->SetAntialiasMode(D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
    const float pixelsPerDip = PixelsPerDip(*target_);
    for (const FrameBox& box : frame.outlines) {
        const PixelOutline outline = SnapToPixels(box.rect, pixelsPerDip);
        target_->DrawRectangle(outline.rect, Brush(box.color), outline.width);
    }
}

bool HexViewRenderer::Impl::DrawTexts(const FrameTextGroup& group, const FontSpec& font) {
    if (group.texts.empty()) return true;
    const ClipScope clip(*target_, group.clip);
    std::array<ID2D1SolidColorBrush*, kColorRoleCount> brushes{};
    for (std::size_t i = 0; i < kColorRoleCount; ++i)
        brushes[i] = brushes_[i].Get();
    return text.Draw(*target_, group.texts, font, brushes);
}

void HexViewRenderer::Impl::ReleaseDeviceResources() {
    for (auto& brush : brushes_)
        brush.Reset();
    target_ = nullptr;
    windowTarget_.Reset();
    dcTarget_.Reset();
    text.ReleaseFormat();
}

HexViewRenderer::HexViewRenderer() : impl_(std::make_unique<Impl>()) {}
HexViewRenderer::~HexViewRenderer() = default;

float HexViewRenderer::WidestCharacter(const FontSpec& font, std::u16string_view set) {
    return impl_->text.WidestCharacter(font, set);
}

float HexViewRenderer::LineHeight(const FontSpec& font) {
    return impl_->text.LineHeight(font);
}

bool HexViewRenderer::Draw(HWND window, HDC paintDc, const Frame& frame, Theme theme,
                           const FontSpec& font, std::uint32_t dpi) {
    return impl_->Draw(window, paintDc, frame, theme, font, dpi);
}

void HexViewRenderer::ReleaseDeviceResources() {
    impl_->ReleaseDeviceResources();
}

} // namespace kvx
