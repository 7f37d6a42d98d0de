// Scrolls the thumbnail grid through a large working list offscreen, page by page, letting the
// visible thumbnails load at each stop, and reports the peak resident memory, the bytes held
// by the thumbnail cache and the number of decodes.
//
//   bench_grid_memory <folder of photos> [max photos]

#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ThumbnailProvider.h"
#include "model/CGImageProperties.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextStream>

#include <sys/resource.h>

#include <cstdio>

using namespace tagmoor;

namespace {

long peakRssKb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

long currentRssKb() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

// Lets the provider's pause pass and its queue drain, with an upper bound per page.
void settle(ThumbnailProvider& thumbnails, int maxMs) {
    QElapsedTimer clock;
    clock.start();
    QCoreApplication::processEvents();
    while (clock.elapsed() < maxMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (clock.elapsed() > ThumbnailProvider::kScrollPauseMs + 40 &&
            thumbnails.pendingCount() == 0 && thumbnails.runningCount() == 0)
            return;
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <folder of photos> [max photos]\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const int limit = argc > 2 ? std::atoi(argv[2]) : 10000;

    WorkingSet set;
    QList<CGImageProperties> records;
    for (const QFileInfo& info : folder.entryInfoList(QDir::Files, QDir::Name)) {
        if (records.size() >= limit)
            break;
        records.append(makeEmptyRecord(QUrl::fromLocalFile(info.absoluteFilePath())));
    }
    set.appendImages(records);
    records.clear();
    const long afterListKb = currentRssKb();

    WorkingListModel model(set);
    ThumbnailProvider thumbnails;
    int decodes = 0;
    QObject::connect(&thumbnails, &ThumbnailProvider::thumbnailReady, [&decodes] { ++decodes; });
    PhotoGridView grid(thumbnails);
    grid.setModel(&model);
    grid.resize(880, 660);
    grid.show();

    QElapsedTimer clock;
    clock.start();
    QScrollBar* bar = grid.verticalScrollBar();
    settle(thumbnails, 5000);
    int pages = 1;
    qint64 cachePeak = thumbnails.cache().usedBytes();
    while (bar->value() < bar->maximum()) {
        // A quick flick over half a page, then the stop.
        for (int step = 0; step < 4; ++step) {
            bar->setValue(bar->value() + bar->pageStep() / 4);
            QCoreApplication::processEvents();
        }
        settle(thumbnails, 5000);
        cachePeak = std::max(cachePeak, thumbnails.cache().usedBytes());
        ++pages;
    }
    const double seconds = clock.elapsed() / 1000.0;

    QTextStream out(stdout);
    out << "photos in list:        " << set.count() << "\n"
        << "pages scrolled:        " << pages << "\n"
        << "thumbnails decoded:    " << decodes << "\n"
        << "time:                  " << QString::number(seconds, 'f', 1) << " s\n"
        << "RSS after list:        " << afterListKb / 1024 << " MB\n"
        << "cache peak:            " << cachePeak / (1024 * 1024) << " MB of "
        << thumbnails.cache().maxBytes() / (1024 * 1024) << " MB\n"
        << "peak RSS:              " << peakRssKb() / 1024 << " MB\n";
    return 0;
}
