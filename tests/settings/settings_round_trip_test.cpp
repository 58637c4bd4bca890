// Written settings come back equal but for a few consequences of how the file is read.
#include "settings/settings_file.h"
#include "tests/settings/random_settings.h"
#include "tests/settings/settings_model.h"
#include "tests/settings/settings_printer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kvx::test {
namespace {

/// Control characters without a letter of their own come back as the text of their code.
std::u16string WithControlsAsText(const std::u16string& text) {
    static constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    static constexpr std::u16string_view kNamed = u"\b\t\n\f\r";
    std::u16string read;
    for (const char16_t unit : text) {
        if (unit < 0x20 && kNamed.find(unit) == std::u16string_view::npos) {
            read += u"u00";
            read += {kDigits[unit >> 4U], kDigits[unit & 0xFU]};
        } else {
            read += unit;
        }
    }
    return read;
}

/// What the reader makes of the written `settings`.
AppSettings AsReadBack(AppSettings settings) {
    settings = AsStored(std::move(settings));
    ForEachString(settings, [](std::u16string& text) { text = WithControlsAsText(text); });
    // The language group of the encoding stands before the language of the interface.
    if (settings.textEncoding >= TextEncoding::ShiftJis) settings.uiLanguage = UiLanguage::System;
    // The list ends at the first closing bracket, inside a path too.
    std::vector<std::u16string>& paths = settings.recentFiles;
    paths.erase(std::ranges::find_if(paths,
                                     [](const std::u16string& path) {
                                         return path.find(u']') != std::u16string::npos;
                                     }),
                paths.end());
    return settings;
}

TEST(SettingsRoundTrip, GivesBackRandomRecords) {
    RandomSettings random(20240611);
    for (int step = 0; step < 4000; ++step) {
        const AppSettings written = random.Next();
        AppSettings read = random.Next(); // every field is overwritten
        ReadSettingsText(WriteSettingsText(written), read);
        ASSERT_EQ(read, AsReadBack(written)) << "step " << step;
    }
}

TEST(SettingsRoundTrip, KeepsEveryEncodingAndListsOfAnyLength) {
    for (std::uint32_t value = 0; value < kTextEncodingCount; ++value) {
        AppSettings written;
        written.textEncoding = static_cast<TextEncoding>(value);
        written.recentFiles.assign(1000, u"C:\\file.bin");
        written.searchHistory.assign(1000, {u"hex", u"00"});
        AppSettings read;
        ReadSettingsText(WriteSettingsText(written), read);
        EXPECT_EQ(read, written);
    }
}

} // namespace
} // namespace kvx::test
