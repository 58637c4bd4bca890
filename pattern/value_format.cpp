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

/// Appends the general format with six significant digits, as C prints numbers by default.
template <typename Number>
void AppendNumber(std::u16string& text, Number number) {
    std::array<char, 32> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::general, 6);
    text.append(buffer.data(), end);
}

void AppendFloat(std::u16string& text, ByteView bytes) {
    const std::uint64_t bits = ReadUnsigned(bytes, ByteOrder::Little);
    if (bytes.size() == sizeof(float))
        AppendNumber(text, std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    else
        AppendNumber(text, std::bit_cast<double>(bits));
}

void AppendHexBytes(std::u16string& text, ByteView bytes) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) text += u' ';
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0xF];
    }
}

void AppendInteger(std::u16string& text, ByteView bytes, ByteOrder byteOrder, NumberBase base) {
    if (bytes.empty()) return;
    if (bytes.size() > sizeof(std::uint64_t)) {
        text += u"0x";
        AppendHexBytes(text, bytes);
        return;
    }
    const std::uint64_t value = ReadUnsigned(bytes, byteOrder);
    if (base == NumberBase::Decimal) {
        AppendDecimal(text, value);
    } else {
        text += u"0x";
        AppendHex(text, value, bytes.size() * 2);
    }
}

} // namespace

std::u16string FormatHexBytes(ByteView bytes) {
    std::u16string text;
    text.reserve(bytes.size() * 3);
    AppendHexBytes(text, bytes);
    return text;
}

std::u16string FormatByteArrayHex(ByteView bytes) {
    if (bytes.empty()) return u"0 bytes";
    std::u16string text;
    text.reserve((kShownArrayBytes + 2) * 3);
    AppendHexBytes(text, bytes.first(std::min(bytes.size(), kShownArrayBytes)));
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
    AppendInteger(text, bytes, byteOrder, base);
    return text;
}

std::u16string FormatFloat(ByteView bytes, MemberKind kind, const ValueFormat& format) {
    const std::size_t native = kind == MemberKind::Float ? sizeof(float) : sizeof(double);
    if (bytes.size() != native) return FormatInteger(bytes, format.byteOrder, format.numberBase);
    std::u16string text;
    text.reserve(34); // the longest double with its bit pattern
    AppendFloat(text, bytes);
    text += u" (";
    AppendInteger(text, bytes, format.byteOrder, NumberBase::Hex);
    text += u')';
    return text;
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
        AppendDecimal(text, member.TotalSize());
        text += u" bytes)";
    }
    return text;
}

} // namespace kvx
