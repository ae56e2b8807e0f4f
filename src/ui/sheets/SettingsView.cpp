#include "ui/sheets/SettingsView.h"

#include "state/AppState.h"
#include "ui/Appearance.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace dorvik {

namespace {

// A control with its explanation under it.
QWidget* withCaption(QWidget* control, const QString& caption) {
    auto* block = new QWidget;
    auto* text = Style::label(caption, Style::TextRole::caption);
    text->setWordWrap(true);
    auto* layout = new QVBoxLayout(block);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::smallGap);
    layout->addWidget(control);
    layout->addWidget(text);
    return block;
}

} // namespace

SettingsView::SettingsView(AppState& state, AppearanceController& appearance, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state), appearance_(appearance) {
    setWindowTitle(tr("Settings"));
    setFixedSize(settingsViewSize);
    auto* tabs = new QTabWidget;
    tabs->addTab(makeGeneralTab(), Symbols::icon("gearshape"), tr("General"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::sectionGap, Style::sectionGap, Style::sectionGap,
                               Style::sectionGap);
    layout->addWidget(tabs);
}

QAbstractButton* SettingsView::appearanceButton(int index) const {
    return appearanceButtons_.value(index);
}

QWidget* SettingsView::makeGeneralTab() {
    auto* tab = new QWidget;

    // A segmented picker: one checkable button for each appearance, side by side.
    auto* segments = new QWidget;
    auto* segmentsLayout = new QHBoxLayout(segments);
    segmentsLayout->setContentsMargins(0, 0, 0, 0);
    segmentsLayout->setSpacing(0);
    auto* group = new QButtonGroup(segments);
    for (AppAppearance choice : allAppAppearances) {
        auto* button = new QPushButton(qtText(info(choice).label));
        button->setCheckable(true);
        button->setChecked(choice == appearance_.appearance());
        group->addButton(button, static_cast<int>(choice));
        Style::setSegment(button, choice == allAppAppearances.front()  ? Style::Segment::first
                                  : choice == allAppAppearances.back() ? Style::Segment::last
                                                                       : Style::Segment::middle);
        segmentsLayout->addWidget(button);
        appearanceButtons_.append(button);
    }
    segmentsLayout->addStretch();
    connect(group, &QButtonGroup::idClicked, this,
            [this](int id) { appearance_.setAppearance(static_cast<AppAppearance>(id)); });

    permanentDelete_ = new QCheckBox(tr("Delete permanently instead of using the Trash"));
    permanentDelete_->setChecked(state_.permanentDelete());
    connect(permanentDelete_, &QCheckBox::toggled, &state_, &AppState::setPermanentDelete);

    auto* form = new QFormLayout(tab);
    form->setContentsMargins(Style::sectionGap, Style::sectionGap, Style::sectionGap,
                             Style::sectionGap);
    form->setVerticalSpacing(Style::sectionGap);
    form->addRow(tr("Appearance"),
                 withCaption(segments, tr("System follows your Mac: with macOS set to Auto, "
                                          "Dorvik is light by day and dark at night.")));
    form->addRow(QString(), withCaption(permanentDelete_, tr("Recommended off: anything in the "
                                                             "Trash can be restored.")));
    return tab;
}

} // namespace dorvik
