// What a pane's list shows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvx {

/// Texts by row and column. The views live until the content changes.
class IListContent {
public:
    virtual ~IListContent() = default;

    virtual std::size_t ColumnCount() const = 0;
    virtual std::u16string_view Caption(std::size_t column) const = 0;

    virtual std::size_t RowCount() const = 0;
    virtual std::u16string_view Text(std::size_t row, std::size_t column) const = 0;

    /// Second text of a cell, at its right end in the dimmed colour, only drawn where both fit;
    /// empty for none.
    virtual std::u16string_view SideText(std::size_t row, std::size_t column) const = 0;
    virtual std::u16string_view SideCaption(std::size_t column) const = 0;
};

/// The list for the clipboard: the captions, then each row behind a CR LF, columns separated by
/// TAB. Side texts are left out, and so are NULs, which would end the text there.
std::u16string ListCopyText(const IListContent& content);

} // namespace kvx
