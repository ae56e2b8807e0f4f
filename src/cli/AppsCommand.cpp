// dorvik-cli apps and uninstall: the installed applications with the data each keeps outside its
// bundle, and the plan "Uninstall <name>" run through the same engine and history as the
// Applications page, with the page's refusals.

#include "apps/AppInventory.h"
#include "apps/FlatpakApps.h"
#include "apps/UninstallPlan.h"
#include "apps/UninstallRefusal.h"
#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/TextForms.h"
#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/RemovalRun.h"
#include "cli/TerminalText.h"
#include "platform/FileSystem.h"
#include "platform/JsonCoding.h"
#include "platform/RunningApplications.h"
#include "removal/PlanTexts.h"
#include "scanning/WalkThreads.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <iostream>

namespace dorvik::cli {

namespace {

constexpr std::string_view indent = "              ";

std::string badges(const InstalledApp& app, bool running) {
    std::string text;
    for (const auto& [shown, badge] :
         {std::pair{app.isAppStore, "App Store"}, std::pair{app.isApple, "Apple"},
          std::pair{running, "Running"}}) {
        if (shown) {
            text += std::string("  [") + badge + "]";
        }
    }
    return text;
}

std::string lastUsedText(const InstalledApp& app) {
    return app.lastUsed ? TextForms::abbreviatedDate(*app.lastUsed) : "Never / unknown";
}

void printText(const std::vector<InstalledApp>& apps, const std::vector<std::string>& running) {
    int64_t total = 0;
    for (const InstalledApp& app : apps) {
        total += app.totalSize();
        std::cout << "  " << std::setw(10) << TextForms::size(app.totalSize()) << "  "
                  << quotedForTerminal(app.name);
        if (app.version) {
            std::cout << " " << quotedForTerminal(*app.version);
        }
        std::cout << badges(app, isRunning(app, running)) << "\n"
                  << indent << shownPath(app.path) << "\n"
                  << indent << "App " << TextForms::size(app.appSize) << " \u00B7 Data "
                  << TextForms::size(app.relatedSize()) << " \u00B7 Last used " << lastUsedText(app)
                  << "\n";
        for (const RelatedItem& item : app.related) {
            std::cout << indent << std::setw(10) << TextForms::size(item.size) << "  "
                      << Wording::shown(item.label) << "  " << shownPath(item.path) << "\n";
        }
    }
    if (apps.empty()) {
        std::cout << "  No applications found.\n";
    } else {
        std::cout << "  Total: " << TextForms::size(total) << ", "
                  << TextForms::counted(static_cast<int64_t>(apps.size()), "app", "apps") << "\n";
    }
}

nlohmann::json optionalText(const std::optional<std::string>& text) {
    return text ? nlohmann::json(*text) : nlohmann::json();
}

nlohmann::json appsJson(const std::vector<InstalledApp>& apps,
                        const std::vector<std::string>& running) {
    nlohmann::json list = nlohmann::json::array();
    for (const InstalledApp& app : apps) {
        nlohmann::json related = nlohmann::json::array();
        for (const RelatedItem& item : app.related) {
            related.push_back({{"path", platform::JsonCoding::escapedPath(item.path)},
                               {"label", item.label},
                               {"size", item.size}});
        }
        list.push_back({
            {"path", platform::JsonCoding::escapedPath(app.path)},
            {"name", app.name},
            {"bundleID", optionalText(app.bundleID)},
            {"version", optionalText(app.version)},
            {"appSize", app.appSize},
            {"totalSize", app.totalSize()},
            {"related", std::move(related)},
            // Seconds since 1970; none when no use is known.
            {"lastUsed", app.lastUsed ? nlohmann::json(*app.lastUsed) : nlohmann::json()},
            {"isApple", app.isApple},
            {"isAppStore", app.isAppStore},
            {"isRunning", isRunning(app, running)},
        });
    }
    return list;
}

// The bundle, or the Flatpak app whose folder the path is.
InstalledApp appAt(const std::string& path) {
    if (lowerCaseExtension(path) == "app" && platform::isDirectory(path)) {
        return AppInventory::inspectBundle(path, AppInventory::libraryEntries());
    }
    for (const Flatpak::FlatpakApp& flatpak : Flatpak::installedApps()) {
        if (flatpak.folder == path) {
            return Flatpak::inspect(flatpak);
        }
    }
    throw InputError("no application bundle or Flatpak app at " + path);
}

} // namespace

int runApps(Arguments& arguments) {
    const bool json = takeJsonOption(arguments);
    const std::vector<InstalledApp> apps = AppInventory::loadAll(machineThreads());
    const std::vector<std::string> running = platform::runningApplicationIdentifiers();
    if (json) {
        printJson(std::cout, {{"apps", appsJson(apps, running)}});
    } else {
        std::cout << "Applications\n";
        printText(apps, running);
    }
    return 0;
}

int runUninstall(Arguments& arguments) {
    bool yes = false;
    std::optional<std::string> bundle;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--yes") {
            yes = true;
        } else if (word.starts_with("--") || bundle) {
            throw UsageError("unexpected " + word);
        } else {
            bundle = absolutePath(word);
        }
    }
    if (!bundle) {
        throw UsageError("no application given");
    }
    const InstalledApp app = appAt(*bundle);
    if (const auto refusal = uninstallRefusal(app, platform::runningApplicationIdentifiers())) {
        std::cout << Wording::shown(refusalNote(*refusal)) << "\n";
        return 1;
    }
    // Every item goes to the Trash, a Flatpak app itself to Flatpak's uninstall; the question
    // below is the review the sheet asks for.
    const DeletionPlan plan = *makePlan(uninstallPlanItems(app), uninstallTitle(app));
    printPlan(plan, false, true);
    const std::vector<DeletionRequest> requests = planRequests(plan, true, false);
    if (requests.empty()) {
        std::cout << "Nothing to delete.\n";
        return 1;
    }
    const std::string question =
        PlanTexts::uninstallNote(plan)
            ? "Uninstall the app and move its data to the Trash?"
            : "Move " + std::to_string(requests.size()) + " item(s) to the Trash?";
    if (!confirmed(question, yes)) {
        std::cout << "Nothing was deleted.\n";
        return 1;
    }
    return runRemoval(requests);
}

} // namespace dorvik::cli
