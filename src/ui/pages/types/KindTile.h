#pragma once

// One kind of file as a tile: its icon, its title, how much it takes and how many files it has.
// Checked, it is the kind the list below shows.

#include "scanning/FileKind.h"

#include <QAbstractButton>

#include <cstdint>

namespace dorvik {

class KindTile : public QAbstractButton {
public:
    KindTile(FileKind kind, int64_t bytes, int64_t files, QWidget* parent = nullptr);

    FileKind kind() const { return kind_; }
    const QString& sizeText() const { return sizeText_; }
    const QString& countText() const { return countText_; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FileKind kind_;
    QString sizeText_;
    QString countText_;
};

} // namespace dorvik
