// The shipped sample patterns: all load, and those whose formats no common tool writes are laid
// over bytes assembled here from the published layouts.
#include "tests/pattern/sample_testing.h"

#include <gtest/gtest.h>

#include <iomanip>

namespace kvx {
namespace {

TEST(SamplePatterns, EveryOneLoadsTellsHowToUseItAndIsLaidOverBytesInATest) {
    const std::filesystem::path tests = SourceRoot() / "tests" / "pattern";
    const std::string sources = ReadText(tests / "sample_patterns_test.cpp") +
                                ReadText(tests / "sample_patterns_posix_test.cpp");
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(SourceRoot() / "patterns")) {
        if (entry.path().extension() != ".kvpat") continue;
        const std::string text = ReadText(entry.path());
        EXPECT_EQ(ErrorOf(text), "(loaded)") << entry;
        EXPECT_TRUE(text.starts_with("// ")) << entry;
        for (const std::string line : {"\n// Caret: ", "\n// Byte order: ", "\n// Layout: "})
            EXPECT_NE(text.find(line), std::string::npos) << entry << " says nothing after" << line;
        EXPECT_NE(sources.find("\"" + entry.path().stem().string() + "\""), std::string::npos)
            << entry << " is not tested";
        ++count;
    }
    EXPECT_GE(count, 30);
}

/// The bytes that `pieces` tell, separated by blanks: 'text', `4:100` for a number of 4 bytes, and
/// `16:` for 16 zeros.
std::string Assemble(const std::string& pieces, ByteOrder byteOrder) {
    std::string bytes;
    std::istringstream stream(pieces);
    while (stream >> std::ws && stream.peek() != EOF) {
        std::string piece;
        stream >> std::quoted(piece, '\'');
        const std::size_t colon = piece.find(':');
        if (colon == std::string::npos) {
            bytes += piece;
            continue;
        }
        const std::string value = piece.substr(colon + 1);
        const std::uint64_t number = value.empty() ? 0 : std::stoull(value, nullptr, 0);
        const auto size = static_cast<std::size_t>(std::stoul(piece));
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t place = byteOrder == ByteOrder::Big ? size - 1 - i : i;
            bytes += place < sizeof number ? static_cast<char>(number >> 8 * place & 0xFF) : '\0';
        }
    }
    return bytes;
}

struct Case {
    std::string pattern;
    ByteOrder byteOrder;
    std::string bytes;
    std::string members;
};

TEST(SamplePatterns, LieOverAssembledFiles) {
    using enum ByteOrder;
    const std::string pcap =
        "4:0xA1B2C3D4 2:2 2:4 8: 4:65535 4:1 4:1700000000 4:250000 4:60 4:1514";
    const std::string pcapMembers =
        "sizeof 40, header.magic 0xA1B2C3D4, header.version_minor 4, header.link_type 1, "
        "packet.seconds 1700000000, packet.captured_length 60, packet.original_length 1514";
    const Case cases[] = {
        {"wav_header", Little,
         "RIFF 4:436 'WAVEfmt ' 4:16 2:1 2:2 4:44100 4:176400 2:4 2:16 data 4:400 400:",
         "sizeof 44, wave \"WAVE\", riff_size 436, channels 2, samples_per_second 44100, "
         "bits_per_sample 16, data \"data\", data_size 400"},
        {"avi_header", Little,
         "RIFF 4:80 'AVI LIST' 4:68 hdrlavih 4:56 4:40000 4:1000000 4: 4:16 4:250 4: 4:2 4:65536 "
         "4:640 4:480 16:",
         "sizeof 88, avih_size 56, header.dwMicroSecPerFrame 40000, header.dwTotalFrames 250, "
         "header.dwStreams 2, header.dwWidth 640, header.dwHeight 480"},
        {"pcap_header", Little, pcap, pcapMembers},
        {"pcap_header", Big, pcap, pcapMembers},
        {"pcapng_section_header", Little,
         "4:0x0A0D0D0A 4:28 4:0x1A2B3C4D 2:1 2:0 8:0xFFFFFFFFFFFFFFFF 4:28",
         "sizeof 24, block_type 0x0A0D0D0A, block_length 28, byte_order_magic 0x1A2B3C4D, "
         "version_major 1, section_length 0xFFFFFFFFFFFFFFFF"},
        {"java_class_header", Big, "4:0xCAFEBABE 2: 2:61 2:3 1:7 2:2 1:1 2:5 Hello",
         "magic 0xCAFEBABE, major_version 61, constant_pool_count 3, first_tag 7, "
         "constant_pool 00 02 01 00 05 48 65 6C 6C 6F"},
        {"dex_header", Little,
         "'dex\n035' 1: 4:0x11223344 20: 4:4096 4:112 4:0x12345678 4:10 4:20 4:30 4:40 4:50 4:60 "
         "4:70 4:80 4:90 4:100 4:110 4:120 4:130 4:140 4:150 4:160 4:170",
         "sizeof 112, version \"035\", file_size 4096, header_size 112, endian_tag 0x12345678, "
         "string_ids_size 40, method_ids_off 130, data_off 170"},
        {"truetype_table_directory", Big,
         "4:0x00010000 2:11 2:128 2:3 2:48 cmap 4:0x01020304 4:188 4:260",
         "sizeof 28, sfnt_version 0x00010000, num_tables 11, search_range 128, "
         "first.tag \"cmap\", first.offset 188, first.length 260"},
        {"windows_shortcut", Little,
         "4:0x4C 4:0x21401 4: 4:0xC0 4:0x46000000 4:0x9B 4:0x20 8:1 8:2 8:3 4:12345 4:7 4:3 "
         "2:0x641 10:",
         "sizeof 76, HeaderSize 0x0000004C, LinkCLSID.data1 0x00021401, "
         "LinkCLSID.data4 C0 00 00 00 00 00 00 46, LinkFlags 0x0000009B, WriteTime 3, "
         "FileSize 12345, ShowCommand 3, HotKey 0x0641"},
        {"minidump_header", Little,
         "MDMP 4:0x6380A793 4:13 4:32 4: 4:1700000000 8:2 4:7 4:56 4:188",
         "sizeof 44, Signature \"MDMP\", NumberOfStreams 13, Flags 2, first.StreamType 7, "
         "first.Rva 188"},
        {"registry_hive", Little,
         "regf 4:77 4:77 8:0x01D9000000000000 4:1 4:5 4: 4:1 4:32 4:8192 4:1 2:0x53 2:0x41 2:0x4D "
         "58: 396: 4:0xDEADBEEF",
         "sizeof 512, signature \"regf\", primary_sequence 77, last_written 0x01D9000000000000, "
         "minor_version 5, root_cell_offset 32, bins_size 8192, "
         "file_name 53 00 41 00 4D 00 00 00 00 00 00 00 00 00 00 00 ..., checksum 0xDEADBEEF"},
    };
    for (const Case& c : cases)
        Sample(c.pattern, Assemble(c.bytes, c.byteOrder), 0, c.byteOrder).Expect(c.members);
}

} // namespace
} // namespace kvx
