#pragma once

// Notices when another process (dorvik-cli, the background tick, a second window) changes the
// program's shared files, so that what the pages show follows the files. It watches the folder,
// not the files: every write replaces a file by a rename, which a watch on the old file would
// miss. A burst of changes is announced once, after a short quiet.

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <string>

namespace dorvik {

class StoreWatcher : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds quietDelay{150};

    explicit StoreWatcher(const std::string& folder, QObject* parent = nullptr);

signals:
    // Something in the folder changed: read the files again.
    void changed();

private:
    QFileSystemWatcher watcher_;
    QTimer quiet_;
};

} // namespace dorvik
