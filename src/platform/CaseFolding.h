#pragma once

// Case-insensitive text search over UTF-8, the way a search field is expected to behave: "café"
// finds "CAFÉ.txt", whatever the locale the program was started in.

#include <string>
#include <string_view>

namespace dorvik::platform {

// The text as code points in lower case. A byte that is not part of valid UTF-8 becomes a code
// point of its own (U+DC00 plus the byte), so it still matches only itself.
std::u32string foldedCase(std::string_view utf8);

// The same, appended to `folded`: a caller that folds many texts reuses one buffer.
void appendFoldedCase(std::string_view utf8, std::u32string& folded);

// Whether `folded` (from foldedCase) holds `foldedQuery`; an empty query is held by everything.
bool containsFolded(const std::u32string& folded, const std::u32string& foldedQuery);

} // namespace dorvik::platform
