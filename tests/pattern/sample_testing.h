// Lays the shipped sample patterns over bytes.
#pragma once

#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
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
           ByteOrder byteOrder = ByteOrder::Little)
        : name_(name) {
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
    std::size_t Size() const { return static_cast<std::size_t>(size_); }

    /// Number in decimal, or text in quotes.
    std::string operator[](std::string_view path) const { return ValueOf(shown_, path); }

    std::size_t Number(std::string_view path) const {
        return static_cast<std::size_t>(std::stoull((*this)[path]));
    }

    /// Compares with "member value, member value, ...". A value is text in quotes, a number in
    /// decimal or with "0x", or bytes. The member "sizeof" is the whole struct.
    void Expect(const std::string& members) const {
        std::string actual;
        std::istringstream stream(members);
        for (std::string path, value;
             stream >> path && std::getline(stream >> std::ws, value, ',');) {
            const bool isShown =
                value.front() == '"' || value.find_first_not_of("0123456789") == std::string::npos;
            actual += (actual.empty() ? "" : ", ") + path + " ";
            actual +=
                path == "sizeof" ? std::to_string(size_) : ValueOf(isShown ? shown_ : raw_, path);
        }
        EXPECT_EQ(actual, members) << name_;
    }

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
        return "(no member)";
    }

    std::string name_;
    std::vector<StructViewRow> shown_;
    std::vector<StructViewRow> raw_;
    std::uint64_t size_ = 0;
};

} // namespace kvx
