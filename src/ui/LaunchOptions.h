#pragma once

// What the command line asks of the application:
//   dorvik [--screenshot FILE [--section NAME] [--size WxH] [--appearance system|light|dark]]
// With --screenshot the main window is drawn off screen at the section and size given, written
// as a PNG, and the program ends.

#include "state/AppSection.h"
#include "ui/Appearance.h"

#include <QSize>
#include <QStringList>

#include <optional>
#include <stdexcept>

namespace dorvik {

struct LaunchOptions {
    QString screenshotFile; // empty: run the application
    std::optional<AppSection> section;
    QSize size{1120, 720};
    std::optional<AppAppearance> appearance;
};

struct LaunchOptionsError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// `arguments` without the program's name. Throws LaunchOptionsError with a message for the user.
LaunchOptions parseLaunchOptions(const QStringList& arguments);

// The lines `dorvik --help` prints: the usage and the names --section takes.
QString launchUsage();

// The valid names of --section, joined by ", ".
QString sectionNames();

// Whether the raw command line asks for the usage (--help or -h); known before the application
// exists, so that it can be answered without a display.
bool asksForHelp(int argc, char** argv);

// Whether the raw command line asks for a screenshot; known before the application exists, so
// that it can be made without a display.
bool asksForScreenshot(int argc, char** argv);

} // namespace dorvik
