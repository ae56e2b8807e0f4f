#include "scanning/Scanner.h"

#include "base/PathNames.h"
#include "platform/HomeDirectory.h"
#include "platform/WalkFolder.h"
#include "scanning/HardLinkLedger.h"
#include "scanning/ScanProgress.h"
#include "scanning/ScanTally.h"
#include "scanning/ScanWorker.h"
#include "scanning/WalkPool.h"

#include <atomic>
#include <chrono>
#include <deque>
#include <vector>

namespace dorvik {

namespace {

using Clock = std::chrono::steady_clock;

// Adds each folder's subfolders into its sums, the deepest first, and lists the file nodes in
// the order a single walk meets them. The threads leave a folder's sums holding only what lies
// in it directly: which of its subfolders another thread is still listing is theirs to know.
std::vector<FileNodePtr> finishTree(FileNode& root) {
    std::vector<FileNodePtr> files;
    files.reserve(50000);
    struct Visit {
        FileNode* folder;
        size_t next;
    };
    std::vector<Visit> path{{&root, 0}};
    while (!path.empty()) {
        Visit& top = path.back();
        if (top.next < top.folder->children.size()) {
            const FileNodePtr& child = top.folder->children[top.next++];
            if (child->isDirectory) {
                path.push_back({child.get(), 0});
            } else {
                files.push_back(child);
            }
            continue;
        }
        const FileNode& done = *top.folder;
        path.pop_back();
        if (!path.empty()) {
            FileNode& parent = *path.back().folder;
            parent.size += done.size;
            parent.logicalSize += done.logicalSize;
            parent.fileCount += done.fileCount;
        }
    }
    return files;
}

} // namespace

Scanner::Scanner(ScanOptions options)
    : threads_(options.threads < oneThread ? oneThread : options.threads),
      progressInterval_(options.progressInterval) {}

void Scanner::cancel() {
    std::lock_guard guard(lock_);
    cancelled_ = true;
}

bool Scanner::isCancelled() const {
    std::lock_guard guard(lock_);
    return cancelled_;
}

std::optional<ScanResult> Scanner::scan(const std::string& rootPath,
                                        const std::set<std::string>& excludedPaths,
                                        const ProgressCallback& progress) {
    const auto started = Clock::now();
    const platform::WalkStat status = platform::walkStatus(rootPath);
    if (status.type != platform::EntryType::folder || isCancelled()) {
        return std::nullopt;
    }
    // Outlives the workers' listings and the pool's jobs, which may hold folders open.
    platform::OpenFolderBudget openFolders;
    ScanProgress board(threads_, progress, progressInterval_, progressFileStride);
    const std::string canonicalRoot = canonicalPath(rootPath);
    const std::string home = canonicalPath(platform::homeDirectory());
    const std::vector<std::string_view> homePieces = pathPieces(home);
    const Classification::ScanContext context{Classification::DiskLayout::linuxDesktop,
                                              pathPieces(canonicalRoot).size(), homePieces};
    std::deque<ScanWorker> workers;
    for (int thread = 0; thread < threads_; ++thread) {
        workers.emplace_back(thread, excludedPaths, context, openFolders, board);
    }

    const FileNodePtr root = makeFolderNode(rootPath, canonicalRoot, std::nullopt, status, context);
    workers[0].tally().countFolder(*root);
    workers[0].afterEntry(rootPath, {});

    // A job sees the cancellation at the folder it is about to list.
    std::atomic<bool> cancelled = false;
    std::vector<std::vector<FolderJob>> found(static_cast<size_t>(threads_));
    WalkPool<FolderJob> pool(threads_);
    pool.run(
        FolderJob{root, platform::WalkFolder(rootPath, status), {}},
        [&](int thread, FolderJob& job) {
            if (isCancelled()) {
                cancelled = true;
                pool.stop();
                return;
            }
            std::vector<FolderJob>& subfolders = found[static_cast<size_t>(thread)];
            workers[static_cast<size_t>(thread)].scanFolder(job, subfolders);
            pool.add(thread, subfolders);
        },
        [&] { board.whileWaiting(); }, progressInterval_);
    if (cancelled) {
        return std::nullopt;
    }

    ScanTally tally;
    HardLinkLedger hardLinks;
    for (ScanWorker& worker : workers) {
        tally.add(worker.tally());
        hardLinks.take(std::move(worker.hardLinks()));
    }
    hardLinks.settle(tally);

    ScanResult result;
    result.root = root;
    result.rootPath = rootPath;
    result.files = finishTree(*root);
    result.bucketTotals = tally.bucketTotals.toMap();
    result.kindTotals = tally.kindTotals.toMap();
    result.kindCounts = tally.kindCounts.toMap();
    result.totalFiles = tally.files;
    result.totalDirectories = tally.directories;
    result.unreadableDirectories = tally.unreadable;
    result.hardLinksSkipped = tally.skippedLinks;
    result.duration = std::chrono::duration<double>(Clock::now() - started).count();
    result.finishedAt =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    return result;
}

} // namespace dorvik
