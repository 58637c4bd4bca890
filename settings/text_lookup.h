// How portable functions ask for a localised text.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kvx {

/// Gives the text for a key of the string files; the key itself where there is no text.
using TextLookup = std::function<std::u16string(std::string_view key)>;

} // namespace kvx
