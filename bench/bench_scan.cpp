// Scan benchmark: adds every file of a folder through the same scan the home screen uses
// (two reader threads), against a plain loop of loadImageProperties over the same files, and
// measures the largest pause of the main thread's event loop while the scan runs.
//
//   bench_scan DIR [--rounds N] [--readers N]
#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"
#include "workingset/FolderWalk.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <cstdio>

#include <algorithm>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace {

using namespace tagmoor;

// CPU time of the whole process (all threads), in seconds.
double processCpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// The plain loop runs on a thread of the same niceness as the scan's threads (which yield
// to the main thread by 5 steps), so that a busy machine treats both alike.
double sequentialSeconds(const QStringList& files, int& records) {
    double seconds = 0;
    std::thread worker([&] {
        const auto tid = id_t(::syscall(SYS_gettid));
        ::setpriority(PRIO_PROCESS, tid, ::getpriority(PRIO_PROCESS, tid) + 5);
        QElapsedTimer clock;
        clock.start();
        records = 0;
        for (const QString& file : files) {
            if (loadImageProperties(QUrl::fromLocalFile(file)))
                ++records;
        }
        seconds = clock.nsecsElapsed() / 1e9;
    });
    worker.join();
    return seconds;
}

// CPU time of the calling thread, in milliseconds.
double threadCpuMs() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return ts.tv_sec * 1e3 + ts.tv_nsec / 1e6;
}

struct ScanRun {
    double seconds = 0;
    int records = 0;
    qint64 maxGapMs = 0;
    // The most CPU the main thread used within one gap: the part of a gap that is our own
    // work rather than waiting for a core on a busy machine.
    double maxBusyMs = 0;
    int progressUpdates = 0;
};

ScanRun scanOnce(const QString& dir, int readers) {
    WorkingSet set;
    WorkingListModel model(set); // as in the window: rows are inserted as records arrive
    ScriptedPrompt prompt;
    AppEvents events;
    ScanController controller(set, prompt, events);
    controller.setReaderThreads(readers);
    ScanRun run;
    QObject::connect(&controller, &ScanController::progressViewChanged,
                     [&] { ++run.progressUpdates; });

    // A 5 ms heartbeat on the main thread: the largest gap between two beats is the
    // longest time the event loop could not serve the window.
    QElapsedTimer beat;
    QTimer heartbeat;
    heartbeat.setInterval(5);
    heartbeat.setTimerType(Qt::PreciseTimer);
    double lastCpu = threadCpuMs();
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const qint64 gap = beat.restart();
        const double cpu = threadCpuMs();
        const double busy = cpu - lastCpu;
        lastCpu = cpu;
        if (gap > 40 && qEnvironmentVariableIsSet("BENCH_SCAN_TRACE"))
            std::printf("  gap %lld ms (main thread busy %.1f ms) at %d records\n", qlonglong(gap),
                        busy, int(set.count()));
        run.maxBusyMs = std::max(run.maxBusyMs, busy);
        run.maxGapMs = std::max(run.maxGapMs, gap);
    });

    QEventLoop loop;
    QObject::connect(&controller, &ScanController::scanFinished, &loop, &QEventLoop::quit);
    set.stageURLs({QUrl::fromLocalFile(dir)});
    QElapsedTimer clock;
    clock.start();
    beat.start();
    heartbeat.start();
    controller.retriveImages(true);
    loop.exec();
    run.seconds = clock.nsecsElapsed() / 1e9;
    heartbeat.stop();
    run.records = set.count();
    return run;
}

} // namespace

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: bench_scan DIR [--rounds N] [--readers N]\n");
        return 2;
    }
    const QString dir = args[1];
    int rounds = 1;
    int readers = 2;
    for (int i = 2; i + 1 < args.size(); i += 2) {
        if (args[i] == "--rounds")
            rounds = std::max(1, args[i + 1].toInt());
        else if (args[i] == "--readers")
            readers = std::max(1, args[i + 1].toInt());
    }
    QElapsedTimer walkClock;
    walkClock.start();
    const double walkCpu0 = processCpuSeconds();
    const QStringList files = walkFolder(dir).files;
    std::printf("folder walk: %.3f s (cpu %.3f s)\n", walkClock.nsecsElapsed() / 1e9,
                processCpuSeconds() - walkCpu0);
    std::printf("record size: %zu bytes\n", sizeof(tagmoor::CGImageProperties));
    std::printf("files: %lld, readers: %d, rounds: %d\n", qlonglong(files.size()), readers, rounds);
    std::vector<double> ratios;
    qint64 worstGap = 0;
    double worstBusy = 0;
    for (int r = 0; r < rounds; ++r) {
        int seqRecords = 0;
        const double cpu0 = processCpuSeconds();
        const double seq = sequentialSeconds(files, seqRecords);
        const double cpu1 = processCpuSeconds();
        const ScanRun scan = scanOnce(dir, readers);
        const double cpu2 = processCpuSeconds();
        std::printf("round %d: cpu time sequential %.3f s, scan %.3f s\n", r + 1, cpu1 - cpu0,
                    cpu2 - cpu1);
        std::printf("round %d: sequential %.3f s (%d records), scan %.3f s (%d records, "
                    "%d progress updates), ratio %.2f, largest main-thread gap %lld ms "
                    "(of which main-thread work at most %.1f ms)\n",
                    r + 1, seq, seqRecords, scan.seconds, scan.records, scan.progressUpdates,
                    scan.seconds / seq, qlonglong(scan.maxGapMs), scan.maxBusyMs);
        if (scan.records != seqRecords)
            std::printf("  records differ!\n");
        ratios.push_back(scan.seconds / seq);
        worstGap = std::max(worstGap, scan.maxGapMs);
        worstBusy = std::max(worstBusy, scan.maxBusyMs);
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf("median ratio scan/sequential %.2f (target <= 1.30); largest gap %lld ms "
                "(target < 50), main-thread work within a gap at most %.1f ms\n",
                ratios[ratios.size() / 2], qlonglong(worstGap), worstBusy);
    // The peak of the whole process, the list of the last round included: the figure that
    // decides how many photos a window can hold.
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const double peakMb = usage.ru_maxrss / 1024.0;
    std::printf("peak RSS %.1f MB for %lld files: %.0f records per MB of peak\n", peakMb,
                qlonglong(files.size()), files.size() / peakMb);
    return 0;
}
