#pragma once

// A row of buttons drawn as one control, exactly one of them chosen: a picker between a few
// modes.

#include <QWidget>

#include <functional>
#include <string_view>

class QAbstractButton;
class QButtonGroup;
class QHBoxLayout;

namespace dorvik {

class SegmentedControl : public QWidget {
public:
    explicit SegmentedControl(QWidget* parent = nullptr);

    // Appends a segment that stands for `id`; `symbol` may be empty.
    void addSegment(int id, const QString& title, std::string_view symbol = {});
    void setChosen(int id);
    int chosen() const;
    QAbstractButton* segment(int index) const;

    // Called when the user picks another segment.
    std::function<void(int id)> onChosen;

private:
    QButtonGroup* group_;
    QHBoxLayout* layout_;
};

} // namespace dorvik
