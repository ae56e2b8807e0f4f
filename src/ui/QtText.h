#pragma once

// The core speaks UTF-8 std::string; Qt speaks QString.

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

namespace dorvik {

inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string stdText(const QString& text) {
    return text.toStdString();
}

// A text of the core (a reason, a category, a plan's title) as the pages show it: its key through
// the application's translation, as tr() does with the pages' own texts.
QString shownText(std::string_view key);

// A name or a path as the pages show it. A name may hold any byte but "/": control characters
// (a newline, a tab, an escape) are drawn as "?", so that a row keeps its one line, and bytes
// that are no UTF-8 become U+FFFD.
QString nameText(std::string_view name);

// "1 file", "2 files", "1,234 files".
QString filesText(int64_t count);

} // namespace dorvik
