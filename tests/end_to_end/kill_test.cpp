// The real program ended by force in the middle of saving.
#include "file_bytes.h"
#include "kivra_process.h"
#include "platform/text.h"
#include "program_texts.h"
#include "waiting.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

namespace kvx::test {
namespace {

using std::chrono::microseconds;

/// How often the program is killed; more by the environment variable KIVRA_KILLS.
int KillCount() {
    const char* count = std::getenv("KIVRA_KILLS");
    return count != nullptr ? std::atoi(count) : 20;
}

class KillTest : public testing::Test {
protected:
    /// A program that shows the file with its first byte deleted: saving moves all the others.
    std::unique_ptr<KivraProcess> ShowWithoutFirstByte() {
        auto kivra = std::make_unique<KivraProcess>(program_, Quoted(path_));
        EXPECT_TRUE(kivra->WaitForWindow());
        EXPECT_TRUE(kivra->WaitForTitle(text_.Title(u"data.bin")));
        kivra->Run(Command::ToggleReadOnly);
        kivra->Key(VK_DELETE);
        EXPECT_TRUE(kivra->WaitForTitle(text_.Title(u"data.bin", true)));
        return kivra;
    }

    bool HasTempFile() const { return files_.Names().size() > 1; }

    /// Starts a save and returns as soon as its temporary file is there.
    void StartSave(const KivraProcess& kivra) const {
        kivra.Post(Command::Save);
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while (!HasTempFile() && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
    }

    /// From the making of the temporary file to its end.
    microseconds TimeOfOneSave() {
        const auto kivra = ShowWithoutFirstByte();
        StartSave(*kivra);
        const auto start = std::chrono::steady_clock::now();
        while (HasTempFile() && kivra->IsRunning())
            std::this_thread::yield();
        const auto end = std::chrono::steady_clock::now();
        EXPECT_TRUE(kivra->WaitForTitle(text_.Title(u"data.bin")));
        return std::chrono::duration_cast<microseconds>(end - start);
    }

    /// Removes what the killed program left behind beside the file; the number of files.
    int RemoveTempFiles() {
        int count = 0;
        for (const std::u16string& name : files_.Names()) {
            if (name == u"data.bin") continue;
            EXPECT_TRUE(name.starts_with(u"KVT") && name.ends_with(u".tmp")) << Utf16ToUtf8(name);
            EXPECT_TRUE(std::filesystem::remove(files_.Root() / name));
            ++count;
        }
        return count;
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
    std::filesystem::path path_ = files_.Root() / "data.bin";
};

TEST_F(KillTest, AKilledSaveLeavesExactlyTheOldOrExactlyTheNewBytes) {
    std::string bytes = KnownBytes(std::size_t{16} << 20);
    WriteFileBytes(path_, bytes);
    const microseconds longest = TimeOfOneSave();
    bytes.erase(0, 1);
    ASSERT_TRUE(FileEquals(path_, bytes));

    std::mt19937 random(std::random_device{}());
    int saved = 0;
    int temporary = 0;
    const int kills = KillCount();
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        auto kivra = ShowWithoutFirstByte();
        const microseconds delay(random() % static_cast<std::uint32_t>(longest.count()));
        StartSave(*kivra);
        std::this_thread::sleep_for(delay);
        kivra.reset();

        SCOPED_TRACE("killed after " + std::to_string(delay.count()) + " microseconds");
        if (!FileEquals(path_, bytes)) {
            bytes.erase(0, 1);
            ASSERT_TRUE(FileEquals(path_, bytes));
            ++saved;
        }
        const int left = RemoveTempFiles();
        EXPECT_LE(left, 1);
        temporary += left;
    }
    std::cout << kills << " kills within " << longest.count() / 1000 << " ms: " << saved
              << " left the new bytes, " << temporary << " a temporary file\n";
    EXPECT_GT(temporary, 0) << "no kill met a save";
}

} // namespace
} // namespace kvx::test
