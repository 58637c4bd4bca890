#include "pattern/type_resolution.h"

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

ResolvedType BuiltIn(const TypeName& name, const PatternSettings& settings) {
    ResolvedType type;
    type.size = name.builtIn->SizeUnder(settings);
    type.alignment = std::max<std::uint64_t>(type.size, 1);
    type.kind = name.builtIn->kind;
    type.isSigned = name.isSigned;
    return type;
}

Result StructType(const ParseState& state, std::size_t index, const TypeName& name,
                  const StructResolver& resolver) {
    const std::optional<StructExtent> extent = resolver(index);
    if (!extent) {
        return Result::Failure(!state.error.empty()
                                   ? state.error
                                   : u"Failed to resolve struct size for type: " + name.text);
    }
    ResolvedType type;
    type.size = extent->size;
    type.alignment = std::max<std::uint64_t>(extent->alignment, 1);
    type.kind = MemberKind::Struct;
    type.structIndex = static_cast<std::uint32_t>(index);
    return Result::Success(type);
}

} // namespace

Result ResolveType(ParseState& state, const MemberDecl& declaration,
                   const StructResolver& resolver) {
    const TypeReference end = FollowAliases(declaration.Type());
    if (end.pointerDepth > 0) return Result::Success(PointerType(state.settings));
    if (end.name == nullptr) return Result::Failure(u"Unknown type: " + declaration.typeName->text);
    if (end.name->builtIn != nullptr) return Result::Success(BuiltIn(*end.name, state.settings));
    const std::optional<std::size_t> index = state.texts->typeNames.FindStruct(*end.name);
    if (index) return StructType(state, *index, *end.name, resolver);
    return Result::Failure(u"Unknown type: " + end.name->text);
}

} // namespace kvx
