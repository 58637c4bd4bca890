// Small helpers of the pattern tests: text in, whole result or whole message out, all in UTF-8 so
// that a failing row reads well.
#pragma once

#include "pattern/evaluation.h"
#include "pattern/loader.h"
#include "platform/text.h"

#include <sstream>
#include <string>
#include <string_view>

namespace kvx {

inline ByteView AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// Bytes in hexadecimal, separated by white space.
inline Bytes HexBytes(const std::string& text) {
    Bytes bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(word, nullptr, 16)));
    return bytes;
}

inline Outcome<SharedPattern> LoadText(std::string_view text) {
    return LoadStructPattern(AsBytes(text));
}

/// `count` times `text`, in which `#` stands for the number of the repetition and `$` for the next.
inline std::string Repeat(int count, std::string_view text) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        for (const char character : text) {
            if (character == '#' || character == '$')
                result += std::to_string(character == '#' ? i : i + 1);
            else
                result += character;
        }
    }
    return result;
}

/// The message of a load that fails; "(loaded)" when it does not.
inline std::string ErrorOf(std::string_view text) {
    const Outcome<SharedPattern> load = LoadText(text);
    return load ? "(loaded)" : Utf16ToUtf8(load.error);
}

/// The layout of one struct: "name size/alignment:", then "offset name type=size" a row. Behind the
/// type of a declared member stands a `*` for a pointer, `[count]` for an array, `#n` for struct n.
inline std::string Describe(const ResolvedStructInfo& layout) {
    std::ostringstream text;
    text << Utf16ToUtf8(layout.name) << ' ' << layout.size << '/' << layout.alignment << ':';
    const char* separator = " ";
    for (const StructMemberLayout& row : layout.members) {
        text << separator << row.offset << ' ' << Utf16ToUtf8(row.name) << ' '
             << Utf16ToUtf8(row.typeName) << (row.isPointer ? "*" : "");
        if (row.isFlexibleArray) text << "[]";
        if (row.count != 1 && !row.isFlexibleArray) text << '[' << row.count << ']';
        if (row.structIndex != kNoStruct) text << '#' << row.structIndex;
        text << '=' << row.TotalSize();
        separator = ", ";
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
