#include "base/KeyFile.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(KeyFile, GroupsKeysCommentsAndEscapes) {
    const KeyFile file = parseKeyFile("ignored=before any group\n"
                                      "# a comment\n"
                                      "[Desktop Entry]\r\n"
                                      "Name = Tiny Example \n"
                                      "Name[de]=Winzig\n"
                                      "Name=second value loses\n"
                                      "Comment=line\\none\\sand\\ttab\\\\ \\q\n"
                                      "=no key\n"
                                      "no equals sign\n"
                                      "Hidden=true\n"
                                      "[Desktop Action new]\n"
                                      "Name=New Window");
    struct Case {
        const char* group;
        const char* key;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"Desktop Entry", "Name", "Tiny Example"},
        {"Desktop Entry", "Name[de]", "Winzig"},
        {"Desktop Entry", "Comment", "line\none and\ttab\\ \\q"},
        {"Desktop Entry", "Hidden", "true"},
        {"Desktop Entry", "ignored", std::nullopt},
        {"Desktop Entry", "", std::nullopt},
        {"Desktop Action new", "Name", "New Window"},
        {"Missing", "Name", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(file.value(c.group, c.key), c.expected) << c.group << " " << c.key;
    }
    EXPECT_EQ(file.groups.size(), 2u);
    EXPECT_TRUE(parseKeyFile("").groups.empty());
    EXPECT_TRUE(parseKeyFile("[").groups.empty());
}

} // namespace
} // namespace dorvik
