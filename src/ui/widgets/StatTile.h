#pragma once

// A figure on a card: an icon in its tint, a title, the value large, a caption under it.

#include "ui/Style.h"

#include <QFrame>

#include <string_view>

class QLabel;

namespace dorvik {

class StatTile : public QFrame {
public:
    StatTile(const QString& title, std::string_view symbol, Style::Tint tint,
             const QString& caption, QWidget* parent = nullptr);

    void setValue(const QString& value);
    void setCaption(const QString& caption);
    QString value() const;
    QString title() const;

private:
    QLabel* title_;
    QLabel* value_;
    QLabel* caption_;
};

} // namespace dorvik
