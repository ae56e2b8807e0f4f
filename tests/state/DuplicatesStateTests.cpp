// The duplicates of the application under a real event loop: the search on a worker with its
// progress, the groups' life with the scan, the refusals of a selection without a copy, and
// sharing on a filesystem with reflinks and on one without.

#include "base/TextForms.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/ReflinkMount.h"
#include "support/SampleFiles.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

using test::mebibyte;
using test::writeContent;

class DuplicatesStateTest : public testing::Test, protected test::TestHome {
protected:
    std::unique_ptr<AppState> state;

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
    }

    void scan(const std::string& folder) {
        state->startScan(ScanTarget::folder(folder));
        ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
        settle();
        ASSERT_TRUE(state->scan());
    }

    // Searches and waits; returns every progress value seen, absent ones as -1.
    std::vector<double> search() {
        std::vector<double> seen;
        const auto connection =
            QObject::connect(&state->duplicates(), &DuplicatesState::progressChanged,
                             [&] { seen.push_back(state->duplicates().progress().value_or(-1)); });
        state->duplicates().findDuplicates();
        EXPECT_TRUE(waitUntil([&] { return !state->duplicates().progress(); }));
        QObject::disconnect(connection);
        return seen;
    }

    DuplicateSelection named(const std::set<std::string>& names) const {
        DuplicateSelection selection;
        for (const DuplicateGroup& group : state->duplicates().groups()) {
            for (const FileNodePtr& file : group.files) {
                if (names.contains(file->name)) {
                    selection.insert(file.get());
                }
            }
        }
        return selection;
    }
};

TEST_F(DuplicatesStateTest, TheGroupsLiveAsLongAsTheirScan) {
    state->duplicates().findDuplicates();
    EXPECT_FALSE(state->duplicates().progress()) << "no scan, no search";

    writeContent(home + "/a/one", 2 * mebibyte, 'x');
    writeContent(home + "/b/two", 2 * mebibyte, 'x');
    writeContent(home + "/b/three", 2 * mebibyte, 'x');
    scan(home);
    EXPECT_EQ(search(), (std::vector<double>{0.0, 1.0, -1}));
    ASSERT_EQ(state->duplicates().groups().size(), 1u);
    EXPECT_EQ(state->duplicates().groups()[0].files.size(), 3u);

    // A removal keeps the groups, removed copies included.
    state->markRemoved({home + "/b/three"});
    settle();
    EXPECT_EQ(state->duplicates().groups().size(), 1u);

    scan(home);
    EXPECT_TRUE(state->duplicates().groups().empty());
}

TEST_F(DuplicatesStateTest, ASelectionWithoutACopyInAGroupIsRefused) {
    writeContent(home + "/one", 2 * mebibyte, 'x');
    writeContent(home + "/two", 2 * mebibyte, 'x');
    scan(home);
    search();
    const DuplicateSelection everything = named({"one", "two"});

    state->duplicates().deleteSelected(everything);
    EXPECT_FALSE(state->removal().plan());
    ASSERT_TRUE(state->removal().toast());
    EXPECT_EQ(state->removal().toast()->message, "Keep at least one copy in each group");
    state->removal().closeToast();

    EXPECT_FALSE(state->duplicates().shareSelected(everything));
    EXPECT_FALSE(state->duplicates().isSharingSpace());
    EXPECT_EQ(state->removal().toast()->message, "Keep at least one copy in each group");

    const DuplicateSelection copy = named({state->duplicates().groups()[0].files[1]->name});
    state->duplicates().deleteSelected(copy);
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Delete Duplicate Copies");
    EXPECT_EQ(state->removal().plan()->items.size(), 1u);
}

TEST_F(DuplicatesStateTest, SharingOnAFilesystemWithoutReflinksChangesNothing) {
    const std::string type = test::commandOutput("stat -f -c %T '" + home + "'");
    if (!type.starts_with("ext2/ext3") && !type.starts_with("tmpfs")) {
        GTEST_SKIP() << "the test folder's filesystem may share blocks: " << type;
    }
    writeContent(home + "/one", 2 * mebibyte, 'x');
    writeContent(home + "/two", 2 * mebibyte, 'x');
    scan(home);
    search();
    const auto before = state->duplicates().groups()[0];
    ASSERT_TRUE(state->duplicates().shareSelected(named({before.files[1]->name})));
    EXPECT_TRUE(state->duplicates().isSharingSpace());
    ASSERT_TRUE(waitUntil([&] { return !state->duplicates().isSharingSpace(); }));

    EXPECT_TRUE(state->duplicates().groups()[0].shared.empty());
    ASSERT_EQ(state->removal().failures().size(), 1u);
    EXPECT_EQ(state->removal().failures()[0].reason,
              "This disk doesn't support shared copies (it isn't APFS).");
    EXPECT_EQ(state->removal().toast()->message, "Zero KB reclaimed");
    EXPECT_EQ(state->removal().toast()->detail,
              "1 item(s) couldn't be converted. Details in History.");
}

TEST_F(DuplicatesStateTest, SharedCopiesAndTheirOriginalAreMarkedAndASecondShareFindsNothing) {
    test::ReflinkMount xfs(dir.path());
    if (!xfs.mounted()) {
        GTEST_SKIP() << xfs.whyNot();
    }
    const std::string root = xfs.path();
    writeContent(root + "/one", 2 * mebibyte, 'x');
    writeContent(root + "/two", 2 * mebibyte, 'x');
    writeContent(root + "/three", 2 * mebibyte, 'x');
    scan(root);
    search();
    const DuplicateGroup before = state->duplicates().groups()[0];
    const DuplicateSelection copies = allCopies(state->duplicates().groups());
    ASSERT_TRUE(state->duplicates().shareSelected(copies));
    ASSERT_TRUE(waitUntil([&] { return !state->duplicates().isSharingSpace(); }));

    const DuplicateGroup& after = state->duplicates().groups()[0];
    EXPECT_EQ(after.shared.size(), 3u);
    EXPECT_EQ(after.recoverableBytes(), 0);
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.files, before.files);
    EXPECT_EQ(state->removal().toast()->message, TextForms::size(4 * mebibyte) + " reclaimed");
    EXPECT_EQ(state->removal().toast()->detail,
              "2 copies now share space with their original. Every file is still where it was.");
    EXPECT_TRUE(state->removal().failures().empty());

    ASSERT_TRUE(state->duplicates().shareSelected(copies));
    ASSERT_TRUE(waitUntil([&] { return !state->duplicates().isSharingSpace(); }));
    EXPECT_EQ(state->removal().toast()->message, "These copies already share space");
}

} // namespace
} // namespace dorvik
