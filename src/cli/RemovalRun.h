#pragma once

// What the removing commands share: the question before anything goes, and the run itself
// through the same engine and history as the application, told the way its toast tells it.

#include "removal/DeletionPlan.h"
#include "removal/DeletionRequest.h"

#include <string>
#include <vector>

namespace dorvik::cli {

// Prints the plan as the confirmation sheet shows it: its title and headline, its items by risk,
// what stays, and the total that would go.
void printPlan(const DeletionPlan& plan, bool permanent, bool includeReview);

// True when the user answers yes to `question` on the terminal, or at once with `yes`. Without a
// terminal to ask on and without `yes`, an InputError: nothing is removed unasked.
bool confirmed(const std::string& question, bool yes);

// Runs the engine, adds what went to the history, and prints the toast's message and detail, the
// reason for each refusal, and how to undo what went to the Trash. 0 when nothing was refused,
// else 1.
int runRemoval(const std::vector<DeletionRequest>& requests);

} // namespace dorvik::cli
