#include "pattern/layout.h"

#include "pattern/type_resolution.h"

#include <algorithm>
#include <limits>

namespace kvx {
namespace {

constexpr std::u16string_view kGapName = u"<padding>";
constexpr std::u16string_view kGapType = u"padding";
constexpr std::u16string_view kTooLarge = u"Struct size exceeds 64 bits.";

constexpr std::uint64_t kLargest = std::numeric_limits<std::uint64_t>::max();

std::optional<std::uint64_t> Add(std::uint64_t left, std::uint64_t right) {
    if (right > kLargest - left) return std::nullopt;
    return left + right;
}

std::optional<std::uint64_t> Multiply(std::uint64_t left, std::uint64_t right) {
    if (right != 0 && left > kLargest / right) return std::nullopt;
    return left * right;
}

/// Structs embed structs, as deep as the file likes: what is being laid out is kept on a stack of
/// its own, where a struct that needs another one waits for it.
class Layouter {
public:
    explicit Layouter(ParseState& state)
        : state_(state), results_(state.structs.size()), progress_(state.structs.size()),
          resolver_([this](std::size_t index) { return ExtentOf(index); }) {}

    bool Run() {
        for (std::size_t index = 0; index < results_.size(); ++index) {
            if (progress_[index] == Progress::NotVisited && !LayOut(index)) return false;
        }
        return true;
    }

    std::vector<ResolvedStructInfo> TakeResults() { return std::move(results_); }

private:
    enum class Progress : std::uint8_t { NotVisited, InProgress, Done };

    struct Frame {
        std::size_t index;
        std::size_t firstRow; ///< of this struct in rows_
        std::size_t nextMember = 0;
        std::uint64_t offset = 0;
    };

    enum class Step : std::uint8_t { Placed, NeedsStruct, Failed };

    bool LayOut(std::size_t index) {
        Enter(index);
        while (!stack_.empty()) {
            Frame& frame = stack_.back();
            if (frame.nextMember == state_.structs[frame.index].members.size()) {
                if (!Finish(frame)) return false;
                stack_.pop_back();
                continue;
            }
            const Step step = PlaceNextMember(frame);
            if (step == Step::Failed) return false;
            if (step == Step::NeedsStruct) Enter(*neededStruct_);
        }
        return true;
    }

    void Enter(std::size_t index) {
        const StructDefinition& definition = state_.structs[index];
        progress_[index] = Progress::InProgress;
        results_[index].name = definition.name.empty() ? u"<anonymous>" : definition.name;
        stack_.push_back({index, rows_.size()});
    }

    Step PlaceNextMember(Frame& frame) {
        const std::vector<MemberDecl>& members = state_.structs[frame.index].members;
        const MemberDecl& member = members[frame.nextMember];
        if (member.isFlexibleArray && frame.nextMember + 1 != members.size())
            return FailStep(member, u"Flexible array member must be the last member.");

        neededStruct_.reset();
        const Outcome<ResolvedType> type = ResolveType(state_, member, resolver_);
        if (!type && neededStruct_) return Step::NeedsStruct;
        if (!type) {
            Fail(state_, type.error);
            return Step::Failed;
        }
        return Place(frame, member, *type.value);
    }

    /// Extent of a struct that is done. One that is not yet begun is noted as needed.
    std::optional<StructExtent> ExtentOf(std::size_t index) {
        switch (progress_[index]) {
        case Progress::Done:
            return StructExtent{results_[index].size, results_[index].alignment};
        case Progress::InProgress:
            Fail(state_, u"Direct recursive struct embedding is not allowed.");
            return std::nullopt;
        case Progress::NotVisited:
            break;
        }
        neededStruct_ = index;
        return std::nullopt;
    }

    Step Place(Frame& frame, const MemberDecl& member, const ResolvedType& type) {
        ResolvedStructInfo& result = results_[frame.index];
        const std::uint64_t alignment = EffectiveAlignment(type.alignment);
        result.alignment = std::max(result.alignment, alignment);
        if (!Pad(frame.offset, alignment)) return FailStep(member, kTooLarge);

        const std::optional<std::uint64_t> total = Multiply(type.size, member.count);
        const std::optional<std::uint64_t> end = total ? Add(frame.offset, *total) : std::nullopt;
        if (!end) return FailStep(member, kTooLarge);
        if (*total == 0 && !type.isPointer && !member.isFlexibleArray)
            return FailStep(member,
                            u"Unsupported zero-sized member type: " + member.typeName->text);
        StructMemberLayout& row = rows_.emplace_back();
        row.name = member.name;
        row.typeName = member.typeName->text;
        row.offset = frame.offset;
        row.elementSize = type.size;
        row.count = member.count;
        row.structIndex = type.structIndex;
        row.kind = type.kind;
        row.isFlexibleArray = member.isFlexibleArray;
        row.isPointer = type.isPointer;
        row.isSigned = type.isSigned;
        frame.offset = *end;
        ++frame.nextMember;
        return Step::Placed;
    }

    bool Finish(Frame& frame) {
        ResolvedStructInfo& result = results_[frame.index];
        if (!Pad(frame.offset, EffectiveAlignment(result.alignment)))
            return FailAt(state_, state_.structs[frame.index].members.back().position, kTooLarge);
        result.size = frame.offset;
        const auto first = rows_.begin() + static_cast<std::ptrdiff_t>(frame.firstRow);
        result.members.assign(first, rows_.end());
        rows_.erase(first, rows_.end());
        progress_[frame.index] = Progress::Done;
        return true;
    }

    std::uint64_t EffectiveAlignment(std::uint64_t alignment) const {
        const std::uint64_t cap = state_.settings.memberAlign;
        return cap == 0 ? 1 : std::min(cap, alignment);
    }

    /// Fills the gap up to the next multiple of `alignment`; false when that leaves 64 bits.
    bool Pad(std::uint64_t& offset, std::uint64_t alignment) {
        const std::uint64_t over = offset % alignment;
        if (over == 0) return true;
        const std::uint64_t gap = alignment - over;
        const std::optional<std::uint64_t> end = Add(offset, gap);
        if (!end) return false;
        StructMemberLayout& row = rows_.emplace_back();
        row.name = kGapName;
        row.typeName = kGapType;
        row.offset = offset;
        row.elementSize = 1;
        row.count = gap;
        row.kind = MemberKind::Struct;
        row.isPadding = true;
        offset = *end;
        return true;
    }

    Step FailStep(const MemberDecl& member, std::u16string_view message) {
        FailAt(state_, member.position, message);
        return Step::Failed;
    }

    ParseState& state_;
    std::vector<ResolvedStructInfo> results_;
    std::vector<Progress> progress_;
    std::vector<Frame> stack_;
    std::vector<StructMemberLayout> rows_; ///< of the structs on the stack, one behind the other
    std::optional<std::size_t> neededStruct_;
    StructResolver resolver_;
};

} // namespace

Outcome<std::vector<ResolvedStructInfo>> ResolveStructs(ParseState& state) {
    using Result = Outcome<std::vector<ResolvedStructInfo>>;
    Layouter layouter(state);
    return layouter.Run() ? Result::Success(layouter.TakeResults()) : Result::Failure(state.error);
}

} // namespace kvx
