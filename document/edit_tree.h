// The edit runs of a document in on-disk order: a B+ tree whose branches know how far all the runs
// below them move what follows, so that a position of the edited document is found by descending.
//
// An on-disk position never changes while the file is open. Where a run starts in the edited
// document follows from its own position and the shifts of all runs before it, so an edit touches
// one leaf and the sums on the way up from it.
#pragma once

#include "document/edit_run.h"
#include "document/fixed_vector.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace kvx {

/// Owns the runs. Shifts are sums modulo 2^64. A call that runs out of memory raises std::bad_alloc
/// and changes no run.
class EditTree {
    struct Leaf;
    struct Inner;

public:
    /// A place between two runs, before the first or after the last. Any change of the tree that
    /// does not go through it makes it unusable, except for being assigned to.
    class Cursor {
    public:
        /// The run before and after the place; null at the ends.
        const EditRun* Before() const;
        const EditRun* After() const;

        /// How far all the runs before the place move what follows.
        std::uint64_t Shift() const { return shift_; }

        /// Move over one run; false, and nothing moves, at the end.
        bool MoveForward();
        bool MoveBack();

    private:
        friend class EditTree;
        struct Step {
            Inner* inner = nullptr;
            std::size_t slot = 0;
        };
        /// Far more than memory can fill: every level has at least kNodeMin times the nodes above.
        static constexpr std::size_t kMaxHeight = 14;

        std::size_t LevelWithNext() const;
        const EditRun* FirstOfNextLeaf() const;
        bool EnterNextLeaf();
        void EnterPreviousLeaf();
        void EnterLeaf(std::uint64_t leafShift);

        std::uint64_t shift_ = 0;
        std::uint64_t leafShift_ = 0; ///< of all runs before the leaf
        Leaf* leaf_ = nullptr;        ///< null: not set
        std::size_t passed_ = 0; ///< runs of the leaf before the place; 0 only at the very front
        std::size_t height_ = 0;
        std::array<Step, kMaxHeight> path_; ///< from the leaf's parent up to the root
    };

    EditTree();
    ~EditTree();
    EditTree(const EditTree&) = delete;
    EditTree& operator=(const EditTree&) = delete;

    bool IsEmpty() const;
    void Clear() noexcept;

    /// The place before every run, and after every run.
    Cursor Front() const;
    Cursor Back() const;

    /// Moves the cursor to the place after the last run that starts at or before a position of the
    /// edited document. Cheap when the cursor is near already; an unset cursor is welcome.
    void Seek(Cursor& cursor, std::uint64_t editedPosition) const;

    /// Puts a run at the cursor's place and moves the cursor behind it.
    void Insert(Cursor& cursor, EditRun run);

    /// Lets `change` alter the run before or after the cursor, which stays between them.
    template <typename Change>
    void UpdateBefore(Cursor& cursor, Change&& change) {
        const std::uint64_t grown = Alter(RunBefore(cursor), change);
        cursor.shift_ += grown;
        Propagate(cursor, grown);
    }
    template <typename Change>
    void UpdateAfter(const Cursor& cursor, Change&& change) {
        Cursor next = cursor;
        next.MoveForward();
        UpdateBefore(next, change);
    }

    /// Removes the run before or after the cursor. The cursor is unset afterwards: seek again.
    void EraseBefore(Cursor& cursor) noexcept;
    void EraseAfter(Cursor& cursor) noexcept;

    /// Checks order, sums and fill of the whole tree; for tests.
    bool IsSound() const;

private:
    static constexpr std::size_t kNodeMax = 64; ///< items in a node
    static constexpr std::size_t kNodeMin = 16; ///< in every node but the root

    struct Node {
        Node() = default;
        Node(const Node&) = delete;
        Node& operator=(const Node&) = delete;
        virtual ~Node() = default;
    };

    struct Leaf final : Node {
        std::uint64_t FirstPosition() const { return items[0].Position(); }
        static std::uint64_t ShiftOf(const EditRun& run) { return run.Shift(); }

        FixedVector<EditRun, kNodeMax> items;
    };

    /// What an inner node knows of one child.
    struct Branch {
        std::uint64_t firstPosition = 0; ///< on-disk position of the first run below
        std::uint64_t shift = 0;         ///< sum over the runs below
        std::unique_ptr<Node> child;
    };

    struct Inner final : Node {
        std::uint64_t FirstPosition() const { return items[0].firstPosition; }
        static std::uint64_t ShiftOf(const Branch& branch) { return branch.shift; }
        template <typename N>
        N* Child(std::size_t slot) const {
            return static_cast<N*>(items[slot].child.get());
        }

        FixedVector<Branch, kNodeMax> items;
    };

    template <typename N>
    static std::uint64_t TotalShift(const N& node);
    template <typename N>
    static bool Describes(const Branch& branch, const N& node);
    template <typename N>
    static void LevelChildren(Inner& parent, std::size_t slot) noexcept;

    template <typename Change>
    static std::uint64_t Alter(EditRun& run, Change& change) {
        const std::uint64_t before = run.Shift();
        change(run);
        return run.Shift() - before;
    }

    static EditRun& RunBefore(const Cursor& cursor);
    static void Propagate(const Cursor& cursor, std::uint64_t grown) noexcept;
    static bool LeafCovers(const Cursor& cursor, std::uint64_t editedPosition);
    void Descend(Cursor& cursor, std::uint64_t editedPosition) const;
    static std::size_t ItemCount(const Cursor& cursor, std::size_t level);
    void MakeRoom(Cursor& cursor, std::size_t level);
    template <typename N>
    void Split(Cursor& cursor, std::size_t level);
    static void FollowSplit(Cursor& cursor, std::size_t level);
    void GrowRoot(Cursor& cursor);
    void Repair(const Cursor& cursor, std::size_t level) noexcept;
    bool IsSoundBelow(const Node& node, std::size_t level) const;

    std::unique_ptr<Node> root_;
    std::size_t height_ = 0; ///< levels of inner nodes; 0: the root is a leaf
};

inline const EditRun* EditTree::Cursor::Before() const {
    return passed_ > 0 ? &leaf_->items[passed_ - 1] : nullptr;
}

inline const EditRun* EditTree::Cursor::After() const {
    return passed_ < leaf_->items.Count() ? &leaf_->items[passed_] : FirstOfNextLeaf();
}

inline bool EditTree::Cursor::MoveForward() {
    if (passed_ == leaf_->items.Count() && !EnterNextLeaf()) return false;
    shift_ += leaf_->items[passed_].Shift();
    ++passed_;
    return true;
}

} // namespace kvx
