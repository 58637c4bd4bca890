// The rules of rows and characters, written down as plainly as possible over the platform's
// converter: every row reads and converts all that it needs for itself.
#pragma once

#include "encoding/character_decoder.h"
#include "encoding/row_decoder.h"
#include "platform/code_pages.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kvx::model {

inline CodePage PageOf(TextEncoding encoding) {
    constexpr CodePage kPages[] = {
        CodePage::ShiftJis, CodePage::Korean949, CodePage::EucKr,      CodePage::Big5,
        CodePage::Gbk,      CodePage::Thai,      CodePage::Vietnamese, CodePage::IsciiDevanagari};
    return kPages[static_cast<std::size_t>(encoding) -
                  static_cast<std::size_t>(TextEncoding::ShiftJis)];
}

inline bool IsUnicode(TextEncoding encoding) {
    return encoding >= TextEncoding::Utf8 && encoding <= TextEncoding::Utf16Be;
}

inline bool IsDoubleByte(TextEncoding encoding) {
    return encoding >= TextEncoding::ShiftJis && encoding <= TextEncoding::Gbk;
}

inline bool HasMarks(TextEncoding encoding) {
    return encoding == TextEncoding::Tis620 || encoding == TextEncoding::Windows1258;
}

inline bool IsAllControl(std::u16string_view text) {
    return std::ranges::all_of(text, IsControlCharacter);
}

inline bool IsLead(TextEncoding encoding, std::uint8_t byte) {
    if (encoding == TextEncoding::ShiftJis) return IsShiftJisLeadByte(byte);
    return byte >= (encoding == TextEncoding::EucKr ? 0xA1 : 0x81) && byte <= 0xFE;
}

inline bool IsTrail(TextEncoding encoding, std::uint8_t byte) {
    const auto in = [byte](int first, int last) { return byte >= first && byte <= last; };
    const bool letter = encoding == TextEncoding::Windows949 && (in(0x41, 0x5A) || in(0x61, 0x7A));
    if (encoding == TextEncoding::Windows949) return letter || in(0x81, 0xFE);
    if (encoding == TextEncoding::EucKr) return in(0xA1, 0xFE);
    if (encoding == TextEncoding::Big5) return in(0x40, 0x7E) || in(0xA1, 0xFE);
    return in(0x40, 0x7E) || in(0x80, encoding == TextEncoding::ShiftJis ? 0xFC : 0xFE);
}

inline std::size_t Step(TextEncoding encoding, ByteView bytes) {
    return bytes.size() > 1 && IsLead(encoding, bytes[0]) && IsTrail(encoding, bytes[1]) ? 2 : 1;
}

using Decoded = std::optional<DecodedCharacter>;

inline Decoded DoubleByteAt(TextEncoding encoding, ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    const std::size_t length = Step(encoding, bytes);
    if (length == 1 && IsLead(encoding, bytes[0])) return std::nullopt;
    if (length == 1 && bytes[0] >= 0x80 && encoding != TextEncoding::ShiftJis) return std::nullopt;
    const auto text = FromCodePage(PageOf(encoding), bytes.first(length));
    if (!text || text->empty() || IsAllControl(*text)) return std::nullopt;
    return DecodedCharacter{*text, length};
}

inline std::optional<std::u16string> OneByte(TextEncoding encoding, std::uint8_t byte) {
    const bool tried =
        byte <= 0x7F || (byte >= 0xA1 && byte <= 0xDA) || (byte >= 0xDF && byte <= 0xFB);
    if (encoding == TextEncoding::Tis620 && !tried) return std::nullopt;
    return FromCodePage(PageOf(encoding), ByteView(&byte, 1));
}

inline Decoded ClusterAt(TextEncoding encoding, ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    const auto base = OneByte(encoding, bytes[0]);
    if (!base || IsAllControl(*base) || IsCombiningCharacter(base->front())) return std::nullopt;
    DecodedCharacter cluster{*base, 1};
    for (; cluster.length < bytes.size(); ++cluster.length) {
        const auto mark = OneByte(encoding, bytes[cluster.length]);
        if (!mark || mark->empty() || !IsCombiningCharacter(mark->front())) break;
        cluster.text += *mark;
    }
    return cluster;
}

inline bool IsSyllableSign(char16_t unit) {
    return (unit >= 0x0900 && unit <= 0x0903) || (unit >= 0x093A && unit <= 0x094D) ||
           unit == 0x0962 || unit == 0x0963;
}

inline bool IsConsonant(char16_t unit) {
    return (unit >= 0x0904 && unit <= 0x0939) || (unit >= 0x0958 && unit <= 0x0961) ||
           (unit >= 0x0972 && unit <= 0x097F);
}

inline std::size_t SyllableLength(std::u16string_view text) {
    if (text.empty() || IsSyllableSign(text[0]) || IsCombiningCharacter(text[0])) return 0;
    std::size_t at = 1;
    while (true) {
        bool virama = false;
        for (; at < text.size() && IsSyllableSign(text[at]); ++at)
            virama = text[at] == 0x094D;
        if (!virama) return at;
        if (at < text.size() && (text[at] == 0x200C || text[at] == 0x200D)) ++at;
        if (at == text.size() || !IsConsonant(text[at])) return at;
        ++at;
    }
}

inline Decoded SyllableAt(ByteView bytes) {
    Decoded longest;
    for (std::size_t n = 1; n <= std::min<std::size_t>(bytes.size(), 8); ++n) {
        const auto text = FromCodePage(CodePage::IsciiDevanagari, bytes.first(n));
        if (text && !IsAllControl(*text) && SyllableLength(*text) == text->size())
            longest = DecodedCharacter{*text, n};
    }
    return longest;
}

inline Decoded CharAt(TextEncoding encoding, ByteView bytes) {
    if (IsUnicode(encoding)) return std::nullopt;
    if (IsDoubleByte(encoding)) return DoubleByteAt(encoding, bytes);
    if (HasMarks(encoding)) return ClusterAt(encoding, bytes);
    if (encoding == TextEncoding::IsciiDevanagari) return SyllableAt(bytes);
    if (bytes.empty() || bytes[0] < 0x20 || bytes[0] > 0x7E) return std::nullopt;
    return DecodedCharacter{std::u16string(1, bytes[0]), 1};
}

inline bool IsListedMark(char32_t c) {
    return (c >= 0x300 && c <= 0x36F) || (c >= 0x483 && c <= 0x489) ||
           (c >= 0x1AB0 && c <= 0x1AFF) || (c >= 0x1DC0 && c <= 0x1DFF) ||
           (c >= 0x20D0 && c <= 0x20FF) || c == 0x3099 || c == 0x309A ||
           (c >= 0xFE00 && c <= 0xFE0F) || (c >= 0xFE20 && c <= 0xFE2F) ||
           (c >= 0xE0100 && c <= 0xE01EF) || c == 0x200D;
}

/// One row of a document (null: of no document) and its cells.
class Row {
public:
    Row(const Bytes* itsDocument, std::size_t start, std::size_t length, ByteView alone)
        : document_(itsDocument), start_(start), length_(length), alone_(alone), cells(length) {}

    RowCells Cells(TextEncoding encoding) {
        const bool needsDocument = encoding == TextEncoding::Utf8 || IsDoubleByte(encoding);
        if (needsDocument && document_ == nullptr) {
            Walk(TextEncoding::Ascii, 0, 0);
        } else if (encoding == TextEncoding::Utf8) {
            Utf8();
        } else if (IsUnicode(encoding)) {
            Utf16(encoding);
        } else if (HasMarks(encoding)) {
            Marks(encoding);
        } else if (encoding == TextEncoding::ShiftJis) {
            Walk(encoding, 1, 1);
        } else if (IsDoubleByte(encoding)) {
            Walk(encoding, start_ - Boundary(encoding), 1);
        } else if (encoding == TextEncoding::IsciiDevanagari) {
            Walk(encoding, 7, 7);
        } else {
            Walk(encoding, 0, 0);
        }
        return cells;
    }

private:
    /// Reads the row with what lies around it; origin_ becomes the offset of the first byte.
    ByteView Read(std::size_t before, std::size_t after) {
        if (document_ == nullptr) {
            origin_ = start_;
            return alone_;
        }
        origin_ = start_ - std::min(start_, before);
        const std::size_t end = std::min(start_ + length_ + after, document_->size());
        return ByteView(*document_).subspan(origin_, end - origin_);
    }

    std::u16string* CellOf(std::size_t at) {
        const std::size_t offset = origin_ + at;
        return offset < start_ || offset >= start_ + length_ ? nullptr : &cells[offset - start_];
    }

    void Show(std::size_t at, std::u16string_view text) {
        if (auto* cell = CellOf(at)) *cell = text;
    }

    /// Character after character.
    void Walk(TextEncoding encoding, std::size_t before, std::size_t after) {
        const ByteView bytes = Read(before, after);
        for (std::size_t at = 0; at < bytes.size();) {
            const Decoded character = CharAt(encoding, bytes.subspan(at));
            Show(at, character ? character->text : u".");
            const bool skipsPairs = encoding == TextEncoding::ShiftJis;
            const std::size_t skipped = skipsPairs ? Step(encoding, bytes.subspan(at)) : 1;
            at += character ? character->length : skipped;
        }
    }

    std::size_t Boundary(TextEncoding encoding) const {
        std::size_t at = start_ - std::min<std::size_t>(start_, 4096);
        const auto known = ByteView(*document_).first(std::min(start_ + 1, document_->size()));
        while (at < start_) {
            const std::size_t step = Step(encoding, known.subspan(at));
            if (at + step > start_) break;
            at += step;
        }
        return at;
    }

    void Utf8() {
        const ByteView bytes = Read(3, 3);
        std::u16string* last = nullptr;
        for (std::size_t at = 0; at < bytes.size();) {
            const std::uint8_t lead = bytes[at];
            const std::size_t length = lead < 0x80             ? 1
                                       : (lead & 0xE0) == 0xC0 ? 2
                                       : (lead & 0xF0) == 0xE0 ? 3
                                       : (lead & 0xF8) == 0xF0 ? 4
                                                               : 0;
            std::optional<std::u16string> text;
            if (length > 0 && at + length <= bytes.size())
                text = FromCodePage(CodePage::Utf8, bytes.subspan(at, length));
            const bool control = text && ((*text)[0] < 0x20 || (*text)[0] == 0x7F);
            if (!text || control) {
                Show(at, u".");
            } else if (auto* cell = CellOf(at); cell == nullptr) {
                last = nullptr;
            } else {
                const char16_t first = (*text)[0];
                const char32_t c = text->size() == 2 ? ((first - 0xD800U) << 10U) +
                                                           ((*text)[1] - 0xDC00U) + 0x10000U
                                                     : first;
                const bool mark = IsListedMark(c) || IsCombiningCharacter(first);
                if (mark && last != nullptr) {
                    *last += *text;
                } else {
                    *cell = *text;
                    last = cell;
                }
            }
            at += text ? length : 1;
        }
    }

    void Utf16(TextEncoding encoding) {
        const ByteView bytes = Read(0, 0);
        for (std::size_t at = 0; at < bytes.size(); at += 2) {
            if (at + 1 == bytes.size()) return Show(at, u".");
            const bool little = encoding == TextEncoding::Utf16Le;
            const auto unit = static_cast<char16_t>(bytes[at] * (little ? 1 : 256) +
                                                    bytes[at + 1] * (little ? 256 : 1));
            const bool printable = (unit >= 0x20 && unit <= 0x7E) ||
                                   (unit >= 0x80 && unit <= 0xD7FF) ||
                                   (unit >= 0xE000 && unit <= 0xFFFD);
            Show(at, printable && !IsListedMark(unit) ? std::u16string(1, unit) : u".");
        }
    }

    void Marks(TextEncoding encoding) {
        const ByteView bytes = Read(4, 4);
        enum class Base { None, Before, InRow } base = Base::None;
        std::u16string* baseCell = nullptr;
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            const auto text = OneByte(encoding, bytes[at]);
            auto* cell = CellOf(at);
            if (!text || IsAllControl(*text)) {
                base = Base::None;
                Show(at, u".");
            } else if (!IsCombiningCharacter(text->front())) {
                base = cell != nullptr ? Base::InRow : Base::Before;
                baseCell = cell;
                Show(at, *text);
            } else if (cell != nullptr && base == Base::InRow) {
                *baseCell += *text;
            } else if (base == Base::None) {
                Show(at, u".");
            }
        }
    }

    const Bytes* document_;
    std::size_t start_;
    std::size_t length_;
    ByteView alone_;
    std::size_t origin_ = 0;
    RowCells cells;
};

/// The cells of a row of `document`, or of all its bytes as a row of no document.
inline RowCells CellsInDocument(const Bytes& document, std::size_t start, std::size_t length,
                                TextEncoding encoding) {
    return Row(&document, start, length, {}).Cells(encoding);
}
inline RowCells CellsAlone(ByteView row, TextEncoding encoding) {
    return Row(nullptr, 0, row.size(), row).Cells(encoding);
}

} // namespace kvx::model
