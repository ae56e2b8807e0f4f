#pragma once

// A short word on a pale capsule of its tint, beside a row's name: "At login", "Still
// uploading". It follows a change of appearance, the colours being read on each paint.

#include "ui/Style.h"

#include <QWidget>

namespace dorvik {

class TagLabel : public QWidget {
public:
    TagLabel(const QString& text, Style::Tint tint, QWidget* parent = nullptr);

    QString text() const { return text_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont tagFont() const;

    QString text_;
    Style::Tint tint_;
};

} // namespace dorvik
