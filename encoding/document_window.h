// A stretch of a document that is read once and looked at many times.
#pragma once

#include "document/read_only_document.h"

#include <cstdint>

namespace kvx {

/// The document must outlive the window and stay as it is meanwhile. Offsets are those of the
/// document; `to` is exclusive and may lie beyond its end.
class DocumentWindow {
public:
    explicit DocumentWindow(const IReadOnlyDocument& document)
        : document_(document), size_(document.GetSize()) {}

    /// Reads the stretch that View then answers from.
    void Load(std::uint64_t from, std::uint64_t to);

    /// The bytes from `from` on, read first where they are not at hand. Fewer than asked for at the
    /// end of the document, fewer or none where it cannot be read. Valid until the next call.
    ByteView View(std::uint64_t from, std::uint64_t to);

private:
    bool LoadBefore(std::uint64_t from);

    const IReadOnlyDocument& document_;
    std::uint64_t size_;
    std::uint64_t from_ = 0;
    Bytes bytes_;
};

} // namespace kvx
