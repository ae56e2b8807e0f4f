#pragma once

// Opening Dorvik at login: an XDG autostart entry, $XDG_CONFIG_HOME/autostart/dorvik.desktop,
// that starts the running program. Nothing of it is stored anywhere else: whether it is on is
// read from the entry each time. A change that fails goes to the log as
// "Launch at login: <why>" and nothing else happens.

#include <QString>

namespace dorvik::LaunchAtLogin {

QString entryPath();

// Whether the entry stands and would start something.
bool isEnabled();

// Writes the entry for `executable` (atomically), or removes it.
void setEnabled(bool enabled, const QString& executable);

// The entry's text for `executable`, quoted as the desktop entry format asks.
QString entryText(const QString& executable);

} // namespace dorvik::LaunchAtLogin
