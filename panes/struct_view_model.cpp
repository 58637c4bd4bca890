#include "panes/struct_view_model.h"

#include "panes/error_text.h"
#include "pattern/loader.h"
#include "pattern/summary.h"
#include "platform/system.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kvx {
namespace {

constexpr std::array<std::string_view, kStructColumns> kColumnKeys = {
    "structview.column.name", "structview.column.size", "structview.column.offset",
    "structview.column.type", "structview.column.value"};

std::string_view ColumnKey(StructColumn column) {
    return kColumnKeys[static_cast<std::size_t>(column)];
}

ValueFormat ToValueFormat(const StructViewFormat& format) {
    return {.byteArrays = static_cast<ByteArrayStyle>(format.byteArrayFormat),
            .byteOrder = static_cast<ByteOrder>(format.endian),
            .numberBase = static_cast<NumberBase>(format.numericBase)};
}

/// Larger structs are read member by member: moving the caret must not wait for bytes that no row
/// shows.
constexpr std::uint64_t kReadWholeBytes = 64 * 1024;

/// Bytes of `entry` with what a flexible array shows beyond it.
std::uint64_t BytesLaidOver(const ResolvedStructInfo& entry) {
    const bool flexible = std::ranges::any_of(
        entry.members, [](const StructMemberLayout& member) { return member.isFlexibleArray; });
    const std::uint64_t extra = flexible ? kFlexibleArrayBytes : 0;
    return entry.size + std::min(extra, std::numeric_limits<std::uint64_t>::max() - entry.size);
}

/// What the rows show of the first `size` bytes from `start` on.
std::vector<std::optional<Bytes>> ReadMembers(const IReadOnlyDocument& document,
                                              std::uint64_t start, std::uint64_t size,
                                              const StructPatternFile& pattern) {
    const std::uint64_t left = document.GetSize() - std::min(document.GetSize(), start);
    const std::uint64_t available = std::min(size, left);
    std::vector<std::optional<Bytes>> read;
    for (const ShownMember& member : ShownMembers(pattern)) {
        read.emplace_back();
        if (member.offset > available || member.size > available - member.offset) continue;
        const std::uint64_t shown = std::min(member.shown, available - member.offset);
        Bytes bytes = document.ReadBytes(start + member.offset, shown);
        if (bytes.size() >= std::min(member.size, shown)) read.back() = std::move(bytes);
    }
    return read;
}

} // namespace

void StructViewModel::SetTexts(const TextLookup& texts) {
    title_ = texts("structview.title");
    definitionCaption_ = texts("structview.header.definition");
    emptyMessage_ = texts("structview.empty.message");
    errorPrefix_ = texts("structview.error.prefix");
    unavailableText_ = texts("inspector.data.value.unavailable");
    sizeCaption_ = texts(ColumnKey(StructColumn::Size));
    std::ranges::transform(kStructViewOrder, captions_.begin(),
                           [&](StructColumn column) { return texts(ColumnKey(column)); });
}

bool StructViewModel::SetFormat(const StructViewFormat& format) {
    return std::exchange(format_, format) != format;
}

bool StructViewModel::Load(const std::u16string& path, FileLayer& files) {
    Outcome<SharedPattern> load = LoadStructPatternFile(path, files);
    error_ = std::move(load.error);
    if (!load) {
        infoShown_ = false; // the error takes its place
        return false;
    }
    pattern_ = std::move(*load.value);
    path_ = path;
    lastFolder_ = ParentFolder(path);
    return true;
}

bool StructViewModel::Reload(FileLayer& files) {
    // Not by reference: Load sets the path.
    const std::u16string path = path_;
    return !path.empty() && Load(path, files);
}

void StructViewModel::Close() {
    pattern_.reset();
    path_.clear();
    error_.clear();
    rows_.clear();
    rowsAwaited_ = false;
    infoShown_ = false;
}

std::u16string StructViewModel::StartFolder(const std::u16string& programFolder) const {
    return lastFolder_.empty() ? JoinPath(programFolder, u"patterns") : lastFolder_;
}

std::optional<StructEvalRequest> StructViewModel::MakeRequest(const IReadOnlyDocument& document,
                                                              std::uint64_t caretOffset) {
    const ResolvedStructInfo* entry = pattern_ ? pattern_->Entry() : nullptr;
    rowsAwaited_ = entry != nullptr && document.IsOpen();
    if (!rowsAwaited_) {
        rows_.clear();
        return std::nullopt;
    }
    StructEvalRequest request;
    request.baseOffset = caretOffset;
    request.format = ToValueFormat(format_);
    request.pattern = pattern_;
    request.unavailableText = unavailableText_;
    const std::uint64_t size = BytesLaidOver(*entry);
    if (size <= kReadWholeBytes)
        request.bytes = document.ReadBytes(caretOffset, size);
    else
        request.memberBytes = ReadMembers(document, caretOffset, size, *pattern_);
    return request;
}

void StructViewModel::SetRows(std::vector<StructViewRow> rows) {
    rows_ = std::move(rows);
    rowsAwaited_ = false;
}

StructTextArea StructViewModel::TextArea() const {
    if (infoShown_) return StructTextArea::Info;
    return error_.empty() ? StructTextArea::None : StructTextArea::Error;
}

std::u16string StructViewModel::InfoText() const {
    return pattern_ ? FormatPatternSummary(*pattern_) : std::u16string();
}

std::u16string StructViewModel::ErrorText() const {
    return error_.empty() ? std::u16string() : errorPrefix_ + u"\r\n" + WithCaretInPlace(error_);
}

std::u16string StructViewModel::DefinitionLine() const {
    if (path_.empty()) return definitionCaption_;
    return definitionCaption_ + u' ' + FileNameOf(path_);
}

std::u16string_view StructViewModel::EmptyMessage() const {
    return rows_.empty() && !rowsAwaited_ ? emptyMessage_ : std::u16string_view();
}

std::u16string_view StructViewModel::Text(std::size_t row, std::size_t column) const {
    return rows_[row].Text(kStructViewOrder[column]);
}

std::u16string_view StructViewModel::SideText(std::size_t row, std::size_t column) const {
    return column == kStructNameColumn ? rows_[row].Size() : std::u16string_view();
}

std::u16string_view StructViewModel::SideCaption(std::size_t column) const {
    return column == kStructNameColumn ? sizeCaption_ : std::u16string_view();
}

} // namespace kvx
