#pragma once

// The pane beside the applications table: for the selected application its icon, names and
// sizes, the data it keeps outside its bundle, and whether it may be uninstalled now. Without a
// selection it says "Select an app".

#include "apps/InstalledApp.h"

#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QPushButton;
class QStackedLayout;
class QVBoxLayout;

namespace dorvik {

class SymbolView;

class AppInspector : public QWidget {
public:
    explicit AppInspector(QWidget* parent = nullptr);

    // Shows `app` with the applications running now; none shows the prompt to select one.
    void showApp(const std::optional<InstalledApp>& app,
                 const std::vector<std::string>& runningIdentifiers);
    // Draws the action area again for the applications running now.
    void setRunning(const std::vector<std::string>& runningIdentifiers);

    const std::optional<InstalledApp>& app() const { return app_; }

    // "Uninstall Completely" was pressed for the application shown.
    std::function<void(const InstalledApp&)> onUninstall;

    // The parts, for the tests.
    QPushButton* uninstallButton() const { return uninstall_; }
    QLabel* actionNote() const { return note_; }
    SymbolView* lock() const { return lock_; }

private:
    QWidget* makeDetails();
    QWidget* makeActionArea();
    void fillRelated();
    void refreshActionArea(const std::vector<std::string>& runningIdentifiers);

    std::optional<InstalledApp> app_;
    QStackedLayout* stack_;
    QLabel* icon_;
    QLabel* name_;
    QLabel* version_;
    QLabel* identifier_;
    QLabel* appSize_;
    QLabel* dataSize_;
    QLabel* totalSize_;
    QVBoxLayout* relatedRows_;
    SymbolView* lock_;
    QLabel* note_;
    QPushButton* uninstall_;
};

} // namespace dorvik
