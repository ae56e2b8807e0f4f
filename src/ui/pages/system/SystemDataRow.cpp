#include "ui/pages/system/SystemDataRow.h"

#include "base/TextForms.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/widgets/RiskBadge.h"
#include "ui/widgets/SymbolView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

QLabel* wrapped(const QString& text, Style::TextRole role) {
    QLabel* label = Style::label(text, role);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

// The advice as rich text: what it quotes between backquotes is a command, set in the fixed
// font so that it reads as what to type.
QString adviceText(const QString& advice) {
    const QStringList pieces = advice.split(QLatin1Char('`'));
    QString html;
    for (qsizetype index = 0; index < pieces.size(); ++index) {
        const QString piece = pieces[index].toHtmlEscaped();
        const bool command = index % 2 == 1 && index + 1 < pieces.size();
        html += command ? QStringLiteral("<code>%1</code>").arg(piece) : piece;
    }
    return html;
}

} // namespace

SystemDataRow::SystemDataRow(const SystemDataPart& part, int64_t sum,
                             std::function<void(const std::string&)> reveal, QWidget* parent)
    : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, Style::gap + 2, 0, Style::gap + 2);
    layout->setSpacing(Style::gap + 4);

    auto* icon = new SymbolView(part.symbol, 36);
    icon->setTint(Style::Tint::accent);
    icon->setBadge(true);
    layout->addWidget(icon, 0, Qt::AlignTop);

    auto* lines = new QVBoxLayout;
    lines->setSpacing(Style::smallGap);
    auto* titleLine = new QHBoxLayout;
    titleLine->setSpacing(Style::gap);
    QLabel* title = Style::label(shownText(part.title), Style::TextRole::headline);
    titleLine->addWidget(title);
    titleLine->addWidget(new RiskBadge(part.risk));
    titleLine->addStretch(1);
    lines->addLayout(titleLine);
    lines->addWidget(wrapped(shownText(part.explanation), Style::TextRole::secondary));
    QLabel* advice = wrapped(adviceText(shownText(part.advice)), Style::TextRole::body);
    advice->setTextFormat(Qt::RichText);
    lines->addWidget(advice);
    if (part.path) {
        auto* pathLine = new QHBoxLayout;
        pathLine->setSpacing(Style::smallGap);
        QLabel* path =
            Style::label(nameText(displayPath(*part.path)), Style::TextRole::captionTertiary);
        pathLine->addWidget(path);
        auto* button = new QToolButton;
        button->setIcon(Symbols::icon("arrow.up.forward.app", Style::Tint::secondary));
        button->setAutoRaise(true);
        button->setToolTip(tr("Show in Finder"));
        button->setAccessibleName(button->toolTip());
        button->setCursor(Qt::PointingHandCursor);
        connect(button, &QToolButton::clicked, this,
                [reveal = std::move(reveal), path = *part.path] { reveal(path); });
        pathLine->addWidget(button);
        pathLine->addStretch(1);
        lines->addLayout(pathLine);
        revealButton_ = button;
    }
    layout->addLayout(lines, 1);

    auto* figures = new QVBoxLayout;
    figures->setSpacing(2);
    QLabel* size = Style::label(qtText(TextForms::size(part.size)), Style::TextRole::headline);
    size->setAlignment(Qt::AlignRight);
    QLabel* share = Style::label(
        qtText(TextForms::percent(static_cast<double>(part.size), static_cast<double>(sum))),
        Style::TextRole::caption);
    share->setAlignment(Qt::AlignRight);
    figures->addWidget(size);
    figures->addWidget(share);
    figures->addStretch(1);
    layout->addLayout(figures);
}

} // namespace dorvik
