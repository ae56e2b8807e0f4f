#pragma once

// What a file is, from its extension alone. The raw values are stored in the scan archive, so the
// order of the cases never changes.

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace dorvik {

enum class FileKind : uint8_t {
    document = 0,
    image = 1,
    video = 2,
    audio = 3,
    archive = 4,
    diskImage = 5,
    code = 6,
    application = 7,
    other = 8,
};

inline constexpr std::array<FileKind, 9> allFileKinds = {
    FileKind::document,  FileKind::image, FileKind::video,       FileKind::audio, FileKind::archive,
    FileKind::diskImage, FileKind::code,  FileKind::application, FileKind::other,
};

struct FileKindInfo {
    std::string_view caseName; // "diskImage": the name used in JSON
    std::string_view displayName;
    std::string_view symbol; // a symbol name; the user interface maps it to an icon
    std::string_view colour; // "#RRGGBB"
};

const FileKindInfo& info(FileKind kind);

// None for a byte that is no case.
std::optional<FileKind> fileKindFromRaw(uint8_t raw);

std::optional<FileKind> fileKindFromCaseName(std::string_view name);

} // namespace dorvik
