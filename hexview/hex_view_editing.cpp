// Input of HexView that changes the document or the way of editing it: digits, removal, insert
// mode, and copying.
#include "hexview/hex_view.h"

#include "hexview/hex_digits.h"
#include "hexview/hex_view_layout.h"
#include "hexview/selection_text.h"

#include <algorithm>

namespace kvx {
namespace {

std::uint8_t JoinNibbles(unsigned high, unsigned low) {
    return static_cast<std::uint8_t>(high << 4U | low);
}

} // namespace

bool HexView::CanEdit() const {
    return state_.editableDocument != nullptr && state_.editableDocument->IsOpen();
}

Handled HexView::OnChar(char16_t character) {
    const auto digit = HexDigitValue(character);
    if (!digit || !HasOpenDocument(state_)) return Handled::No;
    if (!state_.editable) {
        host_.NotifyParent(HexViewNotification::EditRefused);
        return Handled::Yes;
    }
    if (!CanEdit()) return Handled::No;
    return state_.insertMode == InsertMode::Insert ? InsertDigit(*digit) : OverwriteDigit(*digit);
}

Handled HexView::OverwriteDigit(std::uint8_t digit) {
    IEditableDocument& document = *state_.editableDocument;
    const Bytes old = document.ReadBytes(state_.caret, 1);
    if (old.empty()) return Handled::No;
    const bool second = state_.nibblePending;
    const std::uint8_t value =
        second ? JoinNibbles(state_.pendingNibble, digit) : JoinNibbles(digit, old.front() & 0xFU);
    if (!document.OverwriteByte(state_.caret, value)) return Handled::No;
    state_.pendingNibble = second ? std::uint8_t{0} : digit;
    state_.nibblePending = !second;
    if (second && state_.caret < LastCaretOffset(state_))
        SetCaret(state_.caret + 1);
    else
        ShowChange();
    return Handled::Yes;
}

Handled HexView::InsertDigit(std::uint8_t digit) {
    if (!state_.nibblePending) {
        state_.pendingNibble = digit;
        state_.nibblePending = true;
        ShowChange();
        return Handled::Yes;
    }
    const std::uint8_t value = JoinNibbles(state_.pendingNibble, digit);
    if (!state_.editableDocument->InsertByte(state_.caret, value)) return Handled::No;
    FitOffsetColumn(state_);
    SetCaret(state_.caret + 1);
    return Handled::Yes;
}

Handled HexView::EditWithKey(Key key) {
    if (!state_.editable) {
        host_.NotifyParent(HexViewNotification::EditRefused);
        return Handled::Yes;
    }
    if (key != Key::Insert) return Remove(key);
    ToggleInsertMode();
    return Handled::Yes;
}

void HexView::ToggleInsertMode() {
    const bool inserting = state_.insertMode == InsertMode::Insert;
    state_.insertMode = inserting ? InsertMode::Overwrite : InsertMode::Insert;
    ClearNibble();
    state_.caretBlinkOn = true;
    RestartBlinkTimer();
    UpdateScrollBars(); // brings an overwriting caret back to the last byte
    ShowChange();
}

Handled HexView::Remove(Key key) {
    if (!CanEdit()) return Handled::No;
    const std::uint64_t size = state_.editableDocument->GetEditedSize();
    if (size == 0) return Handled::No;
    if (state_.hasSelection) return RemoveSelection();
    const bool forward = key == Key::Delete;
    if (forward ? state_.caret >= size : state_.caret == 0) return Handled::Yes;
    return RemoveAt(forward ? state_.caret : state_.caret - 1);
}

Handled HexView::RemoveAt(std::uint64_t offset) {
    if (!state_.editableDocument->DeleteByte(offset)) return Handled::No;
    ShowRemoval(offset);
    return Handled::Yes;
}

Handled HexView::RemoveSelection() {
    const auto [first, last] = SelectionOf(state_);
    std::uint64_t end = last + 1; // what lies between here and the old end is gone
    while (end > first && state_.editableDocument->DeleteByte(end - 1))
        --end;
    if (end != last + 1) ShowRemoval(first);
    return end == first ? Handled::Yes : Handled::No;
}

void HexView::ShowRemoval(std::uint64_t caret) {
    ClearNibble();
    ClearSelection();
    FitOffsetColumn(state_);
    state_.caret = std::min(caret, LastCaretOffset(state_));
    EnsureCaretVisible();
    ShowChange();
}

void HexView::CopySelection() {
    if (!state_.hasSelection) return;
    const auto [first, last] = SelectionOf(state_);
    if (const auto text = HexText(*state_.document, first, last)) host_.CopyToClipboard(*text);
}

} // namespace kvx
