// Where the controls of each dialog stand. A dialog window makes the controls of its layout in
// order, which is also the order of the Tab key.
#pragma once

#include "app/window_placement.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace kvx {

enum class ControlKind : std::uint8_t {
    Label, ///< its mnemonic leads to the control behind it
    Link,
    LineEdit,
    TextBox,      ///< many lines to read
    DropDownList, ///< the height of its place includes the list
    EditableList, ///< the same with an edit
    CheckBox,
    Button,
};

/// Which corner of the dialog a control follows when the dialog grows.
enum class Anchor : std::uint8_t { TopLeft, BottomRight };

/// Lengths at 96 DPI, from the client area's corner.
struct ControlPlace {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

struct ControlLayout {
    std::int32_t id = 0;
    ControlKind kind = ControlKind::Label;
    ControlPlace place;
    std::string_view textKey = {}; ///< of the string files; empty: the dialog sets the text
    Anchor anchor = Anchor::TopLeft;
};

struct DialogLayout {
    std::int32_t width = 0;  ///< of the client area at 96 DPI
    std::int32_t height = 0; ///< of the client area at 96 DPI
    std::span<const ControlLayout> controls;
};

enum ControlId : std::int32_t {
    kDefaultButtonId = 1, ///< the button that Enter presses
    kCancelButtonId = 2,  ///< the button that Esc presses

    kPromptLabelId = 3001,
    kPromptAnswerId,

    kSearchTypeLabelId = 3101,
    kSearchTypeId,
    kSearchQueryLabelId,
    kSearchQueryId,
    kSearchPreviousId,

    kAboutProductId = 3201,
    kAboutVersionId,
    kAboutRightsId,
    kAboutHomepageLabelId,
    kAboutHomepageId,
    kAboutLicenseHeadingId,
    kAboutLicenseId,

    kFontFamilyLabelId = 3301,
    kFontFamilyId,
    kFontSizeLabelId,
    kFontSizeId,
    kFontBoldId,
    kFontItalicId,
};

extern const DialogLayout kPromptLayout;
extern const DialogLayout kSearchLayout;
extern const DialogLayout kAboutLayout;
extern const DialogLayout kFontLayout;

/// A length at 96 DPI in pixels of a screen with `dpi`, rounded to the nearest.
std::int32_t ScaledPx(std::int32_t length, std::uint32_t dpi);

/// Where `control` stands in a client area of the given size, in pixels.
RectPx PlaceOf(const ControlLayout& control, const DialogLayout& layout, std::int32_t widthPx,
               std::int32_t heightPx, std::uint32_t dpi);

} // namespace kvx
