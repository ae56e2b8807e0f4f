// scans.json and space.json as files that several processes share and that anyone could have
// put there: concurrent writers lose nothing, any path survives, and a file that cannot be ours
// is refused before it is parsed. Real processes (fork) on a temporary folder.

#include "base/Uuid.h"
#include "support/TempDir.h"
#include "trends/TrendFiles.h"
#include "trends/TrendStore.h"

#include <gtest/gtest.h>

#include <csignal>
#include <set>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik {
namespace {

constexpr double start = 1742040000; // 2025-03-15 12:00 UTC
constexpr double hour = 3600;
const VolumeInfo volume{"Disk", 500'000'000'000, 120'000'000'000, 120'000'000'000};

ScanSnapshot snapshotOf(const std::string& root, double date) {
    return {Uuid::make(), date, root, 1, {{"1", 1}}, {{root, 1}}};
}

TEST(TrendFilesShared, TwoProcessesRecordingAtOnceLoseNothing) {
    test::TempDir temp;
    constexpr int perProcess = 100;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    const std::string root = child == 0 ? "/child" : "/parent";
    {
        TrendStore store(temp.path());
        for (int i = 0; i < perProcess; ++i) {
            // Another root each time, so that no replace or cap rule takes any away.
            store.record(snapshotOf(root + std::to_string(i % 10), start + i * 2 * hour));
        }
    }
    if (child == 0) {
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const TrendStore reloaded(temp.path());
    std::set<std::string> roots;
    for (const ScanSnapshot& snapshot : reloaded.snapshots()) {
        roots.insert(snapshot.root);
    }
    EXPECT_EQ(reloaded.snapshots().size(), size_t{2 * perProcess});
    EXPECT_EQ(roots.size(), 20u);
}

TEST(TrendFilesShared, AnotherWritersSamplesAndSnapshotsStay) {
    test::TempDir temp;
    TrendStore application(temp.path());
    application.recordSample(volume, start);
    {
        TrendStore tick(temp.path());
        tick.recordSample(volume, start + hour);
        tick.record(snapshotOf("/", start));
    }
    // Its copy is an hour old: the file says a sample was just taken, so none is added.
    application.recordSample(volume, start + hour + 60);
    EXPECT_EQ(application.samples().size(), 2u);
    application.record(snapshotOf("/home", start + 2 * hour));
    EXPECT_EQ(TrendStore(temp.path()).snapshots().size(), 2u);
    EXPECT_EQ(TrendStore(temp.path()).samples().size(), 2u);
}

TEST(TrendFilesShared, AnyByteStringSurvives) {
    test::TempDir temp;
    ScanSnapshot snapshot = snapshotOf("/mnt/caf\xe9", start);
    snapshot.folders["/mnt/caf\xe9/\xff\xfe"] = 7;
    TrendStore(temp.path()).record(snapshot);
    ASSERT_EQ(TrendStore(temp.path()).snapshots().size(), 1u);
    EXPECT_EQ(TrendStore(temp.path()).snapshots()[0], snapshot);
}

TEST(TrendFilesShared, AFileThatCannotBeOursIsRefusedWithoutWaitingOrParsing) {
    test::TempDir temp;
    ASSERT_EQ(mkfifo((temp / "scans.json").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((temp / "space.json").c_str(), 0600), 0);
    alarm(10); // a hang fails the test instead of blocking it
    const TrendStore fifos(temp.path());
    alarm(0);
    EXPECT_TRUE(fifos.snapshots().empty());
    EXPECT_TRUE(fifos.samples().empty());
    unlink((temp / "scans.json").c_str());
    unlink((temp / "space.json").c_str());

    // More than the store ever keeps: 301 snapshots, a snapshot of 2,001 folders, 2,882 samples.
    std::vector<ScanSnapshot> snapshots;
    for (int i = 0; i < 301; ++i) {
        snapshots.push_back(snapshotOf("/r" + std::to_string(i), start));
    }
    ScanSnapshot crowded = snapshotOf("/", start);
    for (int i = 0; i < 2000; ++i) {
        crowded.folders["/f" + std::to_string(i)] = 1;
    }
    std::vector<SpaceSample> samples(2882, SpaceSample{start, 1, 2});
    const struct {
        std::string snapshotsText;
        std::string samplesText;
        bool decodes;
    } cases[] = {
        {TrendFiles::encodeSnapshots({snapshots.begin(), snapshots.end() - 1}),
         TrendFiles::encodeSamples({samples.begin(), samples.end() - 1}), true},
        {TrendFiles::encodeSnapshots(snapshots), TrendFiles::encodeSamples(samples), false},
        {TrendFiles::encodeSnapshots({crowded}),
         R"([{"date":1,"used":1,"total":2,"more":[1,2,3,4,5,6,7,8,9,10,11,12]}])", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(TrendFiles::decodeSnapshots(c.snapshotsText).has_value(), c.decodes);
        EXPECT_EQ(TrendFiles::decodeSamples(c.samplesText).has_value(), c.decodes);
    }

    // Space samples are a few numbers: 256 MB of empty objects is not read at all.
    test::writeSparseFile(temp / "space.json", int64_t{256} << 20);
    EXPECT_TRUE(TrendStore(temp.path()).samples().empty());
}

TEST(TrendFilesShared, TheStoreKeepsItsCaps) {
    test::TempDir temp;
    TrendStore store(temp.path());
    for (int i = 0; i < 301; ++i) {
        store.record(snapshotOf("/r" + std::to_string(i), start + i));
    }
    EXPECT_EQ(store.snapshots().size(), 300u);
    EXPECT_EQ(store.history("/r0").size(), 0u); // the oldest went
    EXPECT_EQ(TrendStore(temp.path()).snapshots().size(), 300u);
}

} // namespace
} // namespace dorvik
