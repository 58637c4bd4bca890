// Random structs, written as a pattern and as C: the C compiler says where everything belongs.
#include "fuzz/pattern_checks.h"
#include "tests/pattern/pattern_testing.h"
#include "tests/pattern/tool_running.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace kvx {
namespace {

constexpr int kFiles = 24;
constexpr int kStructsPerFile = 25;

/// Types of one size: that of the directive, one of `sizes`, or always the only one of them. The
/// likely sizes stand twice.
struct SizedTypes {
    std::string directive;
    std::vector<int> sizes;
    std::vector<std::string> names;
};

const SizedTypes kSizedTypes[] = {
    {"", {1}, {"char", "signed char", "unsigned char", "int8_t", "uint8_t"}},
    {"", {2}, {"int16_t", "uint16_t"}},
    {"", {4}, {"int32_t", "uint32_t"}},
    {"", {8}, {"int64_t", "uint64_t"}},
    {"@sizeof_short", {2, 2, 1, 4, 8}, {"short", "signed short", "unsigned short"}},
    {"@sizeof_int", {4, 4, 1, 2, 8}, {"int", "signed int", "unsigned int"}},
    {"@sizeof_long", {8, 8, 1, 2, 4}, {"long", "signed long", "unsigned long"}},
    {"@sizeof_long_long",
     {8, 8, 1, 2, 4, 16},
     {"long long", "signed long long", "unsigned long long"}},
    {"@sizeof_float", {4, 4, 2, 8, 16}, {"float"}},
    {"@sizeof_double", {8, 8, 4, 16}, {"double"}},
    {"@pointer_size", {8, 8, 1, 2, 4, 16}, {"void*", "Unknown **", "struct Later *"}},
};

/// C names types by size: each size of ours has one.
std::string CTypeOfSize(int size) {
    return size == 16 ? "__int128" : "int" + std::to_string(size * 8) + "_t";
}

/// A type that the file under construction knows by now.
struct KnownType {
    std::string pattern;
    std::string c;
};

class RandomFile {
public:
    RandomFile(unsigned seed, std::string prefix) : random_(seed), prefix_(std::move(prefix)) {
        for (const SizedTypes& types : kSizedTypes) {
            const int size = Pick(types.sizes);
            if (!types.directive.empty())
                pattern_ += types.directive + " " + std::to_string(size) + "\n";
            for (const std::string& name : types.names)
                types_.push_back({name, CTypeOfSize(size)});
        }
        const int align = Pick({8, 8, 4, 0});
        pattern_ += "@member_align " + std::to_string(align) + "\n";
        c_ += "#pragma pack(push, " + std::to_string(align == 0 ? 1 : align) + ")\n";
        for (int index = 0; index < kStructsPerFile; ++index)
            AddStruct(index);
        c_ += "#pragma pack(pop)\n";
        pattern_ += "@entry " + prefix_ + "S0\n";
    }

    const std::string& Pattern() const { return pattern_; }
    const std::string& C() const { return c_; }
    const std::string& CReport() const { return report_; }

private:
    int Below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    int Pick(const std::vector<int>& values) { return values[random_() % values.size()]; }

    /// What is the same in both languages.
    void Declare(const std::string& text) {
        pattern_ += text;
        c_ += text;
    }

    void AddStruct(int index) {
        const std::string tag = prefix_ + "S" + std::to_string(index);
        const bool isAnonymous = index % 7 == 6;
        const bool isTypedef = isAnonymous || index % 3 == 0;
        const std::string name = isTypedef ? tag + "T" : "struct " + tag;
        report_ += "printf(\"%zu %zu\", sizeof(" + name + "), _Alignof(" + name + "));\n";

        Declare((isTypedef ? "typedef struct " : "struct ") + (isAnonymous ? "" : tag) + " {\n");
        const int count = 1 + Below(8);
        const bool endsFlexible = count > 1 && Below(6) == 0;
        for (int member = 0; member < count; ++member)
            AddMember(name, "m" + std::to_string(member), endsFlexible && member == count - 1);
        Declare(isTypedef ? "} " + name + ";\n" : "};\n");
        report_ += "puts(\"\");\n";
        if (!endsFlexible) MakeKnown(name, tag + "Alias"); // C embeds no struct with such an end
    }

    void AddMember(const std::string& owner, const std::string& name, bool isFlexible) {
        const int known = static_cast<int>(types_.size());
        const int chosen = Below(4) == 0 ? Below(known) : known - 1 - Below(20); // mostly new ones
        const KnownType& type = types_[static_cast<std::size_t>(chosen)];
        std::string suffix;
        if (isFlexible)
            suffix = "[]";
        else if (Below(3) == 0)
            suffix = "[" + std::to_string(1 + Below(5)) + "]";
        pattern_ += "    " + type.pattern + " " + name + suffix + ";\n";
        c_ += "    " + type.c + " " + name + suffix + ";\n";
        const std::string size = isFlexible ? "(size_t)0" : "sizeof((" + owner + "*)0)->" + name;
        report_ += "printf(\" " + name + "@%zu+%zu\", offsetof(" + owner + ", " + name + "), " +
                   size + ");\n";
    }

    /// Later members may have the type, and an alias of it.
    void MakeKnown(const std::string& name, const std::string& alias) {
        Declare("typedef " + name + " " + alias + ";\n");
        types_.push_back({name, name});
        types_.push_back({alias, alias});
    }

    std::mt19937 random_;
    std::string prefix_;
    std::vector<KnownType> types_;
    std::string pattern_;
    std::string c_;
    std::string report_;
};

/// One line for each struct in the form of the C program's report.
std::string Report(const StructPatternFile& pattern) {
    std::ostringstream text;
    for (const ResolvedStructInfo& layout : pattern.structs) {
        text << layout.size << ' ' << layout.alignment;
        for (const StructMemberLayout& row : layout.members) {
            if (row.isPadding) continue;
            text << ' ' << Utf16ToUtf8(row.name) << '@' << row.offset << '+' << row.TotalSize();
        }
        text << '\n';
    }
    return text.str();
}

TEST(LayoutOracle, HundredsOfRandomStructsLieWhereTheCCompilerPutsThem) {
    std::vector<RandomFile> files;
    std::string declarations = "#include <stddef.h>\n#include <stdint.h>\n#include <stdio.h>\n";
    std::string report;
    for (int index = 0; index < kFiles; ++index) {
        files.emplace_back(1000 + index, "F" + std::to_string(index));
        declarations += files.back().C();
        report += files.back().CReport();
    }
    const TempFolder folder;
    folder.Write(u"layout.c", declarations + "int main(void) {\n" + report + "return 0;\n}\n");
    const std::string expected =
        RunTool(folder.Root().string(), "gcc -std=gnu11 -w -o layout layout.c && ./layout");

    std::string actual;
    for (const RandomFile& file : files) {
        const Outcome<SharedPattern> load = LoadText(file.Pattern());
        ASSERT_TRUE(load) << Utf16ToUtf8(load.error) << "\n" << file.Pattern();
        EXPECT_EQ(CheckLoader(AsBytes(file.Pattern())), "");
        actual += Report(**load.value);
    }
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), kFiles * kStructsPerFile);
    EXPECT_EQ(actual, expected);
}

} // namespace
} // namespace kvx
