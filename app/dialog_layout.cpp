#include "app/dialog_layout.h"

namespace kvx {
namespace {

constexpr std::int32_t kUnscaledDpi = 96;

constexpr ControlLayout kPromptControls[] = {
    {kPromptLabelId, ControlKind::Label, {12, 12, 336, 20}},
    {kPromptAnswerId, ControlKind::LineEdit, {12, 38, 336, 24}},
    {kDefaultButtonId, ControlKind::Button, {164, 90, 88, 26}},
    {kCancelButtonId, ControlKind::Button, {260, 90, 88, 26}},
};

constexpr ControlLayout kSearchControls[] = {
    {kSearchTypeLabelId, ControlKind::Label, {12, 12, 396, 20}, "dialog.search.type"},
    {kSearchTypeId, ControlKind::DropDownList, {12, 36, 396, 240}},
    {kSearchQueryLabelId, ControlKind::Label, {12, 66, 396, 20}, "dialog.search.query"},
    {kSearchQueryId, ControlKind::EditableList, {12, 90, 396, 220}},
    {kSearchPreviousId, ControlKind::Button, {128, 134, 88, 26}, "dialog.search.previous"},
    {kDefaultButtonId, ControlKind::Button, {224, 134, 88, 26}, "dialog.search.next"},
    {kCancelButtonId, ControlKind::Button, {320, 134, 88, 26}, "dialog.common.close"},
};

constexpr ControlLayout kAboutControls[] = {
    {kAboutProductId, ControlKind::Label, {12, 12, 496, 20}},
    {kAboutVersionId, ControlKind::Label, {12, 36, 496, 20}},
    {kAboutRightsId, ControlKind::Label, {12, 60, 496, 20}},
    {kAboutHomepageLabelId, ControlKind::Label, {12, 92, 496, 20}, "about.homepage_label"},
    {kAboutHomepageId, ControlKind::Link, {12, 114, 496, 20}},
    {kAboutLicenseHeadingId, ControlKind::Label, {12, 150, 496, 20}, "about.license_heading"},
    {kAboutLicenseId, ControlKind::TextBox, {12, 176, 496, 220}},
    {kDefaultButtonId, ControlKind::Button, {412, 406, 96, 28}, "dialog.common.close"},
};

constexpr ControlLayout kFontControls[] = {
    {kFontFamilyLabelId, ControlKind::Label, {12, 16, 90, 24}, "dialog.font.family"},
    {kFontFamilyId, ControlKind::DropDownList, {102, 12, 360, 240}},
    {kFontSizeLabelId, ControlKind::Label, {12, 50, 90, 24}, "dialog.font.size"},
    {kFontSizeId, ControlKind::DropDownList, {102, 46, 72, 220}},
    {kFontBoldId, ControlKind::CheckBox, {102, 84, 90, 24}, "dialog.font.bold"},
    {kFontItalicId, ControlKind::CheckBox, {204, 84, 90, 24}, "dialog.font.italic"},
    {kDefaultButtonId,
     ControlKind::Button,
     {380, 282, 108, 26},
     "dialog.common.ok",
     Anchor::BottomRight},
    {kCancelButtonId,
     ControlKind::Button,
     {500, 282, 108, 26},
     "dialog.common.cancel",
     Anchor::BottomRight},
};

} // namespace

const DialogLayout kPromptLayout{360, 132, kPromptControls};
const DialogLayout kSearchLayout{420, 176, kSearchControls};
const DialogLayout kAboutLayout{520, 446, kAboutControls};
const DialogLayout kFontLayout{620, 320, kFontControls};

std::int32_t ScaledPx(std::int32_t length, std::uint32_t dpi) {
    return (length * static_cast<std::int32_t>(dpi) + kUnscaledDpi / 2) / kUnscaledDpi;
}

RectPx PlaceOf(const ControlLayout& control, const DialogLayout& layout, std::int32_t widthPx,
               std::int32_t heightPx, std::uint32_t dpi) {
    const bool follows = control.anchor == Anchor::BottomRight;
    const std::int32_t dx = follows ? widthPx - ScaledPx(layout.width, dpi) : 0;
    const std::int32_t dy = follows ? heightPx - ScaledPx(layout.height, dpi) : 0;
    const std::int32_t left = ScaledPx(control.place.x, dpi) + dx;
    const std::int32_t top = ScaledPx(control.place.y, dpi) + dy;
    return {left, top, left + ScaledPx(control.place.width, dpi),
            top + ScaledPx(control.place.height, dpi)};
}

} // namespace kvx
