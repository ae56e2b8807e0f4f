#include "platform/ListingPrefetcher.h"

#include <algorithm>

namespace dorvik::platform {

namespace {

std::string childPath(const std::string& parent, const std::string& name) {
    return parent.ends_with('/') ? parent + name : parent + '/' + name;
}

} // namespace

ListingPrefetcher::ListingPrefetcher(dev_t device, unsigned helpers) : device_(device) {
    for (unsigned i = 0; i < helpers; ++i) {
        helpers_.emplace_back([this] { help(); });
    }
}

ListingPrefetcher::~ListingPrefetcher() {
    {
        std::lock_guard guard(lock_);
        stopping_ = true;
    }
    workToDo_.notify_all();
    for (std::thread& helper : helpers_) {
        helper.join();
    }
}

DirectoryListing ListingPrefetcher::take(const std::string& path) {
    std::unique_lock guard(lock_);
    auto slot = slots_.find(path);
    if (slot == slots_.end() || slot->second.state == State::queued) {
        // Nobody has started on it: list it here rather than wait for a helper.
        slots_[path].state = State::listing;
        guard.unlock();
        DirectoryListing listing = listDirectory(path);
        guard.lock();
        slots_.erase(path);
        offerSubdirectories(path, listing);
        return listing;
    }
    listingReady_.wait(guard, [&] {
        slot = slots_.find(path);
        return slot->second.state == State::ready;
    });
    DirectoryListing listing = std::move(slot->second.listing);
    slots_.erase(slot);
    --readyCount_;
    workToDo_.notify_one();
    return listing;
}

void ListingPrefetcher::forget(const std::string& path) {
    std::lock_guard guard(lock_);
    const std::string below = childPath(path, "");
    for (auto slot = slots_.begin(); slot != slots_.end();) {
        const bool dropped = slot->second.state != State::listing &&
                             (slot->first == path || slot->first.starts_with(below));
        if (!dropped) {
            ++slot;
            continue;
        }
        if (slot->second.state == State::ready) {
            --readyCount_;
        }
        slot = slots_.erase(slot);
    }
    workToDo_.notify_all();
}

void ListingPrefetcher::help() {
    std::unique_lock guard(lock_);
    while (true) {
        workToDo_.wait(guard, [&] {
            return stopping_ || (!pending_.empty() && readyCount_ < mostWaitingListings);
        });
        if (stopping_) {
            return;
        }
        const std::string path = std::move(pending_.back());
        pending_.pop_back();
        auto slot = slots_.find(path);
        if (slot == slots_.end() || slot->second.state != State::queued) {
            continue; // taken by the walk meanwhile, or forgotten
        }
        slot->second.state = State::listing;
        guard.unlock();
        DirectoryListing listing = listDirectory(path);
        guard.lock();
        slot = slots_.find(path);
        offerSubdirectories(path, listing);
        slot->second.listing = std::move(listing);
        slot->second.state = State::ready;
        ++readyCount_;
        listingReady_.notify_all();
    }
}

void ListingPrefetcher::offerSubdirectories(const std::string& path,
                                            const DirectoryListing& listing) {
    const size_t before = pending_.size();
    for (const ListedEntry& entry : listing.entries) {
        if (!entry.statusRead || !S_ISDIR(entry.status.st_mode) || entry.status.st_dev != device_) {
            continue;
        }
        std::string child = childPath(path, entry.name);
        if (slots_.try_emplace(child).second) {
            pending_.push_back(std::move(child));
        }
    }
    // The walk enters the first subdirectory first, so it goes on top.
    std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(before), pending_.end());
    if (pending_.size() > before) {
        workToDo_.notify_all();
    }
}

} // namespace dorvik::platform
