#pragma once

// The message after copies were made to share their storage. Nothing was deleted, so there is
// nothing to undo.

#include "reclaim/FileClone.h"
#include "removal/Toast.h"

namespace dorvik {

Toast shareToast(const FileClone::CloneReport& report);

} // namespace dorvik
