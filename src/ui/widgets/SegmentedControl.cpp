#include "ui/widgets/SegmentedControl.h"

#include "ui/Style.h"
#include "ui/Symbols.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPushButton>

namespace dorvik {

SegmentedControl::SegmentedControl(QWidget* parent)
    : QWidget(parent), group_(new QButtonGroup(this)), layout_(new QHBoxLayout(this)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    connect(group_, &QButtonGroup::idClicked, this, [this](int id) {
        if (onChosen) {
            onChosen(id);
        }
    });
}

void SegmentedControl::addSegment(int id, const QString& title, std::string_view symbol) {
    auto* button = new QPushButton(title);
    if (!symbol.empty()) {
        button->setIcon(Symbols::icon(symbol));
    }
    button->setCheckable(true);
    const QList<QAbstractButton*> earlier = group_->buttons();
    if (earlier.isEmpty()) {
        Style::setSegment(button, Style::Segment::first);
    } else {
        Style::setSegment(button, Style::Segment::last);
        if (earlier.size() > 1) {
            Style::setSegment(earlier.back(), Style::Segment::middle);
        }
    }
    group_->addButton(button, id);
    layout_->addWidget(button);
}

void SegmentedControl::setChosen(int id) {
    if (QAbstractButton* button = group_->button(id)) {
        button->setChecked(true);
    }
}

int SegmentedControl::chosen() const {
    return group_->checkedId();
}

QAbstractButton* SegmentedControl::segment(int index) const {
    return group_->buttons().value(index);
}

} // namespace dorvik
