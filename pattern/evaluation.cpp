#include "pattern/evaluation.h"

#include "platform/number_text.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

constexpr std::array<std::u16string_view, 5> kCharacterTypes = {
    u"char", u"signed char", u"unsigned char", u"int8_t", u"uint8_t"};

/// True for what is more than one number.
bool IsArrayOrStruct(const StructMemberLayout& member) {
    return member.isFlexibleArray || member.count >= 2 || member.kind == MemberKind::Struct;
}

/// More of an array never shows: its text ends at the 64th character, its bytes before that.
constexpr std::uint64_t kShownArrayBytes = 65;

struct Level {
    const ResolvedStructInfo* layout;
    std::uint64_t offset; ///< of the struct from the start of the bytes
    std::size_t nextMember;
};

/// Calls visit(member, offset, depth) for each row, member by member. Every level below the first
/// adds a row, so the limit on rows also limits the depth. False when there are more than that.
template <typename Visit>
bool VisitRows(const StructPatternFile& pattern, const ResolvedStructInfo& entry,
               const Visit& visit) {
    std::vector<Level> levels = {{&entry, 0, 0}};
    std::size_t rows = 0;
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.nextMember == level.layout->members.size()) {
            levels.pop_back();
            continue;
        }
        const StructMemberLayout& member = level.layout->members[level.nextMember++];
        if (rows++ == kMaxStructRows) return false;
        const std::uint64_t offset = level.offset + member.offset;
        visit(member, offset, levels.size() - 1);
        const ResolvedStructInfo* type = pattern.StructAt(member.structIndex);
        if (type != nullptr && member.count == 1) levels.push_back({type, offset, 0});
    }
    return true;
}

class Evaluator {
public:
    explicit Evaluator(const StructEvalRequest& request) : request_(request) {}

    std::vector<StructViewRow> Run(const ResolvedStructInfo& entry) {
        rows_.reserve(std::min(entry.members.size(), kMaxStructRows) + 1);
        const bool all = VisitRows(*request_.pattern, entry,
                                   [this](const StructMemberLayout& member, std::uint64_t offset,
                                          std::size_t depth) { AddRow(member, offset, depth); });
        if (!all) AddMarker();
        return std::move(rows_);
    }

private:
    void AddRow(const StructMemberLayout& member, std::uint64_t offset, std::size_t depth) {
        row_.Clear();
        std::u16string& text = row_.Writing();
        text.append(2 * depth, u' ').append(member.name);
        row_.EndColumn(StructColumn::Name);
        AppendDecimal(text, member.isFlexibleArray ? member.elementSize : member.TotalSize());
        if (member.isFlexibleArray) text += u'+';
        row_.EndColumn(StructColumn::Size);
        text += u"0x";
        AppendHex(text, request_.baseOffset + offset);
        row_.EndColumn(StructColumn::Offset);
        FormatTypeText(text, member);
        row_.EndColumn(StructColumn::Type);
        AppendValue(text, member, offset);
        row_.EndColumn(StructColumn::Value);
        rows_.push_back(row_);
    }

    /// Says that there would be more rows.
    void AddMarker() {
        StructViewRow marker;
        for (const StructColumn column :
             {StructColumn::Name, StructColumn::Size, StructColumn::Offset, StructColumn::Type,
              StructColumn::Value}) {
            if (column != StructColumn::Offset) marker.Writing() += u"...";
            marker.EndColumn(column);
        }
        rows_.push_back(std::move(marker));
    }

    void AppendValue(std::u16string& text, const StructMemberLayout& member,
                     std::uint64_t offset) const {
        const std::optional<ByteView> bytes = BytesOf(member, offset);
        const ValueFormat& format = request_.format;
        if (!bytes)
            text += request_.unavailableText ? *request_.unavailableText : u"-";
        else if (member.isPadding)
            FormatHexBytes(text, *bytes);
        else if (IsShownAsText(member))
            FormatByteArrayAscii(text, *bytes);
        else if (IsArrayOrStruct(member))
            FormatByteArrayHex(text, *bytes);
        else if (member.kind == MemberKind::Integer)
            FormatInteger(text, *bytes, format.byteOrder, format.numberBase);
        else
            FormatFloat(text, *bytes, member.kind, format);
    }

    bool IsShownAsText(const StructMemberLayout& member) const {
        return IsArrayOrStruct(member) && request_.format.byteArrays == ByteArrayStyle::Ascii &&
               std::ranges::find(kCharacterTypes, member.typeName) != kCharacterTypes.end();
    }

    /// The member's bytes, for a flexible array all that are left; empty when some are missing.
    std::optional<ByteView> BytesOf(const StructMemberLayout& member, std::uint64_t offset) const {
        if (!request_.memberBytes.empty()) return request_.memberBytes[rows_.size()];
        const ByteView bytes = request_.bytes;
        if (offset > bytes.size()) return std::nullopt;
        const ByteView rest = bytes.subspan(static_cast<std::size_t>(offset));
        if (member.isFlexibleArray) return rest;
        if (member.TotalSize() > rest.size()) return std::nullopt;
        return rest.first(static_cast<std::size_t>(member.TotalSize()));
    }

    const StructEvalRequest& request_;
    std::vector<StructViewRow> rows_;
    StructViewRow row_; ///< the one being made
};

} // namespace

std::vector<ShownMember> ShownMembers(const StructPatternFile& pattern) {
    std::vector<ShownMember> members;
    const auto add = [&](const StructMemberLayout& member, std::uint64_t offset, std::size_t) {
        const std::uint64_t size = member.TotalSize();
        const bool isCut = size > kShownArrayBytes && !member.isPadding;
        members.push_back(
            {offset, size, isCut || member.isFlexibleArray ? kShownArrayBytes : size});
    };
    if (const ResolvedStructInfo* entry = pattern.Entry()) VisitRows(pattern, *entry, add);
    return members;
}

std::vector<StructViewRow> EvaluateStruct(const StructEvalRequest& request) {
    const ResolvedStructInfo* entry = request.pattern ? request.pattern->Entry() : nullptr;
    if (entry == nullptr) return {};
    return Evaluator(request).Run(*entry);
}

} // namespace kvx
