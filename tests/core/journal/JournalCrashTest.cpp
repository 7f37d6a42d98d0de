// The journal under a kill, with a torn last entry, and in the form earlier versions wrote.
#include "../batch/BatchTestSupport.h"
#include "../metadata/WriteHooks.h"

#include "foundation/Checksum.h"
#include "journal/RunJournal.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QThread>

#include <atomic>

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;
using Step = SafeFileReplace::Step;

class JournalCrashTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_oldHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    }
    void TearDown() override {
        setWriteFaultHook({});
        qputenv("XDG_DATA_HOME", m_oldHome);
    }

    // Three photos of the dir, and their bytes now.
    QStringList threePhotos() {
        QStringList paths;
        for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) {
            const QString path = dir.filePath(QLatin1String(name));
            QFile::copy(formatsDir() + "/Reagan.jpg", path);
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
            paths << path;
            before << readBytes(path);
        }
        return paths;
    }

    QString inPlaceRun(const QStringList& paths) {
        RunValues values = editRun(ProcessingMode::keepUnedited);
        edit(values, "Artist", "Crash Tester");
        const PhotoPipeline pipeline(values);
        RenameNumbering numbering;
        StopControl stop;
        BatchDriver driver(pipeline, numbering, stop, nullptr, 1);
        driver.setJournaled(true);
        driver.run(ListPhotoSource(recordsOf(paths)));
        SafeFileReplace::waitForReleases();
        return driver.journalId();
    }

    QString recordsFile() const {
        return RunJournal::root() + "/" + RunJournal::runs().value(0).id + "/records.log";
    }

    QTemporaryDir home;
    QTemporaryDir dir;
    QList<QByteArray> before;

private:
    QByteArray m_oldHome;
};

TEST_F(JournalCrashTest, AKillAtAnyStepOfAPhotoLeavesItOldOrNewWithItsRecord) {
    // The second photo's replacement is stopped by a kill: with its new bytes flushed but no
    // record yet, and with its record on disk just before the rename.
    for (const Step step : {Step::Flush, Step::Rename}) {
        SCOPED_TRACE(int(step));
        before.clear();
        QDir(dir.path()).removeRecursively();
        QDir().mkpath(dir.path());
        QDir(RunJournal::root()).removeRecursively();
        const QStringList paths = threePhotos();
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            ::close(ready[0]);
            int reached = 0;
            setWriteFaultHook([&](Step at) {
                if (at == step && ++reached == 2) {
                    const char c = 'x';
                    (void)!::write(ready[1], &c, 1);
                    for (;;)
                        pause();
                }
                return 0;
            });
            inPlaceRun(paths);
            _exit(0);
        }
        ::close(ready[1]);
        pollfd waitFor{ready[0], POLLIN, 0};
        ASSERT_EQ(poll(&waitFor, 1, 30000), 1) << "the child never reached the step";
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ::close(ready[0]);
        ASSERT_TRUE(WIFSIGNALED(status));

        EXPECT_NE(readBytes(paths[0]), before[0]);
        EXPECT_EQ(readBytes(paths[1]), before[1]);
        EXPECT_EQ(readBytes(paths[2]), before[2]);
        // The photo that was replaced comes back; the one whose replacement never happened
        // keeps its bytes, whether or not its record made it.
        const UndoReport report = RunJournal::undo();
        EXPECT_EQ(report.restored, QStringList{paths[0]});
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(readBytes(paths[i]), before[i]) << i;
        EXPECT_EQ(report.leftAlone.size(), step == Step::Rename ? 1 : 0);
    }
}

TEST_F(JournalCrashTest, AnEntryCutShortIsNoRecordAndTheOthersStillUndo) {
    const QStringList paths = threePhotos();
    inPlaceRun(paths.mid(0, 2));
    for (int i = 0; i < 2; ++i)
        ASSERT_NE(readBytes(paths[i]), before[i]);
    const qint64 whole = QFileInfo(recordsFile()).size();

    // A third entry torn inside its old bytes, as a crash in the middle of its write leaves it.
    const QJsonObject torn{{"t", "replaced"}, {"path", paths[2]},      {"bytes", 5000},
                           {"keptFrom", -1},  {"newSize", 1},          {"crc32c", 0},
                           {"mode", 0600},    {"atime", QJsonValue()}, {"mtime", QJsonValue()}};
    QFile records(recordsFile());
    ASSERT_TRUE(records.open(QIODevice::Append));
    records.write(QJsonDocument(torn).toJson(QJsonDocument::Compact) + "\n" + QByteArray(40, 'z'));
    records.close();
    ASSERT_GT(QFileInfo(recordsFile()).size(), whole);

    const UndoReport report = RunJournal::undo();
    EXPECT_EQ(report.restored, paths.mid(0, 2));
    EXPECT_TRUE(report.leftAlone.isEmpty());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(readBytes(paths[i]), before[i]) << i;
}

TEST_F(JournalCrashTest, RecordsOfManyThreadsAtOnceAreEachWholeAndUndo) {
    // Each thread's records go in while another thread's flush is under way.
    constexpr int kThreads = 4;
    constexpr int kEach = 25;
    const auto journal = RunJournal::start(true, {}, kThreads * kEach);
    ASSERT_TRUE(journal);
    const auto oldBytes = [](int i) { return QByteArray(100 + i * 37, char('a' + i % 26)); };
    const auto newBytes = [](int i) { return "new bytes of photo " + QByteArray::number(i); };
    QStringList paths;
    for (int i = 0; i < kThreads * kEach; ++i) {
        paths << dir.filePath(QStringLiteral("p%1.jpg").arg(i));
        ASSERT_TRUE(writeBytes(paths.last(), oldBytes(i)));
    }
    std::atomic<int> refused = 0;
    QList<QThread*> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads << QThread::create([&, t] {
            for (int i = t * kEach; i < (t + 1) * kEach; ++i) {
                struct stat old {};
                ::stat(QFile::encodeName(paths[i]).constData(), &old);
                const QByteArray next = newBytes(i);
                QString error;
                if (!journal->beforeReplace(paths[i], oldBytes(i), -1, next.constData(),
                                            std::size_t(next.size()), old, &error))
                    ++refused;
                writeBytes(paths[i], next);
            }
            journal->settleReplaced();
        });
        threads.last()->start();
    }
    for (QThread* thread : threads) {
        thread->wait();
        delete thread;
    }
    ASSERT_EQ(refused.load(), 0);

    const UndoReport report = RunJournal::undo();
    EXPECT_EQ(report.restored.size(), paths.size());
    EXPECT_TRUE(report.leftAlone.isEmpty()) << report.leftAlone.value(0).reason.toStdString();
    for (int i = 0; i < paths.size(); ++i)
        EXPECT_EQ(readBytes(paths[i]), oldBytes(i)) << i;
}

TEST_F(JournalCrashTest, AJournalOfAnEarlierVersionStillUndoes) {
    // Its records in "records.jsonl", old bytes in a file of their own, SHA-256 for what the run
    // left.
    const QString photo = dir.filePath("photo.jpg");
    const QString made = dir.filePath("made.jpg");
    ASSERT_TRUE(writeBytes(photo, "new bytes of the photo"));
    ASSERT_TRUE(writeBytes(made, "a file the run made"));
    const auto journal = RunJournal::start(true, {}, 2);
    ASSERT_TRUE(journal);
    const QString folder = RunJournal::root() + "/" + journal->id();
    ASSERT_TRUE(QFile::remove(folder + "/records.log"));
    ASSERT_TRUE(writeBytes(folder + "/0.bin", "the old bytes"));
    const auto sha = [](const QByteArray& bytes) {
        return QString::fromLatin1(
            QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
    };
    const auto stamp = [](const QString& path) {
        struct stat st {};
        ::stat(QFile::encodeName(path).constData(), &st);
        return st;
    };
    const struct stat madeSt = stamp(made);
    const QJsonObject replaced{{"t", "replaced"},
                               {"path", photo},
                               {"blob", "0.bin"},
                               {"keptFrom", -1},
                               {"newSize", 22},
                               {"hash", sha("new bytes of the photo")},
                               {"mode", 0644},
                               {"atime", QJsonArray{1500000000, 0}},
                               {"mtime", QJsonArray{1500000000, 0}}};
    const QJsonObject created{
        {"t", "created"},
        {"path", made},
        {"size", 19},
        {"mtime", QJsonArray{double(madeSt.st_mtim.tv_sec), double(madeSt.st_mtim.tv_nsec)}},
        {"hash", sha("a file the run made")}};
    ASSERT_TRUE(writeBytes(folder + "/records.jsonl",
                           QJsonDocument(replaced).toJson(QJsonDocument::Compact) + "\n" +
                               QJsonDocument(created).toJson(QJsonDocument::Compact) + "\n"));

    const UndoReport report = RunJournal::undo();
    EXPECT_TRUE(report.leftAlone.isEmpty()) << report.leftAlone.value(0).reason.toStdString();
    EXPECT_EQ(report.restored, (QStringList{photo, made}));
    EXPECT_EQ(readBytes(photo), "the old bytes");
    EXPECT_FALSE(QFile::exists(made));
}

TEST(JournalChecksum, IsTheCastagnoliCrcOnEveryLengthAndAlignment) {
    // The check value of the polynomial, and the sums of RFC 3720's test patterns.
    EXPECT_EQ(crc32c("123456789", 9), 0xE3069283u);
    EXPECT_EQ(crc32c(QByteArray(32, '\0').constData(), 32), 0x8A9136AAu);
    EXPECT_EQ(crc32c(QByteArray(32, '\xff').constData(), 32), 0x62A8AB43u);
    EXPECT_EQ(crc32c(nullptr, 0), 0u);
    // The processor's instruction and the tables agree, whatever the start and the length, and
    // a sum taken in pieces is the sum of the whole.
    // The sizes cross the lengths at which long runs are summed in three streams.
    QByteArray bytes(3 * 8192 * 2 + 3 * 256 * 3 + 64, Qt::Uninitialized);
    QRandomGenerator random(7);
    for (char& c : bytes)
        c = char(random.bounded(256));
    for (int offset = 0; offset < 9; ++offset) {
        for (const int size : {0, 1, 7, 8, 9, 63, 767, 768, 1000, 4096, 3 * 8192 - 1, 3 * 8192,
                               3 * 8192 + 3 * 256 + 13, 3 * 8192 * 2 + 3 * 256 * 3}) {
            const char* at = bytes.constData() + offset;
            const std::uint32_t whole = crc32c(at, std::size_t(size));
            EXPECT_EQ(whole, crc32cPortable(at, std::size_t(size))) << offset << " " << size;
            const std::size_t half = std::size_t(size) / 2;
            EXPECT_EQ(whole, crc32c(at + half, std::size_t(size) - half, crc32c(at, half)));
        }
    }
}

} // namespace
} // namespace tagmoor
