// The shipped sample patterns over real files, made by the tools that know the formats.
#include "tests/pattern/sample_testing.h"
#include "tests/pattern/tool_running.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

using namespace std::string_view_literals;

/// A folder in which tools make files. There is something for them to work on.
class Workshop {
public:
    Workshop() {
        folder_.Write(u"program.c", "int main(void) { return 0; }\n"sv);
        folder_.Write(u"twice.c", "int twice(int x) { return 2 * x; }\n"sv);
        folder_.Write(u"file.txt", std::string(520, 'x'));
    }

    std::string Run(const std::string& command) const {
        return RunTool(folder_.Root().string(), command);
    }

    /// Content of the file `made`, which `command` makes.
    std::string Make(const std::string& command) const {
        Run(command);
        const std::string content = folder_.Read(u"made");
        EXPECT_FALSE(content.empty()) << command;
        return content;
    }

private:
    TempFolder folder_;
};

/// The first number behind `label` in a tool's output.
std::string After(const std::string& output, const std::string& label) {
    const std::size_t place = output.find(label);
    EXPECT_NE(place, std::string::npos) << label << " is not in\n" << output;
    if (place == std::string::npos) return {};
    const std::size_t start = output.find_first_not_of(" \t:=", place + label.size());
    return output.substr(start, output.find_first_of(" \t\n,", start) - start);
}

struct Case {
    std::string pattern;
    std::string command;
    std::string members;
    ByteOrder byteOrder = ByteOrder::Little;
    std::size_t caret = 0;
};

// Each command makes the file `made`.
const Case kCases[] = {
    {"macho64_header", "clang -target x86_64-apple-macos11 -c -o made program.c",
     "header.magic 0xFEEDFACF, header.cputype 0x01000007, header.filetype 1, first.cmd 25"},
    {"wasm_module", "clang --target=wasm32 -c -o made twice.c",
     "magic 00 61 73 6D, version 1, section_id 1"}, // types come first
    {"ar_member_header", "ar rcD made file.txt",
     "sizeof 68, magic \"!<arch>...\", first.ar_name \"file.txt/       \", "
     "first.ar_size \"520       \", first.ar_fmag 60 0A"},
    {"png_header", "convert -size 37x21 gradient:red-blue PNG24:made",
     "signature 89 50 4E 47 0D 0A 1A 0A, chunk_length 13, chunk_type \"IHDR\", width 37, "
     "height 21, bit_depth 8, colour_type 2",
     ByteOrder::Big},
    {"bmp_header", "convert -size 37x21 gradient:red-blue BMP3:made",
     "sizeof 54, file.bfType \"BM\", file.bfSize 2406, info.biSize 40, info.biWidth 37, "
     "info.biHeight 21, info.biBitCount 24"},
    {"gif_header", "convert -size 37x21 gradient:red-blue GIF87:made",
     "signature \"GIF\", version \"87a\", screen_width 37, screen_height 21"},
    {"ico_header", "convert -size 32x16 gradient:red-blue ICO:made",
     "sizeof 22, idType 1, idCount 1, first.bWidth 32, first.bHeight 16, first.dwImageOffset 22"},
    {"jpeg_jfif_header", "convert -size 8x8 xc:red -units PixelsPerInch -density 300x150 JPG:made",
     "start_of_image 0xFFD8, app0_length 16, identifier \"JFIF\", density_units 1, "
     "density_x 300, density_y 150",
     ByteOrder::Big},
    {"gzip_header", "touch -d @1700000000 file.txt; gzip -9 -c file.txt >made",
     "id 1F 8B, method 8, flags 8, modified 1700000000, system 3, name \"file.txt\""},
    {"tar_ustar_header",
     "tar --format=ustar --owner=kim:1000 --group=lee:100 --mode=640 --mtime=@1700000000 "
     "-cf made file.txt",
     "sizeof 512, name \"file.txt\", mode \"0000640\", uid \"0001750\", size \"00000001010\", "
     "mtime \"14524770400\", typeflag 0x30, magic \"ustar\", uname \"kim\", gname \"lee\""},
    {"cpio_newc_header", "echo file.txt | cpio --quiet -o -H newc >made",
     "sizeof 110, c_magic \"070701\", c_filesize \"00000208\", c_namesize \"00000009\", "
     "name \"file.txt\""},
    {"xz_stream_header", "xz -c --check=sha256 file.txt >made",
     "magic FD 37 7A 58 5A 00, check_type 10, block_size 2"}, // 12 bytes
    {"mbr",
     "truncate -s 8M made; sfdisk -q made <<'END'\nlabel: dos\nlabel-id: 0x12345678\n"
     "start=2048, size=4096, type=83, bootable\nstart=6144, size=2048, type=c\nEND",
     "sizeof 512, disk_signature 0x12345678, signature 0xAA55, partition1.boot_indicator 0x80, "
     "partition1.type 0x83, partition1.first_lba 2048, partition1.sectors 4096, "
     "partition2.type 0x0C, partition3.sectors 0"},
    {"fat32_boot_sector", "truncate -s 34M made; mkfs.fat -F 32 -s 1 -n KIVRATEST -i 1234ABCD made",
     "sizeof 512, BPB_BytsPerSec 512, BPB_NumFATs 2, BPB_TotSec32 69632, BPB_RootClus 2, "
     "BS_VolID 0x1234ABCD, BS_VolLab \"KIVRATEST  \", BS_FilSysType \"FAT32   \", "
     "signature 0xAA55"},
    {"ext4_superblock",
     "truncate -s 16M made; mkfs.ext4 -q -F -L kivra -b 4096 -N 64 "
     "-U 00112233-4455-6677-8899-aabbccddeeff made",
     "s_magic 0xEF53, s_blocks_count_lo 4096, s_inodes_count 64, s_log_block_size 2, "
     "s_inode_size 256, s_volume_name \"kivra\", "
     "s_uuid 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF",
     ByteOrder::Little, 1024},
    {"squashfs_superblock", "mksquashfs file.txt made -quiet -no-progress -comp gzip -b 64K",
     "sizeof 96, s_magic \"hsqs\", inodes 2, block_size 65536, block_log 16, compression 1, "
     "s_major 4"},
    {"sqlite_header",
     "sqlite3 made 'pragma page_size=8192; pragma user_version=77; "
     "pragma application_id=4660; create table t(x);'",
     "sizeof 100, magic \"SQLite format 3\", page_size 8192, database_pages 2, text_encoding 1, "
     "user_version 77, application_id 0x00001234",
     ByteOrder::Big},
};

TEST(ToolMadeFiles, ShowTheValuesThatTheToolsWereGiven) {
    for (const Case& c : kCases) {
        const std::string file = Workshop().Make(c.command);
        Sample(c.pattern, file, c.caret, c.byteOrder).Expect(c.members);
    }
}

TEST(ToolMadeFiles, Elf) {
    const Workshop shop;
    const std::string file = shop.Make("gcc -o made program.c");
    const std::string told = shop.Run("readelf -hW made");
    const Sample header("elf64_file_header", file);
    header.Expect("sizeof 64, ei_magic 7F 45 4C 46, ei_class 2, e_ehsize " +
                  After(told, "Size of this header:") + ", e_phoff " +
                  After(told, "Start of program headers:") + ", e_shoff " +
                  After(told, "Start of section headers:") + ", e_phnum " +
                  After(told, "Number of program headers:") + ", e_shnum " +
                  After(told, "Number of section headers:") + ", e_shstrndx " +
                  After(told, "Section header string table index:"));

    const Sample segment("elf64_program_header", file, header.Number("e_phoff"));
    segment.Expect("sizeof " + header["e_phentsize"] + ", p_type 6, p_offset " + header["e_phoff"] +
                   ", p_filesz " + std::to_string(segment.Size() * header.Number("e_phnum")));

    const std::size_t names = header.Number("e_shoff") + 64 * header.Number("e_shstrndx");
    const Sample section("elf64_section_header", file, names);
    section.Expect("sizeof " + header["e_shentsize"] + ", sh_type 3");
    const std::size_t name = section.Number("sh_offset") + section.Number("sh_name");
    EXPECT_EQ(std::string(file.c_str() + name), ".shstrtab");
}

TEST(ToolMadeFiles, Pe) {
    const Workshop shop;
    const std::string file = shop.Make("x86_64-w64-mingw32-gcc-posix -o made.exe program.c; "
                                       "mv made.exe made");
    const std::string told = shop.Run("x86_64-w64-mingw32-objdump -p made");
    const Sample dos("pe_dos_header", file);
    dos.Expect("sizeof 64, e_magic \"MZ\"");

    const std::size_t start = dos.Number("e_lfanew");
    const Sample coff("pe_coff_header", file, start);
    coff.Expect("sizeof 24, Signature \"PE\", Machine 0x8664");

    const Sample optional("pe_optional_header64", file, start + coff.Size());
    optional.Expect("sizeof " + coff["SizeOfOptionalHeader"] + ", Magic 0x020B, ImageBase 0x" +
                    After(told, "ImageBase") + ", Subsystem 3, NumberOfRvaAndSizes 16");
    EXPECT_EQ(optional.Number("SizeOfImage") % optional.Number("SectionAlignment"), 0U);

    const Sample section("pe_section_header", file, start + coff.Size() + optional.Size());
    section.Expect("sizeof 40, Name \".text\", PointerToRawData " + optional["SizeOfHeaders"] +
                   ", VirtualAddress " + optional["BaseOfCode"]);
}

TEST(ToolMadeFiles, Zip) {
    const std::string file =
        Workshop().Make("zip -q -X made.zip file.txt program.c; mv made.zip made");
    const Sample end("zip_end_record", file, file.size() - 22);
    end.Expect("signature \"PK...\", entries 2");
    EXPECT_EQ(end.Number("directory_offset") + end.Number("directory_size"), file.size() - 22);

    const Sample central("zip_central_header", file, end.Number("directory_offset"));
    central.Expect("signature 50 4B 01 02, uncompressed_size 520, name_length 8, "
                   "local_header_offset 0, name \"file.txtPK...\"");
    Sample("zip_local_header", file)
        .Expect("signature 50 4B 03 04, method 8, crc32 " + central["crc32"] +
                ", compressed_size " + central["compressed_size"] + ", name \"file.txt...\"");
}

TEST(ToolMadeFiles, GuidPartitionTable) {
    const std::string file = Workshop().Make(
        "truncate -s 8M made; sfdisk -q made <<'END'\nlabel: gpt\n"
        "label-id: 01234567-89AB-CDEF-0011-223344556677\n"
        "start=2048, size=4096, name=\"Data\", type=0FC63DAF-8483-4772-8E79-3D69D8477DE4\nEND");
    const Sample header("gpt_header", file, 0x200);
    header.Expect("signature \"EFI PART\", revision 0x00010000, header_size 92, my_lba 1, "
                  "alternate_lba 16383, disk_guid.data1 0x01234567, "
                  "disk_guid.data4 00 11 22 33 44 55 66 77, number_of_entries 128, entry_size 128");
    Sample("gpt_partition_entry", file, 512 * header.Number("partition_entry_lba"))
        .Expect("sizeof 128, type_guid.data1 0x0FC63DAF, first_lba 2048, last_lba 6143, "
                "name 44 00 61 00 74 00 61 00 00 00 00 00 00 00 00 00 ...");
}

TEST(ToolMadeFiles, SevenZip) {
    const std::string file = Workshop().Make("7zr a -bd made.7z file.txt; mv made.7z made");
    const Sample archive("sevenzip_header", file);
    archive.Expect("sizeof 32, signature 37 7A BC AF 27 1C, version_major 0");
    EXPECT_EQ(32 + archive.Number("next_header_offset") + archive.Number("next_header_size"),
              file.size());
}

TEST(ToolMadeFiles, Ntfs) {
    const std::string file =
        Workshop().Make("truncate -s 16M made; mkntfs -q -Q -F -s 512 -c 4096 made");
    const Sample ntfs("ntfs_boot_sector", file);
    ntfs.Expect("sizeof 512, oem_id \"NTFS    \", bytes_per_sector 512, sectors_per_cluster 8, "
                "signature 0xAA55");
    EXPECT_EQ(file.substr(4096 * ntfs.Number("mft_cluster"), 4), "FILE");
    EXPECT_EQ(file.substr(4096 * ntfs.Number("mft_mirror_cluster"), 4), "FILE");
}

TEST(ToolMadeFiles, Iso9660) {
    const std::string file =
        Workshop().Make("xorriso -as mkisofs -quiet -V KIVRA -publisher SOMEONE -o made file.txt");
    const Sample iso("iso9660_volume_descriptor", file, 0x8000);
    iso.Expect("type 1, identifier \"CD001\", volume_identifier \"KIVRA" + std::string(27, ' ') +
               "\", logical_block_size 2048");
    EXPECT_LE(iso.Number("volume_space_size"), file.size() / 2048);
    Sample("iso9660_volume_descriptor", file, 0x8000, ByteOrder::Big)
        .Expect("volume_space_size_be " + iso["volume_space_size"] + ", path_table_size_be " +
                iso["path_table_size"]);
}

} // namespace
} // namespace kvx
