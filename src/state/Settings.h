#pragma once

// The one list of the program's stored settings and their defaults, over QSettings
// (organisation and application "Dorvik"; on Linux under $XDG_CONFIG_HOME). Every QSettings
// made with these names reads and writes the same store.

namespace dorvik::SettingKeys {

inline constexpr const char* appearance = "appearance";
inline constexpr const char* permanentDelete = "permanentDelete";
inline constexpr const char* menuBar = "menuBar";
inline constexpr const char* watchRemovedApps = "watchRemovedApps";
inline constexpr const char* cleanSchedule = "cleanSchedule";
inline constexpr const char* lowSpaceGB = "lowSpaceGB";
inline constexpr const char* lastAutoClean = "lastAutoClean";
inline constexpr const char* lastAutoCleanBytes = "lastAutoCleanBytes";
inline constexpr const char* lowSpaceNotified = "lowSpaceNotified";
inline constexpr const char* excludedPaths = "excludedPaths";
inline constexpr const char* accessOnboardingSkipped = "accessOnboardingSkipped";
inline constexpr const char* initialSection = "initialSection";
inline constexpr const char* autoScan = "autoScan";
inline constexpr const char* explorerMode = "explorerMode";

} // namespace dorvik::SettingKeys

namespace dorvik {

inline constexpr const char* settingsOrganisation = "Dorvik";
inline constexpr const char* settingsApplication = "Dorvik";

} // namespace dorvik
