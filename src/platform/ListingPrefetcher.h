#pragma once

// Lists the directories a walk is about to enter on helper threads, so that the status of their
// entries is being read while the walk is still busy with earlier ones. The walk still takes
// every listing itself, in its own order: prefetching changes when a directory is read, never
// what the walk reports. Helpers run ahead depth first, the order the walk goes in, and stop when
// a fixed number of listings wait to be taken, which bounds the memory they hold.

#include "platform/DirectoryListing.h"

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace dorvik::platform {

class ListingPrefetcher {
public:
    // Only directories on `device` are listed ahead: the walk does not leave its volume.
    ListingPrefetcher(dev_t device, unsigned helpers);
    ~ListingPrefetcher();
    ListingPrefetcher(const ListingPrefetcher&) = delete;
    ListingPrefetcher& operator=(const ListingPrefetcher&) = delete;

    // The listing of `path`: one made ahead, waited for while it is under way, or made here.
    DirectoryListing take(const std::string& path);

    // The walk will not enter `path`: drops what was listed ahead in and below it.
    void forget(const std::string& path);

    static constexpr size_t mostWaitingListings = 512;

private:
    enum class State { queued, listing, ready };
    struct Slot {
        State state = State::queued;
        DirectoryListing listing;
    };

    void help();
    void offerSubdirectories(const std::string& path, const DirectoryListing& listing);

    const dev_t device_;
    std::mutex lock_;
    std::condition_variable workToDo_;
    std::condition_variable listingReady_;
    std::vector<std::string> pending_; // a stack: the next directory the walk enters is on top
    std::unordered_map<std::string, Slot> slots_;
    size_t readyCount_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> helpers_;
};

} // namespace dorvik::platform
