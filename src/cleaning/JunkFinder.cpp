#include "cleaning/JunkFinder.h"

#include "catalogue/JunkCatalogue.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/ResolvedPath.h"
#include "scanning/MeasureFolder.h"

#include <algorithm>
#include <chrono>
#include <future>

namespace dorvik::JunkFinder {

namespace {

constexpr double secondsPerDay = 86400;

// Finder's litter: only the Trash rules list it, since emptying the Trash removes it too.
constexpr std::string_view folderSettingsName = ".DS_Store";

double currentTime() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

JunkFinding evaluate(const JunkRule& rule, double now) {
    JunkFinding finding{rule, {}};
    // From the real paths of the home and data folders, a rule's folder must be reached without a
    // link: one that is a link, or lies below one, leads out of the place the rule names and finds
    // nothing.
    const std::string folder = ruleFolder(rule, platform::resolvedPath(platform::homeDirectory()),
                                          platform::resolvedPath(platform::dataHomeDirectory()));
    const auto names = platform::directoryEntriesWithoutLinks(folder);
    if (!names) {
        return finding;
    }
    std::optional<double> cutoff;
    if (rule.minAgeDays) {
        cutoff = now - *rule.minAgeDays * secondsPerDay;
    }
    for (const std::string& name : *names) {
        if (rule.excludedNames.contains(name)) {
            continue;
        }
        if (name == folderSettingsName && !emptiesATrash(rule)) {
            continue;
        }
        if (!passesExtensionFilter(rule, name)) {
            continue;
        }
        const std::string path = folder + "/" + name;
        const std::optional<double> modified = platform::modificationTime(path);
        if (cutoff && modified && *modified > *cutoff) {
            continue;
        }
        const FolderMeasure measure = measureFolder(path);
        if (measure.bytes < 1) {
            continue;
        }
        finding.items.push_back(JunkItem{
            .id = path,
            .url = path,
            .ruleID = rule.id,
            .size = measure.bytes,
            .fileCount = measure.fileCount,
            .modified = modified,
        });
    }
    // Equal sizes by path, so that the same disk always gives the same list.
    std::ranges::sort(finding.items, [](const JunkItem& a, const JunkItem& b) {
        return a.size != b.size ? a.size > b.size : a.id < b.id;
    });
    return finding;
}

JunkFinding evaluate(const JunkRule& rule) {
    return evaluate(rule, currentTime());
}

std::vector<JunkFinding> findAll() {
    const double now = currentTime();
    std::vector<std::future<JunkFinding>> tasks;
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        tasks.push_back(
            std::async(std::launch::async, [&rule, now] { return evaluate(rule, now); }));
    }
    std::vector<JunkFinding> findings;
    for (auto& task : tasks) {
        JunkFinding finding = task.get();
        if (!finding.items.empty()) {
            findings.push_back(std::move(finding));
        }
    }
    std::ranges::stable_sort(findings, [](const JunkFinding& a, const JunkFinding& b) {
        return totalSize(a) > totalSize(b);
    });
    return findings;
}

} // namespace dorvik::JunkFinder
