#pragma once

// One of the program's own files, shared by the application, dorvik-cli and the background tick,
// held for a read-merge-write. The holder has an exclusive flock on "<file>.lock" beside the file
// (not on the file itself, which every write replaces by a rename) from before it reads until
// after it has written, so that no process writes over a change it has not seen. Locks end with
// the process, so a killed writer never leaves one behind.

#include <cstddef>
#include <optional>
#include <string>

namespace dorvik::platform {

class LockedFile {
public:
    // Makes the folder (private) if it is missing and waits for the lock. Temporary files of this
    // file are written only under the lock, so any found now is a killed writer's and goes; so
    // does any other temporary file in the folder whose writing process has ended.
    explicit LockedFile(std::string path);
    ~LockedFile();
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    // False when the lock file could not be made or locked; reads and writes still work, unlocked.
    bool locked() const { return lockDescriptor_ >= 0; }
    const std::string& path() const { return path_; }

    // The file as it is now; none when it is missing, no regular file, or larger than
    // `maxBytes` (refused before a byte is read).
    std::optional<std::string> read(size_t maxBytes) const;

    // Replaces the file whole and atomically, readable by this user only. False on failure.
    bool write(const std::string& text) const;

private:
    std::string path_;
    int lockDescriptor_ = -1;
};

// Removes "<name>.tmp-<pid>-<number>" files in `folder` (the temporaries of the program's atomic
// writes) whose process has ended; those of `lockedName`, whose lock the caller holds, whatever
// their process.
void sweepStaleTemporaries(const std::string& folder, const std::string& lockedName);

} // namespace dorvik::platform
