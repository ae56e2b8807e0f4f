#include "removal/DeletionRequest.h"

#include "base/Uuid.h"

namespace dorvik {

DeletionRequest makeDeletionRequest(std::string path, int64_t size, Removal removal) {
    return DeletionRequest{Uuid::make(), std::move(path), size, removal};
}

} // namespace dorvik
