#pragma once

// The Login Items page's state: what starts by itself, read afresh on each visit off the main
// thread, and the line left by the last removal. A removal that moves a file to the Trash takes
// the removal road (history, toast, undo); after each removal, and after an undo, the list is
// read again. Main thread only.

#include "platform/RunTool.h"
#include "state/MainThreadRelay.h"
#include "system/LaunchItem.h"
#include "system/LaunchItemRemoval.h"

#include <QObject>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

class AppState;

// Where the items come from and what runs the commands: this computer in the program, temporary
// folders and recorded commands in tests.
struct LoginItemsSources {
    std::optional<LaunchPlaces> places; // none: LaunchPlaces::ofThisComputer() at each reading
    platform::ProcessRunner run = platform::runProcess;
    LaunchTools tools;
};

class LoginItemsState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit LoginItemsState(AppState& app);
    ~LoginItemsState() override;

    const std::vector<LaunchItem>& items() const { return items_; }
    bool isLoading() const { return loading_; }
    // While a removal runs (or waits for the administrator's password).
    bool isRemoving() const { return removing_; }
    const std::optional<std::string>& message() const { return message_; }

    void setSources(LoginItemsSources sources) { sources_ = std::move(sources); }

    // Reads every scope again; a newer reading makes an older one count for nothing.
    void refresh();
    // Removes the item (see removeLaunchItem), sets the message to the outcome and reads the list
    // again. One at a time.
    void remove(const LaunchItem& item);

signals:
    // items, loading or removing changed.
    void changed();
    void messageChanged();

private:
    LaunchPlaces places() const;
    void finishRemoval(std::optional<std::string> message);

    AppState& app_;
    LoginItemsSources sources_;
    std::shared_ptr<MainThreadRelay<LoginItemsState>> relay_;
    std::vector<LaunchItem> items_;
    bool loading_ = false;
    bool removing_ = false;
    bool listed_ = false;
    std::optional<std::string> message_;
    int generation_ = 0;
};

} // namespace dorvik
