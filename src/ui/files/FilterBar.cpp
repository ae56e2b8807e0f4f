#include "ui/files/FilterBar.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/SymbolView.h"

#include <QAction>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

#include <array>

namespace dorvik {

namespace {

constexpr std::array sizeChoices = {
    SizeOption{"Any size", 0},           SizeOption{"> 1 MB", 1'048'576},
    SizeOption{"> 10 MB", 10'485'760},   SizeOption{"> 100 MB", 104'857'600},
    SizeOption{"> 500 MB", 524'288'000}, SizeOption{"> 1 GB", 1'073'741'824},
    SizeOption{"> 5 GB", 5'368'709'120},
};

const std::array ageChoices = {
    AgeOption{"Any date", std::nullopt}, AgeOption{"Unchanged > 1 month", 30},
    AgeOption{"> 3 months", 90},         AgeOption{"> 6 months", 180},
    AgeOption{"> 1 year", 365},          AgeOption{"> 2 years", 730},
};

// The menus' data for "any": no age, no category.
constexpr int anyChoice = -1;

// Picks the item whose data equals `value`; a value none of the menu's `choices` has gets one
// extra item, titled `title`, so that a filter set elsewhere still shows what it does.
void showChoice(QComboBox* menu, int choices, const QVariant& value, const QString& title) {
    while (menu->count() > choices) {
        menu->removeItem(menu->count() - 1);
    }
    int index = menu->findData(value);
    if (index < 0) {
        menu->addItem(title, value);
        index = choices;
    }
    menu->setCurrentIndex(index);
}

} // namespace

std::span<const SizeOption> FilterBar::sizeOptions() {
    return sizeChoices;
}

std::span<const AgeOption> FilterBar::ageOptions() {
    return ageChoices;
}

FilterBar::FilterBar(QWidget* parent)
    : QWidget(parent), search_(new QLineEdit), size_(new QComboBox), date_(new QComboBox),
      category_(new QComboBox), folder_(new QFrame), folderPath_(new QLabel),
      clearFolder_(new QToolButton) {
    search_->setPlaceholderText(tr("Search by name (use / to search paths)"));
    search_->setMinimumWidth(220);
    // The menus keep a steady width whatever is chosen; their lists show every title whole.
    size_->setMinimumContentsLength(9);
    date_->setMinimumContentsLength(16);
    // Long enough for the longest category, "Caches & Temporary Files": the open list is as wide
    // as the menu, and a title cut in the middle reads as nonsense.
    category_->setMinimumContentsLength(24);
    for (QComboBox* menu : {size_, date_, category_}) {
        menu->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    }
    search_->addAction(Symbols::icon("magnifyingglass", Style::Tint::secondary),
                       QLineEdit::LeadingPosition);
    clearSearch_ = search_->addAction(Symbols::icon("xmark.circle.fill", Style::Tint::secondary),
                                      QLineEdit::TrailingPosition);
    clearSearch_->setToolTip(tr("Clear"));
    clearSearch_->setVisible(false);
    connect(clearSearch_, &QAction::triggered, search_, &QLineEdit::clear);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        clearSearch_->setVisible(!text.isEmpty());
        change([&](FileFilter& filter) { filter.query = stdText(text); });
    });

    for (const SizeOption& option : sizeChoices) {
        size_->addItem(tr(option.title), QVariant::fromValue<qint64>(option.bytes));
    }
    connect(size_, &QComboBox::activated, this, [this](int index) {
        change([&](FileFilter& filter) { filter.minSize = size_->itemData(index).toLongLong(); });
    });

    for (const AgeOption& option : ageChoices) {
        date_->addItem(tr(option.title), option.days.value_or(anyChoice));
    }
    connect(date_, &QComboBox::activated, this, [this](int index) {
        const int days = date_->itemData(index).toInt();
        change([&](FileFilter& filter) {
            filter.modifiedOlderThanDays = days == anyChoice ? std::nullopt : std::optional(days);
        });
    });

    category_->addItem(tr("All categories"), anyChoice);
    for (StorageBucket bucket : allStorageBuckets) {
        category_->addItem(Symbols::icon(info(bucket).symbol), shownText(info(bucket).displayName),
                           static_cast<int>(bucket));
    }
    connect(category_, &QComboBox::activated, this, [this](int index) {
        const int bucket = category_->itemData(index).toInt();
        change([&](FileFilter& filter) {
            filter.bucket = bucket == anyChoice ? std::nullopt
                                                : std::optional(static_cast<StorageBucket>(bucket));
        });
    });

    Style::makeCard(folder_);
    auto* chip = new QHBoxLayout(folder_);
    chip->setContentsMargins(Style::gap, 2, 2, 2);
    chip->setSpacing(Style::smallGap);
    chip->addWidget(new SymbolView("folder", Style::smallIcon));
    chip->addWidget(folderPath_);
    clearFolder_->setIcon(Symbols::icon("xmark", Style::Tint::secondary));
    clearFolder_->setAutoRaise(true);
    clearFolder_->setToolTip(tr("Show files from every folder"));
    chip->addWidget(clearFolder_);
    connect(clearFolder_, &QToolButton::clicked, this,
            [this] { change([](FileFilter& filter) { filter.pathPrefix.reset(); }); });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    layout->addWidget(search_, 1);
    layout->addWidget(size_);
    layout->addWidget(date_);
    layout->addWidget(category_);
    layout->addWidget(folder_);
    showFilter();
}

void FilterBar::setFilter(const FileFilter& filter) {
    if (filter == filter_) {
        return;
    }
    filter_ = filter;
    showFilter();
}

void FilterBar::change(const std::function<void(FileFilter&)>& edit) {
    FileFilter changed = filter_;
    edit(changed);
    if (changed == filter_) {
        return;
    }
    filter_ = std::move(changed);
    showFilter();
    if (onChange) {
        onChange(filter_);
    }
}

void FilterBar::showFilter() {
    const QSignalBlocker quietSearch(search_);
    if (stdText(search_->text()) != filter_.query) {
        search_->setText(qtText(filter_.query));
        clearSearch_->setVisible(!filter_.query.empty());
    }
    showChoice(size_, static_cast<int>(sizeChoices.size()),
               QVariant::fromValue<qint64>(filter_.minSize),
               QStringLiteral("> ") + qtText(TextForms::size(filter_.minSize)));
    showChoice(date_, static_cast<int>(ageChoices.size()),
               filter_.modifiedOlderThanDays.value_or(anyChoice),
               tr("Unchanged > %1 days").arg(filter_.modifiedOlderThanDays.value_or(0)));
    showChoice(category_, static_cast<int>(allStorageBuckets.size()) + 1,
               filter_.bucket ? static_cast<int>(*filter_.bucket) : anyChoice, QString());
    folder_->setVisible(filter_.pathPrefix.has_value());
    folderPath_->setText(nameText(displayPath(filter_.pathPrefix.value_or(""))));
}

} // namespace dorvik
