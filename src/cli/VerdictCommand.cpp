#include "base/Wording.h"
#include "cli/Commands.h"
#include "cli/TerminalText.h"
#include "platform/JsonCoding.h"
#include "platform/ResolvedPath.h"
#include "removal/SafetyRules.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <vector>

namespace dorvik::cli {

int runVerdict(Arguments& arguments) {
    bool json = false;
    std::vector<std::string> paths;
    while (!arguments.done()) {
        const std::string word = arguments.take();
        if (word == "--json") {
            json = true;
        } else if (word.starts_with("-") && word != "-") {
            throw UsageError("unknown option " + word);
        } else if (word.empty()) {
            throw UsageError("an empty path");
        } else {
            paths.push_back(platform::withResolvedFolders(absolutePath(word)));
        }
    }
    if (paths.empty()) {
        throw UsageError("give at least one path");
    }
    for (const std::string& path : paths) {
        const SafetyVerdict verdict = SafetyRules::verdict(path);
        const std::string_view risk = info(verdict.risk).caseName;
        if (json) {
            // One object a line, so that a script can read the answers as they come.
            std::cout << nlohmann::json{{"path", platform::JsonCoding::escapedPath(path)},
                                        {"risk", risk},
                                        {"reason", Wording::shown(verdict.reason)}}
                             .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
                      << "\n";
        } else {
            std::cout << risk << "\t" << Wording::shown(verdict.reason) << "\t"
                      << quotedForTerminal(path) << "\n";
        }
    }
    return 0;
}

} // namespace dorvik::cli
