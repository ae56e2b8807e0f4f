#include "background/PrivateSessionBus.h"

#include "support/EventLoop.h"

#include <filesystem>

namespace dorvik::test {

namespace {

const char* const daemonPath = "/usr/bin/dbus-daemon";

// No service directories: nothing on this bus is started on demand.
std::string configuration(const std::string& socket) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>unix:path=" +
           socket +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
           "<allow own=\"*\"/></policy></busconfig>\n";
}

} // namespace

uint NotificationRecorder::Notify(const QString& application, uint, const QString&,
                                  const QString& summary, const QString& body, const QStringList&,
                                  const QVariantMap&, int) {
    posted.push_back({summary, body, application});
    return static_cast<uint>(posted.size());
}

PrivateSessionBus::PrivateSessionBus() {
    if (!std::filesystem::exists(daemonPath)) {
        return;
    }
    const std::string socket = dir_ / "bus";
    writeText(dir_ / "bus.conf", configuration(socket));
    daemon_ = std::make_unique<ChildProcess>(
        daemonPath, std::vector<std::string>{"--nofork", "--config-file=" + (dir_ / "bus.conf")});
    address_ = QString::fromStdString("unix:path=" + socket);
    started_ = waitUntil([&] { return std::filesystem::exists(socket); }, std::chrono::seconds(5));
}

PrivateSessionBus::~PrivateSessionBus() {
    for (const QString& name : connections_) {
        QDBusConnection::disconnectFromBus(name);
    }
}

QDBusConnection PrivateSessionBus::connect(const QString& name) {
    connections_.append(name);
    return QDBusConnection::connectToBus(address_, name);
}

NotificationRecorder& PrivateSessionBus::serveNotifications() {
    recorder_ = std::make_unique<NotificationRecorder>();
    QDBusConnection service = connect(QStringLiteral("notification-service"));
    service.registerObject(QStringLiteral("/org/freedesktop/Notifications"), recorder_.get(),
                           QDBusConnection::ExportAllSlots);
    service.registerService(QStringLiteral("org.freedesktop.Notifications"));
    return *recorder_;
}

} // namespace dorvik::test
