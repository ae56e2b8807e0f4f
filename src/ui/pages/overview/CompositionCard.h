#pragma once

// "Where your space goes": one bar split by storage bucket, largest first, with what the scan did
// not reach at its end, and a legend whose bucket rows open the file list of that bucket.

#include "system/DiskComposition.h"

#include <QFrame>

#include <vector>

class QGridLayout;

namespace dorvik {

class AppState;
class RowButton;

// The bar itself: each segment's share of the whole in its colour.
class SegmentedBar : public QWidget {
public:
    explicit SegmentedBar(QWidget* parent = nullptr);

    void setComposition(DiskComposition composition);
    QSize sizeHint() const override { return {400, 22}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    DiskComposition composition_;
};

class CompositionCard : public QFrame {
public:
    explicit CompositionCard(AppState& state, QWidget* parent = nullptr);

    void refresh();
    const DiskComposition& composition() const { return composition_; }
    // The legend's rows, one a segment, in the bar's order; the last one of the unreached space
    // cannot be pressed.
    const std::vector<QWidget*>& legendRows() const { return legendRows_; }

private:
    AppState& state_;
    DiskComposition composition_;
    SegmentedBar* bar_;
    QGridLayout* legend_;
    std::vector<QWidget*> legendRows_;
};

} // namespace dorvik
