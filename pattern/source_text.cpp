#include "pattern/source_text.h"

#include "platform/number_text.h"
#include "platform/text.h"

namespace kvx {
namespace {

/// Line `line` (1-based) up to its first CR or LF; empty when there is no such line.
std::u16string_view LineOf(std::u16string_view source, std::uint32_t line) {
    for (std::uint32_t current = 1; current < line; ++current) {
        const std::size_t end = source.find(u'\n');
        if (end == std::u16string_view::npos) return {};
        source.remove_prefix(end + 1);
    }
    // Two searches for one character each are faster than one for either, in a line of megabytes.
    source = source.substr(0, source.find(u'\n'));
    return source.substr(0, source.find(u'\r'));
}

} // namespace

std::optional<std::u16string> DecodePatternSource(ByteView bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return StrictUtf8ToUtf16(text);
}

std::u16string FormatPositionedMessage(std::u16string_view source, SourcePosition position,
                                       std::u16string_view message) {
    std::u16string text = u"Line ";
    AppendDecimal(text, position.line);
    text += u", Col ";
    AppendDecimal(text, position.column);
    text += u": ";
    text += message;
    const std::u16string_view line = LineOf(source, position.line);
    if (line.empty()) return text;
    text.reserve(text.size() + line.size() + position.column + 4); // a line may be all of the file
    text += u"\r\n";
    text += line;
    text += u"\r\n";
    text.append(position.column - 1, u' ');
    text += u'^';
    return text;
}

} // namespace kvx
