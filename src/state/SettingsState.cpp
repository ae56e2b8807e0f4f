#include "state/SettingsState.h"

#include "state/StoredExclusions.h"

namespace dorvik {

namespace {

QString key(const char* name) {
    return QString::fromLatin1(name);
}

} // namespace

SettingsState::SettingsState(QObject* parent)
    : QObject(parent), settings_(key(settingsOrganisation), key(settingsApplication)) {}

void SettingsState::reload() {
    settings_.sync();
}

void SettingsState::store(const char* name, const QVariant& value) {
    settings_.setValue(key(name), value);
    emit changed();
}

QString SettingsState::appearance() const {
    return settings_.value(key(SettingKeys::appearance), QStringLiteral("system")).toString();
}

void SettingsState::setAppearance(const QString& raw) {
    store(SettingKeys::appearance, raw);
}

bool SettingsState::permanentDelete() const {
    return settings_.value(key(SettingKeys::permanentDelete), false).toBool();
}

void SettingsState::setPermanentDelete(bool permanent) {
    store(SettingKeys::permanentDelete, permanent);
}

bool SettingsState::menuBar() const {
    return settings_.value(key(SettingKeys::menuBar), true).toBool();
}

void SettingsState::setMenuBar(bool shown) {
    store(SettingKeys::menuBar, shown);
}

bool SettingsState::watchRemovedApps() const {
    return settings_.value(key(SettingKeys::watchRemovedApps), true).toBool();
}

void SettingsState::setWatchRemovedApps(bool watch) {
    store(SettingKeys::watchRemovedApps, watch);
}

QString SettingsState::cleanSchedule() const {
    return settings_.value(key(SettingKeys::cleanSchedule), QStringLiteral("off")).toString();
}

void SettingsState::setCleanSchedule(const QString& raw) {
    store(SettingKeys::cleanSchedule, raw);
}

int SettingsState::lowSpaceGB() const {
    return settings_.value(key(SettingKeys::lowSpaceGB), 10).toInt();
}

void SettingsState::setLowSpaceGB(int gigabytes) {
    store(SettingKeys::lowSpaceGB, gigabytes);
}

std::optional<double> SettingsState::lastAutoClean() const {
    const QVariant value = settings_.value(key(SettingKeys::lastAutoClean));
    bool isNumber = false;
    const double date = value.toDouble(&isNumber);
    return value.isValid() && isNumber ? std::optional(date) : std::nullopt;
}

void SettingsState::setLastAutoClean(double date) {
    store(SettingKeys::lastAutoClean, date);
}

int64_t SettingsState::lastAutoCleanBytes() const {
    return settings_.value(key(SettingKeys::lastAutoCleanBytes), 0).toLongLong();
}

void SettingsState::setLastAutoCleanBytes(int64_t bytes) {
    store(SettingKeys::lastAutoCleanBytes, static_cast<qlonglong>(bytes));
}

bool SettingsState::lowSpaceNotified() const {
    return settings_.value(key(SettingKeys::lowSpaceNotified), false).toBool();
}

void SettingsState::setLowSpaceNotified(bool notified) {
    store(SettingKeys::lowSpaceNotified, notified);
}

QString SettingsState::excludedRaw() const {
    return settings_.value(key(SettingKeys::excludedPaths)).toString();
}

void SettingsState::setExcludedRaw(const QString& raw) {
    store(SettingKeys::excludedPaths, raw);
}

std::vector<std::string> SettingsState::excludedPaths() const {
    return StoredExclusions::parse(excludedRaw());
}

void SettingsState::appendExcludedPath(const std::string& path) {
    setExcludedRaw(StoredExclusions::appended(excludedRaw(), path));
}

void SettingsState::removeExcludedPath(const std::string& path) {
    std::vector<std::string> kept = excludedPaths();
    std::erase(kept, path);
    QString raw;
    for (const std::string& line : kept) {
        raw += (raw.isEmpty() ? QString() : QStringLiteral("\n")) + QString::fromStdString(line);
    }
    setExcludedRaw(raw);
}

bool SettingsState::accessOnboardingSkipped() const {
    return settings_.value(key(SettingKeys::accessOnboardingSkipped), false).toBool();
}

void SettingsState::setAccessOnboardingSkipped(bool skipped) {
    store(SettingKeys::accessOnboardingSkipped, skipped);
}

QString SettingsState::initialSection() const {
    return settings_.value(key(SettingKeys::initialSection)).toString();
}

QString SettingsState::autoScan() const {
    return settings_.value(key(SettingKeys::autoScan)).toString();
}

QString SettingsState::explorerMode() const {
    return settings_.value(key(SettingKeys::explorerMode), QStringLiteral("list")).toString();
}

void SettingsState::setExplorerMode(const QString& raw) {
    store(SettingKeys::explorerMode, raw);
}

} // namespace dorvik
