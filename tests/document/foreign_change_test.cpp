// Other programs change the file while it is shown, edited and saved.
#include "tests/document/edited_file.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace kvx {
namespace {

using std::filesystem::path;

constexpr const char* kContent = "0123456789";

struct Edit {
    const char* name;
    void (*make)(EditedFile&);
};

const Edit kInPlace = {"in place", [](EditedFile& f) { f.Overwrite(5, "over"); }};
const Edit kThroughTempFile = {"through a temporary file", [](EditedFile& f) { f.Insert(5, "x"); }};

struct Change {
    const char* name;
    void (*make)(const path& file);
};

const Change kDelete = {"deleted", [](const path& file) { std::filesystem::remove(file); }};
const Change kRename = {"renamed", [](const path& file) {
                            std::filesystem::rename(file, file.parent_path() / "elsewhere");
                        }};
const Change kTruncate = {"truncated",
                          [](const path& file) { std::filesystem::resize_file(file, 4); }};
const Change kGrow = {"grown", [](const path& file) {
                          std::ofstream(file, std::ios::app | std::ios::binary) << "!";
                      }};
const Change kRewrite = {"rewritten", [](const path& file) {
                             std::fstream(file, std::ios::in | std::ios::out) << "abcdefghij";
                         }};
const Change kReplace = {"replaced", [](const path& file) {
                             std::filesystem::rename(file, file.parent_path() / "backup");
                             std::ofstream(file) << "other";
                         }};

struct Case {
    Change change;
    Edit edit;
    std::string_view shown; ///< before the save
    std::string_view saved; ///< the file after it; empty: the save fails
};

using namespace std::string_view_literals;
const Case kCases[] = {
#ifndef _WIN32 // Wine still opens it for writing, and what is written goes with it
    {kDelete, kInPlace, "01234over9", ""},
#endif
    {kDelete, kThroughTempFile, "01234x56789", "01234x56789"},
    {kRename, kInPlace, "01234over9", ""},
    {kRename, kThroughTempFile, "01234x56789", "01234x56789"},
    // What is shown ends where the file does; what was replaced behind that is still written.
    {kTruncate, kInPlace, "0123", "0123\0over"sv},
    {kTruncate, kThroughTempFile, "0123", ""},
    {kGrow, kInPlace, "01234over9", "01234over9!"},
    {kGrow, kThroughTempFile, "01234x56789", "01234x56789"},
    {kRewrite, kInPlace, "abcdeoverj", "abcdeoverj"},
    {kRewrite, kThroughTempFile, "abcdexfghij", "abcdexfghij"},
    {kReplace, kInPlace, "01234over9", "otherover"},
    {kReplace, kThroughTempFile, "01234x56789", "01234x56789"},
};

TEST(ForeignChange, IsShownAsFarAsTheFileGivesItAndLosesNoEdit) {
    for (const auto& [change, edit, shown, saved] : kCases) {
        SCOPED_TRACE(testing::Message() << change.name << ", saved " << edit.name);
        EditedFile file(kContent);
        edit.make(file);
        change.make(file.folder.Path(EditedFile::kName));
        std::set<std::u16string> names = file.folder.Names();
        const std::string before = file.Disk();
        EXPECT_EQ(file.Shown(), shown);
        EXPECT_EQ(file.document.GetSize(), file.expected.size());

        EXPECT_EQ(file.document.Save(), !saved.empty());
        EXPECT_EQ(file.document.IsModified(), saved.empty());
        EXPECT_EQ(file.Disk(), saved.empty() ? before : saved);
        EXPECT_EQ(file.Shown(), saved.empty() ? shown : saved);
        if (!saved.empty()) names.insert(EditedFile::kName);
        EXPECT_EQ(file.folder.Names(), names);
    }
}

TEST(ForeignChange, ThatIsTakenBackLetsALaterSaveSucceed) {
    for (const auto& [change, edit] :
         {std::pair(kRename, kInPlace), {kTruncate, kThroughTempFile}}) {
        EditedFile file(kContent);
        edit.make(file);
        change.make(file.folder.Path(EditedFile::kName));
        EXPECT_FALSE(file.document.Save());
        file.folder.Write(EditedFile::kName, kContent);
        EXPECT_TRUE(file.document.Save()) << change.name;
        EXPECT_EQ(file.Disk(), file.expected);
    }
}

} // namespace
} // namespace kvx
