// The struct view's state on the main thread: the loaded pattern file, the choices for values, the
// last rows, and what the window says about them.
#pragma once

#include "document/read_only_document.h"
#include "panes/latest_request_worker.h"
#include "panes/list_content.h"
#include "panes/list_model.h"
#include "pattern/evaluation.h"
#include "platform/file_layer.h"
#include "settings/app_settings.h"
#include "settings/text_lookup.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvx {

using StructViewWorker = LatestRequestWorker<StructEvalRequest, std::vector<StructViewRow>>;
using PostedStructRows = StructViewWorker::Posted;

/// The columns in reading order: where a member lies, what it is called, what it is, what it holds.
/// The size stands beside the name, at the right end of the widest column that has room for it.
inline constexpr std::array kStructViewOrder = {StructColumn::Offset, StructColumn::Name,
                                                StructColumn::Type, StructColumn::Value};
inline constexpr std::size_t kStructNameColumn = 1;
inline constexpr std::array<ListColumn, kStructViewOrder.size()> kStructViewColumns = {
    {{72, 56}, {220, 80}, {72, 56}, {280, 120}}};

/// A flexible array shows at most so many bytes.
inline constexpr std::uint64_t kFlexibleArrayBytes = 256;

/// The text area between header and captions.
enum class StructTextArea : std::uint8_t { None, Info, Error };

class StructViewModel : public IListContent {
public:
    /// Looks up all texts, at start and when the language has changed.
    void SetTexts(const TextLookup& texts);

    /// False when that is the format already.
    bool SetFormat(const StructViewFormat& format);
    const StructViewFormat& Format() const { return format_; }

    /// Loads the pattern file at `path`. On failure everything stays but the error that is shown.
    bool Load(const std::u16string& path, FileLayer& files = SystemFileLayer());
    /// Loads the stored path anew; false as well when there is none.
    bool Reload(FileLayer& files = SystemFileLayer());
    /// Drops pattern, path, rows and error.
    void Close();
    bool HasPattern() const { return pattern_ != nullptr; }
    const std::u16string& Path() const { return path_; }
    /// Where the open dialog starts: the last file's folder, before that "patterns" beside the
    /// program.
    std::u16string StartFolder(const std::u16string& programFolder) const;

    /// What the worker is to evaluate, read at the caret. Empty when there is nothing to show: the
    /// rows are cleared then, and a result on its way is outdated (DropPending).
    std::optional<StructEvalRequest> MakeRequest(const IReadOnlyDocument& document,
                                                 std::uint64_t caretOffset);
    void SetRows(std::vector<StructViewRow> rows);

    /// Nothing without a pattern.
    void ToggleInfo() { infoShown_ = pattern_ && !infoShown_; }
    StructTextArea TextArea() const;
    std::u16string InfoText() const; ///< for a text box: lines end in CR LF
    /// The prefix, and below it the message with its line and caret: for a fixed-pitch font.
    std::u16string ErrorText() const;

    const std::u16string& Title() const { return title_; }
    std::u16string DefinitionLine() const; ///< first header line: caption and file name
    const std::u16string& PathLine() const { return path_; } ///< second header line
    /// The message in place of rows; empty when there are rows or they are on their way.
    std::u16string_view EmptyMessage() const;

    std::size_t ColumnCount() const override { return kStructViewOrder.size(); }
    std::u16string_view Caption(std::size_t column) const override { return captions_[column]; }
    std::size_t RowCount() const override { return rows_.size(); }
    std::u16string_view Text(std::size_t row, std::size_t column) const override;
    std::u16string_view SideText(std::size_t row, std::size_t column) const override;
    std::u16string_view SideCaption(std::size_t column) const override;

private:
    SharedPattern pattern_;
    std::u16string path_;
    std::u16string lastFolder_;
    StructViewFormat format_;
    std::vector<StructViewRow> rows_;
    bool rowsAwaited_ = false; ///< a request is on its way
    bool infoShown_ = false;
    std::u16string error_; ///< of the last load, without the prefix; empty when it went well

    std::u16string title_;
    std::u16string definitionCaption_;
    std::u16string emptyMessage_;
    std::u16string errorPrefix_;
    std::u16string unavailableText_;
    std::u16string sizeCaption_;
    std::array<std::u16string, kStructViewOrder.size()> captions_;
};

} // namespace kvx
