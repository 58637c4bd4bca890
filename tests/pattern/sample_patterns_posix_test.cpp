// The shipped sample patterns over real files, made by the tools that know the formats.
#include "tests/pattern/sample_testing.h"
#include "tests/pattern/tool_running.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace kvx {
namespace {

/// A folder in which tools make files.
class Workshop : public ::testing::Test {
protected:
    std::string Run(const std::string& command) {
        return RunTool(folder_.Root().string(), command);
    }

    std::string Make(const std::string& command, const std::u16string& file) {
        Run(command);
        std::string content(std::filesystem::file_size(folder_.Root() / file), '\0');
        std::ifstream(folder_.Root() / file, std::ios::binary)
            .read(content.data(), static_cast<std::streamsize>(content.size()));
        EXPECT_FALSE(content.empty()) << command;
        return content;
    }

    void Write(const std::u16string& name, std::string_view text) { folder_.Write(name, text); }

private:
    TempFolder folder_;
};

/// The number that a pattern's member shows.
std::size_t Number(const Sample& sample, std::string_view member) {
    return static_cast<std::size_t>(std::stoull(sample[member]));
}

/// The first number behind `label` in a tool's output.
std::string After(const std::string& output, const std::string& label) {
    const std::size_t place = output.find(label);
    EXPECT_NE(place, std::string::npos) << label << " is not in\n" << output;
    if (place == std::string::npos) return {};
    const std::size_t start = output.find_first_not_of(" \t:=", place + label.size());
    return output.substr(start, output.find_first_of(" \t\n,", start) - start);
}

std::string Pad(std::string text, std::size_t size) {
    text.resize(size, ' ');
    return "\"" + text + "\"";
}

constexpr std::string_view kProgram = "int main(void) { return 0; }\n";

using ElfSample = Workshop;

TEST_F(ElfSample, FileProgramAndSectionHeaders) {
    Write(u"a.c", kProgram);
    const std::string file = Make("gcc -o program a.c", u"program");
    const std::string told = Run("readelf -hW program");

    const Sample header("elf64_file_header", file);
    EXPECT_EQ(header.Size(), 64U);
    EXPECT_EQ(header.Hex("ei_magic"), "7F 45 4C 46");
    EXPECT_EQ(header["ei_class"], "2");
    EXPECT_EQ(header["e_ehsize"], After(told, "Size of this header:"));
    EXPECT_EQ(header["e_phoff"], After(told, "Start of program headers:"));
    EXPECT_EQ(header["e_shoff"], After(told, "Start of section headers:"));
    EXPECT_EQ(header["e_phnum"], After(told, "Number of program headers:"));
    EXPECT_EQ(header["e_shnum"], After(told, "Number of section headers:"));
    EXPECT_EQ(header["e_shstrndx"], After(told, "Section header string table index:"));

    const Sample segment("elf64_program_header", file, Number(header, "e_phoff"));
    EXPECT_EQ(std::to_string(segment.Size()), header["e_phentsize"]);
    EXPECT_EQ(segment["p_type"], "6"); // the first segment holds the program headers
    EXPECT_EQ(segment["p_offset"], header["e_phoff"]);
    EXPECT_EQ(Number(segment, "p_filesz"), segment.Size() * Number(header, "e_phnum"));

    const std::size_t names = Number(header, "e_shoff") + 64 * Number(header, "e_shstrndx");
    const Sample section("elf64_section_header", file, names);
    EXPECT_EQ(std::to_string(section.Size()), header["e_shentsize"]);
    EXPECT_EQ(section["sh_type"], "3");
    const std::size_t name = Number(section, "sh_offset") + Number(section, "sh_name");
    EXPECT_EQ(std::string(file.c_str() + name), ".shstrtab");
}

using PeSample = Workshop;

TEST_F(PeSample, DosCoffOptionalAndSectionHeaders) {
    Write(u"a.c", kProgram);
    const std::string file =
        Make("x86_64-w64-mingw32-gcc-posix -o program.exe a.c", u"program.exe");
    const std::string told = Run("x86_64-w64-mingw32-objdump -p program.exe");

    const Sample dos("pe_dos_header", file);
    EXPECT_EQ(dos.Size(), 64U);
    EXPECT_EQ(dos["e_magic"], "\"MZ\"");

    const std::size_t start = Number(dos, "e_lfanew");
    const Sample coff("pe_coff_header", file, start);
    EXPECT_EQ(coff.Size(), 24U);
    EXPECT_EQ(coff["Signature"], "\"PE\"");
    EXPECT_EQ(coff.Hex("Machine"), "0x8664");

    const Sample optional("pe_optional_header64", file, start + coff.Size());
    EXPECT_EQ(std::to_string(optional.Size()), coff["SizeOfOptionalHeader"]);
    EXPECT_EQ(optional.Hex("Magic"), "0x020B");
    EXPECT_EQ(optional.Hex("ImageBase"), "0x" + After(told, "ImageBase"));
    EXPECT_EQ(optional["Subsystem"], "3");
    EXPECT_EQ(optional["NumberOfRvaAndSizes"], "16");
    EXPECT_EQ(Number(optional, "SizeOfImage") % Number(optional, "SectionAlignment"), 0U);

    const Sample section("pe_section_header", file, start + coff.Size() + optional.Size());
    EXPECT_EQ(section.Size(), 40U);
    EXPECT_EQ(section["Name"], "\".text\"");
    EXPECT_EQ(section["PointerToRawData"], optional["SizeOfHeaders"]);
    EXPECT_EQ(section["VirtualAddress"], optional["BaseOfCode"]);
}

using CompilerSample = Workshop;

TEST_F(CompilerSample, MachO) {
    Write(u"a.c", kProgram);
    const std::string file =
        Make("clang -target x86_64-apple-macos11 -c -o macho.o a.c", u"macho.o");
    const Sample header("macho64_header", file);
    EXPECT_EQ(header.Hex("header.magic"), "0xFEEDFACF");
    EXPECT_EQ(header.Hex("header.cputype"), "0x01000007");
    EXPECT_EQ(header["header.filetype"], "1");
    EXPECT_EQ(header["first.cmd"], "25"); // a segment
    EXPECT_LT(Number(header, "first.cmdsize"), Number(header, "header.sizeofcmds"));
}

TEST_F(CompilerSample, WebAssembly) {
    Write(u"a.c", "int twice(int x) { return 2 * x; }\n");
    const std::string file = Make("clang --target=wasm32 -c -o module.wasm a.c", u"module.wasm");
    const Sample module("wasm_module", file);
    EXPECT_EQ(module.Hex("magic"), "00 61 73 6D");
    EXPECT_EQ(module["version"], "1");
    EXPECT_EQ(module["section_id"], "1"); // types come first
}

TEST_F(CompilerSample, StaticLibrary) {
    Write(u"member.txt", "twelve bytes");
    const std::string file = Make("ar rcD library.a member.txt", u"library.a");
    const Sample archive("ar_member_header", file);
    EXPECT_EQ(archive.Size(), 68U);
    EXPECT_EQ(archive["magic"], "\"!<arch>...\"");
    EXPECT_EQ(archive["first.ar_name"], Pad("member.txt/", 16));
    EXPECT_EQ(archive["first.ar_size"], Pad("12", 10));
    EXPECT_EQ(archive.Hex("first.ar_fmag"), "60 0A");
}

using ImageSample = Workshop;

TEST_F(ImageSample, Png) {
    const std::string file = Make("convert -size 37x21 gradient:red-blue PNG24:a.png", u"a.png");
    const Sample png("png_header", file, 0, ByteOrder::Big);
    EXPECT_EQ(png.Hex("signature"), "89 50 4E 47 0D 0A 1A 0A");
    EXPECT_EQ(png["chunk_length"], "13");
    EXPECT_EQ(png["chunk_type"], "\"IHDR\"");
    EXPECT_EQ(png["width"], "37");
    EXPECT_EQ(png["height"], "21");
    EXPECT_EQ(png["bit_depth"], "8");
    EXPECT_EQ(png["colour_type"], "2");
}

TEST_F(ImageSample, Bmp) {
    const std::string file = Make("convert -size 37x21 gradient:red-blue BMP3:a.bmp", u"a.bmp");
    const Sample bmp("bmp_header", file);
    EXPECT_EQ(bmp.Size(), 54U);
    EXPECT_EQ(bmp["file.bfType"], "\"BM\"");
    EXPECT_EQ(bmp["file.bfSize"], std::to_string(file.size()));
    EXPECT_EQ(bmp["info.biSize"], "40");
    EXPECT_EQ(bmp["info.biWidth"], "37");
    EXPECT_EQ(bmp["info.biHeight"], "21");
    EXPECT_EQ(bmp["info.biBitCount"], "24");
}

TEST_F(ImageSample, Gif) {
    const std::string file = Make("convert -size 37x21 gradient:red-blue GIF87:a.gif", u"a.gif");
    const Sample gif("gif_header", file);
    EXPECT_EQ(gif["signature"], "\"GIF\"");
    EXPECT_EQ(gif["version"], "\"87a\"");
    EXPECT_EQ(gif["screen_width"], "37");
    EXPECT_EQ(gif["screen_height"], "21");
    EXPECT_GE(Number(gif, "packed"), 0x80U);
}

TEST_F(ImageSample, Icon) {
    const std::string file = Make("convert -size 32x16 gradient:red-blue a.ico", u"a.ico");
    const Sample icon("ico_header", file);
    EXPECT_EQ(icon.Size(), 22U);
    EXPECT_EQ(icon["idType"], "1");
    EXPECT_EQ(icon["idCount"], "1");
    EXPECT_EQ(icon["first.bWidth"], "32");
    EXPECT_EQ(icon["first.bHeight"], "16");
    EXPECT_EQ(Number(icon, "first.dwImageOffset") + Number(icon, "first.dwBytesInRes"),
              file.size());
}

TEST_F(ImageSample, Jpeg) {
    const std::string file =
        Make("convert -size 8x8 xc:red -units PixelsPerInch -density 300x150 a.jpg", u"a.jpg");
    const Sample jpeg("jpeg_jfif_header", file, 0, ByteOrder::Big);
    EXPECT_EQ(jpeg.Hex("start_of_image"), "0xFFD8");
    EXPECT_EQ(jpeg["app0_length"], "16");
    EXPECT_EQ(jpeg["identifier"], "\"JFIF\"");
    EXPECT_EQ(jpeg["density_units"], "1");
    EXPECT_EQ(jpeg["density_x"], "300");
    EXPECT_EQ(jpeg["density_y"], "150");
}

using ArchiveSample = Workshop;

TEST_F(ArchiveSample, ZipLocalCentralAndEndRecords) {
    Write(u"first.txt", std::string(1000, 'x'));
    Write(u"second.txt", "short");
    const std::string file = Make("zip -q -X a.zip first.txt second.txt", u"a.zip");

    const Sample end("zip_end_record", file, file.size() - 22);
    EXPECT_EQ(end["signature"], "\"PK...\"");
    EXPECT_EQ(end["entries"], "2");
    EXPECT_EQ(Number(end, "directory_offset") + Number(end, "directory_size"), file.size() - 22);

    const Sample central("zip_central_header", file, Number(end, "directory_offset"));
    EXPECT_EQ(central.Hex("signature"), "50 4B 01 02");
    EXPECT_EQ(central["uncompressed_size"], "1000");
    EXPECT_EQ(central["name_length"], "9");
    EXPECT_EQ(central["local_header_offset"], "0");
    EXPECT_TRUE(central["name"].starts_with("\"first.txtPK")) << central["name"];

    const Sample local("zip_local_header", file);
    EXPECT_EQ(local.Hex("signature"), "50 4B 03 04");
    EXPECT_EQ(local["method"], "8");
    EXPECT_EQ(local["crc32"], central["crc32"]);
    EXPECT_EQ(local["compressed_size"], central["compressed_size"]);
    EXPECT_TRUE(local["name"].starts_with("\"first.txt")) << local["name"];
}

TEST_F(ArchiveSample, Gzip) {
    Write(u"named.txt", "content");
    const std::string file =
        Make("touch -d @1700000000 named.txt; gzip -9 named.txt", u"named.txt.gz");
    const Sample gzip("gzip_header", file);
    EXPECT_EQ(gzip.Hex("id"), "1F 8B");
    EXPECT_EQ(gzip["method"], "8");
    EXPECT_EQ(gzip["flags"], "8");
    EXPECT_EQ(gzip["modified"], "1700000000");
    EXPECT_EQ(gzip["system"], "3");
    EXPECT_EQ(gzip["name"], "\"named.txt\"");
}

TEST_F(ArchiveSample, Tar) {
    Write(u"file.txt", std::string(520, 'x'));
    const std::string file = Make("tar --format=ustar --owner=kim:1000 --group=lee:100 "
                                  "--mode=640 --mtime=@1700000000 -cf a.tar file.txt",
                                  u"a.tar");
    const Sample tar("tar_ustar_header", file);
    EXPECT_EQ(tar.Size(), 512U);
    EXPECT_EQ(tar["name"], "\"file.txt\"");
    EXPECT_EQ(tar["mode"], "\"0000640\"");
    EXPECT_EQ(tar["uid"], "\"0001750\"");
    EXPECT_EQ(tar["size"], "\"00000001010\"");
    EXPECT_EQ(tar["mtime"], "\"14524770400\"");
    EXPECT_EQ(tar.Hex("typeflag"), "0x30");
    EXPECT_EQ(tar["magic"], "\"ustar\"");
    EXPECT_EQ(tar["uname"], "\"kim\"");
    EXPECT_EQ(tar["gname"], "\"lee\"");
}

TEST_F(ArchiveSample, SevenZip) {
    Write(u"file.txt", std::string(1000, 'x'));
    const std::string file = Make("7zr a -bd a.7z file.txt", u"a.7z");
    const Sample archive("sevenzip_header", file);
    EXPECT_EQ(archive.Size(), 32U);
    EXPECT_EQ(archive.Hex("signature"), "37 7A BC AF 27 1C");
    EXPECT_EQ(archive["version_major"], "0");
    EXPECT_EQ(32 + Number(archive, "next_header_offset") + Number(archive, "next_header_size"),
              file.size());
}

TEST_F(ArchiveSample, Cpio) {
    Write(u"file.txt", "sixteen bytes...");
    const std::string file = Make("echo file.txt | cpio --quiet -o -H newc >a.cpio", u"a.cpio");
    const Sample cpio("cpio_newc_header", file);
    EXPECT_EQ(cpio.Size(), 110U);
    EXPECT_EQ(cpio["c_magic"], "\"070701\"");
    EXPECT_EQ(cpio["c_filesize"], "\"00000010\"");
    EXPECT_EQ(cpio["c_namesize"], "\"00000009\"");
    EXPECT_EQ(cpio["name"], "\"file.txt\"");
}

TEST_F(ArchiveSample, Xz) {
    Write(u"file.txt", "content");
    const std::string file = Make("xz -k --check=sha256 file.txt", u"file.txt.xz");
    const Sample xz("xz_stream_header", file);
    EXPECT_EQ(xz.Hex("magic"), "FD 37 7A 58 5A 00");
    EXPECT_EQ(xz["check_type"], "10");
    EXPECT_EQ(xz["block_size"], "2"); // 12 bytes
}

using DiskSample = Workshop;

TEST_F(DiskSample, MasterBootRecord) {
    const std::string file =
        Make("truncate -s 8M disk; sfdisk -q disk <<'END'\nlabel: dos\nlabel-id: 0x12345678\n"
             "start=2048, size=4096, type=83, bootable\nstart=6144, size=2048, type=c\nEND",
             u"disk");
    const Sample mbr("mbr", file);
    EXPECT_EQ(mbr.Size(), 512U);
    EXPECT_EQ(mbr.Hex("disk_signature"), "0x12345678");
    EXPECT_EQ(mbr.Hex("signature"), "0xAA55");
    EXPECT_EQ(mbr.Hex("partition1.boot_indicator"), "0x80");
    EXPECT_EQ(mbr.Hex("partition1.type"), "0x83");
    EXPECT_EQ(mbr["partition1.first_lba"], "2048");
    EXPECT_EQ(mbr["partition1.sectors"], "4096");
    EXPECT_EQ(mbr.Hex("partition2.type"), "0x0C");
    EXPECT_EQ(mbr["partition3.sectors"], "0");
}

TEST_F(DiskSample, GuidPartitionTable) {
    const std::string file =
        Make("truncate -s 8M disk; sfdisk -q disk <<'END'\nlabel: gpt\n"
             "label-id: 01234567-89AB-CDEF-0011-223344556677\n"
             "start=2048, size=4096, name=\"Data\", type=0FC63DAF-8483-4772-8E79-3D69D8477DE4\nEND",
             u"disk");
    const Sample header("gpt_header", file, 0x200);
    EXPECT_EQ(header["signature"], "\"EFI PART\"");
    EXPECT_EQ(header.Hex("revision"), "0x00010000");
    EXPECT_EQ(header["header_size"], "92");
    EXPECT_EQ(header["my_lba"], "1");
    EXPECT_EQ(Number(header, "alternate_lba"), file.size() / 512 - 1);
    EXPECT_EQ(header.Hex("disk_guid.data1"), "0x01234567");
    EXPECT_EQ(header.Hex("disk_guid.data4"), "00 11 22 33 44 55 66 77");
    EXPECT_EQ(header["number_of_entries"], "128");
    EXPECT_EQ(header["entry_size"], "128");

    const Sample entry("gpt_partition_entry", file, 512 * Number(header, "partition_entry_lba"));
    EXPECT_EQ(entry.Size(), 128U);
    EXPECT_EQ(entry.Hex("type_guid.data1"), "0x0FC63DAF");
    EXPECT_EQ(entry["first_lba"], "2048");
    EXPECT_EQ(entry["last_lba"], "6143");
    EXPECT_TRUE(entry.Hex("name").starts_with("44 00 61 00 74 00 61 00 00 00"))
        << entry.Hex("name");
}

TEST_F(DiskSample, Fat32) {
    const std::string file = Make("truncate -s 34M volume; "
                                  "mkfs.fat -F 32 -s 1 -n KIVRATEST -i 1234ABCD volume",
                                  u"volume");
    const Sample fat("fat32_boot_sector", file);
    EXPECT_EQ(fat.Size(), 512U);
    EXPECT_EQ(fat["BPB_BytsPerSec"], "512");
    EXPECT_EQ(fat["BPB_NumFATs"], "2");
    EXPECT_EQ(Number(fat, "BPB_TotSec32"), file.size() / 512);
    EXPECT_EQ(fat["BPB_RootClus"], "2");
    EXPECT_EQ(fat.Hex("BS_VolID"), "0x1234ABCD");
    EXPECT_EQ(fat["BS_VolLab"], Pad("KIVRATEST", 11));
    EXPECT_EQ(fat["BS_FilSysType"], Pad("FAT32", 8));
    EXPECT_EQ(fat.Hex("signature"), "0xAA55");
}

TEST_F(DiskSample, Ntfs) {
    const std::string file =
        Make("truncate -s 16M volume; mkntfs -q -Q -F -s 512 -c 4096 volume", u"volume");
    const Sample ntfs("ntfs_boot_sector", file);
    EXPECT_EQ(ntfs.Size(), 512U);
    EXPECT_EQ(ntfs["oem_id"], Pad("NTFS", 8));
    EXPECT_EQ(ntfs["bytes_per_sector"], "512");
    EXPECT_EQ(ntfs["sectors_per_cluster"], "8");
    EXPECT_EQ(file.substr(4096 * Number(ntfs, "mft_cluster"), 4), "FILE");
    EXPECT_EQ(file.substr(4096 * Number(ntfs, "mft_mirror_cluster"), 4), "FILE");
    EXPECT_EQ(ntfs.Hex("signature"), "0xAA55");
}

TEST_F(DiskSample, Ext4) {
    const std::string file = Make("truncate -s 16M volume; mkfs.ext4 -q -F -L kivra -b 4096 -N 64 "
                                  "-U 00112233-4455-6677-8899-aabbccddeeff volume",
                                  u"volume");
    const Sample ext4("ext4_superblock", file, 1024);
    EXPECT_EQ(ext4.Hex("s_magic"), "0xEF53");
    EXPECT_EQ(ext4["s_blocks_count_lo"], "4096");
    EXPECT_EQ(ext4["s_inodes_count"], "64");
    EXPECT_EQ(ext4["s_log_block_size"], "2");
    EXPECT_EQ(ext4["s_inode_size"], "256");
    EXPECT_EQ(ext4["s_volume_name"], "\"kivra\"");
    EXPECT_EQ(ext4.Hex("s_uuid"), "00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF");
}

TEST_F(DiskSample, Iso9660) {
    Write(u"file.txt", "content");
    const std::string file =
        Make("xorriso -as mkisofs -quiet -V KIVRA -publisher SOMEONE -o a.iso file.txt", u"a.iso");
    const Sample iso("iso9660_volume_descriptor", file, 0x8000);
    EXPECT_EQ(iso["type"], "1");
    EXPECT_EQ(iso["identifier"], "\"CD001\"");
    EXPECT_EQ(iso["volume_identifier"], Pad("KIVRA", 32));
    EXPECT_EQ(iso["logical_block_size"], "2048");
    EXPECT_LE(Number(iso, "volume_space_size"), file.size() / 2048);
    EXPECT_TRUE(iso["publisher_identifier"].starts_with("\"SOMEONE "));
    const Sample big("iso9660_volume_descriptor", file, 0x8000, ByteOrder::Big);
    EXPECT_EQ(big["volume_space_size_be"], iso["volume_space_size"]);
    EXPECT_EQ(big["path_table_size_be"], iso["path_table_size"]);
}

TEST_F(DiskSample, SquashFs) {
    Write(u"file.txt", "content");
    const std::string file =
        Make("mksquashfs file.txt a.sqfs -quiet -no-progress -comp gzip -b 64K", u"a.sqfs");
    const Sample squash("squashfs_superblock", file);
    EXPECT_EQ(squash.Size(), 96U);
    EXPECT_EQ(squash["s_magic"], "\"hsqs\"");
    EXPECT_EQ(squash["inodes"], "2");
    EXPECT_EQ(squash["block_size"], "65536");
    EXPECT_EQ(squash["block_log"], "16");
    EXPECT_EQ(squash["compression"], "1");
    EXPECT_EQ(squash["s_major"], "4");
    EXPECT_LE(Number(squash, "bytes_used"), file.size());
}

using DatabaseSample = Workshop;

TEST_F(DatabaseSample, Sqlite) {
    const std::string file = Make("sqlite3 a.db 'pragma page_size=8192; pragma user_version=77; "
                                  "pragma application_id=4660; create table t(x);'",
                                  u"a.db");
    const Sample sqlite("sqlite_header", file, 0, ByteOrder::Big);
    EXPECT_EQ(sqlite.Size(), 100U);
    EXPECT_EQ(sqlite["magic"], "\"SQLite format 3\"");
    EXPECT_EQ(sqlite["page_size"], "8192");
    EXPECT_EQ(Number(sqlite, "database_pages") * 8192, file.size());
    EXPECT_EQ(sqlite["text_encoding"], "1");
    EXPECT_EQ(sqlite["user_version"], "77");
    EXPECT_EQ(sqlite.Hex("application_id"), "0x00001234");
}

} // namespace
} // namespace kvx
