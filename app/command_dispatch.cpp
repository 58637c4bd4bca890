#include "app/command_dispatch.h"

#include "app/about_command.h"
#include "app/commands.h"
#include "app/encoding_commands.h"
#include "app/file_commands.h"
#include "app/find_command.h"
#include "app/font_command.h"
#include "app/goto_command.h"
#include "app/pane_commands.h"
#include "app/view_commands.h"

namespace kvx {
namespace {

// The commands from `first` to `last`; `run` gets the position within them.
struct CommandRow {
    Command first;
    Command last;
    void (*run)(Shell& shell, std::uint32_t index);
};

constexpr auto kLastCommand = static_cast<Command>(UINT32_MAX);

constexpr CommandRow kCommands[] = {
    {Command::Open, Command::Open, [](Shell& shell, std::uint32_t) { OpenWithDialog(shell); }},
    {Command::Save, Command::Save, [](Shell& shell, std::uint32_t) { SaveFile(shell); }},
    {Command::Close, Command::Close, [](Shell& shell, std::uint32_t) { CloseFile(shell); }},
    {Command::ToggleReadOnly, Command::ToggleReadOnly,
     [](Shell& shell, std::uint32_t) { ToggleReadOnly(shell); }},
    {Command::Find, Command::Find, [](Shell& shell, std::uint32_t) { FindInFile(shell); }},
    {Command::GoTo, Command::GoTo, [](Shell& shell, std::uint32_t) { GoToOffset(shell); }},
    {Command::EncodingFirst, Command::EncodingLast,
     [](Shell& shell, std::uint32_t index) {
         SelectEncoding(shell, static_cast<TextEncoding>(index));
     }},
    {Command::FavoriteAdd, Command::FavoriteAdd,
     [](Shell& shell, std::uint32_t) { AddFavoriteEncoding(shell); }},
    {Command::FavoriteRemove, Command::FavoriteRemove,
     [](Shell& shell, std::uint32_t) { RemoveFavoriteEncoding(shell); }},
    {Command::FavoriteClear, Command::FavoriteClear,
     [](Shell& shell, std::uint32_t) { ClearFavoriteEncodings(shell); }},
    {Command::ThemeLight, Command::ThemeBlack,
     [](Shell& shell, std::uint32_t index) { SelectTheme(shell, static_cast<Theme>(index)); }},
    {Command::ZoomOut, Command::ZoomOut, [](Shell& shell, std::uint32_t) { ZoomOut(shell); }},
    {Command::ZoomIn, Command::ZoomIn, [](Shell& shell, std::uint32_t) { ZoomIn(shell); }},
    {Command::ZoomReset, Command::ZoomReset, [](Shell& shell, std::uint32_t) { ResetZoom(shell); }},
    {Command::ToggleDataInspector, Command::ToggleDataInspector,
     [](Shell& shell, std::uint32_t) { ToggleInspector(shell); }},
    {Command::ToggleStructView, Command::ToggleStructView,
     [](Shell& shell, std::uint32_t) { ToggleStructView(shell); }},
    {Command::Font, Command::Font, [](Shell& shell, std::uint32_t) { ChooseHexViewFont(shell); }},
    {Command::Exit, Command::Exit, [](Shell& shell, std::uint32_t) { Exit(shell); }},
    {Command::LanguageSystem, Command::LanguageJapanese,
     [](Shell& shell, std::uint32_t index) {
         SelectLanguage(shell, static_cast<UiLanguage>(index));
     }},
    {Command::About, Command::About, [](Shell& shell, std::uint32_t) { ShowAbout(shell); }},
    {Command::FavoriteFirst, Command::FavoriteLast, SelectFavoriteEncoding},
    {Command::RecentFirst, kLastCommand,
     [](Shell& shell, std::uint32_t index) { OpenRecentFile(shell, index); }},
};

} // namespace

bool DispatchCommand(Shell& shell, std::uint32_t id) {
    for (const CommandRow& row : kCommands) {
        const std::uint32_t first = CommandId(row.first);
        if (id < first || id > CommandId(row.last)) continue;
        if (shell.AcceptsCommands()) row.run(shell, id - first);
        return true;
    }
    return false;
}

} // namespace kvx
