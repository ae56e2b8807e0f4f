#pragma once

// Taking one launch item out of what starts at login. The item's path is checked first, for
// every scope, because it is about to enter a shell line inside single quotes. Then:
// - a user's launch agent is unloaded where launchctl exists, and goes to the Trash;
// - an agent or daemon for all users is unloaded and moved to ~/.Trash by one administrator's
//   command line; the ";" between the two is deliberate: a failed unload does not stop the move;
// - a user's autostart entry goes to the Trash;
// - a system autostart entry stays, turned off the way the desktop does it, by a user entry of
//   the same name that says "Hidden=true" (no administrator needed);
// - a user's systemd unit is disabled with `systemctl --user disable`, and when that does not
//   answer, its ".wants" link goes to the Trash.
// The moves to the Trash are left to the caller, which makes them through the removal road, so
// that they are in the history and can be undone.

#include "platform/RunTool.h"
#include "system/LaunchItem.h"

#include <optional>
#include <string>
#include <string_view>

namespace dorvik {

inline constexpr std::string_view unsupportedFileNameMessage = "Unsupported file name.";
inline constexpr std::string_view couldNotRemoveMessage = "Couldn't remove it.";

// Where the tools lie; tests point them elsewhere.
struct LaunchTools {
    std::string launchctl = "/bin/launchctl";
    std::string systemctl = "/usr/bin/systemctl";
};

// Letters, digits, "._@+/ -" only, ending in the scope's extension (".plist", ".desktop", or a
// unit's type), and no "..".
bool isAcceptedLaunchItemPath(const std::string& path, LaunchScope scope);

// The administrator's command line that unloads and moves an agent or daemon for all users.
std::string privilegedRemovalLine(const LaunchItem& item, unsigned userId, const std::string& home);

struct LaunchRemoval {
    std::optional<std::string> message; // the text to show; none on success
    std::optional<std::string> toTrash; // what the caller still moves to the Trash
};

// Everything of the removal but the move to the Trash. Runs commands and may wait for the
// administrator's password: call it off the main thread.
LaunchRemoval removeLaunchItem(const LaunchItem& item, const LaunchPlaces& places,
                               const platform::ProcessRunner& run = platform::runProcess,
                               const LaunchTools& tools = {});

} // namespace dorvik
