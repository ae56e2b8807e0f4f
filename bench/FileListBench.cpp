// Measures the file lists on a list as long as a large disk gives: how long filtering the scan's
// files and sorting the table by each column take, which must stay well under a tenth of a
// second for the lists to feel immediate.
//
//   file_list_bench [FILES]    (default 300000)
//
// The tree is made in memory (see MemoryTree.h).

#include "MemoryTree.h"
#include "scanning/FileFilter.h"
#include "ui/files/NodeTableModel.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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

} // namespace

int main(int argc, char** argv) {
    const size_t fileCount = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 300000;
    constexpr int runs = 5;
    const bench::MemoryTree tree = bench::makeMemoryTree(fileCount, "/System/Volumes/Data");
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
