#include "pattern/type_names.h"

#include "pattern/names.h"

#include <vector>

namespace kvx {

TypeName& TypeNames::Enter(std::u16string_view normalized) {
    if (const auto found = byText_.find(normalized); found != byText_.end()) return *found->second;
    TypeName& name = names_.emplace_back();
    name.text = normalized;
    name.builtIn = FindBuiltInType(normalized);
    name.isSigned = IsSignedTypeName(normalized);
    byText_.emplace(name.text, &name);
    return name;
}

std::optional<std::size_t> TypeNames::FindStruct(const TypeName& name) const {
    return name.structIndex ? name.structIndex : FindStruct(name.text);
}

std::optional<std::size_t> TypeNames::FindStruct(std::u16string_view normalized) const {
    constexpr std::u16string_view kKeyword = u"struct ";
    if (normalized.starts_with(kKeyword)) normalized.remove_prefix(kKeyword.size());
    const auto found = byText_.find(normalized);
    return found == byText_.end() ? std::nullopt : found->second->structIndex;
}

TypeName& TypeNames::EnterUnnamedStruct(std::size_t structIndex) {
    TypeName& name = names_.emplace_back();
    name.text = u"struct";
    name.structIndex = structIndex;
    return name;
}

TypeReference FollowAliases(TypeReference start) {
    std::vector<TypeName*> passed;
    TypeReference end = start;
    while (end.pointerDepth == 0 && end.name != nullptr && end.name->builtIn == nullptr &&
           end.name->alias.has_value()) {
        passed.push_back(end.name);
        end = *end.name->alias;
        passed.back()->alias = TypeReference{}; // met again before the end is known: a cycle
    }
    for (TypeName* name : passed)
        name->alias = end;
    return end;
}

} // namespace kvx
