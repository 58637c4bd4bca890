#include "pattern/built_in_types.h"

#include <algorithm>
#include <array>

namespace kvx {
namespace {

using Settings = PatternSettings;
using enum MemberKind;

// `unsigned`, `signed` and `short int` alone are not here on purpose: one spelling for each type.
constexpr std::array kTypes = {
    BuiltInType{u"char", Integer, 1, nullptr},
    BuiltInType{u"signed char", Integer, 1, nullptr},
    BuiltInType{u"unsigned char", Integer, 1, nullptr},
    BuiltInType{u"int8_t", Integer, 1, nullptr},
    BuiltInType{u"uint8_t", Integer, 1, nullptr},
    BuiltInType{u"short", Integer, 0, &Settings::sizeofShort},
    BuiltInType{u"signed short", Integer, 0, &Settings::sizeofShort},
    BuiltInType{u"unsigned short", Integer, 0, &Settings::sizeofShort},
    BuiltInType{u"int16_t", Integer, 2, nullptr},
    BuiltInType{u"uint16_t", Integer, 2, nullptr},
    BuiltInType{u"int", Integer, 0, &Settings::sizeofInt},
    BuiltInType{u"signed int", Integer, 0, &Settings::sizeofInt},
    BuiltInType{u"unsigned int", Integer, 0, &Settings::sizeofInt},
    BuiltInType{u"int32_t", Integer, 4, nullptr},
    BuiltInType{u"uint32_t", Integer, 4, nullptr},
    BuiltInType{u"long", Integer, 0, &Settings::sizeofLong},
    BuiltInType{u"signed long", Integer, 0, &Settings::sizeofLong},
    BuiltInType{u"unsigned long", Integer, 0, &Settings::sizeofLong},
    BuiltInType{u"long long", Integer, 0, &Settings::sizeofLongLong},
    BuiltInType{u"signed long long", Integer, 0, &Settings::sizeofLongLong},
    BuiltInType{u"unsigned long long", Integer, 0, &Settings::sizeofLongLong},
    BuiltInType{u"int64_t", Integer, 8, nullptr},
    BuiltInType{u"uint64_t", Integer, 8, nullptr},
    BuiltInType{u"float", Float, 0, &Settings::sizeofFloat},
    BuiltInType{u"double", Double, 0, &Settings::sizeofDouble},
    BuiltInType{u"void", Integer, 0, nullptr},
};

} // namespace

const BuiltInType* FindBuiltInType(std::u16string_view typeName) {
    const auto found = std::ranges::find(kTypes, typeName, &BuiltInType::name);
    return found == kTypes.end() ? nullptr : &*found;
}

} // namespace kvx
