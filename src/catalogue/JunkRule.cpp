#include "catalogue/JunkRule.h"

namespace dorvik {

namespace {

// The text after the last "." of a name, lower-cased; empty for a name without one, or whose
// only dot leads it (a hidden name has no extension).
std::string lowerCaseExtension(std::string_view name) {
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) {
        return {};
    }
    std::string extension(name.substr(dot + 1));
    for (char& ch : extension) {
        if (ch >= 'A' && ch <= 'Z') {
            ch = static_cast<char>(ch - 'A' + 'a');
        }
    }
    return extension;
}

} // namespace

std::string ruleFolder(const JunkRule& rule, std::string_view home, std::string_view dataHome) {
    if (rule.base.starts_with('/')) {
        return rule.base;
    }
    std::string folder(rule.inDataHome ? dataHome : home);
    if (!folder.ends_with('/')) {
        folder += '/';
    }
    return folder + rule.base;
}

bool emptiesATrash(const JunkRule& rule) {
    return rule.group == JunkGroup::trash;
}

bool passesExtensionFilter(const JunkRule& rule, std::string_view name) {
    return !rule.extensions || rule.extensions->contains(lowerCaseExtension(name));
}

} // namespace dorvik
