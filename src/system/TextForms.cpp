#include "system/TextForms.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string_view>

namespace dorvik::TextForms {

namespace {

struct Unit {
    std::string_view name;
    double bytes;
    int decimals;
};

constexpr std::array<Unit, 4> units = {{
    {"KB", 1e3, 0},
    {"MB", 1e6, 1},
    {"GB", 1e9, 2},
    {"TB", 1e12, 2},
}};

std::string groupThousands(std::string digits) {
    const size_t firstDigit = (!digits.empty() && digits[0] == '-') ? 1 : 0;
    for (size_t i = digits.size(); i > firstDigit + 3; i -= 3) {
        digits.insert(i - 3, 1, ',');
    }
    return digits;
}

// A number rounded to `decimals`, with its trailing zeros (and a bare point) dropped.
std::string decimalText(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(value * scale) / scale;
    const auto whole = static_cast<int64_t>(rounded);
    std::string text = groupThousands(std::to_string(whole));
    if (decimals > 0) {
        auto fraction =
            static_cast<int64_t>(std::llround((rounded - static_cast<double>(whole)) * scale));
        std::string fractionText = std::to_string(fraction);
        fractionText.insert(0, static_cast<size_t>(decimals) - fractionText.size(), '0');
        while (!fractionText.empty() && fractionText.back() == '0') {
            fractionText.pop_back();
        }
        if (!fractionText.empty()) {
            text += '.' + fractionText;
        }
    }
    return text;
}

} // namespace

std::string size(int64_t bytes) {
    if (bytes <= 0) {
        return "Zero KB";
    }
    const auto value = static_cast<double>(bytes);
    for (size_t i = 0; i < units.size(); ++i) {
        const Unit& unit = units[i];
        const double scale = std::pow(10.0, unit.decimals);
        double amount = std::round(value / unit.bytes * scale) / scale;
        // A size that rounds up to a thousand of one unit is shown in the next.
        if (amount >= 1000.0 && i + 1 < units.size()) {
            continue;
        }
        // Anything above zero shows at least one of the smallest unit.
        if (amount == 0.0) {
            amount = 1.0;
        }
        return decimalText(amount, unit.decimals) + " " + std::string(unit.name);
    }
    return {};
}

std::string percent(double part, double whole) {
    if (whole < 1.0) {
        return "0%";
    }
    const double fraction = part / whole;
    if (fraction < 0.001 && part >= 1.0) {
        return "<0.1%";
    }
    char buffer[64];
    if (fraction < 0.1) {
        std::snprintf(buffer, sizeof buffer, "%.1f%%", fraction * 100.0);
    } else {
        std::snprintf(buffer, sizeof buffer, "%.0f%%", fraction * 100.0);
    }
    return buffer;
}

std::string count(int64_t value) {
    return groupThousands(std::to_string(value));
}

} // namespace dorvik::TextForms
