#pragma once

// A file that only grows, one record a line, for journals that must survive a kill: each line is
// one write(2) on a descriptor opened with O_APPEND, so a killed process loses no line whose
// write returned, and never leaves half of one that a reader would take for whole (a line
// without its newline is no line). Not flushed to disk: it guards against a killed process, not
// a lost machine.

#include <string>
#include <string_view>

namespace dorvik::platform {

class AppendOnlyFile {
public:
    // Creates the file, readable by this user only; it must not exist yet. `isOpen` says whether
    // that worked.
    explicit AppendOnlyFile(std::string path);
    ~AppendOnlyFile();
    AppendOnlyFile(const AppendOnlyFile&) = delete;
    AppendOnlyFile& operator=(const AppendOnlyFile&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    const std::string& path() const { return path_; }

    // Appends `line` and a newline in one write. False when it could not be written whole.
    bool appendLine(std::string_view line);

    // Closes and removes the file.
    void discard();

private:
    std::string path_;
    int descriptor_ = -1;
};

} // namespace dorvik::platform
