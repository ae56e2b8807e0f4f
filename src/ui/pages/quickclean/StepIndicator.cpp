#include "ui/pages/quickclean/StepIndicator.h"

#include "ui/Style.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>

namespace dorvik {

namespace {

constexpr int dotSize = 22;
constexpr int joinWidth = 36;

QString cssColour(const QColor& colour) {
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alpha());
}

} // namespace

StepIndicator::StepIndicator(QWidget* parent) : QWidget(parent) {
    const QString names[stepCount] = {tr("Scan"), tr("Review"), tr("Clean")};
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap);
    for (int step = 0; step < stepCount; ++step) {
        if (step > 0) {
            auto* join = new QFrame;
            join->setProperty("separator", true);
            join->setFixedSize(joinWidth, 1);
            layout->addWidget(join, 0, Qt::AlignVCenter);
        }
        dots_[step] = new QLabel(QString::number(step + 1));
        dots_[step]->setAlignment(Qt::AlignCenter);
        dots_[step]->setFixedSize(dotSize, dotSize);
        names_[step] = new QLabel(names[step]);
        layout->addWidget(dots_[step]);
        layout->addWidget(names_[step]);
    }
    setCurrent(std::nullopt);
}

void StepIndicator::setCurrent(std::optional<int> step) {
    current_ = step;
    const QPalette colours = palette();
    for (int index = 0; index < stepCount; ++index) {
        const bool lit = step == index;
        const bool passed = step && index < *step;
        const QColor fill =
            lit ? Style::accent(colours)
                : (passed ? Style::faded(Style::accent(colours), 0.25) : Style::separator(colours));
        const QColor digit =
            lit ? colours.color(QPalette::HighlightedText) : Style::secondaryText(colours);
        dots_[index]->setStyleSheet(QStringLiteral("background: %1; color: %2; border-radius: %3px;"
                                                   " font-weight: 600;")
                                        .arg(cssColour(fill), cssColour(digit))
                                        .arg(dotSize / 2));
        Style::setTextRole(names_[index], lit ? Style::TextRole::body : Style::TextRole::secondary);
        QFont font = names_[index]->font();
        font.setWeight(lit ? QFont::DemiBold : QFont::Normal);
        names_[index]->setFont(font);
    }
}

void StepIndicator::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        setCurrent(current_);
    }
}

} // namespace dorvik
