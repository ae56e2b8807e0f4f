#include "catalogue/JunkRule.h"

#include "base/PathNames.h"

namespace dorvik {

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
