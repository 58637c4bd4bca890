#include "encoding/document_window.h"

#include <algorithm>
#include <cstddef>

namespace kvx {

void DocumentWindow::Load(std::uint64_t from, std::uint64_t to) {
    from_ = std::min(from, size_);
    bytes_ = document_.ReadBytes(from_, std::clamp(to, from_, size_) - from_);
}

/// Puts the bytes from `from` on in front of those at hand; false, changing nothing, when they
/// cannot be read.
bool DocumentWindow::LoadBefore(std::uint64_t from) {
    Bytes front = document_.ReadBytes(from, from_ - from);
    if (front.size() != from_ - from) return false;
    front.insert(front.end(), bytes_.begin(), bytes_.end());
    bytes_ = std::move(front);
    from_ = from;
    return true;
}

ByteView DocumentWindow::View(std::uint64_t from, std::uint64_t to) {
    from = std::min(from, size_);
    to = std::clamp(to, from, size_);
    const bool endsInside = to >= from_ && to <= from_ + bytes_.size();
    if (endsInside && from < from_) {
        if (!LoadBefore(from)) return {};
    } else if (!endsInside) {
        Load(from, to);
    }
    const auto skipped = static_cast<std::size_t>(from - from_);
    return ByteView(bytes_).subspan(
        skipped, std::min(bytes_.size() - skipped, static_cast<std::size_t>(to - from)));
}

} // namespace kvx
