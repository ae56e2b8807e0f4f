#pragma once

// The Applications page: every installed application with the data it keeps outside its
// bundle, filtered by a search and two toggles, in a table beside the inspector of the one
// selected. Uninstalling goes through the plan "Uninstall <name>".

#include "apps/AppFilter.h"
#include "ui/pages/Page.h"

#include <QTimer>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QStackedLayout;
class QTableView;

namespace dorvik {

class AppInspector;
class AppState;
class AppTableModel;
struct InstalledApp;

class AppsView : public Page {
public:
    explicit AppsView(AppState& state, QWidget* parent = nullptr);

    // The parts, for the tests.
    QPushButton* refreshButton() const { return refresh_; }
    QLineEdit* searchField() const { return search_; }
    QCheckBox* hideAppleToggle() const { return hideApple_; }
    QCheckBox* unusedToggle() const { return unused_; }
    QLabel* countLabel() const { return count_; }
    QLabel* note() const { return note_; }
    QTableView* table() const { return table_; }
    AppTableModel* model() const { return model_; }
    AppInspector* inspector() const { return inspector_; }

    // The application of the selected row, if any.
    std::optional<InstalledApp> selectedApp() const;
    // The menu of a right click on the application at `row`.
    QMenu* makeMenu(int row);

protected:
    // The first visit loads the list; while the page shows, "Running" is looked at again and
    // again.
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeFilterBar();
    QTableView* makeTable();
    void refresh();
    void selectionChanged();
    void lookAtRunningApps();
    void uninstall(const InstalledApp& app);

    AppState& state_;
    AppFilter filter_;
    QPushButton* refresh_;
    QLineEdit* search_;
    QCheckBox* hideApple_;
    QCheckBox* unused_;
    QLabel* count_;
    AppTableModel* model_;
    QTableView* table_;
    QLabel* note_;
    QStackedLayout* listStack_;
    AppInspector* inspector_;
    QTimer runningTimer_;
};

} // namespace dorvik
