#pragma once

// Notifications on the desktop: org.freedesktop.Notifications over D-Bus. The texts are the
// program's keys and are shown in its wording. Without a bus, or without a notification service
// on it, a notification is simply lost: nothing fails and nothing waits.

#include <QDBusConnection>

#include <chrono>
#include <string_view>

namespace dorvik::DesktopNotifications {

// Sends the notification and goes on at once; the answer, or the error, is dropped.
void post(const QDBusConnection& bus, std::string_view title, std::string_view body);

// Sends it and waits at most `timeout` for the service to take it: for a program that ends right
// after. True when a service took it.
bool postAndWait(const QDBusConnection& bus, std::string_view title, std::string_view body,
                 std::chrono::milliseconds timeout);

} // namespace dorvik::DesktopNotifications
