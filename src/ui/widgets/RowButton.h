#pragma once

// A row of a card that the whole of can be pressed: its own widgets laid out inside, a soft
// highlight and a chevron at its end while the pointer is over it.

#include <QAbstractButton>

class QHBoxLayout;

namespace dorvik {

class SymbolView;

class RowButton : public QAbstractButton {
public:
    // With `alwaysChevron`, the chevron shows without the pointer too.
    explicit RowButton(bool alwaysChevron = false, QWidget* parent = nullptr);

    // Where the row's widgets go, before the chevron.
    QHBoxLayout* content() const { return content_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    // Wrapped text inside takes the height it needs at the row's width.
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QHBoxLayout* content_;
    SymbolView* chevron_;
    bool alwaysChevron_;
};

} // namespace dorvik
