// The commands that choose the text encoding and keep the favourite ones.
#pragma once

#include "app/shell.h"

#include <cstdint>

namespace kvx {

/// Shows the text column in the encoding and stores it, also when it is the same.
void SelectEncoding(Shell& shell, TextEncoding encoding);

/// Nothing happens when there are not so many favourites.
void SelectFavoriteEncoding(Shell& shell, std::uint32_t index);

void AddFavoriteEncoding(Shell& shell); ///< the current one, unless it is one or the list is full
void RemoveFavoriteEncoding(Shell& shell); ///< the current one, if it is one
void ClearFavoriteEncodings(Shell& shell);

} // namespace kvx
