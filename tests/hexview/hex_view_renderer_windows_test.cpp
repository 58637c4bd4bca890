#include "hexview/frame.h"
#include "hexview/hex_view_renderer.h"
#include "platform/system.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/wide.h"
#include "window_stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

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

struct FontRow {
    const char* name;
    FontSpec font;
};

const FontRow kFonts[] = {
    {"fixed pitch", {u"Consolas", 16.0F, false, false}},
    {"bold italic", {u"Consolas", 21.5F, true, true}},
    {"proportional", {u"Segoe UI", 12.0F, false, false}},
    {"not installed", {u"No Such Family", 16.0F, false, false}},
};

TEST(HexViewRenderer, WidthsAreThoseOfCharactersLaidOutAlone) {
    HexViewRenderer renderer;
    for (const auto& [name, font] : kFonts) {
        float widest = 0.0F;
        for (std::size_t i = 0; i < kSample.size(); ++i)
            widest = std::max(widest,
                              LayOut(font, kSample.substr(i, 1)).widthIncludingTrailingWhitespace);
        EXPECT_NEAR(renderer.WidestCharacter(font, kSample), widest, 0.01F) << name;
        EXPECT_NEAR(renderer.WidestCharacter(font, u" "),
                    LayOut(font, u" ").widthIncludingTrailingWhitespace, 0.01F)
            << name;
    }
}

TEST(HexViewRenderer, LineHeightsHoldALaidOutLine) {
    HexViewRenderer renderer;
    for (const auto& [name, font] : kFonts)
        EXPECT_NEAR(renderer.LineHeight(font), LayOut(font, u"0").height, 0.5F) << name;
}

/// The view's client area as it was painted.
class Picture {
public:
    explicit Picture(HWND window) : window_(window), dc_(::GetDC(window)) {
        ::UpdateWindow(window);
        ::GdiFlush();
    }
    ~Picture() { ::ReleaseDC(window_, dc_); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    bool Has(int x, int y, Color color) const { return IsNear(::GetPixel(dc_, x, y), color); }

    /// Pixels of a rectangle, in DIPs at 96 DPI, that are not of this colour.
    int InkIn(const RectDip& rect, Color paper) const {
        int ink = 0;
        for (int y = Ceil(rect.top); y < Ceil(rect.bottom); ++y)
            for (int x = Ceil(rect.left); x < Ceil(rect.right); ++x)
                if (!Has(x, y, paper)) ++ink;
        return ink;
    }

private:
    static int Ceil(float length) { return static_cast<int>(std::ceil(length)); }
    static bool IsNear(COLORREF pixel, Color color) {
        const auto matches = [](int value, float part) {
            return std::abs(static_cast<float>(value) - part * 255.0F) < 2.5F;
        };
        return matches(GetRValue(pixel), color.red) && matches(GetGValue(pixel), color.green) &&
               matches(GetBValue(pixel), color.blue);
    }

    HWND window_;
    HDC dc_;
};

Color Over(Color paper, Color fill) {
    const auto mix = [&](float under, float over) { return under + (over - under) * fill.alpha; };
    return {mix(paper.red, fill.red), mix(paper.green, fill.green), mix(paper.blue, fill.blue)};
}

TEST(HexViewRenderer, PaintsThePaperTheDigitsAndTheSelectionOfEachTheme) {
    WindowStage stage(Bytes(64, 0xB8));
    stage.View().SetCaret(0x3F);
    stage.View().SetSelection(0x10, 0x2F);
    for (const Theme theme : {Theme::Light, Theme::DarkBlue, Theme::Black}) {
        stage.View().SetTheme(theme);
        const Color paper = ThemeColor(theme, ColorRole::Background);
        const Color selected = Over(paper, ThemeColor(theme, ColorRole::Selection));
        const Frame frame = BuildFrame(stage.State());
        const Picture picture(stage.window.Handle());
        EXPECT_TRUE(picture.Has(2, 2, paper));
        for (std::size_t byte = 0; byte < 64; ++byte) {
            const RectDip& box = frame.hex.texts[byte].layout;
            const bool isSelected = byte >= 0x10 && byte < 0x30;
            EXPECT_GT(picture.InkIn(box, isSelected ? selected : paper), 20) << "byte " << byte;
        }
        // The fills of neighbouring rows meet without a seam, also where a row ends inside a pixel.
        const RectDip& upper = frame.fills.front().rect;
        const RectDip between{upper.right - stage.State().hexCharWidth + 2.0F, upper.top + 1.0F,
                              upper.right - 1.0F, upper.bottom + stage.State().rowHeight - 1.0F};
        EXPECT_EQ(picture.InkIn(between, selected), 0);
    }
}

TEST(HexViewRenderer, WhatIsScrolledSidewaysDoesNotRunIntoTheOffsets) {
    WindowStage stage(Bytes(64, 0xB8));
    stage.Resize(400, WindowStage::kHeight);
    stage.View().OnHorizontalScroll(ScrollRequest::LineForward, 0);
    stage.View().SetSelection(0, 63);
    const HexViewState& state = stage.State();
    const Picture picture(stage.window.Handle());
    const RectDip gap{state.padding + state.offsetWidth + 1.0F, state.padding,
                      ContentLeft(state) - 1.0F, state.padding + 2.0F * state.rowHeight};
    EXPECT_EQ(picture.InkIn(gap, ThemeColor(state.theme, ColorRole::Background)), 0);
}

TEST(HexViewRenderer, ADrawThatFailsLeavesTheNextOneToStartAfresh) {
    if (!RunsUnderWine()) GTEST_SKIP() << "a window target does not draw with the paint's DC";
    WindowStage stage;
    const HWND window = stage.window.Handle();
    const HexViewState& state = stage.State();
    HexViewRenderer renderer;
    const auto draw = [&](HDC dc) {
        return renderer.Draw(window, dc, BuildFrame(state), state.theme, FontOf(state), state.dpi);
    };
    const HDC dc = ::GetDC(window);
    EXPECT_TRUE(draw(dc));
    EXPECT_FALSE(draw(nullptr));
    EXPECT_TRUE(draw(dc));
    ::ReleaseDC(window, dc);
}

TEST(HexViewRenderer, AReleasedDeviceIsMadeAgainByTheNextPaint) {
    WindowStage stage(Bytes(64, 0xB8));
    stage.View().SetTheme(Theme::Black);
    ::UpdateWindow(stage.window.Handle());
    stage.Resize(780, 200);
    stage.View().SetFont(u"Consolas", 20.0F, true, false);
    const Frame frame = BuildFrame(stage.State());
    const Picture picture(stage.window.Handle());
    const Color paper = ThemeColor(Theme::Black, ColorRole::Background);
    EXPECT_GT(picture.InkIn(frame.hex.texts[20].layout, paper), 20);
    EXPECT_FALSE(::GetUpdateRect(stage.window.Handle(), nullptr, FALSE));
}

} // namespace
} // namespace kvx
