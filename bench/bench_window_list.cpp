// A very long working list in the real home screen, offscreen: the scan of a folder with the
// grid shown, the grid scrolled end to end, then Select All, a switch to the table and back,
// and Remove of a tenth and then of all. Reports each action's time (the call and the repaint
// it causes), the largest gap of the main thread's event loop in each phase with the largest
// CPU time the main thread spent between two beats of it, and the peak resident memory. Targets:
// peak under 400 MB at 100,000 photos, no gap over 50 ms, each action under 100 ms.
//
//   bench_window_list DIR
#include "BenchHeartbeat.h"
#include "BenchHomeScreen.h"

#include "app/workingset/PhotoListViews.h"
#include "metadata/MetadataLibrary.h"

#include <QApplication>
#include <QScrollBar>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

using namespace tagmoor;
using namespace tagmoor::bench;

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_window_list DIR\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    QTemporaryDir home;
    WorkingSet set;
    BenchHomeScreen screen(set, home.filePath("bench.conf"), home.path());
    Heartbeat heartbeat;
    int failures = 0;
    // A phase (scan, scrolling) must never stall the loop over 50 ms; an action must take
    // under 100 ms, during which the loop waits for it.
    // `before`: the largest gap of an earlier part of the phase, taken out already.
    auto report = [&](const char* what, double ms, double limitMs,
                      std::pair<qint64, double> before = {0, 0.0}) {
        auto [gap, busyMs] = heartbeat.takeMaxGap();
        gap = std::max(gap, before.first);
        busyMs = std::max(busyMs, before.second);
        const bool ok = limitMs > 0 ? ms < limitMs : gap <= 50;
        failures += ok ? 0 : 1;
        std::printf("%-34s %9.1f ms   largest gap %5lld ms (busy %5.1f ms)   %s\n", what, ms,
                    qlonglong(gap), busyMs, ok ? "ok" : "over target");
    };
    // Times an action after the loop has settled, and reports it.
    auto action = [&](const char* what, auto&& act) {
        spin(100);
        heartbeat.takeMaxGap();
        const double ms = timed(act);
        report(what, ms, 100);
    };

    QEventLoop loop;
    QObject::connect(&screen.scans, &ScanController::scanFinished, &loop, &QEventLoop::quit);
    set.stageURLs({QUrl::fromLocalFile(dir)});
    QElapsedTimer clock;
    clock.start();
    heartbeat.takeMaxGap();
    // The list leaves the scanning state as the end of the scan starts: what came before is
    // the records coming in, what follows is the end (marks, editor, views).
    std::pair<qint64, double> comingIn{0, 0.0};
    QObject::connect(&set, &WorkingSet::scanningChanged, [&](bool scanning) {
        if (!scanning)
            comingIn = heartbeat.takeMaxGap();
    });
    screen.scans.retriveImages(true);
    loop.exec();
    const double scanMs = clock.nsecsElapsed() / 1e6;
    spin(200);
    std::printf("photos: %d\n", set.count());
    const auto ending = heartbeat.peekMaxGap();
    report("scan with the grid shown", scanMs, 0, comingIn);
    std::printf("  %-32s %12s   largest gap %5lld ms (busy %5.1f ms)\n", "while records came in",
                "", qlonglong(comingIn.first), comingIn.second);
    std::printf("  %-32s %12s   largest gap %5lld ms (busy %5.1f ms)\n", "end of the scan", "",
                qlonglong(ending.first), ending.second);
    std::printf("%-34s %9ld MB\n", "peak RSS after the scan", peakRssMb());
    std::printf("%-34s %9ld MB\n", "RSS once the scan has settled", currentRssMb());

    auto* grid = screen.home.findChild<PhotoGridView*>();
    if (!grid) {
        std::fprintf(stderr, "no grid in the home screen\n");
        return 2;
    }
    // What each batch of a scan costs the grid at this length: a layout of every item.
    action("grid layout of the whole list", [&] { grid->doItemsLayout(); });
    QScrollBar* bar = grid->verticalScrollBar();
    clock.restart();
    int pages = 0;
    while (bar->value() < bar->maximum()) {
        bar->setValue(bar->value() + bar->pageStep());
        QCoreApplication::processEvents();
        // Every 200 pages the scrolling stops long enough for thumbnails to load.
        if (++pages % 200 == 0)
            spin(300);
    }
    spin(300);
    report("grid scrolled end to end", clock.nsecsElapsed() / 1e6, 0);
    std::printf("%-34s %9d\n", "pages", pages);

    action("Select All", [&] { screen.home.clickedSelectUnselectAll(true); });
    action("switch to the table", [&] { screen.home.clickedSegmentCollectionnTableView(1); });
    action("switch to the grid", [&] { screen.home.clickedSegmentCollectionnTableView(0); });
    // A tenth of the photos stays marked (untimed), then goes.
    screen.home.clickedSelectUnselectAll(false);
    for (int row = 0; row < set.count(); row += 10)
        set.setSelected(row, true);
    screen.home.clickedCheckBox(0, true);
    action("Remove of a tenth", [&] { screen.home.clickedRemove(); });
    screen.home.clickedSelectUnselectAll(true);
    action("Remove of all", [&] { screen.home.clickedRemove(); });
    std::printf("%-34s %9ld MB (target under 400 MB at 100,000 photos)\n", "peak RSS", peakRssMb());
    std::printf("photos left: %d\n", set.count());
    return failures == 0 ? 0 : 1;
}
