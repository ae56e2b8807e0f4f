#include "cli/FindJunk.h"

#include "cleaning/JunkFinder.h"
#include "platform/Terminal.h"

#include <iostream>

namespace dorvik::cli {

std::vector<JunkFinding> findJunk() {
    const bool live = platform::standardErrorIsTerminal();
    if (live) {
        std::cerr << "Searching\u2026" << std::flush;
    }
    std::vector<JunkFinding> findings = JunkFinder::findAll();
    if (live) {
        std::cerr << "\r\033[K" << std::flush;
    }
    return findings;
}

} // namespace dorvik::cli
