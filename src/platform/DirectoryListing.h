#pragma once

// One directory's entries with the status of each, read in one go. The walk hands entries out
// from such a listing, so only one directory is open at a time however deep the tree.

#include <string>
#include <sys/stat.h>
#include <vector>

namespace dorvik::platform {

struct ListedEntry {
    std::string name;
    struct stat status {};
    bool statusRead = false;
};

struct DirectoryListing {
    bool complete = false; // false when the directory could not be opened or read to the end
    std::vector<ListedEntry> entries;
};

// Lists a directory, "." and ".." left out, and reads each entry's status without following
// links, relative to the directory's descriptor.
DirectoryListing listDirectory(const std::string& path);

} // namespace dorvik::platform
