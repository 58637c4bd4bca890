#include "platform/file_layer.h"

#include <algorithm>
#include <limits>

namespace kvx {

FileResult WriteAll(WritableFile& file, ByteView data) {
    constexpr std::size_t kMostPerCall = std::numeric_limits<std::uint32_t>::max();
    while (!data.empty()) {
        const ByteView part = data.first(std::min(data.size(), kMostPerCall));
        std::uint64_t written = 0;
        const FileResult result = file.Write(part, written);
        if (!result) return result;
        if (written < part.size()) return FileResult::Failure(0);
        data = data.subspan(part.size());
    }
    return FileResult::Success();
}

} // namespace kvx
