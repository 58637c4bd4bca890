// Random editing sessions on small files: the document against its plain definition.
#include "document/editable_document.h"
#include "tests/document/plain_document.h"
#include "tests/support/temp_folder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace kvx {
namespace {

/// Random numbers that are the same with every standard library.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    std::uint64_t Below(std::uint64_t limit) { return limit == 0 ? 0 : engine_() % limit; }
    bool OneIn(std::uint64_t count) { return Below(count) == 0; }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Below(256)); }

private:
    std::mt19937_64 engine_;
};

// The walk of pieces as single edits; also checks that it covers the file without gap or overlap.
std::vector<PlainDocument::Record> RecordsOf(const EditIndex& edits, std::uint64_t onDiskSize) {
    std::vector<PlainDocument::Record> records;
    PieceWalk walk(edits, onDiskSize);
    std::uint64_t position = 0;
    std::optional<Piece> last;
    while (const std::optional<Piece> piece = walk.Next()) {
        EXPECT_EQ(piece->position, position);
        EXPECT_GT(piece->count, 0u);
        EXPECT_FALSE(last && last->kind == piece->kind) << "not as long as it can be";
        const bool isNew =
            piece->kind == PieceKind::Inserted || piece->kind == PieceKind::Overwritten;
        EXPECT_EQ(piece->bytes.size(), isNew ? piece->count : 0);
        if (piece->kind != PieceKind::Inserted) position += piece->count;
        for (std::uint64_t i = 0; i < piece->count && piece->kind != PieceKind::Unchanged; ++i)
            records.emplace_back(piece->kind,
                                 piece->position + (piece->kind == PieceKind::Inserted ? 0 : i),
                                 isNew ? piece->bytes[i] : 0);
        last = piece;
    }
    EXPECT_EQ(position, onDiskSize);
    return records;
}

/// One document under test, its file, and the plain one beside it.
class Session {
public:
    Session(std::uint32_t seed, std::size_t fileSize) : dice_(seed), plain_(RandomBytes(fileSize)) {
        path_ = folder_.Write(u"file.bin", plain_.Content());
        EXPECT_TRUE(document_.Open(path_));
    }

    void Run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE("step " + std::to_string(step));
            if (burst_ == 0) StartBurst();
            --burst_;
            EditOnce();
            CompareQuickly();
            if (step % 8 == 0) CompareWholly();
            if (stepsToSave_-- == 0) SaveAndReopen();
        }
    }

private:
    Bytes RandomBytes(std::size_t count) {
        Bytes bytes(count);
        for (std::uint8_t& byte : bytes)
            byte = dice_.Byte();
        return bytes;
    }

    // People edit in bursts: typing on, deleting on, forwards or backwards from one place.
    void StartBurst() {
        burst_ = dice_.OneIn(3) ? 1 + dice_.Below(25) : 1;
        scattered_ = dice_.OneIn(6);
        kind_ = dice_.Below(3);
        direction_ = dice_.Below(3);
        const std::uint64_t size = plain_.EditedSize();
        caret_ = dice_.OneIn(3) ? std::min(caret_, size) : dice_.Below(size + 2);
        if (dice_.OneIn(20)) caret_ = size;
    }

    void EditOnce() {
        if (scattered_) kind_ = dice_.Below(3);
        if (scattered_) caret_ = dice_.Below(plain_.EditedSize() + 2);
        const std::uint64_t at = caret_;
        // Often enough the file's own byte, which takes the edit back.
        const std::uint8_t value = dice_.OneIn(4) ? plain_.OriginalByte(at) : dice_.Byte();
        if (kind_ == 0)
            EXPECT_EQ(document_.OverwriteByte(at, value), plain_.OverwriteByte(at, value));
        else if (kind_ == 1)
            EXPECT_EQ(document_.InsertByte(at, value), plain_.InsertByte(at, value));
        else
            EXPECT_EQ(document_.DeleteByte(at), plain_.DeleteByte(at));
        if (direction_ == 1) ++caret_;
        if (direction_ == 2 && caret_ > 0) --caret_;
    }

    void CompareQuickly() {
        ASSERT_EQ(document_.GetSize(), plain_.EditedSize());
        ASSERT_EQ(document_.IsModified(), plain_.IsModified());
        const std::uint64_t offset = dice_.Below(plain_.EditedSize() + 2);
        const std::uint64_t count = dice_.OneIn(8) ? ~std::uint64_t{0} : dice_.Below(12);
        if (dice_.OneIn(2)) return;
        ASSERT_EQ(document_.ReadBytes(offset, count), plain_.ReadBytes(offset, count))
            << count << " bytes at " << offset;
    }

    void CompareWholly() {
        ASSERT_EQ(document_.ReadBytes(0, plain_.EditedSize()), plain_.Content());
        ASSERT_EQ(RecordsOf(document_.Edits(), plain_.OnDiskSize()), plain_.Records());
        ASSERT_TRUE(document_.Edits().IsSound());
        ASSERT_EQ(document_.Edits().InsertsOnlyAtEnd(plain_.OnDiskSize()) &&
                      document_.Edits().DeletesOnlyTail(plain_.OnDiskSize()),
                  plain_.IsSavedInPlace());
    }

    void SaveAndReopen() {
        CompareWholly();
        ASSERT_TRUE(document_.Save());
        plain_.Save();
        const Bytes content = plain_.Content();
        ASSERT_EQ(folder_.Read(u"file.bin"), std::string(content.begin(), content.end()));
        CompareWholly();
        // Now and then after a few edits, which may fit into the file as it is.
        stepsToSave_ = dice_.OneIn(2) ? dice_.Below(6) : dice_.Below(4000);
    }

    TempFolder folder_;
    Dice dice_;
    PlainDocument plain_;
    EditableDocument document_;
    std::u16string path_;
    std::uint64_t kind_ = 0;      ///< of the edits: overwrite, insert, delete
    std::uint64_t direction_ = 0; ///< of the caret after each: stays, forwards, backwards
    bool scattered_ = false;      ///< all over the document instead
    std::uint64_t caret_ = 0;
    std::uint64_t burst_ = 0;
    std::uint64_t stepsToSave_ = dice_.Below(2000);
};

TEST(DocumentOracle, RandomSessionsGiveWhatThePlainDefinitionGives) {
    constexpr int kSessions = 420;
    constexpr int kSteps = 500;
    constexpr std::size_t kSizes[] = {0, 1, 3, 16, 60, 200, 600};
    for (std::uint32_t seed = 1; seed <= kSessions && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Session(seed, kSizes[seed % std::size(kSizes)]).Run(kSteps);
    }
}

} // namespace
} // namespace kvx
