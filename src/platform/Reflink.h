#pragma once

// Copies that share their storage: the filesystem's reflinks (XFS, btrfs). Asking how much of a
// file is its own, and making a new file that shares all of another's blocks.

#include <cstdint>
#include <optional>
#include <string>

namespace dorvik::platform {

// What `lstat` says of a path that the sharing of copies relies on.
struct LinkStatus {
    bool regularFile = false; // a symbolic link is not one
    uint64_t device = 0;
    uint64_t links = 0;
    int64_t size = 0;   // content length
    int64_t blocks = 0; // 512-byte units allocated
    double changed = 0; // the inode's change time, seconds since 1970: nobody can set it back
};

// The entry itself, never a link's target; none when it cannot be `lstat`ed.
std::optional<LinkStatus> linkStatus(const std::string& path);

// The bytes of the file's extents that no other file shares (by FIEMAP, extents not flagged
// shared); none when the filesystem cannot say.
std::optional<int64_t> privateSize(const std::string& path);

// Creates `clone` (which must not exist) as a file sharing every block of `original`. Zero, or
// the error number; on failure nothing is left at `clone`.
int cloneFile(const std::string& original, const std::string& clone);

// True for the error numbers of `cloneFile` that mean the filesystem cannot share blocks
// between these two files at all.
bool meansCloningUnsupported(int errorNumber);

// Puts `from` in the place of `to` in one step (`rename`). Zero, or the error number.
int renameOver(const std::string& from, const std::string& to);

} // namespace dorvik::platform
