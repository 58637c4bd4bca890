#include "encoding/iscii_rows.h"

#include "platform/code_pages.h"
#include "platform/iscii.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace kvx {
namespace {

constexpr std::size_t kMaxSyllableBytes = 8;
constexpr char16_t kVirama = 0x094D;

/// What a text can be on the way through its units: nothing yet; a syllable, by what its last unit
/// is (signs other than the virama are part of the letter); no syllable, whatever follows.
enum class State : std::uint8_t { Start, Letter, Virama, Joiner, Spent };
constexpr std::size_t kStateCount = 5;

/// What a unit does to a syllable.
enum class Role : std::uint8_t { Other, Sign, Virama, Consonant, Joiner };

constexpr State Next(State state, Role role) {
    const bool open = state == State::Letter || state == State::Virama;
    if (open && role == Role::Sign) return State::Letter;
    if (open && role == Role::Virama) return State::Virama;
    const bool joined = state == State::Virama || state == State::Joiner;
    if (joined && role == Role::Consonant) return State::Letter;
    return state == State::Virama && role == Role::Joiner ? State::Joiner : State::Spent;
}

constexpr bool IsBetween(char16_t unit, char16_t first, char16_t last) {
    return unit >= first && unit <= last;
}

constexpr Role RoleOf(char16_t unit) {
    if (unit == kVirama) return Role::Virama;
    if (IsBetween(unit, 0x0900, 0x0903) || IsBetween(unit, 0x093A, 0x094C) ||
        IsBetween(unit, 0x0962, 0x0963))
        return Role::Sign;
    if (IsBetween(unit, 0x0904, 0x0939) || IsBetween(unit, 0x0958, 0x0961) ||
        IsBetween(unit, 0x0972, 0x097F))
        return Role::Consonant;
    return IsBetween(unit, 0x200C, 0x200D) ? Role::Joiner : Role::Other;
}

/// A unit and where it leads from each state.
struct Step {
    char16_t unit = 0;
    bool printable = false;
    std::array<State, kStateCount> to = {State::Spent, State::Spent, State::Spent, State::Spent,
                                         State::Spent};
};

Step StepOf(char16_t unit) {
    const Role role = RoleOf(unit);
    const bool starts = role != Role::Sign && role != Role::Virama && !IsCombiningCharacter(unit);
    Step step{.unit = unit, .printable = !IsControlCharacter(unit)};
    for (std::size_t state = 0; state < kStateCount; ++state)
        step.to[state] = Next(static_cast<State>(state), role);
    step.to[static_cast<std::size_t>(State::Start)] = starts ? State::Letter : State::Spent;
    return step;
}

/// Made once. Immutable, for every thread.
class StepTable {
public:
    StepTable() {
        for (std::size_t i = 0; i < kScriptSize; ++i)
            units_[i] = StepOf(static_cast<char16_t>(kScript + i));
        for (std::size_t i = 0; i < kJoinerCount; ++i)
            units_[kScriptSize + i] = StepOf(static_cast<char16_t>(kFirstJoiner + i));
        for (std::size_t i = 0; i < bytes_.size(); ++i) {
            const auto byte = static_cast<std::uint8_t>(i);
            const IsciiCharacter character = ReadIscii(ByteView(&byte, 1));
            if (character.length == 1) bytes_[i] = StepOf(character.units[0]);
        }
    }

    /// Of a byte alone; one that means nothing leads nowhere.
    const Step& OfByte(std::uint8_t byte) const { return bytes_[byte]; }

    /// Of a unit that two bytes mean: Devanagari or a joiner.
    const Step& OfUnit(char16_t unit) const {
        return units_[unit >= kFirstJoiner ? unit - kFirstJoiner + kScriptSize
                                           : static_cast<std::size_t>(unit - kScript)];
    }

private:
    static constexpr char16_t kScript = 0x0900;
    static constexpr std::size_t kScriptSize = 0x80;
    static constexpr char16_t kFirstJoiner = 0x200C;
    static constexpr std::size_t kJoinerCount = 2;

    std::array<Step, 256> bytes_ = {};
    std::array<Step, kScriptSize + kJoinerCount> units_ = {};
};

const StepTable& Steps() {
    static const StepTable steps;
    return steps;
}

struct Syllable {
    std::array<char16_t, 2 * kMaxSyllableBytes> units;
    std::size_t unitCount = 0;
    std::size_t length = 0; ///< in bytes; 0: none

    std::u16string_view Text() const { return {units.data(), unitCount}; }
};

/// Reads a text step by step and keeps the longest part that is one syllable and has something to
/// show.
class SyllableReader {
public:
    explicit SyllableReader(Syllable& longest) : longest_(longest) {}

    /// False when the text with the unit is no syllable any more; the reader is spent then.
    bool Take(const Step& step) {
        state_ = step.to[static_cast<std::size_t>(state_)];
        if (state_ == State::Spent) return false;
        longest_.units[unitCount_++] = step.unit;
        printable_ = printable_ || step.printable;
        return true;
    }

    /// The text so far is what the first `length` bytes mean.
    void EndAt(std::size_t length) const {
        if (!printable_) return;
        longest_.unitCount = unitCount_;
        longest_.length = length;
    }

private:
    Syllable& longest_;
    std::size_t unitCount_ = 0;
    State state_ = State::Start;
    bool printable_ = false;
};

/// The longest run of bytes from the first one on that is one syllable and nothing else.
Syllable ReadSyllable(const StepTable& steps, ByteView bytes) {
    Syllable longest;
    SyllableReader reader(longest);
    const std::size_t end = std::min(bytes.size(), kMaxSyllableBytes);
    for (std::size_t at = 0; at < end; ++at) {
        IsciiCharacter pair;
        if (at + 1 < end && MayBeOneIsciiCharacter(bytes[at], bytes[at + 1]))
            pair = ReadIscii(bytes.subspan(at, 2));
        if (pair.length == 2) {
            // The run may end between the two: the first then counts as it is alone.
            SyllableReader toFirst = reader;
            if (toFirst.Take(steps.OfByte(bytes[at]))) toFirst.EndAt(at + 1);
            ++at;
            for (std::size_t i = 0; i < pair.unitCount; ++i)
                if (!reader.Take(steps.OfUnit(pair.units[i]))) return longest;
        } else if (!reader.Take(steps.OfByte(bytes[at]))) {
            return longest;
        }
        reader.EndAt(at + 1);
    }
    return longest;
}

} // namespace

void DecodeIsciiRow(const RowContext& row, RowCells& cells) {
    const StepTable& steps = Steps();
    for (std::size_t at = 0; at < row.rowEnd;) {
        const Syllable syllable = ReadSyllable(steps, row.bytes.subspan(at));
        if (std::u16string* cell = CellAt(row, at, cells)) {
            if (syllable.length == 0) {
                cell->push_back(kPlaceholder);
            } else {
                cell->append(syllable.Text());
            }
        }
        at += std::max<std::size_t>(syllable.length, 1);
    }
}

std::optional<DecodedCharacter> DecodeIsciiCharacter(ByteView bytes) {
    const Syllable syllable = ReadSyllable(Steps(), bytes);
    if (syllable.length == 0) return std::nullopt;
    return DecodedCharacter{std::u16string(syllable.Text()), syllable.length};
}

} // namespace kvx
