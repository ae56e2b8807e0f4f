// The risk column of the file tables: its verdicts are judged away from the paint, once for each
// revision of the scanned tree, and never outlive a change of the tree.

#include "UiTest.h"
#include "support/Bundles.h"
#include "ui/files/FilesTable.h"
#include "ui/files/NodeTableModel.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

// Stands in for the safety rules, which can be neither counted nor held: answers from a table the
// test may change, remembers where and how often it was asked, and can be held shut, so that a
// verdict is still being judged while the test acts. The last test here judges with the rules.
class TableJudge {
public:
    void answer(const std::string& path, SafetyVerdict verdict) {
        std::lock_guard guard(lock_);
        answers_[path] = std::move(verdict);
    }
    void hold() {
        std::lock_guard guard(lock_);
        held_ = true;
    }
    void release() {
        {
            std::lock_guard guard(lock_);
            held_ = false;
        }
        released_.notify_all();
    }
    bool isHolding() const { return waiting_; }

    SafetyVerdict operator()(std::string_view path) {
        if (QThread::currentThread() == QCoreApplication::instance()->thread()) {
            ++onMainThread;
        }
        ++calls;
        std::unique_lock guard(lock_);
        // The answer of the moment it was asked, however long it is held.
        SafetyVerdict verdict = answers_.at(std::string(path));
        waiting_ = held_;
        released_.wait(guard, [this] { return !held_; });
        waiting_ = false;
        return verdict;
    }

    std::atomic<int> calls = 0;
    std::atomic<int> onMainThread = 0;

private:
    std::mutex lock_;
    std::condition_variable released_;
    std::map<std::string, SafetyVerdict> answers_;
    bool held_ = false;
    std::atomic<bool> waiting_ = false;
};

SafetyVerdict verdict(Risk risk, const std::string& reason) {
    return SafetyVerdict{risk, reason};
}

std::string shownAs(const SafetyVerdict& verdict) {
    return std::to_string(static_cast<int>(verdict.risk)) + " " + verdict.reason;
}

// Each row's risk and tool tip as the table would paint them now; "" for a row without.
std::vector<std::string> risksOnShow(const NodeTableModel& model) {
    std::vector<std::string> shown;
    const int column = model.columnOf(NodeColumn::risk);
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex cell = model.index(row, column);
        const QVariant risk = cell.data(NodeTableModel::riskRole);
        shown.push_back(risk.isValid()
                            ? shownAs({static_cast<Risk>(risk.toInt()),
                                       cell.data(Qt::ToolTipRole).toString().toStdString()})
                            : std::string());
    }
    return shown;
}

bool allKnown(const NodeTableModel& model) {
    return std::ranges::count(risksOnShow(model), std::string()) == 0;
}

class RiskColumnTest : public test::UiTest {};

TEST_F(RiskColumnTest, VerdictsAreJudgedAwayFromThePaintOncePerRevision) {
    const auto root =
        std::make_shared<FileNode>("/r", true, false, FileKind::other, StorageBucket::other);
    const struct {
        const char* name;
        int64_t size;
        SafetyVerdict first;
        SafetyVerdict afterChange;
    } rows[] = {
        {"keep.bin", 300, verdict(Risk::protected_, "Kept."), verdict(Risk::safe, "Gone.")},
        {"check.bin", 200, verdict(Risk::review, "Look."), verdict(Risk::review, "Look again.")},
        {"old.bin", 100, verdict(Risk::safe, "Old."), verdict(Risk::protected_, "Now kept.")},
    };
    auto judge = std::make_shared<TableJudge>();
    std::vector<std::string> first;
    std::vector<std::string> afterChange;
    for (const auto& row : rows) {
        auto file = std::make_shared<FileNode>(row.name, false, false, FileKind::other,
                                               StorageBucket::other);
        file->size = row.size;
        FileNode::adopt(root, file);
        judge->answer(file->path(), row.first);
        first.push_back(shownAs(row.first));
        afterChange.push_back(shownAs(row.afterChange));
    }
    NodeTableModel model({NodeColumn::name, NodeColumn::size, NodeColumn::risk}, nullptr,
                         [judge](std::string_view path) { return (*judge)(path); });
    // The model waits for its worker as it goes: a failed check must not leave the judge shut.
    struct Opener {
        TableJudge& judge;
        ~Opener() { judge.release(); }
    } opener{*judge};
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setNodes(root->children);

    // A paint asks for every row: it is told nothing yet and nobody judges on its thread.
    EXPECT_EQ(risksOnShow(model), (std::vector<std::string>{"", "", ""}));
    ASSERT_TRUE(waitUntil([&] { return allKnown(model); }));
    EXPECT_EQ(risksOnShow(model), first);
    EXPECT_EQ(judge->onMainThread, 0);
    EXPECT_EQ(judge->calls, 3);
    // The view heard of each row, or the badges would only come at the next paint.
    std::set<int> changedRows;
    for (const QList<QVariant>& signal : changed) {
        const auto top = signal.at(0).value<QModelIndex>();
        const auto bottom = signal.at(1).value<QModelIndex>();
        EXPECT_EQ(top.column(), 2);
        EXPECT_EQ(bottom.column(), 2);
        for (int row = top.row(); row <= bottom.row(); ++row) {
            changedRows.insert(row);
        }
    }
    EXPECT_EQ(changedRows, (std::set<int>{0, 1, 2}));

    // Painting again, or with new rows from the same tree, judges nothing again.
    model.setNodes({root->children[2], root->children[0]});
    model.setNodes(root->children);
    settle();
    EXPECT_EQ(risksOnShow(model), first);
    EXPECT_EQ(judge->calls, 3);

    // The tree changed: each row is judged again, and what was known is not shown meanwhile.
    const auto answerAll = [&](auto pick) {
        for (const auto& row : rows) {
            judge->answer("/r/" + std::string(row.name), pick(row));
        }
    };
    answerAll([](const auto& row) { return row.afterChange; });
    model.setRevision(1);
    EXPECT_EQ(risksOnShow(model), (std::vector<std::string>{"", "", ""}));
    ASSERT_TRUE(waitUntil([&] { return allKnown(model); }));
    EXPECT_EQ(risksOnShow(model), afterChange);
    EXPECT_EQ(judge->calls, 6);

    // A verdict still being judged when the tree changes again does not come to the new tree.
    answerAll([](const auto& row) { return row.first; });
    model.setRevision(2);
    judge->hold();
    EXPECT_EQ(risksOnShow(model), (std::vector<std::string>{"", "", ""}));
    ASSERT_TRUE(waitUntil([&] { return judge->isHolding(); }));
    answerAll([](const auto& row) { return row.afterChange; });
    model.setRevision(3);
    EXPECT_EQ(risksOnShow(model), (std::vector<std::string>{"", "", ""}));
    judge->release();
    ASSERT_TRUE(waitUntil([&] { return allKnown(model); }));
    settle();
    EXPECT_EQ(risksOnShow(model), afterChange);
    EXPECT_EQ(judge->onMainThread, 0);
}

TEST_F(RiskColumnTest, ANewScanOrARemovalJudgesTheRowsAgain) {
    const std::string app = dir / "disk/Tool.app";
    test::writeInfoPlist(app, {{"CFBundleIdentifier", "com.apple.tool"}});
    test::writeFile(dir / "disk/old.bin", 600'000);
    test::writeFile(dir / "disk/new.bin", 700'000);
    auto state = makeState();
    scanFolder(*state, dir / "disk");
    FilesTable table(*state, {NodeColumn::name, NodeColumn::size, NodeColumn::risk});
    table.resize(600, 300);
    table.show();
    const NodeTableModel& model = *table.nodeModel();
    const auto showTree = [&] {
        std::vector<FileNodePtr> rows;
        for (const FileNodePtr& node : state->scan()->root->children) {
            if (node->name == "Tool.app") {
                rows.push_back(node);
            }
        }
        table.setNodes(rows);
    };
    const auto appVerdict = [&] {
        EXPECT_TRUE(waitUntil([&] { return allKnown(model); }));
        return risksOnShow(model).at(0);
    };
    const std::string apple =
        shownAs({Risk::protected_, "Apple app included with macOS or required by the system."});
    const std::string other =
        shownAs({Risk::review, "Application. Use Uninstall to remove its data too."});
    showTree();
    ASSERT_EQ(model.rowCount(), 1);
    EXPECT_EQ(appVerdict(), apple);

    // The page keeps its rows through a removal elsewhere; the bundle now names another app.
    test::writeInfoPlist(app, {{"CFBundleIdentifier", "org.example.tool"}});
    std::filesystem::remove(dir / "disk/old.bin");
    state->markRemoved({dir / "disk/old.bin"});
    EXPECT_EQ(appVerdict(), other);

    // A new scan brings new rows, judged afresh.
    test::writeInfoPlist(app, {{"CFBundleIdentifier", "com.apple.tool"}});
    scanFolder(*state, dir / "disk");
    showTree();
    EXPECT_EQ(appVerdict(), apple);
}

} // namespace
} // namespace dorvik
