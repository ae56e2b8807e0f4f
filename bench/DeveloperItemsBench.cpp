// Measures what the Developer page computes each time it is drawn afresh: the search of a scanned
// tree for developer artifacts, and the virtual disks among its files. Both are computed on
// demand, so on a large disk they must stay well under a tenth of a second.
//
//   developer_items_bench [NODES]    (default 1000000)
//
// The tree is made in memory (see MemoryTree.h): folders and files as on a real disk, with their
// sizes summed up the folders as a scan sums them, and a project with node_modules, .venv and
// __pycache__ every 200 folders (the search stops at each, as it does on a real disk).

#include "MemoryTree.h"
#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/VirtualDisks.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace dorvik;
using Clock = std::chrono::steady_clock;

FileNodePtr addFolder(const FileNodePtr& parent, const std::string& name,
                      std::vector<FileNodePtr>& folders) {
    auto folder =
        std::make_shared<FileNode>(name, true, false, FileKind::other, StorageBucket::other);
    FileNode::adopt(parent, folder);
    folders.push_back(folder);
    return folder;
}

// Nodes in all: the tree's folders and files, with the projects' folders and files added below.
size_t nodeCount(const bench::MemoryTree& tree) {
    return tree.folders.size() + tree.files.size();
}

// Adds a project with its artifacts below every 200th folder, each artifact holding a file.
void addProjects(bench::MemoryTree& tree) {
    const size_t folders = tree.folders.size();
    for (size_t index = 1; index < folders; index += 200) {
        const FileNodePtr project =
            addFolder(tree.folders[index], "project" + std::to_string(index), tree.folders);
        for (const char* name : {"node_modules", ".venv", "__pycache__"}) {
            const FileNodePtr artifact = addFolder(project, name, tree.folders);
            auto file = std::make_shared<FileNode>("blob.js", false, false, FileKind::code,
                                                   StorageBucket::developer);
            file->size = 30'000'000;
            FileNode::adopt(artifact, file);
            tree.files.push_back(file);
        }
    }
}

// Each folder's size is its own files and folders, as the scan leaves it.
void sumSizes(bench::MemoryTree& tree) {
    for (const FileNodePtr& folder : tree.folders) {
        folder->size = 4096;
    }
    for (const FileNodePtr& file : tree.files) {
        file->parent.lock()->size += file->size;
    }
    // Every folder comes after its parent, so from the end each is whole before its parent.
    for (auto it = tree.folders.rbegin(); it != tree.folders.rend(); ++it) {
        if (const FileNodePtr parent = (*it)->parent.lock()) {
            parent->size += (*it)->size;
        }
    }
}

template <typename Run> std::vector<double> milliseconds(int runs, Run run) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto start = Clock::now();
        run();
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::ranges::sort(times);
    return times;
}

} // namespace

int main(int argc, char** argv) {
    const size_t wanted = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 1'000'000;
    // The generator makes a folder every 20 files; the projects add a few thousand nodes more.
    bench::MemoryTree tree = bench::makeMemoryTree(wanted * 20 / 21, "/home/me");
    addProjects(tree);
    sumSizes(tree);
    ScanResult scan;
    scan.root = tree.root;
    scan.files = tree.files;
    constexpr int runs = 9;
    std::printf("%zu nodes (%zu folders, %zu files), median and worst of %d runs\n\n",
                nodeCount(tree), tree.folders.size(), tree.files.size(), runs);

    size_t found = 0;
    const std::vector<double> search =
        milliseconds(runs, [&] { found = developerItems(&scan, {}, "/home/me").size(); });
    std::printf("  developerItems   %8.1f ms  %8.1f ms  (%zu items)\n", search[runs / 2],
                search.back(), found);
    const std::vector<double> disks =
        milliseconds(runs, [&] { found = virtualDisks(scan.files).size(); });
    std::printf("  virtualDisks     %8.1f ms  %8.1f ms  (%zu disks)\n", disks[runs / 2],
                disks.back(), found);
    return 0;
}
