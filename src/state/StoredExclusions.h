#pragma once

// The folders the user keeps out of every scan, as the settings hold them: one canonical path a
// line under "excludedPaths". The application edits them; dorvik-cli reads the same store, so a
// scan from the terminal leaves out what the application's scans leave out.

#include <QString>

#include <set>
#include <string>
#include <vector>

namespace dorvik::StoredExclusions {

// The paths of the stored text, in its order, without empty lines.
std::vector<std::string> parse(const QString& raw);

// The stored text with the canonical form of `path` added as a line of its own.
QString appended(QString raw, const std::string& path);

// The paths in the program's settings ($XDG_CONFIG_HOME/Dorvik/Dorvik.conf).
std::set<std::string> read();

} // namespace dorvik::StoredExclusions
