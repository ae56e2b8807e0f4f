#pragma once

namespace dorvik::platform {

// True when standard error is a terminal, where live progress makes sense.
bool standardErrorIsTerminal();

// True when standard input is a terminal, where a question can be asked.
bool standardInputIsTerminal();

} // namespace dorvik::platform
