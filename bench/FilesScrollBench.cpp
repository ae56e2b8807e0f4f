// Measures how the Large & Old table scrolls through a list as long as a large disk gives: the
// real file list (filter bar, table with folder lines and risk badges) drawn off screen, scrolled
// from the top row to the last one step by step, as a user holding Page Down would.
//
//   files_scroll_bench [FILES] [ROWS_A_STEP]    (default 300000, one page)
//
// Each step moves the scroll bar, repaints the table at once and then lets the event loop run
// what came in meanwhile (results of other threads and the repaints they ask for). It prints the
// time of the paint alone and of the whole step, as the median, the 99th percentile and the
// worst, the sum of the steps, and how long after the last step the table still waited for risk
// verdicts of the rows on show.
//
// The rows lie in a private home folder made for the run (its folders are real, the files live
// in memory only, see MemoryTree.h), so each row is judged as a personal file is; the settings
// and application files of the run go there too.

#include "MemoryTree.h"
#include "state/AppState.h"
#include "ui/Appearance.h"
#include "ui/Symbols.h"
#include "ui/files/FileListPanel.h"
#include "ui/files/FilesTable.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace dorvik;
using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

struct Spread {
    double median = 0;
    double p99 = 0;
    double worst = 0;
    double sum = 0;
};

Spread spreadOf(std::vector<double> times) {
    Spread spread;
    if (times.empty()) {
        return spread;
    }
    std::sort(times.begin(), times.end());
    spread.median = times[times.size() / 2];
    spread.p99 = times[std::min(times.size() - 1, times.size() * 99 / 100)];
    spread.worst = times.back();
    for (double time : times) {
        spread.sum += time;
    }
    return spread;
}

// A private folder for the run's home, settings and application files.
std::string makePrivateFolders() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "dorvik-scroll-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        std::perror("mkdtemp");
        std::exit(1);
    }
    setenv("HOME", (pattern + "/home").c_str(), 1);
    setenv("XDG_CONFIG_HOME", (pattern + "/config").c_str(), 1);
    setenv("XDG_DATA_HOME", (pattern + "/data").c_str(), 1);
    std::filesystem::create_directories(pattern + "/home");
    return pattern;
}

// Whether the table knows the verdict of every row it shows.
bool verdictsOnShow(const FilesTable& table) {
    const NodeTableModel& model = *table.nodeModel();
    const int column = model.columnOf(NodeColumn::risk);
    const int first = table.rowAt(0);
    int last = table.rowAt(table.viewport()->height() - 1);
    if (last < 0) {
        last = model.rowCount() - 1;
    }
    for (int row = std::max(first, 0); row <= last; ++row) {
        if (!model.index(row, column).data(NodeTableModel::riskRole).isValid()) {
            return false;
        }
    }
    return true;
}

void printSpread(const char* what, const Spread& spread) {
    std::printf("  %-22s median %7.3f ms   p99 %7.3f ms   worst %8.3f ms   sum %9.1f ms\n", what,
                spread.median, spread.p99, spread.worst, spread.sum);
}

} // namespace

int main(int argc, char** argv) {
    const size_t fileCount = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 300000;
    const int rowsAStep = argc > 2 ? std::atoi(argv[2]) : 0;
    const std::string privateRoot = makePrivateFolders();
    const std::string home = std::getenv("HOME");

    const bench::MemoryTree tree = bench::makeMemoryTree(fileCount, home);
    for (const FileNodePtr& folder : tree.folders) {
        std::filesystem::create_directories(folder->path());
    }

    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    const QPalette desktopPalette = QApplication::palette();
    QApplication::setStyle(QStringLiteral("Fusion"));
    Symbols::useIconTheme();
    AppearanceController(desktopPalette).apply(AppAppearance::light);

    int exitCode = 0;
    {
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        AppState state(options);
        FileListPanel panel(state, true, [] { return QStringLiteral("files"); });
        panel.resize(1040, 680);
        panel.show();
        FilesTable& table = *panel.table();
        table.setNodes(tree.files);
        QApplication::processEvents();

        QScrollBar& bar = *table.verticalScrollBar();
        const int step = rowsAStep > 0 ? rowsAStep : bar.pageStep();
        std::vector<double> paints;
        std::vector<double> steps;
        const auto whole = Clock::now();
        for (int value = 0;; value = std::min(value + step, bar.maximum())) {
            const auto start = Clock::now();
            bar.setValue(value);
            table.viewport()->repaint();
            paints.push_back(millisecondsSince(start));
            QApplication::processEvents();
            steps.push_back(millisecondsSince(start));
            if (value == bar.maximum()) {
                break;
            }
        }
        const double wall = millisecondsSince(whole);
        const auto end = Clock::now();
        while (!verdictsOnShow(table)) {
            QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
            if (millisecondsSince(end) > 20000) {
                std::printf("the rows on show got no verdict within 20 s\n");
                exitCode = 1;
                break;
            }
        }
        const double lastVerdicts = millisecondsSince(end);

        std::printf("%zu rows, %zu steps of %d rows, %d rows on show\n\n", tree.files.size(),
                    steps.size(), step, bar.pageStep());
        printSpread("paint", spreadOf(paints));
        printSpread("step (paint + events)", spreadOf(steps));
        std::printf("\n  top to bottom          %9.1f ms\n", wall);
        std::printf("  verdicts on show after the last step: %.1f ms\n", lastVerdicts);
    }
    std::filesystem::remove_all(privateRoot);
    return exitCode;
}
