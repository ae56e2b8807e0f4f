#include "platform/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <string_view>

namespace dorvik::platform {

namespace {

// libplist parses nested arrays and dictionaries by recursion without a limit, so a hostile file
// of a few megabytes exhausts the stack. Real property lists nest a handful of levels.
constexpr size_t deepestNesting = 10000;

constexpr std::string_view binaryMagic = "bplist";
constexpr size_t binaryTrailerSize = 32;

struct PlistFree {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistHandle = std::unique_ptr<void, PlistFree>;

// The depth of <dict> and <array> elements, counted on the text; a self-closing one adds nothing.
// Text in comments counts too, which can only overstate the depth.
bool xmlNestsWithinLimit(std::string_view text) {
    size_t depth = 0;
    for (size_t open = text.find('<'); open != std::string_view::npos;
         open = text.find('<', open + 1)) {
        const std::string_view tag = text.substr(open + 1);
        const bool closing = tag.starts_with('/');
        const std::string_view name = closing ? tag.substr(1) : tag;
        if (!name.starts_with("dict") && !name.starts_with("array")) {
            continue;
        }
        const size_t end = tag.find('>');
        const bool selfClosing = end != std::string_view::npos && end > 0 && tag[end - 1] == '/';
        if (closing) {
            depth -= depth > 0 ? 1 : 0;
        } else if (!selfClosing && ++depth > deepestNesting) {
            return false;
        }
    }
    return true;
}

uint64_t bigEndian(std::span<const uint8_t> bytes) {
    uint64_t value = 0;
    for (uint8_t byte : bytes) {
        value = (value << 8) | byte;
    }
    return value;
}

// A binary list cannot nest deeper than it has containers, since libplist refuses a container
// that holds itself. Counting them needs only the offset table. A trailer that does not add up
// fails too: libplist would reject the file anyway.
bool binaryNestsWithinLimit(std::span<const uint8_t> bytes) {
    if (bytes.size() < binaryMagic.size() + 2 + binaryTrailerSize) {
        return false;
    }
    const auto trailer = bytes.subspan(bytes.size() - binaryTrailerSize);
    const size_t offsetSize = trailer[6];
    const uint64_t objectCount = bigEndian(trailer.subspan(8, 8));
    const uint64_t tableOffset = bigEndian(trailer.subspan(24, 8));
    const size_t tableEnd = bytes.size() - binaryTrailerSize;
    if (offsetSize < 1 || offsetSize > 8 || tableOffset > tableEnd ||
        objectCount > (tableEnd - tableOffset) / offsetSize) {
        return false;
    }
    size_t containers = 0;
    for (uint64_t index = 0; index < objectCount; ++index) {
        const uint64_t offset = bigEndian(
            bytes.subspan(static_cast<size_t>(tableOffset + index * offsetSize), offsetSize));
        if (offset >= tableEnd) {
            return false;
        }
        const uint8_t kind = bytes[static_cast<size_t>(offset)] >> 4;
        // 0xA array, 0xC set, 0xD dictionary
        if ((kind == 0xA || kind == 0xC || kind == 0xD) && ++containers > deepestNesting) {
            return false;
        }
    }
    return true;
}

bool nestsWithinLimit(std::span<const uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.starts_with(binaryMagic) ? binaryNestsWithinLimit(bytes)
                                         : xmlNestsWithinLimit(text);
}

std::string stringOf(plist_t node) {
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return text != nullptr ? std::string(text, static_cast<size_t>(length)) : std::string();
}

PropertyListValue valueOf(plist_t node) {
    PropertyListValue value;
    switch (plist_get_node_type(node)) {
    case PLIST_STRING:
        value.kind = PropertyListValue::Kind::string;
        value.text = stringOf(node);
        break;
    case PLIST_BOOLEAN: {
        value.kind = PropertyListValue::Kind::boolean;
        uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        value.flag = flag != 0;
        break;
    }
    case PLIST_ARRAY: {
        value.kind = PropertyListValue::Kind::array;
        const uint32_t count = plist_array_get_size(node);
        for (uint32_t index = 0; index < count; ++index) {
            plist_t element = plist_array_get_item(node, index);
            if (element != nullptr && plist_get_node_type(element) == PLIST_STRING) {
                value.elements.emplace_back(stringOf(element));
            } else {
                value.elements.emplace_back(std::nullopt);
            }
        }
        break;
    }
    case PLIST_DICT:
        value.kind = PropertyListValue::Kind::dictionary;
        break;
    default:
        break;
    }
    return value;
}

} // namespace

std::optional<std::map<std::string, PropertyListValue>>
propertyListDictionary(std::span<const uint8_t> bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<uint32_t>::max() ||
        !nestsWithinLimit(bytes)) {
        return std::nullopt;
    }
    plist_t parsed = nullptr;
    plist_from_memory(reinterpret_cast<const char*>(bytes.data()),
                      static_cast<uint32_t>(bytes.size()), &parsed);
    const PlistHandle root(parsed);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) {
        return std::nullopt;
    }
    std::map<std::string, PropertyListValue> entries;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(root.get(), &iterator);
    if (iterator == nullptr) {
        return entries;
    }
    while (true) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(root.get(), iterator, &key, &value);
        if (value == nullptr) {
            std::free(key);
            break;
        }
        if (key != nullptr) {
            entries.emplace(key, valueOf(value));
        }
        std::free(key);
    }
    std::free(iterator);
    return entries;
}

std::map<std::string, std::string> propertyListStrings(std::span<const uint8_t> bytes) {
    std::map<std::string, std::string> strings;
    const auto entries = propertyListDictionary(bytes);
    if (!entries) {
        return strings;
    }
    for (const auto& [key, value] : *entries) {
        if (value.kind == PropertyListValue::Kind::string) {
            strings.emplace(key, value.text);
        }
    }
    return strings;
}

} // namespace dorvik::platform
