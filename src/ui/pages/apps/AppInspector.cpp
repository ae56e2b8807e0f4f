#include "ui/pages/apps/AppInspector.h"

#include "apps/UninstallRefusal.h"
#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/pages/apps/AppIcon.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/SymbolView.h"

#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int paneWidth = 320;
constexpr int iconSize = 48;

QLabel* plainLabel(Style::TextRole role) {
    QLabel* label = Style::label({}, role);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* sizeLabel() {
    QLabel* label = plainLabel(Style::TextRole::body);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

// One thing the application keeps outside its bundle: where it lies and what it takes.
QWidget* makeRelatedRow(const RelatedItem& item) {
    auto* row = new QWidget;
    auto* grid = new QGridLayout(row);
    grid->setContentsMargins(0, Style::smallGap, 0, Style::smallGap);
    grid->setHorizontalSpacing(Style::gap);
    grid->setVerticalSpacing(0);
    QLabel* label = plainLabel(Style::TextRole::body);
    label->setText(shownText(item.label));
    QLabel* size = sizeLabel();
    size->setText(qtText(TextForms::size(item.size)));
    auto* path = new ElidedLabel;
    Style::setTextRole(path, Style::TextRole::captionTertiary);
    path->setText(nameText(displayPath(item.path)));
    grid->addWidget(label, 0, 0);
    grid->addWidget(size, 0, 1);
    grid->addWidget(path, 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    return row;
}

} // namespace

AppInspector::AppInspector(QWidget* parent)
    : QWidget(parent), stack_(new QStackedLayout), icon_(new QLabel),
      name_(plainLabel(Style::TextRole::headline)),
      version_(plainLabel(Style::TextRole::secondary)),
      identifier_(plainLabel(Style::TextRole::captionTertiary)), appSize_(sizeLabel()),
      dataSize_(sizeLabel()), totalSize_(sizeLabel()), relatedRows_(new QVBoxLayout),
      lock_(new SymbolView("lock.fill", Style::smallIcon)),
      note_(plainLabel(Style::TextRole::secondary)),
      uninstall_(new QPushButton(tr("Uninstall Completely"))) {
    setFixedWidth(paneWidth);
    Style::makeCard(this);
    auto* prompt = Style::label(tr("Select an app"), Style::TextRole::tertiary);
    prompt->setAlignment(Qt::AlignCenter);
    stack_->addWidget(prompt);
    stack_->addWidget(makeDetails());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->addLayout(stack_);
    connect(uninstall_, &QPushButton::clicked, this, [this] {
        if (app_ && onUninstall) {
            onUninstall(*app_);
        }
    });
    showApp(std::nullopt, {});
}

QWidget* AppInspector::makeDetails() {
    auto* details = new QWidget;
    auto* layout = new QVBoxLayout(details);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);

    auto* head = new QHBoxLayout;
    head->setSpacing(Style::gap + 4);
    icon_->setFixedSize(iconSize, iconSize);
    head->addWidget(icon_, 0, Qt::AlignTop);
    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    for (QLabel* label : {name_, version_, identifier_}) {
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        names->addWidget(label);
    }
    head->addLayout(names, 1);
    layout->addLayout(head);

    auto* sizes = new QGridLayout;
    sizes->setHorizontalSpacing(Style::gap);
    sizes->setVerticalSpacing(Style::smallGap);
    const std::pair<QString, QLabel*> lines[] = {
        {tr("App"), appSize_}, {tr("Data"), dataSize_}, {tr("Total"), totalSize_}};
    int line = 0;
    for (const auto& [caption, value] : lines) {
        sizes->addWidget(Style::label(caption, Style::TextRole::secondary), line, 0);
        sizes->addWidget(value, line++, 1);
    }
    QFont bold = totalSize_->font();
    bold.setBold(true);
    totalSize_->setFont(bold);
    sizes->setColumnStretch(1, 1);
    layout->addSpacing(Style::smallGap);
    layout->addLayout(sizes);

    layout->addSpacing(Style::smallGap);
    layout->addWidget(Style::label(tr("Related data"), Style::TextRole::headline));
    auto* rows = new QWidget;
    rows->setLayout(relatedRows_);
    relatedRows_->setContentsMargins(0, 0, 0, 0);
    relatedRows_->setSpacing(0);
    auto* scroll = new QScrollArea;
    scroll->setWidget(rows);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->viewport()->setAutoFillBackground(false);
    rows->setAutoFillBackground(false);
    layout->addWidget(scroll, 1);
    layout->addWidget(makeActionArea());
    return details;
}

QWidget* AppInspector::makeActionArea() {
    auto* area = new QWidget;
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, Style::smallGap, 0, 0);
    layout->setSpacing(Style::smallGap);
    auto* noteRow = new QHBoxLayout;
    noteRow->setSpacing(Style::gap);
    lock_->setTint(Style::Tint::secondary);
    noteRow->addWidget(lock_, 0, Qt::AlignTop);
    note_->setWordWrap(true);
    noteRow->addWidget(note_, 1);
    Style::setDestructive(uninstall_);
    uninstall_->setIcon(Symbols::icon("trash.fill", Style::Tint::danger));
    layout->addWidget(uninstall_);
    layout->addLayout(noteRow);
    return area;
}

void AppInspector::showApp(const std::optional<InstalledApp>& app,
                           const std::vector<std::string>& runningIdentifiers) {
    const bool sameApp = app && app_ && app->path == app_->path;
    app_ = app;
    stack_->setCurrentIndex(app ? 1 : 0);
    if (!app) {
        return;
    }
    if (!sameApp) {
        icon_->setPixmap(appIcon(app->path).pixmap(iconSize, iconSize));
    }
    name_->setText(nameText(app->name));
    version_->setText(app->version ? tr("Version %1").arg(nameText(*app->version)) : QString());
    version_->setVisible(app->version.has_value());
    identifier_->setText(app->bundleID ? nameText(*app->bundleID) : tr("No identifier"));
    appSize_->setText(qtText(TextForms::size(app->appSize)));
    dataSize_->setText(qtText(TextForms::size(app->relatedSize())));
    totalSize_->setText(qtText(TextForms::size(app->totalSize())));
    fillRelated();
    refreshActionArea(runningIdentifiers);
}

void AppInspector::setRunning(const std::vector<std::string>& runningIdentifiers) {
    if (app_) {
        refreshActionArea(runningIdentifiers);
    }
}

void AppInspector::fillRelated() {
    while (QLayoutItem* item = relatedRows_->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (app_->related.empty()) {
        QLabel* none =
            Style::label(tr("No data found outside the app."), Style::TextRole::secondary);
        none->setWordWrap(true);
        relatedRows_->addWidget(none);
    }
    for (const RelatedItem& item : app_->related) {
        relatedRows_->addWidget(makeRelatedRow(item));
    }
    relatedRows_->addStretch(1);
}

void AppInspector::refreshActionArea(const std::vector<std::string>& runningIdentifiers) {
    const auto refusal = uninstallRefusal(*app_, runningIdentifiers);
    // An Apple application offers no button at all; a running one shows it disabled.
    uninstall_->setVisible(refusal != UninstallRefusal::apple);
    uninstall_->setEnabled(!refusal);
    lock_->setVisible(refusal == UninstallRefusal::apple);
    note_->setVisible(refusal.has_value());
    note_->setText(refusal ? shownText(refusalNote(*refusal)) : QString());
}

} // namespace dorvik
