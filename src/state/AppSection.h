#pragma once

// The pages of the program, in sidebar order. The raw value is what "initialSection" holds.

#include <array>
#include <optional>
#include <string_view>

namespace dorvik {

enum class AppSection {
    smartClean,
    overview,
    trends,
    explorer,
    types,
    large,
    systemData,
    cloud,
    apps,
    leftovers,
    loginItems,
    junk,
    developer,
    duplicates,
    history,
};

inline constexpr std::array<AppSection, 15> allAppSections = {
    AppSection::smartClean, AppSection::overview,   AppSection::trends,     AppSection::explorer,
    AppSection::types,      AppSection::large,      AppSection::systemData, AppSection::cloud,
    AppSection::apps,       AppSection::leftovers,  AppSection::loginItems, AppSection::junk,
    AppSection::developer,  AppSection::duplicates, AppSection::history,
};

struct AppSectionInfo {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
};

const AppSectionInfo& info(AppSection section);

std::optional<AppSection> appSectionFromRaw(std::string_view rawValue);

} // namespace dorvik
