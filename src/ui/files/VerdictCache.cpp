#include "ui/files/VerdictCache.h"

#include <QMetaObject>

namespace dorvik {

namespace {

// About a page of rows or two, and more than a tall table shows.
constexpr size_t waitingLimit = 256;
// Paths judged in one go before their verdicts go back to the table: a page of rows or so, so
// that the rows on show get theirs soon even when the judge is slow.
constexpr size_t batchSize = 32;

} // namespace

VerdictCache::VerdictCache(Judge judge, QObject* parent)
    : QObject(parent), judge_(std::move(judge)) {
    // One thread keeps up with a page of rows at a time, and judging then never takes more than
    // one of the computer's cores from a scan.
    worker_.setMaxThreadCount(1);
}

VerdictCache::~VerdictCache() {
    stopping_ = true;
    // The worker uses this object until it ends; a verdict it posted after that is dropped by Qt
    // with the object.
    worker_.waitForDone();
}

const SafetyVerdict* VerdictCache::find(const std::string& path) {
    if (const auto found = known_.find(path); found != known_.end()) {
        return &found->second;
    }
    if (asked_.insert(path).second) {
        waiting_.push_back(path);
        if (waiting_.size() > waitingLimit) {
            asked_.erase(waiting_.front());
            waiting_.pop_front();
        }
    }
    if (!judging_ && !startPosted_) {
        // Later, so that every row of the paint under way goes in one batch.
        startPosted_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                startPosted_ = false;
                judgeWaiting();
            },
            Qt::QueuedConnection);
    }
    return nullptr;
}

void VerdictCache::setRevision(int revision) {
    if (revision == revision_) {
        return;
    }
    revision_ = revision;
    known_.clear();
    waiting_.clear();
    asked_.clear();
}

void VerdictCache::judgeWaiting() {
    if (judging_ || waiting_.empty()) {
        return;
    }
    std::vector<std::string> paths;
    while (!waiting_.empty() && paths.size() < batchSize) {
        paths.push_back(std::move(waiting_.back()));
        waiting_.pop_back();
    }
    judging_ = true;
    worker_.start([this, revision = revision_, paths = std::move(paths)]() mutable {
        std::vector<std::pair<std::string, SafetyVerdict>> judged;
        judged.reserve(paths.size());
        for (std::string& path : paths) {
            if (stopping_) {
                return;
            }
            SafetyVerdict verdict = judge_(path);
            judged.emplace_back(std::move(path), std::move(verdict));
        }
        QMetaObject::invokeMethod(
            this,
            [this, revision, judged = std::move(judged)]() mutable {
                take(revision, std::move(judged));
            },
            Qt::QueuedConnection);
    });
}

void VerdictCache::take(int revision, std::vector<std::pair<std::string, SafetyVerdict>> judged) {
    judging_ = false;
    const bool current = revision == revision_ && !judged.empty();
    if (current) {
        for (auto& [path, verdict] : judged) {
            asked_.erase(path);
            known_.insert_or_assign(std::move(path), std::move(verdict));
        }
    }
    judgeWaiting();
    if (current && onJudged) {
        onJudged();
    }
}

} // namespace dorvik
