#include "app/encoding_commands.h"

#include "app/pane_commands.h"

#include <algorithm>

namespace kvx {
namespace {

void KeepFavorites(Shell& shell) {
    shell.SaveSettings();
    shell.RebuildMenu();
}

} // namespace

void SelectEncoding(Shell& shell, TextEncoding encoding) {
    if (shell.View().State().encoding != encoding) shell.View().SetEncoding(encoding);
    shell.Settings().textEncoding = encoding;
    shell.SaveSettings();
    shell.RebuildMenu();
    shell.RefreshStatus();
    ScheduleInspectorUpdate(shell);
}

void SelectFavoriteEncoding(Shell& shell, std::uint32_t index) {
    const std::vector<TextEncoding>& favorites = shell.Settings().favoriteEncodings;
    if (index < favorites.size()) SelectEncoding(shell, favorites[index]);
}

void AddFavoriteEncoding(Shell& shell) {
    std::vector<TextEncoding>& favorites = shell.Settings().favoriteEncodings;
    const TextEncoding current = shell.View().State().encoding;
    if (std::ranges::count(favorites, current) != 0 || favorites.size() >= kMaxFavoriteEncodings)
        return;
    favorites.push_back(current);
    KeepFavorites(shell);
}

void RemoveFavoriteEncoding(Shell& shell) {
    std::vector<TextEncoding>& favorites = shell.Settings().favoriteEncodings;
    const auto found = std::ranges::find(favorites, shell.View().State().encoding);
    if (found == favorites.end()) return;
    favorites.erase(found);
    KeepFavorites(shell);
}

void ClearFavoriteEncodings(Shell& shell) {
    if (shell.Settings().favoriteEncodings.empty()) return;
    shell.Settings().favoriteEncodings.clear();
    KeepFavorites(shell);
}

} // namespace kvx
