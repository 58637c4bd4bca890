#include "app/font_command.h"

#include <utility>

namespace kvx {
namespace {

FontChoice CurrentFont(const Shell& shell, float sizeDip) {
    constexpr float kPointsPerDip = 72.0F / 96.0F;
    const AppSettings& settings = shell.Settings();
    return {settings.fontFamily, sizeDip * kPointsPerDip, settings.bold, settings.italic};
}

} // namespace

void ChooseHexViewFont(Shell& shell) {
    const FontDialogContent content{FixedPitchFamilies(shell.Host().InstalledFonts()),
                                    CurrentFont(shell, shell.View().State().fontSizeDip)};
    if (content.families.empty()) {
        shell.ShowError(shell.Text("error.font_not_monospace"));
        return;
    }
    const auto chosen = shell.WhileModal(
        [&](ShellHost& host) { return host.AskForFont(content, shell.TextsByKey()); });
    if (!chosen) return;
    AppSettings& settings = shell.Settings();
    settings.fontFamily = chosen->family;
    settings.fontSize = chosen->points;
    settings.bold = chosen->bold;
    settings.italic = chosen->italic;
    shell.View().SetFont(chosen->family, chosen->points, chosen->bold, chosen->italic);
    shell.SaveSettings();
}

} // namespace kvx
