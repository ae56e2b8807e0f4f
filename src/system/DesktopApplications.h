#pragma once

// The applications a Linux desktop knows of: the desktop entries in the "applications" folders,
// each with its id (the file name), its name, its icon and the program it runs. Autostart
// entries and units find their owner here.

#include "system/LaunchItem.h"

#include <optional>
#include <string>
#include <vector>

namespace dorvik {

struct DesktopApplication {
    std::string id;   // "org.example.Writer.desktop"
    std::string path; // the desktop entry
    std::string name;
    std::optional<std::string> icon;
    std::optional<std::string> program;
};

// Makes `owner` the item's owner: its name, its desktop entry, its icon.
void setOwner(LaunchItem& item, const DesktopApplication& owner);

class DesktopApplications {
public:
    // The entries of type "Application" in `folders`, the first folder's entry winning for an id
    // found twice, as the desktop does. Entries in subfolders are left out.
    static DesktopApplications read(const std::vector<std::string>& folders);

    explicit DesktopApplications(std::vector<DesktopApplication> applications = {})
        : applications_(std::move(applications)) {}

    // The application whose desktop entry has the id `id`.
    const DesktopApplication* withId(const std::string& id) const;
    // The application that runs `program`: the same absolute path, or the same file name when
    // either is given as a bare name.
    const DesktopApplication* running(const std::string& program) const;

private:
    std::vector<DesktopApplication> applications_;
};

} // namespace dorvik
