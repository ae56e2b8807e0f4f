#pragma once

// The pieces every reader and writer of the program's JSON files shares. Readers are strict: a
// value of the wrong type is no value, and one bad element fails a whole array.

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::platform::JsonCoding {

// The member `key` of an object; nullptr when it is missing.
const nlohmann::json* member(const nlohmann::json& object, const char* key);

// A whole number that fits in 64 signed bits; none for anything else.
std::optional<int64_t> int64Value(const nlohmann::json* value);

// A finite number, whole or not; none for anything else.
std::optional<double> finiteNumber(const nlohmann::json* value);

// The length of the valid UTF-8 sequence at the start of `bytes`, or 0 when it is not one: no
// overlong forms, no surrogates, nothing past U+10FFFF (what JSON parsers accept).
size_t validSequenceLength(std::string_view bytes);

// A path (any byte string) as JSON text that reads back to the same bytes. JSON holds only
// UTF-8, so each byte that is not part of valid UTF-8 is written as U+0000 followed by its two
// lowercase hex digits. No path can hold a NUL, so valid UTF-8 stands as it is and the files
// written before this form read the same.
std::string escapedPath(std::string_view bytes);

// The bytes of a path written by `escapedPath`. A NUL that is not followed by two hex digits is
// kept as it is (no such path exists, so it leads nowhere).
std::string unescapedPath(std::string_view text);

// The document on one line. Any text that is still not valid UTF-8 has its bad bytes replaced:
// paths that must lead back to a file go through `escapedPath` first.
std::string compactText(const nlohmann::json& document);

// What an array file of ours can legitimately hold, checked before a document is built from it
// (a document takes many times the memory of its text, most for many small values).
struct ArrayLimits {
    size_t elements = 0;
    size_t valuesPerElement = 0; // every value counts: an object, its members, what they hold
    size_t depth = 0;            // the array itself is depth 1
};

// True when `text` is a JSON array within `limits`; false for anything else.
bool withinLimits(std::string_view text, const ArrayLimits& limits);

// Every element decoded, or none when the text is no JSON array within `limits` or one element
// fails.
template <typename Record, typename Decode>
std::optional<std::vector<Record>> decodeArray(std::string_view text, Decode decode,
                                               const ArrayLimits& limits) {
    if (!withinLimits(text, limits)) {
        return std::nullopt;
    }
    const nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    if (!document.is_array()) {
        return std::nullopt;
    }
    std::vector<Record> records;
    records.reserve(document.size());
    for (const nlohmann::json& element : document) {
        std::optional<Record> record = decode(element);
        if (!record) {
            return std::nullopt;
        }
        records.push_back(std::move(*record));
    }
    return records;
}

} // namespace dorvik::platform::JsonCoding
