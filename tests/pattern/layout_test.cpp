// What neither the C compiler can tell nor the examples of the users' reference show.
#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

/// Size, kind (i, f, d, s) and `+` or `-` for the sign of every member of the entry struct.
std::string Types(const std::string& text) {
    std::string types;
    const SharedPattern pattern = LoadText(text).value.value_or(nullptr);
    if (!pattern) return ErrorOf(text);
    for (const StructMemberLayout& row : pattern->Entry()->members) {
        types += (types.empty() ? "" : " ") + std::to_string(row.elementSize);
        types += "ifds"[static_cast<std::size_t>(row.kind)];
        types += row.isSigned ? '-' : '+';
    }
    return types;
}

TEST(Layout, EveryBuiltInTypeHasItsSizeKindAndSign) {
    const std::string members =
        "struct S { char a; signed char b; unsigned char c; int8_t d; uint8_t e;\n"
        "short f; signed short g; unsigned short h; int16_t i; uint16_t j;\n"
        "int k; signed int l; unsigned int m; int32_t n; uint32_t o;\n"
        "long p; signed long q; unsigned long r;\n"
        "long long s; signed long long t; unsigned long long u; int64_t v; uint64_t w;\n"
        "float x; double y; void* z; Int alias; UInt alias2; struct T tag; void none[]; };\n"
        "typedef int Int; typedef unsigned int UInt; struct T { char c[3]; };\n"
        "@entry S @member_align 0\n";
    EXPECT_EQ(Types(members), "1i- 1i- 1i+ 1i- 1i+ 2i- 2i- 2i+ 2i- 2i+ 4i- 4i- 4i+ 4i- 4i+ "
                              "8i- 8i- 8i+ 8i- 8i- 8i+ 8i- 8i+ 4f+ 8d+ 8i+ 4i- 4i+ 3s+ 0i+");
    EXPECT_EQ(Types(members + "@sizeof_short 4 @sizeof_int 2 @sizeof_long 1 @sizeof_long_long 16\n"
                              "@sizeof_float 8 @sizeof_double 16 @pointer_size 2"),
              "1i- 1i- 1i+ 1i- 1i+ 4i- 4i- 4i+ 2i- 2i+ 2i- 2i- 2i+ 4i- 4i+ "
              "1i- 1i- 1i+ 16i- 16i- 16i+ 8i- 8i+ 8f+ 16d+ 2i+ 2i- 2i+ 3s+ 0i+");
}

TEST(Layout, ArraysFlexibleArraysAndPointers) {
    EXPECT_EQ(LayoutOf("struct S { short a[3]; struct Unknown * * p[2]; int* none[0]; int one[1];\n"
                       "           unsigned   LONG * q; char c; long data[]; };"),
              "S 48/8: 0 a short[3]=6, 6 <padding> padding[2]=2, 8 p struct unknown*[2]=16, "
              "24 none int*[0]=0, 24 one int=4, 28 <padding> padding[4]=4, 32 q unsigned long*=8, "
              "40 c char=1, 41 <padding> padding[7]=7, 48 data long[]=0");
    EXPECT_EQ(LayoutOf("@entry S struct E { }; struct S { char n; struct E rest[]; };"),
              "S 1/1: 0 n char=1, 1 rest struct e[]#0=0");
    EXPECT_EQ(LayoutOf("struct E { };"), "E 0/1:");
}

TEST(Layout, DeclarationsMayHaveAnyNumberOfWordsAndStars) {
    for (const int count : {6, 7, 8, 9, 30}) {
        std::string stars;
        for (int i = 0; i < count; ++i)
            stars += "* ";
        EXPECT_EQ(LayoutOf("struct S { unsigned " + stars + "char p[3]; };"),
                  "S 24/8: 0 p unsigned char*[3]=24")
            << count;
    }
}

TEST(Layout, AliasesKeepTheirNameAndTakeTheirTargetsLayout) {
    EXPECT_EQ(LayoutOf("typedef unsigned int DWord; typedef DWord Id; typedef char* Text;\n"
                       "typedef Text TextAlias; typedef struct Pair Both;\n"
                       "@entry S struct S { Id id; TextAlias text; Both pair; Both* link; };\n"
                       "struct Pair { short x; short y; };"),
              "S 32/8: 0 id id=4, 4 <padding> padding[4]=4, 8 text textalias*=8, "
              "16 pair both#1=4, 20 <padding> padding[4]=4, 24 link both*=8");
    // The built-in type wins over the alias, the alias over the struct.
    EXPECT_EQ(LayoutOf("struct A { char c; }; typedef short A; typedef struct A int;\n"
                       "@entry S struct S { A alias; struct A tag; int i; STRUCT  a tag2; };"),
              "S 12/4: 0 alias a=2, 2 tag struct a#0=1, 3 <padding> padding=1, 4 i int=4, "
              "8 tag2 struct a#0=1, 9 <padding> padding[3]=3");
    EXPECT_EQ(LayoutOf("typedef struct { char a; } One; typedef struct { int b; } Two;\n"
                       "@entry S struct S { One one; Two two[2]; };"),
              "S 12/4: 0 one one#0=1, 1 <padding> padding[3]=3, 4 two two[2]#1=8");
}

TEST(Layout, ACycleOfAliasesIsHarmlessWhereItNeedNotBeResolved) {
    EXPECT_EQ(LayoutOf("typedef A B; typedef B A; typedef C C; struct S { A* p; };"),
              "S 8/8: 0 p a*=8");
    EXPECT_EQ(LayoutOf("typedef B* A; typedef A B; struct S { B p; };"), "S 8/8: 0 p b*=8");
}

TEST(Layout, SizesUpToTheLastOfSixtyFourBitsAreAccepted) {
    EXPECT_EQ(LayoutOf("struct A { char a[18446744073709551615]; };"),
              "A 18446744073709551615/1: 0 a char[18446744073709551615]=18446744073709551615");
    EXPECT_EQ(LayoutOf("struct A { char a[18446744073709551608]; long tail[]; };"),
              "A 18446744073709551608/8: 0 a char[18446744073709551608]=18446744073709551608, "
              "18446744073709551608 tail long[]=0");
}

constexpr int kDeep = 100'000;

TEST(Layout, AHundredThousandNestedStructsLayOut) {
    const std::string text = "@entry S0\n" + Repeat(kDeep, "struct S# { struct S$ s; };\n");
    EXPECT_EQ(LayoutOf(text + "struct S100000 { char c; };"), "S0 1/1: 0 s struct s1#1=1");
    EXPECT_EQ(LayoutOf(text + "struct S100000 { struct S0 s; };"),
              "Direct recursive struct embedding is not allowed.");
}

TEST(Layout, AHundredThousandChainedAliasesResolve) {
    const std::string text = Repeat(kDeep, "typedef A$ A#;\n");
    const std::string members = Repeat(kDeep, "A# m#;\n");
    const Outcome<SharedPattern> load =
        LoadText(text + "typedef short A100000; struct S { " + members + "};");
    ASSERT_TRUE(load) << Utf16ToUtf8(load.error);
    EXPECT_EQ((*load.value)->Entry()->size, 2U * kDeep);
    EXPECT_EQ(ErrorOf(text + "typedef A0 A100000; struct S { A5 m; };"), "Unknown type: a5");
    EXPECT_EQ(ErrorOf(text + "struct S { A5 m; };"), "Unknown type: a100000");
}

} // namespace
} // namespace kvx
