// The shipped sample patterns: all load, and those whose formats no common tool writes are laid
// over bytes assembled here from the published layouts.
#include "tests/pattern/sample_testing.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

/// Bytes put one behind the other.
class Assembly {
public:
    explicit Assembly(ByteOrder byteOrder = ByteOrder::Little) : byteOrder_(byteOrder) {}

    Assembly& Text(std::string_view text) {
        bytes_ += text;
        return *this;
    }
    Assembly& Zeros(std::size_t count) {
        bytes_.append(count, '\0');
        return *this;
    }
    template <typename... Values>
    Assembly& U8(Values... values) {
        return Numbers(1, {static_cast<std::uint64_t>(values)...});
    }
    template <typename... Values>
    Assembly& U16(Values... values) {
        return Numbers(2, {static_cast<std::uint64_t>(values)...});
    }
    template <typename... Values>
    Assembly& U32(Values... values) {
        return Numbers(4, {static_cast<std::uint64_t>(values)...});
    }
    template <typename... Values>
    Assembly& U64(Values... values) {
        return Numbers(8, {static_cast<std::uint64_t>(values)...});
    }

    const std::string& Bytes() const { return bytes_; }

private:
    Assembly& Numbers(int size, std::initializer_list<std::uint64_t> values) {
        for (const std::uint64_t value : values) {
            for (int i = 0; i < size; ++i) {
                const int shift = 8 * (byteOrder_ == ByteOrder::Big ? size - 1 - i : i);
                bytes_ += static_cast<char>(value >> shift & 0xFF);
            }
        }
        return *this;
    }

    std::string bytes_;
    ByteOrder byteOrder_;
};

std::vector<std::filesystem::path> AllSamples() {
    std::vector<std::filesystem::path> samples;
    for (const auto& entry : std::filesystem::directory_iterator(SourceRoot() / "patterns"))
        if (entry.path().extension() == ".kvpat") samples.push_back(entry.path());
    std::ranges::sort(samples);
    return samples;
}

TEST(SamplePatterns, EveryOneLoadsAndIsLaidOverBytesInATest) {
    const std::filesystem::path tests = SourceRoot() / "tests" / "pattern";
    const std::string sources = ReadText(tests / "sample_patterns_test.cpp") +
                                ReadText(tests / "sample_patterns_posix_test.cpp");
    const auto samples = AllSamples();
    EXPECT_GE(samples.size(), 30U);
    for (const std::filesystem::path& path : samples) {
        EXPECT_EQ(ErrorOf(ReadText(path)), "(loaded)") << path;
        EXPECT_NE(sources.find("(\"" + path.stem().string() + "\""), std::string::npos)
            << path << " is not tested";
    }
}

TEST(SamplePatterns, EveryOneTellsWhatItIsAndHowToUseIt) {
    for (const std::filesystem::path& path : AllSamples()) {
        const std::string text = ReadText(path);
        EXPECT_TRUE(text.starts_with("// ")) << path;
        for (const std::string line : {"\n// Caret: ", "\n// Byte order: ", "\n// Layout: "})
            EXPECT_NE(text.find(line), std::string::npos) << path << " says nothing after" << line;
    }
}

TEST(SamplePatterns, Wav) {
    const std::string file = Assembly()
                                 .Text("RIFF")
                                 .U32(36 + 400)
                                 .Text("WAVEfmt ")
                                 .U32(16)
                                 .U16(1, 2)
                                 .U32(44100, 176400)
                                 .U16(4, 16)
                                 .Text("data")
                                 .U32(400)
                                 .Zeros(400)
                                 .Bytes();
    const Sample wav("wav_header", file);
    EXPECT_EQ(wav.Size(), 44U);
    EXPECT_EQ(wav["wave"], "\"WAVE\"");
    EXPECT_EQ(wav["riff_size"], std::to_string(file.size() - 8));
    EXPECT_EQ(wav["channels"], "2");
    EXPECT_EQ(wav["samples_per_second"], "44100");
    EXPECT_EQ(wav["bits_per_sample"], "16");
    EXPECT_EQ(wav["data"], "\"data\"");
    EXPECT_EQ(wav["data_size"], "400");
}

TEST(SamplePatterns, Avi) {
    const std::string file = Assembly()
                                 .Text("RIFF")
                                 .U32(80)
                                 .Text("AVI LIST")
                                 .U32(68)
                                 .Text("hdrlavih")
                                 .U32(56, 40000, 1000000, 0, 0x10, 250, 0, 2, 65536, 640, 480)
                                 .Zeros(16)
                                 .Bytes();
    const Sample avi("avi_header", file);
    EXPECT_EQ(avi.Size(), 88U);
    EXPECT_EQ(avi["avih_size"], "56");
    EXPECT_EQ(avi["header.dwMicroSecPerFrame"], "40000");
    EXPECT_EQ(avi["header.dwTotalFrames"], "250");
    EXPECT_EQ(avi["header.dwStreams"], "2");
    EXPECT_EQ(avi["header.dwWidth"], "640");
    EXPECT_EQ(avi["header.dwHeight"], "480");
}

TEST(SamplePatterns, PcapInBothByteOrders) {
    for (const ByteOrder byteOrder : {ByteOrder::Little, ByteOrder::Big}) {
        const std::string file = Assembly(byteOrder)
                                     .U32(0xA1B2C3D4)
                                     .U16(2, 4)
                                     .U32(0, 0, 65535, 1, 1700000000, 250000, 60, 1514)
                                     .Zeros(60)
                                     .Bytes();
        const Sample pcap("pcap_header", file, 0, byteOrder);
        EXPECT_EQ(pcap.Size(), 40U);
        EXPECT_EQ(pcap.Hex("header.magic"), "0xA1B2C3D4");
        EXPECT_EQ(pcap["header.version_minor"], "4");
        EXPECT_EQ(pcap["header.link_type"], "1");
        EXPECT_EQ(pcap["packet.seconds"], "1700000000");
        EXPECT_EQ(pcap["packet.captured_length"], "60");
        EXPECT_EQ(pcap["packet.original_length"], "1514");
    }
}

TEST(SamplePatterns, Pcapng) {
    const std::string file = Assembly()
                                 .U32(0x0A0D0D0A, 28, 0x1A2B3C4D)
                                 .U16(1, 0)
                                 .U64(0xFFFFFFFFFFFFFFFF)
                                 .U32(28)
                                 .Bytes();
    const Sample pcapng("pcapng_section_header", file);
    EXPECT_EQ(pcapng.Size(), 24U);
    EXPECT_EQ(pcapng.Hex("block_type"), "0x0A0D0D0A");
    EXPECT_EQ(pcapng["block_length"], "28");
    EXPECT_EQ(pcapng.Hex("byte_order_magic"), "0x1A2B3C4D");
    EXPECT_EQ(pcapng["version_major"], "1");
    EXPECT_EQ(pcapng.Hex("section_length"), "0xFFFFFFFFFFFFFFFF");
}

TEST(SamplePatterns, JavaClass) {
    const std::string file = Assembly(ByteOrder::Big)
                                 .U32(0xCAFEBABE)
                                 .U16(0, 61, 3)
                                 .U8(7)
                                 .U16(2)
                                 .U8(1)
                                 .U16(5)
                                 .Text("Hello")
                                 .Bytes();
    const Sample java("java_class_header", file, 0, ByteOrder::Big);
    EXPECT_EQ(java.Hex("magic"), "0xCAFEBABE");
    EXPECT_EQ(java["major_version"], "61");
    EXPECT_EQ(java["constant_pool_count"], "3");
    EXPECT_EQ(java["first_tag"], "7");
    EXPECT_EQ(java.Hex("constant_pool"), "00 02 01 00 05 48 65 6C 6C 6F");
}

TEST(SamplePatterns, Dex) {
    Assembly file;
    file.Text("dex\n"
              "035")
        .U8(0)
        .U32(0x11223344)
        .Zeros(20)
        .U32(4096, 112, 0x12345678);
    for (unsigned value = 1; value <= 17; ++value)
        file.U32(value * 10);
    const Sample dex("dex_header", file.Bytes());
    EXPECT_EQ(dex.Size(), 112U);
    EXPECT_EQ(dex["version"], "\"035\"");
    EXPECT_EQ(dex["file_size"], "4096");
    EXPECT_EQ(dex["header_size"], "112");
    EXPECT_EQ(dex.Hex("endian_tag"), "0x12345678");
    EXPECT_EQ(dex["string_ids_size"], "40");
    EXPECT_EQ(dex["method_ids_off"], "130");
    EXPECT_EQ(dex["data_off"], "170");
}

TEST(SamplePatterns, TrueType) {
    const std::string file = Assembly(ByteOrder::Big)
                                 .U32(0x00010000)
                                 .U16(11, 128, 3, 48)
                                 .Text("cmap")
                                 .U32(0x01020304, 188, 260)
                                 .Bytes();
    const Sample font("truetype_table_directory", file, 0, ByteOrder::Big);
    EXPECT_EQ(font.Size(), 28U);
    EXPECT_EQ(font.Hex("sfnt_version"), "0x00010000");
    EXPECT_EQ(font["num_tables"], "11");
    EXPECT_EQ(font["search_range"], "128");
    EXPECT_EQ(font["first.tag"], "\"cmap\"");
    EXPECT_EQ(font["first.offset"], "188");
    EXPECT_EQ(font["first.length"], "260");
}

TEST(SamplePatterns, WindowsShortcut) {
    const std::string file = Assembly()
                                 .U32(0x4C, 0x00021401)
                                 .U16(0, 0)
                                 .U32(0xC0, 0x46000000, 0x9B, 0x20)
                                 .U64(1, 2, 3)
                                 .U32(12345, 7, 3)
                                 .U16(0x0641)
                                 .Zeros(10)
                                 .Bytes();
    const Sample link("windows_shortcut", file);
    EXPECT_EQ(link.Size(), 76U);
    EXPECT_EQ(link.Hex("HeaderSize"), "0x0000004C");
    EXPECT_EQ(link.Hex("LinkCLSID.data1"), "0x00021401");
    EXPECT_EQ(link.Hex("LinkCLSID.data4"), "C0 00 00 00 00 00 00 46");
    EXPECT_EQ(link.Hex("LinkFlags"), "0x0000009B");
    EXPECT_EQ(link["WriteTime"], "3");
    EXPECT_EQ(link["FileSize"], "12345");
    EXPECT_EQ(link["ShowCommand"], "3");
    EXPECT_EQ(link.Hex("HotKey"), "0x0641");
}

TEST(SamplePatterns, Minidump) {
    const std::string file = Assembly()
                                 .Text("MDMP")
                                 .U32(0x6380A793, 13, 32, 0, 1700000000)
                                 .U64(2)
                                 .U32(7, 56, 188)
                                 .Bytes();
    const Sample dump("minidump_header", file);
    EXPECT_EQ(dump.Size(), 44U);
    EXPECT_EQ(dump["Signature"], "\"MDMP\"");
    EXPECT_EQ(dump["NumberOfStreams"], "13");
    EXPECT_EQ(dump["Flags"], "2");
    EXPECT_EQ(dump["first.StreamType"], "7");
    EXPECT_EQ(dump["first.Rva"], "188");
}

TEST(SamplePatterns, RegistryHive) {
    Assembly file;
    file.Text("regf").U32(77, 77).U64(0x01D9000000000000).U32(1, 5, 0, 1, 32);
    file.U32(8192, 1).U16('S', 'A', 'M').Zeros(58).Zeros(396).U32(0xDEADBEEF);
    const Sample hive("registry_hive", file.Bytes());
    EXPECT_EQ(hive.Size(), 512U);
    EXPECT_EQ(hive["signature"], "\"regf\"");
    EXPECT_EQ(hive["primary_sequence"], "77");
    EXPECT_EQ(hive.Hex("last_written"), "0x01D9000000000000");
    EXPECT_EQ(hive["minor_version"], "5");
    EXPECT_EQ(hive["root_cell_offset"], "32");
    EXPECT_EQ(hive["bins_size"], "8192");
    EXPECT_EQ(hive.Hex("file_name"), "53 00 41 00 4D 00 00 00 00 00 00 00 00 00 00 00 ...");
    EXPECT_EQ(hive.Hex("checksum"), "0xDEADBEEF");
}

} // namespace
} // namespace kvx
