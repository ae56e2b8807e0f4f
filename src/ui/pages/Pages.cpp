#include "ui/pages/Pages.h"

#include "ui/pages/PendingPage.h"
#include "ui/pages/cloud/CloudView.h"
#include "ui/pages/developer/DeveloperView.h"
#include "ui/pages/duplicates/DuplicatesView.h"
#include "ui/pages/explorer/ExplorerView.h"
#include "ui/pages/history/HistoryView.h"
#include "ui/pages/junk/JunkView.h"
#include "ui/pages/large/LargeFilesView.h"
#include "ui/pages/loginitems/LoginItemsView.h"
#include "ui/pages/quickclean/QuickCleanView.h"
#include "ui/pages/system/SystemDataView.h"
#include "ui/pages/types/TypesView.h"

#include <map>

namespace dorvik {

namespace {

// The headers of the pages still to come, and what their scan prompts say.
const std::map<AppSection, PendingPageTexts>& pendingPages() {
    static const std::map<AppSection, PendingPageTexts> pages = {
        {AppSection::overview,
         {"Overview", "", "What’s taking up your disk?",
          "Dorvik measures your whole disk (real size on APFS, without counting hard links "
          "twice) and breaks it down by category, folder and file type."}},
        {AppSection::trends,
         {"Trends",
          "When your disk would fill up at the current pace, and what grew since an earlier "
          "scan.",
          nullptr, nullptr}},
        {AppSection::apps,
         {"Applications",
          "Every app along with the data it keeps outside its bundle: caches, containers, "
          "preferences…",
          nullptr, nullptr}},
        {AppSection::leftovers,
         {"App Leftovers", "Data in ~/Library from apps that are no longer installed on this Mac.",
          nullptr, nullptr}},
    };
    return pages;
}

} // namespace

QWidget* makePage(AppSection section, AppState& state) {
    switch (section) {
    case AppSection::history:
        return new HistoryView(state);
    case AppSection::junk:
        return new JunkView(state);
    case AppSection::smartClean:
        return new QuickCleanView(state);
    case AppSection::explorer:
        return new ExplorerView(state);
    case AppSection::large:
        return new LargeFilesView(state);
    case AppSection::types:
        return new TypesView(state);
    case AppSection::systemData:
        return new SystemDataView(state);
    case AppSection::duplicates:
        return new DuplicatesView(state);
    case AppSection::developer:
        return new DeveloperView(state);
    case AppSection::loginItems:
        return new LoginItemsView(state);
    case AppSection::cloud:
        return new CloudView(state);
    default:
        break;
    }
    return makePendingPage(state, pendingPages().at(section));
}

} // namespace dorvik
