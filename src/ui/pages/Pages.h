#pragma once

// Which page each section shows.

#include "state/AppSection.h"

class QWidget;

namespace dorvik {

class AppState;

QWidget* makePage(AppSection section, AppState& state);

} // namespace dorvik
