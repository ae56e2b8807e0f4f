#pragma once

// What the tests of the desktop application share: a fresh settings store and no archive before
// each test, a real AppState, and ways to find the parts of a window as a user would, by their
// text.

#include "scanning/ScanArchive.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSettings>
#include <QWidget>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>

namespace dorvik::test {

class UiTest : public testing::Test {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        std::filesystem::remove(ScanArchive::defaultPath());
    }
    void TearDown() override { settle(); }

    // A state whose access probe answers `*access`, which the test may change.
    std::unique_ptr<AppState> makeState(bool hasAccess = true) {
        access = std::make_shared<bool>(hasAccess);
        AppStateOptions options;
        options.accessProbe = [answer = access] { return *answer; };
        options.archiveDelay = std::chrono::milliseconds(100);
        auto state = std::make_unique<AppState>(options);
        settle();
        return state;
    }

    // Scans `folder` for real and waits for the result.
    static void scanFolder(AppState& state, const std::string& folder) {
        state.startScan(ScanTarget::folder(folder));
        ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
        settle();
        ASSERT_TRUE(state.scan());
    }

    std::shared_ptr<bool> access;
    TempDir dir;
};

// The button with this text among `root`'s children that a user could see now, or none.
template <typename Button = QAbstractButton>
Button* visibleButton(const QWidget* root, const QString& text) {
    for (Button* button : root->findChildren<Button*>()) {
        if (button->text() == text && button->isVisibleTo(root->window())) {
            return button;
        }
    }
    return nullptr;
}

// Whether a label with exactly this text is visible under `root`.
inline bool showsText(const QWidget* root, const QString& text) {
    for (const QLabel* label : root->findChildren<QLabel*>()) {
        if (label->text() == text && label->isVisibleTo(root->window())) {
            return true;
        }
    }
    return false;
}

} // namespace dorvik::test
