#include "ui/files/NodeSort.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace dorvik {

namespace {

unsigned char folded(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + 32)
                                : static_cast<unsigned char>(c);
}

// Letters without regard to case first, then the bytes as they are.
bool nameBefore(std::string_view a, std::string_view b) {
    const size_t common = std::min(a.size(), b.size());
    for (size_t i = 0; i < common; ++i) {
        if (folded(a[i]) != folded(b[i])) {
            return folded(a[i]) < folded(b[i]);
        }
    }
    if (a.size() != b.size()) {
        return a.size() < b.size();
    }
    return a < b;
}

// Eight bytes of a name from `start`, folded, as one number that orders as nameBefore does as
// far as it reaches.
uint64_t nameWord(std::string_view name, size_t start) {
    uint64_t word = 0;
    for (size_t i = start; i < start + 8; ++i) {
        word = (word << 8) | (i < name.size() ? folded(name[i]) : 0u);
    }
    return word;
}

// The rank of each case's title in alphabetical order, so that a kind or category sorts as a
// number.
template <typename Case, size_t count>
std::array<uint8_t, count> titleRanks(const std::array<Case, count>& cases) {
    std::array<Case, count> sorted = cases;
    std::sort(sorted.begin(), sorted.end(),
              [](Case a, Case b) { return info(a).displayName < info(b).displayName; });
    std::array<uint8_t, count> ranks{};
    for (size_t rank = 0; rank < count; ++rank) {
        ranks[static_cast<size_t>(sorted[rank])] = static_cast<uint8_t>(rank);
    }
    return ranks;
}

// A row's sort key: the column's number, or for names their first sixteen bytes folded.
struct Key {
    double value = 0;
    uint64_t nameStart = 0;
    uint64_t nameNext = 0;
    uint32_t row = 0; // where the row stood, which settles ties
};

double keyOf(NodeColumn column, const FileNode& node) {
    static const auto kindRanks = titleRanks(allFileKinds);
    static const auto bucketRanks = titleRanks(allStorageBuckets);
    switch (column) {
    case NodeColumn::name:
        return 0; // names sort on their own words
    case NodeColumn::size:
        return static_cast<double>(node.size);
    case NodeColumn::files:
        return static_cast<double>(node.fileCount);
    case NodeColumn::kind:
        return kindRanks[static_cast<size_t>(node.kind)];
    case NodeColumn::category:
        return bucketRanks[static_cast<size_t>(node.bucket)];
    case NodeColumn::modified:
        return node.modified;
    case NodeColumn::lastOpened:
        return node.accessed;
    case NodeColumn::risk:
        return 0;
    }
    return 0;
}

bool byWords(const Key& a, const Key& b, bool rising) {
    if (a.nameStart != b.nameStart) {
        return rising ? a.nameStart < b.nameStart : b.nameStart < a.nameStart;
    }
    if (a.nameNext != b.nameNext) {
        return rising ? a.nameNext < b.nameNext : b.nameNext < a.nameNext;
    }
    return a.row < b.row;
}

// Keys already sorted by the names' bytes before `offset`: each run alike that far is sorted
// by the next sixteen bytes, read once a row rather than at every comparison, and so on down.
// Names that fold alike to their end fall back to their bytes as they are.
void settleNameTies(std::vector<Key>& keys, const std::vector<FileNodePtr>& nodes, size_t offset,
                    bool rising) {
    const auto sameWords = [](const Key& a, const Key& b) {
        return a.nameStart == b.nameStart && a.nameNext == b.nameNext;
    };
    std::vector<Key> run;
    for (auto first = keys.begin(); first != keys.end();) {
        auto end = first + 1;
        while (end != keys.end() && sameWords(*end, *first)) {
            ++end;
        }
        if (end - first > 1) {
            size_t longest = 0;
            for (auto key = first; key != end; ++key) {
                longest = std::max(longest, nodes[key->row]->name.size());
            }
            if (longest <= offset) {
                std::sort(first, end, [&nodes, rising](const Key& a, const Key& b) {
                    const std::string& x = nodes[a.row]->name;
                    const std::string& y = nodes[b.row]->name;
                    if (x != y) {
                        return rising ? nameBefore(x, y) : nameBefore(y, x);
                    }
                    return a.row < b.row;
                });
            } else {
                run.assign(first, end);
                for (Key& key : run) {
                    const std::string& name = nodes[key.row]->name;
                    key.nameStart = nameWord(name, offset);
                    key.nameNext = nameWord(name, offset + 8);
                }
                std::sort(run.begin(), run.end(),
                          [rising](const Key& a, const Key& b) { return byWords(a, b, rising); });
                settleNameTies(run, nodes, offset + 16, rising);
                std::copy(run.begin(), run.end(), first);
            }
        }
        first = end;
    }
}

} // namespace

void sortNodes(std::vector<FileNodePtr>& nodes, NodeColumn column, bool rising) {
    if (column == NodeColumn::risk || nodes.size() < 2) {
        return;
    }
    std::vector<Key> keys(nodes.size());
    const bool byName = column == NodeColumn::name;
    // The nodes lie all over memory: asking for those a few rows ahead lets their loads overlap
    // instead of waiting for one after another. A name's bytes lie elsewhere again.
    constexpr size_t nodesAhead = 16;
    constexpr size_t namesAhead = 8;
    for (size_t row = 0; row < nodes.size(); ++row) {
        if (row + nodesAhead < nodes.size()) {
            __builtin_prefetch(nodes[row + nodesAhead].get());
        }
        if (byName && row + namesAhead < nodes.size()) {
            __builtin_prefetch(nodes[row + namesAhead]->name.data());
        }
        const FileNode& node = *nodes[row];
        keys[row] = {keyOf(column, node), byName ? nameWord(node.name, 0) : 0,
                     byName ? nameWord(node.name, 8) : 0, static_cast<uint32_t>(row)};
    }
    // Only the row settles a tie, in rising order either way, so the sort is stable.
    const auto ordered = [rising](const Key& a, const Key& b) {
        if (a.value != b.value) {
            return rising ? a.value < b.value : b.value < a.value;
        }
        return byWords(a, b, rising);
    };
    std::sort(keys.begin(), keys.end(), ordered);
    if (byName) {
        settleNameTies(keys, nodes, 16, rising);
    }
    std::vector<FileNodePtr> sorted;
    sorted.reserve(nodes.size());
    for (const Key& key : keys) {
        sorted.push_back(std::move(nodes[key.row]));
    }
    nodes = std::move(sorted);
}

} // namespace dorvik
