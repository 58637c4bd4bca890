// What the program must show and have written after any number of actions, said by plain means.
#pragma once

#include "program_texts.h"

#include "app/status_text.h"
#include "platform/text.h"
#include "tests/hexview/plain_view.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace kvx::test {

/// A file of the run; `onDisk` is what its bytes must be.
struct SoakFile {
    std::u16string name;
    std::string onDisk;
};

inline Bytes ToBytes(const std::string& text) {
    const auto* const first = reinterpret_cast<const std::uint8_t*>(text.data());
    return {first, first + text.size()};
}

inline std::string ToString(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

inline std::u16string ToUtf16(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

/// Two digits for each byte.
inline std::u16string HexText(std::string_view bytes, const char* separator) {
    std::string text;
    char digits[3] = {};
    for (const char byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned char>(byte));
        text += (text.empty() ? "" : separator) + std::string(digits);
    }
    return ToUtf16(text);
}

inline std::u16string Hex(std::uint64_t number) {
    std::ostringstream text;
    text << std::hex << std::uppercase << number;
    return ToUtf16(text.str());
}

class SoakModel {
public:
    SoakModel(const ProgramCopy& program, std::vector<SoakFile> fileList)
        : files(std::move(fileList)), texts_{ProgramTexts(program, UiLanguage::System),
                                             ProgramTexts(program, UiLanguage::English),
                                             ProgramTexts(program, UiLanguage::Japanese)} {}

    std::vector<SoakFile> files;
    std::optional<std::size_t> open; ///< index of the open file
    PlainView view{{}};
    bool editable = false;
    TextEncoding encoding = TextEncoding::Ascii;
    int zoom = 100; ///< percent
    UiLanguage language = UiLanguage::English;
    std::vector<TextEncoding> favorites;
    std::vector<std::size_t> recent; ///< indices of files, newest first
    bool inspector = false;
    bool structView = false;
    bool pattern = false; ///< one of two bytes, `a` and `b`, is loaded
    StructViewFormat format;

    const ProgramTexts& Text() const { return texts_.at(static_cast<std::size_t>(language)); }
    bool IsModified() const { return open && view.document.IsModified(); }

    /// Every file starts read-only at its first byte; the insert mode stays.
    void Show(std::optional<std::size_t> file) {
        const bool inserting = view.inserting;
        open = file;
        view = PlainView(file ? ToBytes(files.at(*file).onDisk) : Bytes());
        view.inserting = inserting;
        editable = false;
        if (!file) return;
        std::erase(recent, *file);
        recent.insert(recent.begin(), *file);
        if (recent.size() > kMaxRecentFiles) recent.resize(kMaxRecentFiles);
    }

    void Save() {
        if (!IsModified()) return;
        view.document.Save();
        files.at(*open).onDisk = ToString(view.document.Content());
    }

    std::u16string Title() const {
        return open ? Text().Title(files.at(*open).name, IsModified()) : Text()("app.title");
    }

    std::u16string Status() const {
        StatusState state;
        if (open)
            state.file = StatusFields{view.caret,
                                      view.Size(),
                                      encoding,
                                      editable,
                                      view.inserting,
                                      IsModified(),
                                      static_cast<float>(zoom) / 100.0F};
        return StatusText(state, Text());
    }

private:
    std::array<ProgramTexts, 3> texts_; ///< by language
};

} // namespace kvx::test
