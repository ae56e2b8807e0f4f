#pragma once

// The iCloud Drive page's state: the last report of what iCloud keeps downloaded here (absent
// until first read, then read again only on refresh), and the removal of downloads, which
// deletes nothing and goes into no history. Main thread only.

#include "reclaim/CloudDownloads.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace dorvik {

class AppState;

// Where the report comes from and what gives a download back: this computer in the program, a
// temporary tree in tests.
struct CloudSources {
    std::function<CloudReport()> build = [] { return buildCloudReport(); };
    Evictor evict = platform::evictDownload;
};

class CloudState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit CloudState(AppState& app);
    ~CloudState() override;

    const std::optional<CloudReport>& report() const { return report_; }
    bool isLoading() const { return loading_; }

    void setSources(CloudSources sources) { sources_ = std::move(sources); }

    // Reads the report again, unless a reading or a removal is under way.
    void refresh();
    // Gives back the downloads of `items`, keeps the refusals for the History page, reads the
    // report and the volume again, and says what happened in a toast without undo.
    void removeDownloads(const std::vector<CloudItem>& items);

signals:
    // report or loading changed.
    void changed();

private:
    AppState& app_;
    CloudSources sources_;
    std::shared_ptr<MainThreadRelay<CloudState>> relay_;
    std::optional<CloudReport> report_;
    bool loading_ = false;
};

} // namespace dorvik
