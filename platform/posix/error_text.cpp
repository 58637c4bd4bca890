#include "platform/posix/errors.h"

#include "platform/text.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string>

namespace kvx {
namespace {

constexpr ErrorCode kGeneralFailure = 31;

struct ErrorRow {
    int number;
    ErrorCode code;
    const char* text;
};

// Several numbers may share a code; its first row has the text.
constexpr ErrorRow kErrors[] = {
    {ENOENT, 2, "The file does not exist."},
    {ENOTDIR, 3, "The folder does not exist."},
    {EMFILE, 4, "Too many files are open."},
    {ENFILE, 4, nullptr},
    {EACCES, 5, "Access is denied."},
    {EPERM, 5, nullptr},
    {EISDIR, 5, nullptr},
    {EBADF, 6, "The file is not open."},
    {ENOMEM, 8, "There is not enough memory."},
    {EXDEV, 17, "The file cannot be moved to another disk."},
    {EROFS, 19, "The disk is write-protected."},
    {ENODEV, 20, "The device does not exist."},
    {ENXIO, 20, nullptr},
    {EBUSY, 32, "The file is in use."},
    {ETXTBSY, 32, nullptr},
    {EEXIST, 80, "The file exists already."},
    {EINVAL, 87, "The request is not valid."},
    {EPIPE, 109, "The other end was closed."},
    {ENOSPC, 112, "There is not enough space on the disk."},
    {EDQUOT, 112, nullptr},
    {ENOTEMPTY, 145, "The folder is not empty."},
    {ENAMETOOLONG, 206, "The file name is too long."},
    {EFBIG, 223, "The file is too large for the disk."},
    {EIO, 1117, "The device reported a read or write error."},
    {ELOOP, 1921, "The name leads around in a circle of links."},
    {0, kGeneralFailure, "The device does not work."},
};

} // namespace

ErrorCode Win32CodeOf(int errorNumber) {
    const auto* row = std::find_if(std::begin(kErrors), std::end(kErrors),
                                   [&](const ErrorRow& r) { return r.number == errorNumber; });
    return row == std::end(kErrors) ? kGeneralFailure : row->code;
}

ErrorCode LastErrorCode() {
    return Win32CodeOf(errno);
}

std::u16string Win32ErrorText(ErrorCode code) {
    if (code == 0) return {};
    const auto* row = std::find_if(std::begin(kErrors), std::end(kErrors),
                                   [&](const ErrorRow& r) { return r.code == code; });
    if (row == std::end(kErrors)) return Utf8ToUtf16("Win32 error: " + std::to_string(code));
    return Utf8ToUtf16(row->text);
}

} // namespace kvx
