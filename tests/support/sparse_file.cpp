#include "tests/support/sparse_file.h"

#include <fstream>

#ifdef _WIN32
#include "platform/win32/handle.h"

#include <winioctl.h>
#endif

namespace kvx {
namespace {

#ifdef _WIN32
// The library's call makes sure of disk space for all the zeros, and the system would write them.
void Extend(const std::filesystem::path& path, std::uint64_t size) {
    const UniqueFileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD ignored = 0;
    ::DeviceIoControl(file.Get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &ignored, nullptr);
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(size);
    ::SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN);
    ::SetEndOfFile(file.Get());
}
#else
void Extend(const std::filesystem::path& path, std::uint64_t size) {
    std::filesystem::resize_file(path, size);
}
#endif

} // namespace

void MakeSparseFile(const std::filesystem::path& path, std::uint64_t size, std::string_view head,
                    std::string_view tail) {
    std::ofstream(path, std::ios::binary) << head;
    Extend(path, size - tail.size());
    std::ofstream(path, std::ios::binary | std::ios::app) << tail;
}

} // namespace kvx
