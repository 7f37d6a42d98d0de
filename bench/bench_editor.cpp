// The editor with a large marked list, on the real home screen offscreen: the time on the main
// thread to mark every photo and show their merge, and the longest key stroke while typing
// an Artist with every photo marked.
//
//   bench_editor <folder of sample photos> [photos]

#include "BenchHomeScreen.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/workingset/HomeScreen.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>

#include <algorithm>
#include <cstdio>

using namespace tagmoor;

namespace {

void measure(const QList<CGImageProperties>& samples, int count) {
    QList<CGImageProperties> records;
    records.reserve(count);
    for (int i = 0; i < count; ++i) {
        CGImageProperties r = samples[i % samples.size()];
        r.url = QUrl::fromLocalFile(QStringLiteral("/photos/IMG_%1.jpg").arg(i, 5, 10, QChar('0')));
        r.isSelected = false;
        records.append(std::move(r));
    }
    WorkingSet set;
    set.appendImages(records);
    records.clear();

    BenchHomeScreen bench(set, QStringLiteral("/tmp/bench-editor-settings.ini"), QDir::homePath());
    HomeScreen& home = bench.home;
    EditorState& state = bench.state;
    QCoreApplication::processEvents();

    QElapsedTimer clock;
    clock.start();
    home.clickedSelectUnselectAll(true);
    const double markMs = clock.nsecsElapsed() / 1e6;
    QCoreApplication::processEvents();

    auto* artist = qobject_cast<QLineEdit*>(
        home.findChild<MetadataViewController*>()->control(Field::Artist)->input());
    double worstKeyMs = 0;
    double totalKeyMs = 0;
    const QString typed = QStringLiteral("Jane Photographer");
    for (const QChar c : typed) {
        clock.restart();
        QTest::keyClick(artist, c.toLatin1());
        const double ms = clock.nsecsElapsed() / 1e6;
        worstKeyMs = std::max(worstKeyMs, ms);
        totalKeyMs += ms;
        QCoreApplication::processEvents();
    }
    std::printf("mark all and show the merge: %.1f ms (target under 100 ms)\n", markMs);
    std::printf("typing with every photo marked: longest key stroke %.2f ms, mean %.2f ms "
                "(target under 16 ms)\n",
                worstKeyMs, totalKeyMs / typed.size());
    std::printf("field reads \"%s\", edited: %s\n", qPrintable(artist->text()),
                state.fieldEditedFlags.test(Field::Artist) ? "yes" : "no");
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <folder of sample photos> [photos]\n", argv[0]);
        return 2;
    }
    const int count = argc > 2 ? std::atoi(argv[2]) : 10000;

    // Real records of the samples, repeated under distinct names up to the count, a few with
    // an Artist of their own so that the merge has to look at every photo.
    QList<CGImageProperties> samples;
    for (const QFileInfo& info : QDir(QString::fromLocal8Bit(argv[1])).entryInfoList(QDir::Files))
        if (auto record = loadImageProperties(QUrl::fromLocalFile(info.absoluteFilePath())))
            samples.append(*record);
    if (samples.isEmpty())
        return 1;
    std::printf("== %d photos made from %lld different samples\n", count,
                qlonglong(samples.size()));
    measure(samples, count);
    // The worst case: every photo agrees on every field, so the merge and the test for
    // changes look at every photo for every field.
    std::printf("== %d photos that agree on every field\n", count);
    measure({samples.first()}, count);
    return 0;
}
