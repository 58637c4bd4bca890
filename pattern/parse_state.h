// The working record of reading one pattern file. Made by the loader, filled by the parser, read by
// resolution and layout; used from one thread.
#pragma once

#include "pattern/lexer.h"
#include "pattern/pattern_settings.h"
#include "pattern/type_names.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvx {

/// What all later results point into. Shared by the parse state and the finished pattern file.
struct PatternTexts {
    explicit PatternTexts(std::u16string text) : source(std::move(text)) {}

    std::u16string source; ///< the decoded file
    TypeNames typeNames;
};

/// One member as declared; also the form of a typedef that names no struct.
struct MemberDecl {
    std::u16string_view name; ///< as written
    TypeName* typeName = nullptr;
    std::uint64_t count = 1; ///< elements; 1 for a plain member, 0 for a flexible array
    SourcePosition position; ///< of the declaration's first token
    std::uint32_t pointerDepth = 0;
    bool isFlexibleArray = false;

    TypeReference Type() const { return {typeName, pointerDepth}; }
};

struct StructDefinition {
    std::u16string_view name; ///< the tag as written; empty when there is none
    std::vector<MemberDecl> members;
    SourcePosition position; ///< of the keyword `struct`
};

/// What the file has told so far. `error` holds the first error; nothing is read after it.
struct ParseState {
    explicit ParseState(std::u16string source)
        : texts(std::make_shared<PatternTexts>(std::move(source))), tokens(texts->source) {}

    std::shared_ptr<PatternTexts> texts;
    PatternLexer tokens; ///< stands at the token to be read next
    PatternSettings settings;
    std::optional<std::u16string> entryName; ///< target of `@entry`, "struct X" kept as written
    std::vector<StructDefinition> structs;   ///< in source order
    std::u16string error;

    // Of the struct and the declaration being read; kept from one to the next for their memory.
    std::deque<MemberDecl> members; ///< grows without being copied, also in a struct without end
    std::u16string typeName;
};

/// Sets the state's error to `message` pointing at `place`; always false.
bool FailAt(ParseState& state, SourcePosition place, std::u16string_view message);

/// Sets the state's error to `message`; always false.
bool Fail(ParseState& state, std::u16string message);

} // namespace kvx
