#include "scanning/FileKind.h"

namespace dorvik {

namespace {

constexpr std::array<FileKindInfo, allFileKinds.size()> kindInfos = {{
    {"document", "Documents", "doc.text.fill", "#34C3A0"},
    {"image", "Images", "photo.fill", "#F5B83D"},
    {"video", "Video", "film.fill", "#FF6B8A"},
    {"audio", "Audio", "waveform", "#B57BFF"},
    {"archive", "Archives", "archivebox.fill", "#FF9F43"},
    {"diskImage", "Disk Images & Installers", "opticaldiscdrive.fill", "#FF9F43"},
    {"code", "Code", "chevron.left.forwardslash.chevron.right", "#3DD6F5"},
    {"application", "Applications", "app.fill", "#5B8CFF"},
    {"other", "Other", "questionmark.square.dashed", "#A0A4B0"},
}};

} // namespace

const FileKindInfo& info(FileKind kind) {
    return kindInfos[static_cast<size_t>(kind)];
}

std::optional<FileKind> fileKindFromRaw(uint8_t raw) {
    if (raw >= allFileKinds.size()) {
        return std::nullopt;
    }
    return static_cast<FileKind>(raw);
}

std::optional<FileKind> fileKindFromCaseName(std::string_view name) {
    for (FileKind kind : allFileKinds) {
        if (info(kind).caseName == name) {
            return kind;
        }
    }
    return std::nullopt;
}

} // namespace dorvik
