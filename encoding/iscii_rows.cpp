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

struct UnitTraits {
    bool starts = false;    ///< can be a syllable's first unit
    bool sign = false;      ///< continues a syllable
    bool consonant = false; ///< continues one behind a virama
    bool joiner = false;    ///< may stand between virama and consonant
    bool printable = false;
};

constexpr bool IsBetween(char16_t unit, char16_t first, char16_t last) {
    return unit >= first && unit <= last;
}

UnitTraits MakeTraits(char16_t unit) {
    UnitTraits traits;
    traits.sign = IsBetween(unit, 0x0900, 0x0903) || IsBetween(unit, 0x093A, kVirama) ||
                  IsBetween(unit, 0x0962, 0x0963);
    traits.consonant = IsBetween(unit, 0x0904, 0x0939) || IsBetween(unit, 0x0958, 0x0961) ||
                       IsBetween(unit, 0x0972, 0x097F);
    traits.joiner = IsBetween(unit, 0x200C, 0x200D);
    traits.starts = !traits.sign && !IsCombiningCharacter(unit);
    traits.printable = !IsControlCharacter(unit);
    return traits;
}

/// The units that ISCII has: ASCII, Devanagari and the two joiners.
constexpr std::size_t kTraitsCount = 0x102;

constexpr std::size_t TraitsIndex(char16_t unit) {
    if (unit < 0x80) return unit;
    return unit < 0x980 ? unit - 0x900U + 0x80U : unit - 0x200CU + 0x100U;
}

std::array<UnitTraits, kTraitsCount> MakeAllTraits() {
    std::array<UnitTraits, kTraitsCount> all;
    const auto add = [&all](char16_t first, char16_t last) {
        for (char16_t unit = first; unit <= last; ++unit)
            all[TraitsIndex(unit)] = MakeTraits(unit);
    };
    add(0x0000, 0x007F);
    add(0x0900, 0x097F);
    add(0x200C, 0x200D);
    return all;
}

/// Reads a text unit by unit for as long as it is the beginning of one syllable, or a whole one.
class SyllableReader {
public:
    /// False when the text with `units` behind it is none any more; the reader is spent then.
    bool Take(const IsciiCharacter& character) {
        for (std::size_t i = 0; i < character.unitCount; ++i)
            if (!TakeUnit(character.units[i])) return false;
        return true;
    }

    /// True when there is something to show.
    bool IsPrintable() const { return printable_; }

private:
    bool TakeUnit(char16_t unit) {
        static const auto all = MakeAllTraits();
        const UnitTraits& traits = all[TraitsIndex(unit)];
        printable_ = printable_ || traits.printable;
        switch (state_) {
        case State::Start:
            state_ = State::Letter;
            return traits.starts;
        case State::Letter:
        case State::Virama:
            if (traits.sign) {
                state_ = unit == kVirama ? State::Virama : State::Letter;
                return true;
            }
            if (state_ == State::Letter) return false;
            state_ = traits.joiner ? State::Joiner : State::Letter;
            return traits.joiner || traits.consonant;
        case State::Joiner:
            state_ = State::Letter;
            return traits.consonant;
        }
        return false;
    }

    /// What the last unit was; signs other than the virama count as part of the letter.
    enum class State : std::uint8_t { Start, Letter, Virama, Joiner };
    State state_ = State::Start;
    bool printable_ = false;
};

struct Syllable {
    std::array<char16_t, 2 * kMaxSyllableBytes> units = {};
    std::size_t unitCount = 0;
    std::size_t length = 0; ///< in bytes; 0: none

    std::u16string_view Text() const { return {units.data(), unitCount}; }
};

/// The longest run of bytes from the first one on that is one syllable and nothing else. A run may
/// end between two bytes that belong together: the first then counts as it is alone.
Syllable ReadSyllable(ByteView bytes) {
    bytes = bytes.first(std::min(bytes.size(), kMaxSyllableBytes));
    Syllable longest;
    SyllableReader reader;
    char16_t* end = longest.units.data();
    const auto add = [&](const IsciiCharacter& character, const SyllableReader& taken,
                         std::size_t length) {
        char16_t* newEnd = std::copy_n(character.units.begin(), character.unitCount, end);
        if (taken.IsPrintable()) {
            longest.unitCount = static_cast<std::size_t>(newEnd - longest.units.data());
            longest.length = length;
        }
        return newEnd;
    };
    for (std::size_t at = 0; at < bytes.size();) {
        const IsciiCharacter character = ReadIscii(bytes.subspan(at));
        if (character.length == 2) {
            const IsciiCharacter half = ReadIscii(bytes.subspan(at, 1));
            SyllableReader toHalf = reader;
            if (half.length == 1 && toHalf.Take(half)) add(half, toHalf, at + 1);
        }
        if (character.length == 0 || !reader.Take(character)) break;
        at += character.length;
        end = add(character, reader, at);
    }
    return longest;
}

} // namespace

void DecodeIsciiRow(const RowContext& row, RowCells& cells) {
    for (std::size_t at = 0; at < row.rowEnd;) {
        const Syllable syllable = ReadSyllable(row.bytes.subspan(at));
        if (std::u16string* cell = CellAt(row, at, cells)) {
            if (syllable.length == 0) {
                *cell = kPlaceholder;
            } else {
                *cell = syllable.Text();
            }
        }
        at += std::max<std::size_t>(syllable.length, 1);
    }
}

std::optional<DecodedCharacter> DecodeIsciiCharacter(ByteView bytes) {
    const Syllable syllable = ReadSyllable(bytes);
    if (syllable.length == 0) return std::nullopt;
    return DecodedCharacter{std::u16string(syllable.Text()), syllable.length};
}

} // namespace kvx
