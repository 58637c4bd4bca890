// Every key of the user interface's texts, by where it is shown. A new text gets its key here and a
// line in each string file.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace kvx::test {

/// Keys that are on screen together: their mnemonics must differ.
struct KeyGroup {
    std::string name;
    std::vector<std::string> keys;
};

/// One group per menu, dialog or popup whose every text has a mnemonic.
inline const std::vector<KeyGroup>& GroupsWithMnemonics() {
    static const std::vector<KeyGroup> groups = {
        {"menu bar", {"menu.file", "menu.edit", "menu.view", "menu.settings", "menu.help"}},
        {"file menu",
         {"menu.file.open", "menu.file.save", "menu.file.close", "menu.file.more_recent",
          "menu.file.exit"}},
        {"edit menu", {"menu.edit.readonly"}},
        {"view menu", {"menu.view.find", "menu.view.goto", "menu.view.zoom"}},
        {"zoom menu", {"menu.view.zoom.out", "menu.view.zoom.in", "menu.view.zoom.reset"}},
        {"settings menu",
         {"menu.view.encoding", "menu.view.theme", "menu.view.language", "menu.settings.analysis",
          "menu.settings.font"}},
        {"encoding menu",
         {"menu.view.encoding.favorite", "menu.view.encoding.ascii", "menu.view.encoding.utf8",
          "menu.view.encoding.utf16le", "menu.view.encoding.utf16be", "menu.view.encoding.japanese",
          "menu.view.encoding.korean", "menu.view.encoding.chinese", "menu.view.encoding.thai",
          "menu.view.encoding.vietnamese", "menu.view.encoding.indic"}},
        {"favorites menu",
         {"menu.view.encoding.favorite.add_current", "menu.view.encoding.favorite.remove_current",
          "menu.view.encoding.favorite.clear"}},
        {"japanese menu", {"menu.view.encoding.shiftjis"}},
        {"korean menu", {"menu.view.encoding.windows949", "menu.view.encoding.euckr"}},
        {"chinese menu", {"menu.view.encoding.big5", "menu.view.encoding.gbk"}},
        {"thai menu", {"menu.view.encoding.tis620"}},
        {"vietnamese menu", {"menu.view.encoding.windows1258"}},
        {"indic menu", {"menu.view.encoding.iscii_devanagari"}},
        {"theme menu",
         {"menu.view.theme.light", "menu.view.theme.darkblue", "menu.view.theme.black"}},
        {"language menu",
         {"menu.view.language.system", "menu.view.language.english",
          "menu.view.language.japanese"}},
        {"analysis menu",
         {"menu.settings.analysis.data_inspector", "menu.settings.analysis.struct_view"}},
        {"help menu", {"menu.help.about"}},
        {"search dialog",
         {"dialog.search.type", "dialog.search.query", "dialog.search.previous",
          "dialog.search.next"}},
        {"font dialog",
         {"dialog.font.family", "dialog.font.size", "dialog.font.bold", "dialog.font.italic"}},
        {"value format menu",
         {"structview.valueformat.bytearray", "structview.valueformat.endian",
          "structview.valueformat.numericbase"}},
        {"byte array menu",
         {"structview.valueformat.bytearray.hex", "structview.valueformat.bytearray.ascii"}},
        {"byte order menu",
         {"structview.valueformat.endian.little", "structview.valueformat.endian.big"}},
        {"number base menu",
         {"structview.valueformat.numericbase.hex", "structview.valueformat.numericbase.dec"}},
    };
    return groups;
}

/// Texts that are shown as they are: titles, labels, messages, values.
inline const std::vector<KeyGroup>& PlainGroups() {
    static const std::vector<KeyGroup> groups = {
        {"product", {"app.title"}},
        {"about box",
         {"dialog.about.title", "about.version_label", "about.homepage_label",
          "about.license_heading"}},
        {"questions and errors",
         {"confirm.save_changes", "error.font_not_monospace", "error.goto_invalid",
          "error.open_failed", "error.open_new_instance_failed", "error.save_failed",
          "error.search_invalid_hex", "error.search_invalid_text", "error.search_not_found",
          "error.search_too_long"}},
        {"dialogs",
         {"dialog.common.ok", "dialog.common.cancel", "dialog.common.close", "dialog.font.title",
          "dialog.goto.title", "dialog.goto.prompt", "dialog.open.title", "dialog.search.title",
          "dialog.search.type.hex", "dialog.search.type.text", "dialog.struct_definition.title"}},
        {"status bar",
         {"status.encoding", "status.mode", "status.mode.insert", "status.mode.overwrite",
          "status.modified", "status.no_file", "status.offset", "status.readonly",
          "status.readonly_blocked", "status.saving", "status.searching", "status.zoom"}},
        {"data inspector",
         {"inspector.data.title", "inspector.data.column.name", "inspector.data.column.value",
          "inspector.data.value.unavailable", "inspector.data.row.binary",
          "inspector.data.row.current_encoding_char", "inspector.data.row.uint8_dec",
          "inspector.data.row.uint16_le", "inspector.data.row.uint16_be",
          "inspector.data.row.uint32_le", "inspector.data.row.uint32_be",
          "inspector.data.row.uint64_le", "inspector.data.row.uint64_be", "inspector.data.row.utf8",
          "inspector.data.row.utf16le", "inspector.data.row.utf16be"}},
        {"struct view",
         {"structview.title", "structview.header.definition", "structview.open.button",
          "structview.reload.button", "structview.close.button", "structview.info.button",
          "structview.empty.message", "structview.error.prefix", "structview.column.name",
          "structview.column.offset", "structview.column.size", "structview.column.type",
          "structview.column.value"}},
    };
    return groups;
}

inline std::set<std::string> AllKeys() {
    std::set<std::string> keys;
    for (const auto* groups : {&GroupsWithMnemonics(), &PlainGroups()}) {
        for (const KeyGroup& group : *groups)
            keys.insert(group.keys.begin(), group.keys.end());
    }
    return keys;
}

} // namespace kvx::test
