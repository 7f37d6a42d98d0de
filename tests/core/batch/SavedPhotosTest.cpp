// What the result calls saved: only photos that carry the whole edit. A write that fails (made
// with the writer's fault hook, as on a full disk) leaves no copy and never touches a source; a
// stop lists the photos it kept from being reached apart from those that failed.
#include "BatchTestSupport.h"

#include "batch/BatchObserver.h"
#include "batch/BatchSummary.h"
#include "metadata/WriteHooks.h"

#include <QThread>

#include <atomic>
#include <cerrno>
#include <thread>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// The writer's `failing`-th new file of the run cannot be written, as on a full disk.
class FailingWrite {
public:
    explicit FailingWrite(int failing) {
        test::setWriteFaultHook([this, failing](SafeFileReplace::Step step) {
            if (step == SafeFileReplace::Step::Create)
                ++m_files;
            return step == SafeFileReplace::Step::Write && m_files == failing ? ENOSPC : 0;
        });
    }
    ~FailingWrite() { test::setWriteFaultHook({}); }

private:
    std::atomic<int> m_files{0};
};

} // namespace

// The second of three photos fails: it counts as processed, not as saved, and its copy is gone
// while no source changed. An output that is a source under a second name (a hard link) is that
// source: a failed write there removes nothing. The described form keeps its rule: the copy
// stands and counts as saved.
TEST(SavedPhotos, AFailedWriteIsNeitherSavedNorLeftAsACopy) {
    QTemporaryDir tmp;
    const QString in = tmp.path() + "/in", out = tmp.path() + "/out";
    QDir().mkpath(in);
    QDir().mkpath(out);
    QStringList sources;
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg"})
        sources << copySample(formatsDir() + "/Reagan.jpg", in, name);
    const auto before = folderChecksums(in);
    const ValueFormScope standard(ValueForm::standard);
    RunValues v = editRun(ProcessingMode::keepUnedited, out);
    edit(v, "Artist", "Jane");
    const auto runFailing = [&](int failing, const QStringList& photos) {
        const FailingWrite fault(failing);
        return runBatch(v, recordsOf(photos));
    };

    BatchResult r = runFailing(2, sources);
    const BatchSummary s = BatchSummary::of(r);
    EXPECT_EQ(s.lblValueImagesProcessed, ": 3");
    EXPECT_EQ(s.lblValuePhotosSkipped, ": 0");
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "2 Photos saved successfully!");
    ASSERT_EQ(r.problems.size(), 1);
    EXPECT_EQ(r.problems[0].path, sources[1]);
    EXPECT_TRUE(r.problems[0].reason.startsWith("disk full")) << r.problems[0].reason.toStdString();
    EXPECT_EQ(fileNames(out), (QStringList{"a.jpg", "c.jpg"})) << "no copy, no hidden file";
    EXPECT_EQ(folderChecksums(in), before);

    ASSERT_EQ(::link(QFile::encodeName(sources[1]).constData(),
                     QFile::encodeName(out + "/b.jpg").constData()),
              0);
    v.overwriteExisting = true;
    r = runFailing(1, {sources[1]});
    EXPECT_EQ(r.savedPhotos(), 0);
    EXPECT_EQ(readBytes(out + "/b.jpg"), readBytes(sources[1]));
    EXPECT_EQ(folderChecksums(in), before);

    QFile::remove(out + "/b.jpg");
    v.writeOptions.standardForm = false;
    r = runFailing(2, sources);
    EXPECT_EQ(r.savedPhotos(), 3);
    EXPECT_EQ(r.problems.size(), 1);
    EXPECT_EQ(fileNames(out), (QStringList{"a.jpg", "b.jpg", "c.jpg"}));
}

// Stopped as the fourth of ten photos starts, the third being missing: the missing one is a
// problem, the six never started are listed apart in list order, and every photo is saved,
// failed or not reached.
TEST(SavedPhotos, PhotosAStopKeptFromBeingReachedAreListedApartFromFailures) {
    QTemporaryDir tmp;
    QStringList list;
    for (int i = 0; i < 10; ++i)
        list << (i == 2 ? tmp.path() + "/missing.jpg"
                        : makeJpeg(tmp.path() + QStringLiteral("/p%1.jpg").arg(i), 16, 16));
    RunValues v = editRun(ProcessingMode::keepUnedited, tmp.path() + "/out");
    QDir().mkpath(*v.destinationFolder);
    edit(v, "Artist", "Jane");
    const PhotoPipeline pipeline(v);
    RenameNumbering numbering;
    StopControl stop;
    StopAt observer(stop, 4);
    BatchDriver driver(pipeline, numbering, stop, &observer);
    BatchResult r;
    std::thread run([&] { r = driver.run(ListPhotoSource(recordsOf(list))); });
    while (!stop.isWaiting())
        QThread::msleep(1);
    stop.answer(true);
    run.join();

    ASSERT_EQ(r.problems.size(), 1);
    EXPECT_EQ(r.problems[0].path, list[2]);
    EXPECT_EQ(r.notReached, list.mid(4));
    EXPECT_EQ(r.savedPhotos() + r.problems.size() + r.notReachedCount, r.total);
    const BatchSummary s = BatchSummary::of(r);
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "3 Photos saved successfully!");
    EXPECT_EQ(s.lblValuePhotosSkipped, ": 7"); // the missing one and those not reached
    EXPECT_EQ(s.lblNotReached, "6 photos were not reached: the run was stopped");
    r.notReachedCount = 1;
    EXPECT_EQ(BatchSummary::of(r).lblNotReached, "1 photo was not reached: the run was stopped");
    EXPECT_EQ(BatchSummary::of(BatchResult{}).lines().size(), 6);
}
