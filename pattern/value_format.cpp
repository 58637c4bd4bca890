#include "pattern/value_format.h"

#include "pattern/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>

namespace kvx {
namespace {

constexpr std::size_t kShownArrayBytes = 16;
constexpr std::size_t kShownCharacters = 64;

bool IsPrintable(std::uint8_t byte) {
    return byte >= 0x20 && byte <= 0x7E;
}

/// The number in at most 8 bytes.
std::uint64_t ReadUnsigned(ByteView bytes, ByteOrder byteOrder) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::size_t next = byteOrder == ByteOrder::Big ? i : bytes.size() - 1 - i;
        value = value << 8 | bytes[next];
    }
    return value;
}

/// The general format with six significant digits, as C prints it by default.
template <typename Number>
std::u16string NumberText(Number number) {
    std::array<char, 32> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::general, 6);
    return {buffer.data(), end};
}

std::u16string FloatText(ByteView bytes) {
    const std::uint64_t bits = ReadUnsigned(bytes, ByteOrder::Little);
    return bytes.size() == sizeof(float)
               ? NumberText(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
               : NumberText(std::bit_cast<double>(bits));
}

} // namespace

std::u16string FormatHexBytes(ByteView bytes) {
    std::u16string text;
    text.reserve(bytes.size() * 3);
    for (const std::uint8_t byte : bytes) {
        if (!text.empty()) text += u' ';
        AppendHex(text, byte, 2);
    }
    return text;
}

std::u16string FormatByteArrayHex(ByteView bytes) {
    if (bytes.empty()) return u"0 bytes";
    std::u16string text = FormatHexBytes(bytes.first(std::min(bytes.size(), kShownArrayBytes)));
    if (bytes.size() > kShownArrayBytes) text += u" ...";
    return text;
}

std::u16string FormatByteArrayAscii(ByteView bytes) {
    if (bytes.empty()) return u"0 bytes";
    const auto shown = bytes.first(std::min(bytes.size(), kShownCharacters));
    const auto stop = std::ranges::find_if_not(shown, IsPrintable);
    std::u16string text = u"\"";
    text.append(shown.begin(), stop);
    const auto length = static_cast<std::size_t>(stop - shown.begin());
    if (length < bytes.size() && bytes[length] != 0) text += u"...";
    text += u'"';
    return text;
}

std::u16string FormatInteger(ByteView bytes, ByteOrder byteOrder, NumberBase base) {
    std::u16string text;
    if (bytes.empty()) return text;
    if (bytes.size() > sizeof(std::uint64_t)) return u"0x" + FormatHexBytes(bytes);
    const std::uint64_t value = ReadUnsigned(bytes, byteOrder);
    if (base == NumberBase::Decimal) {
        AppendDecimal(text, value);
    } else {
        text = u"0x";
        AppendHex(text, value, bytes.size() * 2);
    }
    return text;
}

std::u16string FormatFloat(ByteView bytes, MemberKind kind, const ValueFormat& format) {
    const std::size_t native = kind == MemberKind::Float ? sizeof(float) : sizeof(double);
    if (bytes.size() != native) return FormatInteger(bytes, format.byteOrder, format.numberBase);
    return FloatText(bytes) + u" (" + FormatInteger(bytes, format.byteOrder, NumberBase::Hex) +
           u")";
}

std::u16string FormatTypeText(const StructMemberLayout& member) {
    std::u16string text(member.typeName);
    if (member.isPadding) return text;
    if (member.isFlexibleArray) {
        text += u"[]";
    } else if (member.count >= 2) {
        text += u'[';
        AppendDecimal(text, member.count);
        text += u']';
    }
    if (member.kind == MemberKind::Struct && member.count == 1) {
        text += u" (";
        AppendDecimal(text, member.totalSize);
        text += u" bytes)";
    }
    return text;
}

} // namespace kvx
