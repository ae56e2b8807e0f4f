#include "support/HostileArchives.h"

#include "lzfse/Lzfse.h"
#include "scanning/ScanArchive.h"

#include <fstream>
#include <stdexcept>

namespace dorvik::test {

namespace {

constexpr size_t endOfStreamBytes = 4; // "bvx$"

// A payload cut in two: all before the root's first child, ending in the root's child count, and
// the record of one empty folder "d" with no children, its child count last. The bytes are
// assembled from these, so that no tree of the size described is ever built here.
struct PayloadParts {
    std::vector<uint8_t> head;
    std::vector<uint8_t> record;
};

PayloadParts payloadParts() {
    const auto root =
        std::make_shared<FileNode>("/r", true, false, FileKind::other, StorageBucket::other);
    FileNode::adopt(
        root, std::make_shared<FileNode>("d", true, false, FileKind::other, StorageBucket::other));
    ScanResult scan;
    scan.root = root;
    scan.rootPath = root->name;
    const std::vector<uint8_t> one = ScanArchive::encodePayload(scan, ScanTarget::home());
    const auto recordBytes = static_cast<std::ptrdiff_t>(4 + 1 + ScanArchive::nodeRecordBytes);
    return {{one.begin(), one.end() - recordBytes}, {one.end() - recordBytes, one.end()}};
}

// The child count is the last four bytes of a record.
void setChildCount(std::vector<uint8_t>& record, size_t count) {
    if (count > UINT32_MAX) {
        throw std::invalid_argument("a child count has 32 bits");
    }
    for (size_t i = 0; i < 4; ++i) {
        record[record.size() - 4 + i] = static_cast<uint8_t>(count >> (8 * i));
    }
}

// The blocks of a stream without its end: streams made apart join into one by their blocks.
std::vector<uint8_t> blocksOf(const std::vector<uint8_t>& bytes) {
    std::vector<uint8_t> stream = Lzfse::encode(bytes);
    stream.resize(stream.size() - endOfStreamBytes);
    return stream;
}

void finish(std::vector<uint8_t>& stream) {
    for (const char c : std::string("bvx$")) {
        stream.push_back(static_cast<uint8_t>(c));
    }
}

void repeat(std::vector<uint8_t>& stream, const std::vector<uint8_t>& blocks, size_t times) {
    for (size_t i = 0; i < times; ++i) {
        stream.insert(stream.end(), blocks.begin(), blocks.end());
    }
}

} // namespace

std::vector<uint8_t> chainPayload(size_t levels) {
    const PayloadParts parts = payloadParts();
    std::vector<uint8_t> payload = parts.head;
    setChildCount(payload, levels == 0 ? 0 : 1);
    std::vector<uint8_t> link = parts.record;
    setChildCount(link, 1);
    for (size_t level = 1; level < levels; ++level) {
        payload.insert(payload.end(), link.begin(), link.end());
    }
    if (levels > 0) {
        payload.insert(payload.end(), parts.record.begin(), parts.record.end());
    }
    return payload;
}

std::vector<uint8_t> widePayload(size_t count) {
    const PayloadParts parts = payloadParts();
    std::vector<uint8_t> payload = parts.head;
    setChildCount(payload, count);
    for (size_t i = 0; i < count; ++i) {
        payload.insert(payload.end(), parts.record.begin(), parts.record.end());
    }
    return payload;
}

std::vector<uint8_t> wideArchive(size_t count) {
    const PayloadParts parts = payloadParts();
    std::vector<uint8_t> head = parts.head;
    setChildCount(head, count);
    constexpr size_t recordsABlock = 16384;
    std::vector<uint8_t> chunk;
    for (size_t i = 0; i < recordsABlock; ++i) {
        chunk.insert(chunk.end(), parts.record.begin(), parts.record.end());
    }
    std::vector<uint8_t> stream = blocksOf(head);
    repeat(stream, blocksOf(chunk), count / recordsABlock);
    if (count % recordsABlock != 0) {
        chunk.resize((count % recordsABlock) * parts.record.size());
        repeat(stream, blocksOf(chunk), 1);
    }
    finish(stream);
    return stream;
}

std::vector<uint8_t> zerosArchive(size_t bytes) {
    constexpr size_t chunkBytes = size_t{1} << 20;
    std::vector<uint8_t> stream;
    repeat(stream, blocksOf(std::vector<uint8_t>(chunkBytes)), bytes / chunkBytes);
    if (bytes % chunkBytes != 0) {
        repeat(stream, blocksOf(std::vector<uint8_t>(bytes % chunkBytes)), 1);
    }
    finish(stream);
    return stream;
}

std::vector<uint8_t> compressed(const std::vector<uint8_t>& payload) {
    return Lzfse::encode(payload);
}

void writeBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        throw std::runtime_error("cannot write " + path);
    }
}

} // namespace dorvik::test
