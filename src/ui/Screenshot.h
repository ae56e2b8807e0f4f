#pragma once

// Draws the main window off screen and writes it as a PNG: the README's pictures and the look of
// the pages in tests come from here.

#include <QSize>
#include <QString>

namespace dorvik {

class AppState;
class RootView;

// Shows `window` at `size`, lets the last scan load (for a few seconds at most), and writes the
// window's picture. False when the file could not be written.
bool saveScreenshot(RootView& window, const AppState& state, QSize size, const QString& file);

} // namespace dorvik
