#include "platform/AppendOnlyFile.h"

#include "platform/FileIO.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace dorvik::platform {

AppendOnlyFile::AppendOnlyFile(std::string path) : path_(std::move(path)) {
    descriptor_ =
        open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC,
             privateFileMode);
}

AppendOnlyFile::~AppendOnlyFile() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

bool AppendOnlyFile::appendLine(std::string_view line) {
    if (descriptor_ < 0) {
        return false;
    }
    std::string record(line);
    record += '\n';
    ssize_t written = 0;
    do {
        written = write(descriptor_, record.data(), record.size());
    } while (written < 0 && errno == EINTR);
    return written == static_cast<ssize_t>(record.size());
}

void AppendOnlyFile::discard() {
    if (descriptor_ >= 0) {
        close(descriptor_);
        descriptor_ = -1;
    }
    unlink(path_.c_str());
}

} // namespace dorvik::platform
