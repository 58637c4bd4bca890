// The edited document: byte edits laid over an unchanged file until they are saved.
//
// Three records keyed by positions in the on-disk file (size S) say what was edited:
// - Insertions: anchor (0..S) -> bytes that stand before the on-disk byte there; S: at the end
// - Deletions: on-disk positions whose bytes are removed
// - Overwrites: on-disk position -> a byte other than the file's; never a deleted position
// EditIndex holds them in one balanced tree, so that mapping a position and every edit cost
// O(log n) in the number of edits.
#pragma once

#include "document/edit_index.h"
#include "document/file_view_model.h"
#include "document/progress.h"
#include "document/read_ahead.h"
#include "document/read_only_document.h"

#include <cstdint>
#include <string>

namespace kvx {

/// Not synchronised: used from the thread that owns it, saving included.
class EditableDocument final : public IEditableDocument {
public:
    /// `files` must outlive the document.
    explicit EditableDocument(FileLayer& files = SystemFileLayer());

    /// Closes what is open (dropping its edits), then opens `path`; false leaves the document
    /// closed.
    bool Open(const std::u16string& path);

    /// Drops all edits and the error text and closes the file.
    void Close();

    bool IsOpen() const override;
    std::uint64_t GetSize() const override;
    std::u16string GetPath() const override;
    Bytes ReadBytes(std::uint64_t offset, std::uint64_t count) const override;
    std::size_t ReadInto(std::uint64_t offset, std::span<std::uint8_t> target) const override;
    bool OverwriteByte(std::uint64_t offset, std::uint8_t value) override;
    bool InsertByte(std::uint64_t offset, std::uint8_t value) override;
    bool DeleteByte(std::uint64_t offset) override;
    bool IsModified() const override;
    std::uint64_t GetEditedSize() const override;

    /// Writes the edits to the file. True: the file equals the document, no edits are left and the
    /// file is open again. False: the edits are kept and GetLastErrorText() says why (it may be
    /// empty). False also when the file, saved or not, does not open again: the document is closed
    /// then and IsModified() tells whether its edits are still to be saved.
    bool Save(const ProgressCallback& progress = {});

    /// Why the last Save failed, for the user; empty after a success.
    std::u16string GetLastErrorText() const { return lastErrorText_; }

    /// The edits, for saving and for tests.
    const EditIndex& Edits() const { return edits_; }

private:
    /// Empties the edit records and drops whatever was remembered of the file's bytes.
    void ForgetEdits() noexcept;

    FileViewModel file_;
    EditIndex edits_;
    std::u16string lastErrorText_;
    mutable ReadAhead fileAhead_; ///< for overwrites in a row; dropped by every other operation
};

} // namespace kvx
