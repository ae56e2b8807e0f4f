#pragma once

// The page of a section whose content is not built yet. It shows the section's header and,
// where the page will work from a scan, the scan controls and the scan prompt; it claims to do
// nothing more.

#include "ui/pages/Page.h"

namespace dorvik {

class AppState;

struct PendingPageTexts {
    const char* title;
    const char* subtitle; // may be empty
    // Set for pages that work from a scan: what the scan prompt says while there is none.
    const char* promptTitle;
    const char* promptMessage;
};

// A ScanPage for a section that works from a scan, a plain Page otherwise.
Page* makePendingPage(AppState& state, const PendingPageTexts& texts);

} // namespace dorvik
