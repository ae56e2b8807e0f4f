#include "ui/sheets/SettingsView.h"

#include "background/CleanSchedule.h"
#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "platform/HomeDirectory.h"
#include "state/AppState.h"
#include "ui/Appearance.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SymbolView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

// A control with its explanation under it.
QWidget* withCaption(QWidget* control, const QString& caption) {
    auto* block = new QWidget;
    // A wrapped text asks for little width; the block takes the whole column.
    block->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto* text = Style::label(caption, Style::TextRole::caption);
    text->setWordWrap(true);
    auto* layout = new QVBoxLayout(block);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::smallGap);
    if (control != nullptr) {
        layout->addWidget(control);
    }
    layout->addWidget(text);
    return block;
}

QFormLayout* makeForm(QWidget* tab) {
    auto* form = new QFormLayout(tab);
    form->setContentsMargins(Style::sectionGap, Style::sectionGap, Style::sectionGap,
                             Style::sectionGap);
    form->setVerticalSpacing(Style::sectionGap);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    return form;
}

// `widget` at the left of a row of its own, the rest of the row empty.
QWidget* leftAligned(QWidget* widget) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(widget);
    layout->addStretch();
    return row;
}

QToolButton* smallButton(std::string_view symbol, const QString& name) {
    auto* button = new QToolButton;
    button->setIcon(Symbols::icon(symbol));
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setAutoRaise(false);
    return button;
}

} // namespace

SettingsView::SettingsView(AppState& state, AppearanceController& appearance, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state), appearance_(appearance) {
    setWindowTitle(tr("Settings"));
    setFixedSize(settingsViewSize);
    tabs_ = new QTabWidget;
    tabs_->addTab(makeGeneralTab(), Symbols::icon("gearshape"), tr("General"));
    tabs_->addTab(makeAutomationTab(), Symbols::icon("calendar.badge.clock"), tr("Automation"));
    tabs_->addTab(makeExclusionsTab(), Symbols::icon("eye.slash"), tr("Exclusions"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::sectionGap, Style::sectionGap, Style::sectionGap,
                               Style::sectionGap);
    layout->addWidget(tabs_);
    // A window of choices that apply at once closes as a dialog does.
    for (const QKeySequence& keys :
         {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close),
          QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &QWidget::close);
    }
    BackgroundServices& background = state_.background();
    connect(&background, &BackgroundServices::changed, this, [this] {
        refreshGeneral();
        refreshAutomation();
    });
    connect(&background, &BackgroundServices::cleaningChanged, this,
            &SettingsView::refreshAutomation);
    connect(&state_, &AppState::hasFullDiskAccessChanged, this, &SettingsView::refreshGeneral);
    connect(&state_.settings(), &SettingsState::changed, this, &SettingsView::refreshExclusions);
    refreshGeneral();
    refreshAutomation();
    refreshExclusions();
}

QAbstractButton* SettingsView::appearanceButton(int index) const {
    return appearancePicker_->segment(index);
}

QWidget* SettingsView::makeGeneralTab() {
    auto* tab = new QWidget;
    BackgroundServices& background = state_.background();

    appearancePicker_ = new SegmentedControl;
    for (AppAppearance choice : allAppAppearances) {
        appearancePicker_->addSegment(static_cast<int>(choice), shownText(info(choice).label));
    }
    appearancePicker_->setChosen(static_cast<int>(appearance_.appearance()));
    appearancePicker_->onChosen = [this](int id) {
        appearance_.setAppearance(static_cast<AppAppearance>(id));
    };

    permanentDelete_ = new QCheckBox(tr("Delete permanently instead of using the Trash"));
    permanentDelete_->setChecked(state_.settings().permanentDelete());
    connect(permanentDelete_, &QCheckBox::toggled, &state_.settings(),
            &SettingsState::setPermanentDelete);

    // Linux has no access to grant: the row only says what is so.
    fullDiskAccess_ = new QWidget;
    auto* granted = new QHBoxLayout(fullDiskAccess_);
    granted->setContentsMargins(0, 0, 0, 0);
    granted->setSpacing(Style::smallGap);
    auto* check = new SymbolView("checkmark.circle.fill", Style::smallIcon);
    check->setTint(Style::Tint::positive);
    granted->addWidget(check);
    granted->addWidget(Style::label(tr("Granted"), Style::TextRole::body));
    granted->addStretch();

    launchAtLogin_ = new QCheckBox(tr("Open Dorvik at login"));
    connect(launchAtLogin_, &QCheckBox::toggled, &background,
            &BackgroundServices::setLaunchAtLogin);
    menuBar_ = new QCheckBox(shownText("Show free space in the menu bar"));
    connect(menuBar_, &QCheckBox::toggled, &background, &BackgroundServices::setMenuBar);
    watchRemovedApps_ = new QCheckBox(tr("Tell me when an app I remove leaves files behind"));
    connect(watchRemovedApps_, &QCheckBox::toggled, &background,
            &BackgroundServices::setWatchRemovedApps);

    auto* form = makeForm(tab);
    form->addRow(tr("Appearance"),
                 withCaption(leftAligned(appearancePicker_),
                             shownText("System follows your Mac: with macOS set to Auto, "
                                       "Dorvik is light by day and dark at night.")));
    form->addRow(QString(), withCaption(permanentDelete_, tr("Recommended off: anything in the "
                                                             "Trash can be restored.")));
    form->addRow(shownText("Full Disk Access"), fullDiskAccess_);
    form->addRow(QString(), launchAtLogin_);
    form->addRow(QString(), menuBar_);
    form->addRow(QString(), watchRemovedApps_);
    return tab;
}

QWidget* SettingsView::makeAutomationTab() {
    auto* tab = new QWidget;
    BackgroundServices& background = state_.background();

    schedule_ = new QComboBox;
    for (CleanSchedule schedule : allCleanSchedules) {
        schedule_->addItem(qtText(label(schedule)), static_cast<int>(schedule));
    }
    connect(schedule_, &QComboBox::activated, this, [this](int index) {
        state_.background().setCleanSchedule(
            static_cast<CleanSchedule>(schedule_->itemData(index).toInt()));
    });

    lastRun_ = Style::label({}, Style::TextRole::body);
    runNow_ = new QPushButton(tr("Run Now"));
    connect(runNow_, &QPushButton::clicked, &background, &BackgroundServices::cleanNow);

    lowSpace_ = new QComboBox;
    for (const int gigabytes : lowSpaceChoices) {
        lowSpace_->addItem(gigabytes == 0 ? tr("Never") : tr("%1 GB").arg(gigabytes), gigabytes);
    }
    connect(lowSpace_, &QComboBox::activated, this, [this](int index) {
        state_.background().setLowSpaceGB(lowSpace_->itemData(index).toInt());
    });

    auto* form = makeForm(tab);
    form->addRow(tr("Clean safe junk automatically"), leftAligned(schedule_));
    form->addRow(QString(),
                 withCaption(nullptr, shownText("Only caches, logs, saved window state and Xcode "
                                                "build data \u2014 files that regenerate on their "
                                                "own. Never the Trash, Downloads or anything "
                                                "marked Review. Runs while Dorvik is open or in "
                                                "the menu bar.")));
    lastRunRow_ = lastRun_;
    form->addRow(tr("Last run"), lastRun_);
    form->addRow(QString(), leftAligned(runNow_));
    form->addRow(tr("Warn me when free space drops below"), leftAligned(lowSpace_));
    return tab;
}

QWidget* SettingsView::makeExclusionsTab() {
    auto* tab = new QWidget;
    exclusions_ = new QListWidget;
    exclusions_->setSelectionMode(QAbstractItemView::SingleSelection);
    addExclusion_ = smallButton("plus", tr("Add a folder"));
    removeExclusion_ = smallButton("minus", tr("Remove the folder"));
    connect(addExclusion_, &QToolButton::clicked, this, &SettingsView::chooseExclusion);
    connect(removeExclusion_, &QToolButton::clicked, this, &SettingsView::removeSelectedExclusion);
    connect(exclusions_, &QListWidget::itemSelectionChanged, this,
            [this] { removeExclusion_->setEnabled(!exclusions_->selectedItems().isEmpty()); });

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(0);
    buttons->addWidget(addExclusion_);
    buttons->addWidget(removeExclusion_);
    buttons->addStretch();

    auto* layout = new QVBoxLayout(tab);
    layout->setContentsMargins(Style::sectionGap, Style::sectionGap, Style::sectionGap,
                               Style::sectionGap);
    layout->setSpacing(Style::gap);
    auto* caption = Style::label(tr("Folders Dorvik never scans or suggests deleting."),
                                 Style::TextRole::secondary);
    caption->setWordWrap(true);
    layout->addWidget(caption);
    layout->addWidget(exclusions_, 1);
    layout->addLayout(buttons);
    return tab;
}

void SettingsView::refreshGeneral() {
    auto* form = static_cast<QFormLayout*>(fullDiskAccess_->parentWidget()->layout());
    form->setRowVisible(fullDiskAccess_, state_.hasFullDiskAccess());
    const BackgroundServices& background = state_.background();
    // Read live: after a change that failed, the switch shows what is true.
    for (const auto& [box, on] : {std::pair{launchAtLogin_, background.launchAtLogin()},
                                  std::pair{menuBar_, background.menuBar()},
                                  std::pair{watchRemovedApps_, background.watchRemovedApps()}}) {
        const QSignalBlocker quiet(box);
        box->setChecked(on);
    }
}

void SettingsView::refreshAutomation() {
    const BackgroundServices& background = state_.background();
    schedule_->setCurrentIndex(schedule_->findData(static_cast<int>(background.cleanSchedule())));

    const std::optional<double> lastRun = background.lastAutoClean();
    if (lastRun) {
        lastRun_->setText(qtText(TextForms::relativeDate(*lastRun, Dates::now())) +
                          QStringLiteral(" \u00b7 ") +
                          qtText(TextForms::size(background.lastAutoCleanBytes())));
    }
    auto* form = static_cast<QFormLayout*>(lastRunRow_->parentWidget()->layout());
    form->setRowVisible(lastRunRow_, lastRun.has_value());

    runNow_->setText(background.isCleaning() ? tr("Cleaning") : tr("Run Now"));
    runNow_->setEnabled(!background.isCleaning());

    // A threshold stored by hand that is not among the choices is shown as it is.
    const int gigabytes = background.lowSpaceGB() < 1 ? 0 : background.lowSpaceGB();
    if (lowSpace_->findData(gigabytes) < 0) {
        lowSpace_->addItem(tr("%1 GB").arg(gigabytes), gigabytes);
    }
    lowSpace_->setCurrentIndex(lowSpace_->findData(gigabytes));
}

void SettingsView::refreshExclusions() {
    const std::vector<std::string> paths = state_.settings().excludedPaths();
    QStringList lines;
    for (const std::string& path : paths) {
        lines.append(qtText(path));
    }
    QStringList shown;
    for (int row = 0; row < exclusions_->count(); ++row) {
        shown.append(exclusions_->item(row)->text());
    }
    if (lines != shown) {
        exclusions_->clear();
        exclusions_->addItems(lines);
    }
    removeExclusion_->setEnabled(!exclusions_->selectedItems().isEmpty());
}

void SettingsView::chooseExclusion() {
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Exclude a Folder"),
                                                             qtText(platform::homeDirectory()));
    if (!folder.isEmpty()) {
        addExclusion(folder);
    }
}

void SettingsView::addExclusion(const QString& chosenFolder) {
    state_.settings().appendExcludedPath(canonicalPath(stdText(chosenFolder)));
}

void SettingsView::removeSelectedExclusion() {
    const QList<QListWidgetItem*> selected = exclusions_->selectedItems();
    if (selected.isEmpty()) {
        return;
    }
    const std::string path = stdText(selected.first()->text());
    exclusions_->clearSelection();
    state_.settings().removeExcludedPath(path);
}

} // namespace dorvik
