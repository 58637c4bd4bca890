#include "hexview/frame.h"

#include "encoding/row_decoder.h"
#include "hexview/hex_digits.h"
#include "hexview/hex_view_layout.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace kvx {
namespace {

constexpr float kInsertBarWidth = 2.0F;

/// The visible rows' bytes, read in one go.
class RowReader {
public:
    RowReader(const IReadOnlyDocument& document, std::uint64_t offset, std::uint64_t count)
        : document_(document), offset_(offset), page_(document.ReadBytes(offset, count)) {}

    /// Bytes at `offset`, which is not before the first one; valid until the next call.
    ByteView Read(std::uint64_t offset, std::uint64_t count) {
        const std::uint64_t at = offset - offset_;
        if (at + count <= page_.size())
            return ByteView(page_).subspan(static_cast<std::size_t>(at),
                                           static_cast<std::size_t>(count));
        // The page came back short, maybe for one bad place far below: each row speaks for itself.
        row_ = document_.ReadBytes(offset, count);
        return row_;
    }

private:
    const IReadOnlyDocument& document_;
    std::uint64_t offset_;
    Bytes page_;
    Bytes row_;
};

/// One byte's two boxes in a row.
struct ByteBoxes {
    RectDip hex;
    RectDip text;
};

class FrameBuilder {
public:
    explicit FrameBuilder(const HexViewState& state)
        : state_(state), size_(DocumentSize(state)), digits_(OffsetDigits(size_)),
          hexStart_(HexStart(state)), textStart_(TextStart(state)) {}

    Frame Build() {
        SetClips();
        if (HasOpenDocument(state_)) AddRows();
        return std::move(frame_);
    }

private:
    void SetClips();
    void AddRows();
    void AddRow(std::uint64_t row, float top, ByteView bytes, RowDecoder& decoder);
    void AddSelection(std::uint64_t rowStart, float top, std::uint64_t byteCount);
    void AddCaret(float top);
    void AddOffset(std::uint64_t rowStart, float top);
    void AddHex(ByteView bytes, float top);
    void AddCells(RowCells cells, float top);

    float HexLeft(std::uint64_t column) const {
        return hexStart_ + static_cast<float>(column) * HexCellWidth(state_);
    }
    float TextLeft(std::uint64_t column) const {
        return textStart_ + static_cast<float>(column) * state_.textCharWidth;
    }
    RectDip RowBox(float left, float right, float top) const {
        return {.left = left, .top = top, .right = right, .bottom = top + state_.rowHeight};
    }

    const HexViewState& state_;
    std::uint64_t size_;
    std::size_t digits_;
    float hexStart_;
    float textStart_;
    Frame frame_;
};

void FrameBuilder::SetClips() {
    const float bottom = ClientHeight(state_);
    const float left = ContentLeft(state_);
    const float right = std::max(left, ContentRight(state_)); // a window narrower than the offsets
    frame_.contentClip = {.left = left, .top = 0.0F, .right = right, .bottom = bottom};
    frame_.hex.clip = frame_.contentClip;
    frame_.offsets.clip = {.left = state_.padding,
                           .top = 0.0F,
                           .right = state_.padding + state_.offsetWidth,
                           .bottom = bottom};
}

void FrameBuilder::AddRows() {
    const std::uint64_t rows = VisibleRows(state_);
    const auto extraRow = CaretExtraRow(state_);
    const std::uint64_t first = state_.topRow * kBytesPerRow;
    const std::uint64_t filled = size_ - std::min(size_, first);
    const std::uint64_t visibleRows = std::min(rows, filled / kBytesPerRow + 1);
    const std::uint64_t pageBytes = std::min(rows * kBytesPerRow, filled);
    RowReader reader(*state_.document, first, pageBytes);
    RowDecoder decoder(state_.document, state_.encoding, first, pageBytes);
    frame_.offsets.texts.reserve(static_cast<std::size_t>(visibleRows) * digits_);
    frame_.hex.texts.reserve(static_cast<std::size_t>(visibleRows * kBytesPerRow));
    frame_.cells.reserve(static_cast<std::size_t>(visibleRows));
    for (std::uint64_t i = 0; i < visibleRows; ++i) {
        const std::uint64_t done = i * kBytesPerRow;
        const std::uint64_t count = std::min(kBytesPerRow, filled - std::min(filled, done));
        const ByteView bytes = count == 0 ? ByteView() : reader.Read(first + done, count);
        if (bytes.empty() && extraRow != state_.topRow + i) return;
        const float top = state_.padding + static_cast<float>(i) * state_.rowHeight;
        AddRow(state_.topRow + i, top, bytes, decoder);
    }
}

void FrameBuilder::AddRow(std::uint64_t row, float top, ByteView bytes, RowDecoder& decoder) {
    const std::uint64_t rowStart = row * kBytesPerRow;
    AddSelection(rowStart, top, bytes.size());
    if (state_.caret / kBytesPerRow == row) AddCaret(top);
    AddOffset(rowStart, top);
    AddHex(bytes, top);
    AddCells(decoder.Decode(rowStart, bytes), top);
}

void FrameBuilder::AddSelection(std::uint64_t rowStart, float top, std::uint64_t byteCount) {
    if (!state_.hasSelection || byteCount == 0) return;
    const auto [low, high] = SelectionOf(state_);
    const std::uint64_t first = std::max(low, rowStart);
    const std::uint64_t last = std::min(high, rowStart + byteCount - 1);
    if (first > last) return;
    // One box for the run of bytes, so that no seams show between them.
    const std::uint64_t from = first - rowStart;
    const std::uint64_t to = last - rowStart + 1;
    frame_.fills.push_back({RowBox(HexLeft(from), HexLeft(to), top), ColorRole::Selection});
    frame_.fills.push_back({RowBox(TextLeft(from), TextLeft(to), top), ColorRole::Selection});
}

void FrameBuilder::AddCaret(float top) {
    const std::uint64_t column = state_.caret % kBytesPerRow;
    const float hexLeft = HexLeft(column);
    const float textLeft = TextLeft(column);
    if (state_.insertMode == InsertMode::Insert) {
        if (!state_.focused || !state_.caretBlinkOn) return;
        for (const float left : {hexLeft, textLeft})
            frame_.fills.push_back({RowBox(left, left + kInsertBarWidth, top), ColorRole::Caret});
        return;
    }
    for (const RectDip& box : {RowBox(hexLeft, hexLeft + 2.0F * state_.hexCharWidth, top),
                               RowBox(textLeft, textLeft + state_.textCharWidth, top)}) {
        // The stroke lies inside the box, so that the clip at column 0 does not halve it.
        constexpr float kInset = kOutlineWidth / 2.0F;
        frame_.fills.push_back({box, ColorRole::Selection});
        frame_.outlines.push_back({{.left = box.left + kInset,
                                    .top = box.top + kInset,
                                    .right = box.right - kInset,
                                    .bottom = box.bottom - kInset},
                                   ColorRole::Caret});
    }
}

void FrameBuilder::AddOffset(std::uint64_t rowStart, float top) {
    float left = state_.padding;
    for (const char16_t digit : FormatOffset(rowStart, digits_)) {
        const float right = left + state_.hexCharWidth;
        frame_.offsets.texts.push_back(
            {std::u16string(1, digit), RowBox(left, right, top), ColorRole::SecondaryText});
        left = right;
    }
}

void FrameBuilder::AddHex(ByteView bytes, float top) {
    for (std::size_t column = 0; column < bytes.size(); ++column) {
        const auto pair = HexPair(bytes[column]);
        const float left = HexLeft(column);
        frame_.hex.texts.push_back({std::u16string(pair.begin(), pair.end()),
                                    RowBox(left, left + 2.0F * state_.hexCharWidth, top),
                                    ColorRole::MainText});
    }
}

void FrameBuilder::AddCells(RowCells cells, float top) {
    if (cells.empty()) return;
    // Wide characters may reach over the empty cells behind them, tall marks into the rows around.
    FrameTextGroup group;
    group.clip = frame_.contentClip;
    group.clip.top = std::max(0.0F, top - state_.rowHeight);
    group.clip.bottom = top + 2.0F * state_.rowHeight;
    group.texts.reserve(cells.size());
    for (std::size_t column = 0; column < cells.size(); ++column) {
        if (cells[column].empty()) continue;
        const float left = TextLeft(column);
        const float natural = static_cast<float>(cells[column].size()) * state_.textCharWidth;
        const float width = std::max(4.0F * state_.textCharWidth, 2.0F * natural);
        group.texts.push_back({std::move(cells[column]),
                               {.left = left,
                                .top = top,
                                .right = left + width,
                                .bottom = top + 3.0F * state_.rowHeight},
                               ColorRole::MainText});
    }
    frame_.cells.push_back(std::move(group));
}

} // namespace

Frame BuildFrame(const HexViewState& state) {
    return FrameBuilder(state).Build();
}

} // namespace kvx
