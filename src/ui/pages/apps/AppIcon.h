#pragma once

// The icon an application is shown with: the picture its bundle names (CFBundleIconFile in
// Contents/Resources) when Qt can read it, else the desktop's generic application icon.

#include <QIcon>

#include <string>

namespace dorvik {

// Reads the bundle's Info.plist and its icon file; a caller showing many keeps the results.
QIcon appIcon(const std::string& bundlePath);

} // namespace dorvik
