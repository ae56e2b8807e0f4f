#include "state/StoredExclusions.h"

#include "base/PathNames.h"
#include "state/SettingsState.h"

namespace dorvik::StoredExclusions {

std::vector<std::string> parse(const QString& raw) {
    std::vector<std::string> paths;
    for (const QString& line : raw.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        paths.push_back(line.toStdString());
    }
    return paths;
}

QString appended(QString raw, const std::string& path) {
    if (!raw.isEmpty() && !raw.endsWith(QLatin1Char('\n'))) {
        raw += QLatin1Char('\n');
    }
    return raw + QString::fromStdString(canonicalPath(path));
}

std::set<std::string> read() {
    const std::vector<std::string> paths = SettingsState().excludedPaths();
    return {paths.begin(), paths.end()};
}

} // namespace dorvik::StoredExclusions
