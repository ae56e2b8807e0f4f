#pragma once

// A picture drawn whole in whatever room the widget has: scaled down to fit, keeping its
// proportions, never blown up past its own pixels, centred.

#include <QImage>
#include <QWidget>

namespace dorvik {

class PictureView : public QWidget {
public:
    explicit PictureView(QWidget* parent = nullptr);

    void setPicture(QImage picture);
    const QImage& picture() const { return picture_; }
    // Where the picture is drawn now, in the widget's coordinates.
    QRect shownRect() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage picture_;
};

} // namespace dorvik
