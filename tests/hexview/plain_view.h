// What a user expects of the hex view, said without rows, scrolling or hosts: caret, selection and
// digits over a plain document.
#pragma once

#include "tests/document/plain_document.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace kvx {

/// An editable view.
class PlainView {
public:
    explicit PlainView(Bytes content) : document(std::move(content)) {}

    PlainDocument document;
    std::uint64_t caret = 0;
    bool inserting = false;
    std::optional<std::pair<std::uint64_t, std::uint64_t>> selection; ///< anchor and end, inclusive

    std::uint64_t Size() const { return document.EditedSize(); }
    std::uint64_t Last() const { return Size() - (inserting || Size() == 0 ? 0 : 1); }

    void MoveTo(std::uint64_t offset) {
        caret = std::min(offset, Last());
        selection.reset();
        ForgetDigit();
    }
    void MoveBy(std::int64_t delta) {
        const auto target = static_cast<std::int64_t>(caret) + delta;
        MoveTo(target < 0 ? 0 : static_cast<std::uint64_t>(target));
    }
    void Select(std::uint64_t anchor, std::uint64_t end) {
        MoveTo(anchor);
        selection = {anchor, end};
    }
    void ToggleInserting() {
        inserting = !inserting;
        caret = std::min(caret, Last());
        ForgetDigit();
    }
    void ForgetDigit() { half_.reset(); }

    void Type(unsigned digit) {
        if (!inserting && Size() == 0) return;
        if (!half_) {
            half_ = digit;
            if (!inserting) Overwrite(digit, document.ReadBytes(caret, 1).front() % 16U);
            return;
        }
        const unsigned high = *half_;
        ForgetDigit();
        if (inserting)
            document.InsertByte(caret, static_cast<std::uint8_t>(high * 16 + digit));
        else
            Overwrite(high, digit);
        if (caret < Last()) MoveTo(caret + 1);
    }

    void Remove(bool forward) {
        if (Size() == 0) return;
        std::uint64_t first = forward ? caret : caret - 1;
        std::uint64_t count = 1;
        if (selection) {
            const auto [low, high] = std::minmax(selection->first, selection->second);
            first = low;
            count = high - low + 1;
        } else if (forward ? caret == Size() : caret == 0) {
            return;
        }
        for (; count > 0; --count)
            document.DeleteByte(first);
        MoveTo(first);
    }

private:
    void Overwrite(unsigned high, unsigned low) {
        document.OverwriteByte(caret, static_cast<std::uint8_t>(high * 16 + low));
    }

    std::optional<unsigned> half_; ///< the first digit of a byte, typed already
};

} // namespace kvx
