#include "scanning/Scanner.h"

#include "base/PathNames.h"
#include "platform/DirectoryWalk.h"
#include "platform/HomeDirectory.h"
#include "scanning/Classification.h"
#include "scanning/HardLinkKey.h"

#include <array>
#include <chrono>
#include <unordered_set>
#include <vector>

namespace dorvik {

namespace {

using platform::WalkEntry;
using platform::WalkEntryType;
using Clock = std::chrono::steady_clock;

// Marks kept on walk entries: an entered directory is popped at its post-order visit; an
// excluded one is not.
constexpr long enteredMark = 1;
constexpr long excludedMark = 2;

// Totals kept in fixed arrays during the walk; a key exists only for what was met.
template <typename Enum, size_t N> struct EnumTotals {
    std::array<int64_t, N> values{};
    std::array<bool, N> present{};

    void add(Enum key, int64_t amount) {
        const auto index = static_cast<size_t>(key);
        values[index] += amount;
        present[index] = true;
    }

    std::map<Enum, int64_t> toMap() const {
        std::map<Enum, int64_t> result;
        for (size_t i = 0; i < N; ++i) {
            if (present[i]) {
                result.emplace(static_cast<Enum>(i), values[i]);
            }
        }
        return result;
    }
};

std::vector<std::string_view> pathComponents(std::string_view path) {
    std::vector<std::string_view> components;
    size_t start = 0;
    while (start <= path.size()) {
        size_t end = path.find('/', start);
        if (end == std::string_view::npos) {
            end = path.size();
        }
        if (end > start) {
            components.push_back(path.substr(start, end - start));
        }
        start = end + 1;
    }
    return components;
}

class Walk {
public:
    Walk(platform::DirectoryWalk& walk, const std::set<std::string>& excludedPaths,
         const Scanner::ProgressCallback& progress, double progressInterval)
        : walk_(walk), excludedPaths_(excludedPaths), progress_(progress),
          progressInterval_(progressInterval), home_(canonicalPath(platform::homeDirectory())),
          homePieces_(pathPieces(home_)) {
        files_.reserve(50000);
    }

    enum class Step { progress, nextEntry, cancelled };

    Step handle(const WalkEntry& entry, const Scanner& scanner) {
        switch (entry.type) {
        case WalkEntryType::directoryPre:
            if (scanner.isCancelled()) {
                return Step::cancelled;
            }
            return enterDirectory(entry);
        case WalkEntryType::directoryPost:
            if (walk_.mark() != enteredMark) {
                return Step::nextEntry;
            }
            leaveDirectory();
            return Step::progress;
        case WalkEntryType::file:
        case WalkEntryType::otherFile:
        case WalkEntryType::symlink:
        case WalkEntryType::brokenSymlink:
            return countFile(entry);
        case WalkEntryType::unreadableDirectory:
        case WalkEntryType::noStat:
        case WalkEntryType::error:
            countError(entry);
            return Step::progress;
        case WalkEntryType::other:
            break;
        }
        return Step::progress;
    }

    void reportProgress(const WalkEntry& entry) {
        if (fileCounter_ % Scanner::progressFileStride != 0) {
            return;
        }
        const auto now = Clock::now();
        if (std::chrono::duration<double>(now - lastReport_).count() <= progressInterval_) {
            return;
        }
        lastReport_ = now;
        if (progress_) {
            progress_(fileCounter_, runningBytes_, canonicalPath(entry.path));
        }
    }

    std::optional<ScanResult> finish(Clock::time_point started) {
        if (root_ == nullptr) {
            return std::nullopt;
        }
        ScanResult result;
        result.root = std::move(root_);
        result.files = std::move(files_);
        result.bucketTotals = bucketTotals_.toMap();
        result.kindTotals = kindTotals_.toMap();
        result.kindCounts = kindCounts_.toMap();
        result.totalFiles = fileCounter_;
        result.totalDirectories = directoryCounter_;
        result.unreadableDirectories = unreadableCounter_;
        result.hardLinksSkipped = skippedLinks_;
        result.duration = std::chrono::duration<double>(Clock::now() - started).count();
        result.finishedAt =
            std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
                .count();
        return result;
    }

private:
    Step enterDirectory(const WalkEntry& entry) {
        const std::string canonical = canonicalPath(entry.path);
        if (root_ != nullptr && excludedPaths_.contains(canonical)) {
            walk_.setMark(excludedMark);
            walk_.skipCurrent();
            return Step::nextEntry;
        }
        const std::string_view name = root_ == nullptr ? entry.path : entry.name;
        const std::vector<std::string_view> components = pathComponents(canonical);
        if (root_ == nullptr) {
            rootDepth_ = components.size();
        }
        std::optional<StorageBucket> inherited;
        if (!stack_.empty() && stack_.back()->bucket != StorageBucket::other) {
            inherited = stack_.back()->bucket;
        }
        const StorageBucket bucket =
            Classification::directoryBucket(
                components, name, inherited,
                {Classification::DiskLayout::linuxDesktop, rootDepth_, homePieces_})
                .value_or(StorageBucket::other);
        const bool isPackage =
            name.find('.') != std::string_view::npos && Classification::isPackageName(name);

        auto node = std::make_shared<FileNode>(std::string(name), true, isPackage,
                                               Classification::directoryKindOfName(name), bucket);
        node->size = entry.stat.blocks * 512;
        node->modified = static_cast<double>(entry.stat.modified);
        node->accessed = static_cast<double>(entry.stat.accessed);
        if (!stack_.empty()) {
            FileNode::adopt(stack_.back(), node);
        }
        if (root_ == nullptr) {
            root_ = node;
        }
        walk_.setMark(enteredMark);
        stack_.push_back(node);
        ++directoryCounter_;
        bucketTotals_.add(bucket, node->size);
        return Step::progress;
    }

    // Pops the directory on top and adds what it holds to the one above it.
    FileNodePtr leaveDirectory() {
        FileNodePtr node = std::move(stack_.back());
        stack_.pop_back();
        if (!stack_.empty()) {
            FileNode& parent = *stack_.back();
            parent.size += node->size;
            parent.logicalSize += node->logicalSize;
            parent.fileCount += node->fileCount;
        }
        return node;
    }

    Step countFile(const WalkEntry& entry) {
        if (stack_.empty()) {
            return Step::nextEntry;
        }
        const platform::WalkStat& stat = entry.stat;
        // A hard-linked file counts in full at the first path met; later paths count nothing.
        if (entry.type == WalkEntryType::file && stat.links >= 2 &&
            !seenLinks_.insert(hardLinkKey(stat)).second) {
            ++skippedLinks_;
            return Step::nextEntry;
        }
        FileNode& parent = *stack_.back();
        const FileKind kind = Classification::fileKindOfName(entry.name.data(), entry.name.size());
        const StorageBucket bucket = parent.bucket == StorageBucket::other
                                         ? Classification::defaultBucket(kind)
                                         : parent.bucket;
        const int64_t allocated = stat.blocks * 512;
        parent.size += allocated;
        parent.logicalSize += stat.size;
        parent.fileCount += 1;
        ++fileCounter_;
        bucketTotals_.add(bucket, allocated);
        kindTotals_.add(kind, allocated);
        kindCounts_.add(kind, 1);
        if (allocated < largeFileThreshold) {
            parent.smallFilesSize += allocated;
            parent.smallFilesCount += 1;
        } else {
            auto node =
                std::make_shared<FileNode>(std::string(entry.name), false, false, kind, bucket);
            node->size = allocated;
            node->logicalSize = stat.size;
            node->fileCount = 1;
            node->modified = static_cast<double>(stat.modified);
            node->accessed = static_cast<double>(stat.accessed);
            FileNode::adopt(stack_.back(), node);
            files_.push_back(std::move(node));
        }
        runningBytes_ += allocated;
        return Step::progress;
    }

    void countError(const WalkEntry& entry) {
        ++unreadableCounter_;
        if (walk_.mark() == enteredMark && !stack_.empty()) {
            // Entered, then its listing failed: it keeps its own blocks and shows as unreadable.
            leaveDirectory()->unreadable = true;
        } else if (entry.type == WalkEntryType::unreadableDirectory && !stack_.empty()) {
            const FileNodePtr& parent = stack_.back();
            auto placeholder = std::make_shared<FileNode>(std::string(entry.name), true, false,
                                                          FileKind::other, parent->bucket);
            placeholder->unreadable = true;
            FileNode::adopt(parent, placeholder);
        }
    }

    platform::DirectoryWalk& walk_;
    const std::set<std::string>& excludedPaths_;
    const Scanner::ProgressCallback& progress_;
    const double progressInterval_;

    FileNodePtr root_;
    size_t rootDepth_ = 0; // components of the root's canonical path
    const std::string home_;
    const std::vector<std::string_view> homePieces_; // into home_
    std::vector<FileNodePtr> stack_;
    std::vector<FileNodePtr> files_;
    EnumTotals<StorageBucket, allStorageBuckets.size()> bucketTotals_;
    EnumTotals<FileKind, allFileKinds.size()> kindTotals_;
    EnumTotals<FileKind, allFileKinds.size()> kindCounts_;
    std::unordered_set<uint64_t> seenLinks_;
    int64_t fileCounter_ = 0;
    int64_t directoryCounter_ = 0;
    int64_t unreadableCounter_ = 0;
    int64_t skippedLinks_ = 0;
    int64_t runningBytes_ = 0;
    Clock::time_point lastReport_ = Clock::now();
};

} // namespace

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
    platform::DirectoryWalk walk(rootPath);
    if (!walk.isOpen()) {
        return std::nullopt;
    }
    Walk state(walk, excludedPaths, progress, progressInterval_);
    while (const WalkEntry* entry = walk.next()) {
        switch (state.handle(*entry, *this)) {
        case Walk::Step::cancelled:
            return std::nullopt;
        case Walk::Step::nextEntry:
            break;
        case Walk::Step::progress:
            state.reportProgress(*entry);
            break;
        }
    }
    std::optional<ScanResult> result = state.finish(started);
    if (result.has_value()) {
        result->rootPath = rootPath;
    }
    return result;
}

} // namespace dorvik
