#include "ui/Desktop.h"

#include <QClipboard>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QStringList>
#include <QUrl>

namespace dorvik::Desktop {

namespace {

QString qtPath(const std::string& path) {
    return QFile::decodeName(QByteArray::fromStdString(path));
}

bool revealThroughFileManager(const std::vector<std::string>& paths) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return false;
    }
    QStringList uris;
    for (const std::string& path : paths) {
        uris << QUrl::fromLocalFile(qtPath(path)).toString();
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << uris << QString();
    // Waits a moment for the answer: an error means no file manager serves the name.
    const QDBusMessage reply = bus.call(call, QDBus::Block, 2000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace

bool reveal(const std::vector<std::string>& paths) {
    if (paths.empty() || revealThroughFileManager(paths)) {
        return true;
    }
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(qtPath(paths.front())).path()));
}

void open(const std::string& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(qtPath(path)));
}

void copyPaths(const std::vector<std::string>& paths) {
    QStringList lines;
    for (const std::string& path : paths) {
        lines << qtPath(path);
    }
    QGuiApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

} // namespace dorvik::Desktop
