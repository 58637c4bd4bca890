#include "pattern/entry.h"

#include "pattern/names.h"

namespace kvx {

Outcome<std::size_t> ChooseEntry(const ParseState& state) {
    using Result = Outcome<std::size_t>;
    if (!state.entryName) {
        if (state.structs.size() > 1)
            return Result::Failure(u"@entry is required when multiple structs are defined.");
        return Result::Success(0);
    }
    const std::optional<std::size_t> index =
        state.texts->typeNames.FindStruct(NormalizeName(*state.entryName));
    return index ? Result::Success(*index)
                 : Result::Failure(u"@entry refers to an undefined struct.");
}

} // namespace kvx
