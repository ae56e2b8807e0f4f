#include "catalogue/Risk.h"
#include "scanning/FileKind.h"
#include "scanning/StorageBucket.h"
#include "state/AppSection.h"
#include "ui/Symbols.h"

#include <QDir>
#include <QDirIterator>
#include <QIcon>
#include <QImage>
#include <gtest/gtest.h>

#include <set>

namespace dorvik {
namespace {

// The icon files of the theme and of the theme it falls back to, by name without extension.
std::set<QString> iconFilesOfTheTheme() {
    std::set<QString> names;
    for (const QString& root : QIcon::themeSearchPaths()) {
        for (const QString& theme : {QIcon::themeName(), QIcon::fallbackThemeName()}) {
            QDirIterator files(root + QLatin1Char('/') + theme, {"*.svg", "*.png"}, QDir::Files,
                               QDirIterator::Subdirectories);
            while (files.hasNext()) {
                names.insert(files.nextFileInfo().completeBaseName());
            }
        }
    }
    return names;
}

TEST(Symbols, EverySymbolIsAnIconOfTheInstalledTheme) {
    const std::set<QString> files = iconFilesOfTheTheme();
    ASSERT_FALSE(files.empty()) << "no icon theme installed (scripts/install-deps.sh)";
    for (const Symbols::SymbolIcon& entry : Symbols::table()) {
        const QString name = Symbols::themeIconName(entry.symbol);
        // The exact name, not a shorter one Qt would fall back to.
        EXPECT_EQ(files.count(name), 1u) << entry.symbol << " -> " << name.toStdString();
        const QImage drawn = Symbols::icon(entry.symbol).pixmap(32, 32).toImage();
        bool inked = false;
        for (int y = 0; y < drawn.height() && !inked; ++y) {
            for (int x = 0; x < drawn.width() && !inked; ++x) {
                inked = qAlpha(drawn.pixel(x, y)) > 0;
            }
        }
        EXPECT_TRUE(inked) << entry.symbol;
    }
}

TEST(Symbols, EverySymbolTheProgramNamesIsInTheTable) {
    std::vector<std::string_view> named;
    for (AppSection section : allAppSections) {
        named.push_back(info(section).symbol);
    }
    for (FileKind kind : allFileKinds) {
        named.push_back(info(kind).symbol);
    }
    for (StorageBucket bucket : allStorageBuckets) {
        named.push_back(info(bucket).symbol);
    }
    for (Risk risk : allRisks) {
        named.push_back(info(risk).symbol);
    }
    for (std::string_view symbol : named) {
        EXPECT_FALSE(Symbols::themeIconName(symbol).isEmpty()) << symbol;
    }
    EXPECT_TRUE(Symbols::themeIconName("no.such.symbol").isEmpty());
}

TEST(Symbols, AnIconIsDrawnInItsTintAlone) {
    const QColor tint(0x5B, 0x8C, 0xFF);
    const QImage drawn = Symbols::icon("trash.fill", tint).pixmap(48, 48).toImage();
    int inked = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor pixel = drawn.pixelColor(x, y);
            if (pixel.alpha() == 255) {
                ++inked;
                EXPECT_EQ(pixel.rgb(), tint.rgb()) << x << "," << y;
            }
        }
    }
    EXPECT_GT(inked, 50);
}

} // namespace
} // namespace dorvik
