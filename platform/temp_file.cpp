#include "platform/temp_file.h"

#include "platform/number_text.h"
#include "platform/system.h"

namespace kvx {
namespace {

constexpr ErrorCode kFileExists = 80;

std::u16string TempFileName(std::u16string_view prefix, unsigned number) {
    std::u16string name(prefix);
    AppendHex(name, number, 4);
    return name + u".tmp";
}

} // namespace

std::optional<std::u16string> MakeUniqueFile(const std::u16string& folder,
                                             std::u16string_view prefix, std::uint16_t start,
                                             const CreateNewFile& createNew, ErrorCode& error) {
    for (unsigned tried = 0; tried < 0x10000; ++tried) {
        std::u16string path = JoinPath(folder, TempFileName(prefix, (start + tried) & 0xFFFF));
        error = createNew(path);
        if (error == 0) return path;
        if (error != kFileExists) return std::nullopt;
    }
    return std::nullopt;
}

} // namespace kvx
