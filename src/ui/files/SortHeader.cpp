#include "ui/files/SortHeader.h"

namespace dorvik {

SortHeader::SortHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

QStyleOptionHeader SortHeader::sectionOption(int logicalIndex) const {
    QStyleOptionHeader option;
    initStyleOption(&option);
    initStyleOptionForIndex(&option, logicalIndex);
    return option;
}

void SortHeader::initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const {
    QHeaderView::initStyleOptionForIndex(option, logicalIndex);
    if (option->sortIndicator == QStyleOptionHeader::SortUp) {
        option->sortIndicator = QStyleOptionHeader::SortDown;
    } else if (option->sortIndicator == QStyleOptionHeader::SortDown) {
        option->sortIndicator = QStyleOptionHeader::SortUp;
    }
}

} // namespace dorvik
