#include "ui/sheets/SettingsView.h"

#include "state/AppState.h"
#include "ui/Appearance.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/SegmentedControl.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
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
    // A window of choices that apply at once closes as a dialog does.
    for (const QKeySequence& keys :
         {QKeySequence(Qt::Key_Escape), QKeySequence(QKeySequence::Close),
          QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, &QWidget::close);
    }
}

QAbstractButton* SettingsView::appearanceButton(int index) const {
    return appearancePicker_->segment(index);
}

QWidget* SettingsView::makeGeneralTab() {
    auto* tab = new QWidget;

    appearancePicker_ = new SegmentedControl;
    for (AppAppearance choice : allAppAppearances) {
        appearancePicker_->addSegment(static_cast<int>(choice), shownText(info(choice).label));
    }
    appearancePicker_->setChosen(static_cast<int>(appearance_.appearance()));
    appearancePicker_->onChosen = [this](int id) {
        appearance_.setAppearance(static_cast<AppAppearance>(id));
    };
    auto* segments = new QWidget;
    auto* segmentsLayout = new QHBoxLayout(segments);
    segmentsLayout->setContentsMargins(0, 0, 0, 0);
    segmentsLayout->addWidget(appearancePicker_);
    segmentsLayout->addStretch();

    permanentDelete_ = new QCheckBox(tr("Delete permanently instead of using the Trash"));
    permanentDelete_->setChecked(state_.settings().permanentDelete());
    connect(permanentDelete_, &QCheckBox::toggled, &state_.settings(),
            &SettingsState::setPermanentDelete);

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
