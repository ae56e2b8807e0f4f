#pragma once

// The program's stored settings, one typed accessor a key, each with its default in one place.
// They live in QSettings under the keys of state/Settings.h; every SettingsState reads and writes
// the same store, so the application, dorvik-cli and the background tick see one another's
// choices. A setter stores at once and announces `changed`.

#include "state/Settings.h"

#include <QObject>
#include <QSettings>
#include <QString>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class SettingsState : public QObject {
    Q_OBJECT

public:
    explicit SettingsState(QObject* parent = nullptr);

    // Takes in what another process (dorvik-cli, the background tick) stored meanwhile.
    void reload();

    // "system", "light" or "dark"; "system" when absent.
    QString appearance() const;
    void setAppearance(const QString& raw);

    bool permanentDelete() const; // false
    void setPermanentDelete(bool permanent);

    bool menuBar() const; // true
    void setMenuBar(bool shown);

    bool watchRemovedApps() const; // true
    void setWatchRemovedApps(bool watch);

    QString cleanSchedule() const; // "off"
    void setCleanSchedule(const QString& raw);

    // Decimal gigabytes; 0 or less means no warning. 10 when absent.
    int lowSpaceGB() const;
    void setLowSpaceGB(int gigabytes);

    // Seconds since 2001-01-01, when the scheduled clean last ran; none when it never did.
    std::optional<double> lastAutoClean() const;
    void setLastAutoClean(double date);

    int64_t lastAutoCleanBytes() const; // 0
    void setLastAutoCleanBytes(int64_t bytes);

    bool lowSpaceNotified() const; // false
    void setLowSpaceNotified(bool notified);

    // One canonical path a line; empty when absent.
    QString excludedRaw() const;
    void setExcludedRaw(const QString& raw);
    // The lines of excludedRaw, in order, without empty ones.
    std::vector<std::string> excludedPaths() const;
    // Adds a folder's canonical path as the last line; a twin line is harmless, as scans take
    // the lines as a set.
    void appendExcludedPath(const std::string& path);
    // Takes out every line equal to `path`.
    void removeExcludedPath(const std::string& path);

    bool accessOnboardingSkipped() const; // false
    void setAccessOnboardingSkipped(bool skipped);

    // Read at launch only; nothing in the program writes them. Empty when absent.
    QString initialSection() const;
    QString autoScan() const;

    QString explorerMode() const; // "list"
    void setExplorerMode(const QString& raw);

signals:
    void changed();

private:
    void store(const char* key, const QVariant& value);

    QSettings settings_;
};

} // namespace dorvik
