#pragma once

// The scrolling column of a page taller than its window: only up and down, on the page's own
// background, without a frame.

class QScrollArea;
class QWidget;

namespace dorvik {

QScrollArea* makePageScroll(QWidget* content);

} // namespace dorvik
