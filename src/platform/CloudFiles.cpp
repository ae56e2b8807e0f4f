#include "platform/CloudFiles.h"

namespace dorvik::platform {

CloudFileFacts cloudFileFacts(const WalkStat& status) {
    CloudFileFacts facts;
    if (status.type == EntryType::unknown) {
        return facts;
    }
    facts.isRegularFile = status.type == EntryType::file;
    facts.logicalSize = status.size;
    facts.allocatedSize = status.blocks * 512;
    return facts;
}

std::optional<std::string> evictDownload(const std::string&) {
    return std::string(evictionUnavailableMessage);
}

} // namespace dorvik::platform
