#pragma once

// Application bundles made in temporary folders: an Info.plist, and a real executable inside.

#include <map>
#include <string>

namespace dorvik::test {

enum class PlistFormat { xml, binary };

// Writes <bundle>/Contents/Info.plist holding these string entries; folders are created.
void writeInfoPlist(const std::string& bundlePath,
                    const std::map<std::string, std::string>& entries,
                    PlistFormat format = PlistFormat::xml);

// Writes a property list given as the XML of its top-level value (what goes inside <plist>), in
// XML or converted to binary; folders are created.
void writePropertyList(const std::string& path, const std::string& xmlBody,
                       PlistFormat format = PlistFormat::xml);

// Copies the program at `program` to <bundle>/Contents/MacOS/<name>, executable, and returns that
// path.
std::string installExecutable(const std::string& bundlePath, const std::string& program,
                              const std::string& name);

// An application identifier that no other test uses, made of `prefix` and the running test's
// names: whether an application runs is asked of every process of the machine, and the tests
// run side by side.
std::string identifierOfThisTest(const std::string& prefix);

} // namespace dorvik::test
