#pragma once

// The head of a page: its title, a line or two under it, and the page's buttons at the right.

#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace dorvik {

class PageHeader : public QWidget {
public:
    PageHeader(const QString& title, const QString& subtitle, QWidget* parent = nullptr);

    void setSubtitle(const QString& subtitle);
    // Adds a widget at the right end, after those already there.
    void addTrailing(QWidget* widget);

    QString title() const;
    QString subtitle() const;

private:
    QLabel* title_;
    QLabel* subtitle_;
    QHBoxLayout* trailing_;
};

} // namespace dorvik
