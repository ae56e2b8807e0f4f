// The scan's numbers against the system's own tools on a generated tree.

#include "TreeGenerator.h"
#include "scanning/MeasureFolder.h"
#include "scanning/Scanner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(AgreesWithDu, SizeAndFileCountOfAGeneratedTree) {
    test::TempDir dir;
    const auto made = bench::generateTree(dir.path(), 6000, 7);
    ASSERT_GT(made.hardLinks, 50);
    ASSERT_GT(made.symlinks, 50);

    Scanner scanner;
    const auto scan = scanner.scan(dir.path(), {}, nullptr);
    ASSERT_TRUE(scan);
    const int64_t du = std::stoll(test::commandOutput("du -sxB1 '" + dir.path() + "' | cut -f1"));
    const int64_t nonDirectories =
        std::stoll(test::commandOutput("find '" + dir.path() + "' -xdev ! -type d | wc -l"));
    EXPECT_EQ(scan->root->size, du);
    EXPECT_EQ(scan->totalFiles + scan->hardLinksSkipped, nonDirectories);
    EXPECT_EQ(scan->hardLinksSkipped, made.hardLinks);
    EXPECT_EQ(scan->totalDirectories, made.folders + 1);

    const FolderMeasure measure = measureFolder(dir.path());
    EXPECT_EQ(measure.bytes, du);
    EXPECT_EQ(measure.fileCount, scan->totalFiles);
}

} // namespace
} // namespace dorvik
