// What the result calls saved: only photos that carry the whole edit. A write that fails
// (made here with the writer's fault hook, as a full disk does) leaves no copy in the output
// folder and never touches a source; a stop lists the photos it kept from being reached
// apart from those that failed.
#include "BatchTestSupport.h"

#include "batch/BatchObserver.h"
#include "batch/BatchSummary.h"

#include <QThread>

#include <atomic>
#include <cerrno>
#include <thread>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

using Step = SafeFileReplace::Step;

// Makes the writer's `failing`-th new file of the run fail to be written, as on a full disk.
class FailingWrite {
public:
    explicit FailingWrite(int failing) {
        SafeFileReplace::setFaultHook([this, failing](Step step) {
            if (step == Step::Create)
                ++m_files;
            return step == Step::Write && m_files == failing ? ENOSPC : 0;
        });
    }
    ~FailingWrite() { SafeFileReplace::setFaultHook({}); }
    FailingWrite(const FailingWrite&) = delete;
    FailingWrite& operator=(const FailingWrite&) = delete;

private:
    std::atomic<int> m_files{0};
};

class SavedPhotos : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        QDir().mkpath(out());
        for (const char* name : {"a.jpg", "b.jpg", "c.jpg"})
            sources << copySample(formatsDir() + "/Reagan.jpg", in(), name);
        before = folderChecksums(in());
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }

    QTemporaryDir tmp;
    QStringList sources;
    QMap<QString, QByteArray> before;
};

bool hasArtist(const QString& path) {
    return tagOf(path, "Exif.Image.Artist") == "Jane";
}

} // namespace

// The standard form: of three photos into an output folder the second one's write fails. It
// still counts as processed, but not as saved; its copy is gone, the others carry the edit and
// no source changed. Into the photos' own folders the failed photo keeps its old bytes.
TEST_F(SavedPhotos, AFailedWriteIsNeitherSavedNorLeftAsACopy) {
    const ValueFormScope scope(ValueForm::standard);
    RunValues v = editRun(ProcessingMode::keepUnedited, out());
    edit(v, "Artist", "Jane");
    BatchResult r;
    {
        const FailingWrite fault(2);
        r = runBatch(v, recordsOf(sources));
    }
    EXPECT_EQ(r.total, 3);
    EXPECT_EQ(r.totalProcessedPhotos, 3);
    EXPECT_EQ(r.savedPhotos(), 2);
    const BatchSummary s = BatchSummary::of(r);
    EXPECT_EQ(s.lblValueImagesProcessed, ": 3");
    EXPECT_EQ(s.lblValuePhotosSkipped, ": 0");
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "2 Photos saved successfully!");
    ASSERT_EQ(r.problems.size(), 1);
    EXPECT_EQ(r.problems[0].path, sources[1]);
    EXPECT_TRUE(r.problems[0].reason.startsWith("disk full")) << r.problems[0].reason.toStdString();
    EXPECT_EQ(fileNames(out()), (QStringList{"a.jpg", "c.jpg"})) << "no copy, no hidden file";
    EXPECT_TRUE(hasArtist(out() + "/a.jpg"));
    EXPECT_TRUE(hasArtist(out() + "/c.jpg"));
    EXPECT_EQ(folderChecksums(in()), before);

    // In place: the source is the output; it keeps its old bytes and is not saved.
    RunValues inPlace = editRun(ProcessingMode::keepUnedited);
    edit(inPlace, "Artist", "Jane");
    {
        const FailingWrite fault(1);
        r = runBatch(inPlace, recordsOf({sources[0]}));
    }
    EXPECT_EQ(r.totalProcessedPhotos, 1);
    EXPECT_EQ(BatchSummary::of(r).lblPhotosSavedSuccessfully, "0 Photo saved successfully!");
    EXPECT_EQ(folderChecksums(in()), before);
}

// A format the writer cannot change, an output that is the source itself reached through a
// hard link, and the described form, which keeps its rule that a copy stands.
TEST_F(SavedPhotos, OnlyTheRunsOwnCopyGoesAndTheDescribedFormKeepsIt) {
    const QString raw = copySample(formatsDir() + "/et-FujiFilm.raf", in());
    before = folderChecksums(in());
    {
        const ValueFormScope scope(ValueForm::standard);
        RunValues v = editRun(ProcessingMode::keepUnedited, out());
        edit(v, "Artist", "Jane");
        const BatchResult r = runBatch(v, recordsOf({raw, sources[0]}));
        EXPECT_EQ(r.savedPhotos(), 1);
        EXPECT_EQ(fileNames(out()), QStringList{"a.jpg"});

        // out/b.jpg is in/b.jpg under a second name: overwriting it is editing the source in
        // place, and a failed write there removes nothing.
        ASSERT_EQ(::link(QFile::encodeName(sources[1]).constData(),
                         QFile::encodeName(out() + "/b.jpg").constData()),
                  0);
        v.overwriteExisting = true;
        const FailingWrite fault(1);
        const BatchResult linked = runBatch(v, recordsOf({sources[1]}));
        EXPECT_EQ(linked.savedPhotos(), 0);
        EXPECT_EQ(readBytes(out() + "/b.jpg"), readBytes(sources[1]));
        EXPECT_EQ(folderChecksums(in()), before);
        QFile::remove(out() + "/b.jpg");
    }

    // The described form: the copy of the format it cannot write stands and counts as saved.
    RunValues described = editRun(ProcessingMode::keepUnedited, out());
    edit(described, "Artist", "Jane");
    described.overwriteExisting = true;
    const BatchResult r = runBatch(described, recordsOf({raw, sources[0]}));
    EXPECT_EQ(r.savedPhotos(), 2);
    EXPECT_EQ(r.problems.size(), 1);
    EXPECT_EQ(fileNames(out()), (QStringList{"a.jpg", "et-FujiFilm.raf"}));
}

namespace {

// Presses Stop as the given photo starts; the test answers once the run is parked.
class StopAt : public BatchObserver {
public:
    StopAt(StopControl& stop, int at) : m_stop(stop), m_at(at) {}
    void photoStarted(const PhotoPlan& plan) override {
        if (plan.processed == m_at)
            m_stop.requestPause();
    }

private:
    StopControl& m_stop;
    int m_at;
};

} // namespace

// Stopped after the fourth of ten photos, one of which failed and one of which was never
// started: the failed one is a problem, the six not reached are listed apart, in list order,
// and every selected photo is saved, failed or not reached. A sink hears them apart too.
TEST_F(SavedPhotos, PhotosAStopKeptFromBeingReachedAreListedApartFromFailures) {
    const ValueFormScope scope(ValueForm::standard);
    QStringList list;
    for (int i = 0; i < 10; ++i)
        list << (i == 2 ? in() + "/missing.jpg"
                        : copySample(sources[0], in(), QStringLiteral("p%1.jpg").arg(i)));
    RunValues v = editRun(ProcessingMode::keepUnedited, out());
    edit(v, "Artist", "Jane");

    for (const bool sink : {false, true}) {
        SCOPED_TRACE(sink ? "with sinks" : "in the result");
        QDir(out()).removeRecursively();
        QDir().mkpath(out());
        const PhotoPipeline pipeline(v);
        RenameNumbering numbering;
        StopControl stop;
        StopAt observer(stop, 4);
        BatchDriver driver(pipeline, numbering, stop, &observer, 1);
        QList<PhotoProblem> heard;
        QStringList heardNotReached;
        if (sink) {
            driver.setProblemSink([&](const PhotoProblem& p) { heard << p; });
            driver.setNotReachedSink([&](const QString& path) { heardNotReached << path; });
        }
        BatchResult r;
        std::thread run([&] { r = driver.run(ListPhotoSource(recordsOf(list))); });
        while (!stop.isWaiting())
            QThread::msleep(1);
        stop.answer(true);
        run.join();

        const QList<PhotoProblem> problems = sink ? heard : r.problems;
        const QStringList notReached = sink ? heardNotReached : r.notReached;
        EXPECT_TRUE(r.stopped);
        ASSERT_EQ(problems.size(), 1);
        EXPECT_EQ(problems[0].path, list[2]);
        EXPECT_EQ(notReached, list.mid(4));
        EXPECT_EQ(r.notReachedCount, 6);
        EXPECT_EQ(r.savedPhotos() + problems.size() + r.notReachedCount, r.total);
        if (sink) {
            EXPECT_TRUE(r.problems.isEmpty() && r.notReached.isEmpty());
        }

        const BatchSummary s = BatchSummary::of(r);
        EXPECT_EQ(s.lblPhotosSavedSuccessfully, "3 Photos saved successfully!");
        EXPECT_EQ(s.lblValuePhotosSkipped, ": 7"); // the failed one and those not reached
        EXPECT_EQ(s.lblNotReached, "6 photos were not reached: the run was stopped");
        EXPECT_EQ(s.lines().last(), s.lblNotReached);
    }
    BatchResult one;
    one.notReachedCount = 1;
    EXPECT_EQ(BatchSummary::of(one).lblNotReached, "1 photo was not reached: the run was stopped");
    EXPECT_EQ(BatchSummary::of(BatchResult{}).lblNotReached, "");
    EXPECT_EQ(BatchSummary::of(BatchResult{}).lines().size(), 6);
}
