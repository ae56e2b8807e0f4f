#pragma once

// The SHA-256 of a file's content, or of its first bytes, as 64 lower-case hexadecimal digits.

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace dorvik::ContentHash {

// What the first, cheap comparison of two files of equal length reads.
inline constexpr int64_t headBytes = 65536;
inline constexpr int64_t wholeFile = std::numeric_limits<int64_t>::max();
// Files are read in blocks of this size and never held whole.
inline constexpr int64_t blockBytes = 1048576;

// The digest of at most `budget` bytes from the start of the file; none when it cannot be opened.
// A read that fails midway leaves the digest of what was read, as if the file ended there.
std::optional<std::string> sha256(const std::string& path, int64_t budget);

// The digest of a file's first headBytes, holding on to the hash's state so that the digest of the
// whole file goes on from there: files that share a head are never read twice from the start.
class HeadDigest {
public:
    // None when the file cannot be opened.
    static std::optional<HeadDigest> of(const std::string& path);

    HeadDigest(HeadDigest&&) noexcept;
    HeadDigest& operator=(HeadDigest&&) noexcept;
    ~HeadDigest();

    const std::string& digest() const { return digest_; }

    // The digest of the whole file, reading on after the head; the head's own when the file ended
    // within it. None when the file cannot be opened again. Used once.
    std::optional<std::string> wholeFileDigest(const std::string& path);

private:
    struct Running;
    HeadDigest(std::string digest, std::unique_ptr<Running> running);

    std::string digest_;
    std::unique_ptr<Running> running_;
};

// Lets go of what the hashing library keeps for the calling thread. A thread that hashed calls it
// when it is done: a pooled thread that outlives the program's exit would otherwise free that
// state a second time, after the library's own exit handler did.
void releaseThreadState();

} // namespace dorvik::ContentHash
