// A read of the edited document: file bytes gathered by as few reads as it takes, new bytes laid
// between and over them.
#pragma once

#include "document/edit_index.h"
#include "document/file_view_model.h"
#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kvx {

/// Reads for one document. Keeps its working memory (at most about 1 MiB and what a read's edits
/// need) for the next read; it never keeps file bytes for it.
class EditedReader {
public:
    /// The bytes [offset, offset + count) of the edited document, which lie inside it; cut before
    /// the first one that the file does not give. Empty when there is no memory for so many.
    Bytes Read(const FileViewModel& file, const EditIndex& edits, std::uint64_t offset,
               std::uint64_t count);

private:
    class Gathering;

    /// A stretch of file bytes and where it goes in the result.
    struct Span {
        std::uint64_t onDisk = 0;
        std::size_t target = 0;
        std::size_t count = 0;
    };

    /// Replacement bytes that go over what was read from the file.
    struct Patch {
        std::size_t target = 0;
        ByteView bytes = {};
    };

    Bytes scratch_;
    std::vector<Span> spans_;
    std::vector<Patch> patches_;
};

} // namespace kvx
