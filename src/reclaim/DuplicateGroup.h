#pragma once

// One set of byte-for-byte identical files found among a scan's files.

#include "scanning/FileNode.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

struct DuplicateGroup {
    std::string id; // the SHA-256 of the content, lower-case hexadecimal
    // The allocated size of one copy: what each extra copy would give back.
    int64_t size = 0;
    std::vector<FileNodePtr> files; // at least two, oldest `modified` first
    // The files that already share their storage with another file. All of them together count
    // as one stored copy.
    std::set<const FileNode*> shared;

    // The bytes that deleting or sharing every copy but one would give back.
    int64_t recoverableBytes() const;
};

// True when so little of a file is its own that it counts as a clone of another: less than a
// tenth of it from 40,960 allocated bytes up, less than one 4,096-byte block below that.
bool isPracticallyShared(int64_t privateBytes, int64_t allocatedBytes);

} // namespace dorvik
