// How far a save is, as its caller is told.
#pragma once

#include "document/progress.h"

#include <algorithm>
#include <cstdint>

namespace kvx {

/// Passes on the bytes done so far: never more than the total, never fewer than before. The total
/// is at least 1, so that the caller may divide by it.
class SaveProgress {
public:
    /// `callback` must outlive this object; it may be empty.
    SaveProgress(const ProgressCallback& callback, std::uint64_t editedSize)
        : callback_(callback), total_(std::max<std::uint64_t>(editedSize, 1)) {}

    void Report(std::uint64_t done) {
        done_ = std::max(done_, std::min(done, total_));
        if (callback_) callback_(done_, total_);
    }

    void ReportAll() { Report(total_); }

private:
    const ProgressCallback& callback_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
};

} // namespace kvx
