#include "app/command_line.h"

namespace kvx {

std::optional<std::u16string> StartFileOf(const std::vector<std::u16string>& arguments) {
    if (arguments.size() < 2 || arguments[1].empty()) return std::nullopt;
    return arguments[1];
}

// A Windows path holds no double quote, so quoting alone makes one argument of it.
std::u16string NewProcessCommandLine(const std::u16string& program, const std::u16string& file) {
    return u"\"" + program + u"\" \"" + file + u"\"";
}

} // namespace kvx
