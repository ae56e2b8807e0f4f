#include "ui/pages/developer/VirtualDisksCard.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/widgets/LeadingSymbolLayout.h"
#include "ui/widgets/SymbolView.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace dorvik {

VirtualDisksCard::VirtualDisksCard(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state), scroll_(new QScrollArea), rows_(new QVBoxLayout) {
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::gap + 2);
    layout->addWidget(
        Style::label(tr("Containers and virtual machines"), Style::TextRole::headline));
    auto* rows = new QWidget;
    rows->setObjectName(QStringLiteral("diskRows"));
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(Style::sectionGap);
    rows->setLayout(rows_);
    scroll_->setWidget(rows);
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The card's ground shows through; the scroll bar keeps the style's look.
    scroll_->setStyleSheet(
        QStringLiteral("QScrollArea, QWidget#diskRows { background: transparent; }"));
    scroll_->viewport()->setAutoFillBackground(false);
    layout->addWidget(scroll_);
    copiedTimer_.setSingleShot(true);
    copiedTimer_.setInterval(copiedTime);
    connect(&copiedTimer_, &QTimer::timeout, this, [this] { setCopied(std::nullopt); });
    hide();
}

void VirtualDisksCard::setDisks(std::vector<VirtualDisk> disks) {
    setVisible(!disks.empty());
    if (disks == disks_) {
        return;
    }
    disks_ = std::move(disks);
    copyButtons_.clear();
    while (QLayoutItem* row = rows_->takeAt(0)) {
        delete row->widget();
        delete row;
    }
    for (const VirtualDisk& disk : disks_) {
        rows_->addWidget(makeRow(disk));
    }
    setCopied(std::nullopt);
    fitRows();
}

void VirtualDisksCard::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    fitRows();
}

void VirtualDisksCard::fitRows() {
    // As tall as the rows at this width, up to a limit that leaves the page's table its room;
    // more disks scroll.
    QWidget* rows = scroll_->widget();
    const int width = scroll_->viewport()->width();
    const int needed =
        rows->hasHeightForWidth() ? rows->heightForWidth(width) : rows->sizeHint().height();
    scroll_->setFixedHeight(std::min(needed, tallestRows));
}

QWidget* VirtualDisksCard::makeRow(const VirtualDisk& disk) {
    auto* row = new QWidget;
    auto* symbol = new SymbolView("internaldrive", Style::headlineIcon);
    symbol->setTint(Style::Tint::accent);
    const LeadingSymbolLayout layout = layOutWithLeadingSymbol(row, symbol, 0, Style::gap + 4);
    layout.column->setSpacing(Style::smallGap);

    auto* title = new QHBoxLayout;
    title->setSpacing(Style::gap);
    auto* name = Style::label(nameText(disk.name), Style::TextRole::body);
    QFont bold = name->font();
    bold.setWeight(QFont::DemiBold);
    name->setFont(bold);
    name->setToolTip(nameText(displayPath(disk.path)));
    title->addWidget(name);
    title->addWidget(Style::label(shownText(disk.owner), Style::TextRole::secondary));
    title->addStretch();
    auto* size = Style::label(qtText(TextForms::size(disk.size)), Style::TextRole::body);
    if (disk.capacity > disk.size) {
        size->setText(size->text() + QStringLiteral("  ·  ") +
                      tr("can grow to %1").arg(qtText(TextForms::size(disk.capacity))));
    }
    title->addWidget(size);
    auto* reveal = new QPushButton(tr("Show in Finder"));
    connect(reveal, &QPushButton::clicked, this,
            [this, path = disk.path] { revealPaths(state_, {path}); });
    title->addWidget(reveal);
    layout.column->addLayout(title);

    auto* advice = Style::label(shownText(disk.advice), Style::TextRole::secondary);
    advice->setWordWrap(true);
    layout.column->addWidget(advice);

    if (disk.command) {
        auto* commandLine = new QHBoxLayout;
        commandLine->setSpacing(Style::gap);
        auto* command = new QLabel(qtText(*disk.command));
        command->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        command->setTextInteractionFlags(Qt::TextSelectableByMouse);
        commandLine->addWidget(command);
        auto* copy = new QPushButton(Symbols::icon("doc.on.doc"), tr("Copy Command"));
        connect(copy, &QPushButton::clicked, this, [this, disk] { copyCommand(disk); });
        copyButtons_[disk.path] = copy;
        commandLine->addWidget(copy);
        commandLine->addStretch();
        layout.column->addLayout(commandLine);
    }
    return row;
}

void VirtualDisksCard::copyCommand(const VirtualDisk& disk) {
    QGuiApplication::clipboard()->setText(qtText(disk.command.value_or("")));
    setCopied(disk.path);
    copiedTimer_.start();
}

void VirtualDisksCard::setCopied(std::optional<std::string> path) {
    copied_ = std::move(path);
    for (const auto& [diskPath, button] : copyButtons_) {
        button->setText(diskPath == copied_ ? tr("Copied") : tr("Copy Command"));
    }
}

} // namespace dorvik
