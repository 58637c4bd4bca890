// Finding bytes in a document of any size, forwards or backwards, block by block.
#pragma once

#include "document/progress.h"
#include "document/read_only_document.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace kvx {

/// Bytes searched between two reports of the progress.
inline constexpr std::size_t kSearchBlockSize = std::size_t{1} << 20;

enum class SearchStatus : std::uint32_t { Found = 0, NotFound = 1, Cancelled = 2 };

struct SearchOutcome {
    SearchStatus status = SearchStatus::NotFound;
    std::uint64_t offset = 0; ///< of the match's first byte; 0 when nothing was found

    bool Found() const { return status == SearchStatus::Found; }
    friend bool operator==(const SearchOutcome&, const SearchOutcome&) = default;
};

/// Asked once for each block before it is read; false cancels the search. May be empty.
using ContinueCheck = std::function<bool()>;

/// The first match that begins at `start` or behind it. Both callbacks run on the caller's thread,
/// for each block first the progress and then the check. A block of which nothing can be read ends
/// the search. `document` must stay as it is until the search returns.
SearchOutcome SearchForward(const IReadOnlyDocument& document, ByteView pattern,
                            std::uint64_t start, const ProgressCallback& progress,
                            const ContinueCheck& mayContinue,
                            std::size_t blockSize = kSearchBlockSize);

/// The last match that begins at `start` or before it; `start` may lie anywhere. The same rules,
/// but what cannot be read is passed over.
SearchOutcome SearchBackward(const IReadOnlyDocument& document, ByteView pattern,
                             std::uint64_t start, const ProgressCallback& progress,
                             const ContinueCheck& mayContinue,
                             std::size_t blockSize = kSearchBlockSize);

} // namespace kvx
