#pragma once

// Small questions about paths that the core asks of the file system.

#include "platform/FileError.h"

#include <optional>
#include <string>
#include <vector>

namespace dorvik::platform {

// True if something is at the path (a dangling symbolic link counts).
bool pathExists(const std::string& path);

// True if the path is a directory, following symbolic links.
bool isDirectory(const std::string& path);

// True if the file opens for reading (the file is closed again at once).
bool canOpenForReading(const std::string& path);

// True if the folder's entries can be read to the end.
bool canListFolder(const std::string& path);

// The names in a folder, hidden ones included and "." and ".." left out, in the order the file
// system gives them. None when the folder cannot be listed.
std::optional<std::vector<std::string>> directoryEntries(const std::string& path);

// The same for a folder reached without following any link on the way from the root: none when
// the folder, or any folder above it, is a link (or cannot be listed).
std::optional<std::vector<std::string>> directoryEntriesWithoutLinks(const std::string& path);

// The content modification time of the entry itself (a symbolic link is not followed), in
// seconds since 1970 with the fraction; none when it cannot be read.
std::optional<double> modificationTime(const std::string& path);

// The content access time of the file a path leads to (links followed), in seconds since 1970;
// none when it cannot be read. Mounts with relatime move it at most once a day.
std::optional<double> accessTime(const std::string& path);
// What the symbolic link at `path` holds, as written; none when it is no link or cannot be read.
std::optional<std::string> linkTarget(const std::string& path);

// Removes the file (a link itself, never its target); a file already gone is no error.
void removeFile(const std::string& path);

// Creates the folder and every missing folder above it. None when the folder stands afterwards.
std::optional<FileError> createFolders(const std::string& path);

// Renames the entry `from` of the folder `fromFolder` to `to` in `toFolder` (descriptors, or
// AT_FDCWD for paths) without ever replacing what stands at `to`. Zero or the error number:
// EEXIST when the name is taken.
int renameNoReplaceAt(int fromFolder, const std::string& from, int toFolder, const std::string& to);

} // namespace dorvik::platform
