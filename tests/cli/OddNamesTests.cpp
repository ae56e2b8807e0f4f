// Names that hold a newline, a tab, a quote or bytes that are no UTF-8: every text report keeps
// one line an item and quotes such names the way `ls` does, and every JSON document gives back
// the exact bytes.

#include "cli/CliRun.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <sstream>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

TEST(OddNames, QuotedTheWayTheShellReadsThemBack) {
    const struct {
        std::string text;
        std::string shown;
    } cases[] = {
        {"/tmp/plain name é.txt", "/tmp/plain name é.txt"},
        {"/tmp/two\nlines", "'/tmp/two'$'\\n''lines'"},
        {"/tmp/tab\there", "'/tmp/tab'$'\\t''here'"},
        {"/tmp/bad\xff.bin", "'/tmp/bad'$'\\377''.bin'"},
        {"/tmp/it's\n", "'/tmp/it'\\''s'$'\\n'"},
        {"\x1b[31m", "$'\\033''[31m'"},
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(cli::quotedForTerminal(text), shown);
        if (shown != text) {
            // The shell reads the quoted form back to the same bytes.
            EXPECT_EQ(test::commandOutput("bash -c " + shellQuoted("printf %s " + shown)), text)
                << shown;
        }
    }
}

// The lines of `text` that mention `needle`.
int linesWith(const std::string& text, const std::string& needle) {
    std::istringstream lines(text);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        count += line.find(needle) != std::string::npos ? 1 : 0;
    }
    return count;
}

TEST(OddNames, EveryReportKeepsOneLineAnItemAndJsonKeepsTheBytes) {
    test::TestHome home;
    const std::string names[] = {"two\nlines.bin", "bad\xff\xfe.bin", "tab\there.bin"};
    for (const std::string& name : names) {
        test::writeFile(home.home + "/Downloads/" + name, 600000);
    }

    const std::string folder = shellQuoted(home.home + "/Downloads");
    const test::CliRun text = cli("scan " + folder);
    ASSERT_EQ(text.status, 0) << text.out;
    EXPECT_EQ(linesWith(text.out, "lines.bin"), 1) << text.out;
    EXPECT_NE(text.out.find("'~/Downloads/two'$'\\n''lines.bin'"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("'~/Downloads/bad'$'\\377'$'\\376''.bin'"), std::string::npos)
        << text.out;

    const test::CliRun json = cli("scan --json " + folder);
    ASSERT_EQ(json.status, 0) << json.out;
    std::set<std::string> listed;
    const nlohmann::json scanned = nlohmann::json::parse(json.out);
    for (const auto& row : scanned["largestFiles"]) {
        listed.insert(platform::JsonCoding::unescapedPath(row["path"].get<std::string>()));
    }
    for (const std::string& name : names) {
        EXPECT_TRUE(listed.contains(home.home + "/Downloads/" + name)) << name;
    }

    const std::string odd = home.home + "/Downloads/" + names[0];
    const std::string bad = home.home + "/Downloads/" + names[1];
    const test::CliRun verdict = cli("verdict " + shellQuoted(odd));
    EXPECT_EQ(std::count(verdict.out.begin(), verdict.out.end(), '\n'), 1) << verdict.out;
    const test::CliRun verdictJson = cli("verdict --json " + shellQuoted(bad));
    EXPECT_EQ(platform::JsonCoding::unescapedPath(
                  nlohmann::json::parse(verdictJson.out)["path"].get<std::string>()),
              bad);

    // Removed, listed and brought back under the very same names.
    ASSERT_EQ(
        test::cliUnattended("remove --yes " + shellQuoted(odd) + " " + shellQuoted(bad)).status, 0);
    EXPECT_FALSE(test::entryExists(odd));
    EXPECT_FALSE(test::entryExists(bad));
    const test::CliRun history = cli("history");
    EXPECT_EQ(linesWith(history.out, "lines.bin"), 1) << history.out;
    std::set<std::string> logged;
    std::string ids;
    const nlohmann::json logJson = nlohmann::json::parse(cli("history --json").out);
    for (const auto& entry : logJson["entries"]) {
        logged.insert(
            platform::JsonCoding::unescapedPath(entry["originalPath"].get<std::string>()));
        ids += " " + entry["id"].get<std::string>();
    }
    EXPECT_EQ(logged, (std::set<std::string>{odd, bad}));
    const test::CliRun undone = test::cliUnattended("undo" + ids);
    EXPECT_EQ(undone.status, 0) << undone.out;
    EXPECT_TRUE(test::entryExists(odd));
    EXPECT_TRUE(test::entryExists(bad));
}

} // namespace
} // namespace dorvik
