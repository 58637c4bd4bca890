#include "app/dialog_layout.h"

#include <gtest/gtest.h>

#include <vector>

namespace kvx {
namespace {

constexpr const DialogLayout* kLayouts[] = {&kPromptLayout, &kSearchLayout, &kAboutLayout,
                                            &kFontLayout};

// A list that drops down may leave its dialog; closed, it is about as high as a line of text.
RectPx ShownPlace(const ControlLayout& control, const DialogLayout& layout, std::uint32_t dpi) {
    ControlLayout shown = control;
    if (control.kind == ControlKind::DropDownList || control.kind == ControlKind::EditableList)
        shown.place.height = 24;
    return PlaceOf(shown, layout, ScaledPx(layout.width, dpi), ScaledPx(layout.height, dpi), dpi);
}

bool Overlap(const RectPx& a, const RectPx& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

TEST(DialogLayout, KeepsControlsInsideTheDialogAndApartAtEveryDpi) {
    for (const DialogLayout* layout : kLayouts) {
        for (const std::uint32_t dpi : {96U, 120U, 144U, 168U, 192U}) {
            std::vector<RectPx> before;
            for (const ControlLayout& control : layout->controls) {
                const RectPx place = ShownPlace(control, *layout, dpi);
                EXPECT_GE(place.left, ScaledPx(12, dpi)) << control.id;
                EXPECT_LE(place.right, ScaledPx(layout->width - 12, dpi) + 1) << control.id;
                EXPECT_LE(place.bottom, ScaledPx(layout->height - 12, dpi) + 1) << control.id;
                for (const RectPx& other : before)
                    EXPECT_FALSE(Overlap(place, other)) << control.id << " at " << dpi;
                before.push_back(place);
            }
        }
    }
}

TEST(DialogLayout, KeepsTheButtonsOfAGrownFontDialogInItsCorner) {
    const ControlLayout& cancel = kFontLayout.controls.back();
    EXPECT_EQ(PlaceOf(cancel, kFontLayout, 620, 320, 96), (RectPx{500, 282, 608, 308}));
    EXPECT_EQ(PlaceOf(cancel, kFontLayout, 930, 480, 144), (RectPx{750, 423, 912, 462}));
    EXPECT_EQ(PlaceOf(cancel, kFontLayout, 720, 420, 96), (RectPx{600, 382, 708, 408}));
    EXPECT_EQ(PlaceOf(kFontLayout.controls.front(), kFontLayout, 720, 420, 96),
              (RectPx{12, 16, 102, 40}));
}

} // namespace
} // namespace kvx
