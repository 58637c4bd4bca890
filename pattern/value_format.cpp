#include "pattern/value_format.h"

#include "platform/number_text.h"

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
void AppendNumber(std::u16string& out, Number number) {
    std::array<char, 32> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::general, 6);
    out.append(buffer.data(), end);
}

void AppendFloat(std::u16string& out, ByteView bytes) {
    const std::uint64_t bits = ReadUnsigned(bytes, ByteOrder::Little);
    if (bytes.size() == sizeof(float))
        AppendNumber(out, std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    else
        AppendNumber(out, std::bit_cast<double>(bits));
}

} // namespace

void FormatHexBytes(std::u16string& out, ByteView bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i > 0) out += u' ';
        out.append(HexPair(bytes[i]).data(), 2);
    }
}

void FormatByteArrayHex(std::u16string& out, ByteView bytes) {
    if (bytes.empty()) {
        out += u"0 bytes";
        return;
    }
    FormatHexBytes(out, bytes.first(std::min(bytes.size(), kShownArrayBytes)));
    if (bytes.size() > kShownArrayBytes) out += u" ...";
}

void FormatByteArrayAscii(std::u16string& out, ByteView bytes) {
    if (bytes.empty()) {
        out += u"0 bytes";
        return;
    }
    const auto shown = bytes.first(std::min(bytes.size(), kShownCharacters));
    const auto stop = std::ranges::find_if_not(shown, IsPrintable);
    out += u'"';
    out.append(shown.begin(), stop);
    const auto length = static_cast<std::size_t>(stop - shown.begin());
    if (length < bytes.size() && bytes[length] != 0) out += u"...";
    out += u'"';
}

void FormatInteger(std::u16string& out, ByteView bytes, ByteOrder byteOrder, NumberBase base) {
    if (bytes.empty()) return;
    if (bytes.size() > sizeof(std::uint64_t)) {
        out += u"0x";
        FormatHexBytes(out, bytes);
        return;
    }
    const std::uint64_t value = ReadUnsigned(bytes, byteOrder);
    if (base == NumberBase::Decimal) {
        AppendDecimal(out, value);
    } else {
        out += u"0x";
        AppendHex(out, value, bytes.size() * 2);
    }
}

void FormatFloat(std::u16string& out, ByteView bytes, MemberKind kind, const ValueFormat& format) {
    const std::size_t native = kind == MemberKind::Float ? sizeof(float) : sizeof(double);
    if (bytes.size() != native) {
        FormatInteger(out, bytes, format.byteOrder, format.numberBase);
        return;
    }
    AppendFloat(out, bytes);
    out += u" (";
    FormatInteger(out, bytes, format.byteOrder, NumberBase::Hex);
    out += u')';
}

void FormatTypeText(std::u16string& out, const StructMemberLayout& member) {
    out += member.typeName;
    if (member.isPadding) return;
    if (member.isFlexibleArray) {
        out += u"[]";
    } else if (member.count >= 2) {
        out += u'[';
        AppendDecimal(out, member.count);
        out += u']';
    }
    if (member.kind == MemberKind::Struct && member.count == 1) {
        out += u" (";
        AppendDecimal(out, member.TotalSize());
        out += u" bytes)";
    }
}

} // namespace kvx
