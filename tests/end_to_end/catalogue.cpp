#include "catalogue.h"

#include "app/dialog_layout.h"
#include "app/menu_model.h"
#include "hexview/hex_digits.h"
#include "panes/list_model.h"
#include "panes/struct_view_layout.h"
#include "panes/value_format_menu.h"
#include "platform/text.h"
#include "settings/string_table.h"
#include "tests/hexview/view_stage.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace kvx::test {
namespace {

constexpr char kCommands[] = "commands";
constexpr char kKeys[] = "keys";
constexpr char kPaths[] = "dialog paths";
constexpr char kBoxes[] = "message boxes";

constexpr char kHexView[] = "Kivra.HexView";
constexpr char kInspector[] = "Kivra.DataInspectorWindow";
constexpr char kStructView[] = "Kivra.StructViewWindow";
constexpr char kStructViewTitle[] = "structview.title";

const std::pair<std::string_view, const DialogLayout&> kOwnDialogs[] = {
    {"dialog.search.title", kSearchLayout},
    {"dialog.goto.title", kPromptLayout},
    {"dialog.font.title", kFontLayout},
    {"dialog.about.title", kAboutLayout},
};

// Those whose texts are in no string file.
constexpr std::pair<std::u16string_view, std::string_view> kFixedBoxes[] = {
    {u"The last action could not be finished", "unexpected error"},
    {u"Failed to create packaged settings directory", "no settings folder"},
};

constexpr std::pair<int, std::string_view> kAnswers[] = {
    {IDYES, "yes"}, {IDNO, "no"}, {IDCANCEL, "cancel"}, {IDCLOSE, "closed"}};

// The program's texts in both languages.
const std::vector<StringMap>& Texts() {
    static const std::vector<StringMap> texts = [] {
        const std::filesystem::path program = ::_wgetenv(L"KIVRA_PROGRAM_FOLDER");
        std::vector<StringMap> languages;
        for (const char* file : {"en-US.txt", "ja-JP.txt"}) {
            std::ostringstream text;
            text << std::ifstream(program / "resources" / "strings" / file, std::ios::binary)
                        .rdbuf();
            languages.push_back(ParseStringFile(text.str()));
        }
        return languages;
    }();
    return texts;
}

bool IsTitle(std::string_view key) {
    return key.ends_with(".title");
}

bool IsQuestion(std::string_view key) {
    return key.starts_with("confirm.");
}

bool IsBoxText(std::string_view key) {
    return key.starts_with("error.") || IsQuestion(key);
}

/// The key, among those asked for, of a text that stands alone or has a reason behind a blank line.
std::string KeyOf(std::u16string_view text, bool (*isAskedFor)(std::string_view)) {
    const std::u16string_view first = text.substr(0, text.find(u"\r\n\r\n"));
    for (const StringMap& language : Texts()) {
        for (const auto& [key, value] : language) {
            if (isAskedFor(key) && (value == text || value == first)) return key;
        }
    }
    return Utf16ToUtf8(text);
}

std::string ClassOf(HWND window) {
    char name[64] = {};
    ::GetClassNameA(window, name, 64);
    return name;
}

const DialogLayout* LayoutOf(std::string_view titleKey) {
    for (const auto& [key, layout] : kOwnDialogs) {
        if (key == titleKey) return &layout;
    }
    return nullptr;
}

std::string PathName(std::string_view titleKey, std::string_view path) {
    return std::string(titleKey) + ": " + std::string(path);
}

std::vector<std::pair<std::uint32_t, std::string_view>> StructViewControls() {
    std::vector<std::pair<std::uint32_t, std::string_view>> controls;
    for (const StructViewButton& button : kStructViewButtons)
        controls.emplace_back(button.command, button.textKey);
    for (const ValueFormatGroup& group : kValueFormatMenu) {
        for (const ValueFormatItem& item : group.items)
            controls.emplace_back(item.command, item.textKey);
    }
    return controls;
}

std::string ControlName(std::string_view titleKey, int id) {
    std::string name = std::to_string(id);
    for (const auto& [command, key] : StructViewControls()) {
        if (titleKey == kStructViewTitle && command == static_cast<std::uint32_t>(id))
            name += " " + std::string(key);
    }
    if (const DialogLayout* layout = LayoutOf(titleKey)) {
        for (const ControlLayout& control : layout->controls) {
            if (control.id == id && !control.textKey.empty())
                name += " " + std::string(control.textKey);
        }
    }
    return PathName(titleKey, name);
}

// The menu with all that it can hold, by its text keys.
using CommandNames = std::map<std::uint32_t, std::string>;

void CollectCommands(const std::vector<MenuItem>& items, CommandNames& names) {
    for (const MenuItem& item : items) {
        if (item.kind == MenuItemKind::Command)
            names.emplace(CommandId(item.command), Utf16ToUtf8(item.text));
        CollectCommands(item.children, names);
    }
}

const CommandNames& MenuCommands() {
    static const CommandNames names = [] {
        MenuState state;
        state.fileOpen = true;
        state.favoriteEncodings = {TextEncoding::Ascii, TextEncoding::Utf8, TextEncoding::Big5};
        state.recentFiles.assign(kMaxRecentFiles, u"recent file");
        CommandNames all;
        CollectCommands(BuildMenuBar(state, [](std::string_view key) { return Utf8ToUtf16(key); }),
                        all);
        return all;
    }();
    return names;
}

std::string CommandName(std::uint32_t id) {
    const auto named = MenuCommands().find(id);
    return std::to_string(id) + (named == MenuCommands().end() ? "" : " " + named->second);
}

// What a key changes in a view that can be edited.
struct KeyEffect {
    Handled handled;
    std::uint64_t caret;
    Bytes bytes;
    std::vector<std::u16string> copied;

    friend bool operator==(const KeyEffect&, const KeyEffect&) = default;
};

KeyEffect Press(WORD virtualKey, bool control) {
    ViewStage stage(CountingBytes(100));
    stage.Enter(InsertMode::Overwrite, 40);
    stage.view.SetSelection(40, 41);
    const Handled handled = stage.view.OnKeyDown(static_cast<Key>(virtualKey), control);
    return {handled, stage.State().caret, stage.document.bytes, stage.host.copied};
}

// The view itself says which keys it takes, and whether Control makes a difference.
void AddViewKeys(std::set<Use>& all) {
    const auto add = [&all](const std::string& key) {
        all.emplace(kKeys, PathName(kHexView, key));
    };
    for (WORD key = 1; key < 255; ++key) {
        const KeyEffect plain = Press(key, false);
        const KeyEffect control = Press(key, true);
        if (plain.handled == Handled::Yes) add(KeyName(key));
        if (control.handled == Handled::Yes && control != plain) add(KeyName(key, true));
    }
    for (char16_t character = u' '; character < 127; ++character) {
        if (HexDigitValue(character)) add(std::string(1, static_cast<char>(character)));
    }
}

// What the menu promises.
void AddKeyHints(std::set<Use>& all) {
    for (const auto& [key, text] : Texts().front()) {
        const std::size_t tab = text.find(u'\t');
        if (tab != text.npos)
            all.emplace(kKeys, PathName(kHexView, Utf16ToUtf8(text.substr(tab + 1))));
    }
}

void AddPaneKeys(std::set<Use>& all) {
    for (const std::string_view pane : {kInspector, kStructView}) {
        for (WORD key = 1; key < 255; ++key) {
            const bool withoutControl = ListKeyOf(key, false).has_value();
            if (ListKeyOf(key, true))
                all.emplace(kKeys, PathName(pane, KeyName(key, !withoutControl)));
        }
    }
    for (const WORD key : {WORD{VK_F5}, WORD{VK_TAB}, WORD{VK_RETURN}})
        all.emplace(kKeys, PathName(kStructView, KeyName(key)));
}

void AddOwnDialog(std::set<Use>& all, std::string_view titleKey, const DialogLayout& layout) {
    for (const ControlLayout& control : layout.controls) {
        if (control.kind != ControlKind::Label && control.kind != ControlKind::TextBox)
            all.emplace(kPaths, ControlName(titleKey, control.id));
    }
    for (const char* end : {"Enter", "Esc", "close box"})
        all.emplace(kPaths, PathName(titleKey, end));
}

void AddDialogs(std::set<Use>& all) {
    for (const auto& [key, text] : Texts().front()) {
        if (!key.starts_with("dialog.") || !IsTitle(key)) continue;
        if (const DialogLayout* layout = LayoutOf(key)) {
            AddOwnDialog(all, key, *layout);
        } else { // the system's, for a file
            for (const char* end : {"accepted", "cancelled"})
                all.emplace(kPaths, PathName(key, end));
        }
    }
    for (const char* direction : {"previous", "next"}) {
        for (const char* outcome : {" found", " not found", " cancelled"})
            all.emplace(kPaths, PathName("dialog.search.title", std::string(direction) + outcome));
    }
}

void AddPanes(std::set<Use>& all) {
    for (const auto& [command, key] : StructViewControls())
        all.emplace(kPaths, ControlName(kStructViewTitle, static_cast<int>(command)));
    for (const char* path : {"menu by mouse", "menu by key", "menu left by Esc", "close box"})
        all.emplace(kPaths, PathName(kStructViewTitle, path));
    all.emplace(kPaths, PathName("inspector.data.title", "close box"));
}

void AddBoxes(std::set<Use>& all) {
    for (const auto& [key, text] : Texts().front()) {
        if (IsQuestion(key)) {
            for (const auto& [button, answer] : kAnswers)
                all.emplace(kBoxes, PathName(key, answer));
        } else if (IsBoxText(key)) {
            all.emplace(kBoxes, key);
        }
    }
    for (const auto& [text, name] : kFixedBoxes)
        all.emplace(kBoxes, name);
}

} // namespace

std::set<Use> AllThereIs() {
    std::set<Use> all;
    for (const auto& [id, name] : MenuCommands())
        all.emplace(kCommands, CommandName(id));
    AddViewKeys(all);
    AddKeyHints(all);
    AddPaneKeys(all);
    AddDialogs(all);
    AddPanes(all);
    AddBoxes(all);
    return all;
}

Use CommandUse(std::uint32_t id) {
    return {kCommands, CommandName(id)};
}

Use KeyUse(HWND window, std::string_view key) {
    const std::string name = ClassOf(window);
    return {kKeys, PathName(name == "Button" ? ClassOf(::GetParent(window)) : name, key)};
}

Use ControlUse(std::u16string_view caption, int id) {
    return {kPaths, ControlName(KeyOf(caption, IsTitle), id)};
}

Use PathUse(std::u16string_view caption, std::string_view path) {
    return {kPaths, PathName(KeyOf(caption, IsTitle), path)};
}

Use BoxUse(std::u16string_view text, int button) {
    for (const auto& [start, name] : kFixedBoxes) {
        if (text.starts_with(start)) return {kBoxes, std::string(name)};
    }
    const std::string key = KeyOf(text, IsBoxText);
    for (const auto& [id, answer] : kAnswers) {
        if (IsQuestion(key) && id == button) return {kBoxes, PathName(key, answer)};
    }
    return {kBoxes, key};
}

std::string KeyName(WORD virtualKey, bool control) {
    static const std::map<WORD, std::string> names = {
        {VK_BACK, "Backspace"}, {VK_TAB, "Tab"},        {VK_RETURN, "Enter"}, {VK_ESCAPE, "Esc"},
        {VK_PRIOR, "Page Up"},  {VK_NEXT, "Page Down"}, {VK_END, "End"},      {VK_HOME, "Home"},
        {VK_LEFT, "Left"},      {VK_UP, "Up"},          {VK_RIGHT, "Right"},  {VK_DOWN, "Down"},
        {VK_INSERT, "Insert"},  {VK_DELETE, "Delete"},  {VK_F4, "F4"},        {VK_F5, "F5"}};
    const auto known = names.find(virtualKey);
    const bool isLetter = virtualKey >= 'A' && virtualKey <= 'Z';
    const std::string name = known != names.end() ? known->second
                             : isLetter           ? std::string(1, static_cast<char>(virtualKey))
                                                  : "key " + std::to_string(virtualKey);
    return (control ? "Ctrl+" : "") + name;
}

} // namespace kvx::test
