#pragma once

// Paths as the terminal shows them. The text reports give each item one line, and a name may hold
// any byte but "/" and NUL: a newline, a tab or bytes that are no UTF-8 would break the line or the
// terminal. Such names are quoted the way `ls` quotes them on a terminal, so that the line can be
// pasted back into a shell.

#include <string>
#include <string_view>

namespace dorvik::cli {

// `text` as it is when every byte is printable UTF-8; otherwise in the shell's quoting:
// 'printable runs' in single quotes, each other byte as $'\n' or $'\377'.
std::string quotedForTerminal(std::string_view text);

// The path as the reports show it ("~" for the home folder), quoted where it must be.
std::string shownPath(std::string_view path);

} // namespace dorvik::cli
