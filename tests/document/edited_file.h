// A file in a folder of its own, open in a document whose file calls can be made to fail, and what
// the document should read as: a plain string edited alongside.
#pragma once

#include "document/editable_document.h"
#include "tests/document/faulty_file_layer.h"
#include "tests/support/temp_folder.h"

#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kvx {

/// `count` bytes that differ from place to place.
inline std::string Pattern(std::size_t count, unsigned seed = 0) {
    std::string text(count, '\0');
    for (std::size_t i = 0; i < count; ++i)
        text[i] = static_cast<char>((i + seed) * 2654435761U >> 13);
    return text;
}

class EditedFile {
public:
    explicit EditedFile(std::string_view content) : onDisk(content), expected(content) {
        Require(document.Open(folder.Write(kName, content)));
        files.ResetCounts();
    }

    void Overwrite(std::size_t position, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i)
            Require(document.OverwriteByte(position + i, static_cast<std::uint8_t>(text[i])));
        expected.replace(position, text.size(), text);
    }

    void Insert(std::size_t position, std::string_view text) {
        for (std::size_t i = 0; i < text.size(); ++i)
            Require(document.InsertByte(position + i, static_cast<std::uint8_t>(text[i])));
        expected.insert(position, text);
    }

    void Delete(std::size_t position, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i)
            Require(document.DeleteByte(position));
        expected.erase(position, count);
    }

    void Append(std::string_view text) { Insert(expected.size(), text); }
    void DeleteLast(std::size_t count) { Delete(expected.size() - count, count); }

    std::string Disk() const { return folder.Read(kName); }

    std::string Shown() const {
        const Bytes bytes = document.ReadBytes(0, document.GetSize());
        return {bytes.begin(), bytes.end()};
    }

    /// The edits in on-disk order: "I7+3" is three bytes inserted at anchor 7.
    std::string Records() const {
        std::string text;
        PieceWalk walk(document.Edits(), onDisk.size());
        while (const auto piece = walk.Next()) {
            if (piece->kind == PieceKind::Unchanged) continue;
            text += text.empty() ? "" : " ";
            text += "UIOD"[static_cast<std::size_t>(piece->kind)];
            text += std::to_string(piece->position) + "+" + std::to_string(piece->count);
        }
        return text;
    }

    /// True when nothing but the file itself is in the folder.
    bool IsAlone() const { return folder.Names() == std::set<std::u16string>{kName}; }

    static constexpr const char16_t* kName = u"f.bin";

    TempFolder folder;
    FaultyFileLayer files;
    EditableDocument document{files};
    std::string onDisk;   ///< the file as it was opened
    std::string expected; ///< the document

private:
    static void Require(bool done) {
        if (!done) throw std::logic_error("the document refused");
    }
};

} // namespace kvx
