// What the person does with files.
#include "soak.h"

#include "file_bytes.h"
#include "file_drop.h"
#include "waiting.h"

#include <algorithm>
#include <iterator>

namespace kvx::test {

// The program saves, and when it is done what is on the disk is what the model says.
void Soak::ExpectSaved() {
    Require(WaitUntil([&] { return ::IsWindowEnabled(View()) != FALSE; }), "the save ends");
    input_->Settle();
    if (model_.IsModified()) {
        ++done_.saves;
        done_.inPlace += model_.view.document.IsSavedInPlace() ? 1 : 0;
    }
    model_.Save();
    const SoakFile& file = model_.files.at(*model_.open);
    Require(FileEquals(PathOf(*model_.open), file.onDisk), "the saved bytes are those expected");
    std::set<std::u16string> names;
    for (const SoakFile& each : model_.files)
        names.insert(each.name);
    Require(folder_.Names() == names, "a save leaves nothing else behind");
}

void Soak::Save() {
    Do(Command::Save);
    if (model_.open) ExpectSaved();
}

// Another program reads the file: it can be neither written nor replaced.
void Soak::SaveWhileHeld() {
    if (!model_.IsModified()) return;
    UniqueFileHandle reader(::CreateFileW(PathOf(*model_.open).c_str(), GENERIC_READ,
                                          FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    Require(static_cast<bool>(reader), "the file can be read");
    Do(Command::Save);
    Answer("error.save_failed", IDOK);
    reader.Reset();
    CheckShown();
    Save();
}

bool Soak::ConfirmChanges() {
    if (!model_.IsModified()) return true;
    constexpr int kButtons[] = {IDYES, IDNO, IDNO, IDCANCEL};
    const int button = kButtons[Below(std::size(kButtons))];
    Note("answer ", button);
    Answer("confirm.save_changes", button);
    if (button == IDYES) ExpectSaved();
    return button != IDCANCEL;
}

void Soak::Close() {
    Do(Command::Close);
    if (ConfirmChanges()) model_.Show(std::nullopt);
}

void Soak::RefuseToEnd() {
    if (!model_.IsModified()) return;
    input_->Post(kivra_.MainWindow(), WM_CLOSE);
    Answer("confirm.save_changes", IDCANCEL);
}

// Most of the time a small file; at first each of them once. And most of the time to edit it.
void Soak::Open() {
    constexpr std::size_t kLargeFiles = 2; // at the end
    const std::size_t small = model_.files.size() - 1 - kLargeFiles;
    const bool first = done_.opened < static_cast<int>(model_.files.size()) - 1;
    const std::size_t file = first       ? static_cast<std::size_t>(done_.opened)
                             : OneIn(10) ? small + Below(kLargeFiles)
                                         : Below(small);
    OpenFile(file);
    if (!OneIn(4)) ToggleReadOnly();
}

void Soak::OpenFile(std::size_t file) {
    const auto place = std::ranges::find(model_.recent, file) - model_.recent.begin();
    const bool recent = place < std::ssize(model_.recent);
    Note(Utf16ToUtf8(model_.files.at(file).name));
    if (recent && !OneIn(5)) {
        Note("recent ", place);
        Do(Command::RecentFirst, static_cast<std::uint32_t>(place));
        if (!ConfirmChanges()) return;
    } else if (OneIn(3)) {
        Note("by dialog");
        Do(Command::Open);
        if (!ConfirmChanges()) return;
        ChooseFile(PathOf(file));
    } else {
        Note("dropped");
        Close();
        if (model_.open) return;
        DropFile(PathOf(file));
    }
    input_->Settle();
    model_.Show(file);
    ++done_.opened;
}

void Soak::DropFile(const std::filesystem::path& path) {
    const FileDrop drop(kivra_, {path});
    input_->Settle();
}

void Soak::ChooseFile(const std::filesystem::path& path) {
    Require(ChooseInFileDialog(kivra_.Id(), path.wstring()), "a file can be chosen");
    ++done_.fileDialogs;
}

void Soak::OpenMissing() {
    const std::size_t place = Below(model_.recent.size());
    const std::size_t file = model_.recent.at(place);
    if (model_.IsModified() || file == model_.open) return;
    const std::filesystem::path away = program_.Folder() / "away.bin";
    std::filesystem::rename(PathOf(file), away);
    Do(Command::RecentFirst, static_cast<std::uint32_t>(place));
    Answer("error.open_failed", IDOK);
    model_.Show(std::nullopt);
    std::filesystem::rename(away, PathOf(file));
}

// Starts another process, which is closed at once.
void Soak::DropOnOpenDocument() {
    if (!model_.open) return;
    DropFile(PathOf(0));
    // Its title is told apart from this one's by the file.
    const std::u16string name = model_.files.front().name;
    HWND other = nullptr;
    Require(WaitUntil([&] {
                for (HWND window = nullptr;
                     (window = ::FindWindowExW(nullptr, window, L"Kivra.MainWindow", nullptr)) !=
                     nullptr;) {
                    if (window != kivra_.MainWindow() &&
                        TextOf(window).find(name) != std::u16string::npos)
                        other = window;
                }
                return other != nullptr;
            }),
            "another window comes");
    ::PostMessageW(other, WM_CLOSE, 0, 0);
    Require(WaitUntil([&] { return ::IsWindow(other) == FALSE; }), "the other window goes");
}

} // namespace kvx::test
