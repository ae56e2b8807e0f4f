#include "state/StoredExclusions.h"

#include "base/PathNames.h"
#include "state/Settings.h"

#include <QSettings>

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
    const QSettings settings(QString::fromLatin1(settingsOrganisation),
                             QString::fromLatin1(settingsApplication));
    const std::vector<std::string> paths =
        parse(settings.value(QString::fromLatin1(SettingKeys::excludedPaths)).toString());
    return {paths.begin(), paths.end()};
}

} // namespace dorvik::StoredExclusions
