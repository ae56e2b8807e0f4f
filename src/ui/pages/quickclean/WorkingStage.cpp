#include "ui/pages/quickclean/WorkingStage.h"

#include "ui/Style.h"
#include "ui/widgets/CentredColumn.h"
#include "ui/widgets/ScanningRing.h"

#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int columnWidth = 460;
constexpr int ringDiameter = 72;

} // namespace

WorkingStage::WorkingStage(QWidget* parent)
    : QWidget(parent), title_(Style::label({}, Style::TextRole::pageTitle)),
      subtitle_(Style::label({}, Style::TextRole::secondary)) {
    auto* column = new CentredColumn(this, columnWidth);
    QVBoxLayout* content = column->content();
    content->setSpacing(Style::sectionGap);
    content->addWidget(new ScanningRing(ringDiameter), 0, Qt::AlignHCenter);
    title_->setAlignment(Qt::AlignCenter);
    subtitle_->setAlignment(Qt::AlignCenter);
    subtitle_->setWordWrap(true);
    content->addWidget(title_);
    content->addWidget(subtitle_);
}

void WorkingStage::setTexts(const QString& title, const QString& subtitle) {
    title_->setText(title);
    subtitle_->setText(subtitle);
}

QString WorkingStage::title() const {
    return title_->text();
}

QString WorkingStage::subtitle() const {
    return subtitle_->text();
}

} // namespace dorvik
