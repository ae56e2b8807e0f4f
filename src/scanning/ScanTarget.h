#pragma once

#include <string>

namespace dorvik {

// What the user asked to scan.
class ScanTarget {
public:
    enum class Kind { folder, wholeDisk, home }; // in this order

    static ScanTarget folder(std::string path) { return ScanTarget(Kind::folder, std::move(path)); }
    static ScanTarget wholeDisk() { return ScanTarget(Kind::wholeDisk, {}); }
    static ScanTarget home() { return ScanTarget(Kind::home, {}); }

    Kind kind() const { return kind_; }
    // The folder's path for `folder`, empty for the others.
    const std::string& folderPath() const { return folderPath_; }

    // The path the walk starts from: the data volume for a whole disk where there is one.
    std::string rootPath() const;
    std::string title() const;

    bool operator==(const ScanTarget&) const = default;

private:
    ScanTarget(Kind kind, std::string folderPath)
        : kind_(kind), folderPath_(std::move(folderPath)) {}

    Kind kind_;
    std::string folderPath_;
};

} // namespace dorvik
