#include "tests/pattern/pattern_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

TEST(Layout, FillsGapsBetweenMembersAndAtTheEnd) {
    EXPECT_EQ(LayoutOf("struct S { char c; int i; short s; };"),
              "S size 12 align 4\n"
              "0 c : char 1*1=1 integer signed\n"
              "1 <padding> : padding 1*3=3\n"
              "4 i : int 4*1=4 integer signed\n"
              "8 s : short 2*1=2 integer signed\n"
              "10 <padding> : padding 1*2=2");
}

TEST(Layout, MemberAlignZeroPacks) {
    EXPECT_EQ(LayoutOf("@member_align 0 struct S { char c; int i; short s; };"),
              "S size 7 align 1\n"
              "0 c : char 1*1=1 integer signed\n"
              "1 i : int 4*1=4 integer signed\n"
              "5 s : short 2*1=2 integer signed");
}

TEST(Layout, MemberAlignCapsTheAlignmentOfEveryMember) {
    EXPECT_EQ(LayoutOf("@member_align 4 @entry B struct A { int i; double d; };\n"
                       "struct B { char c; struct A a; };"),
              "B size 16 align 4\n"
              "0 c : char 1*1=1 integer signed\n"
              "1 <padding> : padding 1*3=3\n"
              "4 a : struct a 12*1=12 struct -> #0");
    // Types of 16 bytes are aligned to 8 at most, and the cap is 8 without a directive too.
    EXPECT_EQ(LayoutOf("@sizeof_long_long 16 struct S { int i; long long l; };"),
              "S size 24 align 8\n"
              "0 i : int 4*1=4 integer signed\n"
              "4 <padding> : padding 1*4=4\n"
              "8 l : long long 16*1=16 integer signed");
}

TEST(Layout, EveryBuiltInTypeHasItsSizeKindAndSign) {
    EXPECT_EQ(LayoutOf("@member_align 0\nstruct S {\n"
                       "char a; signed char b; unsigned char c; int8_t d; uint8_t e;\n"
                       "short f; signed short g; unsigned short h; int16_t i; uint16_t j;\n"
                       "int k; signed int l; unsigned int m; int32_t n; uint32_t o;\n"
                       "long p; signed long q; unsigned long r;\n"
                       "long long s; signed long long t; unsigned long long u;\n"
                       "int64_t v; uint64_t w; float x; double y; void* z; void none[];\n};"),
              "S size 119 align 1\n"
              "0 a : char 1*1=1 integer signed\n"
              "1 b : signed char 1*1=1 integer signed\n"
              "2 c : unsigned char 1*1=1 integer\n"
              "3 d : int8_t 1*1=1 integer signed\n"
              "4 e : uint8_t 1*1=1 integer\n"
              "5 f : short 2*1=2 integer signed\n"
              "7 g : signed short 2*1=2 integer signed\n"
              "9 h : unsigned short 2*1=2 integer\n"
              "11 i : int16_t 2*1=2 integer signed\n"
              "13 j : uint16_t 2*1=2 integer\n"
              "15 k : int 4*1=4 integer signed\n"
              "19 l : signed int 4*1=4 integer signed\n"
              "23 m : unsigned int 4*1=4 integer\n"
              "27 n : int32_t 4*1=4 integer signed\n"
              "31 o : uint32_t 4*1=4 integer\n"
              "35 p : long 8*1=8 integer signed\n"
              "43 q : signed long 8*1=8 integer signed\n"
              "51 r : unsigned long 8*1=8 integer\n"
              "59 s : long long 8*1=8 integer signed\n"
              "67 t : signed long long 8*1=8 integer signed\n"
              "75 u : unsigned long long 8*1=8 integer\n"
              "83 v : int64_t 8*1=8 integer signed\n"
              "91 w : uint64_t 8*1=8 integer\n"
              "99 x : float 4*1=4 float\n"
              "103 y : double 8*1=8 double\n"
              "111 z : void 8*1=8 integer pointer\n"
              "119 none : void 0*0=0 integer flexible");
}

TEST(Layout, DirectivesSetTheSizesOfTheTypesThatFollowThem) {
    EXPECT_EQ(LayoutOf("struct S { short s; int i; long l; long long ll; float f; double d;\n"
                       "           void* p; int64_t fixed; };\n"
                       "@SIZEOF_SHORT 4 @sizeof_int 2 @sizeof_long 4 @sizeof_long_long 1\n"
                       "@sizeof_float 2 @sizeof_double 4 @pointer_size 2 @pointer_size 004"),
              "S size 32 align 8\n"
              "0 s : short 4*1=4 integer signed\n"
              "4 i : int 2*1=2 integer signed\n"
              "6 <padding> : padding 1*2=2\n"
              "8 l : long 4*1=4 integer signed\n"
              "12 ll : long long 1*1=1 integer signed\n"
              "13 <padding> : padding 1*1=1\n"
              "14 f : float 2*1=2 float\n"
              "16 d : double 4*1=4 double\n"
              "20 p : void 4*1=4 integer pointer\n"
              "24 fixed : int64_t 8*1=8 integer signed");
}

TEST(Layout, ArraysFlexibleArraysAndPointers) {
    EXPECT_EQ(LayoutOf("struct S { short a[3]; struct Unknown * * p[2]; int* none[0]; int one[1];\n"
                       "           unsigned   LONG * q; char c; long data[]; };"),
              "S size 48 align 8\n"
              "0 a : short 2*3=6 integer signed\n"
              "6 <padding> : padding 1*2=2\n"
              "8 p : struct unknown 8*2=16 integer pointer\n"
              "24 none : int 8*0=0 integer pointer\n"
              "24 one : int 4*1=4 integer signed\n"
              "28 <padding> : padding 1*4=4\n"
              "32 q : unsigned long 8*1=8 integer pointer\n"
              "40 c : char 1*1=1 integer signed\n"
              "41 <padding> : padding 1*7=7\n"
              "48 data : long 8*0=0 integer signed flexible");
}

TEST(Layout, DeclarationsMayHaveAnyNumberOfWordsAndStars) {
    for (const int count : {6, 7, 8, 9, 30}) {
        std::string stars;
        for (int i = 0; i < count; ++i)
            stars += "* ";
        EXPECT_EQ(LayoutOf("struct S { unsigned " + stars + "char p[3]; };"),
                  "S size 24 align 8\n"
                  "0 p : unsigned char 8*3=24 integer pointer")
            << count;
    }
}

TEST(Layout, AliasesKeepTheirNameAndTakeTheirTargetsLayout) {
    EXPECT_EQ(LayoutOf("typedef unsigned int DWord; typedef DWord Id; typedef char* Text;\n"
                       "typedef Text TextAlias; typedef struct Pair Both;\n"
                       "@entry S struct S { Id id; TextAlias text; Both pair; Both* link; };\n"
                       "struct Pair { short x; short y; };"),
              "S size 32 align 8\n"
              "0 id : id 4*1=4 integer\n"
              "4 <padding> : padding 1*4=4\n"
              "8 text : textalias 8*1=8 integer pointer\n"
              "16 pair : both 4*1=4 struct -> #1\n"
              "20 <padding> : padding 1*4=4\n"
              "24 link : both 8*1=8 integer pointer");
}

TEST(Layout, AWordMayBeStructAndAliasAndBuiltInAtOnce) {
    // The built-in type wins over the alias, the alias over the struct.
    EXPECT_EQ(LayoutOf("struct A { char c; }; typedef short A; typedef struct A int;\n"
                       "@entry S struct S { A alias; struct A tag; int i; STRUCT  a tag2; };"),
              "S size 12 align 4\n"
              "0 alias : a 2*1=2 integer signed\n"
              "2 tag : struct a 1*1=1 struct -> #0\n"
              "3 <padding> : padding 1*1=1\n"
              "4 i : int 4*1=4 integer signed\n"
              "8 tag2 : struct a 1*1=1 struct -> #0\n"
              "9 <padding> : padding 1*3=3");
}

TEST(Layout, StructsWithoutATagAreFoundThroughTheirAliases) {
    EXPECT_EQ(LayoutOf("typedef struct { char a; } One; typedef struct { int b; } Two;\n"
                       "@entry S struct S { One one; Two two[2]; };"),
              "S size 12 align 4\n"
              "0 one : one 1*1=1 struct -> #0\n"
              "1 <padding> : padding 1*3=3\n"
              "4 two : two 4*2=8 struct -> #1");
    EXPECT_EQ(LayoutOf("struct { char a; };"), "<anonymous> size 1 align 1\n"
                                               "0 a : char 1*1=1 integer signed");
}

TEST(Layout, StructsMayBeUsedBeforeTheyAreDeclared) {
    EXPECT_EQ(LayoutOf("@entry A struct A { struct B b; }; struct B { struct C c; char x; };\n"
                       "struct C { short s; };"),
              "A size 4 align 2\n"
              "0 b : struct b 4*1=4 struct -> #1");
    EXPECT_EQ(LayoutOf("struct A { struct A* next; };"), "A size 8 align 8\n"
                                                         "0 next : struct a 8*1=8 integer pointer");
}

TEST(Layout, ACycleOfAliasesIsHarmlessWhereItNeedNotBeResolved) {
    EXPECT_EQ(LayoutOf("typedef A B; typedef B A; struct S { A* p; char c; };"),
              "S size 16 align 8\n"
              "0 p : a 8*1=8 integer pointer\n"
              "8 c : char 1*1=1 integer signed\n"
              "9 <padding> : padding 1*7=7");
    EXPECT_EQ(LayoutOf("typedef B* A; typedef A B; struct S { B p; };"),
              "S size 8 align 8\n"
              "0 p : b 8*1=8 integer pointer");
}

TEST(Layout, AnEmptyStructIsAnEntryWithoutRows) {
    EXPECT_EQ(LayoutOf("struct E { };"), "E size 0 align 1");
    EXPECT_EQ(LayoutOf("@entry S struct E { }; struct S { char n; struct E rest[]; };"),
              "S size 1 align 1\n"
              "0 n : char 1*1=1 integer signed\n"
              "1 rest : struct e 0*0=0 struct flexible -> #0");
}

TEST(Layout, SizesUpToTheLastOfSixtyFourBitsAreAccepted) {
    EXPECT_EQ(LayoutOf("struct A { char a[18446744073709551615]; };"),
              "A size 18446744073709551615 align 1\n"
              "0 a : char 1*18446744073709551615=18446744073709551615 integer signed");
    EXPECT_EQ(LayoutOf("struct A { char a[18446744073709551608]; long tail[]; };"),
              "A size 18446744073709551608 align 8\n"
              "0 a : char 1*18446744073709551608=18446744073709551608 integer signed\n"
              "18446744073709551608 tail : long 8*0=0 integer signed flexible");
}

TEST(Layout, APaddedSizeThatLeaves64BitsIsReportedAtTheLastMember) {
    EXPECT_EQ(
        LayoutOf("struct A {\n int i;\n char a[18446744073709551609];\n};"),
        "Line 3, Col 2: Struct size exceeds 64 bits.\r\n char a[18446744073709551609];\r\n ^");
}

constexpr int kDeep = 100'000;

TEST(Layout, AHundredThousandNestedStructsLayOut) {
    std::string text = "@entry S0\n";
    for (int i = 0; i < kDeep; ++i) {
        const std::string next = std::to_string(i + 1);
        text += "struct S" + std::to_string(i) + " { struct S" + next + " s; };\n";
    }
    const std::string end = "struct S" + std::to_string(kDeep);
    EXPECT_EQ(LayoutOf(text + end + " { char c; };"), "S0 size 1 align 1\n"
                                                      "0 s : struct s1 1*1=1 struct -> #1");
    EXPECT_EQ(LayoutOf(text + end + " { struct S0 s; };"),
              "Direct recursive struct embedding is not allowed.");
}

TEST(Layout, AHundredThousandChainedAliasesResolve) {
    std::string text;
    for (int i = 0; i < kDeep; ++i) {
        const std::string next = std::to_string(i + 1);
        text += "typedef A" + next + " A" + std::to_string(i) + ";\n";
    }
    const std::string last = std::to_string(kDeep);
    std::string members;
    for (int i = 0; i < kDeep; ++i)
        members += "A" + std::to_string(i) + " m" + std::to_string(i) + ";\n";
    const Outcome<SharedPattern> load =
        LoadText(text + "typedef short A" + last + "; struct S { " + members + "};");
    ASSERT_TRUE(load) << Utf16ToUtf8(load.error);
    EXPECT_EQ((*load.value)->Entry()->size, 2U * kDeep);
    EXPECT_EQ(ErrorOf(text + "typedef A0 A" + last + "; struct S { A5 m; };"), "Unknown type: a5");
    EXPECT_EQ(ErrorOf(text + "struct S { A5 m; };"), "Unknown type: a" + last);
}

} // namespace
} // namespace kvx
