#include "reclaim/CloudDownloads.h"

#include "apps/AppInventory.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Uuid.h"
#include "base/Wording.h"
#include "platform/Bundle.h"
#include "platform/FileSystem.h"
#include "platform/HomeDirectory.h"
#include "platform/WalkFolder.h"

#include <algorithm>

namespace dorvik {

namespace {

CloudFolder emptyFolder(std::string path, std::string title, bool isApp) {
    CloudFolder folder;
    folder.path = std::move(path);
    folder.title = std::move(title);
    folder.isApp = isApp;
    return folder;
}

void countCloudOnly(CloudFolder& folder, const platform::CloudFileFacts& facts) {
    folder.cloudOnlySize += facts.logicalSize.value_or(0);
    folder.cloudOnlyCount += 1;
}

// Every entry below `folder`'s path, hidden ones and those inside packages alike; a link is
// counted as itself, never followed. A folder that cannot be listed counts as empty.
void walkInto(CloudFolder& folder) {
    const platform::WalkStat rootStatus = platform::walkStatus(folder.path);
    if (rootStatus.type != platform::EntryType::folder) {
        return;
    }
    platform::OpenFolderBudget budget;
    platform::FolderListing listing;
    std::vector<platform::WalkFolder> waiting = {platform::WalkFolder(folder.path, rootStatus)};
    while (!waiting.empty()) {
        const platform::WalkFolder current = std::move(waiting.back());
        waiting.pop_back();
        platform::listFolder(current, listing, budget);
        for (size_t index = 0; index < listing.size(); ++index) {
            const std::string_view name = listing.name(index);
            const platform::WalkStat& status = listing.status(index);
            countCloudEntry(folder, current.path() + "/" + std::string(name), name,
                            platform::cloudFileFacts(status));
            if (status.type == platform::EntryType::folder) {
                platform::WalkFolder subfolder = current.subfolder(listing, index);
                if (subfolder.isOnWalkVolume() && !current.isItselfOrAbove(status)) {
                    waiting.push_back(std::move(subfolder));
                }
            }
        }
    }
}

std::optional<platform::CloudFileFacts> factsOf(const std::string& path) {
    const platform::WalkStat status = platform::walkStatus(path);
    if (status.type == platform::EntryType::unknown) {
        return std::nullopt;
    }
    return platform::cloudFileFacts(status);
}

// iCloud Drive itself: each folder at its top is a row of its own, and the files lying there
// make one more.
void addDrive(const std::string& path, std::vector<CloudFolder>& folders) {
    CloudFolder top = emptyFolder(path, std::string(topOfDriveTitle), false);
    for (const std::string& name :
         platform::directoryEntries(path).value_or(std::vector<std::string>{})) {
        if (name == ".DS_Store" || name == ".Trash") {
            continue;
        }
        const std::string child = path + "/" + name;
        if (!platform::pathExists(child)) {
            continue;
        }
        if (platform::isDirectory(child)) {
            CloudFolder folder = emptyFolder(child, name, false);
            walkInto(folder);
            folders.push_back(std::move(folder));
        } else {
            countCloudEntry(top, child, name, factsOf(child));
        }
    }
    folders.push_back(std::move(top));
}

bool isTeamIdentifier(std::string_view piece) {
    return !piece.empty() && std::ranges::all_of(piece, [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
}

} // namespace

void countCloudEntry(CloudFolder& folder, const std::string& path, std::string_view name,
                     const std::optional<platform::CloudFileFacts>& facts) {
    // An old-style placeholder: the file is in the cloud, its size unknown here.
    if (name.starts_with('.') && name.ends_with(".icloud")) {
        folder.cloudOnlyCount += 1;
        return;
    }
    if (name == ".DS_Store" || !facts || !facts->isRegularFile) {
        return;
    }
    const int64_t allocated = facts->allocatedSize.value_or(0);
    if (facts->downloadStatus == platform::CloudDownloadStatus::notDownloaded) {
        countCloudOnly(folder, *facts);
        return;
    }
    if (allocated != 0) {
        folder.localSize += allocated;
        // Nothing below a megabyte is worth a row.
        if (allocated >= smallestListedDownload) {
            folder.items.push_back(
                {path, std::string(name), allocated, facts->isUploaded.value_or(false)});
        }
        return;
    }
    // No blocks but a length: the content is not here, whatever the status says.
    if (facts->logicalSize.value_or(0) > 0) {
        countCloudOnly(folder, *facts);
    }
}

std::string cloudContainerTitle(std::string_view name, const ApplicationFinder& findApplication) {
    std::vector<std::string_view> pieces;
    size_t start = 0;
    while (start <= name.size()) {
        const size_t end = std::min(name.find('~', start), name.size());
        if (end > start) {
            pieces.push_back(name.substr(start, end - start));
        }
        start = end + 1;
    }
    if (!pieces.empty() && (pieces.front() == "iCloud" || isTeamIdentifier(pieces.front()))) {
        pieces.erase(pieces.begin());
    }
    std::string identifier;
    for (std::string_view piece : pieces) {
        identifier += (identifier.empty() ? "" : ".") + std::string(piece);
    }
    if (const auto application = findApplication(identifier)) {
        std::string title = pathName(*application);
        if (const size_t app = title.find(".app"); app != std::string::npos) {
            title.erase(app, 4);
        }
        return title;
    }
    std::string title(pieces.empty() ? name : pieces.back());
    if (!title.empty() && title.front() >= 'a' && title.front() <= 'z') {
        title.front() = static_cast<char>(title.front() - 'a' + 'A');
    }
    return title;
}

CloudReport buildCloudReport(const std::string& home, const ApplicationFinder& findApplication) {
    CloudReport report;
    const std::string base = home + "/Library/Mobile Documents";
    const auto names = platform::directoryEntries(base);
    if (!names || names->empty()) {
        return report;
    }
    for (const std::string& name : *names) {
        if (name.starts_with('.')) {
            continue;
        }
        const std::string path = base + "/" + name;
        if (name == iCloudDriveContainer) {
            addDrive(path, report.folders);
            continue;
        }
        CloudFolder container = emptyFolder(path, cloudContainerTitle(name, findApplication), true);
        walkInto(container);
        report.folders.push_back(std::move(container));
    }
    std::erase_if(report.folders, [](const CloudFolder& folder) {
        return folder.localSize <= 0 && folder.cloudOnlySize <= 0;
    });
    for (CloudFolder& folder : report.folders) {
        std::ranges::stable_sort(folder.items, std::ranges::greater{}, &CloudItem::size);
    }
    std::ranges::stable_sort(report.folders, std::ranges::greater{}, &CloudFolder::localSize);
    report.isAvailable = true;
    return report;
}

CloudReport buildCloudReport() {
    return buildCloudReport(platform::homeDirectory(), AppInventory::applicationWithIdentifier);
}

EvictionReport evictDownloads(const std::vector<CloudItem>& items, const Evictor& evict) {
    EvictionReport report;
    for (const CloudItem& item : items) {
        if (!item.isUploaded) {
            report.failures.push_back({Uuid::make(), item.path, std::string(notUploadedReason)});
            continue;
        }
        if (auto failure = evict(item.path)) {
            report.failures.push_back({Uuid::make(), item.path, std::move(*failure)});
            continue;
        }
        report.freed += item.size;
        report.evicted.push_back(item.path);
    }
    return report;
}

Toast evictionToast(const EvictionReport& report) {
    Toast toast{Uuid::make(), "", std::nullopt, {}};
    toast.message = report.evicted.empty()
                        ? std::string("Nothing was removed")
                        : TextForms::size(std::max<int64_t>(report.freed, 0)) + " freed";
    if (report.failures.empty()) {
        toast.detail = "The files are still in iCloud and download again when you open them.";
    } else {
        // The number leads the sentence, so its words are rendered apart from it.
        toast.detail =
            std::to_string(report.failures.size()) +
            Wording::shown(" file(s) couldn't be removed from this Mac. Details in History.");
        toast.warning = true;
    }
    return toast;
}

} // namespace dorvik
