#pragma once

// The System Data page: what the system keeps for itself beside the user's files, piece by piece
// with what to do about each, and the local snapshots on the disk with "Delete…" for each. It
// reads everything afresh each time it appears.

#include "ui/pages/Page.h"

#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace dorvik {

class AppState;
class ScanningRing;
class StatTile;
class SystemDataRow;

class SystemDataView : public Page {
public:
    explicit SystemDataView(AppState& state, QWidget* parent = nullptr);

    // What tests look at.
    std::vector<StatTile*> tiles() const;
    const std::vector<SystemDataRow*>& componentRows() const { return componentRows_; }
    const std::vector<QPushButton*>& deleteButtons() const { return deleteButtons_; }
    QLabel* snapshotMessage() const { return snapshotMessage_; }
    QLabel* noSnapshots() const { return noSnapshots_; }
    ScanningRing* spinner() const { return spinner_; }

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeTiles();
    QWidget* makeComponents();
    QWidget* makeSnapshots();
    void showTiles();
    void showComponents();
    void showSnapshots();
    void showSnapshotMessage();

    AppState& state_;
    StatTile* purgeable_ = nullptr;
    StatTile* snapshotCount_ = nullptr;
    StatTile* measured_ = nullptr;
    QWidget* tileRow_ = nullptr;
    ScanningRing* spinner_ = nullptr;
    QVBoxLayout* componentList_ = nullptr;
    std::vector<SystemDataRow*> componentRows_;
    QLabel* snapshotMessage_ = nullptr;
    QLabel* noSnapshots_ = nullptr;
    QVBoxLayout* snapshotList_ = nullptr;
    std::vector<QPushButton*> deleteButtons_;
};

} // namespace dorvik
