#include "platform/JsonCoding.h"

#include <gtest/gtest.h>

#include <string>

namespace dorvik::platform {
namespace {

using namespace std::string_literals;
using JsonCoding::compactText;

TEST(JsonCodingTests, PathsOfAnyBytesSurviveAJsonFile) {
    struct Case {
        std::string bytes;
        std::string escaped;
    };
    const Case cases[] = {
        {"/home/ana/notes.txt", "/home/ana/notes.txt"},
        {"/tmp/café/日本/🎉", "/tmp/café/日本/🎉"},
        {"/tmp/bad\xff", "/tmp/bad\0ff"s},
        {"/tmp/\xc3", "/tmp/\0c3"s},                         // a lead byte cut short at the end
        {"/tmp/\xc3(x", "/tmp/\0c3(x"s},                     // a lead byte without its continuation
        {"/tmp/\xc0\xaf", "/tmp/\0c0\0af"s},                 // an overlong "/"
        {"/tmp/\xed\xa0\x80", "/tmp/\0ed\0a0\080"s},         // a surrogate
        {"/tmp/\xf4\x90\x80\x80", "/tmp/\0f4\090\080\080"s}, // past U+10FFFF
        {"/tmp/%00\\0ff", "/tmp/%00\\0ff"},                  // text that only looks escaped
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.escaped);
        EXPECT_EQ(JsonCoding::escapedPath(c.bytes), c.escaped);
        const std::string written = compactText(nlohmann::json(JsonCoding::escapedPath(c.bytes)));
        const nlohmann::json read = nlohmann::json::parse(written);
        EXPECT_EQ(JsonCoding::unescapedPath(read.get<std::string>()), c.bytes);
    }
    // A NUL without two hex digits after it is no escape.
    EXPECT_EQ(JsonCoding::unescapedPath("/a\0g1"s), "/a\0g1"s);
    EXPECT_EQ(JsonCoding::unescapedPath("/a\0f"s), "/a\0f"s);
}

TEST(JsonCodingTests, LimitsAreCheckedBeforeADocumentIsBuilt) {
    const JsonCoding::ArrayLimits limits{2, 3, 2}; // two elements of at most three values
    const struct {
        std::string text;
        bool within;
    } cases[] = {
        {"[]", true},
        {R"([{"a":1,"b":2},3])", true},
        {R"([{"a":1,"b":2},{"c":3}])", true},
        {"[1,2,3]", false},                  // a third element
        {R"([{"a":1,"b":2,"c":3}])", false}, // four values in one element
        {"[[[1]]]", false},                  // deeper than allowed
        {R"({"a":[]})", false},              // no array
        {"7", false},
        {"[1,", false}, // cut short
        {"", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(JsonCoding::withinLimits(c.text, limits), c.within) << c.text;
    }
    // A long array of small values is stopped at the first value past the limit.
    std::string many = "[";
    for (int i = 0; i < 100000; ++i) {
        many += "{},";
    }
    many += "{}]";
    EXPECT_FALSE(JsonCoding::withinLimits(many, {5000, 10, 2}));
}

} // namespace
} // namespace dorvik::platform
