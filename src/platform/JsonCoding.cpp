#include "platform/JsonCoding.h"

#include <cmath>
#include <limits>

namespace dorvik::platform::JsonCoding {

using nlohmann::json;

const json* member(const json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : &*found;
}

std::optional<int64_t> int64Value(const json* value) {
    if (value == nullptr || !value->is_number_integer()) {
        return std::nullopt;
    }
    if (value->is_number_unsigned() &&
        value->get<uint64_t>() > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
        return std::nullopt;
    }
    return value->get<int64_t>();
}

std::optional<double> finiteNumber(const json* value) {
    if (value == nullptr || !value->is_number() || !std::isfinite(value->get<double>())) {
        return std::nullopt;
    }
    return value->get<double>();
}

std::string compactText(const json& document) {
    return document.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace dorvik::platform::JsonCoding
