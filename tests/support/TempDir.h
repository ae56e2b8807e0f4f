#pragma once

// Real files in a private temporary folder, removed with everything in it when the test ends.

#include <cstdint>
#include <string>

namespace dorvik::test {

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    // `relative` joined to the folder's path.
    std::string operator/(const std::string& relative) const { return path_ + "/" + relative; }

private:
    std::string path_;
};

// Creates the folder and its parents.
void makeFolder(const std::string& path);

// A file of `bytes` bytes of real data, so that its blocks are allocated; parents are created.
void writeFile(const std::string& path, int64_t bytes);

// True if anything is at the path; a symbolic link counts, wherever it points.
bool entryExists(const std::string& path);

// A file holding `text`; parents are created.
void writeText(const std::string& path, const std::string& text);

// The whole content of a file; empty when it cannot be read.
std::string readText(const std::string& path);

// A file of `length` bytes with no blocks allocated.
void writeSparseFile(const std::string& path, int64_t length);

// A file whose first `allocated` bytes have blocks reserved (none written, so it is quick at any
// size) and whose length is `length`, or `allocated` when that is longer; parents are created.
void writeAllocatedFile(const std::string& path, int64_t allocated, int64_t length = 0);

void makeHardLink(const std::string& existing, const std::string& link);
void makeSymlink(const std::string& target, const std::string& link);

// Sets the entry's modification time (and access time) to `seconds` since 1970, fraction kept; a
// symbolic link itself is changed, not its target.
void setModificationTime(const std::string& path, double seconds);

// The entry's access time in seconds since 1970, fraction kept (a link itself, not its target).
double accessTime(const std::string& path);

// Allocated bytes of one entry as the system reports them (512 × st_blocks, not following links).
int64_t allocatedBytes(const std::string& path);

// Runs a shell command and returns its standard output; fails the test if it cannot run.
std::string commandOutput(const std::string& command);

// True when this process can read a folder whatever its permissions (root does).
bool ignoresPermissions();

} // namespace dorvik::test
