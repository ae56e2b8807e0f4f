#include "state/StoreWatcher.h"

namespace dorvik {

StoreWatcher::StoreWatcher(const std::string& folder, QObject* parent) : QObject(parent) {
    quiet_.setSingleShot(true);
    quiet_.setInterval(quietDelay);
    connect(&quiet_, &QTimer::timeout, this, &StoreWatcher::changed);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] { quiet_.start(); });
    watcher_.addPath(QString::fromStdString(folder));
}

} // namespace dorvik
