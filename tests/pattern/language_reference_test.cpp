// The users' reference of the pattern language: every example in it is run, every message, type and
// directive is in it.
//
// An example is a block of the kind `kvpat`; blocks that follow it tell what comes out of it:
// `bytes` is what the pattern is laid over, `rows` and its options what the view then shows,
// `error` the message and `summary` the info.
#include "pattern/summary.h"
#include "tests/pattern/sample_testing.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace kvx {
namespace {

struct Block {
    std::string kind;
    std::string options;
    std::string text;
    int line;
};

std::string Reference() {
    return ReadText(SourceRoot() / "docs" / "pattern-language.md");
}

std::vector<Block> Blocks() {
    std::vector<Block> blocks;
    std::istringstream document(Reference());
    bool inside = false;
    int number = 1;
    for (std::string line; std::getline(document, line); ++number) {
        if (line.starts_with("```")) {
            inside = !inside;
            if (!inside) continue;
            const std::size_t kindEnd = std::min(line.find(' '), line.size());
            blocks.push_back({line.substr(3, kindEnd - 3), line.substr(kindEnd), {}, number});
        } else if (inside) {
            blocks.back().text += (blocks.back().text.empty() ? "" : "\n") + line;
        }
    }
    return blocks;
}

void SetOptions(StructEvalRequest& request, const std::string& options) {
    request.format = {};
    request.baseOffset = 0;
    std::istringstream words(options);
    for (std::string word; words >> word;) {
        if (word == "ascii") request.format.byteArrays = ByteArrayStyle::Ascii;
        if (word == "big") request.format.byteOrder = ByteOrder::Big;
        if (word == "decimal") request.format.numberBase = NumberBase::Decimal;
        if (word == "at") words >> request.baseOffset;
    }
}

TEST(LanguageReference, EveryExampleDoesWhatItSays) {
    Outcome<SharedPattern> load;
    StructEvalRequest request;
    int examples = 0;
    bool hasResult = true;
    for (const Block& block : Blocks()) {
        const std::string where = "line " + std::to_string(block.line) + " of the reference";
        if (block.kind == "kvpat") {
            EXPECT_TRUE(hasResult) << "the example before " << where << " shows no result";
            hasResult = false;
            load = LoadText(block.text);
            request.pattern = load.value.value_or(nullptr);
            ++examples;
        } else if (block.kind == "bytes") {
            request.bytes = HexBytes(block.text);
        } else {
            hasResult = true;
            SetOptions(request, block.options);
            std::string text = Utf16ToUtf8(load.error);
            if (load && block.kind == "rows") text = Describe(EvaluateStruct(request));
            if (load && block.kind == "summary")
                text = Utf16ToUtf8(FormatPatternSummary(**load.value));
            std::erase(text, '\r');
            // The columns of rows are aligned with blanks.
            const std::string shown =
                block.kind == "rows" ? std::regex_replace(block.text, std::regex(" *\\| *"), " | ")
                                     : block.text;
            EXPECT_EQ(text, shown) << where;
        }
    }
    EXPECT_TRUE(hasResult);
    EXPECT_GE(examples, 15);
}

TEST(LanguageReference, ListsExactlyTheValuesThatEachDirectiveTakes) {
    const std::string document = Reference();
    const std::regex row(R"re(\| `(@[a-z_]+)` \| ([0-9, ]+) \| (\d+) \|)re");
    std::sregex_iterator match(document.begin(), document.end(), row), end;
    EXPECT_EQ(std::distance(match, end), 8);
    for (; match != end; ++match) {
        const std::string name = (*match)[1];
        std::string accepted;
        for (int value = 0; value <= 65; ++value) {
            const std::string text = name + " " + std::to_string(value) + " struct S { char c; };";
            if (LoadText(text)) accepted += (accepted.empty() ? "" : ", ") + std::to_string(value);
        }
        EXPECT_EQ(accepted, (*match)[2]) << name;
        const std::string summary =
            Utf16ToUtf8(FormatPatternSummary(**LoadText("struct S { char c; };").value)) + "\r\n";
        const std::string byDefault = name.substr(1) + " = " + (*match)[3].str() + "\r\n";
        EXPECT_NE(summary.find(byDefault), std::string::npos) << byDefault;
    }
}

/// What the first group of `pattern` matches in the product's sources.
std::set<std::string> FindInSources(const std::string& pattern) {
    std::set<std::string> found;
    const std::regex regex(pattern);
    for (const auto& entry : std::filesystem::directory_iterator(SourceRoot() / "pattern")) {
        if (entry.path().extension() != ".cpp") continue;
        const std::string source = ReadText(entry.path());
        for (std::sregex_iterator match(source.begin(), source.end(), regex), end; match != end;
             ++match)
            found.insert((*match)[1]);
    }
    return found;
}

void ExpectInReference(const std::set<std::string>& texts, std::size_t count) {
    const std::string document = Reference();
    EXPECT_EQ(texts.size(), count);
    for (const std::string& text : texts)
        EXPECT_NE(document.find("`" + text + "`"), std::string::npos) << text;
}

TEST(LanguageReference, ExplainsEveryMessageAndNamesEveryType) {
    ExpectInReference(FindInSources(R"re(u"([A-Z@][^"]* [^"]*(\.|: ))")re"), 45);
    ExpectInReference(FindInSources(R"re(BuiltInType\{u"([^"]+)")re"), 26);
}

} // namespace
} // namespace kvx
