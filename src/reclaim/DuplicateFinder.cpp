#include "reclaim/DuplicateFinder.h"

#include "platform/Processors.h"
#include "reclaim/ContentHash.h"
#include "reclaim/FileClone.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace dorvik {

namespace {

using Candidate = DuplicateCandidate;
using Bucket = std::vector<Candidate>;

// The candidates grouped by content length, each group in the order its files were met and the
// groups in the order their first file was; groups of one file are gone.
std::vector<Bucket> sizeGroups(const std::vector<Candidate>& candidates) {
    std::vector<Bucket> groups;
    std::unordered_map<int64_t, size_t> groupOfSize;
    for (const Candidate& candidate : candidates) {
        const auto [place, added] = groupOfSize.try_emplace(candidate.length, groups.size());
        if (added) {
            groups.emplace_back();
        }
        groups[place->second].push_back(candidate);
    }
    std::erase_if(groups, [](const Bucket& group) { return group.size() < 2; });
    return groups;
}

// The items split by their digests, buckets in the order of their first item; buckets of one item,
// and items without a digest (files that cannot be opened), are gone.
template <typename Item, typename DigestOf>
std::vector<std::pair<std::string, std::vector<Item>>> splitByDigest(std::vector<Item> items,
                                                                     DigestOf digestOf) {
    std::vector<std::pair<std::string, std::vector<Item>>> buckets;
    std::map<std::string, size_t> bucketOfDigest;
    for (Item& item : items) {
        auto digest = digestOf(item);
        if (!digest) {
            continue; // alone in a bucket of its own, as if its digest were a fresh UUID
        }
        const auto [place, added] = bucketOfDigest.try_emplace(*digest, buckets.size());
        if (added) {
            buckets.emplace_back(std::move(*digest), std::vector<Item>{});
        }
        buckets[place->second].second.push_back(std::move(item));
    }
    std::erase_if(buckets, [](const auto& bucket) { return bucket.second.size() < 2; });
    return buckets;
}

DuplicateGroup groupOf(std::string digest, const Bucket& bucket) {
    DuplicateGroup group;
    group.id = std::move(digest);
    group.size = bucket.front().node->size;
    for (const Candidate& file : bucket) {
        const auto privateBytes = FileClone::privateSize(file.path);
        if (privateBytes && isPracticallyShared(*privateBytes, file.node->size)) {
            group.shared.insert(file.node.get());
        }
        group.files.push_back(file.node);
    }
    std::stable_sort(group.files.begin(), group.files.end(),
                     [](const FileNodePtr& one, const FileNodePtr& other) {
                         return one->modified < other->modified;
                     });
    return group;
}

// The groups of identical files among files of one content length. The whole-file digest goes on
// from where the head's left off, so no file is read twice.
std::vector<DuplicateGroup> identicalFiles(const Bucket& sameLength) {
    using Headed = std::pair<Candidate, ContentHash::HeadDigest>;
    std::vector<Headed> headed;
    for (const Candidate& file : sameLength) {
        if (auto head = ContentHash::HeadDigest::of(file.path)) {
            headed.emplace_back(file, std::move(*head));
        }
    }
    std::vector<DuplicateGroup> groups;
    auto headOf = [](const Headed& item) { return std::optional(item.second.digest()); };
    for (auto& [head, sameHead] : splitByDigest(std::move(headed), headOf)) {
        auto wholeOf = [](Headed& item) { return item.second.wholeFileDigest(item.first.path); };
        for (auto& [digest, sameContent] : splitByDigest(std::move(sameHead), wholeOf)) {
            Bucket files;
            for (Headed& item : sameContent) {
                files.push_back(std::move(item.first));
            }
            groups.push_back(groupOf(std::move(digest), files));
        }
    }
    return groups;
}

} // namespace

std::vector<DuplicateCandidate> duplicateCandidates(const std::vector<FileNodePtr>& files,
                                                    int64_t minSize) {
    std::vector<DuplicateCandidate> candidates;
    for (const FileNodePtr& file : files) {
        if (file->deleted || file->logicalSize < minSize) {
            continue;
        }
        std::string path = file->path();
        if (path.find(".app/") != std::string::npos ||
            path.find(".photoslibrary/") != std::string::npos) {
            continue;
        }
        candidates.push_back({file, std::move(path), file->logicalSize});
    }
    return candidates;
}

std::vector<DuplicateGroup> findDuplicates(const std::vector<FileNodePtr>& files, int64_t minSize,
                                           const std::function<void(double)>& progress,
                                           int threads) {
    return findDuplicates(duplicateCandidates(files, minSize), progress, threads);
}

std::vector<DuplicateGroup> findDuplicates(const std::vector<DuplicateCandidate>& candidates,
                                           const std::function<void(double)>& progress,
                                           int threads) {
    const std::vector<Bucket> groups = sizeGroups(candidates);
    const double total = std::max(1.0, static_cast<double>(groups.size()));
    std::vector<std::vector<DuplicateGroup>> found(groups.size());

    // Each thread takes the next size group; taking it and reporting progress happen under one
    // lock, so that the reports come one at a time and in the order of the groups.
    std::mutex taking;
    size_t next = 0;
    auto work = [&] {
        for (;;) {
            size_t index = 0;
            {
                const std::lock_guard lock(taking);
                if (next == groups.size()) {
                    ContentHash::releaseThreadState();
                    return;
                }
                index = next++;
                const size_t count = index + 1;
                if (count % 20 == 0) {
                    progress(static_cast<double>(count) / total);
                }
            }
            found[index] = identicalFiles(groups[index]);
        }
    };
    const size_t wanted = threads > 0 ? static_cast<size_t>(threads)
                                      : static_cast<size_t>(platform::usableProcessors());
    // The calling thread works too; no more threads than size groups.
    const size_t helpers = std::max<size_t>(std::min(wanted, groups.size()), 1) - 1;
    {
        std::vector<std::jthread> pool;
        for (size_t helper = 0; helper < helpers; ++helper) {
            pool.emplace_back(work);
        }
        work();
    }

    std::vector<DuplicateGroup> result;
    for (auto& some : found) {
        std::move(some.begin(), some.end(), std::back_inserter(result));
    }
    progress(1.0);
    std::stable_sort(result.begin(), result.end(),
                     [](const DuplicateGroup& one, const DuplicateGroup& other) {
                         return one.recoverableBytes() > other.recoverableBytes();
                     });
    return result;
}

} // namespace dorvik
