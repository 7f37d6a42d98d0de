// The journal of a run and its undo.
#include "../batch/BatchTestSupport.h"

#include "journal/RunJournal.h"
#include "metadata/XmpSidecar.h"

#include <QDir>
#include <QDirIterator>

#include <array>

#include <fcntl.h>
#include <sys/stat.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

// The journals go to a scratch data folder of the test's own.
class RunJournalTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_oldHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_oldHome); }

    BatchResult journaledRun(const RunValues& values, const QStringList& paths, int threads = 1) {
        const PhotoPipeline pipeline(values);
        RenameNumbering numbering;
        StopControl stop;
        BatchDriver driver(pipeline, numbering, stop, nullptr, threads);
        driver.setJournaled(true);
        const BatchResult result = driver.run(ListPhotoSource(recordsOf(paths)));
        SafeFileReplace::waitForReleases();
        lastId = driver.journalId();
        return result;
    }

    QTemporaryDir home;
    QTemporaryDir dir;
    QString lastId;

private:
    QByteArray m_oldHome;
};

struct FileState {
    QByteArray bytes;
    struct stat st {};
};

FileState stateOf(const QString& path) {
    FileState s{readBytes(path), {}};
    ::stat(QFile::encodeName(path).constData(), &s.st);
    return s;
}

void setTimes(const QString& path, time_t seconds, long nanoseconds) {
    const struct timespec times[2] = {{seconds - 100, 0}, {seconds, nanoseconds}};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0);
}

qint64 folderSize(const QString& folder) {
    qint64 size = 0;
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        size += QFileInfo(it.next()).size();
    return size;
}

TEST_F(RunJournalTest, AnInPlaceRunIsUndoneByteForByteWithItsFileTimes) {
    const QString jpeg = copySample(formatsDir() + "/Reagan.jpg", dir.path());
    const QString tiff = copySample(formatsDir() + "/Reagan.tiff", dir.path());
    for (const QString& path : {jpeg, tiff}) {
        setTimes(path, 1500000000, 123456789);
        ::chmod(QFile::encodeName(path).constData(), 0640);
    }
    const FileState jpegBefore = stateOf(jpeg);
    const FileState tiffBefore = stateOf(tiff);

    RunValues values = editRun(ProcessingMode::keepUnedited);
    edit(values, "Artist", "Undo Tester");
    const BatchResult result = journaledRun(values, {jpeg, tiff}, 2);
    ASSERT_TRUE(result.problems.isEmpty()) << result.problems.value(0).reason.toStdString();
    ASSERT_NE(readBytes(jpeg), jpegBefore.bytes);
    ASSERT_NE(readBytes(tiff), tiffBefore.bytes);
    // The JPEG's picture data stayed: only its head is kept, besides the whole TIFF.
    EXPECT_LT(folderSize(RunJournal::root()),
              tiffBefore.bytes.size() + jpegBefore.bytes.size() / 2);

    const QList<JournalRun> runs = RunJournal::runs();
    ASSERT_EQ(runs.size(), 1);
    EXPECT_EQ(runs[0].id, lastId);
    EXPECT_TRUE(runs[0].inPlace);
    EXPECT_EQ(runs[0].photos, 2);
    EXPECT_FALSE(runs[0].undone);

    const UndoReport report = RunJournal::undo();
    EXPECT_EQ(report.status, UndoReport::Status::Undone);
    EXPECT_EQ(report.id, lastId);
    EXPECT_TRUE(report.leftAlone.isEmpty()) << report.leftAlone.value(0).reason.toStdString();
    EXPECT_EQ(report.restored.size(), 2);
    for (const auto& [path, before] : {std::pair{jpeg, jpegBefore}, std::pair{tiff, tiffBefore}}) {
        const FileState after = stateOf(path);
        EXPECT_EQ(after.bytes, before.bytes) << path.toStdString();
        EXPECT_EQ(after.st.st_mtim.tv_sec, before.st.st_mtim.tv_sec);
        EXPECT_EQ(after.st.st_mtim.tv_nsec, before.st.st_mtim.tv_nsec);
        EXPECT_EQ(after.st.st_mode & 07777, 0640u);
    }
    EXPECT_TRUE(RunJournal::runs().value(0).undone);
    EXPECT_EQ(RunJournal::undo(lastId).status, UndoReport::Status::AlreadyUndone);
    EXPECT_EQ(RunJournal::undo().status, UndoReport::Status::NoSuchRun);
}

TEST_F(RunJournalTest, AFileChangedSinceTheRunIsLeftAloneAndNamed) {
    const QString touched = copySample(formatsDir() + "/Reagan.jpg", dir.path());
    const QString rewritten = copySample(formatsDir() + "/et-ExifTool.jpg", dir.path());
    const QString kept = copySample(formatsDir() + "/Reagan.tiff", dir.path());
    const QByteArray keptBefore = readBytes(kept);
    RunValues values = editRun(ProcessingMode::keepUnedited);
    edit(values, "Artist", "Undo Tester");
    ASSERT_TRUE(journaledRun(values, {touched, rewritten, kept}).problems.isEmpty());

    // One photo gets a new time only; another new bytes in its head, of the same size and
    // under its old time.
    setTimes(touched, 1600000000, 0);
    const FileState ran = stateOf(rewritten);
    QByteArray other = ran.bytes;
    other[40] = char(other[40] ^ 0x55);
    ASSERT_TRUE(writeBytes(rewritten, other));
    ::utimensat(AT_FDCWD, QFile::encodeName(rewritten).constData(),
                std::array<struct timespec, 2>{ran.st.st_atim, ran.st.st_mtim}.data(), 0);
    const QByteArray touchedNow = readBytes(touched);

    const UndoReport report = RunJournal::undo();
    ASSERT_EQ(report.leftAlone.size(), 2);
    EXPECT_EQ(report.leftAlone[0].path, touched);
    EXPECT_EQ(report.leftAlone[0].reason, QStringLiteral("changed since the run"));
    EXPECT_EQ(report.leftAlone[1].path, rewritten);
    EXPECT_EQ(report.leftAlone[1].reason, QStringLiteral("changed since the run"));
    EXPECT_EQ(readBytes(touched), touchedNow);
    EXPECT_EQ(readBytes(rewritten), other);
    EXPECT_EQ(report.restored, QStringList{kept});
    EXPECT_EQ(readBytes(kept), keptBefore);
}

TEST_F(RunJournalTest, ARunIntoAFolderHasTheFilesItMadeRemoved) {
    // A photo whose picture data is copied behind its new head, and a small one.
    const QString a = copySample(formatsDir() + "/ReaganLargeJpg.jpg", dir.path());
    const QString b = copySample(formatsDir() + "/et-ExifTool.jpg", dir.path());
    QTemporaryDir out;
    const QString earlier = out.filePath(QStringLiteral("earlier.txt"));
    ASSERT_TRUE(writeBytes(earlier, "not the run's"));
    const QByteArray aBefore = readBytes(a);
    RunValues values = editRun(ProcessingMode::keepUnedited, out.path());
    edit(values, "Artist", "Undo Tester");
    ASSERT_TRUE(journaledRun(values, {a, b}).problems.isEmpty());
    EXPECT_EQ(RunJournal::runs().value(0).folder, out.path());
    EXPECT_FALSE(RunJournal::runs().value(0).inPlace);
    const QString outA = out.filePath(QStringLiteral("ReaganLargeJpg.jpg"));
    const QString outB = out.filePath(QStringLiteral("et-ExifTool.jpg"));
    ASSERT_TRUE(QFile::exists(outA));
    ASSERT_TRUE(writeBytes(outB, readBytes(outB) + "more"));

    const UndoReport report = RunJournal::undo();
    EXPECT_EQ(report.restored, QStringList{outA});
    ASSERT_EQ(report.leftAlone.size(), 1);
    EXPECT_EQ(report.leftAlone[0].path, outB);
    EXPECT_FALSE(QFile::exists(outA));
    EXPECT_TRUE(QFile::exists(outB));
    EXPECT_TRUE(QFile::exists(earlier));
    EXPECT_EQ(readBytes(a), aBefore);
}

TEST_F(RunJournalTest, SidecarsTheRunChangedOrMadeAreUndoneWithTheirPhotos) {
    ValueFormScope form(ValueForm::standard);
    const QString withSidecar = makeJpeg(dir.filePath(QStringLiteral("a.jpg")));
    const QString without = makeJpeg(dir.filePath(QStringLiteral("b.jpg")));
    const QString oldSidecar = dir.filePath(QStringLiteral("a.xmp"));
    const QByteArray sidecarBytes = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                                    "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                                    "<rdf:Description rdf:about=\"\"/></rdf:RDF></x:xmpmeta>";
    ASSERT_TRUE(writeBytes(oldSidecar, sidecarBytes));
    const QByteArray photoBytes = readBytes(withSidecar);
    RunValues values = editRun(ProcessingMode::keepUnedited);
    values.sidecar.write = SidecarWrite::always;
    edit(values, "Artist", "Undo Tester");
    ASSERT_TRUE(journaledRun(values, {withSidecar, without}).problems.isEmpty());
    ASSERT_NE(readBytes(oldSidecar), sidecarBytes);
    const auto made = findSidecar(without);
    ASSERT_TRUE(made);
    const QString newSidecar = made->path;

    const UndoReport report = RunJournal::undo();
    EXPECT_TRUE(report.leftAlone.isEmpty()) << report.leftAlone.value(0).reason.toStdString();
    EXPECT_EQ(readBytes(oldSidecar), sidecarBytes);
    EXPECT_FALSE(QFile::exists(newSidecar));
    EXPECT_EQ(readBytes(withSidecar), photoBytes);
}

TEST_F(RunJournalTest, NoPhotoIsChangedWhoseOldBytesCannotBeKept) {
    const QString jpeg = copySample(formatsDir() + "/Reagan.jpg", dir.path());
    const QByteArray before = readBytes(jpeg);
    RunValues values = editRun(ProcessingMode::keepUnedited);
    edit(values, "Artist", "Undo Tester");
    {
        // A journal that loses its folder mid-run: the photo keeps its bytes.
        const auto journal = RunJournal::start(true, {}, 1);
        ASSERT_TRUE(journal);
        ASSERT_TRUE(QDir(RunJournal::root() + "/" + journal->id()).removeRecursively());
        const SafeFileReplace::WitnessScope scope(journal.get());
        SafeFileReplace file(jpeg);
        ASSERT_EQ(file.readTarget(std::nullopt), SafeFileReplace::ReadResult::Read);
        EXPECT_FALSE(file.replaceWith("x", 1, [](const QString&) { return true; }));
        EXPECT_TRUE(file.errorText().contains("journal")) << file.errorText().toStdString();
        EXPECT_EQ(readBytes(jpeg), before);
    }
    // A journal that cannot be started at all: the run changes no photo and says why.
    QDir().mkpath(QFileInfo(RunJournal::root()).path());
    QDir(RunJournal::root()).removeRecursively();
    ASSERT_TRUE(writeBytes(RunJournal::root(), "in the way"));
    const BatchResult result = journaledRun(values, {jpeg});
    ASSERT_EQ(result.problems.size(), 1);
    EXPECT_TRUE(result.problems[0].reason.contains("journal"))
        << result.problems[0].reason.toStdString();
    EXPECT_EQ(readBytes(jpeg), before);
}

TEST_F(RunJournalTest, OnlyTheNewestRunsAreKept) {
    QStringList ids;
    for (int i = 0; i < RunJournal::kKeptRuns + 2; ++i)
        ids.append(RunJournal::start(false, dir.path(), i)->id());
    const QList<JournalRun> runs = RunJournal::runs();
    ASSERT_EQ(runs.size(), RunJournal::kKeptRuns);
    EXPECT_EQ(runs.first().id, ids.last());
    EXPECT_EQ(runs.last().id, ids.at(2));
}

} // namespace
} // namespace tagmoor
