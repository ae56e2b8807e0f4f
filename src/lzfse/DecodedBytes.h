#pragma once

// The output of the LZFSE and LZVN decoders: bytes appended as literals or copied from earlier
// output, in a buffer that grows geometrically but never past a hard limit, so that a decoder's
// memory stays within what its caller allowed whatever the input claims.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace dorvik {

class DecodedBytes {
public:
    // `expected` is a first guess of the size, `limit` the most it may reach.
    DecodedBytes(size_t expected, size_t limit) : limit_(limit) {
        buffer_.resize(std::min(expected, limit));
    }

    size_t size() const { return size_; }
    size_t room() const { return limit_ - size_; }

    // Callers check that the bytes fit in room().
    void appendLiterals(std::span<const uint8_t> bytes) {
        makeRoom(bytes.size());
        if (!bytes.empty()) {
            std::memcpy(buffer_.data() + size_, bytes.data(), bytes.size());
        }
        size_ += bytes.size();
    }

    // `length` bytes copied from `distance` bytes back, 1 <= distance <= size(). The source may
    // overlap what is being written: distance 1 repeats one byte `length` times.
    void appendMatch(size_t distance, size_t length) {
        makeRoom(length);
        uint8_t* to = buffer_.data() + size_;
        const uint8_t* from = to - distance;
        size_ += length;
        if (distance >= length) {
            std::memcpy(to, from, length);
            return;
        }
        if (distance >= minChunk) {
            // Chunks of one distance never overlap their source.
            for (size_t done = 0; done < length; done += distance) {
                std::memcpy(to + done, from + done, std::min(distance, length - done));
            }
            return;
        }
        for (size_t i = 0; i < length; ++i) {
            to[i] = from[i];
        }
    }

    // The bytes, holding no more memory than they need.
    std::vector<uint8_t> release() {
        buffer_.resize(size_);
        buffer_.shrink_to_fit();
        return std::move(buffer_);
    }

private:
    static constexpr size_t minChunk = 8;

    void makeRoom(size_t extra) {
        if (buffer_.size() - size_ < extra) {
            buffer_.resize(std::min(std::max(size_ + extra, 2 * buffer_.size()), limit_));
        }
    }

    std::vector<uint8_t> buffer_; // size() is what is allocated, size_ what is decoded
    size_t size_ = 0;
    size_t limit_;
};

} // namespace dorvik
