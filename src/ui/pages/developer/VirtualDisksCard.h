#pragma once

// "Containers and virtual machines": the disks of the scan's virtual machines, each with the tool
// that owns it and how to take space back there. It only advises; nothing here deletes.

#include "cleaning/VirtualDisks.h"

#include <QFrame>
#include <QTimer>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace dorvik {

class AppState;

class VirtualDisksCard : public QFrame {
public:
    // How long a copy button reads "Copied".
    static constexpr std::chrono::milliseconds copiedTime{2000};
    // The most height the rows take before they scroll.
    static constexpr int tallestRows = 220;

    explicit VirtualDisksCard(AppState& state, QWidget* parent = nullptr);

    // Shows these disks, the card hidden when there are none.
    void setDisks(std::vector<VirtualDisk> disks);
    const std::vector<VirtualDisk>& disks() const { return disks_; }
    // The path of the disk whose command was copied last, while its button says so.
    const std::optional<std::string>& copied() const { return copied_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeRow(const VirtualDisk& disk);
    void fitRows();
    void copyCommand(const VirtualDisk& disk);
    void setCopied(std::optional<std::string> path);

    AppState& state_;
    QScrollArea* scroll_;
    QVBoxLayout* rows_;
    std::vector<VirtualDisk> disks_;
    std::map<std::string, QPushButton*> copyButtons_; // by the disk's path
    std::optional<std::string> copied_;
    QTimer copiedTimer_;
};

} // namespace dorvik
