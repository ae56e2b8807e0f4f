#include "state/AppSection.h"

namespace dorvik {

namespace {

constexpr std::array<AppSectionInfo, allAppSections.size()> sectionInfos = {{
    {"smartClean", "Quick Clean", "wand.and.stars"},
    {"overview", "Overview", "chart.pie.fill"},
    {"trends", "Trends", "chart.line.uptrend.xyaxis"},
    {"explorer", "Explorer", "folder.fill"},
    {"types", "By Type", "square.stack.3d.up.fill"},
    {"large", "Large & Old", "arrow.up.left.and.arrow.down.right"},
    {"systemData", "System Data", "gearshape.2.fill"},
    {"cloud", "iCloud Drive", "icloud.fill"},
    {"apps", "Applications", "square.grid.2x2.fill"},
    {"leftovers", "App Leftovers", "puzzlepiece.extension.fill"},
    {"loginItems", "Login Items", "power.circle.fill"},
    {"junk", "Junk", "sparkles"},
    {"developer", "Developer", "hammer.fill"},
    {"duplicates", "Duplicates", "doc.on.doc.fill"},
    {"history", "History", "clock.arrow.circlepath"},
}};

} // namespace

const AppSectionInfo& info(AppSection section) {
    return sectionInfos[static_cast<size_t>(section)];
}

std::optional<AppSection> appSectionFromRaw(std::string_view rawValue) {
    for (AppSection section : allAppSections) {
        if (info(section).rawValue == rawValue) {
            return section;
        }
    }
    return std::nullopt;
}

} // namespace dorvik
