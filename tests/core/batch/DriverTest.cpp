#include "BatchTestSupport.h"

#include "batch/BatchController.h"
#include "batch/BatchObserver.h"
#include "batch/BatchSummary.h"
#include "dates/DateRuleStore.h"
#include "foundation/ScriptedPrompt.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QImageReader>
#include <QThread>

#include <atomic>
#include <numeric>
#include <thread>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

class Driver : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        for (int i = 0; i < 200; ++i)
            paths << makeJpeg(in() + QStringLiteral("/p%1.jpg").arg(i, 3, 10, QLatin1Char('0')), 16,
                              16);
        QDir().mkpath(out());
        values = editRun(ProcessingMode::keepUnedited, out());
        edit(values, "Artist", "Jane");
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }

    // Every output is a whole photo with the new tag.
    void expectOutputsComplete(int count) {
        const QStringList names = fileNames(out());
        EXPECT_EQ(names.size(), count);
        for (const QString& n : names) {
            EXPECT_TRUE(QImageReader(out() + "/" + n).canRead()) << n.toStdString();
            EXPECT_EQ(tagOf(out() + "/" + n, "Exif.Image.Artist"), "Jane") << n.toStdString();
        }
    }

    QTemporaryDir tmp;
    QStringList paths;
    RunValues values;
};

bool waitUntil(const std::function<bool()>& condition) {
    QElapsedTimer t;
    t.start();
    while (!condition()) {
        if (t.elapsed() > 20000)
            return false;
        QThread::msleep(2);
    }
    return true;
}

} // namespace

// Stop in the middle, for one and for two workers: the photos in work finish, none starts
// while the question stands, and "YES" ends the run with counts that match the files.
TEST_F(Driver, StopInTheMiddleFinishesThePhotosInWorkAndStartsNoNewOne) {
    for (int threads : {1, 2}) {
        QDir(out()).removeRecursively();
        QDir().mkpath(out());
        StopControl stop;
        StopAt observer(stop, 100);
        RenameNumbering numbering;
        BatchResult result;
        std::thread run([&] {
            result = runBatch(values, recordsOf(paths), numbering, threads, &observer, &stop);
        });
        ASSERT_TRUE(waitUntil([&] { return stop.isWaiting(); }));
        // Parked after photo 100 was handed out: the photos in work finish, no more start.
        const int written = 100;
        const auto outputs = [&] { return QDir(out()).entryList(QDir::Files).size(); };
        EXPECT_TRUE(waitUntil([&] { return outputs() == written; }));
        QThread::msleep(50);
        EXPECT_EQ(outputs(), written);
        stop.answer(true);
        run.join();

        EXPECT_TRUE(result.stopped);
        EXPECT_EQ(result.total, 200);
        EXPECT_EQ(result.processed, written);
        EXPECT_EQ(result.totalProcessedPhotos, written);
        EXPECT_EQ(numbering.next(), written);
        expectOutputsComplete(written);
        EXPECT_EQ(BatchSummary::of(result).lblBatchProcessCompleted,
                  "Batch Process Partially Completed!");
        EXPECT_EQ(BatchSummary::of(result).lblValuePhotosSkipped,
                  QStringLiteral(": %1").arg(200 - written));
    }
}

TEST_F(Driver, NoToTheStopQuestionGoesOnWithoutLoss) {
    StopControl stop;
    StopAt observer(stop, 50);
    BatchResult result;
    RenameNumbering numbering;
    std::thread run(
        [&] { result = runBatch(values, recordsOf(paths), numbering, 1, &observer, &stop); });
    ASSERT_TRUE(waitUntil([&] { return stop.isWaiting(); }));
    stop.answer(false);
    run.join();
    EXPECT_FALSE(result.stopped);
    EXPECT_EQ(result.totalProcessedPhotos, 200);
    EXPECT_EQ(BatchSummary::of(result).lblBatchProcessCompleted, "Batch Process Completed!");
    expectOutputsComplete(200);
}

// The controller asks the stop question through the prompt; the run is parked while the
// question stands, and the answer "YES" ends it there.
TEST_F(Driver, ControllerAsksTheStopQuestionThroughThePrompt) {
    ScriptedPrompt prompt;
    RenameNumbering numbering;
    BatchController controller(prompt, numbering);
    int filesWhileAsked = -1;
    prompt.onAlert = [&](const Alert& alert) {
        EXPECT_EQ(alert.title, BatchController::stopQuestion);
        EXPECT_EQ(alert.buttons, (QStringList{"YES", "NO"}));
        EXPECT_TRUE(waitUntil([&] { return controller.stopControl().isWaiting(); }));
        // One worker: the photo in work is done once the run is parked.
        filesWhileAsked = int(fileNames(out()).size());
    };
    prompt.answerNext("YES");
    QObject::connect(&controller, &BatchController::progress, &controller,
                     [&](int processed, int total, const QString&) {
                         EXPECT_EQ(total, 200);
                         if (processed == 20)
                             controller.clickedStop();
                     });
    QEventLoop loop;
    QObject::connect(&controller, &BatchController::finished, &loop, &QEventLoop::quit);
    ASSERT_TRUE(controller.start(values, recordsOf(paths)));
    EXPECT_FALSE(controller.start(values, recordsOf(paths))); // once per showing
    loop.exec();

    const BatchResult& r = controller.result();
    EXPECT_TRUE(r.stopped);
    EXPECT_EQ(r.totalProcessedPhotos, filesWhileAsked);
    EXPECT_LT(r.totalProcessedPhotos, 200);
    expectOutputsComplete(filesWhileAsked);

    DateRuleStore editorDates;
    RunValues live = values;
    live.overwriteExisting = true;
    live.renameSettings = AddText{};
    bool emptied = false;
    QObject::connect(&controller, &BatchController::finishedAndReset, [&] { emptied = true; });
    controller.clickedFinish(live, editorDates, false);
    EXPECT_TRUE(emptied);
    EXPECT_FALSE(controller.isProcessed());
    EXPECT_FALSE(live.fieldEditedFlags.hasEdits());
    EXPECT_FALSE(live.overwriteExisting);
    EXPECT_EQ(live.renameSettings, Rename{});
    EXPECT_EQ(numbering.next(), r.processed); // never reset
}

// Several workers give exactly what one gives: the same names, numbers, collisions, skips,
// counts and bytes, with overwriting off and on.
TEST_F(Driver, ParallelRunEqualsSequentialRun) {
    QStringList list;
    QDir().mkpath(in() + "/twin");
    for (int i = 0; i < 40; ++i) {
        list << paths[i];
        if (i % 5 == 0)
            list << copySample(paths[i], in() + "/twin"); // same name as the one before
        if (i % 7 == 0)
            list << in() + QStringLiteral("/missing%1.jpg").arg(i);
    }
    for (bool overwrite : {false, true}) {
        QMap<QString, QByteArray> outputs[2];
        BatchResult results[2];
        for (int threads : {1, 3}) {
            const int k = threads == 1 ? 0 : 1;
            const QString dest =
                tmp.path() + QStringLiteral("/par%1%2").arg(overwrite).arg(threads);
            RunValues v = values;
            v.destinationFolder = dest;
            v.overwriteExisting = overwrite;
            v.renameSettings = ReplaceText{"1", "x"};
            QDir().mkpath(dest);
            makeJpeg(dest + "/p00x.jpg"); // in the way of one photo
            RenameNumbering numbering;
            results[k] = runBatch(v, recordsOf(list), numbering, threads);
            results[k].outputDirectoryValue.clear();
            outputs[k] = folderChecksums(dest);
        }
        EXPECT_EQ(results[0], results[1]);
        EXPECT_EQ(outputs[0], outputs[1]);
        EXPECT_LT(results[0].totalProcessedPhotos, results[0].total);
    }
}

// Workers that plan their own photos still start them one at a time and in list order, each
// with the next number: the progress line and a Stop pressed at a photo rely on it.
TEST_F(Driver, WorkersStartPhotosOneAtATimeInListOrder) {
    class StartOrder : public BatchObserver {
    public:
        void photoStarted(const PhotoPlan& plan) override {
            if (inside.exchange(true))
                overlapped = true;
            seen.push_back(plan.processed);
            if (plan.processed % 25 == 0)
                QThread::msleep(3); // long enough for a second worker to come in
            inside = false;
        }
        std::atomic<bool> inside{false};
        std::atomic<bool> overlapped{false};
        std::vector<int> seen;
    };
    StartOrder observer;
    RenameNumbering numbering(7);
    const BatchResult result = runBatch(values, recordsOf(paths), numbering, 3, &observer);
    EXPECT_FALSE(observer.overlapped);
    std::vector<int> expected(std::size_t(paths.size()));
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(observer.seen, expected);
    EXPECT_EQ(numbering.next(), 7 + paths.size());
    EXPECT_EQ(result.totalProcessedPhotos, paths.size());
    expectOutputsComplete(int(paths.size()));
}

// A problem sink hears the problems in list order, exactly those that a run without one puts
// in its result: with workers whose photos end out of order (missing sources are done at
// once, real photos take a while) and lists longer than the window of photos in work.
TEST_F(Driver, ProblemSinkHearsTheProblemsInListOrder) {
    QStringList list;
    for (int i = 0; i < 2600; ++i)
        list << (i % 13 == 0 ? paths[(i / 13) % paths.size()]
                             : in() + QStringLiteral("/missing%1.jpg").arg(i));
    RunValues v = values;
    v.destinationFolder = tmp.path() + "/plain";
    QDir().mkpath(*v.destinationFolder);
    const BatchResult plain = runBatch(v, recordsOf(list));
    ASSERT_EQ(plain.problems.size(), 2600 - 200);
    for (int threads : {1, 3}) {
        v.destinationFolder = tmp.path() + QStringLiteral("/sink%1").arg(threads);
        QDir().mkpath(*v.destinationFolder);
        const PhotoPipeline pipeline(v);
        RenameNumbering numbering;
        StopControl stop;
        BatchDriver driver(pipeline, numbering, stop, nullptr, threads);
        QList<PhotoProblem> heard;
        driver.setProblemSink([&](const PhotoProblem& problem) { heard << problem; });
        const BatchResult result = driver.run(ListPhotoSource(recordsOf(list)));
        SafeFileReplace::waitForReleases();
        EXPECT_TRUE(result.problems.isEmpty());
        EXPECT_EQ(result.totalProcessedPhotos, plain.totalProcessedPhotos);
        EXPECT_EQ(heard, plain.problems) << threads;
    }
}
