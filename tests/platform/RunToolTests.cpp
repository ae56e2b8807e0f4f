#include "platform/Privileged.h"
#include "platform/RunTool.h"
#include "support/RecordingRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace dorvik::platform {
namespace {

std::string executableScript(const test::TempDir& temp, const std::string& body) {
    const std::string path = temp / "tool";
    test::writeText(path, "#!/bin/sh\n" + body);
    chmod(path.c_str(), 0755);
    return path;
}

TEST(RunTool, ReadsStandardOutputWhateverTheStatusAndEmptyWhenNotLaunched) {
    test::TempDir temp;
    // Far more on standard error than a pipe holds: the reader must drain both at once.
    const std::string tool = executableScript(
        temp, "echo \"first $1\"\nhead -c 300000 /dev/zero >&2\nprintf 'bad \\377 end'\nexit 3\n");
    EXPECT_EQ(runTool(tool, {"argument with space"}),
              "first argument with space\nbad \xEF\xBF\xBD end");

    const ToolRun run = runProcess({tool, "x"});
    EXPECT_TRUE(run.launched);
    EXPECT_EQ(run.exitStatus, 3);
    EXPECT_EQ(run.errorOutput.size(), 300000u);

    EXPECT_EQ(runTool(temp / "missing", {}), "");
    EXPECT_FALSE(runProcess({temp / "missing"}).launched);
    EXPECT_FALSE(runProcess({}).launched);
}

TEST(RunTool, RepairsWhatIsNotUtf8) {
    const struct {
        std::string bytes;
        std::string repaired;
    } cases[] = {
        {"plain", "plain"},
        {"\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"},
        {"\xF0\x9F\x93\x81", "\xF0\x9F\x93\x81"},
        {"a\xC3", "a\xEF\xBF\xBD"},                               // cut short at the end
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                 // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // a surrogate
        {"\xF4\x90\x80\x80x", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDx"}, // past U+10FFFF
    };
    for (const auto& [bytes, repaired] : cases) {
        EXPECT_EQ(repairedUtf8(bytes), repaired) << bytes;
    }
}

TEST(RunPrivileged, RunsTheLineUnderPkexecAndTurnsItsStatusIntoAMessage) {
    const struct {
        ToolRun answer;
        std::optional<std::string> message;
    } cases[] = {
        {{true, 0, "done\n", ""}, std::nullopt},
        {{true, 126, "", "Error executing command as another user: Not authorized"}, "Cancelled."},
        {{true, 127, "", ""}, "Cancelled."},
        {{true, 1, "", "  Snapshot '7' not found.\n"}, "Snapshot '7' not found."},
        {{true, 1, "", " \n"}, "Couldn't do it."},
        {{false, -1, "", ""}, "Couldn't do it."},
    };
    for (const auto& [answer, message] : cases) {
        test::RecordingRunner recorder{answer, {}};
        EXPECT_EQ(runPrivileged("/usr/bin/tool delete 7", "Couldn't do it.", recorder.runner()),
                  message);
        ASSERT_EQ(recorder.calls.size(), 1u);
        EXPECT_EQ(recorder.calls[0], (std::vector<std::string>{"/usr/bin/pkexec", "/bin/sh", "-c",
                                                               "/usr/bin/tool delete 7"}));
    }
}

} // namespace
} // namespace dorvik::platform
