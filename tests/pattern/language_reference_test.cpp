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

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::string Reference() {
    return ReadText(SourceRoot() / "docs" / "pattern-language.md");
}

std::vector<Block> Blocks(const std::string& document) {
    std::vector<Block> blocks;
    bool inside = false;
    int number = 0;
    for (const std::string& line : Lines(document)) {
        ++number;
        if (line.starts_with("```")) {
            inside = !inside;
            if (!inside) continue;
            const std::size_t kindEnd = std::min(line.find(' '), line.size());
            blocks.push_back({line.substr(3, kindEnd - 3), line.substr(kindEnd), {}, number});
        } else if (inside) {
            blocks.back().text += line + "\n";
        }
    }
    return blocks;
}

std::string WithoutTrailingBlanks(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string Trimmed(const std::string& text) {
    const std::size_t start = text.find_first_not_of(' ');
    return start == std::string::npos ? "" : WithoutTrailingBlanks(text.substr(start));
}

/// A table of the document as Describe writes rows: its columns without the blanks that align them.
std::string Unaligned(const std::string& table) {
    std::string text;
    for (const std::string& line : Lines(table)) {
        std::istringstream columns(line);
        std::string row;
        for (std::string column; std::getline(columns, column, '|');)
            row += row.empty() ? WithoutTrailingBlanks(column) : " | " + Trimmed(column);
        text += (text.empty() ? "" : "\n") + row;
    }
    return text;
}

Bytes HexBytes(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
    return bytes;
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
    const std::string document = Reference();
    Outcome<SharedPattern> load;
    StructEvalRequest request;
    int examples = 0;
    int results = 0;
    bool hasResult = true;
    for (const Block& block : Blocks(document)) {
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
            ++results;
            SetOptions(request, block.options);
            std::string text = Utf16ToUtf8(load.error);
            if (load && block.kind == "rows") text = Describe(EvaluateStruct(request));
            if (load && block.kind == "summary")
                text = Utf16ToUtf8(FormatPatternSummary(**load.value));
            std::erase(text, '\r');
            const std::string expected = block.kind == "rows"
                                             ? Unaligned(block.text)
                                             : block.text.substr(0, block.text.size() - 1);
            EXPECT_EQ(text, expected) << where;
        }
    }
    EXPECT_TRUE(hasResult);
    EXPECT_GE(examples, 15);
    EXPECT_GE(results, examples);
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

TEST(LanguageReference, ExplainsEveryMessage) {
    ExpectInReference(FindInSources(R"re(u"([A-Z@][^"]* [^"]*(\.|: ))")re"), 45);
}

TEST(LanguageReference, NamesEveryTypeAndDirective) {
    ExpectInReference(FindInSources(R"re(BuiltInType\{u"([^"]+)")re"), 26);
    std::set<std::string> directives;
    for (const std::string& name : FindInSources(R"re(Directive\{u"([^"]+)")re"))
        directives.insert("@" + name);
    ExpectInReference(directives, 8);
}

} // namespace
} // namespace kvx
