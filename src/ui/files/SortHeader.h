#pragma once

// The header of the node tables. Its sort arrow points the way the values run down the rows:
// down when they fall (largest or newest first), up when they rise. Qt's own header draws
// them the other way round.

#include <QHeaderView>
#include <QStyleOptionHeader>

namespace dorvik {

class SortHeader : public QHeaderView {
public:
    explicit SortHeader(QWidget* parent = nullptr);

    // The style's description of a section as it is drawn now, sort arrow included.
    QStyleOptionHeader sectionOption(int logicalIndex) const;

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int logicalIndex) const override;
};

} // namespace dorvik
