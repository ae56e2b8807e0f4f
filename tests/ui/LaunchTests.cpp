#include "support/HostileArchives.h"
#include "support/TempDir.h"
#include "ui/LaunchOptions.h"

#include <QImage>
#include <QProcess>
#include <gtest/gtest.h>

#include <functional>
#include <sys/stat.h>

namespace dorvik {
namespace {

TEST(LaunchOptions, TheCommandLine) {
    const LaunchOptions plain = parseLaunchOptions({});
    EXPECT_TRUE(plain.screenshotFile.isEmpty());

    const LaunchOptions full = parseLaunchOptions({"--screenshot", "a.png", "--section", "history",
                                                   "--size", "1200x800", "--appearance", "dark"});
    EXPECT_EQ(full.screenshotFile, "a.png");
    EXPECT_EQ(full.section, AppSection::history);
    EXPECT_EQ(full.size, QSize(1200, 800));
    EXPECT_EQ(full.appearance, AppAppearance::dark);

    const QStringList wrong[] = {
        {"--section", "history"},                       // no screenshot to take
        {"--screenshot", "a.png", "--section", "Junk"}, // raw values only
        {"--screenshot", "a.png", "--size", "1200"},    // no height
        {"--screenshot", "a.png", "--size", "0x800"},   // no width
        {"--screenshot", "a.png", "--appearance", "sepia"},
        {"--screenshot"}, // no file
        {"--verbose", "1"},
    };
    for (const QStringList& arguments : wrong) {
        EXPECT_THROW(parseLaunchOptions(arguments), LaunchOptionsError)
            << arguments.join(' ').toStdString();
    }
}

// Runs the application, with its files in `dataHome` when one is given; its exit status, or -1
// when it did not end in time. What it printed on either stream goes to `output`.
int runApplication(const QStringList& arguments, QString* output = nullptr,
                   const std::string& dataHome = {}) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    if (!dataHome.empty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_DATA_HOME"), QString::fromStdString(dataHome));
        process.setProcessEnvironment(environment);
    }
    process.start(QStringLiteral(DORVIK_APP), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
        process.kill();
        return -1;
    }
    if (output != nullptr) {
        *output = QString::fromLocal8Bit(process.readAll());
    }
    return process.exitCode();
}

TEST(LaunchOptions, HelpAndABadSectionNameTheSections) {
    // No display is needed to ask.
    for (const char* help : {"--help", "-h"}) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(DORVIK_APP), {QString::fromLatin1(help)});
        ASSERT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitCode(), 0) << help;
        const QString said = QString::fromLocal8Bit(process.readAllStandardOutput());
        EXPECT_TRUE(said.startsWith(QStringLiteral("usage: dorvik"))) << said.toStdString();
        EXPECT_TRUE(said.contains(QStringLiteral("smartClean, overview, trends"))) << help;
    }

    QString said;
    EXPECT_EQ(runApplication({"--screenshot", "a.png", "--section", "bytype"}, &said), 2);
    EXPECT_TRUE(said.contains(QStringLiteral("no section is called bytype"))) << said.toStdString();
    EXPECT_TRUE(said.contains(QStringLiteral("types, large, systemData"))) << said.toStdString();
}

double meanLightness(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); y += 4) {
        for (int x = 0; x < image.width(); x += 4) {
            sum += image.pixelColor(x, y).lightnessF();
        }
    }
    return sum / ((image.height() / 4.0) * (image.width() / 4.0));
}

TEST(Screenshot, TheApplicationDrawsItsWindowIntoAFile) {
    test::TempDir dir;
    const QString light = QString::fromStdString(dir / "light.png");
    const QString dark = QString::fromStdString(dir / "dark.png");
    ASSERT_EQ(runApplication({"--screenshot", light, "--section", "history", "--size", "1200x800",
                              "--appearance", "light"}),
              0);
    ASSERT_EQ(runApplication({"--screenshot", dark, "--section", "history", "--size", "1200x800",
                              "--appearance", "dark"}),
              0);
    const QImage lightImage(light);
    const QImage darkImage(dark);
    EXPECT_EQ(lightImage.size(), QSize(1200, 800));
    EXPECT_EQ(darkImage.size(), QSize(1200, 800));
    EXPECT_GT(meanLightness(lightImage), 0.8);
    EXPECT_LT(meanLightness(darkImage), 0.25);

    // Smaller than the window can be: the window keeps its least size.
    const QString small = QString::fromStdString(dir / "small.png");
    ASSERT_EQ(runApplication({"--screenshot", small, "--size", "400x300"}), 0);
    EXPECT_EQ(QImage(small).size(), QSize(1040, 680));

    EXPECT_EQ(runApplication({"--screenshot", small, "--section", "nowhere"}), 2);
    EXPECT_EQ(runApplication({"--screenshot", QString::fromStdString(dir / "no/such/dir.png")}), 1);
}

// The last scan's archive is a cache: whatever lies in its place, the application starts, without
// the scan when the archive cannot be one.
TEST(Launch, StartsWhateverTheLastScanArchiveHolds) {
    test::TempDir dir;
    using Make = std::function<void(const std::string&)>;
    const auto archiveOf = [](std::vector<uint8_t> payload) -> Make {
        return [payload](const std::string& path) {
            test::writeBytes(path, test::compressed(payload));
        };
    };
    const struct {
        std::string what;
        Make make;
    } cases[] = {
        {"a chain of 150,000 folders", archiveOf(test::chainPayload(150'000))},
        {"a chain as deep as is read", archiveOf(test::chainPayload(4096))},
        {"20 million folders",
         [](const std::string& path) { test::writeBytes(path, test::wideArchive(20'000'000)); }},
        {"1 GiB of zeros",
         [](const std::string& path) {
             test::writeBytes(path, test::zerosArchive(size_t{1} << 30));
         }},
        {"a FIFO", [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
    };
    int index = 0;
    for (const auto& [what, make] : cases) {
        const std::string dataHome = dir / ("data" + std::to_string(++index));
        test::makeFolder(dataHome + "/Dorvik");
        make(dataHome + "/Dorvik/last-scan.dvscan");
        const QString picture = QString::fromStdString(dir / "explorer.png");
        EXPECT_EQ(runApplication({"--screenshot", picture, "--section", "explorer"}, nullptr, dataHome), 0)
            << what;
    }
}

} // namespace
} // namespace dorvik
