#include "catalogue/Risk.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(Risk, OrderedFromSafeToProtectedWithTheirWords) {
    EXPECT_LT(Risk::safe, Risk::review);
    EXPECT_LT(Risk::review, Risk::protected_);
    const struct {
        int raw;
        std::string_view caseName;
        std::string_view label;
    } cases[] = {{0, "safe", "Safe"}, {1, "review", "Review"}, {2, "protected", "Protected"}};
    for (const auto& [raw, caseName, label] : cases) {
        const auto risk = riskFromRaw(raw);
        ASSERT_TRUE(risk.has_value()) << raw;
        EXPECT_EQ(*risk, allRisks.at(static_cast<size_t>(raw)));
        EXPECT_EQ(info(*risk).caseName, caseName);
        EXPECT_EQ(info(*risk).label, label);
    }
    EXPECT_EQ(riskFromRaw(-1), std::nullopt);
    EXPECT_EQ(riskFromRaw(3), std::nullopt);
}

} // namespace
} // namespace dorvik
