#include "NodeShapes.h"
#include "ui/pages/explorer/SunburstLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <set>

namespace dorvik {
namespace {

using test::build;
using test::deleted;
using test::file;
using test::folder;
using test::NodeShape;

constexpr double pi = std::numbers::pi;
constexpr double tolerance = 1e-12;

struct ExpectedArc {
    std::string name;
    int depth;
    double start;
    double end;
    size_t colour; // index into the palette
};

void expectArcs(const std::vector<Sunburst::Arc>& arcs, const std::vector<ExpectedArc>& expected,
                const std::string& label) {
    ASSERT_EQ(arcs.size(), expected.size()) << label;
    for (size_t i = 0; i < arcs.size(); ++i) {
        const Sunburst::Arc& arc = arcs[i];
        const ExpectedArc& want = expected[i];
        EXPECT_EQ(arc.node->name, want.name) << label << " #" << i;
        EXPECT_EQ(arc.depth, want.depth) << label << " " << want.name;
        EXPECT_NEAR(arc.start, want.start, tolerance) << label << " " << want.name;
        EXPECT_NEAR(arc.end, want.end, tolerance) << label << " " << want.name;
        EXPECT_EQ(arc.color, Sunburst::palette[want.colour]) << label << " " << want.name;
    }
}

TEST(SunburstLayout, ArcsShareTheirParentsSpanLargestFirst) {
    const struct {
        std::string label;
        NodeShape root;
        int maxDepth;
        std::vector<ExpectedArc> arcs;
    } cases[] = {
        {"shares, colours by place and kept below",
         folder("root", 1000,
                {file("a", 250), folder("b", 500, {file("b1", 500)}),
                 folder("c", 250, {file("c1", 100), file("c2", 150)})}),
         5,
         {
             {"b", 1, 0, pi, 0},
             {"b1", 2, 0, pi, 0}, // the whole of its parent's span
             {"a", 1, pi, 1.5 * pi, 1},
             {"c", 1, 1.5 * pi, 2 * pi, 2},
             {"c2", 2, 1.5 * pi, 1.8 * pi, 2},
             {"c1", 2, 1.8 * pi, 2 * pi, 2},
         }},
        {"a folder whose items are all empty draws nothing beyond its ring",
         folder("root", 100, {folder("d", 100, {file("x", 0), file("y", 0)})}),
         5,
         {{"d", 1, 0, 2 * pi, 0}}},
        {"a root of size 0 draws nothing", folder("root", 0, {file("a", 10)}), 5, {}},
        {"an empty root draws nothing", folder("root", 100), 5, {}},
        {"the deepest ring is the last",
         folder("root", 100, {folder("d1", 100, {folder("d2", 100, {folder("d3", 100)})})}),
         2,
         {{"d1", 1, 0, 2 * pi, 0}, {"d2", 2, 0, 2 * pi, 0}}},
        {"deleted items drop out and the parent's size fixes the angles",
         folder("root", 500, {deleted(file("a", 500)), file("b", 300), file("c", 200)}),
         5,
         {{"b", 1, 0, 1.2 * pi, 0}, {"c", 1, 1.2 * pi, 2 * pi, 1}}},
        {"what has no arc of its own leaves a gap at the end",
         folder("root", 1000, {file("c", 200), file("b", 300)}),
         5,
         {{"b", 1, 0, 0.6 * pi, 0}, {"c", 1, 0.6 * pi, pi, 1}}},
        {"slivers are cut off and leave a gap",
         folder("root", 1000000,
                {file("tinier", 400), file("small", 1000), file("tiny", 600), file("big", 998000)}),
         5,
         {{"big", 1, 0, 2 * pi * 0.998, 0}, {"small", 1, 2 * pi * 0.998, 2 * pi * 0.999, 1}}},
        {"a sliver deep down is cut where its parent's span is narrow",
         folder("root", 2000,
                {folder("wide", 1997, {file("w1", 1997)}),
                 folder("narrow", 3, {file("n2", 1), file("n1", 2)})}),
         5,
         {{"wide", 1, 0, 2 * pi * 0.9985, 0},
          {"w1", 2, 0, 2 * pi * 0.9985, 0},
          {"narrow", 1, 2 * pi * 0.9985, 2 * pi, 1},
          {"n1", 2, 2 * pi * 0.9985, 2 * pi * 0.9995, 1}}},
    };
    for (const auto& c : cases) {
        expectArcs(Sunburst::layout(build(c.root), c.maxDepth), c.arcs, c.label);
    }
    EXPECT_TRUE(Sunburst::layout(nullptr, 5).empty());
}

TEST(SunburstLayout, AnAngleOfTheSmallestSizeIsDrawnAndANarrowerOneStopsTheRing) {
    // A span of 8 over 2000 bytes makes one byte exactly 0.004 radians.
    const double exact = 8;
    const double below = std::nextafter(exact, 0.0);
    const struct {
        std::string label;
        NodeShape node;
        double span;
        std::vector<ExpectedArc> arcs;
    } cases[] = {
        {"exactly the smallest angle",
         folder("f", 2000, {file("a", 1)}),
         exact,
         {{"a", 3, 1, 1.004, 4}}},
        {"and its equal sibling",
         folder("f", 2000, {file("a", 1), file("b", 1)}),
         exact,
         {{"a", 3, 1, 1.004, 4}, {"b", 3, 1.004, 1.008, 4}}},
        {"just below", folder("f", 2000, {file("a", 1)}), below, {}},
        {"just below, and the smaller siblings after it",
         folder("f", 4000, {file("c", 1), file("a", 2), file("b", 1)}),
         below,
         {}},
        {"wider ones before it stay",
         folder("f", 2000, {file("z", 1), file("big", 1000)}),
         below,
         {{"big", 3, 1, 1 + below / 2, 4}}},
    };
    for (const auto& c : cases) {
        std::vector<Sunburst::Arc> arcs;
        Sunburst::layout(*build(c.node), 3, 5, Sunburst::palette[4], 1, c.span, arcs);
        expectArcs(arcs, c.arcs, c.label);
    }
}

TEST(SunburstLayout, TheFirstRingTakesThePaletteInTurn) {
    std::vector<NodeShape> files;
    for (int i = 0; i < 13; ++i) {
        files.push_back(file("f" + std::to_string(i), 100));
    }
    const std::vector<Sunburst::Arc> arcs = Sunburst::layout(build(folder("root", 1300, files)), 5);
    ASSERT_EQ(arcs.size(), 13u);
    std::set<QRgb> colours;
    for (size_t i = 0; i < 12; ++i) {
        colours.insert(arcs[i].color);
    }
    EXPECT_EQ(colours.size(), 12u);
    EXPECT_EQ(arcs[12].color, arcs[0].color);
}

TEST(SunburstLayout, LargestChildrenLeaveOutTheDeletedAndKeepTheWalksOrderForTies) {
    const FileNodePtr root = build(
        folder("root", 10,
               {file("a", 2), deleted(file("gone", 9)), file("b", 5), file("c", 2), file("d", 0)}));
    std::vector<std::string> names;
    for (const FileNodePtr& child : Sunburst::largestChildren(*root)) {
        names.push_back(child->name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"b", "a", "c", "d"}));
}

TEST(SunburstLayout, RingsShareTheRadiusOfTheLargestCircle) {
    const struct {
        double width;
        double height;
        int maxDepth;
        double ring;
    } cases[] = {
        {600, 400, 5, 200.0 / 6}, {400, 600, 5, 200.0 / 6}, {100, 100, 1, 25},
        {300, 300, 2, 50},        {0, 300, 5, 0},
    };
    for (const auto& c : cases) {
        EXPECT_DOUBLE_EQ(Sunburst::ringWidth(c.width, c.height, c.maxDepth), c.ring)
            << c.width << "x" << c.height << " depth " << c.maxDepth;
    }
}

TEST(SunburstLayout, AnglesRunClockwiseFromTwelveOClock) {
    const struct {
        double dx;
        double dy; // downwards, as on screen
        double angle;
    } cases[] = {
        {0, -1, 0},          {1, -1, 0.25 * pi}, {1, 0, 0.5 * pi},  {1, 1, 0.75 * pi},
        {0, 1, pi},          {-1, 1, 1.25 * pi}, {-1, 0, 1.5 * pi}, {-1, -1, 1.75 * pi},
        {-1e-9, -1, 2 * pi}, // just left of 12 o'clock is almost a whole turn
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(Sunburst::angleAt(c.dx, c.dy), c.angle, 1e-8) << c.dx << "," << c.dy;
    }
    EXPECT_EQ(Sunburst::angleAt(0, -5), 0.0);
    EXPECT_EQ(Sunburst::angleAt(5, 0), 0.5 * pi);
}

TEST(SunburstLayout, AHitIsTheRingAndTheArcUnderThePoint) {
    // One byte each: the boundary between the halves is π to the last bit.
    const FileNodePtr root =
        build(folder("root", 2, {folder("a", 1, {file("a1", 1)}), file("b", 1)}));
    const std::vector<Sunburst::Arc> arcs = Sunburst::layout(root, 5);
    ASSERT_EQ(arcs.size(), 3u);
    ASSERT_EQ(arcs[0].end, pi);
    const double ring = 10;
    const struct {
        std::string label;
        double dx;
        double dy;
        int ring;
        std::string node; // empty for none
    } cases[] = {
        {"the exact centre", 0, 0, 0, ""},
        {"inside the centre", 0, -9.999, 0, ""},
        {"the first ring's inner edge", 0, -10, 1, "a"},
        {"12 o'clock", 0, -15, 1, "a"},
        {"3 o'clock", 15, 0, 1, "a"},
        {"6 o'clock, the boundary, goes to the later arc", 0, 15, 1, "b"},
        {"9 o'clock", -15, 0, 1, "b"},
        {"second ring", 0, -25, 2, "a1"},
        {"a gap in the second ring", 0, 25, 2, ""},
        {"beyond every ring", 0, -1000, 100, ""},
        {"far beyond every ring", 1e300, 1e300, std::numeric_limits<int>::max(), ""},
    };
    for (const auto& c : cases) {
        const Sunburst::Hit hit = Sunburst::hitTest(arcs, ring, c.dx, c.dy);
        EXPECT_EQ(hit.ring, c.ring) << c.label;
        EXPECT_EQ(hit.arc != nullptr ? hit.arc->node->name : "", c.node) << c.label;
    }
    const Sunburst::Hit none = Sunburst::hitTest(arcs, 0, 0, -15);
    EXPECT_EQ(none.ring, 0);
    EXPECT_EQ(none.arc, nullptr);
}

TEST(SunburstLayout, TheHoveredBranchStandsOutAndOuterRingsFade) {
    const FileNodePtr root = build(folder(
        "root", 100, {folder("a", 60, {folder("a1", 60, {file("a11", 60)})}), file("b", 40)}));
    auto node = [&root](const std::string& name) { return test::findNode(root, name); };
    const struct {
        std::string arc;
        int depth;
        std::string hovered; // empty for none
        double opacity;
    } cases[] = {
        {"a", 1, "", 1},      {"a1", 2, "", 0.88},  {"a11", 3, "", 0.76}, {"a11", 5, "", 0.52},
        {"a11", 6, "", 0.45}, {"a11", 9, "", 0.45}, {"a", 1, "a", 1},     {"a1", 2, "a", 1},
        {"a11", 3, "a", 1},   {"b", 1, "a", 0.25},  {"a", 1, "a1", 0.25}, {"a1", 2, "a1", 1},
        {"a11", 3, "a1", 1},  {"b", 1, "a1", 0.25}, {"a", 1, "root", 1},
    };
    for (const auto& c : cases) {
        const Sunburst::Arc arc{node(c.arc), c.depth, 0, 1, Sunburst::palette[0]};
        const FileNodePtr hovered = c.hovered.empty() ? nullptr : node(c.hovered);
        EXPECT_NEAR(Sunburst::opacity(arc, hovered.get()), c.opacity, 1e-12)
            << c.arc << " at depth " << c.depth << " hovering '" << c.hovered << "'";
    }
}

} // namespace
} // namespace dorvik
