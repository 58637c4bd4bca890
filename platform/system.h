// Questions asked of the running system, outside files. Callable from every thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// The user's locale name, for example u"en-US"; empty optional when the system does not tell and
/// on POSIX.
std::optional<std::u16string> UserLocaleName();

/// Full path of the running program's file; empty when the system does not tell.
std::u16string ProgramPath();

/// Folder of the running program, without a trailing separator; empty when the system does not
/// tell.
std::u16string ProgramFolder();

/// The process's current directory; raises std::filesystem::filesystem_error for "current_path()".
std::u16string CurrentFolder();

/// Milliseconds since the system started; never goes back.
std::uint64_t TickCount();

/// Family name of the application package that the process runs in; empty when it runs unpackaged.
std::optional<std::u16string> PackageFamilyName();

/// The user's local application data folder, which holds those of packages; empty when the system
/// does not tell and on POSIX.
std::optional<std::u16string> LocalAppDataFolder();

/// Joins a folder and a name with the system's separator (none when the folder is empty or ends in
/// one).
std::u16string JoinPath(const std::u16string& folder, const std::u16string& name);

/// Characters after the last backslash or slash of `path`.
std::u16string FileNameOf(const std::u16string& path);

/// Parent folder of `path` as the file system library gives it; empty when it has none.
std::u16string ParentFolder(const std::u16string& path);

/// One form for the spellings of a path: the weakly canonical one or, where the file system cannot
/// tell, the lexically normal one. Letter case stays.
std::u16string NormalizedPath(const std::u16string& path);

/// True when the program runs under Wine, whose child windows cannot show every kind of Direct2D
/// target. Always false on POSIX.
bool RunsUnderWine();

} // namespace kvx
