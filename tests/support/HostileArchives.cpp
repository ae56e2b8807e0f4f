#include "support/HostileArchives.h"

#include "platform/Lzfse.h"
#include "scanning/ScanArchive.h"

#include <fstream>
#include <stdexcept>

namespace dorvik::test {

namespace {

constexpr size_t endOfStreamBytes = 4; // "bvx$"

FileNodePtr folder(const std::string& name) {
    return std::make_shared<FileNode>(name, true, false, FileKind::other, StorageBucket::other);
}

std::vector<uint8_t> payloadOf(const FileNodePtr& root) {
    ScanResult scan;
    scan.root = root;
    scan.rootPath = root->name;
    return ScanArchive::encodePayload(scan, ScanTarget::home());
}

// The blocks of a stream without its end: streams made apart join into one by their blocks.
std::vector<uint8_t> blocksOf(const std::vector<uint8_t>& bytes) {
    std::vector<uint8_t> stream = platform::Lzfse::encode(bytes);
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
    const FileNodePtr root = folder("/r");
    FileNodePtr at = root;
    for (size_t level = 0; level < levels; ++level) {
        const FileNodePtr below = folder("d");
        FileNode::adopt(at, below);
        at = below;
    }
    return payloadOf(root);
}

std::vector<uint8_t> widePayload(size_t count) {
    const FileNodePtr root = folder("/r");
    for (size_t i = 0; i < count; ++i) {
        FileNode::adopt(root, folder("d"));
    }
    return payloadOf(root);
}

std::vector<uint8_t> wideArchive(size_t count) {
    // The payload of one child, cut into the part before the child's record and the record.
    const std::vector<uint8_t> one = widePayload(1);
    const size_t recordBytes = 4 + 1 + ScanArchive::nodeRecordBytes;
    std::vector<uint8_t> head(one.begin(), one.end() - static_cast<std::ptrdiff_t>(recordBytes));
    const std::vector<uint8_t> record(one.end() - static_cast<std::ptrdiff_t>(recordBytes),
                                      one.end());
    if (count > UINT32_MAX) {
        throw std::invalid_argument("a child count is 32 bits");
    }
    for (size_t i = 0; i < 4; ++i) {
        head[head.size() - 4 + i] = static_cast<uint8_t>(count >> (8 * i));
    }
    constexpr size_t recordsABlock = 16384;
    std::vector<uint8_t> chunk;
    for (size_t i = 0; i < recordsABlock; ++i) {
        chunk.insert(chunk.end(), record.begin(), record.end());
    }
    std::vector<uint8_t> stream = blocksOf(head);
    repeat(stream, blocksOf(chunk), count / recordsABlock);
    if (count % recordsABlock != 0) {
        chunk.resize((count % recordsABlock) * recordBytes);
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
    return platform::Lzfse::encode(payload);
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
