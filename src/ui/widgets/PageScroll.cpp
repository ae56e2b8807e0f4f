#include "ui/widgets/PageScroll.h"

#include <QScrollArea>

namespace dorvik {

QScrollArea* makePageScroll(QWidget* content) {
    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(content);
    return scroll;
}

} // namespace dorvik
