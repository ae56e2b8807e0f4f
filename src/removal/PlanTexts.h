#pragma once

// The sentences of the confirmation of a plan, shared by the sheet and the terminal.

#include "removal/DeletionPlan.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace dorvik::PlanTexts {

// Under the plan's title: where the items will go.
std::string_view headline(bool permanentDelete);

// The label of the box that lets the review items go; "**" marks bold.
std::string reviewConsent(size_t reviewCount);

// The line under a plan with protected items.
std::string protectedNote(size_t protectedCount);

// The line under a plan that uninstalls a Flatpak app: that part has no way back.
std::optional<std::string_view> uninstallNote(const DeletionPlan& plan);

// The confirming button.
std::string_view confirmButton(bool permanentDelete);

} // namespace dorvik::PlanTexts
