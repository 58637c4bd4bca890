// What the about box says.
#pragma once

#include "app/shell.h"

#include <string>
#include <string_view>

namespace kvx {

inline constexpr char16_t kProductName[] = u"Binary Editor Kivra";
inline constexpr char16_t kHomepage[] = u"https://kivra.example/";

/// `text`, whose lines are broken at some width, with each paragraph on a line of its own: what
/// shows it breaks the lines at its own width. An empty line stays between paragraphs; lines end in
/// CR LF.
std::u16string WithWholeParagraphs(std::string_view text);

/// The first line of `text` that begins with "Copyright"; empty when there is none.
std::string_view CopyrightLine(std::string_view text);

void ShowAbout(Shell& shell);

} // namespace kvx
