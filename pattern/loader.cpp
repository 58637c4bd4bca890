#include "pattern/loader.h"

#include "pattern/entry.h"
#include "pattern/layout.h"
#include "pattern/parser.h"
#include "pattern/source_text.h"

#include <limits>
#include <new>
#include <span>

namespace kvx {
namespace {

using Result = Outcome<SharedPattern>;

/// Larger files are no text to the system's decoder, whose lengths are of this type.
constexpr std::uint64_t kLargestText = std::numeric_limits<std::int32_t>::max();

Result FailToOpen() {
    return Result::Failure(u"Failed to open definition file.");
}

Result FailToDecode() {
    return Result::Failure(u"Definition file must be UTF-8.");
}

/// Fills `target` from the start of the file; false when it cannot be read that far.
bool ReadWhole(const ReadableFile& file, std::span<std::uint8_t> target) {
    std::uint64_t done = 0;
    while (!target.empty()) {
        ErrorCode error = 0;
        const std::optional<std::size_t> count = file.ReadAt(done, target, error);
        if (!count || *count == 0) return false;
        done += *count;
        target = target.subspan(*count);
    }
    return true;
}

bool Parse(ParseState& state) {
    bool parsed = true;
    while (parsed && !state.tokens.AtEnd())
        parsed = ParseTopLevel(state);
    // What is no token at all is told first, even when the parser has stopped before it.
    while (!state.tokens.AtEnd())
        state.tokens.Advance();
    if (!state.tokens.Error().empty()) return Fail(state, state.tokens.Error());
    return parsed;
}

/// Lays out what `state` has parsed and chooses the entry.
Result Complete(ParseState& state) {
    if (state.structs.empty()) return Result::Failure(u"No struct definition was found.");
    Outcome<std::vector<ResolvedStructInfo>> structs = ResolveStructs(state);
    if (!structs) return Result::Failure(std::move(structs.error));
    Outcome<std::size_t> entry = ChooseEntry(state);
    if (!entry) return Result::Failure(std::move(entry.error));

    auto pattern = std::make_shared<StructPatternFile>();
    pattern->settings = state.settings;
    pattern->structs = std::move(*structs.value);
    pattern->entryIndex = static_cast<std::uint32_t>(*entry.value);
    pattern->entryName = pattern->structs[*entry.value].name;
    pattern->entryIsImplicit = !state.entryName;
    pattern->texts = state.texts;
    return Result::Success(std::move(pattern));
}

} // namespace

Result LoadStructPatternFile(const std::u16string& path, FileLayer& files) {
    ErrorCode error = 0;
    const std::unique_ptr<ReadableFile> file = files.OpenForReading(path, error);
    const std::optional<std::uint64_t> size = file ? file->Size() : std::nullopt;
    if (!size) return FailToOpen();
    if (*size > kLargestText) return FailToDecode();
    try {
        Bytes bytes(static_cast<std::size_t>(*size));
        if (!ReadWhole(*file, bytes)) return FailToOpen();
        return LoadStructPattern(bytes);
    } catch (const std::bad_alloc&) { // gigabytes of something that is no pattern file
        return FailToOpen();
    }
}

Result LoadStructPattern(ByteView bytes) {
    std::optional<std::u16string> source = DecodePatternSource(bytes);
    if (!source) return FailToDecode();
    ParseState state(std::move(*source));
    return Parse(state) ? Complete(state) : Result::Failure(std::move(state.error));
}

} // namespace kvx
