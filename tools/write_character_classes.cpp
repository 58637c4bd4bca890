// Writes platform/character_classes.cpp from the answers of the Windows that it runs on:
//   kivra_write_character_classes.exe platform/character_classes.cpp
#include "platform/code_pages.h"

#include <fstream>
#include <iomanip>

namespace kvx {
namespace {

void WriteRanges(std::ostream& out, const char* name, bool (*holds)(char16_t)) {
    constexpr unsigned kEnd = 0x10000;
    constexpr int kPerLine = 5;
    const auto at = [&](unsigned unit) {
        return unit < kEnd && holds(static_cast<char16_t>(unit));
    };
    out << "constexpr UnitRange " << name << "[] = {";
    int written = 0;
    for (unsigned first = 0; first < kEnd; ++first) {
        if (!at(first)) continue;
        unsigned last = first;
        while (at(last + 1))
            ++last;
        out << (written++ % kPerLine == 0 ? "\n    " : " ") << "{0x" << std::setw(4) << first
            << ", 0x" << std::setw(4) << last << "},";
        first = last;
    }
    out << "\n};\n";
}

bool WriteClasses(const char* path) {
    std::ofstream out(path, std::ios::binary);
    out << "// Written by tools/write_character_classes.cpp. Do not edit.\n"
           "#include \"platform/character_classes.h\"\n\n"
           "namespace kvx {\nnamespace {\n\n// clang-format off\n"
        << std::hex << std::uppercase << std::setfill('0');
    WriteRanges(out, "kControls", IsControlCharacter);
    out << '\n';
    WriteRanges(out, "kCombining", IsCombiningCharacter);
    out << "// clang-format on\n\n} // namespace\n\n"
           "const std::span<const UnitRange> kControlUnits = kControls;\n"
           "const std::span<const UnitRange> kCombiningUnits = kCombining;\n\n"
           "} // namespace kvx\n";
    out.close();
    return !out.fail();
}

} // namespace
} // namespace kvx

int main(int count, char** arguments) {
    return count == 2 && kvx::WriteClasses(arguments[1]) ? 0 : 1;
}
