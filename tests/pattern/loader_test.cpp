#include "pattern/summary.h"
#include "tests/pattern/pattern_testing.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx {
namespace {

/// Files of one kind of content, whose reads may fail or come in small pieces.
class FakeFiles : public FileLayer {
public:
    std::string content;
    std::optional<std::uint64_t> size; ///< instead of the content's
    bool sizeFails = false;
    std::size_t readsUntilFailure = 1000;
    std::size_t largestRead = 1000;

    std::unique_ptr<ReadableFile> OpenForReading(const std::u16string&, ErrorCode&) override {
        return std::make_unique<File>(*this);
    }
    std::unique_ptr<WritableFile> OpenForWriting(const std::u16string&, ErrorCode&) override {
        return nullptr;
    }
    std::unique_ptr<WritableFile> CreateForWriting(const std::u16string&, ErrorCode&) override {
        return nullptr;
    }
    std::optional<std::u16string> MakeTempFile(const std::u16string&, std::u16string_view,
                                               ErrorCode&) override {
        return std::nullopt;
    }
    FileResult MoveOver(const std::u16string&, const std::u16string&) override { return {}; }
    FileResult Delete(const std::u16string&) override { return {}; }

private:
    class File : public ReadableFile {
    public:
        explicit File(FakeFiles& files) : files_(files) {}

        std::optional<std::uint64_t> Size() const override {
            if (files_.sizeFails) return std::nullopt;
            return files_.size.value_or(files_.content.size());
        }
        std::optional<std::size_t> ReadAt(std::uint64_t offset, std::span<std::uint8_t> target,
                                          ErrorCode&) const override {
            if (files_.readsUntilFailure-- == 0) return std::nullopt;
            const std::string_view rest = std::string_view(files_.content).substr(offset);
            const std::size_t count = std::min({rest.size(), target.size(), files_.largestRead});
            std::copy_n(rest.begin(), count, target.begin());
            return count;
        }

    private:
        FakeFiles& files_;
    };
};

constexpr std::string_view kPattern =
    "@entry struct B\nstruct A { int x; };\nstruct B { char c; };";

TEST(Loader, ReadsAFileFromTheDisk) {
    const TempFolder folder;
    const std::u16string path = folder.Write(u"\u30D1\u30BF\u30FC\u30F3.kvpat", kPattern);
    const Outcome<SharedPattern> load = LoadStructPatternFile(path);
    ASSERT_TRUE(load);
    EXPECT_EQ((*load.value)->entryName, u"B");
    EXPECT_FALSE((*load.value)->entryIsImplicit);
    EXPECT_EQ((*load.value)->structs.size(), 2U);
    EXPECT_EQ(Utf16ToUtf8(LoadStructPatternFile(folder.Path(u"none.kvpat")).error),
              "Failed to open definition file.");
    EXPECT_EQ(Utf16ToUtf8(LoadStructPatternFile(folder.Root().u16string()).error),
              "Failed to open definition file.");
}

TEST(Loader, AFileThatCannotBeReadGivesNoPartOfIt) {
    const auto error = [](FakeFiles files) {
        files.content = kPattern;
        const Outcome<SharedPattern> load = LoadStructPatternFile(u"any", files);
        return load ? "(loaded)" : Utf16ToUtf8(load.error);
    };
    FakeFiles pieces;
    pieces.largestRead = 3;
    EXPECT_EQ(error(pieces), "(loaded)");
    FakeFiles noSize;
    noSize.sizeFails = true;
    EXPECT_EQ(error(noSize), "Failed to open definition file.");
    FakeFiles failing = pieces;
    failing.readsUntilFailure = 5;
    EXPECT_EQ(error(failing), "Failed to open definition file.");
    FakeFiles shrinking;
    shrinking.size = kPattern.size() + 1;
    EXPECT_EQ(error(shrinking), "Failed to open definition file.");
    FakeFiles huge;
    huge.size = std::uint64_t{1} << 31;
    EXPECT_EQ(error(huge), "Definition file must be UTF-8.");
}

TEST(Loader, AByteOrderMarkAtTheStartIsDropped) {
    EXPECT_EQ(LayoutOf("\xEF\xBB\xBFstruct S { char c; };"), LayoutOf("struct S { char c; };"));
    EXPECT_EQ(ErrorOf("\xEF\xBB\xBF="),
              "Line 1, Col 1: Unexpected character in definition file.\r\n=\r\n^");
}

TEST(Loader, NamesMayBeOfAnyScriptAndCase) {
    EXPECT_EQ(LayoutOf("TYPEDEF Struct \xC3\x89tat { UINT8_T \xE5\xA4\xA7; } Alias; @ENTRY struct "
                       "\xC3\xA9TAT"),
              "\xC3\x89tat size 1 align 1\n"
              "0 \xE5\xA4\xA7 : uint8_t 1*1=1 integer");
}

TEST(Loader, ChoosesTheEntryByTagOnly) {
    struct Case {
        std::string_view text;
        std::string_view entry;
        bool isImplicit;
    };
    const Case cases[] = {
        {"struct Only { int x; };", "Only", true},
        {"struct { int x; };", "<anonymous>", true},
        {"typedef struct { int x; } Alias;", "<anonymous>", true},
        {"@entry only struct Only { int x; };", "Only", false},
        {"@entry A @entry struct b struct A { int x; }; struct B { int y; };", "B", false},
        {"struct A { int x; }; typedef struct B { int y; } C; @entry B", "B", false},
        {"struct Struct { int x; }; struct B { int y; }; @entry struct struct", "Struct", false},
    };
    for (const Case& c : cases) {
        const Outcome<SharedPattern> load = LoadText(c.text);
        ASSERT_TRUE(load) << c.text << Utf16ToUtf8(load.error);
        EXPECT_EQ(Utf16ToUtf8((*load.value)->entryName), c.entry);
        EXPECT_EQ((*load.value)->entryIsImplicit, c.isImplicit) << c.text;
        EXPECT_EQ((*load.value)->Entry()->name, (*load.value)->entryName);
    }
}

TEST(Loader, TheSummaryListsEntryAndDirectives) {
    EXPECT_EQ(
        FormatPatternSummary(**LoadText("struct Head { int x; };").value),
        u"entry = Head (implicit)\r\nsizeof_short = 2\r\nsizeof_int = 4\r\nsizeof_long = 8\r\n"
        u"sizeof_long_long = 8\r\nsizeof_float = 4\r\nsizeof_double = 8\r\npointer_size = 8\r\n"
        u"member_align = 8");
    EXPECT_EQ(
        FormatPatternSummary(**LoadText("@entry Head @sizeof_short 1 @sizeof_int 2 @sizeof_long 4 "
                                        "@sizeof_long_long 16 @sizeof_float 8 @sizeof_double 4 "
                                        "@pointer_size 2 @member_align 0 struct Head { int x; };")
                                   .value),
        u"entry = Head\r\nsizeof_short = 1\r\nsizeof_int = 2\r\nsizeof_long = 4\r\n"
        u"sizeof_long_long = 16\r\nsizeof_float = 8\r\nsizeof_double = 4\r\npointer_size = 2\r\n"
        u"member_align = 0");
}

TEST(Loader, DirectivesAcceptExactlyTheirValues) {
    struct Case {
        std::string_view name;
        std::vector<int> allowed;
    };
    const Case cases[] = {
        {"sizeof_short", {1, 2, 4, 8}},     {"sizeof_int", {1, 2, 4, 8}},
        {"sizeof_long", {1, 2, 4, 8}},      {"sizeof_long_long", {1, 2, 4, 8, 16}},
        {"sizeof_float", {2, 4, 8, 16}},    {"sizeof_double", {4, 8, 16}},
        {"pointer_size", {1, 2, 4, 8, 16}}, {"member_align", {0, 4, 8}},
    };
    for (const Case& c : cases) {
        std::vector<int> accepted;
        for (int value = 0; value <= 65; ++value) {
            const std::string text = "@" + std::string(c.name) + " " + std::to_string(value);
            if (LoadText(text + " struct S { char c; };")) accepted.push_back(value);
        }
        EXPECT_EQ(accepted, c.allowed) << c.name;
    }
}

TEST(Loader, APatternOutlivesEverythingThatItWasMadeFrom) {
    SharedPattern pattern;
    {
        std::string text = "struct LongEnoughToBeOnTheHeap { MyOwnUnsignedType someMember; };\n"
                           "typedef unsigned int MyOwnUnsignedType;";
        pattern = *LoadText(text).value;
        std::fill(text.begin(), text.end(), '?');
    }
    EXPECT_EQ(Describe(*pattern->Entry()), "LongEnoughToBeOnTheHeap size 4 align 4\n"
                                           "0 someMember : myownunsignedtype 4*1=4 integer");
}

} // namespace
} // namespace kvx
