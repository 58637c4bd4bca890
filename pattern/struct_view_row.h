// What the struct view shows of one member.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kvx {

/// Columns of a row, in order.
enum class StructColumn : std::uint8_t { Name, Size, Offset, Type, Value };
inline constexpr std::size_t kStructColumns = 5;

/// Five texts in one string: a row costs one allocation. Views into a row live as long as it does.
class StructViewRow {
public:
    std::u16string_view Text(StructColumn column) const;

    std::u16string_view Name() const { return Text(StructColumn::Name); }
    std::u16string_view Size() const { return Text(StructColumn::Size); }
    std::u16string_view Offset() const { return Text(StructColumn::Offset); }
    std::u16string_view Type() const { return Text(StructColumn::Type); }
    std::u16string_view Value() const { return Text(StructColumn::Value); }

    /// The text to which the columns are appended one after another while the row is made.
    std::u16string& Writing() { return text_; }

    /// Ends a column: what was written since the one before it is its text.
    void EndColumn(StructColumn column) { ends_[static_cast<std::size_t>(column)] = text_.size(); }

    /// Empties the row for another one to be made; keeps its memory.
    void Clear() { text_.clear(); }

    friend bool operator==(const StructViewRow&, const StructViewRow&) = default;

private:
    std::u16string text_;
    std::array<std::size_t, kStructColumns> ends_{}; ///< of each column in text_
};

inline std::u16string_view StructViewRow::Text(StructColumn column) const {
    const auto index = static_cast<std::size_t>(column);
    const std::size_t start = index == 0 ? 0 : ends_[index - 1];
    return std::u16string_view(text_).substr(start, ends_[index] - start);
}

} // namespace kvx
