#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace dorvik::test {

namespace fs = std::filesystem;

namespace {

void check(bool ok, const std::string& what) {
    if (!ok) {
        throw std::runtime_error(what + ": " + std::strerror(errno));
    }
}

// Gives back every permission below `root` so that the folder can be removed.
void restorePermissions(const std::string& root) {
    std::error_code error;
    fs::permissions(root, fs::perms::owner_all, fs::perm_options::add, error);
    for (auto it = fs::recursive_directory_iterator(
             root, fs::directory_options::skip_permission_denied, error);
         it != fs::recursive_directory_iterator(); it.increment(error)) {
        if (error) {
            break;
        }
        if (it->is_directory(error) && !it->is_symlink(error)) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
    }
}

} // namespace

TempDir::TempDir() {
    const char* base = std::getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base != '\0' ? base : "/tmp") + "/dorvik-test-XXXXXX";
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    check(mkdtemp(buffer.data()) != nullptr, "mkdtemp");
    path_ = fs::canonical(buffer.data()).string();
}

TempDir::~TempDir() {
    restorePermissions(path_);
    std::error_code error;
    fs::remove_all(path_, error);
}

void makeFolder(const std::string& path) {
    fs::create_directories(path);
}

void writeFile(const std::string& path, int64_t bytes) {
    fs::create_directories(fs::path(path).parent_path());
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    std::array<char, 65536> chunk{};
    chunk.fill('x');
    int64_t left = bytes;
    while (left > 0) {
        const auto piece = static_cast<size_t>(std::min<int64_t>(left, chunk.size()));
        const ssize_t written = write(fd, chunk.data(), piece);
        check(written > 0, "write " + path);
        left -= written;
    }
    close(fd);
}

bool entryExists(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

void writeText(const std::string& path, const std::string& text) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
    check(static_cast<bool>(out), "write " + path);
}

std::string readText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeSparseFile(const std::string& path, int64_t length) {
    fs::create_directories(fs::path(path).parent_path());
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    check(ftruncate(fd, length) == 0, "ftruncate " + path);
    close(fd);
}

void writeAllocatedFile(const std::string& path, int64_t allocated, int64_t length) {
    fs::create_directories(fs::path(path).parent_path());
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    check(fd >= 0, "open " + path);
    check(allocated < 1 || posix_fallocate(fd, 0, allocated) == 0, "fallocate " + path);
    check(ftruncate(fd, std::max(allocated, length)) == 0, "ftruncate " + path);
    close(fd);
}

void makeHardLink(const std::string& existing, const std::string& link) {
    check(::link(existing.c_str(), link.c_str()) == 0, "link " + link);
}

void makeSymlink(const std::string& target, const std::string& link) {
    check(::symlink(target.c_str(), link.c_str()) == 0, "symlink " + link);
}

void setModificationTime(const std::string& path, double seconds) {
    // The C library's seconds-and-nanoseconds record, as utimensat takes it.
    using Time = decltype(stat::st_mtim);
    Time time{};
    time.tv_sec = static_cast<time_t>(std::floor(seconds));
    time.tv_nsec = static_cast<long>(std::lround((seconds - std::floor(seconds)) * 1e9));
    const Time times[2] = {time, time};
    check(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0, "utimensat " + path);
}

double accessTime(const std::string& path) {
    struct stat st {};
    check(lstat(path.c_str(), &st) == 0, "lstat " + path);
    return static_cast<double>(st.st_atim.tv_sec) + static_cast<double>(st.st_atim.tv_nsec) / 1e9;
}

int64_t allocatedBytes(const std::string& path) {
    struct stat st {};
    check(lstat(path.c_str(), &st) == 0, "lstat " + path);
    return static_cast<int64_t>(st.st_blocks) * 512;
}

std::string commandOutput(const std::string& command) {
    FILE* pipe = popen(command.c_str(), "r");
    check(pipe != nullptr, "popen " + command);
    std::string output;
    std::array<char, 4096> buffer{};
    size_t got = 0;
    while ((got = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) {
        output.append(buffer.data(), got);
    }
    const int status = pclose(pipe);
    EXPECT_EQ(status, 0) << command;
    return output;
}

bool ignoresPermissions() {
    return geteuid() == 0;
}

} // namespace dorvik::test
