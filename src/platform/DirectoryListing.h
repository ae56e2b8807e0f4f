#pragma once

// One directory's entries with the status of each, read in one go. The walk hands entries out
// from such a listing, so it needs a directory's descriptor only to open the folders below it.

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

// Lists the directory open at `directory` from its start, "." and ".." left out, and reads each
// entry's status without following links, relative to that descriptor. The descriptor stays
// open; -1 gives an incomplete listing.
DirectoryListing listDirectory(int directory);

} // namespace dorvik::platform
