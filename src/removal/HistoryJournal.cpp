#include "removal/HistoryJournal.h"

#include "base/PathNames.h"
#include "platform/ApplicationSupport.h"
#include "platform/FileIO.h"
#include "platform/FileSystem.h"
#include "platform/JsonCoding.h"
#include "platform/ProcessAlive.h"
#include "platform/TrashRestore.h"
#include "removal/HistoryFile.h"

#include <algorithm>
#include <charconv>
#include <random>

namespace dorvik {

namespace {

using nlohmann::json;
using platform::JsonCoding::escapedPath;
using platform::JsonCoding::member;
using platform::JsonCoding::unescapedPath;

constexpr std::string_view journalMarker = ".journal-";

std::string newJournalPath(const std::string& historyFile) {
    platform::makePrivateFolder(parentPath(historyFile));
    static thread_local std::mt19937_64 random{std::random_device{}()};
    return historyFile + std::string(journalMarker) + std::to_string(platform::currentProcessId()) + "-" +
           std::to_string(random());
}

// The process that writes the journal of this name beside `historyName`; none for other names.
std::optional<long> journalProcess(const std::string& name, const std::string& historyName) {
    const std::string prefix = historyName + std::string(journalMarker);
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    const std::string_view rest = std::string_view(name).substr(prefix.size());
    long pid = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), pid);
    if (error != std::errc() || end == rest.data() + rest.size() || *end != '-') {
        return std::nullopt;
    }
    return pid;
}

struct Claim {
    HistoryEntry entry;
    platform::TrashClaim trash;
};

std::optional<Claim> decodeClaim(const json& line) {
    const json* claim = member(line, "claim");
    const json* infoPath = member(line, "infoPath");
    const json* infoText = member(line, "infoText");
    if (claim == nullptr || infoPath == nullptr || !infoPath->is_string() || infoText == nullptr ||
        !infoText->is_string()) {
        return std::nullopt;
    }
    auto entry = HistoryFile::decodeEntry(*claim);
    if (!entry || !entry->trashPath || !entry->trashedItem) {
        return std::nullopt;
    }
    platform::TrashClaim trash{
        *entry->trashPath, unescapedPath(infoPath->get_ref<const std::string&>()),
        unescapedPath(infoText->get_ref<const std::string&>()), *entry->trashedItem};
    return Claim{std::move(*entry), std::move(trash)};
}

// The entries of one journal, oldest first, claims settled.
std::vector<HistoryEntry> readJournal(const std::string& path) {
    const auto bytes = platform::readWholeFile(path, HistoryFile::maximumFileBytes);
    if (!bytes) {
        return {};
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    std::vector<HistoryEntry> entries;
    std::vector<Claim> claims; // the last claim of each id: an earlier name was given up
    size_t start = 0;
    // A last line without its newline is a write the kill cut short: it never counted.
    for (size_t end = text.find('\n'); end != std::string_view::npos;
         start = end + 1, end = text.find('\n', start)) {
        const json line = json::parse(text.substr(start, end - start), nullptr, false);
        if (!line.is_object()) {
            continue;
        }
        if (const json* recorded = member(line, "entry")) {
            if (auto entry = HistoryFile::decodeEntry(*recorded)) {
                entries.push_back(std::move(*entry));
            }
        } else if (auto claim = decodeClaim(line)) {
            std::erase_if(claims, [&](const Claim& c) { return c.entry.id == claim->entry.id; });
            claims.push_back(std::move(*claim));
        }
    }
    for (Claim& claim : claims) {
        if (std::ranges::find(entries, claim.entry.id, &HistoryEntry::id) != entries.end()) {
            continue;
        }
        if (auto arrived = platform::settleTrashClaim(claim.trash)) {
            claim.entry.trashedItem = arrived;
            entries.push_back(std::move(claim.entry));
        }
    }
    return entries;
}

} // namespace

HistoryJournal::HistoryJournal(const std::string& historyFile)
    : file_(newJournalPath(historyFile)) {}

void HistoryJournal::claimed(const HistoryEntry& entry, const platform::TrashClaim& claim) {
    HistoryEntry claimed = entry;
    claimed.trashPath = claim.trashedPath;
    claimed.trashedItem = claim.item;
    file_.appendLine(platform::JsonCoding::compactText({
        {"claim", HistoryFile::encodeEntry(claimed)},
        {"infoPath", escapedPath(claim.infoPath)},
        {"infoText", escapedPath(claim.infoText)},
    }));
}

void HistoryJournal::recorded(const HistoryEntry& entry) {
    file_.appendLine(
        platform::JsonCoding::compactText({{"entry", HistoryFile::encodeEntry(entry)}}));
}

std::vector<std::string> leftOverJournals(const std::string& historyFile) {
    std::vector<std::string> journals;
    const std::string folder = parentPath(historyFile);
    const auto names = platform::directoryEntries(folder);
    if (!names) {
        return journals;
    }
    for (const std::string& name : *names) {
        const auto pid = journalProcess(name, pathName(historyFile));
        if (pid && !platform::processIsAlive(*pid)) {
            journals.push_back(folder + "/" + name);
        }
    }
    return journals;
}

std::vector<HistoryEntry> journalEntries(const std::vector<std::string>& journals) {
    std::vector<HistoryEntry> entries;
    for (const std::string& path : journals) {
        auto read = readJournal(path);
        entries.insert(entries.end(), std::make_move_iterator(read.begin()),
                       std::make_move_iterator(read.end()));
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const HistoryEntry& a, const HistoryEntry& b) { return a.date < b.date; });
    return entries;
}

} // namespace dorvik
