#include "background/LaunchAtLogin.h"

#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"

#include <QDebug>
#include <QFile>

namespace dorvik::LaunchAtLogin {

namespace {

// Desktop entries are read by the session as any other; the user's own umask still applies.
constexpr unsigned entryMode = 0644;

// The Exec key's argument: in double quotes, with the characters the format reserves escaped,
// and "%" doubled, as it would otherwise start a field code.
QString quotedArgument(const QString& argument) {
    QString quoted;
    for (const QChar character : argument) {
        if (character == QLatin1Char('"') || character == QLatin1Char('`') ||
            character == QLatin1Char('$') || character == QLatin1Char('\\')) {
            quoted += QLatin1Char('\\');
        }
        quoted += character;
        if (character == QLatin1Char('%')) {
            quoted += QLatin1Char('%');
        }
    }
    // The Exec line is itself a string value, where a backslash is escaped once more.
    quoted.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

void logFailure(const QString& why) {
    qWarning().noquote() << QStringLiteral("Launch at login: ") + why;
}

} // namespace

QString entryPath() {
    return QString::fromStdString(platform::configHomeDirectory()) +
           QStringLiteral("/autostart/dorvik.desktop");
}

bool isEnabled() {
    QFile entry(entryPath());
    if (!entry.open(QIODevice::ReadOnly)) {
        return false;
    }
    // An entry turned off by hand ("Hidden=true") starts nothing.
    const QByteArray text = entry.read(64 * 1024);
    return !text.contains("\nHidden=true");
}

void setEnabled(bool enabled, const QString& executable) {
    const std::string path = entryPath().toStdString();
    if (enabled) {
        if (!platform::writeFileAtomically(path, entryText(executable).toStdString(), entryMode)) {
            logFailure(QStringLiteral("could not write ") + entryPath());
        }
        return;
    }
    platform::removeFile(path);
    if (platform::pathExists(path)) {
        logFailure(QStringLiteral("could not remove ") + entryPath());
    }
}

QString entryText(const QString& executable) {
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Dorvik\n"
                          "Comment=See where your disk space goes and take it back safely\n"
                          "Exec=%1\n"
                          "Icon=dorvik\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(quotedArgument(executable));
}

} // namespace dorvik::LaunchAtLogin
