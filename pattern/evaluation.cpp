#include "pattern/evaluation.h"

#include "pattern/number_text.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

constexpr std::array<std::u16string_view, 5> kCharacterTypes = {
    u"char", u"signed char", u"unsigned char", u"int8_t", u"uint8_t"};

/// True for what is shown as raw bytes instead of one number.
bool IsShownAsBytes(const StructMemberLayout& member) {
    return member.isFlexibleArray || member.count >= 2 || member.kind == MemberKind::Struct;
}

class Evaluator {
public:
    explicit Evaluator(const StructEvalRequest& request) : request_(request) {}

    /// Walks the structs member by member. Every level below the first adds a row, so the limit on
    /// rows also limits the depth.
    std::vector<StructViewRow> Run(const ResolvedStructInfo& entry) {
        rows_.reserve(std::min(entry.members.size(), kMaxStructRows) + 1);
        levels_.push_back({&entry, 0, 0});
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.nextMember == level.layout->members.size()) {
                levels_.pop_back();
                continue;
            }
            const StructMemberLayout& member = level.layout->members[level.nextMember++];
            if (rows_.size() == kMaxStructRows) {
                rows_.push_back({u"...", u"...", u"", u"...", u"..."});
                break;
            }
            const std::uint64_t offset = level.offset + member.offset;
            AddRow(member, offset);
            const ResolvedStructInfo* type = request_.pattern->StructAt(member.structIndex);
            if (type != nullptr && member.count == 1) levels_.push_back({type, offset, 0});
        }
        return std::move(rows_);
    }

private:
    struct Level {
        const ResolvedStructInfo* layout;
        std::uint64_t offset; ///< of the struct from the start of the bytes
        std::size_t nextMember;
    };

    void AddRow(const StructMemberLayout& member, std::uint64_t offset) {
        StructViewRow& row = rows_.emplace_back();
        row.name.assign(2 * (levels_.size() - 1), u' ').append(member.name);
        AppendDecimal(row.size, member.isFlexibleArray ? member.elementSize : member.TotalSize());
        if (member.isFlexibleArray) row.size += u'+';
        row.offset = u"0x";
        AppendHex(row.offset, request_.baseOffset + offset);
        row.type = FormatTypeText(member);
        row.value = ValueText(member, offset);
    }

    std::u16string ValueText(const StructMemberLayout& member, std::uint64_t offset) const {
        const std::optional<ByteView> bytes = BytesOf(member, offset);
        if (!bytes) return request_.unavailableText.value_or(u"-");
        const ValueFormat& format = request_.format;
        if (member.isPadding) return FormatHexBytes(*bytes);
        if (IsShownAsBytes(member)) {
            const bool asText = format.byteArrays == ByteArrayStyle::Ascii &&
                                std::ranges::count(kCharacterTypes, member.typeName) != 0;
            return asText ? FormatByteArrayAscii(*bytes) : FormatByteArrayHex(*bytes);
        }
        if (member.kind == MemberKind::Integer)
            return FormatInteger(*bytes, format.byteOrder, format.numberBase);
        return FormatFloat(*bytes, member.kind, format);
    }

    /// The member's bytes, for a flexible array all that are left; empty when some are missing.
    std::optional<ByteView> BytesOf(const StructMemberLayout& member, std::uint64_t offset) const {
        const ByteView bytes = request_.bytes;
        if (offset > bytes.size()) return std::nullopt;
        const ByteView rest = bytes.subspan(static_cast<std::size_t>(offset));
        if (member.isFlexibleArray) return rest;
        if (member.TotalSize() > rest.size()) return std::nullopt;
        return rest.first(static_cast<std::size_t>(member.TotalSize()));
    }

    const StructEvalRequest& request_;
    std::vector<StructViewRow> rows_;
    std::vector<Level> levels_;
};

} // namespace

std::vector<StructViewRow> EvaluateStruct(const StructEvalRequest& request) {
    const ResolvedStructInfo* entry = request.pattern ? request.pattern->Entry() : nullptr;
    if (entry == nullptr) return {};
    return Evaluator(request).Run(*entry);
}

} // namespace kvx
