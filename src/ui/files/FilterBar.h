#pragma once

// The controls over a FileFilter, left to right: the search field, the size, date and category
// menus, and a chip for the folder the list is narrowed to. Each edit hands the whole new filter
// to onChange.

#include "scanning/FileFilter.h"

#include <QFrame>
#include <QWidget>

#include <functional>
#include <optional>
#include <span>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace dorvik {

struct SizeOption {
    const char* title;
    int64_t bytes;
};

struct AgeOption {
    const char* title;
    std::optional<int> days;
};

class FilterBar : public QWidget {
public:
    // Binary thresholds on purpose, unlike the decimal sizes shown beside them.
    static std::span<const SizeOption> sizeOptions();
    static std::span<const AgeOption> ageOptions();

    explicit FilterBar(QWidget* parent = nullptr);

    // Shows `filter` without calling onChange.
    void setFilter(const FileFilter& filter);
    const FileFilter& filter() const { return filter_; }

    std::function<void(const FileFilter&)> onChange;

    QLineEdit* searchField() const { return search_; }
    QComboBox* sizeMenu() const { return size_; }
    QComboBox* dateMenu() const { return date_; }
    QComboBox* categoryMenu() const { return category_; }
    QWidget* folderChip() const { return folder_; }
    QToolButton* clearFolderButton() const { return clearFolder_; }

private:
    void change(const std::function<void(FileFilter&)>& edit);
    void showFilter();

    FileFilter filter_;
    QLineEdit* search_;
    QAction* clearSearch_;
    QComboBox* size_;
    QComboBox* date_;
    QComboBox* category_;
    QFrame* folder_;
    QLabel* folderPath_;
    QToolButton* clearFolder_;
};

} // namespace dorvik
