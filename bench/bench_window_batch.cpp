// A batch started from the window against the same batch through tagmoor-cli apply, in one
// run: the home screen offscreen with the photos of a folder, eight fields typed into the form,
// a one-hour shift of the original date, Start Process answered YES with an output folder, and
// the clock stopped when the run sheet shows its result. While the window's run goes, a 5 ms
// timer on the main thread measures the longest stall of the event loop.
//
//   bench_window_batch <photo folder> <work folder> <tagmoor-cli>

#include "BenchHomeScreen.h"
#include "app/batch/FinalProcessedVC.h"
#include "app/workingset/HomeScreen.h"
#include "dates/DateField.h"
#include "editor/MetadataForm.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QProcess>
#include <QTimer>

#include <cstdio>

using namespace tagmoor;

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s <photo folder> <work folder> <tagmoor-cli>\n", argv[0]);
        return 2;
    }
    const QString photos = QString::fromLocal8Bit(argv[1]);
    const QString work = QFileInfo(QString::fromLocal8Bit(argv[2])).absoluteFilePath();
    const QString cli = QString::fromLocal8Bit(argv[3]);
    // The output folder has to be within the home folder.
    qputenv("HOME", QFile::encodeName(work));
    initializeMetadataLibrary();
    QApplication app(argc, argv);

    WorkingSet set;
    QList<CGImageProperties> records;
    for (const QFileInfo& info : QDir(photos).entryInfoList({"*.jpg"}, QDir::Files, QDir::Name))
        if (auto record = loadImageProperties(QUrl::fromLocalFile(info.absoluteFilePath())))
            records.append(*record);
    set.appendImages(records);

    BenchHomeScreen bench(set, work + QStringLiteral("/settings.ini"), work);
    HomeScreen& home = bench.home;
    ScriptedPrompt& prompt = bench.prompt;
    QList<int> all;
    for (int i = 0; i < set.count(); ++i)
        all << i;
    bench.session.form().updateMetadataInfo(0, all.size() > 1, all);
    const std::pair<Field, const char*> edits[] = {{Field::Artist, "Jane Doe"},
                                                   {Field::Copyright, "(c) Jane Doe"},
                                                   {Field::ImageDescription, "Harbour at dawn"},
                                                   {Field::ISO, "400"},
                                                   {Field::FNumber, "2.8"},
                                                   {Field::City, "Paris"},
                                                   {Field::Headline, "Morning"},
                                                   {Field::LensXMP, "Lens 50"}};
    for (const auto& [field, text] : edits)
        bench.session.form().editText(field, QString::fromUtf8(text));
    const IDOT shift{1, 0, 0, false, true, true};
    bench.session.form().commitDateRule(DateField::dateTimeOriginal, shift, std::nullopt);

    // The thumbnails of the photos in view load first, as they do long before anyone presses
    // Start Process; the run is what is measured.
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 20000 &&
           (settle.elapsed() < 1000 || bench.thumbnails.pendingCount() > 0 ||
            bench.thumbnails.runningCount() > 0))
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);

    const QString windowOut = work + QStringLiteral("/window");
    QDir().mkpath(windowOut);
    prompt.answers = {0};
    prompt.panelAnswers = {{windowOut}};

    QElapsedTimer gap;
    qint64 longestGapMs = 0;
    QTimer ticker;
    ticker.setInterval(5);
    QElapsedTimer since;
    QList<QPair<qint64, qint64>> stalls; // (when, how long) of each stall over 30 ms
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 g = gap.restart();
        if (g > 30)
            stalls.append({since.elapsed() - g, g});
        longestGapMs = std::max(longestGapMs, g);
    });
    QElapsedTimer clock;
    clock.start();
    since.start();
    gap.start();
    ticker.start();
    home.clickedStartProcess();
    auto runSheet = [&home] { return home.findChild<FinalProcessedVC*>(); };
    while (!runSheet() || !runSheet()->isShowingResult())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    const double windowSeconds = clock.nsecsElapsed() / 1e9;
    ticker.stop();
    const QString saved =
        runSheet()->findChild<QLabel*>(QStringLiteral("lblPhotosSavedSuccessfully"))->text();

    QProcess run;
    run.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    run.setStandardOutputFile(QProcess::nullDevice());
    const QStringList args{"apply",  "--quiet",
                           "--set",  "Artist=Jane Doe",
                           "--set",  "Copyright=(c) Jane Doe",
                           "--set",  "ImageDescription=Harbour at dawn",
                           "--set",  "ISO=400",
                           "--set",  "FNumber=2.8",
                           "--set",  "Iptc.Application2.City=Paris",
                           "--set",  "Iptc.Application2.Headline=Morning",
                           "--set",  "Xmp.aux.Lens=Lens 50",
                           "--date", "DateTimeOriginal=shift-time:+1:00:00",
                           "--out",  work + QStringLiteral("/cli"),
                           photos};
    clock.restart();
    run.start(cli, args);
    run.waitForFinished(-1);
    const double cliSeconds = clock.nsecsElapsed() / 1e9;

    std::printf("photos: %d; window result: %s\n", set.count(), qPrintable(saved));
    std::printf("window (Start Process to result): %.2f s\n", windowSeconds);
    std::printf("tagmoor-cli apply:                %.2f s (exit %d)\n", cliSeconds, run.exitCode());
    std::printf("ratio window / command line: %.3fx (target at most 1.1x)\n",
                windowSeconds / cliSeconds);
    std::printf("longest event-loop stall during the window's run: %lld ms (target under 50 ms)\n",
                longestGapMs);
    for (const auto& [when, ms] : stalls)
        std::printf("  stall of %lld ms at %lld ms\n", ms, when);
    return 0;
}
