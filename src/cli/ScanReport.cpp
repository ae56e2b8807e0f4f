#include "cli/ScanReport.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <sstream>

namespace dorvik::cli {

namespace {

using platform::JsonCoding::escapedPath;

bool largerFirst(const FileNodePtr& a, const FileNodePtr& b) {
    return a->size > b->size;
}

std::vector<FileNodePtr> topBySize(std::vector<FileNodePtr> nodes, size_t count) {
    const size_t kept = std::min(count, nodes.size());
    std::partial_sort(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(kept), nodes.end(),
                      largerFirst);
    nodes.resize(kept);
    return nodes;
}

std::string row(const std::string& label, int64_t bytes, int64_t whole, const std::string& tail) {
    char line[512];
    std::snprintf(
        line, sizeof line, "  %-28s %10s %6s%s\n", label.c_str(), TextForms::size(bytes).c_str(),
        TextForms::percent(static_cast<double>(bytes), static_cast<double>(whole)).c_str(),
        tail.c_str());
    return line;
}

template <typename Map> auto sortedBySize(const Map& totals) {
    std::vector<std::pair<typename Map::key_type, int64_t>> entries(totals.begin(), totals.end());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    return entries;
}

// Paths vary in length, so they come last.
std::string pathRow(const std::string& path, int64_t bytes, int64_t whole) {
    char line[128];
    std::snprintf(
        line, sizeof line, "  %10s %6s  ", TextForms::size(bytes).c_str(),
        TextForms::percent(static_cast<double>(bytes), static_cast<double>(whole)).c_str());
    return line + path + "\n";
}

nlohmann::json pathRows(const std::vector<FileNodePtr>& nodes) {
    auto rows = nlohmann::json::array();
    for (const FileNodePtr& node : nodes) {
        rows.push_back({{"path", escapedPath(node->path())}, {"size", node->size}});
    }
    return rows;
}

// The text report names this many unreadable folders; the JSON document names them all.
constexpr size_t unreadableShown = 10;

} // namespace

std::vector<FileNodePtr> foldersInWalkOrder(const ScanResult& scan) {
    std::vector<FileNodePtr> folders;
    std::vector<FileNodePtr> stack;
    const auto pushChildren = [&stack](const FileNode& node) {
        // In reverse, so that the first child comes off the stack first.
        for (auto child = node.children.rbegin(); child != node.children.rend(); ++child) {
            if ((*child)->isDirectory && !(*child)->deleted) {
                stack.push_back(*child);
            }
        }
    };
    if (scan.root != nullptr) {
        pushChildren(*scan.root);
    }
    while (!stack.empty()) {
        FileNodePtr folder = std::move(stack.back());
        stack.pop_back();
        pushChildren(*folder);
        folders.push_back(std::move(folder));
    }
    return folders;
}

std::vector<FileNodePtr> largestFolders(const ScanResult& scan, size_t count) {
    return topBySize(foldersInWalkOrder(scan), count);
}

std::vector<std::string> unreadablePaths(const ScanResult& scan) {
    std::vector<std::string> paths;
    for (const FileNodePtr& folder : foldersInWalkOrder(scan)) {
        if (folder->unreadable) {
            paths.push_back(folder->path());
        }
    }
    return paths;
}

std::vector<FileNodePtr> largestFiles(const ScanResult& scan, size_t count) {
    std::vector<FileNodePtr> files;
    files.reserve(scan.files.size());
    std::copy_if(scan.files.begin(), scan.files.end(), std::back_inserter(files),
                 [](const FileNodePtr& file) { return !file->deleted; });
    return topBySize(std::move(files), count);
}

std::string scanReportText(const ScanResult& scan, size_t top) {
    std::ostringstream out;
    const int64_t total = scan.root->size;
    out << shownPath(scan.rootPath) << "\n";
    out << "  " << TextForms::size(total) << " on disk (" << TextForms::size(scan.root->logicalSize)
        << " of content) in " << TextForms::counted(scan.totalFiles, "file", "files") << " and "
        << TextForms::counted(scan.totalDirectories, "folder", "folders") << "\n";
    char timing[128];
    std::snprintf(timing, sizeof timing, "  scanned in %.2f s", scan.duration);
    out << timing;
    if (scan.hardLinksSkipped > 0) {
        out << "; " << TextForms::count(scan.hardLinksSkipped) << " extra hard links counted once";
    }
    if (scan.unreadableDirectories > 0) {
        out << "; " << TextForms::counted(scan.unreadableDirectories, "entry", "entries")
            << " could not be read";
    }
    out << "\n";
    const std::vector<std::string> unreadable = unreadablePaths(scan);
    if (!unreadable.empty()) {
        out << "\nFolders that could not be read\n";
        for (size_t index = 0; index < std::min(unreadable.size(), unreadableShown); ++index) {
            out << "  " << shownPath(unreadable[index]) << "\n";
        }
        if (unreadable.size() > unreadableShown) {
            out << "  and "
                << TextForms::count(static_cast<int64_t>(unreadable.size() - unreadableShown))
                << " more (--json lists them all)\n";
        }
    }
    out << "\nBy category\n";
    for (const auto& [bucket, bytes] : sortedBySize(scan.bucketTotals)) {
        out << row(Wording::shown(info(bucket).displayName), bytes, total, "");
    }
    out << "\nBy kind of file\n";
    for (const auto& [kind, bytes] : sortedBySize(scan.kindTotals)) {
        const auto counted = scan.kindCounts.find(kind);
        const int64_t files = counted == scan.kindCounts.end() ? 0 : counted->second;
        out << row(std::string(info(kind).displayName), bytes, total,
                   "  " + TextForms::counted(files, "file", "files"));
    }
    if (top == 0) {
        return out.str();
    }
    out << "\nLargest folders\n";
    const auto folders = largestFolders(scan, top);
    if (folders.empty()) {
        out << "  none\n";
    }
    for (const FileNodePtr& folder : folders) {
        out << pathRow(shownPath(folder->path()), folder->size, total);
    }
    out << "\nLargest files\n";
    const auto files = largestFiles(scan, top);
    if (files.empty()) {
        out << "  none of 512 KiB or more\n";
    }
    for (const FileNodePtr& file : files) {
        out << pathRow(shownPath(file->path()), file->size, total);
    }
    return out.str();
}

nlohmann::json scanReportJson(const ScanResult& scan, size_t top) {
    nlohmann::json unreadableJson = nlohmann::json::array();
    for (const std::string& path : unreadablePaths(scan)) {
        unreadableJson.push_back(escapedPath(path));
    }
    nlohmann::json buckets = nlohmann::json::object();
    for (const auto& [bucket, bytes] : scan.bucketTotals) {
        buckets[std::string(info(bucket).caseName)] = bytes;
    }
    nlohmann::json kinds = nlohmann::json::object();
    for (const auto& [kind, bytes] : scan.kindTotals) {
        kinds[std::string(info(kind).caseName)] = bytes;
    }
    nlohmann::json counts = nlohmann::json::object();
    for (const auto& [kind, files] : scan.kindCounts) {
        counts[std::string(info(kind).caseName)] = files;
    }
    return {
        {"rootPath", escapedPath(scan.rootPath)},
        {"size", scan.root->size},
        {"logicalSize", scan.root->logicalSize},
        {"totalFiles", scan.totalFiles},
        {"totalDirectories", scan.totalDirectories},
        {"unreadableDirectories", scan.unreadableDirectories},
        {"unreadablePaths", unreadableJson},
        {"hardLinksSkipped", scan.hardLinksSkipped},
        {"duration", scan.duration},
        {"finishedAt", scan.finishedAt},
        {"bucketTotals", buckets},
        {"kindTotals", kinds},
        {"kindCounts", counts},
        {"largestFolders", pathRows(largestFolders(scan, top))},
        {"largestFiles", pathRows(largestFiles(scan, top))},
    };
}

} // namespace dorvik::cli

namespace dorvik::cli {

void printScanReport(const ScanResult& scan, size_t top, bool json) {
    if (json) {
        printJson(std::cout, scanReportJson(scan, top));
    } else {
        std::cout << scanReportText(scan, top);
    }
}

} // namespace dorvik::cli
