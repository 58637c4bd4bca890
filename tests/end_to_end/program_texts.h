// The texts that the program shows, from its own string files.
#pragma once

#include "kivra_process.h"

#include "settings/string_table.h"

namespace kvx::test {

/// Texts of `program` in one language.
class ProgramTexts {
public:
    explicit ProgramTexts(const ProgramCopy& program, UiLanguage language = UiLanguage::English) {
        table_.SetBaseFolder(program.Folder().u16string());
        table_.SetLanguage(language);
    }

    std::u16string operator()(std::string_view key) const { return table_.Get(key); }

    /// The window title with a file of this name.
    std::u16string Title(std::u16string_view name, bool modified = false) const {
        std::u16string title = table_.Get("app.title") + u" - ";
        title += name;
        if (modified) title += u" *";
        return title;
    }

private:
    StringTable table_;
};

} // namespace kvx::test
