#include "cleaning/Recommendations.h"

#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "scanning/NodeLookup.h"

#include <algorithm>
#include <array>

namespace dorvik {

namespace {

constexpr std::string_view iosBackupsRule = "ios-backups";
// The Mac's installers first; the Linux desktop's packages beside them.
constexpr std::string_view macInstallersRule = "old-installers";
constexpr std::array<std::string_view, 2> installerRules = {macInstallersRule, "linux-installers"};

struct Gathered {
    int64_t size = 0;
    std::vector<JunkItem> items;
};

template <typename Wanted>
Gathered gather(const std::vector<JunkFinding>& findings, Wanted wanted) {
    Gathered gathered;
    for (const JunkFinding& finding : findings) {
        if (wanted(finding.rule)) {
            gathered.size += totalSize(finding);
            gathered.items.insert(gathered.items.end(), finding.items.begin(), finding.items.end());
        }
    }
    return gathered;
}

Recommendation row(std::string_view id, std::string_view symbol, std::optional<std::string> colour,
                   std::string title, std::string detail, int64_t size) {
    return {std::string(id),
            std::string(symbol),
            std::move(colour),
            std::move(title),
            std::move(detail),
            size,
            {},
            {}};
}

std::string itemCount(const std::vector<JunkItem>& items) {
    return std::to_string(items.size());
}

// The Mac's words name its two kinds of installer; the Linux desktop's packages and AppImages
// need their own.
std::string installersDetail(const std::vector<JunkItem>& items) {
    const bool onlyMac = std::ranges::all_of(
        items, [](const JunkItem& item) { return item.ruleID == macInstallersRule; });
    return itemCount(items) + (onlyMac ? " .dmg/.pkg files in Downloads older than a week."
                                       : " installers and packages in Downloads older than a "
                                         "week.");
}

} // namespace

std::vector<FileNodePtr> oldLargeFiles(const ScanResult& scan, std::string_view home, double now) {
    using namespace RecommendationLimits;
    const std::string inHome = std::string(home) + "/";
    const std::string inLibrary = inHome + "Library/";
    constexpr double oldAge = oldLargeFileDays * Dates::secondsPerDay;
    std::vector<FileNodePtr> found;
    for (const FileNodePtr& file : scan.files) {
        if (file->deleted || file->size < oldLargeFileSize || now - file->modified < oldAge) {
            continue;
        }
        const std::string path = canonicalPath(file->path());
        if (path.starts_with(inHome) && !path.starts_with(inLibrary)) {
            found.push_back(file);
        }
    }
    return found;
}

FileFilter oldLargeFilesFilter(std::string_view home) {
    FileFilter filter;
    filter.minSize = RecommendationLimits::oldLargeFileSize;
    filter.modifiedOlderThanDays = RecommendationLimits::oldLargeFileDays;
    filter.pathPrefix = std::string(home) + "/";
    return filter;
}

std::vector<Recommendation> recommendations(const RecommendationSources& sources) {
    namespace Ids = RecommendationIds;
    namespace Limits = RecommendationLimits;
    std::vector<Recommendation> rows;

    const Gathered junk = gather(sources.junk, [](const JunkRule& rule) {
        return rule.risk == Risk::safe && !emptiesATrash(rule);
    });
    if (junk.size > Limits::junk) {
        rows.push_back(row(Ids::junk, "sparkles", "#7BE07B", "Safe junk",
                           "Caches, logs and leftovers that regenerate on their own. One click to "
                           "clean.",
                           junk.size));
    }

    Gathered trash = gather(sources.junk, [](const JunkRule& rule) { return emptiesATrash(rule); });
    if (trash.size > Limits::junk) {
        rows.push_back(row(Ids::trash, "trash.fill", "#C9A27E", "Empty the Trash",
                           "Whatever is in the Trash still takes up space.", trash.size));
        rows.back().items = std::move(trash.items);
    }

    Gathered installers = gather(sources.junk, [](const JunkRule& rule) {
        return std::ranges::find(installerRules, rule.id) != installerRules.end();
    });
    if (installers.size > 0) {
        rows.push_back(row(Ids::installers, "shippingbox.fill", "#FF9F43", "Forgotten installers",
                           installersDetail(installers.items), installers.size));
        rows.back().items = std::move(installers.items);
    }

    const Gathered backups =
        gather(sources.junk, [](const JunkRule& rule) { return rule.id == iosBackupsRule; });
    if (backups.size > Limits::backups) {
        rows.push_back(row(Ids::backups, "iphone", "#B57BFF", "iPhone/iPad backups",
                           itemCount(backups.items) +
                               " local backup(s). If you back up to iCloud, you may not need "
                               "them.",
                           backups.size));
    }

    if (sources.scan != nullptr) {
        const std::vector<FileNodePtr> old =
            oldLargeFiles(*sources.scan, sources.home, sources.now);
        if (!old.empty()) {
            int64_t size = 0;
            for (const FileNodePtr& file : old) {
                size += file->size;
            }
            rows.push_back(row(
                Ids::oldLargeFiles, "clock.badge.exclamationmark.fill", std::nullopt,
                "Forgotten large files",
                std::to_string(old.size()) + " file(s) over 500 MB unchanged for 6 months.", size));
        }
    }

    if (sources.developerArtifacts > Limits::developer) {
        rows.push_back(row(Ids::developer, "hammer.fill", "#3DD6F5", "Developer artifacts",
                           "node_modules, virtual environments and builds that can be "
                           "regenerated.",
                           sources.developerArtifacts));
    }

    if (sources.scan != nullptr) {
        const std::string folder = sources.home + "/Downloads";
        const FileNodePtr downloads = findNode(sources.scan->root, folder);
        if (downloads != nullptr && downloads->size > Limits::downloads) {
            rows.push_back(row(Ids::downloads, "arrow.down.circle.fill", "#2FD5C9",
                               "Downloads folder",
                               "Review what you no longer need, sorted by size.", downloads->size));
            rows.back().folder = folder;
        }
    }

    std::stable_sort(
        rows.begin(), rows.end(),
        [](const Recommendation& a, const Recommendation& b) { return a.size > b.size; });
    return rows;
}

} // namespace dorvik
