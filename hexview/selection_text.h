// The text that copying a selection puts on the clipboard.
#pragma once

#include "document/read_only_document.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kvx {

/// The bytes from `first` to `last`, both included, as "0A 1B FF". Bytes that the document no
/// longer gives are left out; nothing when it gives none, or when there is no memory for the text.
std::optional<std::u16string> HexText(const IReadOnlyDocument& document, std::uint64_t first,
                                      std::uint64_t last);

} // namespace kvx
