#include "document/edit_tree.h"

#include <cassert>
#include <limits>
#include <utility>

namespace kvx {

// Nodes.

template <typename N>
std::uint64_t EditTree::TotalShift(const N& node) {
    std::uint64_t sum = 0;
    for (const auto& item : node.items)
        sum += N::ShiftOf(item);
    return sum;
}

template <typename N>
bool EditTree::Describes(const Branch& branch, const N& node) {
    return branch.firstPosition == node.FirstPosition() && branch.shift == TotalShift(node);
}

// Makes one of two neighbouring children when they fit into one, or else equally full ones.
template <typename N>
void EditTree::LevelChildren(Inner& parent, std::size_t slot) noexcept {
    N& left = *parent.Child<N>(slot);
    N& right = *parent.Child<N>(slot + 1);
    Branch& leftBranch = parent.items[slot];
    Branch& rightBranch = parent.items[slot + 1];
    const std::size_t total = left.items.Count() + right.items.Count();
    const std::uint64_t shift = leftBranch.shift + rightBranch.shift;
    if (total <= kNodeMax) {
        left.items.TakeHead(right.items, right.items.Count());
        leftBranch.shift = shift;
        parent.items.Erase(slot + 1);
        return;
    }
    if (left.items.Count() > total / 2)
        left.items.GiveTail(right.items, left.items.Count() - total / 2);
    else
        left.items.TakeHead(right.items, total / 2 - left.items.Count());
    leftBranch.shift = TotalShift(left);
    rightBranch.shift = shift - leftBranch.shift;
    rightBranch.firstPosition = right.FirstPosition();
}

// The cursor.

const EditRun* EditTree::Cursor::FirstOfNextLeaf() const {
    const std::size_t level = LevelWithNext();
    if (level == height_) return nullptr;
    const Node* node = path_[level].inner->Child<Node>(path_[level].slot + 1);
    for (std::size_t below = level; below > 0; --below)
        node = static_cast<const Inner*>(node)->Child<Node>(0);
    return &static_cast<const Leaf*>(node)->items[0];
}

bool EditTree::Cursor::MoveBack() {
    if (passed_ == 0) return false;
    --passed_;
    shift_ -= leaf_->items[passed_].Shift();
    if (passed_ == 0) EnterPreviousLeaf();
    return true;
}

std::size_t EditTree::Cursor::LevelWithNext() const {
    std::size_t level = 0;
    while (level < height_ && path_[level].slot + 1 == path_[level].inner->items.Count())
        ++level;
    return level;
}

bool EditTree::Cursor::EnterNextLeaf() {
    const std::size_t level = LevelWithNext();
    if (level == height_) return false;
    ++path_[level].slot;
    for (std::size_t below = level; below > 0; --below)
        path_[below - 1] = {path_[below].inner->Child<Inner>(path_[below].slot), 0};
    EnterLeaf(shift_);
    return true;
}

void EditTree::Cursor::EnterPreviousLeaf() {
    std::size_t level = 0;
    while (level < height_ && path_[level].slot == 0)
        ++level;
    if (level == height_) return;
    --path_[level].slot;
    for (std::size_t below = level; below > 0; --below) {
        Inner* inner = path_[below].inner->Child<Inner>(path_[below].slot);
        path_[below - 1] = {inner, inner->items.Count() - 1};
    }
    const Step& parent = path_[0];
    EnterLeaf(shift_ - parent.inner->items[parent.slot].shift);
    passed_ = leaf_->items.Count();
}

void EditTree::Cursor::EnterLeaf(std::uint64_t leafShift) {
    leaf_ = path_[0].inner->Child<Leaf>(path_[0].slot);
    leafShift_ = leafShift;
    passed_ = 0;
}

// The tree.

EditTree::EditTree() : root_(std::make_unique<Leaf>()) {}

EditTree::~EditTree() = default;

bool EditTree::IsEmpty() const {
    return height_ == 0 && static_cast<const Leaf*>(root_.get())->items.Count() == 0;
}

void EditTree::Clear() noexcept {
    // The first leaf stays, so that no memory is needed.
    for (; height_ > 0; --height_)
        root_ = std::move(static_cast<Inner*>(root_.get())->items[0].child);
    static_cast<Leaf*>(root_.get())->items.Clear();
}

EditTree::Cursor EditTree::Front() const {
    Cursor cursor;
    cursor.height_ = height_;
    Node* node = root_.get();
    for (std::size_t level = height_; level > 0; --level) {
        cursor.path_[level - 1] = {static_cast<Inner*>(node), 0};
        node = static_cast<Inner*>(node)->items[0].child.get();
    }
    cursor.leaf_ = static_cast<Leaf*>(node);
    return cursor;
}

EditTree::Cursor EditTree::Back() const {
    Cursor cursor;
    Seek(cursor, std::numeric_limits<std::uint64_t>::max());
    return cursor;
}

void EditTree::Seek(Cursor& cursor, std::uint64_t editedPosition) const {
    if (!cursor.leaf_ || !LeafCovers(cursor, editedPosition)) Descend(cursor, editedPosition);

    // From where the cursor was: edits in a row are a step apart.
    const auto& runs = cursor.leaf_->items;
    std::size_t passed = cursor.passed_;
    std::uint64_t shift = cursor.shift_;
    while (passed < runs.Count() && runs[passed].Position() + shift <= editedPosition)
        shift += runs[passed++].Shift();
    while (passed > 0) {
        const std::uint64_t before = shift - runs[passed - 1].Shift();
        if (runs[passed - 1].Position() + before <= editedPosition) break;
        shift = before;
        --passed;
    }
    cursor.passed_ = passed;
    cursor.shift_ = shift;
}

// True when the place for the position is known to lie in the cursor's leaf.
bool EditTree::LeafCovers(const Cursor& cursor, std::uint64_t editedPosition) {
    if (cursor.height_ == 0) return true;
    if (editedPosition < cursor.leaf_->FirstPosition() + cursor.leafShift_) return false;
    const std::size_t level = cursor.LevelWithNext();
    if (level == cursor.height_) return true;
    const auto& [inner, slot] = cursor.path_[level];
    const auto& [parent, leafSlot] = cursor.path_[0];
    const std::uint64_t shiftAfterLeaf = cursor.leafShift_ + parent->items[leafSlot].shift;
    return editedPosition < inner->items[slot + 1].firstPosition + shiftAfterLeaf;
}

// Sets the cursor to the front of the leaf that holds the place for the position.
void EditTree::Descend(Cursor& cursor, std::uint64_t editedPosition) const {
    Node* node = root_.get();
    std::uint64_t shift = 0;
    for (std::size_t level = height_; level > 0; --level) {
        Inner* inner = static_cast<Inner*>(node);
        const auto& branches = inner->items;
        std::size_t slot = 0;
        while (slot + 1 < branches.Count()) {
            const std::uint64_t next = shift + branches[slot].shift;
            if (branches[slot + 1].firstPosition + next > editedPosition) break;
            shift = next;
            ++slot;
        }
        cursor.path_[level - 1] = {inner, slot};
        node = branches[slot].child.get();
    }
    cursor.height_ = height_;
    cursor.leaf_ = static_cast<Leaf*>(node);
    cursor.passed_ = 0;
    cursor.leafShift_ = shift;
    cursor.shift_ = shift;
}

void EditTree::Insert(Cursor& cursor, EditRun run) {
    MakeRoom(cursor, 0);
    const std::uint64_t shift = run.Shift();
    cursor.leaf_->items.Insert(cursor.passed_, std::move(run));
    ++cursor.passed_;
    cursor.shift_ += shift;
    Propagate(cursor, shift);
}

void EditTree::EraseBefore(Cursor& cursor) noexcept {
    const std::uint64_t shift = RunBefore(cursor).Shift();
    cursor.leaf_->items.Erase(cursor.passed_ - 1);
    Propagate(cursor, 0 - shift);
    Repair(cursor, 0);
    cursor.leaf_ = nullptr;
}

void EditTree::EraseAfter(Cursor& cursor) noexcept {
    cursor.MoveForward();
    EraseBefore(cursor);
}

EditRun& EditTree::RunBefore(const Cursor& cursor) {
    return cursor.leaf_->items[cursor.passed_ - 1];
}

// Brings what the branches above the cursor's leaf know up to date.
void EditTree::Propagate(const Cursor& cursor, std::uint64_t grown) noexcept {
    if (cursor.height_ == 0) return;
    std::uint64_t first = cursor.leaf_->FirstPosition();
    for (std::size_t level = 0; level < cursor.height_; ++level) {
        const auto& [inner, slot] = cursor.path_[level];
        inner->items[slot].firstPosition = first;
        inner->items[slot].shift += grown;
        first = inner->FirstPosition();
    }
}

std::size_t EditTree::ItemCount(const Cursor& cursor, std::size_t level) {
    return level == 0 ? cursor.leaf_->items.Count() : cursor.path_[level - 1].inner->items.Count();
}

// Splits the cursor's node at `level` (0: its leaf) when it is full.
void EditTree::MakeRoom(Cursor& cursor, std::size_t level) {
    if (ItemCount(cursor, level) < kNodeMax) return;
    if (level == 0)
        Split<Leaf>(cursor, level);
    else
        Split<Inner>(cursor, level);
}

// Moves the second half of the cursor's node at `level` into a new one to its right. The levels
// above have room made first; each split is complete in itself, so that running out of memory
// between two leaves a sound tree.
template <typename N>
void EditTree::Split(Cursor& cursor, std::size_t level) {
    auto right = std::make_unique<N>();
    if (level == height_)
        GrowRoot(cursor);
    else
        MakeRoom(cursor, level + 1);

    const auto [parent, slot] = cursor.path_[level];
    parent->template Child<N>(slot)->items.GiveTail(right->items, kNodeMax / 2);
    const std::uint64_t shift = TotalShift(*right);
    parent->items[slot].shift -= shift;
    parent->items.Insert(slot + 1, {right->FirstPosition(), shift, std::move(right)});
    FollowSplit(cursor, level);
}

// Moves the cursor on into the new node when its place went there.
void EditTree::FollowSplit(Cursor& cursor, std::size_t level) {
    constexpr std::size_t kKept = kNodeMax - kNodeMax / 2;
    auto& [parent, slot] = cursor.path_[level];
    if (level > 0) {
        Cursor::Step& own = cursor.path_[level - 1];
        if (own.slot < kKept) return;
        ++slot;
        own = {parent->Child<Inner>(slot), own.slot - kKept};
    } else if (cursor.passed_ > kKept) {
        const std::size_t passed = cursor.passed_ - kKept;
        const std::uint64_t leftShift = parent->items[slot].shift;
        ++slot;
        cursor.EnterLeaf(cursor.leafShift_ + leftShift);
        cursor.passed_ = passed;
    }
}

void EditTree::GrowRoot(Cursor& cursor) {
    assert(height_ < Cursor::kMaxHeight);
    auto root = std::make_unique<Inner>();
    Branch all;
    if (height_ == 0) {
        all = {cursor.leaf_->FirstPosition(), TotalShift(*cursor.leaf_), nullptr};
    } else {
        const Inner* old = cursor.path_[height_ - 1].inner;
        all = {old->FirstPosition(), TotalShift(*old), nullptr};
    }
    all.child = std::move(root_);
    root->items.Insert(0, std::move(all));
    cursor.path_[height_] = {root.get(), 0};
    root_ = std::move(root);
    cursor.height_ = ++height_;
}

// Fills up the cursor's node at `level` from a neighbour, or joins them, when it has become too
// empty; then looks at the level above.
void EditTree::Repair(const Cursor& cursor, std::size_t level) noexcept {
    const std::size_t count = ItemCount(cursor, level);
    if (level == height_) {
        if (level > 0 && count == 1) {
            root_ = std::move(static_cast<Inner*>(root_.get())->items[0].child);
            --height_;
        }
        return;
    }
    if (count >= kNodeMin) return;
    const auto& [parent, slot] = cursor.path_[level];
    const std::size_t left = slot > 0 ? slot - 1 : 0;
    if (level == 0)
        LevelChildren<Leaf>(*parent, left);
    else
        LevelChildren<Inner>(*parent, left);
    Repair(cursor, level + 1);
}

// Checks.

bool EditTree::IsSound() const {
    if (!IsSoundBelow(*root_, height_)) return false;
    Cursor cursor = Front();
    const EditRun* last = nullptr;
    while (const EditRun* run = cursor.After()) {
        if (!run->IsSound()) return false;
        if (last && last->End() > run->Position()) return false;
        if (last && run->Is(PieceKind::Deleted) && last->CanTakeIn(*run)) return false;
        last = run;
        cursor.MoveForward();
    }
    return true;
}

// The nodes below `node`, which is `level` levels above the leaves: fill, sums and first positions.
bool EditTree::IsSoundBelow(const Node& node, std::size_t level) const {
    const bool isRoot = &node == root_.get();
    if (level == 0) {
        const Leaf* leaf = dynamic_cast<const Leaf*>(&node);
        return leaf && (isRoot || leaf->items.Count() >= kNodeMin);
    }
    const Inner* inner = dynamic_cast<const Inner*>(&node);
    if (!inner || inner->items.Count() < (isRoot ? 2 : kNodeMin)) return false;
    for (const Branch& branch : inner->items) {
        if (!IsSoundBelow(*branch.child, level - 1)) return false;
        const bool known = level == 1 ? Describes(branch, static_cast<const Leaf&>(*branch.child))
                                      : Describes(branch, static_cast<const Inner&>(*branch.child));
        if (!known) return false;
    }
    return true;
}

} // namespace kvx
