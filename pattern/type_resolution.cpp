#include "pattern/type_resolution.h"

#include "pattern/names.h"

#include <algorithm>

namespace kvx {
namespace {

using Result = Outcome<ResolvedType>;

ResolvedType PointerType(const PatternSettings& settings) {
    ResolvedType type;
    type.size = settings.pointerSize;
    type.alignment = std::max<std::uint64_t>(type.size, 1);
    type.isPointer = true;
    return type;
}

ResolvedType BuiltIn(const BuiltInType& builtIn, const PatternSettings& settings) {
    ResolvedType type;
    type.size = builtIn.SizeUnder(settings);
    type.alignment = std::max<std::uint64_t>(type.size, 1);
    type.kind = builtIn.kind;
    type.isSigned = IsSignedTypeName(builtIn.name);
    return type;
}

Result StructType(const ParseState& state, const TypeName& name, const StructResolver& resolver) {
    const std::optional<StructExtent> extent = resolver(*name.structIndex);
    if (!extent) {
        return Result::Failure(!state.error.empty()
                                   ? state.error
                                   : u"Failed to resolve struct size for type: " + name.text);
    }
    ResolvedType type;
    type.size = extent->size;
    type.alignment = std::max<std::uint64_t>(extent->alignment, 1);
    type.kind = MemberKind::Struct;
    type.structIndex = *name.structIndex;
    type.structName = ShownStructName(state.structs[type.structIndex]);
    return Result::Success(type);
}

} // namespace

std::u16string_view ShownStructName(const StructDefinition& definition) {
    return definition.name.empty() ? u"<anonymous>" : definition.name;
}

Result ResolveType(ParseState& state, const MemberDecl& declaration,
                   const StructResolver& resolver) {
    const TypeReference end = FollowAliases(declaration.type);
    if (end.pointerDepth > 0) return Result::Success(PointerType(state.settings));
    if (end.name == nullptr)
        return Result::Failure(u"Unknown type: " + declaration.type.name->text);
    if (end.name->builtIn != nullptr)
        return Result::Success(BuiltIn(*end.name->builtIn, state.settings));
    if (end.name->structIndex) return StructType(state, *end.name, resolver);
    return Result::Failure(u"Unknown type: " + end.name->text);
}

} // namespace kvx
