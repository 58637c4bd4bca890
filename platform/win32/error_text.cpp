#include "platform/file_layer.h"

#include "platform/text.h"
#include "platform/win32/handle.h"
#include "platform/win32/wide.h"

namespace kvx {

std::u16string Win32ErrorText(ErrorCode code) {
    if (code == 0) return {};
    wchar_t* message = nullptr;
    // With "allocate buffer" the call takes the place of the pointer where it otherwise takes the
    // text.
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
        nullptr, code, 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
    const UniqueLocalMemory owner(message);
    if (length == 0) return Utf8ToUtf16("Win32 error: " + std::to_string(code));
    std::u16string text = FromWide({message, length});
    text.resize(text.find_last_not_of(u"\r\n ") + 1);
    return text;
}

} // namespace kvx
