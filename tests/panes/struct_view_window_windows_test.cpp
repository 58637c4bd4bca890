#include "panes/struct_view_window.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(StructViewWindow, WhatHadTheFocusHasItAgainWhenTheWindowComesBack) {
    const HWND owner = ::CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                         300, 200, nullptr, nullptr, nullptr, nullptr);
    StructViewModel model;
    StructViewWindow pane;
    const auto noTexts = [](std::string_view) { return std::u16string(); };
    ASSERT_TRUE(pane.Create(::GetModuleHandleW(nullptr), owner, model, noTexts, Theme::Light, 520));
    const HWND window = pane.Handle();
    ::ShowWindow(window, SW_SHOW);
    const HWND button = ::GetDlgItem(window, static_cast<int>(kStructViewReloadCommand));
    for (const HWND focus : {button, window}) {
        ::SetActiveWindow(window);
        ::SetFocus(focus);
        ::SetActiveWindow(owner);
        ::SetActiveWindow(window);
        EXPECT_EQ(::GetFocus(), focus);
    }
    ::DestroyWindow(owner);
}

} // namespace
} // namespace kvx
