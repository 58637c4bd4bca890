#include "pattern/loader.h"
#include "pattern/summary.h"
#include "tests/document/faulty_file_layer.h"
#include "tests/pattern/pattern_testing.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx {
namespace {

using namespace std::string_view_literals;

TEST(Loader, ReadsAFileFromTheDiskOrTellsWhyNot) {
    constexpr std::string_view kFailed = "Failed to open definition file.";
    const TempFolder folder;
    const std::u16string path =
        folder.Write(u"\u30D1\u30BF\u30FC\u30F3.kvpat", "struct A { int x; };");
    FaultyFileLayer files;
    const auto load = [&](const std::u16string& file) {
        const Outcome<SharedPattern> result = LoadStructPatternFile(file, files);
        return result ? Describe(*(*result.value)->Entry()) : Utf16ToUtf8(result.error);
    };
    EXPECT_EQ(load(path), "A 4/4: 0 x int=4");
    EXPECT_EQ(load(folder.Path(u"none.kvpat")), kFailed);
    EXPECT_EQ(load(folder.Root().u16string()), kFailed);
    const std::uint64_t tooLarge = std::uint64_t{1} << 31;
    EXPECT_EQ(load(folder.WriteSparse(u"huge", tooLarge, "", "")),
              "Definition file must be UTF-8.");

    files.LimitReads(3);
    EXPECT_EQ(load(path), "A 4/4: 0 x int=4");
    for (const Failing failing : {Failing::WithCode, Failing::Throwing}) {
        files.ResetCounts();
        files.Arm({Call::Read, 2, failing});
        EXPECT_EQ(load(path), kFailed);
    }
    files.Disarm();
    files.LimitReads(0); // as if the file had become shorter
    EXPECT_EQ(load(path), kFailed);
}

TEST(Loader, AByteOrderMarkAtTheStartIsDropped) {
    EXPECT_EQ(LayoutOf("\xEF\xBB\xBFstruct S { char c; };"), "S 1/1: 0 c char=1");
    EXPECT_EQ(ErrorOf("\xEF\xBB\xBF="),
              "Line 1, Col 1: Unexpected character in definition file.\r\n=\r\n^");
}

TEST(Loader, ChoosesTheEntryByTagOnly) {
    // What the summary says of the entry of a file.
    const std::pair<std::string_view, std::string> cases[] = {
        {"struct Only { int x; };", "Only (implicit)"},
        {"struct { int x; };", "<anonymous> (implicit)"},
        {"typedef struct { int x; } Alias;", "<anonymous> (implicit)"},
        {"@entry only struct Only { int x; };", "Only"},
        {"@entry A @entry struct b struct A { int x; }; struct B { int y; };", "B"},
        {"struct A { int x; }; typedef struct B { int y; } C; @entry B", "B"},
        {"struct Struct { int x; }; struct B { int y; }; @entry struct struct", "Struct"},
        {"TYPEDEF Struct \xC3\x89tat { INT x; } Alias; @ENTRY struct \xC3\xA9TAT", "\xC3\x89tat"},
    };
    for (const auto& [text, entry] : cases) {
        const Outcome<SharedPattern> load = LoadText(text);
        ASSERT_TRUE(load) << text << Utf16ToUtf8(load.error);
        EXPECT_EQ((*load.value)->Entry()->name, (*load.value)->entryName);
        const std::string summary = Utf16ToUtf8(FormatPatternSummary(**load.value));
        EXPECT_EQ(summary.substr(0, summary.find('\r')), "entry = " + entry);
    }
}

TEST(Loader, APatternOutlivesEverythingThatItWasMadeFrom) {
    std::string text = "struct LongEnoughToBeOnTheHeap { MyOwnUnsignedType someMember; };\n"
                       "typedef unsigned int MyOwnUnsignedType;";
    const SharedPattern pattern = *LoadText(text).value;
    std::ranges::fill(text, '?');
    EXPECT_EQ(Describe(*pattern->Entry()),
              "LongEnoughToBeOnTheHeap 4/4: 0 someMember myownunsignedtype=4");
}

} // namespace
} // namespace kvx
