#include "app/about_command.h"

#include "app/license_text.h"
#include "platform/text.h"

#include <algorithm>

namespace kvx {
namespace {

// Takes the first line, without its end, away from `text`.
std::string_view TakeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    return line;
}

} // namespace

std::u16string WithWholeParagraphs(std::string_view text) {
    std::string paragraphs;
    bool insideParagraph = false;
    while (!text.empty()) {
        const std::string_view line = TakeLine(text);
        if (insideParagraph) paragraphs += line.empty() ? "\r\n\r\n" : " ";
        paragraphs += line;
        insideParagraph = !line.empty();
    }
    return Utf8ToUtf16(paragraphs);
}

std::string_view CopyrightLine(std::string_view text) {
    text.remove_prefix(std::min(text.find("Copyright"), text.size()));
    return TakeLine(text);
}

void ShowAbout(Shell& shell) {
    const AboutContent content{
        kProductName, shell.Text("about.version_label") + u" " + kAppVersionLabel,
        Utf8ToUtf16(CopyrightLine(kLicenseText)), kHomepage, WithWholeParagraphs(kLicenseText)};
    shell.WhileModal([&](ShellHost& host) { host.ShowAboutBox(content, shell.TextsByKey()); });
}

} // namespace kvx
