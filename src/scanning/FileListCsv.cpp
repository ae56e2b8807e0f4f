#include "scanning/FileListCsv.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "platform/FileIO.h"

namespace dorvik {

namespace {

void appendField(std::string& row, std::string_view field) {
    row += '"';
    for (char c : field) {
        if (c == '"') {
            row += '"';
        }
        row += c;
    }
    row += '"';
}

} // namespace

std::string fileListCsv(const std::vector<FileNodePtr>& nodes) {
    std::string text(fileListCsvHeader);
    for (const auto& node : nodes) {
        const std::string fields[] = {
            canonicalPath(node->path()),
            node->name,
            std::to_string(node->size),
            std::to_string(node->logicalSize),
            std::string(info(node->kind).displayName),
            std::string(info(node->bucket).displayName),
            TextForms::iso8601(node->modified),
        };
        for (size_t i = 0; i < std::size(fields); ++i) {
            if (i > 0) {
                text += ',';
            }
            appendField(text, fields[i]);
        }
        text += '\n';
    }
    return text;
}

bool writeFileListCsv(const std::string& path, const std::vector<FileNodePtr>& nodes) {
    // The user's own export: readable as any new file of theirs (the umask decides).
    return platform::writeFileAtomically(path, fileListCsv(nodes), 0666);
}

} // namespace dorvik
