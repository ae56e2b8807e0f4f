#pragma once

// The key files of a Linux desktop: desktop entries (applications, autostart entries) and
// systemd units share the form "[Group]" then "Key=Value" lines. Only what the login items need
// is read: one group's plain keys, localised variants ("Name[fr]") left out.

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::DesktopEntry {

using Keys = std::map<std::string, std::string>;

// The keys of `group` in the text; none when the group is not there. A key given twice keeps
// its last value, as the readers of these files do.
std::optional<Keys> groupKeys(std::string_view text, std::string_view group);

// The same for a file; none when it cannot be read either.
std::optional<Keys> readGroup(const std::string& path, std::string_view group);

// The value of `key`, or none.
std::optional<std::string> value(const Keys& keys, std::string_view key);

// True for "true" (and "1", which some writers use).
bool isTrue(const Keys& keys, std::string_view key);

// The program of an "Exec" (or systemd "ExecStart") line: its first word, double quotes and their
// escapes undone. `env VAR=value program …` names `program`. A systemd line's leading "-@+!:"
// marks are dropped. None for an empty line.
std::optional<std::string> execProgram(std::string_view line);

// Whether an entry with these keys is shown in a session of `desktops` ($XDG_CURRENT_DESKTOP's
// names): "OnlyShowIn" must name one of them, "NotShowIn" none.
bool isShownIn(const Keys& keys, const std::vector<std::string>& desktops);

// The names of a ";"-separated list, empty ones left out.
std::vector<std::string> listValue(std::string_view value);

} // namespace dorvik::DesktopEntry
