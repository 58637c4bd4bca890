// All that the hex view knows, in one record: geometry, input and painting are functions of it.
//
// Lengths are DIPs (96 to the inch) unless they say pixels. Selection ends are inclusive and may
// stand in either order.
#pragma once

#include "document/read_only_document.h"
#include "encoding/text_encoding.h"
#include "settings/app_settings.h"

#include <cstdint>
#include <string>

namespace kvx {

inline constexpr std::uint64_t kBytesPerRow = 16;
inline constexpr std::uint32_t kDefaultDpi = 96;

/// A point of the client area in pixels.
struct PointPx {
    std::int32_t x = 0;
    std::int32_t y = 0;
};

enum class InsertMode : std::uint32_t { Overwrite = 0, Insert = 1 };

struct HexViewState {
    const IReadOnlyDocument* document = nullptr;   ///< not owned
    IEditableDocument* editableDocument = nullptr; ///< the same object; null: not editable
    std::uint64_t topRow = 0;                      ///< row r starts at byte r * 16
    std::int32_t scrollX = 0;                      ///< of the hex and text columns, DIPs
    std::uint64_t caret = 0;                       ///< byte offset
    std::uint64_t selAnchor = 0;                   ///< byte offset, inclusive
    std::uint64_t selEnd = 0;                      ///< byte offset, inclusive
    bool hasSelection = false;
    TextEncoding encoding = TextEncoding::Ascii;
    Theme theme = Theme::Light;
    std::uint64_t dragAnchor = 0; ///< byte offset where the mouse drag began
    bool dragAnchorValid = false;
    std::uint8_t pendingNibble = 0; ///< value of the first hex digit typed
    bool nibblePending = false;
    bool dragging = false;
    bool focused = false;
    bool caretBlinkOn = false;
    InsertMode insertMode = InsertMode::Overwrite;
    bool editable = false;
    std::uint32_t dpi = kDefaultDpi;
    std::uint32_t clientWidthPx = 0;  ///< client area, pixels
    std::uint32_t clientHeightPx = 0; ///< client area, pixels
    float rowHeight = 17.0F;
    float padding = 8.0F;
    float offsetWidth = 0.0F;
    float hexWidth = 0.0F;
    float textWidth = 0.0F;
    float columnGap = 12.0F;
    float fontSizeDip = 16.0F; ///< at zoom 1: points * 96 / 72
    float effectiveFontSize = 16.0F;
    float hexCharWidth = 1.0F;  ///< at least 1
    float textCharWidth = 1.0F; ///< at least 1
    float zoom = 1.0F;          ///< 0.6 to 2.5
    std::u16string fontFamily = u"Consolas";
    bool bold = false;
    bool italic = false;
};

} // namespace kvx
