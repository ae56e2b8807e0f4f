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

size_t validSequenceLength(std::string_view bytes) {
    const auto byte = [&](size_t index) { return static_cast<unsigned char>(bytes[index]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80) {
        return 1;
    }
    size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : 0x80;
        high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : 0x80;
        high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (bytes.size() < length || byte(1) < low || byte(1) > high) {
        return 0;
    }
    for (size_t index = 2; index < length; ++index) {
        if (byte(index) < 0x80 || byte(index) > 0xBF) {
            return 0;
        }
    }
    return length;
}

namespace {

int hexValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    return -1;
}

} // namespace

std::string escapedPath(std::string_view bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const size_t length = validSequenceLength(bytes);
        if (length > 0) {
            text.append(bytes.substr(0, length));
            bytes.remove_prefix(length);
            continue;
        }
        const auto bad = static_cast<unsigned char>(bytes.front());
        text.push_back('\0');
        text.push_back(digits[bad >> 4]);
        text.push_back(digits[bad & 0x0F]);
        bytes.remove_prefix(1);
    }
    return text;
}

std::string unescapedPath(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (size_t index = 0; index < text.size(); ++index) {
        if (text[index] == '\0' && index + 2 < text.size() && hexValue(text[index + 1]) >= 0 &&
            hexValue(text[index + 2]) >= 0) {
            bytes.push_back(
                static_cast<char>(hexValue(text[index + 1]) * 16 + hexValue(text[index + 2])));
            index += 2;
        } else {
            bytes.push_back(text[index]);
        }
    }
    return bytes;
}

namespace {

// Counts as the parser goes and stops it at the first value past a limit, so that no document is
// built from a text that could not be ours.
class LimitCounter : public nlohmann::json_sax<json> {
public:
    explicit LimitCounter(const ArrayLimits& limits) : limits_(limits) {}

    bool null() override { return value(); }
    bool boolean(bool) override { return value(); }
    bool number_integer(number_integer_t) override { return value(); }
    bool number_unsigned(number_unsigned_t) override { return value(); }
    bool number_float(number_float_t, const string_t&) override { return value(); }
    bool string(string_t&) override { return value(); }
    bool binary(binary_t&) override { return value(); }
    bool start_object(std::size_t) override { return open(false); }
    bool key(string_t&) override { return true; }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(true); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

private:
    bool value() {
        if (depth_ == 0) {
            return false; // the document itself must be the array
        }
        if (depth_ == 1) {
            ++elements_;
            valuesInElement_ = 0;
            if (elements_ > limits_.elements) {
                return false;
            }
        }
        return ++valuesInElement_ <= limits_.valuesPerElement;
    }
    bool open(bool isArray) {
        if (depth_ == 0) {
            if (!isArray) {
                return false;
            }
        } else if (!value()) {
            return false;
        }
        return ++depth_ <= limits_.depth;
    }
    bool close() {
        --depth_;
        return true;
    }

    const ArrayLimits& limits_;
    size_t depth_ = 0;
    size_t elements_ = 0;
    size_t valuesInElement_ = 0;
};

} // namespace

bool withinLimits(std::string_view text, const ArrayLimits& limits) {
    LimitCounter counter(limits);
    return json::sax_parse(text, &counter, json::input_format_t::json, true, false);
}

std::string compactText(const json& document) {
    return document.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace dorvik::platform::JsonCoding
