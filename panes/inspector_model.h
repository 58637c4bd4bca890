// The data inspector's state on the main thread: its texts for the list.
#pragma once

#include "panes/inspector_rows.h"
#include "panes/latest_request_worker.h"
#include "panes/list_content.h"
#include "panes/list_model.h"
#include "settings/text_lookup.h"

#include <array>

namespace kvx {

using InspectorWorker = LatestRequestWorker<InspectorRequest, InspectorRows>;
using PostedInspectorRows = InspectorWorker::Posted;

/// Name and value, the largest number in full.
inline constexpr std::array<ListColumn, 2> kInspectorColumns = {{{124, 80}, {364, 120}}};

class InspectorModel : public IListContent {
public:
    /// Looks up names and captions, at start and when the language has changed.
    void SetTexts(const TextLookup& texts);

    void SetRows(InspectorRows rows) { rows_ = std::move(rows); }

    std::size_t ColumnCount() const override { return kInspectorColumns.size(); }
    std::u16string_view Caption(std::size_t column) const override { return captions_[column]; }
    std::size_t RowCount() const override { return kInspectorRows; }
    std::u16string_view Text(std::size_t row, std::size_t column) const override;
    std::u16string_view SideText(std::size_t, std::size_t) const override { return {}; }
    std::u16string_view SideCaption(std::size_t) const override { return {}; }

private:
    std::array<std::u16string, kInspectorColumns.size()> captions_;
    std::array<std::u16string, kInspectorRows> names_;
    InspectorRows rows_;
};

} // namespace kvx
