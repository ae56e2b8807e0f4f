#pragma once

// The frame every page shares: its header at the top, its content under it, the same margins
// everywhere.

#include <QWidget>

class QVBoxLayout;

namespace dorvik {

class PageHeader;

class Page : public QWidget {
public:
    Page(const QString& title, const QString& subtitle, QWidget* parent = nullptr);

    PageHeader* header() const { return header_; }
    // Where the page's content goes, under the header.
    QVBoxLayout* body() const { return body_; }

private:
    PageHeader* header_;
    QVBoxLayout* body_;
};

} // namespace dorvik
