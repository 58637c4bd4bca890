// The names of types in one pattern file, each kept once with all that it stands for.
#pragma once

#include "pattern/built_in_types.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kvx {

struct TypeName;

/// A type as a declaration names it: the name and the number of `*` around it. A null `name` stands
/// for a cycle of aliases.
struct TypeReference {
    TypeName* name = nullptr;
    std::uint32_t pointerDepth = 0;
};

/// A normalised name. Struct names and aliases are kept apart, so that one word may be both; a
/// built-in name goes before an alias, an alias before a struct.
struct TypeName {
    std::u16string text;
    const BuiltInType* builtIn = nullptr;
    bool isSigned = false;                  ///< as the name tells; counts for built-in types only
    std::optional<std::size_t> structIndex; ///< of the struct with that tag
    std::optional<TypeReference> alias;     ///< what a typedef made it stand for
};

/// Owns the names; they stay where they are until the table goes.
class TypeNames {
public:
    TypeNames() = default;
    TypeNames(const TypeNames&) = delete;
    TypeNames& operator=(const TypeNames&) = delete;

    /// The entry of a normalised name, made when it is new.
    TypeName& Enter(std::u16string_view normalized);

    /// The struct that `name` means as a tag, alone or after "struct "; empty when there is none.
    std::optional<std::size_t> FindStruct(const TypeName& name) const;

    /// The same for a normalised text.
    std::optional<std::size_t> FindStruct(std::u16string_view normalized) const;

    /// An entry that no lookup finds: the name of a struct without a tag.
    TypeName& EnterUnnamedStruct(std::size_t structIndex);

private:
    std::deque<TypeName> names_;
    std::unordered_map<std::u16string_view, TypeName*> byText_; ///< keys point into names_
};

/// Where `start` leads through its aliases: to a pointer, a type that is not an alias, or a cycle.
/// Aliases passed on the way are shortened to that end, so that long chains are walked only once.
TypeReference FollowAliases(TypeReference start);

} // namespace kvx
