#include "ui/pages/Pages.h"

#include "ui/pages/apps/AppsView.h"
#include "ui/pages/cloud/CloudView.h"
#include "ui/pages/developer/DeveloperView.h"
#include "ui/pages/duplicates/DuplicatesView.h"
#include "ui/pages/explorer/ExplorerView.h"
#include "ui/pages/history/HistoryView.h"
#include "ui/pages/junk/JunkView.h"
#include "ui/pages/large/LargeFilesView.h"
#include "ui/pages/leftovers/LeftoversView.h"
#include "ui/pages/loginitems/LoginItemsView.h"
#include "ui/pages/overview/OverviewView.h"
#include "ui/pages/quickclean/QuickCleanView.h"
#include "ui/pages/system/SystemDataView.h"
#include "ui/pages/trends/TrendsView.h"
#include "ui/pages/types/TypesView.h"

namespace dorvik {

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
    case AppSection::leftovers:
        return new LeftoversView(state);
    case AppSection::apps:
        return new AppsView(state);
    case AppSection::overview:
        return new OverviewView(state);
    case AppSection::trends:
        return new TrendsView(state);
    case AppSection::loginItems:
        return new LoginItemsView(state);
    case AppSection::cloud:
        return new CloudView(state);
    }
    return nullptr; // every section has its case above; the compiler checks
}

} // namespace dorvik
