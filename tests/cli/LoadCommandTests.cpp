// dorvik-cli load and files --load of files that are no archive or that a hostile hand made: a
// plain refusal, at once and in little memory, never a crash or a wait.

#include "cli/CliRun.h"
#include "support/HostileArchives.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace dorvik {
namespace {

using test::cli;
using test::CliRun;

// Peak memory in KB as /usr/bin/time reports it on the last line, or -1.
long peakKilobytes(const std::string& output) {
    const size_t at = output.rfind("peak ");
    return at == std::string::npos ? -1 : std::stol(output.substr(at + 5));
}

TEST(LoadCommand, HostileArchivesAreRefusedQuicklyInLittleMemory) {
    test::TempDir dir;
    test::writeBytes(dir / "chain.dvscan", test::compressed(test::chainPayload(150'000)));
    test::writeBytes(dir / "wide.dvscan", test::wideArchive(20'000'000));
    test::writeBytes(dir / "zeros.dvscan", test::zerosArchive(size_t{1} << 30));
    ASSERT_EQ(mkfifo((dir / "fifo.dvscan").c_str(), 0600), 0);

    // The 20 million folders took 5.4 GB and 41 s; the zeros 2.3 GB; the chain overflowed the
    // stack; the FIFO waited for ever. A timeout ends a wait as status 124.
    const std::string measured = "timeout 60 /usr/bin/time -f 'peak %M'";
    constexpr long mostKilobytes = 256 * 1024;
    for (const std::string name : {"chain", "wide", "zeros", "fifo"}) {
        for (const std::string command : {"load ", "files --load "}) {
            const std::string file = dir / (name + ".dvscan");
            const CliRun run = cli(command + test::shellQuoted(file), true, measured);
            EXPECT_EQ(run.status, 2) << command << name << "\n" << run.out;
            EXPECT_NE(run.out.find("not a Dorvik scan archive"), std::string::npos)
                << command << name << "\n"
                << run.out;
            const long peak = peakKilobytes(run.out);
            EXPECT_GT(peak, 0) << run.out;
            EXPECT_LT(peak, mostKilobytes) << command << name;
        }
    }
}

} // namespace
} // namespace dorvik
