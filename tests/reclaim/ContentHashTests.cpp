#include "reclaim/ContentHash.h"
#include "support/SampleFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace dorvik {
namespace {

std::string sha256sum(const std::string& path) {
    return test::commandOutput("sha256sum '" + path + "'").substr(0, 64);
}

TEST(ContentHash, TheWholeDigestGoesOnFromTheHeadAndAgreesWithSha256sum) {
    test::TempDir dir;
    const int64_t head = ContentHash::headBytes;
    for (const int64_t length :
         {int64_t{0}, int64_t{1}, head - 1, head, head + 1, 2 * ContentHash::blockBytes + 7}) {
        const std::string path = dir / ("file" + std::to_string(length));
        test::writeContent(path, length, static_cast<int>(length));
        auto digest = ContentHash::HeadDigest::of(path);
        ASSERT_TRUE(digest.has_value()) << length;
        EXPECT_EQ(digest->digest(), ContentHash::sha256(path, head)) << length;
        EXPECT_EQ(digest->wholeFileDigest(path), sha256sum(path)) << length;
        EXPECT_EQ(ContentHash::sha256(path, ContentHash::wholeFile), sha256sum(path)) << length;
    }
}

TEST(ContentHash, FilesThatCannotBeReadHaveNoDigest) {
    test::TempDir dir;
    EXPECT_FALSE(ContentHash::HeadDigest::of(dir / "missing").has_value());
    EXPECT_FALSE(ContentHash::sha256(dir / "missing", ContentHash::wholeFile).has_value());

    // Gone between the head and the rest: no whole digest, rather than the head's.
    const std::string path = dir / "goes";
    test::writeContent(path, 3 * ContentHash::headBytes, 1);
    auto digest = ContentHash::HeadDigest::of(path);
    ASSERT_TRUE(digest.has_value());
    std::filesystem::remove(path);
    EXPECT_FALSE(digest->wholeFileDigest(path).has_value());

    // A file that ended within its head needs no second read.
    const std::string small = dir / "small";
    test::writeContent(small, 100, 2);
    auto smallDigest = ContentHash::HeadDigest::of(small);
    ASSERT_TRUE(smallDigest.has_value());
    std::filesystem::remove(small);
    EXPECT_EQ(smallDigest->wholeFileDigest(small), smallDigest->digest());
}

} // namespace
} // namespace dorvik
