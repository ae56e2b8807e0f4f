#pragma once

// The words that are false on a Linux desktop: the Mac, its system, its file manager, its
// filesystem, its settings and its privacy gate. Names of things only a Mac-like layout holds
// (Xcode, iCloud, the iPhone) are no mistake where such things are found, and are not listed.

#include <string>
#include <string_view>
#include <vector>

namespace dorvik::test {

// The Mac words `text` holds, each once, in the order of the list; empty when there is none.
std::vector<std::string> macWordsIn(std::string_view text);

} // namespace dorvik::test
