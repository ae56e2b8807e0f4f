#pragma once

// A D-Bus session bus of the test's own (dbus-daemon with a configuration that activates no
// service), and a stand-in for the desktop's notification service on it that records what it is
// sent. The program's side talks to the bus exactly as it would to the desktop's.

#include "support/ChildProcess.h"
#include "support/TempDir.h"

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <memory>
#include <vector>

namespace dorvik::test {

struct PostedNotification {
    QString title;
    QString body;
    QString application;
};

// Answers org.freedesktop.Notifications.Notify as a notification service does, and keeps each
// notification.
class NotificationRecorder : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    std::vector<PostedNotification> posted;

public slots:
    uint Notify(const QString& application, uint replacesId, const QString& icon,
                const QString& summary, const QString& body, const QStringList& actions,
                const QVariantMap& hints, int timeout);
};

class PrivateSessionBus {
public:
    // Starts the daemon; `started()` says whether it could.
    PrivateSessionBus();
    ~PrivateSessionBus();
    PrivateSessionBus(const PrivateSessionBus&) = delete;
    PrivateSessionBus& operator=(const PrivateSessionBus&) = delete;

    bool started() const { return started_; }
    // What DBUS_SESSION_BUS_ADDRESS would hold for this bus.
    const QString& address() const { return address_; }
    // A new connection to the bus under `name` (a name of this process's own).
    QDBusConnection connect(const QString& name);
    // Puts a recorder on the bus as the notification service.
    NotificationRecorder& serveNotifications();

private:
    TempDir dir_;
    QString address_;
    std::unique_ptr<ChildProcess> daemon_;
    std::unique_ptr<NotificationRecorder> recorder_;
    QStringList connections_;
    bool started_ = false;
};

} // namespace dorvik::test
