#include "panes/list_content.h"

#include <algorithm>
#include <iterator>

namespace kvx {
namespace {

void AppendCell(std::u16string& text, std::size_t column, std::u16string_view cell) {
    if (column > 0) text += u'\t';
    std::ranges::copy_if(cell, std::back_inserter(text), [](char16_t unit) { return unit != 0; });
}

} // namespace

std::u16string ListCopyText(const IListContent& content) {
    std::u16string text;
    for (std::size_t column = 0; column < content.ColumnCount(); ++column)
        AppendCell(text, column, content.Caption(column));
    for (std::size_t row = 0; row < content.RowCount(); ++row) {
        text += u"\r\n";
        for (std::size_t column = 0; column < content.ColumnCount(); ++column)
            AppendCell(text, column, content.Text(row, column));
    }
    return text;
}

} // namespace kvx
