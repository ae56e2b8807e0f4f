#include "reclaim/ShareToast.h"

#include "base/TextForms.h"
#include "base/Uuid.h"

#include <algorithm>

namespace dorvik {

Toast shareToast(const FileClone::CloneReport& report) {
    Toast toast{Uuid::make(), "", std::nullopt, {}};
    if (report.converted.empty() && report.failures.empty()) {
        toast.message = "These copies already share space";
        toast.detail = "macOS stores them only once, so there is nothing to reclaim.";
        return toast;
    }
    toast.message = TextForms::size(std::max<int64_t>(report.reclaimed, 0)) + " reclaimed";
    if (report.failures.empty()) {
        toast.detail = std::to_string(report.converted.size()) +
                       " copies now share space with their original. Every file is still where "
                       "it was.";
    } else {
        toast.detail = std::to_string(report.failures.size()) +
                       " item(s) couldn't be converted. Details in History.";
        toast.warning = true;
    }
    return toast;
}

} // namespace dorvik
