#pragma once

// A ring that shows a share as an arc from the top, clockwise, in the accent colour, with a
// symbol in its centre, or a short text instead when one is set.

#include <QWidget>

#include <string>
#include <string_view>

namespace dorvik {

class UsageRing : public QWidget {
public:
    UsageRing(int diameter, std::string_view symbol, QWidget* parent = nullptr);

    // From 0 to 1; anything outside is held to the ends.
    void setShare(double share);
    double share() const { return share_; }
    // Replaces the symbol; an empty text brings it back.
    void setCentreText(const QString& text);
    const QString& centreText() const { return centreText_; }

    QSize sizeHint() const override { return {diameter_, diameter_}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int diameter_;
    std::string symbol_;
    double share_ = 0;
    QString centreText_;
};

} // namespace dorvik
