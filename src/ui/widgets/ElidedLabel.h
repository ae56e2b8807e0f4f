#pragma once

// One line of text that gives way in the middle when there is no room, as long paths do:
// "/Users/ann/…/Caches/x". The whole text stays in the tool tip.

#include <QWidget>

namespace dorvik {

class ElidedLabel : public QWidget {
public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const { return text_; }
    // Left, centre or right; the text is always centred vertically.
    void setAlignment(Qt::Alignment alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString text_;
    Qt::Alignment alignment_ = Qt::AlignLeft;
};

} // namespace dorvik
