#include "app/about_command.h"

#include "app/license_text.h"
#include "tests/app/shell_fakes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace kvx {
namespace {

TEST(AboutCommand, ShowsTheLicenceFileInWholeParagraphs) {
    const auto root = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
    std::ifstream file(root / "LICENSE", std::ios::binary);
    EXPECT_EQ(kLicenseText, std::string(std::istreambuf_iterator<char>(file), {}));
    EXPECT_EQ(WithWholeParagraphs("Title\n\nfirst\nline\n\nlast\n"),
              u"Title\r\n\r\nfirst line\r\n\r\nlast");
}

TEST(AboutCommand, NamesProductVersionAndOwners) {
    ShellRig rig;
    ShowAbout(rig.shell);
    EXPECT_EQ(rig.host.aboutBox.productName, u"Binary Editor Kivra");
    EXPECT_EQ(rig.host.aboutBox.version, u"about.version_label v1.04");
    EXPECT_TRUE(rig.host.aboutBox.rights.starts_with(u"Copyright (c) 20"));
    EXPECT_TRUE(rig.host.aboutBox.license.starts_with(u"MIT License\r\n\r\n"));
}

} // namespace
} // namespace kvx
