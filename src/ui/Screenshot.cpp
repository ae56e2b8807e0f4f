#include "ui/Screenshot.h"

#include "state/AppState.h"
#include "ui/shell/RootView.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QPixmap>

namespace dorvik {

namespace {

constexpr int restoreWaitMilliseconds = 10000;
constexpr int settleMilliseconds = 50;

} // namespace

bool saveScreenshot(RootView& window, const AppState& state, QSize size, const QString& file) {
    window.resize(size);
    window.show();
    QDeadlineTimer deadline(restoreWaitMilliseconds);
    while (state.isRestoringScan() && !deadline.hasExpired()) {
        QApplication::processEvents(QEventLoop::AllEvents, settleMilliseconds);
    }
    QApplication::processEvents();
    return window.grab().save(file, "PNG");
}

} // namespace dorvik
