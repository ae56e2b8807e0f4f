#pragma once

// Whether the program may read the whole disk. macOS guards some folders behind a privacy
// permission and the only way to know is to try reading something behind it; Linux has no such
// gate, so the running program always has access there. The probe stays for the macOS build.

#include <string>
#include <vector>

namespace dorvik {

// True on Linux. On macOS: probeFullDiskAccess(fullDiskAccessCanaries(home)).
bool hasFullDiskAccess();

// What the probe tries, in order: the privacy database, then the home's Safari folder.
std::vector<std::string> fullDiskAccessCanaries(const std::string& homeDirectory);

// True when one of the canaries that exist can be read: a ".db" file opened, anything else
// listed as a folder. Missing canaries are skipped, so none at all gives false. Errors are
// swallowed.
bool probeFullDiskAccess(const std::vector<std::string>& canaries);

} // namespace dorvik
