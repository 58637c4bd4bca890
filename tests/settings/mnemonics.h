// The letters that pick an item of a menu or a control of a dialog.
#pragma once

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kvx::test {

/// One group per dialog or popup whose every text has a mnemonic. A line is what its keys begin
/// with, then how each goes on. The menu bar's texts are not among them.
inline constexpr char kKeysWithMnemonics[] = R"(
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

/// Upper-case letters after each "&"; "&&" stands for the character itself.
inline std::u16string MnemonicsOf(const std::u16string& text) {
    std::u16string letters;
    for (std::size_t i = text.find(u'&'); i != std::u16string::npos; i = text.find(u'&', i + 2)) {
        const char16_t letter = i + 1 < text.size() ? text[i + 1] : u' ';
        if (letter != u'&') letters += letter >= u'a' && letter <= u'z' ? letter - 32 : letter;
    }
    return letters;
}

/// Texts that are on screen together have one mnemonic each, and each another one.
inline void ExpectOneMnemonicEach(const std::vector<std::u16string>& texts) {
    std::map<std::u16string, std::u16string> owners;
    for (const std::u16string& text : texts) {
        const std::u16string letters = MnemonicsOf(text);
        EXPECT_EQ(letters.size(), 1U) << testing::PrintToString(text);
        const auto [owner, isNew] = owners.try_emplace(letters, text);
        EXPECT_TRUE(isNew) << testing::PrintToString(text) << " and "
                           << testing::PrintToString(owner->second);
    }
}

} // namespace kvx::test
