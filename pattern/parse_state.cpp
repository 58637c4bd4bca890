#include "pattern/parse_state.h"

#include "pattern/source_text.h"

namespace kvx {

bool FailAt(ParseState& state, SourcePosition place, std::u16string_view message) {
    return Fail(state, FormatPositionedMessage(state.texts->source, place, message));
}

bool Fail(ParseState& state, std::u16string message) {
    state.error = std::move(message);
    return false;
}

} // namespace kvx
