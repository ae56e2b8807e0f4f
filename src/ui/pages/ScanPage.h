#pragma once

// A page that works from a scan: the scan controls in its header, and in its body the scan
// prompt while there is no scan, the page's own content once there is.

#include "ui/pages/Page.h"

class QStackedLayout;

namespace dorvik {

class AppState;

class ScanPage : public Page {
public:
    ScanPage(AppState& state, const QString& title, const QString& subtitle,
             const QString& promptTitle, const QString& promptMessage, QWidget* parent = nullptr);

    // What shows once a scan is there; set once, by the page.
    void setContent(QWidget* content);
    bool showsScanPrompt() const;

protected:
    AppState& state_;

private:
    QStackedLayout* stack_;
};

} // namespace dorvik
