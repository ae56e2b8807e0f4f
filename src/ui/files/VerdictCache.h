#pragma once

// The safety verdicts a table shows, judged on a worker thread and kept until the scanned tree
// changes. Judging a path may read a bundle's Info.plist, walk /proc and read the password
// database; a table asks while it paints, so it is only ever told what is known already, and
// what is not is judged meanwhile: a row gets its badge a moment after it first shows. A verdict
// stays until the tree's revision changes (a new scan, a removal, an undo), so an application
// started or quit since then shows its old badge; removals themselves judge again at the last
// moment, never from here.

#include "removal/SafetyVerdict.h"

#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace dorvik {

class VerdictCache : public QObject {
public:
    // Called on the worker thread, one path at a time.
    using Judge = std::function<SafetyVerdict(std::string_view path)>;

    explicit VerdictCache(Judge judge, QObject* parent = nullptr);
    ~VerdictCache() override;

    VerdictCache(const VerdictCache&) = delete;
    VerdictCache& operator=(const VerdictCache&) = delete;

    // The verdict on `path` if it was judged in this revision of the tree. Otherwise none, and
    // the path is judged soon, those asked for last first; onJudged tells when.
    const SafetyVerdict* find(const std::string& path);

    // The tree changed: every verdict is judged again when next asked for, and what was being
    // judged for the old tree is dropped when it comes back.
    void setRevision(int revision);
    int revision() const { return revision_; }

    // Verdicts came in; on the main thread.
    std::function<void()> onJudged;

private:
    void judgeWaiting();
    void take(int revision, std::vector<std::pair<std::string, SafetyVerdict>> judged);

    const Judge judge_;
    int revision_ = 0;
    std::unordered_map<std::string, SafetyVerdict> known_;
    // The paths not judged yet, the newest last. A fast scroll asks for far more rows than stay
    // on show: only the newest are kept, and a row that shows again asks again.
    std::deque<std::string> waiting_;
    std::unordered_set<std::string> asked_; // waiting or being judged, in this revision
    bool judging_ = false;
    bool startPosted_ = false;
    std::atomic<bool> stopping_ = false;
    QThreadPool worker_;
};

} // namespace dorvik
