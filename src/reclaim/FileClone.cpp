#include "reclaim/FileClone.h"

#include "base/PathNames.h"
#include "base/Uuid.h"
#include "platform/BlockReader.h"
#include "platform/FileMetadata.h"
#include "platform/FileSystem.h"
#include "platform/Reflink.h"
#include "removal/SafetyRules.h"

#include <chrono>
#include <cstring>
#include <set>

namespace dorvik::FileClone {

namespace {

Outcome failed(FailureKind kind, int errorNumber = 0) {
    return Failure{kind, errorNumber};
}

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

// The thresholds of a practically shared file in the search, measured with the copy's own blocks.
bool isAlreadyShared(int64_t blocks, int64_t privateBytes) {
    constexpr int64_t tenthFromBlocks = 80;
    constexpr int64_t oneBlock = 4096;
    return blocks >= tenthFromBlocks ? privateBytes < blocks * 512 / 10 : privateBytes < oneBlock;
}

std::string reason(const Failure& failure) {
    switch (failure.kind) {
    case FailureKind::system:
        return std::strerror(failure.errorNumber);
    case FailureKind::notRegularFile:
        return "Not a regular file.";
    case FailureKind::differentVolumes:
        return "The copies are on different disks; space can only be shared within one disk.";
    case FailureKind::contentsDiffer:
        return "The file changed since the scan, so it was left alone.";
    case FailureKind::hardLinked:
        return "The file has hard links, so it was left alone.";
    case FailureKind::alreadyShared:
        return "";
    case FailureKind::unsupported:
        return "This disk doesn't support shared copies (it isn't APFS).";
    }
    return "";
}

Outcome replace(const std::string& copy, const std::string& original) {
    const auto originalStatus = platform::linkStatus(original);
    if (!originalStatus) {
        return failed(FailureKind::notRegularFile);
    }
    const auto copyStatus = platform::linkStatus(copy);
    if (!copyStatus || !originalStatus->regularFile || !copyStatus->regularFile) {
        return failed(FailureKind::notRegularFile);
    }
    if (originalStatus->device != copyStatus->device) {
        return failed(FailureKind::differentVolumes);
    }
    // Replacing one name of a hard-linked file would only break it from its other names.
    if (copyStatus->links != 1) {
        return failed(FailureKind::hardLinked);
    }
    // Compared in full every time, whatever the search found: either file may have changed.
    if (originalStatus->size != copyStatus->size || !platform::contentsEqual(original, copy)) {
        return failed(FailureKind::contentsDiffer);
    }
    const int64_t allocated = copyStatus->blocks * 512;
    const int64_t freed = platform::privateSize(copy).value_or(allocated);
    if (isAlreadyShared(copyStatus->blocks, freed)) {
        return failed(FailureKind::alreadyShared);
    }

    const std::string temporary =
        childPath(parentPath(copy), std::string(temporaryPrefix) + Uuid::make());
    if (const int error = platform::cloneFile(original, temporary); error != 0) {
        return failed(platform::meansCloningUnsupported(error) ? FailureKind::unsupported
                                                               : FailureKind::system,
                      error);
    }
    platform::stripExtendedAttributes(temporary);
    int error = platform::copyMetadata(copy, temporary);
    if (error == 0) {
        error = platform::renameOver(temporary, copy);
    }
    if (error != 0) {
        platform::removeFile(temporary);
        return failed(FailureKind::system, error);
    }
    return freed;
}

CloneReport share(const std::vector<std::pair<std::string, std::string>>& pairs) {
    std::set<std::string> folders;
    for (const auto& pair : pairs) {
        if (SafetyRules::verdict(pair.first).risk != Risk::protected_) {
            folders.insert(parentPath(pair.first));
        }
    }
    // Only where a copy may be touched: a protected place is not even swept.
    for (const std::string& folder : folders) {
        sweepStaleClones(folder);
    }

    CloneReport report;
    for (const auto& [copy, original] : pairs) {
        // Asked again at the moment of the change: what is protected can change meanwhile.
        const SafetyVerdict verdict = SafetyRules::verdict(copy);
        if (verdict.risk == Risk::protected_) {
            report.failures.push_back({Uuid::make(), copy, verdict.reason});
            continue;
        }
        const Outcome outcome = replace(copy, original);
        if (const auto* freed = std::get_if<int64_t>(&outcome)) {
            report.reclaimed += *freed;
            report.converted.push_back(copy);
            continue;
        }
        const Failure& failure = std::get<Failure>(outcome);
        if (failure.kind == FailureKind::alreadyShared) {
            ++report.alreadyShared;
        } else {
            report.failures.push_back({Uuid::make(), copy, reason(failure)});
        }
    }
    return report;
}

void sweepStaleClones(const std::string& folder, double olderThanSeconds) {
    const auto names = platform::directoryEntries(folder);
    if (!names) {
        return;
    }
    const double now = secondsNow();
    for (const std::string& name : *names) {
        if (!name.starts_with(temporaryPrefix) ||
            !Uuid::parse(std::string_view(name).substr(temporaryPrefix.size()))) {
            continue;
        }
        const std::string path = childPath(folder, name);
        const auto status = platform::linkStatus(path);
        if (status && status->regularFile && status->links == 1 &&
            now - status->changed >= olderThanSeconds) {
            platform::removeFile(path);
        }
    }
}

} // namespace dorvik::FileClone
