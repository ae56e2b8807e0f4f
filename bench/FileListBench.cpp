// Measures the file lists on a list as long as a large disk gives: how long filtering the scan's
// files and sorting the table by each column take, which must stay well under a tenth of a
// second for the lists to feel immediate.
//
//   file_list_bench [FILES]    (default 300000)
//
// The tree is made in memory (names, sizes, dates, kinds and categories spread as on a real
// disk), since only files of 512 KB and more have rows and a real disk with hundreds of
// thousands of them is rare on a test machine.

#include "scanning/FileFilter.h"
#include "ui/files/NodeTableModel.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

namespace {

using namespace dorvik;
using Clock = std::chrono::steady_clock;

// The worst of a few runs, in milliseconds: the figure a user would feel.
template <typename Run> double worstMilliseconds(int runs, Run run) {
    double worst = 0;
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        run();
        worst = std::max(worst,
                         std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    return worst;
}

struct Tree {
    FileNodePtr root;
    std::vector<FileNodePtr> files;
};

Tree makeTree(size_t fileCount) {
    std::mt19937_64 random(42);
    static const char* words[] = {
        "report",           "Holiday", "IMG",   "backup", "final", "draft",
        "Screen Recording", "invoice", "track", "build",  "café",  "data"};
    static const char* extensions[] = {".mov", ".pdf", ".zip", ".dmg", ".heic", ".flac", ".js"};
    Tree tree;
    tree.root = std::make_shared<FileNode>("/System/Volumes/Data", true, false, FileKind::other,
                                           StorageBucket::other);
    std::vector<FileNodePtr> folders = {tree.root};
    const double now = 1.76e9;
    for (size_t i = 0; i < fileCount; ++i) {
        // A new folder every 20 files or so, under any folder made so far.
        if (i % 20 == 0) {
            auto folder = std::make_shared<FileNode>("dir" + std::to_string(folders.size()), true,
                                                     false, FileKind::other, StorageBucket::other);
            FileNode::adopt(folders[random() % folders.size()], folder);
            folders.push_back(folder);
        }
        const auto kind = allFileKinds[random() % allFileKinds.size()];
        const auto bucket = allStorageBuckets[random() % allStorageBuckets.size()];
        std::string name = std::string(words[random() % std::size(words)]) + " " +
                           std::to_string(random() % 100000) +
                           extensions[random() % std::size(extensions)];
        auto file = std::make_shared<FileNode>(std::move(name), false, false, kind, bucket);
        file->size = 524288 + static_cast<int64_t>(random() % 4'000'000'000ULL);
        file->logicalSize = file->size;
        file->modified = now - static_cast<double>(random() % (5 * 365 * 86400));
        file->accessed = file->modified + static_cast<double>(random() % 86400);
        FileNode::adopt(folders.back(), file);
        tree.files.push_back(file);
    }
    return tree;
}

} // namespace

int main(int argc, char** argv) {
    const size_t fileCount = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 300000;
    constexpr int runs = 5;
    const Tree tree = makeTree(fileCount);
    std::printf("%zu files, worst of %d runs\n\nfilter\n", tree.files.size(), runs);

    const double now = 1.76e9;
    const auto filterWith = [](auto change) {
        FileFilter filter;
        change(filter);
        return filter;
    };
    const struct {
        const char* what;
        FileFilter filter;
    } filters[] = {
        {"no filter", {}},
        {"> 1 GB, older than a year", filterWith([](FileFilter& f) {
             f.minSize = 1'073'741'824;
             f.modifiedOlderThanDays = 365;
         })},
        {"video in Video", filterWith([](FileFilter& f) {
             f.kinds = {FileKind::video};
             f.bucket = StorageBucket::video;
         })},
        {"name query \"CAFÉ\"", filterWith([](FileFilter& f) { f.query = "CAFÉ"; })},
        {"path query \"/dir12/\"", filterWith([](FileFilter& f) { f.query = "/dir12/"; })},
        {"folder prefix", filterWith([](FileFilter& f) { f.pathPrefix = "/dir1"; })},
    };
    std::vector<FileNodePtr> passed;
    for (const auto& [what, filter] : filters) {
        const double ms =
            worstMilliseconds(runs, [&] { passed = filterFiles(tree.files, filter, now); });
        std::printf("  %-28s %8.1f ms  (%zu rows)\n", what, ms, passed.size());
    }

    std::printf("\nsort all rows\n");
    NodeTableModel model({NodeColumn::name, NodeColumn::size, NodeColumn::kind,
                          NodeColumn::category, NodeColumn::modified, NodeColumn::lastOpened});
    // What the page does when its filter changes: filter, then hand the rows to the table.
    const double load = worstMilliseconds(
        runs, [&] { model.setNodes(filterFiles(tree.files, FileFilter{}, now)); });
    std::printf("  %-28s %8.1f ms\n", "filter and load all rows", load);
    const struct {
        const char* what;
        NodeColumn column;
    } columns[] = {
        {"name", NodeColumn::name},         {"size", NodeColumn::size},
        {"kind", NodeColumn::kind},         {"category", NodeColumn::category},
        {"modified", NodeColumn::modified}, {"last opened", NodeColumn::lastOpened},
    };
    for (const auto& [what, column] : columns) {
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            // Each run starts from the rows in another order, so none finds its work done.
            double ms = 0;
            for (int run = 0; run < runs; ++run) {
                model.sortBy(column == NodeColumn::size ? NodeColumn::name : NodeColumn::size,
                             order);
                ms = std::max(ms, worstMilliseconds(1, [&, column = column, order = order] {
                                  model.sortBy(column, order);
                              }));
            }
            std::printf("  %-12s %-15s %8.1f ms\n", what,
                        order == Qt::AscendingOrder ? "rising" : "falling", ms);
        }
    }
    return 0;
}
