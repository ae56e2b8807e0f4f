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

// "1 file", "2 files", "1,234 files".
QString filesText(int64_t count);

} // namespace dorvik
