#include "SameScan.h"

#include <gtest/gtest.h>

namespace dorvik::test {

void expectSameTree(const FileNode& a, const FileNode& b) {
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.isDirectory, b.isDirectory);
    EXPECT_EQ(a.isPackage, b.isPackage);
    EXPECT_EQ(a.kind, b.kind);
    EXPECT_EQ(a.bucket, b.bucket);
    EXPECT_EQ(a.size, b.size);
    EXPECT_EQ(a.logicalSize, b.logicalSize);
    EXPECT_EQ(a.fileCount, b.fileCount);
    EXPECT_EQ(a.modified, b.modified);
    EXPECT_EQ(a.accessed, b.accessed);
    EXPECT_EQ(a.smallFilesSize, b.smallFilesSize);
    EXPECT_EQ(a.smallFilesCount, b.smallFilesCount);
    EXPECT_EQ(a.unreadable, b.unreadable);
    EXPECT_FALSE(b.deleted);
    ASSERT_EQ(a.children.size(), b.children.size()) << a.path();
    for (size_t i = 0; i < a.children.size(); ++i) {
        EXPECT_EQ(b.children[i]->parent.lock().get(), &b);
        expectSameTree(*a.children[i], *b.children[i]);
    }
}

void expectSameScan(const ScanResult& a, const ScanResult& b) {
    EXPECT_EQ(a.rootPath, b.rootPath);
    EXPECT_EQ(a.bucketTotals, b.bucketTotals);
    EXPECT_EQ(a.kindTotals, b.kindTotals);
    EXPECT_EQ(a.kindCounts, b.kindCounts);
    EXPECT_EQ(a.totalFiles, b.totalFiles);
    EXPECT_EQ(a.totalDirectories, b.totalDirectories);
    EXPECT_EQ(a.unreadableDirectories, b.unreadableDirectories);
    EXPECT_EQ(a.hardLinksSkipped, b.hardLinksSkipped);
    EXPECT_EQ(a.duration, b.duration);
    EXPECT_EQ(a.finishedAt, b.finishedAt);
    expectSameTree(*a.root, *b.root);
    ASSERT_EQ(a.files.size(), b.files.size());
    for (size_t i = 0; i < a.files.size(); ++i) {
        EXPECT_EQ(a.files[i]->path(), b.files[i]->path()) << i;
    }
}

} // namespace dorvik::test
