#include "hexview/frame.h"
#include "hexview/hex_view_renderer.h"
#include "platform/system.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/wide.h"
#include "window_stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include <dwrite.h>

namespace kvx {
namespace {

constexpr std::u16string_view kSample = u" !0Wi~";

/// Width and height that DirectWrite itself gives a text.
DWRITE_TEXT_METRICS LayOut(const FontSpec& font, std::u16string_view text) {
    ComPtr<IDWriteFactory> factory;
    ComPtr<IDWriteTextFormat> format;
    ComPtr<IDWriteTextLayout> layout;
    DWRITE_TEXT_METRICS metrics{};
    ::DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                          reinterpret_cast<IUnknown**>(factory.Put()));
    factory->CreateTextFormat(AsWide(font.family), nullptr,
                              font.bold ? DWRITE_FONT_WEIGHT_BOLD : DWRITE_FONT_WEIGHT_NORMAL,
                              font.italic ? DWRITE_FONT_STYLE_ITALIC : DWRITE_FONT_STYLE_NORMAL,
                              DWRITE_FONT_STRETCH_NORMAL, font.sizeDip, L"en-US", format.Put());
    factory->CreateTextLayout(WideData(text), static_cast<UINT32>(text.size()), format.Get(),
                              1000.0F, 1000.0F, layout.Put());
    layout->GetMetrics(&metrics);
    return metrics;
}

TEST(HexViewRenderer, MeasuresCharactersAsTheyAreLaidOutAlone) {
    HexViewRenderer renderer;
    for (const FontSpec& font : {
             FontSpec{u"Consolas", 16.0F, false, false},
             {u"Consolas", 21.5F, true, true},
             {u"Segoe UI", 12.0F, false, false},
             {u"No Such Family", 16.0F, false, false},
         }) {
        float widest = 0.0F;
        for (const char16_t character : kSample)
            widest =
                std::max(widest, LayOut(font, {&character, 1}).widthIncludingTrailingWhitespace);
        EXPECT_NEAR(renderer.WidestCharacter(font, kSample), widest, 0.01F);
        EXPECT_NEAR(renderer.LineHeight(font), LayOut(font, u"0").height, 0.5F);
    }
}

/// Pixels that a view painted in a rectangle, in DIPs at 96 DPI, in another colour than its first.
int InkIn(HWND window, const RectDip& rect) {
    ::UpdateWindow(window);
    ::GdiFlush();
    const HDC dc = ::GetDC(window);
    const auto pixel = [&](float x, float y) {
        return ::GetPixel(dc, static_cast<int>(x), static_cast<int>(y));
    };
    const COLORREF paper = pixel(std::ceil(rect.left), std::ceil(rect.top));
    int ink = 0;
    for (float y = std::ceil(rect.top); y < rect.bottom; ++y)
        for (float x = std::ceil(rect.left); x < rect.right; ++x)
            ink += pixel(x, y) == paper ? 0 : 1;
    ::ReleaseDC(window, dc);
    return ink;
}

TEST(HexViewRenderer, PaintsEveryByteAndTheSelectionWithoutASeam) {
    WindowStage stage(Bytes(64, 0xB8));
    const HWND window = stage.window.Handle();
    stage.View().SetCaret(0x3F);
    stage.View().SetSelection(0x10, 0x2F);
    const Frame frame = BuildFrame(stage.State());
    for (std::size_t byte = 0; byte < 64; ++byte)
        EXPECT_GT(InkIn(window, frame.hex.texts[byte].layout), 20) << "byte " << byte;
    // The blank behind the last pair, also where a row ends inside a pixel.
    const RectDip& upper = frame.fills.front().rect;
    const RectDip between{upper.right - stage.State().hexCharWidth + 2.0F, upper.top + 1.0F,
                          upper.right - 1.0F, upper.bottom + stage.State().rowHeight - 1.0F};
    EXPECT_EQ(InkIn(window, between), 0);
    const RectDip above{between.left, 8.0F, between.right, between.bottom};
    EXPECT_GT(InkIn(window, above), 20) << "the selection shows";
}

TEST(HexViewRenderer, AFailedDrawAndAChangedSizeLeaveTheNextOneToStartAfresh) {
    WindowStage stage(Bytes(64, 0xB8));
    const HWND window = stage.window.Handle();
    const HexViewState& state = stage.State();
    HexViewRenderer renderer;
    const auto draw = [&](HDC dc) {
        return renderer.Draw(window, dc, BuildFrame(state), state.theme, FontOf(state), state.dpi);
    };
    const HDC dc = ::GetDC(window);
    EXPECT_TRUE(draw(dc));
    EXPECT_EQ(draw(nullptr), !RunsUnderWine()); // only there is it drawn with the DC
    stage.Resize(780, 200);
    EXPECT_TRUE(draw(dc));
    ::ReleaseDC(window, dc);
}

} // namespace
} // namespace kvx
