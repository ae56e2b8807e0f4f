#include "base/Dates.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/VirtualDisks.h"
#include "cli/Commands.h"
#include "cli/FindJunk.h"
#include "cli/ScanSource.h"
#include "cli/TerminalText.h"
#include "platform/HomeDirectory.h"
#include "platform/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

// As the Developer page lists them at first: the largest first, equal sizes by path.
void sortBySize(std::vector<DevItem>& items) {
    std::ranges::sort(items, [](const DevItem& a, const DevItem& b) {
        return a.size != b.size ? a.size > b.size : a.path < b.path;
    });
}

void printText(const std::vector<DevItem>& items, const std::vector<VirtualDisk>& disks) {
    constexpr std::string_view indent = "              ";
    std::cout << "Developer artifacts\n";
    int64_t total = 0;
    for (const DevItem& item : items) {
        total += item.size;
        std::cout << "  " << std::setw(10) << TextForms::size(item.size) << "  "
                  << quotedForTerminal(Wording::shown(item.title)) << "  " << shownPath(item.path)
                  << "\n"
                  << indent << Wording::shown(item.detail) << "\n";
    }
    if (items.empty()) {
        std::cout << "  None found.\n";
    } else {
        std::cout << "  Total: " << TextForms::size(total) << ", "
                  << TextForms::counted(static_cast<int64_t>(items.size()), "item", "items")
                  << "\n";
    }
    std::cout << "\nVirtual disks\n";
    for (const VirtualDisk& disk : disks) {
        std::cout << "  " << std::setw(10) << TextForms::size(disk.size) << "  "
                  << quotedForTerminal(disk.name) << " (" << Wording::shown(disk.owner) << ")";
        if (disk.capacity > disk.size) {
            std::cout << ", can grow to " << TextForms::size(disk.capacity);
        }
        std::cout << "  " << shownPath(disk.path) << "\n"
                  << indent << Wording::shown(disk.advice) << "\n";
        if (disk.command) {
            std::cout << indent << "$ " << *disk.command << "\n";
        }
    }
    if (disks.empty()) {
        std::cout << "  None found.\n";
    }
}

nlohmann::json itemsJson(const std::vector<DevItem>& items) {
    nlohmann::json list = nlohmann::json::array();
    for (const DevItem& item : items) {
        list.push_back({
            {"path", platform::JsonCoding::escapedPath(item.path)},
            {"title", Wording::shown(item.title)},
            {"detail", Wording::shown(item.detail)},
            {"size", item.size},
            // Seconds since 1970; none when the project's date is unknown.
            {"lastTouched", item.lastTouched > Dates::neverMarker ? nlohmann::json(item.lastTouched)
                                                                  : nlohmann::json()},
            {"removal", caseName(item.removal)},
        });
    }
    return list;
}

nlohmann::json disksJson(const std::vector<VirtualDisk>& disks) {
    nlohmann::json list = nlohmann::json::array();
    for (const VirtualDisk& disk : disks) {
        list.push_back({
            {"path", platform::JsonCoding::escapedPath(disk.path)},
            {"name", platform::JsonCoding::escapedPath(disk.name)},
            {"owner", Wording::shown(disk.owner)},
            {"size", disk.size},
            {"capacity", disk.capacity},
            {"modified", disk.modified},
            {"advice", Wording::shown(disk.advice)},
            {"command", disk.command ? nlohmann::json(*disk.command) : nlohmann::json()},
        });
    }
    return list;
}

} // namespace

int runDev(Arguments& arguments) {
    const auto [scan, json] = scanFromWords(arguments);
    if (!scan) {
        return 1;
    }
    std::vector<DevItem> items = developerItems(&*scan, findJunk(), platform::homeDirectory());
    sortBySize(items);
    const std::vector<VirtualDisk> disks = virtualDisks(scan->files);
    if (json) {
        printJson(std::cout, {{"items", itemsJson(items)}, {"virtualDisks", disksJson(disks)}});
    } else {
        printText(items, disks);
    }
    return 0;
}

} // namespace dorvik::cli
