// Paste Metadata... onto a long working list in the real home screen, offscreen: the values of
// one photo (eight text fields and its keywords) copied, every photo marked, the paste with
// all values ticked, then File > Export Metadata... of the whole list and File > Import
// Metadata... of that table back onto it. Reports the time of each step until its effects
// are on screen and the largest gap of the main thread's event loop during it, with the largest
// CPU time the main thread spent between two beats. Target: no gap over 50 ms.
//
//   bench_paste DIR
#include "BenchHeartbeat.h"
#include "BenchHomeScreen.h"

#include "batch/FormSnapshot.h"
#include "metadata/MetadataLibrary.h"
#include "model/FormFieldTable.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>

using namespace tagmoor;
using namespace tagmoor::bench;

namespace {

// The photo whose values are copied: eight texts and three keywords.
CGImageProperties withValuesToCopy(CGImageProperties record) {
    record = withKeyGroups(record);
    const std::pair<Field, const char*> values[] = {
        {Field::Artist, "Ana Lima"},
        {Field::ImageDescription, "A yellow tram in the rain"},
        {Field::Copyright, "(c) 2024 Ana Lima"},
        {Field::ByLine, "Ana Lima"},
        {Field::Headline, "Lisbon trams"},
        {Field::City, "Lisbon"},
        {Field::Credit, "Tagmoor bench"},
        {Field::CaptionAbstract, "Tram 28 on its way up"},
        {Field::Keywords, "tram, Lisbon, rain"}};
    for (const auto& [field, text] : values)
        FormSnapshot::setText(record, formField(field), QString::fromUtf8(text));
    return record;
}

// Waits for `signal` while the loop runs, at most a minute.
template <typename Sender, typename Signal> bool waitFor(Sender* sender, Signal signal) {
    QSignalSpy spy(sender, signal);
    return spy.count() > 0 || spy.wait(60000);
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_paste DIR\n");
        return 2;
    }
    const QString dir = QString::fromLocal8Bit(argv[1]);
    QTemporaryDir home;
    WorkingSet set;
    BenchHomeScreen screen(set, home.filePath("bench.conf"), home.path());
    HomeSession& session = screen.session;

    QEventLoop loop;
    QObject::connect(&screen.scans, &ScanController::scanFinished, &loop, &QEventLoop::quit);
    set.stageURLs({QUrl::fromLocalFile(dir)});
    screen.scans.retriveImages(true);
    loop.exec();
    spin(300);
    std::printf("photos: %d\n", set.count());
    if (set.count() == 0)
        return 2;

    Heartbeat heartbeat;
    int failures = 0;
    double totalMs = 0;
    qint64 largestGap = 0;
    // Times a step from its start until its effects have settled (`settleMs` of idle loop
    // after it), and reports the largest gap of the loop meanwhile.
    auto step = [&](const char* what, auto&& act, int settleMs) {
        spin(200);
        heartbeat.takeMaxGap();
        QElapsedTimer clock;
        clock.start();
        act();
        const double ms = clock.nsecsElapsed() / 1e6;
        spin(settleMs);
        const auto [gap, busyMs] = heartbeat.takeMaxGap();
        totalMs += ms;
        largestGap = std::max(largestGap, gap);
        const bool ok = gap <= 50;
        failures += ok ? 0 : 1;
        std::printf("%-34s %9.1f ms   largest gap %5lld ms (busy %5.1f ms)   %s\n", what, ms,
                    qlonglong(gap), busyMs, ok ? "ok" : "over target");
    };

    set.replaceImage(0, withValuesToCopy(set.workingImages()[0]));
    screen.home.clickedCheckBox(0, true);
    spin(300);
    step(
        "Copy Metadata", [&] { screen.home.copyMetadata(); }, 100);
    std::printf("%-34s %9lld\n", "values copied", qlonglong(session.clipboard().entries().size()));
    screen.home.clickedSelectUnselectAll(true);
    step(
        "Paste Metadata onto all", [&] { screen.home.pasteMetadata(); }, 1000);
    std::printf("%-34s %9d\n", "photos marked", set.markedCount());

    const QString table = home.filePath("metadata.csv");
    screen.prompt.saveAnswers = {table};
    step(
        "Export Metadata of all",
        [&] {
            screen.home.exportMetadata();
            waitFor(&session.exchange(), &ListExchange::exported);
        },
        300);
    screen.prompt.panelAnswers = {{table}};
    step(
        "Import Metadata of all rows",
        [&] {
            screen.home.importMetadata();
            waitFor(&session.exchange(), &ListExchange::imported);
        },
        1000);
    if (!screen.prompt.alerts.isEmpty())
        std::printf("import: %s\n",
                    qPrintable(screen.prompt.alerts.last().text.section(QLatin1Char('\n'), 0, 0)));
    std::printf("%-34s %9.1f ms   largest gap %5lld ms   (target: no gap over 50 ms)\n", "total",
                totalMs, qlonglong(largestGap));
    return failures == 0 ? 0 : 1;
}
