// dorvik-cli: Dorvik from a terminal, over the same core as the application.

#include "cli/Commands.h"

#include <nlohmann/json.hpp>

#include <array>
#include <iostream>
#include <string>
#include <vector>

namespace dorvik::cli {

namespace {

constexpr std::array commands = {
    Command{
        "scan",
        "scan [PATH | --home | --disk] [--exclude PATH]... [--no-exclusions] [--top N] [--json] "
        "[--record] [--save FILE] [--threads N]",
        runScan},
    Command{"load", "load FILE [--top N] [--json]", runLoad},
    Command{"files",
            "files [PATH | --load FILE] [--min-size N] [--older-than DAYS] [--kind K]... "
            "[--bucket B] [--query Q] [--no-exclusions] [--csv FILE] [--threads N]",
            runFiles},
    Command{"trends", "trends [--root PATH] [--json]", runTrends},
    Command{"verdict", "verdict [--json] PATH...", runVerdict},
    Command{"junk", "junk [--json]", runJunk},
    Command{"dev", "dev [PATH | --load FILE] [--json]", runDev},
    Command{"remove", "remove [--permanent] [--include-review] [--yes] PATH...", runRemove},
    Command{"clean", "clean [--rule ID]... [--dry-run] [--yes]", runClean},
    Command{"history", "history [--json]", runHistory},
    Command{"undo", "undo [--last | ID...]", runUndo},
    Command{"system", "system [--root PATH] [--json]", runSystem},
    Command{"background", "background --tick", runBackground},
    Command{"duplicates",
            "duplicates [PATH | --load FILE] [--min-size N] [--json] [--share [--yes]]",
            runDuplicates},
    Command{"leftovers", "leftovers [--json]", runLeftovers},
    Command{"apps", "apps [--json]", runApps},
    Command{"uninstall", "uninstall [--yes] APP_PATH", runUninstall},
    Command{"overview", "overview [PATH | --load FILE] [--json]", runOverview},
    Command{"login-items", "login-items [--json] | login-items --remove PATH [--yes]",
            runLoginItems},
    Command{"cloud", "cloud [--json]", runCloud},
};

void printUsage(std::ostream& out) {
    out << "usage:\n";
    for (const Command& command : commands) {
        out << "  dorvik-cli " << command.usage << "\n";
    }
}

} // namespace

void printJson(std::ostream& out, const nlohmann::json& document) {
    out << document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
}

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty() || words[0] == "--help" || words[0] == "-h" || words[0] == "help") {
        printUsage(words.empty() ? std::cerr : std::cout);
        return words.empty() ? 2 : 0;
    }
    for (const Command& command : commands) {
        if (words[0] != command.name) {
            continue;
        }
        Arguments arguments(std::vector<std::string>(words.begin() + 1, words.end()));
        try {
            return command.run(arguments);
        } catch (const UsageError& error) {
            std::cerr << "dorvik-cli " << command.name << ": " << error.what() << "\n"
                      << "usage: dorvik-cli " << command.usage << "\n";
            return 2;
        } catch (const InputError& error) {
            std::cerr << "dorvik-cli " << command.name << ": " << error.what() << "\n";
            return 2;
        }
    }
    std::cerr << "dorvik-cli: unknown command \"" << words[0] << "\"\n";
    printUsage(std::cerr);
    return 2;
}

} // namespace dorvik::cli

int main(int argc, char** argv) {
    return dorvik::cli::main(argc, argv);
}
