#include "base/PathNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvik {
namespace {

TEST(PathNames, CanonicalAndDisplayPaths) {
    const struct {
        std::string path;
        std::string canonical;
        std::string display; // with home /Users/ann
    } cases[] = {
        {"/System/Volumes/Data", "/", "/"},
        {"/System/Volumes/Data/", "/", "/"},
        {"/System/Volumes/Data/Users/ann", "/Users/ann", "~"},
        {"/System/Volumes/Data/Users/ann/Documents", "/Users/ann/Documents", "~/Documents"},
        {"/System/Volumes/Database", "/System/Volumes/Database", "/System/Volumes/Database"},
        {"/Users/ann", "/Users/ann", "~"},
        {"/Users/ann/", "/Users/ann/", "~/"},
        {"/Users/annabel", "/Users/annabel", "/Users/annabel"},
        {"/tmp", "/tmp", "/tmp"},
        {"", "", ""},
    };
    for (const auto& [path, canonical, display] : cases) {
        EXPECT_EQ(canonicalPath(path), canonical) << path;
        EXPECT_EQ(displayPath(path, "/Users/ann"), display) << path;
    }
}

TEST(PathNames, PiecesAndPlaces) {
    const struct {
        std::string path;
        std::string folder;
        bool atOrUnder;
        bool under;
    } placements[] = {
        {"/a/b", "/a/b", true, false},   {"/a/b/c", "/a/b", true, true},
        {"/a/bc", "/a/b", false, false}, {"/a", "/a/b", false, false},
        {"/a/b/c", "/a/b/", true, true}, {"/a", "/", true, true},
        {"/", "/", true, false},         {"a/b", "a", true, true},
        {"/a", "", false, false},
    };
    for (const auto& [path, folder, atOrUnder, under] : placements) {
        EXPECT_EQ(isAtOrUnder(path, folder), atOrUnder) << path << " in " << folder;
        EXPECT_EQ(isUnder(path, folder), under) << path << " in " << folder;
    }

    const struct {
        std::string path;
        std::string parent;
        std::string name;
    } pieces[] = {
        {"/a/b", "/a", "b"},  {"/a/b/", "/a", "b"}, {"/a//b", "/a", "b"},
        {"/a", "/", "a"},     {"/", "/", "/"},      {"//", "/", "/"},
        {"name", "", "name"}, {"a/b", "a", "b"},    {"", "", ""},
    };
    for (const auto& [path, parent, name] : pieces) {
        EXPECT_EQ(parentPath(path), parent) << path;
        EXPECT_EQ(pathName(path), name) << path;
    }

    const struct {
        std::string path;
        std::vector<std::string_view> pieces;
    } splits[] = {
        {"/var/lib/flatpak", {"var", "lib", "flatpak"}},
        {"//a///b/", {"a", "b"}},
        {"a", {"a"}},
        {"/", {}},
        {"", {}},
    };
    for (const auto& [path, expected] : splits) {
        EXPECT_EQ(pathPieces(path), expected) << path;
    }

    EXPECT_EQ(childPath("/", "a"), "/a");
    EXPECT_EQ(childPath("/a", "b"), "/a/b");
    EXPECT_EQ(childPath("/a/", "b"), "/a/b");
}

} // namespace
} // namespace dorvik
