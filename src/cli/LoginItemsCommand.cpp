// dorvik-cli login-items: what starts by itself at login, scope by scope, with its owner and
// whether that owner is gone; and the removal of one item, confirmed on the terminal, through the
// same road as the application's "Remove".

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/RemovalRun.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "platform/WalkFolder.h"
#include "system/LaunchItem.h"
#include "system/LaunchItemRemoval.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iostream>

namespace dorvik::cli {

namespace {

std::vector<std::string> badges(const LaunchItem& item) {
    std::vector<std::string> shown;
    if (item.isOrphan) {
        shown.emplace_back("App removed");
    }
    if (item.runAtLoad) {
        shown.emplace_back("At login");
    }
    if (item.keepAlive) {
        shown.emplace_back("Always running");
    }
    if (item.isTurnedOff) {
        shown.emplace_back("Turned off");
    }
    return shown;
}

void printText(const std::vector<LaunchItem>& items) {
    if (items.empty()) {
        std::cout << "Nothing starts by itself at login.\n";
        return;
    }
    for (const LaunchScopeInfo& scope : launchScopes()) {
        const auto inScope = [&scope](const LaunchItem& item) { return item.scope == scope.scope; };
        if (std::ranges::none_of(items, inScope)) {
            continue;
        }
        std::cout << Wording::shown(scope.sectionTitle) << "\n";
        for (const LaunchItem& item : items) {
            if (!inScope(item)) {
                continue;
            }
            std::cout << "  " << quotedForTerminal(shownName(item)) << "  ("
                      << quotedForTerminal(item.program && item.label == shownName(item)
                                               ? *item.program
                                               : item.label)
                      << ")";
            for (const std::string& badge : badges(item)) {
                std::cout << "  [" << badge << "]";
            }
            if (!isRemovable(item)) {
                std::cout << "  [kept]";
            }
            std::cout << "\n    " << shownPath(item.path) << "\n";
        }
        std::cout << "\n";
    }
}

nlohmann::json optionalText(const std::optional<std::string>& text) {
    return text ? nlohmann::json(*text) : nlohmann::json();
}

nlohmann::json optionalPath(const std::optional<std::string>& path) {
    return path ? nlohmann::json(platform::JsonCoding::escapedPath(*path)) : nlohmann::json();
}

nlohmann::json itemsJson(const std::vector<LaunchItem>& items) {
    nlohmann::json list = nlohmann::json::array();
    for (const LaunchItem& item : items) {
        list.push_back({
            {"path", platform::JsonCoding::escapedPath(item.path)},
            {"label", item.label},
            {"name", shownName(item)},
            {"program", optionalPath(item.program)},
            {"scope", info(item.scope).caseName},
            {"runAtLoad", item.runAtLoad},
            {"keepAlive", item.keepAlive},
            {"turnedOff", item.isTurnedOff},
            {"ownerName", optionalText(item.ownerName)},
            {"ownerPath", optionalPath(item.ownerPath)},
            {"isOrphan", item.isOrphan},
            {"removable", isRemovable(item)},
            {"modified",
             item.modified ? nlohmann::json(TextForms::iso8601(*item.modified)) : nlohmann::json()},
        });
    }
    return list;
}

int removeItem(const std::vector<LaunchItem>& items, const std::string& path, bool yes,
               const LaunchPlaces& places) {
    const auto found = std::ranges::find(items, path, &LaunchItem::path);
    if (found == items.end()) {
        throw InputError("not a login item: " + path);
    }
    const LaunchItem& item = *found;
    if (!isRemovable(item)) {
        throw InputError(shownName(item) + " is kept: it cannot be removed here");
    }
    std::cout << quotedForTerminal(shownName(item)) << " ("
              << Wording::shown(info(item.scope).sectionTitle) << ")\n  " << shownPath(item.path)
              << "\n";
    if (info(item.scope).needsAdministrator) {
        std::cout << "An administrator's password will be asked for.\n";
    }
    if (!confirmed("Stop it from starting at login?", yes)) {
        std::cout << "Nothing was removed.\n";
        return 1;
    }
    const LaunchRemoval removal = removeLaunchItem(item, places);
    if (removal.message) {
        std::cout << Wording::shown(*removal.message) << "\n";
        return 1;
    }
    if (removal.toTrash) {
        const int64_t size = platform::walkStatus(*removal.toTrash).blocks * 512;
        return runRemoval({makeDeletionRequest(*removal.toTrash, size, Removal::trash)});
    }
    std::cout << (item.scope == LaunchScope::autostartSystem ? "Turned off for you.\n"
                                                             : "Removed.\n");
    return 0;
}

} // namespace

int runLoginItems(Arguments& arguments) {
    bool json = false;
    bool yes = false;
    std::optional<std::string> toRemove;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--json") {
            json = true;
        } else if (word == "--yes") {
            yes = true;
        } else if (word == "--remove") {
            toRemove = absolutePath(arguments.value(word));
        } else {
            throw UsageError("unknown option " + word);
        }
    }
    const LaunchPlaces places = LaunchPlaces::ofThisComputer();
    const std::vector<LaunchItem> items = listLaunchItems(places);
    if (toRemove) {
        return removeItem(items, *toRemove, yes, places);
    }
    if (json) {
        printJson(std::cout, itemsJson(items));
    } else {
        printText(items);
    }
    return 0;
}

} // namespace dorvik::cli
