#include "background/DesktopNotifications.h"

#include "base/Wording.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QStringList>
#include <QVariantMap>

namespace dorvik::DesktopNotifications {

namespace {

QString shown(std::string_view key) {
    return QString::fromStdString(Wording::shown(key));
}

QDBusMessage notifyMessage(std::string_view title, std::string_view body) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("dorvik")}};
    const int serverDefaultTimeout = -1;
    const uint newNotification = 0; // the id of a notification to replace; none
    message << QStringLiteral("Dorvik") << newNotification << QStringLiteral("dorvik")
            << shown(title) << shown(body) << QStringList() << hints << serverDefaultTimeout;
    return message;
}

} // namespace

void post(const QDBusConnection& bus, std::string_view title, std::string_view body) {
    if (bus.isConnected()) {
        bus.asyncCall(notifyMessage(title, body));
    }
}

bool postAndWait(const QDBusConnection& bus, std::string_view title, std::string_view body,
                 std::chrono::milliseconds timeout) {
    if (!bus.isConnected()) {
        return false;
    }
    const QDBusMessage reply =
        bus.call(notifyMessage(title, body), QDBus::Block, static_cast<int>(timeout.count()));
    return reply.type() == QDBusMessage::ReplyMessage;
}

} // namespace dorvik::DesktopNotifications
