// What the person does with the hex view.
#include "soak.h"

#include "waiting.h"

#include <algorithm>

namespace kvx::test {

void Soak::TypeDigits() {
    constexpr char kKeys[] = "0123456789ABCDEF";
    const std::size_t count = 1 + Below(6);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t digit = Below(16);
        Note(kKeys[digit]);
        input_->Post(View(), WM_KEYDOWN, static_cast<WPARAM>(kKeys[digit]), 1);
        if (model_.open && model_.editable) model_.view.Type(static_cast<unsigned>(digit));
    }
    input_->Settle();
    if (model_.open && !model_.editable) ExpectWarning();
}

void Soak::Move() {
    constexpr std::pair<WORD, std::int64_t> kSteps[] = {
        {VK_LEFT, -1}, {VK_RIGHT, 1}, {VK_UP, -16}, {VK_DOWN, 16}};
    const std::size_t choice = Below(8);
    if (choice >= 6) return MoveByPage(choice == 6);
    const bool control = OneIn(3);
    const WORD key = choice < 4 ? kSteps[choice].first : choice == 4 ? VK_HOME : VK_END;
    Note(control ? "Ctrl+" : "", key);
    control ? input_->KeyWithControl(View(), key) : input_->Key(View(), key);
    if (!model_.open) return;
    const std::uint64_t rowStart = model_.view.caret / 16 * 16;
    if (choice < 4)
        model_.view.MoveBy(kSteps[choice].second);
    else if (key == VK_HOME)
        model_.view.MoveTo(control ? 0 : rowStart);
    else
        model_.view.MoveTo(control ? model_.view.Last() : rowStart + 15);
}

// How many rows are a page is for the view to say, but it has to stay with what it said.
void Soak::MoveByPage(bool down) {
    const auto area = [this] {
        RECT client{};
        ::GetClientRect(View(), &client);
        return client;
    };
    const auto same = [](const RECT& a, const RECT& b) { return ::EqualRect(&a, &b) != FALSE; };
    const RECT before = area();
    if (!same(before, pageArea_)) pageRows_.reset();
    Note(down ? "page down" : "page up");
    input_->Key(View(), down ? VK_NEXT : VK_PRIOR);
    if (!model_.open) return;
    const std::uint64_t old = model_.view.caret;
    const std::uint64_t now = ShownOffset();
    const bool stopped = now == (down ? model_.view.Last() : 0);
    const std::uint64_t distance = down ? now - old : old - now;
    if (!pageRows_ && !stopped && same(before, area())) {
        Require(distance > 0 && distance % 16 == 0, "a page is whole rows");
        pageRows_ = distance / 16;
        pageArea_ = before;
    }
    const auto page = static_cast<std::int64_t>(pageRows_ ? *pageRows_ * 16 : distance);
    model_.view.MoveBy(down ? page : -page);
}

std::uint64_t Soak::ShownOffset() const {
    Require(WaitUntil([this] { return !ShowsWarning(); }), "the warning goes");
    const std::u16string status = input_->Status();
    Require(status.find(u": 0x") != std::u16string::npos, "the status shows an offset");
    return std::stoull(Utf16ToUtf8(status.substr(status.find(u": 0x") + 4)), nullptr, 16);
}

void Soak::ToggleInserting() {
    input_->Key(View(), VK_INSERT);
    if (!model_.open) return;
    if (model_.editable)
        model_.view.ToggleInserting();
    else
        ExpectWarning();
}

void Soak::Remove() {
    const bool forward = OneIn(2);
    Note(forward ? "forward" : "backward");
    input_->Key(View(), forward ? VK_DELETE : VK_BACK);
    if (!model_.open) return;
    if (model_.editable)
        model_.view.Remove(forward);
    else
        ExpectWarning();
}

void Soak::EndSelection() {
    input_->Key(View(), VK_ESCAPE);
    model_.view.selection.reset();
}

void Soak::CopySelection() {
    std::u16string expected;
    if (model_.view.selection) {
        const auto [low, high] =
            std::minmax(model_.view.selection->first, model_.view.selection->second);
        expected = HexText(ToString(model_.view.document.ReadBytes(low, high - low + 1)), " ");
    }
    Expect("the copied selection", input_->Copied(View()), expected);
}

// A click, a double click, one with the right button, or a drag. Which byte is under the pointer is
// for the view to say; what it then selects must be there and begin at the caret.
void Soak::Click() {
    EndSelection();
    RECT client{};
    ::GetClientRect(View(), &client);
    const auto somewhere = [this](LONG end) {
        return static_cast<int>(Below(static_cast<std::size_t>(std::max(end, LONG{1}))));
    };
    const int x = somewhere(client.right);
    const int y = somewhere(client.bottom);
    const bool right = OneIn(10);
    Note(right ? "right " : "", x, ',', y);
    input_->Post(View(), right ? WM_RBUTTONDOWN : WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
    for (std::size_t moves = right ? 0 : Below(4); moves > 0; --moves) {
        const int toX = std::max(0, x + somewhere(120) - 60);
        const int toY = std::max(0, y + somewhere(200) - 100);
        Note("to ", toX, ',', toY);
        input_->Post(View(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(toX, toY));
    }
    input_->Post(View(), right ? WM_RBUTTONUP : WM_LBUTTONUP, 0, MAKELPARAM(x, y));
    input_->Settle();
    const std::u16string copied = input_->Copied(View());
    Note("gave ", Utf16ToUtf8(copied.substr(0, 30)));
    if (copied.empty()) return;
    const std::uint64_t caret = ShownOffset();
    const std::uint64_t count = copied.size() / 3; // of the bytes beside the first
    const auto holds = [&](std::uint64_t first) {
        return HexText(ToString(model_.view.document.ReadBytes(first, count + 1)), " ") == copied;
    };
    const bool onwards = holds(caret);
    const bool back = caret >= count && holds(caret - count);
    Require(onwards || back, "the selected bytes are those at the caret");
    model_.view.Select(caret, onwards ? caret + count : caret - count);
    if (onwards && back && count > 0) EndSelection(); // the same bytes on both sides
}

void Soak::Wheel() {
    const bool away = OneIn(2);
    Note(away ? "away" : "towards");
    for (std::size_t times = 1 + Below(5); times > 0; --times)
        input_->Post(View(), WM_MOUSEWHEEL, WheelNotch(away));
}

void Soak::Scroll() {
    const auto request = static_cast<WPARAM>(Below(8)); // from SB_LINEUP to SB_BOTTOM
    const UINT bar = OneIn(3) ? WM_HSCROLL : WM_VSCROLL;
    Note(bar, ' ', request);
    input_->Post(View(), bar, request);
}

} // namespace kvx::test
