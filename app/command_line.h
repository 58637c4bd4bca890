// The command line, as read at the start and as written for a further process of the program.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kvx {

/// The file to open at the start: the first argument after the program's path, if there is one and
/// it is not empty. Further arguments do not count.
std::optional<std::u16string> StartFileOf(const std::vector<std::u16string>& arguments);

/// The command line that opens `file` in a new process of `program`.
std::u16string NewProcessCommandLine(const std::u16string& program, const std::u16string& file);

} // namespace kvx
