#pragma once

// The duplicates of the last scan and the sharing of their space: the groups of the last
// search, its progress while it runs, and whether copies are being made to share their storage.
// The groups belong to the scan they were found in and go when another scan takes its place; a
// removal leaves them as they are. Main thread only.

#include "reclaim/DuplicateGroup.h"
#include "reclaim/DuplicateSelection.h"
#include "reclaim/FileClone.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace dorvik {

class AppState;

class DuplicatesState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit DuplicatesState(AppState& app);
    ~DuplicatesState() override;

    // Largest recoverable first.
    const std::vector<DuplicateGroup>& groups() const { return groups_; }
    // From 0 to 1 while a search runs; none otherwise.
    std::optional<double> progress() const { return progress_; }
    bool isSharingSpace() const { return isSharingSpace_; }

    // Searches the files of the scan in force on a worker, from 1 MiB up. Nothing without a scan.
    void findDuplicates();
    // The selected files go to the removal plan "Delete Duplicate Copies"; when the selection
    // leaves a group without a copy, only a toast says so.
    void deleteSelected(const DuplicateSelection& selection);
    // Each selected file becomes a clone of its group's first file outside the selection, on a
    // worker; a toast tells the outcome, History the failures. False, with a toast, when the
    // selection leaves a group without a copy: the caller keeps the selection then.
    bool shareSelected(const DuplicateSelection& selection);
    // The sharing itself, for the nodes given; groups all of whose files are given are skipped.
    void shareSpace(const DuplicateSelection& nodes);

signals:
    void groupsChanged();
    void progressChanged();
    void isSharingSpaceChanged();

private:
    void forgetOldScan();
    void finishSharing(const DuplicateSelection& nodes, const FileClone::CloneReport& report);
    void setProgress(std::optional<double> progress);
    bool refuseWithoutACopy(const DuplicateSelection& selection);

    AppState& app_;
    std::shared_ptr<MainThreadRelay<DuplicatesState>> relay_;
    std::vector<DuplicateGroup> groups_;
    std::weak_ptr<FileNode> searchedRoot_; // the root of the scan the groups come from
    std::optional<double> progress_;
    bool isSharingSpace_ = false;
};

} // namespace dorvik
