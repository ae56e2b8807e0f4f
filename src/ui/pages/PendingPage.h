#pragma once

// The page of a section whose content is not built yet. It shows the section's header and,
// where the page will work from a scan, the scan controls and the scan prompt; it claims to do
// nothing more.

#include "ui/pages/Page.h"

class QStackedLayout;

namespace dorvik {

class AppState;

struct PendingPageTexts {
    const char* title;
    const char* subtitle; // may be empty
    // Set for pages that work from a scan: what the scan prompt says while there is none.
    const char* promptTitle;
    const char* promptMessage;
};

class PendingPage : public Page {
public:
    PendingPage(AppState& state, const PendingPageTexts& texts, QWidget* parent = nullptr);

    bool worksFromScan() const { return stack_ != nullptr; }
    // For a page that works from a scan: whether the scan prompt is on show.
    bool showsScanPrompt() const;

private:
    QWidget* makeNote();

    AppState& state_;
    QStackedLayout* stack_ = nullptr;
};

} // namespace dorvik
