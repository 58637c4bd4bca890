#include "document/editable_document.h"

#include "document/edited_read.h"

#include <algorithm>
#include <new>

namespace kvx {
namespace {

/// Makes an edit; false when there is no memory for it, the document is unchanged then.
template <typename Edit>
bool Change(Edit&& edit) {
    try {
        edit();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace

EditableDocument::EditableDocument(FileLayer& files) : file_(files) {}

bool EditableDocument::Open(const std::u16string& path) {
    // `path` may be this document's own, which closing clears.
    const std::u16string kept = path;
    Close();
    return file_.Open(kept);
}

void EditableDocument::Close() {
    ForgetEdits();
    lastErrorText_.clear();
    file_.Close();
}

bool EditableDocument::IsOpen() const {
    return file_.IsOpen();
}

std::uint64_t EditableDocument::GetSize() const {
    return GetEditedSize();
}

std::u16string EditableDocument::GetPath() const {
    return file_.GetPath();
}

bool EditableDocument::IsModified() const {
    return !edits_.IsEmpty();
}

std::uint64_t EditableDocument::GetEditedSize() const {
    // Without the file, which a failed save may not get back, the edits alone are no document.
    return IsOpen() ? edits_.EditedSize(file_.GetSize()) : 0;
}

Bytes EditableDocument::ReadBytes(std::uint64_t offset, std::uint64_t count) const {
    fileAhead_.Drop();
    const std::uint64_t size = GetEditedSize();
    if (!IsOpen() || offset >= size || count == 0) return {};
    return ReadEdited(file_, edits_, offset, std::min(count, size - offset));
}

std::size_t EditableDocument::ReadInto(std::uint64_t offset, std::span<std::uint8_t> target) const {
    fileAhead_.Drop();
    const std::uint64_t size = GetEditedSize();
    if (!IsOpen() || offset >= size || target.empty()) return 0;
    const std::uint64_t count = std::min<std::uint64_t>(target.size(), size - offset);
    return ReadEditedInto(file_, edits_, offset, target.first(static_cast<std::size_t>(count)));
}

bool EditableDocument::OverwriteByte(std::uint64_t offset, std::uint8_t value) {
    if (!IsOpen() || offset >= GetEditedSize()) return false;
    const std::optional<std::uint64_t> onDisk = edits_.OnDiskPosition(offset);
    if (!onDisk) return Change([&] { edits_.OverwriteByte(offset, value); });

    const std::optional<std::uint8_t> inFile = fileAhead_.ByteAt(file_, *onDisk);
    if (!inFile) return false;
    if (*inFile == value) return Change([&] { edits_.RestoreByte(offset); });
    return Change([&] { edits_.OverwriteByte(offset, value); });
}

bool EditableDocument::InsertByte(std::uint64_t offset, std::uint8_t value) {
    fileAhead_.Drop();
    if (!IsOpen() || offset > GetEditedSize()) return false;
    return Change([&] { edits_.InsertByte(offset, value); });
}

bool EditableDocument::DeleteByte(std::uint64_t offset) {
    fileAhead_.Drop();
    if (!IsOpen() || offset >= GetEditedSize()) return false;
    return Change([&] { edits_.DeleteByte(offset); });
}

void EditableDocument::ForgetEdits() noexcept {
    edits_.Clear();
    fileAhead_.Drop();
}

} // namespace kvx
