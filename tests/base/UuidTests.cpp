#include "base/Uuid.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace dorvik {
namespace {

TEST(Uuid, MakeGivesDistinctVersionFourTexts) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string id = Uuid::make();
        ASSERT_EQ(id.size(), 36u) << id;
        EXPECT_EQ(Uuid::parse(id), id); // already in the standard upper-case form
        EXPECT_EQ(id[14], '4') << id;
        EXPECT_NE(std::string("89AB").find(id[19]), std::string::npos) << id;
        seen.insert(id);
    }
    EXPECT_EQ(seen.size(), 100u);
}

TEST(Uuid, Parse) {
    const struct {
        std::string text;
        std::optional<std::string> parsed;
    } cases[] = {
        {"e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F"},
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F"},
        {"E621E1F8C36C495A93FC0C247A3E6E5F", std::nullopt},
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5", std::nullopt},
        {"E621E1F8-C36C-495A-93FC-0C247A3E6E5FF", std::nullopt},
        {"G621E1F8-C36C-495A-93FC-0C247A3E6E5F", std::nullopt},
        {"E621E1F8-C36C-495A-93FC+0C247A3E6E5F", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, parsed] : cases) {
        EXPECT_EQ(Uuid::parse(text), parsed) << text;
    }
}

} // namespace
} // namespace dorvik
