#include "trends/TrendTexts.h"

#include "system/TextForms.h"

namespace dorvik::TrendTexts {

namespace {

std::string lastComponent(const std::string& path) {
    std::string trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == '/') {
        trimmed.pop_back();
    }
    if (trimmed == "/") {
        return "/";
    }
    const size_t slash = trimmed.rfind('/');
    return slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
}

} // namespace

std::string firstMeasurementText(double date, double now) {
    return "First measurement saved " + TextForms::relativeDate(date, now) +
           ". Scan again another day and Dorvik will show exactly which folders grew.";
}

std::string sinceText(double olderDate, double now) {
    return "Since " + TextForms::relativeDate(olderDate, now);
}

std::string scannedRangeText(const ScanSnapshot& older, const ScanSnapshot& newer) {
    return "from " + TextForms::size(older.total) + " to " + TextForms::size(newer.total) +
           " scanned";
}

std::string folderRowTitle(const FolderChange& change) {
    const std::string name = lastComponent(change.path);
    return change.isRemainder ? "Other items in " + name : name;
}

std::optional<std::string> folderRowBadge(const FolderChange& change) {
    if (change.isRemainder) {
        return std::nullopt;
    }
    if (change.before == 0) {
        return "New";
    }
    if (change.after == 0) {
        return "Removed";
    }
    return std::nullopt;
}

} // namespace dorvik::TrendTexts
