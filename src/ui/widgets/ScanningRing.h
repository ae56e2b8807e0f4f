#pragma once

// A ring with an arc that turns once in 1.1 seconds, linearly, for as long as it is on show; two
// lines of text may stand in its centre. Without text and small, it is the program's spinner.

#include <QVariantAnimation>
#include <QWidget>

namespace dorvik {

class ScanningRing : public QWidget {
public:
    explicit ScanningRing(int diameter, QWidget* parent = nullptr);

    void setProgressText(const QString& text);
    void setDetail(const QString& detail);
    QString progressText() const { return progressText_; }
    QString detail() const { return detail_; }
    // Whether the arc is turning now.
    bool isSpinning() const;

    QSize sizeHint() const override { return {diameter_, diameter_}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    int diameter_;
    QString progressText_;
    QString detail_;
    QVariantAnimation turn_;
};

} // namespace dorvik
