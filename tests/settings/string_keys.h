// The keys of the texts that have a mnemonic, by where they are shown. A new one gets its key here.
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

/// The whole keys of each line.
inline std::vector<std::vector<std::string>> KeyGroups() {
    std::vector<std::vector<std::string>> groups;
    std::istringstream stream(kKeysWithMnemonics);
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
