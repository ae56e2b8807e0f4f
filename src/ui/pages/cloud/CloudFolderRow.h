#pragma once

// One folder of the iCloud Drive page: a chevron that opens it, a check box over its downloads
// that iCloud already has whole, its icon and title, how many files are downloaded and how much
// more lies only in iCloud, and its size here. Opened, it lists its first 300 downloads, each
// with its own check box, and says how many more there are.

#include "reclaim/CloudDownloads.h"

#include <QWidget>

#include <functional>
#include <set>
#include <string>
#include <vector>

class QCheckBox;
class QToolButton;

namespace dorvik {

// The most downloads an opened folder lists.
inline constexpr size_t cloudRowsShown = 300;

struct CloudFolderActions {
    std::function<void()> toggleExpanded;
    // Adds the paths to the selection, or takes them out.
    std::function<void(const std::vector<std::string>& paths, bool selected)> select;
    std::function<void(const std::string& path)> reveal;
};

class CloudFolderRow : public QWidget {
public:
    CloudFolderRow(const CloudFolder& folder, const std::set<std::string>& selected, bool expanded,
                   CloudFolderActions actions, QWidget* parent = nullptr);

    // What tests look at.
    QCheckBox* folderCheck() const { return folderCheck_; }
    QToolButton* chevron() const { return chevron_; }
    const std::vector<QCheckBox*>& itemChecks() const { return itemChecks_; }

private:
    QWidget* makeHead(const CloudFolder& folder, const std::set<std::string>& selected,
                      bool expanded);
    QWidget* makeItem(const CloudItem& item, bool selected);

    CloudFolderActions actions_;
    QCheckBox* folderCheck_ = nullptr;
    QToolButton* chevron_ = nullptr;
    std::vector<QCheckBox*> itemChecks_;
};

} // namespace dorvik
