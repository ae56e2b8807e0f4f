#include "MemoryTree.h"

#include <random>

namespace dorvik::bench {

MemoryTree makeMemoryTree(size_t fileCount, const std::string& rootPath) {
    std::mt19937_64 random(42);
    static const char* words[] = {
        "report",           "Holiday", "IMG",   "backup", "final", "draft",
        "Screen Recording", "invoice", "track", "build",  "café",  "data"};
    static const char* extensions[] = {".mov", ".pdf", ".zip", ".dmg", ".heic", ".flac", ".js"};
    MemoryTree tree;
    tree.root =
        std::make_shared<FileNode>(rootPath, true, false, FileKind::other, StorageBucket::other);
    tree.folders = {tree.root};
    const double now = 1.76e9;
    for (size_t i = 0; i < fileCount; ++i) {
        if (i % 20 == 0) {
            auto folder =
                std::make_shared<FileNode>("dir" + std::to_string(tree.folders.size()), true, false,
                                           FileKind::other, StorageBucket::other);
            FileNode::adopt(tree.folders[random() % tree.folders.size()], folder);
            tree.folders.push_back(folder);
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
        FileNode::adopt(tree.folders.back(), file);
        tree.files.push_back(file);
    }
    return tree;
}

} // namespace dorvik::bench
