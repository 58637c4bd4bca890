#include "panes/inspector_model.h"

namespace kvx {

void InspectorModel::SetTexts(const TextLookup& texts) {
    captions_ = {texts("inspector.data.column.name"), texts("inspector.data.column.value")};
    for (std::size_t row = 0; row < names_.size(); ++row)
        names_[row] = texts(kInspectorRowKeys[row]);
}

std::u16string_view InspectorModel::Text(std::size_t row, std::size_t column) const {
    return column == 0 ? names_[row] : rows_[row].value;
}

} // namespace kvx
