// A hex view on a recording host, measured by a font whose characters all have round widths.
#pragma once

#include "hexview/hex_view.h"
#include "tests/hexview/memory_document.h"

#include <functional>
#include <ostream>
#include <vector>

namespace kvx {

inline void PrintTo(const ScrollBar& bar, std::ostream* out) {
    *out << "{max " << bar.max << ", page " << bar.page << ", position " << bar.position << "}";
}

/// At 16 DIPs: hex characters 10 wide, text characters 8 wide, rows 24 high.
class FixedMeasurer final : public TextMeasurer {
public:
    int measured = 0;
    float scale = 1.0F;

    float WidestCharacter(const FontSpec& font, std::u16string_view set) override {
        ++measured;
        return scale * font.sizeDip * (set.size() == 95 ? 0.5F : 0.625F);
    }
    float LineHeight(const FontSpec& font) override { return scale * font.sizeDip * 1.35F; }
};

class RecordingHost final : public HexViewHost {
public:
    int invalidations = 0;
    std::vector<HexViewNotification> notifications;
    ScrollBar vertical;
    ScrollBar horizontal;
    std::function<void()> onSetScrollBars;
    bool captured = false;
    int focusRequests = 0;
    bool blinking = false;
    int resourceReleases = 0;
    std::vector<std::u16string> copied;
    std::uint32_t dpi = 96;

    void Invalidate() override { ++invalidations; }
    void NotifyParent(HexViewNotification notification) override {
        notifications.push_back(notification);
    }
    void SetScrollBars(const ScrollBar& newVertical, const ScrollBar& newHorizontal) override {
        vertical = newVertical;
        horizontal = newHorizontal;
        if (onSetScrollBars) onSetScrollBars();
    }
    void CopyToClipboard(const std::u16string& text) override { copied.push_back(text); }
    void CaptureMouse() override { captured = true; }
    void ReleaseMouse() override { captured = false; }
    void TakeFocus() override { ++focusRequests; }
    void StartBlinkTimer() override { blinking = true; }
    void StopBlinkTimer() override { blinking = false; }
    void ReleaseDeviceResources() override { ++resourceReleases; }
    std::uint32_t WindowDpi() const override { return dpi; }

    void Forget() {
        invalidations = 0;
        notifications.clear();
        focusRequests = 0;
        resourceReleases = 0;
    }
};

/// Just wide enough for all columns (hex from 110 to 590, text from 602 to 730), ten rows high.
inline constexpr std::uint32_t kStageWidth = 738;
inline constexpr std::uint32_t kStageHeight = 260;

struct ViewStage {
    MemoryDocument document;
    RecordingHost host;
    FixedMeasurer measurer;
    HexView view{host, measurer};

    explicit ViewStage(Bytes bytes = {}, std::uint64_t zerosBehind = 0)
        : document(std::move(bytes)) {
        document.zerosBehind = zerosBehind;
        view.SetDocument(&document, &document);
        view.SetClientSize(kStageWidth, kStageHeight);
        host.Forget();
    }

    const HexViewState& State() const { return view.State(); }

    /// Brings the view into a mode by its own commands, the caret to `caret`.
    void Enter(InsertMode mode, std::uint64_t caret = 0) {
        if (!State().editable) view.ToggleEditable();
        if (State().insertMode != mode) view.OnKeyDown(Key::Insert, false);
        view.SetCaret(caret);
        host.Forget();
    }
    void Type(std::u16string_view characters) {
        for (const char16_t character : characters)
            view.OnChar(character);
    }
};

} // namespace kvx
