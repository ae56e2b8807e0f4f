#pragma once

// A column of fixed width in the middle of a page, as tall as its content needs at that width:
// wrapped text is measured at the column's width, not at a guess.

#include <QWidget>

class QVBoxLayout;

namespace dorvik {

class CentredColumn : public QWidget {
public:
    // Puts the column in the middle of `page`, a little above the centre.
    CentredColumn(QWidget* page, int width);

    QVBoxLayout* content() const { return content_; }

protected:
    // Qt's layouts under-measure wrapped text nested in boxes; the column sets its own height.
    bool event(QEvent* event) override;

private:
    QVBoxLayout* content_;
};

} // namespace dorvik
