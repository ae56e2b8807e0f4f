#pragma once

// Keeping every copy of a file while storing it once: each copy is replaced, under its own name
// and with its own metadata, by a clone of the file that is kept. The copy's old data goes only
// with one atomic rename, after both contents were compared in full and the clone carries the
// copy's metadata; before that the copy is untouched. A crash can leave at most a hidden
// ".dorvik-clone-<UUID>" beside the copy, whose blocks are themselves shared; the next batch in
// that folder sweeps it away.

#include "platform/Reflink.h"
#include "removal/DeletionRequest.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace dorvik::FileClone {

// The bytes of a file that no other file shares; none when the filesystem cannot say.
using platform::privateSize;

// Why one copy was not replaced.
enum class FailureKind {
    system,         // a system call failed: `errorNumber` says which error
    notRegularFile, // missing, or not a regular file (a link included)
    differentVolumes,
    contentsDiffer,
    hardLinked,    // the copy has other names
    alreadyShared, // the copy already shares almost all of its storage
    unsupported,   // the filesystem cannot share blocks
};

struct Failure {
    FailureKind kind = FailureKind::system;
    int errorNumber = 0;

    bool operator==(const Failure&) const = default;
};

// The sentence for the user (alreadyShared is counted, never shown).
std::string reason(const Failure& failure);

// The bytes freed, or why nothing was done.
using Outcome = std::variant<int64_t, Failure>;

// True when a copy of `blocks` 512-byte units with `privateBytes` of its own already counts as
// shared: less than a tenth of it own from 80 blocks (40,960 bytes) up, less than 4,096 bytes
// below.
bool isAlreadyShared(int64_t blocks, int64_t privateBytes);

// Replaces `copy` by a clone of `original`; both are absolute paths. Returns the bytes the copy
// held on its own before, as measured then.
Outcome replace(const std::string& copy, const std::string& original);

struct CloneReport {
    int64_t reclaimed = 0;
    std::vector<std::string> converted; // the copies replaced
    int alreadyShared = 0;
    std::vector<DeletionFailure> failures;

    bool operator==(const CloneReport&) const = default;
};

// The batch: each (copy, original) in order, a copy the safety rules protect never touched, a
// failure never stopping the rest. Sweeps the copies' folders of what a crash left first.
CloneReport share(const std::vector<std::pair<std::string, std::string>>& pairs);

// The prefix of the temporary clones' names.
inline constexpr std::string_view temporaryPrefix = ".dorvik-clone-";

// Removes from `folder` the temporary clones (".dorvik-clone-" and a UUID, a regular file with
// one name) whose inode has not changed for `olderThanSeconds`: what a crash left. A younger one
// may belong to a batch still running in another process.
void sweepStaleClones(const std::string& folder, double olderThanSeconds = 60);

} // namespace dorvik::FileClone
