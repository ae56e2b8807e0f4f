#pragma once

// The parts the Junk page and Quick Clean's review share: a group's heading (its symbol and
// title) over a card that holds its rules, and a rule's title with its explanation.

#include "catalogue/JunkRule.h"
#include "cleaning/JunkFinding.h"

#include <functional>
#include <vector>

class QVBoxLayout;
class QWidget;

namespace dorvik {

// Empties `list`, then fills it with a card for each group that has findings, in the order of
// the groups, under the group's heading. `addRule` puts each finding's row in its card, in the
// findings' order within a group.
void fillJunkGroupCards(QVBoxLayout* list, const std::vector<JunkFinding>& findings,
                        const std::function<void(const JunkFinding&, QVBoxLayout* card)>& addRule);

// The rule's title over its explanation, which wraps.
QVBoxLayout* makeJunkRuleTexts(const JunkRule& rule);

} // namespace dorvik
