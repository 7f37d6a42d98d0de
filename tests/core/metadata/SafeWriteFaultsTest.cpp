// Writing under faults: whatever goes wrong, the photo is its old bytes or the complete new
// file, and no temporary file stays behind (except one of a killed process, which the next
// write in that folder removes).
#include "WriteSupport.h"

#include "metadata/MetadataTest.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/WriteHooks.h"

#include <QScopeGuard>

#include <grp.h>
#include <poll.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/time.h>

namespace tagmoor::test {
namespace {

using Step = SafeFileReplace::Step;

const WrittenProperties kArtist =
    properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Ann")}});

void writeArtist(const QString& path, const std::optional<FileStamp>& expected = std::nullopt) {
    MetadataTest().setImagePropertiesAll(path, kArtist, {}, expected);
}

QString artistOf(const QString& path) {
    return exiftoolTags(path)[QStringLiteral("IFD0:Artist")].toString();
}

class SafeWriteFaults : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        photo = copySample(formatsDir() + QStringLiteral("/Reagan.jpg"), dir.path());
        original = readBytes(photo);
    }
    void TearDown() override { test::setWriteFaultHook({}); }

    QTemporaryDir dir;
    QString photo;
    QByteArray original;
};

// The tests run as root, who may write any file; an ordinary user is a forked child that drops
// to "nobody" before writing.
int asNobody(const std::function<void()>& body) {
    if (setgroups(0, nullptr) != 0 || setgid(65534) != 0 || setuid(65534) != 0)
        return 99;
    body();
    return 0;
}

TEST_F(SafeWriteFaults, ReadOnlyFileOrFolderStaysAsItWas) {
    ASSERT_EQ(geteuid(), 0u) << "needs root to switch to another user";
    ASSERT_EQ(chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
    const QString log = dir.filePath(QStringLiteral("child.log"));

    // A read-only file in a folder that the user may write.
    const QString openFolder = dir.filePath(QStringLiteral("open"));
    ASSERT_TRUE(QDir().mkdir(openFolder));
    ASSERT_EQ(chmod(QFile::encodeName(openFolder).constData(), 0777), 0);
    const QString readOnly = copySample(photo, openFolder);
    ASSERT_EQ(chmod(QFile::encodeName(readOnly).constData(), 0444), 0);
    EXPECT_EQ(runInChild([&] { return asNobody([&] { writeArtist(readOnly); }); }, log), 0);
    EXPECT_EQ(readBytes(readOnly), original);
    EXPECT_TRUE(readBytes(log).contains(kExiv2ErrorStart.toUtf8())) << readBytes(log).data();
    EXPECT_TRUE(temporaryFilesIn(openFolder).isEmpty());

    // A file that the user may write in a folder that they may not: no temporary file can be
    // made beside it, so it is not written at all.
    const QString closedFolder = dir.filePath(QStringLiteral("closed"));
    ASSERT_TRUE(QDir().mkdir(closedFolder));
    const QString inClosed = copySample(photo, closedFolder);
    ASSERT_EQ(chown(QFile::encodeName(inClosed).constData(), 65534, 65534), 0);
    ASSERT_EQ(chmod(QFile::encodeName(closedFolder).constData(), 0555), 0);
    EXPECT_EQ(runInChild([&] { return asNobody([&] { writeArtist(inClosed); }); }, log), 0);
    EXPECT_EQ(readBytes(inClosed), original);
    EXPECT_TRUE(readBytes(log).contains(kExiv2ErrorStart.toUtf8())) << readBytes(log).data();
    EXPECT_TRUE(temporaryFilesIn(closedFolder).isEmpty());

    // Root writes the read-only file, and it stays read-only.
    writeArtist(readOnly);
    EXPECT_EQ(artistOf(readOnly), QStringLiteral("Ann"));
    struct stat st {};
    ASSERT_EQ(stat(QFile::encodeName(readOnly).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0444u);
}

TEST_F(SafeWriteFaults, InjectedFailureAtEachStepKeepsTheOldFile) {
    const std::pair<Step, int> faults[] = {
        {Step::Read, EIO},  {Step::Create, ENOSPC}, {Step::Write, ENOSPC},
        {Step::Flush, EIO}, {Step::Verify, EIO},    {Step::Rename, EXDEV},
    };
    for (const auto& [step, error] : faults) {
        SCOPED_TRACE(int(step));
        test::setWriteFaultHook(
            [step = step, error = error](Step at) { return at == step ? error : 0; });
        LogCapture log;
        writeArtist(photo);
        MetadataTest().cleanMetadata(photo, kEveryGroup);
        EXPECT_EQ(readBytes(photo), original);
        ASSERT_EQ(log.lines().size(), 1) << log.lines().join('\n').toStdString();
        EXPECT_TRUE(log.lines().first().startsWith(kExiv2ErrorStart));
        EXPECT_TRUE(log.lines().first().contains(QString::fromLocal8Bit(strerror(error))));
        EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
    }
    test::setWriteFaultHook({});
    writeArtist(photo);
    EXPECT_EQ(artistOf(photo), QStringLiteral("Ann"));
}

TEST_F(SafeWriteFaults, WithoutFlushAFailureAtEachStepLeavesNoFileOpenOrBehind) {
    // The new bytes of a write without the flush go into a file without a name: one left open
    // would hold its blocks, unseen, until the process ends.
    const auto openFiles = [] { return QDir("/proc/self/fd").entryList(QDir::Files).size(); };
    const qsizetype before = openFiles();
    MetadataTest bridge;
    bridge.setFlushesToDisk(false);
    for (const auto& [step, error] : {std::pair{Step::Create, ENOSPC},
                                      {Step::Write, ENOSPC},
                                      {Step::Verify, EIO},
                                      {Step::Rename, EXDEV}}) {
        SCOPED_TRACE(int(step));
        test::setWriteFaultHook(
            [step = step, error = error](Step at) { return at == step ? error : 0; });
        LogCapture log;
        bridge.setImagePropertiesAll(photo, kArtist, {});
        EXPECT_EQ(readBytes(photo), original);
        EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
        EXPECT_LE(openFiles(), before);
    }
    test::setWriteFaultHook({});
    bridge.setImagePropertiesAll(photo, kArtist, {});
    EXPECT_EQ(artistOf(photo), QStringLiteral("Ann"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    EXPECT_LE(openFiles(), before);
}

TEST_F(SafeWriteFaults, WithoutFlushTheFlushStepIsNeverReached) {
    // A caller may skip the flush for a target that holds nothing of the user's yet; the
    // write is otherwise the same, and the default still flushes.
    bool flushed = false;
    test::setWriteFaultHook([&](Step at) {
        flushed = flushed || at == Step::Flush;
        return 0;
    });
    MetadataTest bridge;
    bridge.setFlushesToDisk(false);
    bridge.setImagePropertiesAll(photo, kArtist, {});
    EXPECT_FALSE(flushed);
    EXPECT_EQ(artistOf(photo), QStringLiteral("Ann"));
    EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
    writeArtist(photo);
    EXPECT_TRUE(flushed);
}

TEST_F(SafeWriteFaults, FullDiskKeepsTheOldFile) {
    // A small file system of its own, filled up to a few kilobytes.
    const QString mountPoint = dir.filePath(QStringLiteral("small"));
    ASSERT_TRUE(QDir().mkdir(mountPoint));
    if (mount("tmpfs", QFile::encodeName(mountPoint).constData(), "tmpfs", 0, "size=256k") != 0)
        GTEST_SKIP() << "cannot mount a small file system here: " << strerror(errno);
    const auto unmount =
        qScopeGuard([&] { umount2(QFile::encodeName(mountPoint).constData(), MNT_DETACH); });
    const QString target = copySample(photo, mountPoint);
    QFile filler(mountPoint + QStringLiteral("/filler"));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly));
    const QByteArray block(4096, 'x');
    while (filler.write(block) == block.size() && filler.flush()) {
    }
    filler.close();

    LogCapture log;
    writeArtist(target);
    MetadataTest().cleanMetadata(target, {.cleanExif = true});
    EXPECT_EQ(readBytes(target), original);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().first().startsWith(kExiv2ErrorStart));
    EXPECT_TRUE(log.lines().first().contains(QString::fromLocal8Bit(strerror(ENOSPC))));
    EXPECT_TRUE(temporaryFilesIn(mountPoint).isEmpty());

    // With room again the same write goes through.
    ASSERT_TRUE(QFile::remove(filler.fileName()));
    writeArtist(target);
    EXPECT_EQ(artistOf(target), QStringLiteral("Ann"));
}

TEST_F(SafeWriteFaults, FileChangedSinceReadingIsNotWritten) {
    const std::optional<FileStamp> stamp = SafeFileReplace::stampOf(photo);
    ASSERT_TRUE(stamp);

    // Another program replaced the photo after we read it: its bytes win.
    const QByteArray theirs = readBytes(formatsDir() + QStringLiteral("/et-GPS.jpg"));
    ASSERT_TRUE(writeBytes(photo, theirs));
    {
        LogCapture log;
        writeArtist(photo, stamp);
        EXPECT_EQ(readBytes(photo), theirs);
        ASSERT_EQ(log.lines().size(), 1);
        EXPECT_TRUE(log.lines().first().contains(QStringLiteral("changed since it was read")));
    }

    // Same size, only touched later: still refused.
    ASSERT_TRUE(writeBytes(photo, original));
    const std::optional<FileStamp> fresh = SafeFileReplace::stampOf(photo);
    const struct timeval later[2] = {{1700000000, 0}, {1700000000, 0}};
    ASSERT_EQ(utimes(QFile::encodeName(photo).constData(), later), 0);
    writeArtist(photo, fresh);
    MetadataTest().cleanMetadata(photo, kEveryGroup, fresh);
    EXPECT_EQ(readBytes(photo), original);

    // Someone writes the photo while we write our copy: our rename is called off.
    test::setWriteFaultHook([&](Step step) {
        if (step == Step::Rename)
            writeBytes(photo, theirs);
        return 0;
    });
    {
        LogCapture log;
        writeArtist(photo);
        EXPECT_EQ(readBytes(photo), theirs);
        ASSERT_EQ(log.lines().size(), 1);
        EXPECT_TRUE(log.lines().first().startsWith(kExiv2ErrorStart));
    }
    test::setWriteFaultHook({});

    // An unchanged file with its stamp is written.
    const std::optional<FileStamp> current = SafeFileReplace::stampOf(photo);
    writeArtist(photo, current);
    EXPECT_EQ(artistOf(photo), QStringLiteral("Ann"));
    EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
}

TEST_F(SafeWriteFaults, KilledWriterLeavesTheOldFileAndItsLeftoverIsRemovedLater) {
    // Kill a writing child while its copy is half written, and again when the copy is complete
    // and flushed, just before it would replace the photo.
    for (const Step step : {Step::Write, Step::Rename}) {
        SCOPED_TRACE(int(step));
        const QString folder = dir.filePath(QStringLiteral("kill%1").arg(int(step)));
        ASSERT_TRUE(QDir().mkdir(folder));
        const QString target = copySample(photo, folder);
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = fork();
        if (child == 0) {
            close(ready[0]);
            test::setWriteFaultHook([&](Step at) {
                if (at == step) {
                    const char c = 'x';
                    (void)!::write(ready[1], &c, 1);
                    for (;;)
                        pause();
                }
                return 0;
            });
            writeArtist(target);
            _exit(0);
        }
        close(ready[1]);
        pollfd waitFor{ready[0], POLLIN, 0};
        ASSERT_EQ(poll(&waitFor, 1, 30000), 1) << "the child never reached the step";
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        close(ready[0]);
        ASSERT_TRUE(WIFSIGNALED(status));

        EXPECT_EQ(readBytes(target), original);
        const QStringList leftovers = temporaryFilesIn(folder);
        ASSERT_EQ(leftovers.size(), 1);
        EXPECT_TRUE(SafeFileReplace::isTemporaryName(leftovers.first()));
        EXPECT_TRUE(leftovers.first().startsWith(QStringLiteral(".tagmoor-%1-").arg(child)));

        // The next write in the folder sees that the writer is gone and removes its leftover.
        writeArtist(target);
        EXPECT_EQ(artistOf(target), QStringLiteral("Ann"));
        EXPECT_TRUE(temporaryFilesIn(folder).isEmpty());
    }
}

} // namespace
} // namespace tagmoor::test
