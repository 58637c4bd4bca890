// Every key of the user interface's texts, by where it is shown. A new text gets its key here and a
// line in each string file.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace kvx::test {

/// One group per menu, dialog or popup whose every text has a mnemonic: together on screen, they
/// must differ. A line is what its keys begin with, then how each goes on.
inline constexpr char kKeysWithMnemonics[] = R"(
menu. file edit view settings help
menu.file. open save close more_recent exit
menu.edit. readonly
menu.view. find goto zoom
menu.view.zoom. out in reset
menu. view.encoding view.theme view.language settings.analysis settings.font
menu.view.encoding. favorite ascii utf8 utf16le utf16be japanese korean chinese thai vietnamese indic
menu.view.encoding.favorite. add_current remove_current clear
menu.view.encoding. shiftjis
menu.view.encoding. windows949 euckr
menu.view.encoding. big5 gbk
menu.view.encoding. tis620
menu.view.encoding. windows1258
menu.view.encoding. iscii_devanagari
menu.view.theme. light darkblue black
menu.view.language. system english japanese
menu.settings.analysis. data_inspector struct_view
menu.help. about
dialog.search. type query previous next
dialog.font. family size bold italic
structview.valueformat. bytearray endian numericbase
structview.valueformat.bytearray. hex ascii
structview.valueformat.endian. little big
structview.valueformat.numericbase. hex dec)";

/// Texts that are shown as they are: titles, labels, messages, values.
inline constexpr char kPlainKeys[] = R"(
app. title
dialog. about.title font.title goto.title goto.prompt open.title search.title struct_definition.title
dialog. common.ok common.cancel common.close search.type.hex search.type.text
about. version_label homepage_label license_heading
confirm. save_changes
error. font_not_monospace goto_invalid open_failed open_new_instance_failed save_failed
error.search_ invalid_hex invalid_text not_found too_long
status. encoding mode mode.insert mode.overwrite modified no_file offset readonly readonly_blocked
status. saving searching zoom
inspector.data. title column.name column.value value.unavailable
inspector.data.row. binary current_encoding_char uint8_dec uint16_le uint16_be uint32_le uint32_be
inspector.data.row. uint64_le uint64_be utf8 utf16le utf16be
structview. title header.definition empty.message error.prefix
structview. open.button reload.button close.button info.button
structview.column. name offset size type value)";

/// The whole keys of each line.
inline std::vector<std::vector<std::string>> KeyGroups(const char* lines) {
    std::vector<std::vector<std::string>> groups;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        std::istringstream words(line);
        std::string prefix;
        words >> prefix;
        std::vector<std::string>& keys = groups.emplace_back();
        for (std::string rest; words >> rest;)
            keys.push_back(prefix + rest);
    }
    return groups;
}

} // namespace kvx::test
