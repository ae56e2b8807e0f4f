#include "scanning/ScanArchive.h"

#include "lzfse/Lzfse.h"
#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"

#include <bit>
#include <cstring>
#include <map>

namespace dorvik::ScanArchive {

namespace {

enum class TargetTag : uint8_t { wholeDisk = 0, home = 1, folder = 2 };

enum NodeFlags : uint8_t {
    directoryFlag = 1 << 0,
    packageFlag = 1 << 1,
    unreadableFlag = 1 << 2,
};

class Writer {
public:
    void u8(uint8_t value) { bytes_.push_back(value); }
    void u32(uint32_t value) { little(value); }
    void i64(int64_t value) { little(static_cast<uint64_t>(value)); }
    void f64(double value) { little(std::bit_cast<uint64_t>(value)); }
    void text(const std::string& value) {
        u32(static_cast<uint32_t>(value.size()));
        bytes_.insert(bytes_.end(), value.begin(), value.end());
    }
    template <typename Key> void table(const std::map<Key, int64_t>& entries) {
        u32(static_cast<uint32_t>(entries.size()));
        for (const auto& [key, value] : entries) {
            u8(static_cast<uint8_t>(key));
            i64(value);
        }
    }
    void reserve(size_t more) { bytes_.reserve(bytes_.size() + more); }
    std::vector<uint8_t> take() { return std::move(bytes_); }

private:
    template <typename T> void little(T value) {
        for (size_t i = 0; i < sizeof(T); ++i) {
            bytes_.push_back(static_cast<uint8_t>(value >> (8 * i)));
        }
    }
    std::vector<uint8_t> bytes_;
};

// A cursor over the payload; every read says whether the bytes were there.
class Reader {
public:
    explicit Reader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    size_t left() const { return bytes_.size() - offset_; }

    bool skip(size_t count) {
        if (left() < count) {
            return false;
        }
        offset_ += count;
        return true;
    }

    bool u8(uint8_t& value) {
        if (left() < 1) {
            return false;
        }
        value = bytes_[offset_++];
        return true;
    }
    bool u32(uint32_t& value) { return little(value); }
    bool i64(int64_t& value) {
        uint64_t raw = 0;
        if (!little(raw)) {
            return false;
        }
        value = static_cast<int64_t>(raw);
        return true;
    }
    bool f64(double& value) {
        uint64_t raw = 0;
        if (!little(raw)) {
            return false;
        }
        value = std::bit_cast<double>(raw);
        return true;
    }
    // Names are kept as the bytes they were: a path must still lead to its file.
    bool text(std::string& value) {
        uint32_t length = 0;
        if (!u32(length) || left() < length) {
            return false;
        }
        value.assign(reinterpret_cast<const char*>(bytes_.data() + offset_), length);
        offset_ += length;
        return true;
    }
    // Entries whose key is no case are dropped.
    template <typename Key>
    bool table(std::map<Key, int64_t>& entries, std::optional<Key> (*fromRaw)(uint8_t)) {
        uint32_t count = 0;
        if (!u32(count) || count > largestTable) {
            return false;
        }
        for (uint32_t i = 0; i < count; ++i) {
            uint8_t raw = 0;
            int64_t value = 0;
            if (!u8(raw) || !i64(value)) {
                return false;
            }
            if (const auto key = fromRaw(raw)) {
                entries[*key] = value;
            }
        }
        return true;
    }

private:
    template <typename T> bool little(T& value) {
        if (left() < sizeof(T)) {
            return false;
        }
        value = 0;
        for (size_t i = 0; i < sizeof(T); ++i) {
            value |= static_cast<T>(bytes_[offset_ + i]) << (8 * i);
        }
        offset_ += sizeof(T);
        return true;
    }

    std::span<const uint8_t> bytes_;
    size_t offset_ = 0;
};

void writeTarget(Writer& out, const ScanTarget& target) {
    switch (target.kind()) {
    case ScanTarget::Kind::wholeDisk:
        out.u8(static_cast<uint8_t>(TargetTag::wholeDisk));
        out.text({});
        break;
    case ScanTarget::Kind::home:
        out.u8(static_cast<uint8_t>(TargetTag::home));
        out.text({});
        break;
    case ScanTarget::Kind::folder:
        out.u8(static_cast<uint8_t>(TargetTag::folder));
        out.text(target.folderPath());
        break;
    }
}

std::optional<ScanTarget> readTarget(Reader& in) {
    uint8_t tag = 0;
    std::string path;
    if (!in.u8(tag) || !in.text(path)) {
        return std::nullopt;
    }
    switch (static_cast<TargetTag>(tag)) {
    case TargetTag::wholeDisk:
        return ScanTarget::wholeDisk();
    case TargetTag::home:
        return ScanTarget::home();
    case TargetTag::folder:
        return ScanTarget::folder(path);
    }
    return std::nullopt;
}

void writeNode(Writer& out, const FileNode& node, uint32_t childCount) {
    out.text(node.name);
    out.u8(static_cast<uint8_t>((node.isDirectory ? directoryFlag : 0) |
                                (node.isPackage ? packageFlag : 0) |
                                (node.unreadable ? unreadableFlag : 0)));
    out.u8(static_cast<uint8_t>(node.kind));
    out.u8(static_cast<uint8_t>(node.bucket));
    out.i64(node.size);
    out.i64(node.logicalSize);
    out.i64(node.fileCount);
    out.f64(node.modified);
    out.f64(node.accessed);
    out.i64(node.smallFilesSize);
    out.i64(node.smallFilesCount);
    out.u32(childCount);
}

// The bytes encodePayload writes for the live tree below `root`, so that the payload is made in
// one allocation: copying it as it grows took most of the encoding time of a large tree.
size_t treeBytes(const FileNode& root) {
    size_t bytes = 0;
    std::vector<const FileNode*> stack{&root};
    while (!stack.empty()) {
        const FileNode* node = stack.back();
        stack.pop_back();
        bytes += 4 + node->name.size() + nodeRecordBytes;
        for (const FileNodePtr& child : node->children) {
            if (!child->deleted) {
                stack.push_back(child.get());
            }
        }
    }
    return bytes;
}

struct NodeRecord {
    FileNodePtr node;
    uint32_t childCount = 0;
};

std::optional<NodeRecord> readNode(Reader& in) {
    std::string name;
    if (!in.text(name) || in.left() < nodeRecordBytes) {
        return std::nullopt;
    }
    uint8_t flags = 0, kind = 0, bucket = 0;
    in.u8(flags);
    in.u8(kind);
    in.u8(bucket);
    auto node = std::make_shared<FileNode>(
        std::move(name), (flags & directoryFlag) != 0, (flags & packageFlag) != 0,
        fileKindFromRaw(kind).value_or(FileKind::other),
        storageBucketFromRaw(bucket).value_or(StorageBucket::other));
    node->unreadable = (flags & unreadableFlag) != 0;
    NodeRecord record{node, 0};
    in.i64(node->size);
    in.i64(node->logicalSize);
    in.i64(node->fileCount);
    in.f64(node->modified);
    in.f64(node->accessed);
    in.i64(node->smallFilesSize);
    in.i64(node->smallFilesCount);
    in.u32(record.childCount);
    return record;
}

struct TreeShape {
    size_t nodes = 0;
    size_t files = 0;
};

// The shape of the tree that starts at the cursor, read without making a node: none when it is
// cut short, or deeper or larger than the limits allow, so that no memory is taken for a tree
// that would not be kept. The records' layout is readNode's.
std::optional<TreeShape> measureTree(Reader in, const Limits& limits) {
    TreeShape shape;
    // The children still to come of each folder on the way down to the current record; a
    // folder stays until its last child's subtree has ended, so that this is the depth.
    std::vector<uint32_t> open;
    do {
        uint32_t nameBytes = 0, childCount = 0;
        uint8_t flags = 0;
        if (!in.u32(nameBytes) || !in.skip(nameBytes) || in.left() < nodeRecordBytes) {
            return std::nullopt;
        }
        in.u8(flags);
        in.skip(nodeRecordBytes - 1 - 4);
        in.u32(childCount);
        // The node lies open.size() levels below the root.
        if (++shape.nodes > limits.mostNodes || open.size() > limits.deepestLevel) {
            return std::nullopt;
        }
        if ((flags & directoryFlag) == 0) {
            ++shape.files;
        }
        if (childCount != 0) {
            open.push_back(childCount);
            continue;
        }
        // A leaf ends its parent's child, and perhaps the parent's subtree with it.
        while (!open.empty() && --open.back() == 0) {
            open.pop_back();
        }
    } while (!open.empty());
    return shape;
}

} // namespace

std::vector<uint8_t> encodePayload(const ScanResult& scan, const ScanTarget& target) {
    Writer out;
    out.u32(magic);
    out.u8(version);
    writeTarget(out, target);
    out.text(scan.rootPath);
    out.table(scan.bucketTotals);
    out.table(scan.kindTotals);
    out.table(scan.kindCounts);
    out.i64(scan.totalFiles);
    out.i64(scan.totalDirectories);
    out.i64(scan.unreadableDirectories);
    out.i64(scan.hardLinksSkipped);
    out.f64(scan.duration);
    out.f64(scan.finishedAt);

    std::vector<const FileNode*> stack;
    if (scan.root != nullptr) {
        out.reserve(treeBytes(*scan.root));
        stack.push_back(scan.root.get());
    }
    std::vector<const FileNode*> kept;
    while (!stack.empty()) {
        const FileNode* node = stack.back();
        stack.pop_back();
        kept.clear();
        for (const FileNodePtr& child : node->children) {
            if (!child->deleted) {
                kept.push_back(child.get());
            }
        }
        writeNode(out, *node, static_cast<uint32_t>(kept.size()));
        stack.insert(stack.end(), kept.rbegin(), kept.rend());
    }
    return out.take();
}

std::optional<ArchivedScan> decodePayload(std::span<const uint8_t> payload, const Limits& limits) {
    Reader in(payload);
    uint32_t foundMagic = 0;
    uint8_t foundVersion = 0;
    if (!in.u32(foundMagic) || foundMagic != magic || !in.u8(foundVersion) ||
        foundVersion != version) {
        return std::nullopt;
    }
    const auto target = readTarget(in);
    if (!target) {
        return std::nullopt;
    }
    ScanResult scan;
    if (!in.text(scan.rootPath) || !in.table(scan.bucketTotals, storageBucketFromRaw) ||
        !in.table(scan.kindTotals, fileKindFromRaw) ||
        !in.table(scan.kindCounts, fileKindFromRaw)) {
        return std::nullopt;
    }
    if (in.left() < 48) {
        return std::nullopt;
    }
    in.i64(scan.totalFiles);
    in.i64(scan.totalDirectories);
    in.i64(scan.unreadableDirectories);
    in.i64(scan.hardLinksSkipped);
    in.f64(scan.duration);
    in.f64(scan.finishedAt);

    const auto shape = measureTree(in, limits);
    if (!shape) {
        return std::nullopt;
    }
    scan.files.reserve(shape->files);
    // Each open node with the number of its children still to come.
    std::vector<std::pair<FileNodePtr, uint32_t>> open;
    do {
        auto record = readNode(in);
        if (!record) {
            return std::nullopt;
        }
        FileNodePtr& node = record->node;
        if (!open.empty()) {
            FileNode::adopt(open.back().first, node);
        } else {
            scan.root = node;
        }
        // The measured tree holds every child counted here.
        node->children.reserve(record->childCount);
        if (!node->isDirectory) {
            scan.files.push_back(node);
        }
        if (!open.empty()) {
            --open.back().second;
            while (!open.empty() && open.back().second == 0) {
                open.pop_back();
            }
        }
        if (record->childCount != 0) {
            open.emplace_back(node, record->childCount);
        }
    } while (!open.empty());
    return ArchivedScan{std::move(scan), *target};
}

std::string defaultPath() {
    return platform::applicationSupportDirectory() + "/last-scan.dvscan";
}

bool write(const ScanResult& scan, const ScanTarget& target, const std::string& path) {
    return writePayload(encodePayload(scan, target), path);
}

bool writePayload(std::span<const uint8_t> payload, const std::string& path) {
    return platform::writeFileAtomically(path, Lzfse::encode(payload));
}

std::optional<ArchivedScan> decodeArchive(std::span<const uint8_t> file, const Limits& limits) {
    const auto payload = Lzfse::decode(file, limits.largestPayload);
    if (!payload) {
        return std::nullopt;
    }
    return decodePayload(*payload, limits);
}

std::optional<ArchivedScan> read(const std::string& path) {
    const Limits limits;
    const auto file = platform::readWholeFile(path, limits.largestPayload);
    if (!file) {
        return std::nullopt;
    }
    return decodeArchive(*file, limits);
}

} // namespace dorvik::ScanArchive
