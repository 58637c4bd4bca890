// Lays one of the shipped sample patterns over bytes and answers by member name.
#pragma once

#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

namespace kvx {

inline std::filesystem::path SourceRoot() {
    return std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
}

inline std::string ReadText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A sample over the bytes of `content` from `caret` on. Members of embedded structs are named
/// "parent.member".
class Sample {
public:
    Sample(const std::string& name, std::string_view content, std::size_t caret = 0,
           ByteOrder byteOrder = ByteOrder::Little) {
        const std::string text = ReadText(SourceRoot() / "patterns" / (name + ".kvpat"));
        const Outcome<SharedPattern> load = LoadText(text);
        EXPECT_TRUE(load) << name << ": " << Utf16ToUtf8(load.error);
        EXPECT_LE(caret, content.size()) << name;
        if (!load || caret > content.size()) return;
        StructEvalRequest request;
        request.pattern = *load.value;
        const ByteView bytes = AsBytes(content.substr(caret, 4096));
        request.bytes.assign(bytes.begin(), bytes.end());
        request.format = {ByteArrayStyle::Ascii, byteOrder, NumberBase::Decimal};
        shown_ = EvaluateStruct(request);
        request.format = {ByteArrayStyle::Hex, byteOrder, NumberBase::Hex};
        raw_ = EvaluateStruct(request);
        size_ = request.pattern->Entry()->size;
    }

    /// Size of the struct in bytes.
    std::uint64_t Size() const { return size_; }

    /// Number in decimal, or text in quotes.
    std::string operator[](std::string_view path) const { return ValueOf(shown_, path); }

    /// Number with "0x", or bytes.
    std::string Hex(std::string_view path) const { return ValueOf(raw_, path); }

private:
    static std::string ValueOf(const std::vector<StructViewRow>& rows, std::string_view path) {
        std::string parent;
        for (const StructViewRow& row : rows) {
            const std::string name = Utf16ToUtf8(row.Name());
            const bool isNested = name.starts_with(' ');
            if (!isNested) parent = name;
            if ((isNested ? parent + "." + name.substr(2) : name) == path)
                return Utf16ToUtf8(row.Value());
        }
        return "(no member " + std::string(path) + ")";
    }

    std::vector<StructViewRow> shown_;
    std::vector<StructViewRow> raw_;
    std::uint64_t size_ = 0;
};

} // namespace kvx
