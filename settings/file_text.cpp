#include "settings/file_text.h"

#include <cstddef>
#include <span>

namespace kvx {

std::optional<std::string> ReadWholeFile(const ReadableFile& file) {
    const std::optional<std::uint64_t> size = file.Size();
    if (!size || *size > kMaxTextFileBytes) return std::nullopt;

    std::string text(static_cast<std::size_t>(*size), '\0');
    const std::span<std::uint8_t> target(reinterpret_cast<std::uint8_t*>(text.data()), text.size());
    std::size_t filled = 0;
    while (filled < text.size()) {
        ErrorCode error = 0;
        const std::optional<std::size_t> count = file.ReadAt(filled, target.subspan(filled), error);
        if (!count) return std::nullopt;
        if (*count == 0) break; // the file has become shorter meanwhile
        filled += *count;
    }
    text.resize(filled);
    return text;
}

} // namespace kvx
