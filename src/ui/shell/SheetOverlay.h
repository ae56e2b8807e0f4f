#pragma once

// Where sheets stand: over the window's content, which dims and takes no input until the sheet
// goes. A sheet is a dialog drawn inside the window, so "Escape" cancels it and "Return" presses
// its default button.

#include <QDialog>
#include <QPointer>
#include <QWidget>

namespace dorvik {

class SheetOverlay : public QWidget {
    Q_OBJECT

public:
    // Covers its parent; `covered` is what takes no input while a sheet is up.
    SheetOverlay(QWidget* covered, QWidget* parent);

    // Shows `sheet` at `width`, taking it over. A sheet already up goes first.
    void present(QDialog* sheet, int width);
    // Takes the sheet down, if one is up.
    void dismiss();
    QDialog* sheet() const { return sheet_; }

signals:
    // The sheet closed by itself: a button or a key.
    void sheetClosed();

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QWidget* covered_;
    QPointer<QDialog> sheet_;
    int width_ = 0;
};

} // namespace dorvik
