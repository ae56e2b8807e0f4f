#include "ui/LaunchOptions.h"

#include "ui/QtText.h"

#include <cstring>

namespace dorvik {

namespace {

constexpr const char* screenshotOption = "--screenshot";

QSize parseSize(const QString& text) {
    const QStringList parts = text.split(QLatin1Char('x'));
    bool wideOk = false;
    bool highOk = false;
    const int width = parts.size() == 2 ? parts[0].toInt(&wideOk) : 0;
    const int height = parts.size() == 2 ? parts[1].toInt(&highOk) : 0;
    if (!wideOk || !highOk || width <= 0 || height <= 0) {
        throw LaunchOptionsError("--size wants WIDTHxHEIGHT, for instance 1200x800, not " +
                                 stdText(text));
    }
    return {width, height};
}

} // namespace

LaunchOptions parseLaunchOptions(const QStringList& arguments) {
    LaunchOptions options;
    bool wantsScreenshotOnly = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& option = arguments[i];
        if (i + 1 >= arguments.size()) {
            throw LaunchOptionsError("unknown option or missing value: " + stdText(option));
        }
        const QString value = arguments[++i];
        if (option == QLatin1String(screenshotOption)) {
            options.screenshotFile = value;
        } else if (option == QLatin1String("--section")) {
            options.section = appSectionFromRaw(stdText(value));
            if (!options.section) {
                throw LaunchOptionsError("no section is called " + stdText(value) +
                                         "; the sections are " + stdText(sectionNames()));
            }
            wantsScreenshotOnly = true;
        } else if (option == QLatin1String("--size")) {
            options.size = parseSize(value);
            wantsScreenshotOnly = true;
        } else if (option == QLatin1String("--appearance")) {
            if (value != QLatin1String("system") && value != QLatin1String("light") &&
                value != QLatin1String("dark")) {
                throw LaunchOptionsError("--appearance is system, light or dark, not " +
                                         stdText(value));
            }
            options.appearance = appAppearanceFromRaw(value);
            wantsScreenshotOnly = true;
        } else {
            throw LaunchOptionsError("unknown option: " + stdText(option));
        }
    }
    if (wantsScreenshotOnly && options.screenshotFile.isEmpty()) {
        throw LaunchOptionsError("--section, --size and --appearance go with --screenshot FILE");
    }
    return options;
}

QString sectionNames() {
    QStringList names;
    for (AppSection section : allAppSections) {
        names << qtText(info(section).rawValue);
    }
    return names.join(QStringLiteral(", "));
}

QString launchUsage() {
    return QStringLiteral(
               "usage: dorvik [--screenshot FILE [--section NAME] [--size WxH] "
               "[--appearance system|light|dark]]\n"
               "\n"
               "Without options, opens Dorvik's window.\n"
               "  --screenshot FILE    draw the main window off screen into FILE (PNG) and end\n"
               "  --section NAME       the page to draw: %1\n"
               "  --size WxH           the window's size (at least 1040x680)\n"
               "  --appearance NAME    system, light or dark\n"
               "  -h, --help           show this text\n")
        .arg(sectionNames());
}

bool asksForHelp(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            return true;
        }
    }
    return false;
}

bool asksForScreenshot(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], screenshotOption) == 0) {
            return true;
        }
    }
    return false;
}

} // namespace dorvik
