// The menu's choices on the real window: text encodings and their favourites, languages, zoom.
#include "file_bytes.h"
#include "in_process.h"
#include "program_texts.h"

#include "hexview/frame.h"
#include "settings/settings_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace kvx::test {
namespace {

using namespace std::string_view_literals;

// One row of each encoding's own text.
struct Sample {
    TextEncoding encoding;
    std::string_view bytes;
    std::u16string_view text;
};
constexpr Sample kSamples[] = {
    {TextEncoding::Ascii, "\x4B\x69\x76\x72\x61\x20\x72\x65\x61\x64\x73\x20\x74\x68\x69\x73"sv,
     u"Kivra reads this"},
    {TextEncoding::Utf8, "\x47\x72\xC3\xB6\xC3\x9F\x65\x20\xE2\x86\x92\x20\x35\xC2\xB5\x6D"sv,
     u"Größe → 5µm"},
    {TextEncoding::Utf16Le, "\x95\x03\xBB\x03\xBB\x03\xAC\x03\xB4\x03\xB1\x03\x20\x00\xAC\x20"sv,
     u"Ελλάδα €"},
    {TextEncoding::Utf16Be, "\x04\x1F\x04\x40\x04\x38\x04\x32\x04\x35\x04\x42\x00\x21\x00\x21"sv,
     u"Привет!!"},
    {TextEncoding::ShiftJis, "\x93\xFA\x96\x7B\x8C\xEA\x82\xCC\x83\x65\x83\x4C\x83\x58\x83\x67"sv,
     u"日本語のテキスト"},
    {TextEncoding::Windows949, "\xC7\xD1\xB1\xB9\xBE\xEE\x8C\x63\xB9\xE6\xB0\xA2\xC7\xCF\xC5\xD8"sv,
     u"한국어똠방각하텍"},
    {TextEncoding::EucKr, "\xC7\xD1\xB1\xB9\xBE\xEE\xB9\xAE\xBC\xAD\xC6\xC4\xC0\xCF\xC0\xD3"sv,
     u"한국어문서파일임"},
    {TextEncoding::Big5, "\xC1\x63\xC5\xE9\xA4\xA4\xA4\xE5\xC0\xC9\xAE\xD7\xB4\xFA\xB8\xD5"sv,
     u"繁體中文檔案測試"},
    {TextEncoding::Gbk, "\xBC\xF2\xCC\xE5\xD6\xD0\xCE\xC4\xCE\xC4\xBC\xFE\xB2\xE2\xCA\xD4"sv,
     u"简体中文文件测试"},
    {TextEncoding::Tis620, "\xCA\xC7\xD1\xCA\xB4\xD5\xAA\xD2\xC7\xE2\xC5\xA1\xA4\xC3\xD1\xBA"sv,
     u"\u0E2A\u0E27\u0E31\u0E2A\u0E14\u0E35\u0E0A\u0E32\u0E27\u0E42\u0E25\u0E01\u0E04\u0E23\u0E31"
     u"\u0E1A"},
    {TextEncoding::Windows1258,
     "\x56\x69\xEA\xF2\x74\x20\x4E\x61\x6D\x20\xF0\x65\xF2\x70\x21\x21"sv,
     u"Viê\u0323t Nam đe\u0323p!!"},
    {TextEncoding::IsciiDevanagari,
     "\xC6\xCC\xD7\xE8\xC2\xE1\x20\xC6\xCC\xD7\xE8\xC2\xE1\x6F\x6B\x21"sv,
     u"\u0928\u092E\u0938\u094D\u0924\u0947 \u0928\u092E\u0938\u094D\u0924\u0947ok!"},
};
static_assert(std::size(kSamples) == kTextEncodingCount);

std::vector<UINT> CheckedEncodings(const std::vector<ShownItem>& items) {
    std::vector<UINT> ids;
    for (const ShownItem& item : items) {
        if (item.checked && item.id >= CommandId(Command::EncodingFirst) &&
            item.id <= CommandId(Command::EncodingLast))
            ids.push_back(item.id);
        std::ranges::copy(CheckedEncodings(item.children), std::back_inserter(ids));
    }
    return ids;
}

std::vector<std::u16string> Captions(const std::vector<ShownItem>& items) {
    std::vector<std::u16string> captions;
    for (const ShownItem& item : items) {
        if (!item.text.empty()) captions.push_back(item.text);
        std::ranges::copy(Captions(item.children), std::back_inserter(captions));
    }
    return captions;
}

class MenuChoicesTest : public testing::Test {
protected:
    AppSettings Stored() const {
        AppSettings settings;
        LoadSettings(program_.SettingsFile().u16string(), settings);
        return settings;
    }

    InProcessWindow ShowSamples() const {
        std::string bytes;
        for (const Sample& sample : kSamples)
            bytes += sample.bytes;
        return InProcessWindow(program_, files_.Write(u"samples.bin", bytes));
    }

    ProgramCopy program_;
    TempFolder files_;
    ProgramTexts text_{program_};
};

TEST_F(MenuChoicesTest, EachEncodingIsShownInMenuStatusSettingsAndPicture) {
    InProcessWindow window = ShowSamples();
    std::set<std::vector<std::uint32_t>> pictures;
    for (const Sample& sample : kSamples) {
        const auto number = static_cast<UINT>(sample.encoding);
        const std::u16string name(EncodingDisplayName(sample.encoding));
        SCOPED_TRACE(number);
        window.Run(Command::EncodingFirst + number);
        EXPECT_EQ(CheckedEncodings(window.Menu()),
                  std::vector<UINT>{CommandId(Command::EncodingFirst + number)});
        EXPECT_NE(window.Status().find(text_("status.encoding") + u": " + name + u"  "),
                  std::u16string::npos);
        EXPECT_EQ(Stored().textEncoding, sample.encoding);
        std::u16string row;
        const Frame frame = BuildFrame(window.State());
        for (const FrameText& cell : frame.cells.at(number).texts)
            row += cell.text;
        EXPECT_EQ(row, sample.text);
        window.Paint();
        EXPECT_TRUE(pictures.insert(ClientPicture(window.View()).pixels).second)
            << "the picture of another encoding";
    }
}

TEST_F(MenuChoicesTest, FavouriteEncodingsComeGoAndSurviveARestart) {
    {
        InProcessWindow window(program_);
        for (const UINT number : {8U, 4U, 11U, 1U}) {
            window.Run(Command::EncodingFirst + number);
            window.Run(Command::FavoriteAdd);
        }
        EXPECT_TRUE(InProcessWindow::Find(window.Menu(), Command::FavoriteAdd)->greyed) << "full";
        EXPECT_TRUE(InProcessWindow::Find(window.Menu(), Command::FavoriteRemove)->greyed);
    }
    const std::string settings = program_.SettingsText();
    InProcessWindow window(program_);
    EXPECT_EQ(program_.SettingsText(), settings) << "a start writes nothing";
    const std::vector<ShownItem> menu = window.Menu();
    EXPECT_EQ(InProcessWindow::Find(menu, Command::FavoriteFirst)->text, u"\u2605 GBK");
    EXPECT_EQ(InProcessWindow::Find(menu, Command::FavoriteFirst + 2)->text,
              u"\u2605 ISCII (Devanagari)");
    const std::pair<UINT, UINT> favorites[] = {{0, 1015}, {2, 1018}, {1, 1011}};
    for (const auto& [index, encoding] : favorites) {
        window.Run(Command::FavoriteFirst + index);
        EXPECT_EQ(CheckedEncodings(window.Menu()), std::vector<UINT>{encoding});
    }
    EXPECT_TRUE(InProcessWindow::Find(window.Menu(), Command::FavoriteFirst + 1)->checked);
    window.Run(Command::FavoriteRemove);
    EXPECT_EQ(InProcessWindow::Find(window.Menu(), Command::FavoriteFirst + 2), nullptr);
    EXPECT_FALSE(InProcessWindow::Find(window.Menu(), Command::FavoriteAdd)->greyed);
    window.Run(Command::FavoriteClear);
    EXPECT_EQ(InProcessWindow::Find(window.Menu(), Command::FavoriteFirst), nullptr);
    EXPECT_TRUE(InProcessWindow::Find(window.Menu(), Command::FavoriteClear)->greyed);
}

TEST_F(MenuChoicesTest, EveryMenuTextChangesWithTheLanguageAndBack) {
    InProcessWindow window(program_);
    const std::vector<std::u16string> system = Captions(window.Menu());
    window.Run(Command::LanguageEnglish);
    const std::vector<std::u16string> english = Captions(window.Menu());
    window.Run(Command::LanguageJapanese);
    const std::vector<std::u16string> japanese = Captions(window.Menu());
    ASSERT_EQ(japanese.size(), english.size());
    for (std::size_t index = 0; index < english.size(); ++index) {
        EXPECT_NE(japanese[index], english[index]);
        EXPECT_EQ(english[index].find(u"menu."), std::u16string::npos) << "a key without a text";
    }
    window.Run(Command::LanguageEnglish);
    EXPECT_EQ(Captions(window.Menu()), english);
    window.Run(Command::LanguageSystem);
    EXPECT_EQ(Captions(window.Menu()), system);
    EXPECT_EQ(Stored().uiLanguage, UiLanguage::System);
}

TEST_F(MenuChoicesTest, TheZoomStopsAtItsLimitsAndIsNotStored) {
    InProcessWindow window = ShowSamples();
    const std::string settings = program_.SettingsText();
    const auto zoomAfter = [&](int times, Command command) {
        while (times-- > 0)
            window.Run(command);
        return window.Status().substr(window.Status().rfind(u' ') + 1);
    };
    EXPECT_EQ(zoomAfter(16, Command::ZoomIn), u"250%");
    EXPECT_EQ(zoomAfter(1, Command::ZoomReset), u"100%");
    EXPECT_EQ(zoomAfter(5, Command::ZoomOut), u"60%");
    EXPECT_EQ(zoomAfter(1, Command::ZoomReset), u"100%");
    window.Zoom(true);
    EXPECT_EQ(zoomAfter(0, Command::ZoomReset), u"110%");
    window.Zoom(false);
    EXPECT_EQ(zoomAfter(0, Command::ZoomReset), u"100%");
    EXPECT_EQ(program_.SettingsText(), settings);
}

} // namespace
} // namespace kvx::test
