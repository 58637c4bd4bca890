#include "hexview/text_renderer.h"

#include "platform/win32/com_ptr.h"
#include "platform/win32/wide.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <dwrite.h>

namespace kvx {
namespace {

constexpr float kEstimatedAdvance = 0.6F;    ///< of the font size, where nothing can be measured
constexpr float kEstimatedLineHeight = 1.2F; ///< the same
constexpr float kUnbounded = 4096.0F;        ///< layout box for measuring, DIPs
constexpr char16_t kFirstAscii = u' ';
constexpr char16_t kLastAscii = u'~';
constexpr std::size_t kAsciiCount = kLastAscii - kFirstAscii + 1;
constexpr std::size_t kMostLayouts = 4096; ///< kept layouts; a page of cells needs about a thousand

DWRITE_FONT_WEIGHT WeightOf(const FontSpec& font) {
    return font.bold ? DWRITE_FONT_WEIGHT_BOLD : DWRITE_FONT_WEIGHT_NORMAL;
}

DWRITE_FONT_STYLE StyleOf(const FontSpec& font) {
    return font.italic ? DWRITE_FONT_STYLE_ITALIC : DWRITE_FONT_STYLE_NORMAL;
}

ComPtr<IDWriteTextFormat> MakeFormat(IDWriteFactory& factory, const FontSpec& font) {
    ComPtr<IDWriteTextFormat> format;
    if (FAILED(factory.CreateTextFormat(AsWide(font.family), nullptr, WeightOf(font), StyleOf(font),
                                        DWRITE_FONT_STRETCH_NORMAL, font.sizeDip, L"en-US",
                                        format.Put())))
        return {};
    format->SetTextAlignment(DWRITE_TEXT_ALIGNMENT_LEADING);
    format->SetParagraphAlignment(DWRITE_PARAGRAPH_ALIGNMENT_NEAR);
    format->SetWordWrapping(DWRITE_WORD_WRAPPING_NO_WRAP);
    return format;
}

/// The family's font nearest to `font`; empty when the family is not installed.
ComPtr<IDWriteFont> FindFont(IDWriteFactory& factory, const FontSpec& font) {
    ComPtr<IDWriteFontCollection> collection;
    UINT32 index = 0;
    BOOL exists = FALSE;
    ComPtr<IDWriteFontFamily> family;
    ComPtr<IDWriteFont> found;
    if (FAILED(factory.GetSystemFontCollection(collection.Put())) ||
        FAILED(collection->FindFamilyName(AsWide(font.family), &index, &exists)) || !exists ||
        FAILED(collection->GetFontFamily(index, family.Put())) ||
        FAILED(family->GetFirstMatchingFont(WeightOf(font), DWRITE_FONT_STRETCH_NORMAL,
                                            StyleOf(font), found.Put())))
        return {};
    return found;
}

/// The printable ASCII characters as glyphs of one font face. With them a row of digits is one
/// glyph run instead of a text layout per byte.
struct AsciiGlyphs {
    ComPtr<IDWriteFontFace> face;
    float ascent = 0.0F; ///< DIPs from the top of a line to its base line
    std::array<UINT16, kAsciiCount> glyphs{};
    std::array<float, kAsciiCount> advances{}; ///< DIPs

    static std::size_t IndexOf(char16_t character) {
        return static_cast<std::size_t>(character - kFirstAscii);
    }
    bool Holds(std::u16string_view text) const {
        return std::all_of(text.begin(), text.end(), [this](char16_t character) {
            return character >= kFirstAscii && character <= kLastAscii &&
                   glyphs[IndexOf(character)] != 0;
        });
    }
};

/// Empty when the font's glyphs cannot be had; texts are then laid out one by one.
std::optional<AsciiGlyphs> MakeAsciiGlyphs(IDWriteFont& font, float sizeDip) {
    AsciiGlyphs made;
    std::array<UINT32, kAsciiCount> characters{};
    for (std::size_t i = 0; i < kAsciiCount; ++i)
        characters[i] = static_cast<UINT32>(kFirstAscii + i);
    std::array<DWRITE_GLYPH_METRICS, kAsciiCount> metrics{};
    if (FAILED(font.CreateFontFace(made.face.Put())) ||
        FAILED(made.face->GetGlyphIndices(characters.data(), kAsciiCount, made.glyphs.data())) ||
        FAILED(made.face->GetDesignGlyphMetrics(made.glyphs.data(), kAsciiCount, metrics.data(),
                                                FALSE)))
        return std::nullopt;
    DWRITE_FONT_METRICS fontMetrics{};
    made.face->GetMetrics(&fontMetrics);
    if (fontMetrics.designUnitsPerEm == 0) return std::nullopt;
    const float scale = sizeDip / static_cast<float>(fontMetrics.designUnitsPerEm);
    made.ascent = static_cast<float>(fontMetrics.ascent) * scale;
    for (std::size_t i = 0; i < kAsciiCount; ++i)
        made.advances[i] = static_cast<float>(metrics[i].advanceWidth) * scale;
    return made;
}

/// What was made for one font.
struct FontResources {
    FontSpec font;
    ComPtr<IDWriteTextFormat> format;
    std::optional<AsciiGlyphs> ascii;
    /// By text: the layout box follows from the text and the font.
    std::unordered_map<std::u16string, ComPtr<IDWriteTextLayout>> layouts;
};

/// Texts of one line and colour on their way into one glyph run.
class GlyphLine {
public:
    GlyphLine(ID2D1RenderTarget& target, const AsciiGlyphs& ascii, float sizeDip)
        : target_(target), ascii_(ascii), sizeDip_(sizeDip), pixelsPerDip_(PixelsPerDip(target)) {}

    /// True when `text` can be drawn together with what was added before.
    bool Continues(const FrameText& text) const {
        return !glyphs_.empty() && text.color == color_ && text.layout.top == top_;
    }

    void Add(const FrameText& text) {
        if (glyphs_.empty()) {
            left_ = pen_ = text.layout.left;
            top_ = text.layout.top;
            color_ = text.color;
        } else {
            // The next glyph stands where its box begins, not where the last one ended.
            advances_.back() += text.layout.left - pen_;
            pen_ = text.layout.left;
        }
        for (const char16_t character : text.text) {
            const std::size_t index = AsciiGlyphs::IndexOf(character);
            glyphs_.push_back(ascii_.glyphs[index]);
            advances_.push_back(ascii_.advances[index]);
            pen_ += ascii_.advances[index];
        }
    }

    void Flush(RoleBrushes brushes) {
        if (glyphs_.empty()) return;
        DWRITE_GLYPH_RUN run{};
        run.fontFace = ascii_.face.Get();
        run.fontEmSize = sizeDip_;
        run.glyphCount = static_cast<UINT32>(glyphs_.size());
        run.glyphIndices = glyphs_.data();
        run.glyphAdvances = advances_.data();
        target_.DrawGlyphRun({left_, SnapToPixel(top_ + ascii_.ascent)}, &run,
                             brushes[static_cast<std::size_t>(color_)],
                             DWRITE_MEASURING_MODE_NATURAL);
        glyphs_.clear();
        advances_.clear();
    }

private:
    /// Base lines lie on pixel rows, as those of a text layout do: between rows they would blur.
    float SnapToPixel(float y) const { return std::round(y * pixelsPerDip_) / pixelsPerDip_; }

    ID2D1RenderTarget& target_;
    const AsciiGlyphs& ascii_;
    float sizeDip_;
    float pixelsPerDip_;
    float left_ = 0.0F; ///< DIPs, as top_ and pen_
    float top_ = 0.0F;
    float pen_ = 0.0F; ///< right end of the last glyph
    ColorRole color_ = ColorRole::MainText;
    std::vector<UINT16> glyphs_;
    std::vector<float> advances_;
};

} // namespace

float PixelsPerDip(const ID2D1RenderTarget& target) {
    float dpiX = 0.0F;
    float dpiY = 0.0F;
    target.GetDpi(&dpiX, &dpiY);
    return dpiY / static_cast<float>(kDefaultDpi);
}

class TextRenderer::Impl {
public:
    float WidestCharacter(const FontSpec& font, std::u16string_view set);
    float LineHeight(const FontSpec& font);
    bool Draw(ID2D1RenderTarget& target, std::span<const FrameText> texts, const FontSpec& font,
              RoleBrushes brushes);
    void ReleaseFormat() { resources_.reset(); }

private:
    IDWriteFactory* Factory();
    FontResources* Use(const FontSpec& font);
    float CharacterWidth(FontResources& resources, std::u16string_view character);
    ComPtr<IDWriteTextLayout> MakeLayout(FontResources& resources, std::u16string_view text,
                                         float width, float height);
    IDWriteTextLayout* CellLayout(FontResources& resources, const FrameText& text);

    ComPtr<IDWriteFactory> factory_;
    std::optional<FontResources> resources_;
};

IDWriteFactory* TextRenderer::Impl::Factory() {
    if (!factory_) {
        ::DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                              reinterpret_cast<IUnknown**>(factory_.Put()));
    }
    return factory_.Get();
}

/// What belongs to `font`, made now if need be; null when there is no DirectWrite or no such
/// format.
FontResources* TextRenderer::Impl::Use(const FontSpec& font) {
    if (resources_ && resources_->font == font) return &*resources_;
    resources_.reset();
    IDWriteFactory* const factory = Factory();
    if (factory == nullptr) return nullptr;
    ComPtr<IDWriteTextFormat> format = MakeFormat(*factory, font);
    if (!format) return nullptr;
    std::optional<AsciiGlyphs> ascii;
    if (const ComPtr<IDWriteFont> found = FindFont(*factory, font))
        ascii = MakeAsciiGlyphs(*found, font.sizeDip);
    resources_.emplace(FontResources{font, std::move(format), std::move(ascii), {}});
    return &*resources_;
}

ComPtr<IDWriteTextLayout> TextRenderer::Impl::MakeLayout(FontResources& resources,
                                                         std::u16string_view text, float width,
                                                         float height) {
    ComPtr<IDWriteTextLayout> layout;
    if (FAILED(Factory()->CreateTextLayout(WideData(text), static_cast<UINT32>(text.size()),
                                           resources.format.Get(), width, height, layout.Put())))
        layout.Reset();
    return layout;
}

IDWriteTextLayout* TextRenderer::Impl::CellLayout(FontResources& resources, const FrameText& text) {
    if (resources.layouts.size() >= kMostLayouts) resources.layouts.clear();
    ComPtr<IDWriteTextLayout>& layout = resources.layouts[text.text];
    if (!layout) {
        layout = MakeLayout(resources, text.text, text.layout.right - text.layout.left,
                            text.layout.bottom - text.layout.top);
    }
    return layout.Get();
}

float TextRenderer::Impl::WidestCharacter(const FontSpec& font, std::u16string_view set) {
    FontResources* const resources = Use(font);
    if (resources == nullptr) return font.sizeDip * kEstimatedAdvance;
    float widest = 0.0F;
    for (std::size_t i = 0; i < set.size(); ++i)
        widest = std::max(widest, CharacterWidth(*resources, set.substr(i, 1)));
    return widest;
}

/// Width of a layout of one character. Where the font's own glyph will be drawn its advance is that
/// width, at a hundredth of the cost: widths are asked for again after every inserted byte.
float TextRenderer::Impl::CharacterWidth(FontResources& resources, std::u16string_view character) {
    if (resources.ascii && resources.ascii->Holds(character))
        return resources.ascii->advances[AsciiGlyphs::IndexOf(character.front())];
    const auto layout = MakeLayout(resources, character, kUnbounded, kUnbounded);
    DWRITE_TEXT_METRICS metrics{};
    if (!layout || FAILED(layout->GetMetrics(&metrics)))
        return resources.font.sizeDip * kEstimatedAdvance;
    return metrics.widthIncludingTrailingWhitespace;
}

float TextRenderer::Impl::LineHeight(const FontSpec& font) {
    FontResources* const resources = Use(font);
    if (resources == nullptr) return font.sizeDip * kEstimatedLineHeight;
    if (resources->ascii) {
        DWRITE_FONT_METRICS metrics{};
        resources->ascii->face->GetMetrics(&metrics);
        const float units = static_cast<float>(metrics.ascent) +
                            static_cast<float>(metrics.descent) +
                            static_cast<float>(metrics.lineGap);
        return units * font.sizeDip / static_cast<float>(metrics.designUnitsPerEm);
    }
    // The family is not installed: a laid out line tells the height of the one that stands in for
    // it.
    const auto layout = MakeLayout(*resources, u"0", kUnbounded, kUnbounded);
    DWRITE_TEXT_METRICS metrics{};
    if (!layout || FAILED(layout->GetMetrics(&metrics))) return font.sizeDip * kEstimatedLineHeight;
    return metrics.height;
}

bool TextRenderer::Impl::Draw(ID2D1RenderTarget& target, std::span<const FrameText> texts,
                              const FontSpec& font, RoleBrushes brushes) {
    FontResources* const resources = Use(font);
    if (resources == nullptr) return false;
    std::optional<GlyphLine> line;
    if (resources->ascii) line.emplace(target, *resources->ascii, font.sizeDip);
    for (const FrameText& text : texts) {
        if (line && resources->ascii->Holds(text.text)) {
            if (!line->Continues(text)) line->Flush(brushes);
            line->Add(text);
        } else if (IDWriteTextLayout* const layout = CellLayout(*resources, text)) {
            target.DrawTextLayout({text.layout.left, text.layout.top}, layout,
                                  brushes[static_cast<std::size_t>(text.color)]);
        }
    }
    if (line) line->Flush(brushes);
    return true;
}

TextRenderer::TextRenderer() : impl_(std::make_unique<Impl>()) {}
TextRenderer::~TextRenderer() = default;

float TextRenderer::WidestCharacter(const FontSpec& font, std::u16string_view set) {
    return impl_->WidestCharacter(font, set);
}

float TextRenderer::LineHeight(const FontSpec& font) {
    return impl_->LineHeight(font);
}

bool TextRenderer::Draw(ID2D1RenderTarget& target, std::span<const FrameText> texts,
                        const FontSpec& font, RoleBrushes brushes) {
    return impl_->Draw(target, texts, font, brushes);
}

void TextRenderer::ReleaseFormat() {
    impl_->ReleaseFormat();
}

} // namespace kvx
