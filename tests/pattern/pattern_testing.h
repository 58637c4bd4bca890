// Small helpers of the pattern tests: text in, whole result or whole message out, all in UTF-8 so
// that a failing row reads well.
#pragma once

#include "pattern/evaluation.h"
#include "pattern/loader.h"
#include "platform/text.h"

#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>

namespace kvx {

inline ByteView AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline Bytes MakeBytes(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::uint8_t>(value));
    return bytes;
}

inline Outcome<SharedPattern> LoadText(std::string_view text) {
    return LoadStructPattern(AsBytes(text));
}

/// The message of a load that fails; "(loaded)" when it does not.
inline std::string ErrorOf(std::string_view text) {
    const Outcome<SharedPattern> load = LoadText(text);
    return load ? "(loaded)" : Utf16ToUtf8(load.error);
}

/// The layout of one struct: its size and alignment, then "offset name type size" a row. The row
/// tells the element size where it is not the total, and what kind of thing the member is.
inline std::string Describe(const ResolvedStructInfo& layout) {
    static constexpr std::string_view kKinds[] = {"integer", "float", "double", "struct"};
    std::ostringstream text;
    text << Utf16ToUtf8(layout.name) << " size " << layout.size << " align " << layout.alignment;
    for (const StructMemberLayout& row : layout.members) {
        text << '\n' << row.offset << ' ' << Utf16ToUtf8(row.name) << " : ";
        text << Utf16ToUtf8(row.typeName) << ' ' << row.elementSize << '*' << row.count << '=';
        text << row.TotalSize();
        if (row.isPadding) continue;
        text << ' ' << kKinds[static_cast<std::size_t>(row.kind)];
        if (row.isSigned) text << " signed";
        if (row.isPointer) text << " pointer";
        if (row.isFlexibleArray) text << " flexible";
        if (row.structIndex != kNoStruct) text << " -> #" << row.structIndex;
    }
    return text.str();
}

/// The layout of the entry struct of a pattern that must load, or the message.
inline std::string LayoutOf(std::string_view text) {
    const Outcome<SharedPattern> load = LoadText(text);
    return load ? Describe(*(*load.value)->Entry()) : Utf16ToUtf8(load.error);
}

/// Rows as text, columns separated by " | ".
inline std::string Describe(const std::vector<StructViewRow>& rows) {
    std::string text;
    for (const StructViewRow& row : rows) {
        if (!text.empty()) text += '\n';
        text += Utf16ToUtf8(row.Name());
        for (const std::u16string_view column : {row.Size(), row.Offset(), row.Type(), row.Value()})
            text += " | " + Utf16ToUtf8(column);
    }
    return text;
}

} // namespace kvx
