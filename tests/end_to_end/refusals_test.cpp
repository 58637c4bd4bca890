// What the window says when the system refuses what it never refuses a test.
#include "dialog_user.h"
#include "program_texts.h"
#include "replaced_import.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <thread>

#include <shlobj.h>

KIVRA_IMPORT(EnumFontFamiliesExW);
KIVRA_IMPORT(GetProcAddress);
KIVRA_IMPORT(SHGetKnownFolderPath);

namespace kvx::test {
namespace {

constexpr std::wstring_view kBox = L"#32770";

int WINAPI NoFonts(HDC, LPLOGFONTW, FONTENUMPROCW, LPARAM, DWORD) {
    return 0;
}

int WINAPI NoMemory(HDC, LPLOGFONTW, FONTENUMPROCW, LPARAM, DWORD) {
    throw std::bad_alloc();
}

class RefusalsTest : public testing::Test {
protected:
    ProgramCopy program_;
    ProgramTexts text_{program_};
    TempFolder files_;
};

TEST_F(RefusalsTest, WithoutAFixedWidthFontThereIsNoneToChoose) {
    const InProcessWindow window(program_);
    const ReplacedImport fonts(__imp_EnumFontFamiliesExW, NoFonts);
    UseDialog(window, Command::Font, kBox, [&](const Dialog&) {
        EXPECT_EQ(TakeBox(), text_("error.font_not_monospace") + u"|" + text_("app.title"));
    });
}

TEST_F(RefusalsTest, AShortageOfMemoryIsToldOfAndLosesNothing) {
    InProcessWindow window(program_, files_.Write(u"data.bin", "content"));
    window.Run(Command::ToggleReadOnly);
    window.Type("41");
    const std::u16string status = window.Status();
    {
        const ReplacedImport fonts(__imp_EnumFontFamiliesExW, NoMemory);
        UseDialog(window, Command::Font, kBox, [&](const Dialog&) {
            EXPECT_TRUE(TakeBox().starts_with(u"The last action could not be finished"));
        });
    }
    EXPECT_EQ(window.Status(), status);
    window.Run(Command::Save);
    EXPECT_EQ(files_.Read(u"data.bin"), "Aontent");
}

// A program that runs from a package whose folder cannot be made.

std::u16string localAppData;
decltype(&::GetProcAddress) systemGetProcAddress = nullptr;

LONG WINAPI FamilyName(UINT32* length, PWSTR name) {
    constexpr std::wstring_view kName = L"Kivra_0";
    const bool fits = *length > kName.size();
    *length = static_cast<UINT32>(kName.size()) + 1;
    if (fits) kName.copy(name, kName.size() + 1);
    if (fits) name[kName.size()] = L'\0';
    return fits ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER;
}

FARPROC WINAPI Packaged(HMODULE library, LPCSTR name) {
    constexpr ULONG_PTR kLastOrdinal = 0xFFFF;
    const bool isName = reinterpret_cast<ULONG_PTR>(name) > kLastOrdinal;
    return isName && name == std::string_view("GetCurrentPackageFamilyName")
               ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(&FamilyName))
               : systemGetProcAddress(library, name);
}

HRESULT WINAPI LocalAppData(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
    const std::size_t size = (localAppData.size() + 1) * sizeof(char16_t);
    *path = static_cast<PWSTR>(::CoTaskMemAlloc(size));
    std::memcpy(*path, localAppData.c_str(), size);
    return S_OK;
}

TEST_F(RefusalsTest, APackageWithoutItsFolderIsToldOfAtTheStart) {
    files_.Write(u"Packages", "not a folder");
    localAppData = files_.Root().u16string();
    systemGetProcAddress = __imp_GetProcAddress;
    const ReplacedImport functions(__imp_GetProcAddress, Packaged);
    const ReplacedImport folders(__imp_SHGetKnownFolderPath, LocalAppData);
    std::u16string box;
    std::thread person([&] { box = TakeBox(); });
    AppWindow window({.programFolder = program_.Folder().u16string(), .settingsPath = {}});
    EXPECT_TRUE(window.Initialize(::GetModuleHandleW(nullptr), std::nullopt));
    person.join();
    EXPECT_TRUE(box.starts_with(u"Failed to create packaged settings directory: "));
    EXPECT_TRUE(box.ends_with(u"|" + text_("app.title")));
}

} // namespace
} // namespace kvx::test
