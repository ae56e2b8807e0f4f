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

} // namespace
} // namespace dorvik::platform
