#pragma once

// Takes every item out of a layout that a page fills anew, and deletes the widgets with them.

#include <QLayout>
#include <QWidget>

namespace dorvik {

inline void clearLayout(QLayout* layout) {
    while (QLayoutItem* item = layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

} // namespace dorvik
