#include "trends/TrendTexts.h"

#include "base/PathNames.h"
#include "base/TextForms.h"

namespace dorvik::TrendTexts {

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
    const std::string name = pathName(change.path);
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

std::optional<std::string> teaserText(const std::vector<ScanSnapshot>& history, double now) {
    if (history.size() < 2) {
        return std::nullopt;
    }
    return "Since the scan " + TextForms::relativeDate(history[1].date, now) + ": " +
           TextForms::signedSize(sizeChange(history[1].total, history[0].total));
}

} // namespace dorvik::TrendTexts
