// Files dropped on the window of another process.
#pragma once

#include "kivra_process.h"

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <shlobj.h>

namespace kvx::test {

/// One drop, posted by the constructor. Must live until the program has dealt with it.
///
/// A memory handle of this process means nothing to the other one, so the list is put at an address
/// there: an address stands for a fixed block of memory.
class FileDrop {
public:
    FileDrop(const KivraProcess& kivra, const std::vector<std::filesystem::path>& paths)
        : process_(::OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, kivra.Id())) {
        const std::string block = BlockOf(paths);
        place_ = ::VirtualAllocEx(process_.Get(), nullptr, block.size(), MEM_COMMIT | MEM_RESERVE,
                                  PAGE_READWRITE);
        if (place_ == nullptr ||
            ::WriteProcessMemory(process_.Get(), place_, block.data(), block.size(), nullptr) ==
                FALSE ||
            ::PostMessageW(kivra.MainWindow(), WM_DROPFILES, reinterpret_cast<WPARAM>(place_), 0) ==
                FALSE)
            throw std::runtime_error("files cannot be dropped");
    }
    ~FileDrop() { ::VirtualFreeEx(process_.Get(), place_, 0, MEM_RELEASE); }
    FileDrop(const FileDrop&) = delete;
    FileDrop& operator=(const FileDrop&) = delete;

private:
    static std::string BlockOf(const std::vector<std::filesystem::path>& paths) {
        std::wstring names;
        for (const auto& path : paths)
            names += path.wstring() + L'\0';
        names += L'\0';
        DROPFILES header{};
        header.pFiles = sizeof header;
        header.fWide = TRUE;
        std::string block(sizeof header + names.size() * sizeof(wchar_t), '\0');
        std::memcpy(block.data(), &header, sizeof header);
        std::memcpy(block.data() + sizeof header, names.data(), names.size() * sizeof(wchar_t));
        return block;
    }

    UniqueKernelHandle process_;
    void* place_ = nullptr;
};

} // namespace kvx::test
