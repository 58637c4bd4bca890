// Editing and saving in the real window, with the bytes on disk as the judge.
#include "dialog_user.h"
#include "file_bytes.h"
#include "kivra_process.h"
#include "program_texts.h"
#include "waiting.h"

#include "platform/file_layer.h"
#include "settings/settings_file.h"

#include <gtest/gtest.h>

namespace kvx::test {
namespace {

constexpr std::size_t kMebibyte = 1024 * 1024;

class EditingTest : public testing::Test {
protected:
    /// Makes the file and a program that shows it, editable when asked.
    std::unique_ptr<KivraProcess> Show(const std::string& bytes, bool editable = true) {
        WriteFileBytes(path_, bytes);
        return ShowPath(path_, editable);
    }

    std::unique_ptr<KivraProcess> ShowPath(const std::filesystem::path& path, bool editable) {
        auto kivra = std::make_unique<KivraProcess>(program_, Quoted(path));
        EXPECT_TRUE(kivra->WaitForWindow());
        EXPECT_TRUE(kivra->WaitForTitle(text_.Title(path.filename().u16string())));
        if (editable) kivra->Run(Command::ToggleReadOnly);
        return kivra;
    }

    /// Runs Save and expects it to fail with this reason, the change still being there.
    void ExpectSaveFailure(const KivraProcess& kivra, ErrorCode reason) {
        kivra.Post(Command::Save);
        const auto box = kivra.WaitForBox();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->Text(), text_("error.save_failed") + u"\r\n\r\n" + Win32ErrorText(reason));
        EXPECT_EQ(box->Caption(), text_("app.title"));
        ASSERT_TRUE(box->Press(IDOK));
        EXPECT_TRUE(kivra.WaitForTitle(text_.Title(path_.filename().u16string(), true)));
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
    std::filesystem::path path_ = files_.Root() / "data.bin";
    std::u16string clean_ = text_.Title(u"data.bin");
    std::u16string modified_ = text_.Title(u"data.bin", true);
};

TEST_F(EditingTest, WhatIsTypedOnTheKeyboardIsExactlyWhatIsSaved) {
    std::string expected = KnownBytes(3 * kMebibyte);
    const auto kivra = Show(expected, false);
    const Keyboard keys = kivra->Keys();
    ASSERT_TRUE(keys.TakeForeground());

    // Overwriting: byte 0 and the high digit of byte 1, once the view is editable.
    keys.Type("12");
    keys.PressWithControl('R');
    keys.Type("abc");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    expected[0] = '\xAB';
    expected[1] = static_cast<char>(0xC0 | (expected[1] & 0x0F));

    // Inserting two bytes before byte 16; a half-typed third one is given up by moving on.
    keys.Press(VK_HOME);
    keys.Press(VK_DOWN);
    keys.Press(VK_INSERT);
    keys.Type("00ff7");
    keys.Press(VK_RIGHT);
    expected.insert(16, std::string("\x00\xFF", 2));

    // Deleting the byte at the caret (19) and the one before it.
    keys.Press(VK_DELETE);
    keys.Press(VK_BACK);
    expected.erase(18, 2);

    // Appending at the very end.
    keys.PressWithControl(VK_END);
    keys.Type("5A");
    expected += 'Z';

    keys.PressWithControl(VK_HOME);
    keys.Press(VK_DELETE);
    expected.erase(0, 1);

    // Keys are taken one after the other: with this dialog there, all before it are done.
    keys.PressWithControl('G');
    const auto prompt = WaitForDialog(kivra->Id(), L"Kivra.PromptDialog");
    ASSERT_TRUE(prompt);
    prompt->Press(IDCANCEL);
    ASSERT_TRUE(prompt->WaitForEnd());
    kivra->Run(Command::Save);
    EXPECT_TRUE(kivra->WaitForTitle(clean_));
    EXPECT_TRUE(FileEquals(path_, expected));
    EXPECT_EQ(files_.Names(), std::set<std::u16string>{u"data.bin"});

    // The saved file is open again and can be edited further.
    kivra->Type("EE");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Run(Command::Save);
    expected.insert(0, "\xEE");
    EXPECT_TRUE(FileEquals(path_, expected));
}

TEST_F(EditingTest, AReadOnlyViewRefusesEveryEdit) {
    const std::string bytes = KnownBytes(1000);
    const auto kivra = Show(bytes, false);
    kivra->Type("AB");
    kivra->Key(VK_DELETE);
    kivra->Key(VK_BACK);
    kivra->Key(VK_INSERT);
    EXPECT_EQ(kivra->Title(), clean_);
    kivra->Run(Command::Save);
    EXPECT_TRUE(FileEquals(path_, bytes));

    kivra->RequestClose(); // nothing to ask
    EXPECT_EQ(kivra->WaitForExit(), 0);
}

TEST_F(EditingTest, BytesAreAddedToAnEmptyFile) {
    const auto kivra = Show("");
    kivra->Key(VK_INSERT);
    kivra->Type("4B76");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Run(Command::Save);
    EXPECT_TRUE(FileEquals(path_, "Kv"));
}

TEST_F(EditingTest, EveryByteCanBeDeleted) {
    const auto kivra = Show("abc");
    for (int i = 0; i < 3; ++i)
        kivra->Key(VK_DELETE);
    kivra->Run(Command::Save);
    EXPECT_TRUE(kivra->WaitForTitle(clean_));
    EXPECT_TRUE(FileEquals(path_, ""));
}

TEST_F(EditingTest, ClosingWithChangesAsksAndDoesWhatIsAnswered) {
    const std::string original = KnownBytes(100);
    std::string changed = original;
    changed[0] = '\x77';
    struct Row {
        int button;
        bool ends;
        const std::string& onDisk;
    };
    for (const Row& row :
         {Row{IDCANCEL, false, original}, Row{IDNO, true, original}, Row{IDYES, true, changed}}) {
        SCOPED_TRACE(row.button);
        const auto kivra = Show(original);
        kivra->Type("77");
        ASSERT_TRUE(kivra->WaitForTitle(modified_));
        kivra->RequestClose();
        const auto box = kivra->WaitForBox();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->Text(), text_("confirm.save_changes"));
        ASSERT_TRUE(box->Press(row.button));
        if (row.ends) {
            EXPECT_EQ(kivra->WaitForExit(), 0);
        } else {
            EXPECT_TRUE(kivra->WaitForTitle(modified_));
        }
        EXPECT_TRUE(FileEquals(path_, row.onDisk));
        if (row.ends) continue;
        kivra->Run(Command::Save); // the change was kept
        EXPECT_TRUE(FileEquals(path_, changed));
    }
}

TEST_F(EditingTest, EveryCommandThatGivesUpTheChangesAsksFirst) {
    const std::string original = KnownBytes(100);
    const std::filesystem::path other = files_.Root() / "other.bin";
    WriteFileBytes(other, original);
    AppSettings settings;
    settings.recentFiles = {other.u16string()};
    ASSERT_TRUE(SaveSettings(program_.SettingsFile().u16string(), settings).ok);
    const auto kivra = Show(original);
    kivra->Type("77");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    const auto answer = [&](Command command, int button) {
        SCOPED_TRACE(CommandId(command));
        kivra->Post(command);
        const auto box = kivra->WaitForBox();
        ASSERT_TRUE(box);
        EXPECT_EQ(box->Text(), text_("confirm.save_changes"));
        EXPECT_TRUE(button == IDCLOSE ? box->Close() : box->Press(button));
    };
    const Command commands[] = {Command::Open, Command::Close, Command::Exit,
                                Command::RecentFirst + 1};
    for (const Command command : commands) {
        for (const int button : {IDCANCEL, IDCLOSE}) {
            answer(command, button);
            EXPECT_EQ(kivra->Title(), modified_);
        }
    }
    answer(Command::Open, IDNO);
    EXPECT_TRUE(CancelFileDialog(kivra->Id()));
    EXPECT_EQ(kivra->Title(), modified_);
    answer(Command::RecentFirst + 1, IDNO);
    EXPECT_TRUE(kivra->WaitForTitle(text_.Title(u"other.bin")));
    EXPECT_TRUE(FileEquals(path_, original));

    kivra->Run(Command::ToggleReadOnly);
    kivra->Type("77");
    answer(Command::Close, IDNO);
    EXPECT_TRUE(kivra->WaitForTitle(text_("app.title")));
    kivra->Run(Command::RecentFirst);
    kivra->Run(Command::ToggleReadOnly);
    kivra->Type("78");
    answer(Command::Exit, IDYES);
    EXPECT_EQ(kivra->WaitForExit(), 0);
    EXPECT_TRUE(FileEquals(other, "\x78" + original.substr(1)));
}

TEST_F(EditingTest, AFileThatAnotherProgramHoldsKeepsTheWindowOpenAndTheChange) {
    const std::string original = KnownBytes(100);
    const auto kivra = Show(original);
    kivra->Type("77");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    UniqueFileHandle reader(::CreateFileW(path_.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);

    kivra->RequestClose();
    const auto question = kivra->WaitForBox();
    ASSERT_TRUE(question);
    ASSERT_TRUE(question->Press(IDYES));
    const auto failure = kivra->WaitForBox();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Text(),
              text_("error.save_failed") + u"\r\n\r\n" + Win32ErrorText(ERROR_SHARING_VIOLATION));
    ASSERT_TRUE(failure->Press(IDOK));
    EXPECT_TRUE(kivra->WaitForTitle(modified_));
    EXPECT_TRUE(FileEquals(path_, original));

    reader.Reset();
    kivra->Run(Command::Save);
    EXPECT_TRUE(kivra->WaitForTitle(clean_));
    std::string changed = original;
    changed[0] = '\x77';
    EXPECT_TRUE(FileEquals(path_, changed));
}

TEST_F(EditingTest, AFileThatWasMovedAwayCannotBeSavedInPlaceAndLosesNothing) {
    const auto kivra = Show(KnownBytes(100));
    kivra->Type("77");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    std::filesystem::rename(path_, files_.Root() / "elsewhere.bin");
    ExpectSaveFailure(*kivra, ERROR_FILE_NOT_FOUND);
}

TEST_F(EditingTest, AFileThatShrinksWhileItIsShownOnlyLosesItsTail) {
    std::string bytes = KnownBytes(5000);
    const auto kivra = Show(bytes);
    std::filesystem::resize_file(path_, 64);
    kivra->Key(VK_NEXT); // to bytes that are not there any more
    kivra->Key(VK_NEXT);
    kivra->Type("11");
    EXPECT_EQ(kivra->Title(), clean_);
    kivra->Key(VK_PRIOR);
    kivra->Key(VK_PRIOR);
    kivra->Type("22");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Run(Command::Save);
    bytes.resize(64);
    bytes[0] = '\x22';
    EXPECT_TRUE(FileEquals(path_, bytes));
}

TEST_F(EditingTest, AFullDiskFailsTheSaveAndLeavesTheFileAsItWas) {
    const wchar_t* disk = ::_wgetenv(L"KIVRA_FULL_DISK");
    ASSERT_NE(disk, nullptr) << "must name a folder on a file system of less than 8 MiB";
    path_ = std::filesystem::path(disk) / "data.bin";
    const std::string bytes = KnownBytes(5 * kMebibyte);
    const auto kivra = Show(bytes);
    kivra->Key(VK_DELETE); // needs a second copy of the file
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    ExpectSaveFailure(*kivra, ERROR_DISK_FULL);
    EXPECT_TRUE(FileEquals(path_, bytes));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk), {}), 1);
    std::filesystem::remove(path_);
}

TEST_F(EditingTest, AFolderThatCannotBeWrittenFailsTheSaveAndKeepsTheChange) {
    const wchar_t* folder = ::_wgetenv(L"KIVRA_READ_ONLY_FOLDER");
    ASSERT_NE(folder, nullptr) << "must name a read-only folder with a file data.bin";
    path_ = std::filesystem::path(folder) / "data.bin";
    const std::string bytes = ReadFileBytes(path_);
    ASSERT_FALSE(bytes.empty());
    const auto kivra = ShowPath(path_, true);
    kivra->Key(VK_DELETE);
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Post(Command::Save);
    const auto box = kivra->WaitForBox();
    ASSERT_TRUE(box);
    EXPECT_TRUE(box->Text().starts_with(text_("error.save_failed") + u"\r\n\r\n"));
    ASSERT_TRUE(box->Press(IDOK));
    EXPECT_EQ(kivra->Title(), modified_);
    EXPECT_TRUE(FileEquals(path_, bytes));
}

TEST_F(EditingTest, EditsBeyondFourGibibytesLandWhereTheyWereMade) {
    constexpr std::uint64_t kSize = 5ULL << 30;
    files_.WriteSparse(u"data.bin", kSize, "head", "tail");
    const auto kivra = ShowPath(path_, true);
    const Keyboard keys = kivra->Keys();
    ASSERT_TRUE(keys.TakeForeground());
    keys.PressWithControl(VK_END);
    keys.Type("41");
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Run(Command::Save);
    EXPECT_TRUE(kivra->WaitForTitle(clean_));
    EXPECT_EQ(std::filesystem::file_size(path_), kSize);
    std::ifstream file(path_, std::ios::binary);
    file.seekg(-4, std::ios::end);
    std::string tail(4, '\0');
    file.read(tail.data(), 4);
    EXPECT_EQ(tail, "taiA");
}

TEST_F(EditingTest, AWindowThatIsSavingIgnoresClosing) {
    std::string bytes = KnownBytes(64 * kMebibyte);
    const auto kivra = Show(bytes);
    kivra->Key(VK_DELETE);
    ASSERT_TRUE(kivra->WaitForTitle(modified_));
    kivra->Post(Command::Save);
    kivra->RequestClose(); // taken from the queue by the running save
    EXPECT_TRUE(kivra->WaitForTitle(clean_));
    EXPECT_TRUE(kivra->IsRunning());
    bytes.erase(0, 1);
    EXPECT_TRUE(FileEquals(path_, bytes));
}

} // namespace
} // namespace kvx::test
