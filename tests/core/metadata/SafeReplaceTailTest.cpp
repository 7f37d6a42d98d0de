// The replacement copies the end that the new bytes share with the old file from that file;
// whatever the lengths and wherever the first difference falls, the file must end up holding
// exactly the new bytes.
#include "TestSupport.h"

#include "foundation/Checksum.h"
#include "metadata/SafeFileReplace.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

#include <cerrno>
#include <sys/stat.h>

namespace tagmoor::test {
namespace {

QByteArray randomBytes(int size, quint32 seed) {
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator random(seed);
    for (char& c : bytes)
        c = char(random.bounded(256));
    return bytes;
}

TEST(SafeReplaceTail, NewBytesLandExactlyWhateverTheyShareWithTheOld) {
    QTemporaryDir tmp;
    const QString path = tmp.path() + "/photo.jpg";
    const QByteArray old = randomBytes(300 * 1024 + 123, 1);
    const QByteArray tail = old.right(old.size() - 5000);

    struct Case {
        const char* what;
        QByteArray bytes;
        qsizetype sharedTail;
    };
    QByteArray lastByteDiffers = old;
    lastByteDiffers[lastByteDiffers.size() - 1] = char(~lastByteDiffers.back());
    QByteArray differsAtABlockEdge = old;
    differsAtABlockEdge[old.size() - 4096 * 3 - 1] =
        char(~differsAtABlockEdge[old.size() - 4096 * 3 - 1]);
    const Case cases[] = {
        {"a longer head", randomBytes(7000, 2) + tail, tail.size()},
        {"a shorter head", randomBytes(10, 3) + tail, tail.size()},
        {"one byte changed just before a block", differsAtABlockEdge, 4096 * 3},
        {"the last byte changed", lastByteDiffers, 0},
        {"the same bytes", old, old.size()},
        {"a short new file", old.right(100), 100},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(writeBytes(path, old));
        EXPECT_EQ(SafeFileReplace::unchangedTailSize(c.bytes.constData(),
                                                     std::size_t(c.bytes.size()), old),
                  std::size_t(c.sharedTail));
        SafeFileReplace file(path);
        ASSERT_EQ(file.readTarget(std::nullopt), SafeFileReplace::ReadResult::Read);
        ASSERT_TRUE(file.replaceWith(c.bytes.constData(), std::size_t(c.bytes.size()),
                                     [](const QString&) { return true; }))
            << file.errorText().toStdString();
        EXPECT_TRUE(readBytes(path) == c.bytes);
    }
}

// A copy written without the flush goes through memory to be summed as it is written. However
// far the new head moves the kept bytes within their pages (the copy places its pieces to suit
// the kernel), the file holds exactly the new head and the old tail, and the sum is the file's.
TEST(SafeReplaceTail, KeptBytesLandExactlyWhereverTheHeadMovesThem) {
    struct Sums : SafeFileReplace::Witness {
        bool beforeReplace(const QString&, const QByteArray&, qint64, const char*, std::size_t,
                           const struct stat&, QString*) override {
            return true;
        }
        void written(const struct stat&, std::uint32_t crc) override { sums << crc; }
        QList<std::uint32_t> sums;
    } witness;
    const SafeFileReplace::WitnessScope scope(&witness);
    QTemporaryDir tmp;
    const QString source = tmp.path() + "/source.jpg";
    const QByteArray old = randomBytes(700 * 1024 + 77, 8);
    ASSERT_TRUE(writeBytes(source, old));
    for (const int shift : {-4096, -13, 0, 1, 8, 24, 31, 32, 100, 4095}) {
        SCOPED_TRACE(shift);
        const QByteArray head = randomBytes(5000 + shift, quint32(100 + shift));
        const QString made = tmp.path() + QStringLiteral("/made%1.jpg").arg(shift);
        SafeFileReplace::CopyScope copy(source, made, [](int) { return true; });
        SafeFileReplace file(source);
        file.setFlushToDisk(false);
        ASSERT_EQ(file.readTarget(std::nullopt, 128 * 1024), SafeFileReplace::ReadResult::Read);
        ASSERT_TRUE(file.replaceHeadWith(head.constData(), std::size_t(head.size()), 5000,
                                         [](QByteArray&) { return true; }));
        const QByteArray landed = readBytes(made);
        EXPECT_TRUE(landed == head + old.mid(5000));
        ASSERT_FALSE(witness.sums.isEmpty());
        EXPECT_EQ(witness.sums.takeLast(), crc32c(landed.constData(), std::size_t(landed.size())));
    }
}

// A photo replaced on disk keeps its old bytes under a hidden name until a background thread
// drops it: all of them by the time a wait for the releases returns after many, and soon after
// a single replacement even when nobody waits for it.
TEST(SafeReplaceTail, TheOldFilesHiddenNamesGoSoonAndAllOfThemOnAWait) {
    QTemporaryDir tmp;
    const auto everything = [&] {
        return QDir(tmp.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    };
    const auto replace = [&](const QString& name, int seed) {
        const QString path = tmp.path() + "/" + name;
        ASSERT_TRUE(writeBytes(path, randomBytes(2000, quint32(seed))));
        SafeFileReplace file(path);
        file.setFlushToDisk(true);
        ASSERT_EQ(file.readTarget(std::nullopt), SafeFileReplace::ReadResult::Read);
        const QByteArray bytes = randomBytes(1000, quint32(seed + 1000));
        ASSERT_TRUE(file.replaceWith(bytes.constData(), std::size_t(bytes.size()),
                                     [](const QString&) { return true; }));
    };
    QStringList names;
    for (int i = 0; i < 40; ++i) {
        names << QStringLiteral("p%1.jpg").arg(i, 2, 10, QLatin1Char('0'));
        replace(names.back(), i + 2);
    }
    SafeFileReplace::waitForReleases();
    EXPECT_EQ(everything(), names);

    replace("q.jpg", 1);
    names << "q.jpg";
    QElapsedTimer waited;
    waited.start();
    while (everything() != names && waited.elapsed() < 10000)
        QThread::msleep(5);
    EXPECT_EQ(everything(), names);
}

TEST(SafeReplaceTail, AHeadCheckSeesTheHeadAsTheFileHoldsItAndCanStopTheReplacement) {
    QTemporaryDir tmp;
    const QString path = tmp.path() + "/photo.jpg";
    const QByteArray old = randomBytes(200 * 1024 + 7, 4);
    const qint64 keptFrom = 9000;
    for (const int headSize : {1, 5000, 9000, 70000}) {
        SCOPED_TRACE(headSize);
        const QByteArray head = randomBytes(headSize, quint32(headSize));
        ASSERT_TRUE(writeBytes(path, old));
        // A check that refuses leaves the old bytes; one that accepts has seen exactly the new
        // head, and the file is that head and the old end.
        for (const bool accept : {false, true}) {
            SafeFileReplace file(path);
            ASSERT_EQ(file.readTarget(std::nullopt, 4096), SafeFileReplace::ReadResult::Read);
            QByteArray seen;
            const bool replaced = file.replaceHeadWith(head.constData(), std::size_t(head.size()),
                                                       keptFrom, [&](QByteArray& written) {
                                                           seen = written;
                                                           return accept;
                                                       });
            EXPECT_EQ(replaced, accept) << file.errorText().toStdString();
            EXPECT_TRUE(seen == head);
            EXPECT_TRUE(readBytes(path) == (accept ? head + old.mid(keptFrom) : old));
        }
    }
    SafeFileReplace::waitForReleases();
    QDir folder(tmp.path());
    EXPECT_EQ(folder.entryList(QDir::Files | QDir::Hidden).size(), 1);
}

// A copy reads its source (through a link) and makes a new file at a free name; it replaces
// nothing: not its source, not a file that took the name first, not another file written on
// the thread meanwhile.
TEST(SafeReplaceTail, ACopyMakesANewFileAndReplacesNothing) {
    QTemporaryDir tmp;
    const QString source = tmp.path() + "/source.jpg";
    const QString link = tmp.path() + "/link.jpg";
    const QByteArray old = randomBytes(150 * 1024, 5);
    const QByteArray head = randomBytes(3000, 6);
    ASSERT_TRUE(writeBytes(source, old));
    ASSERT_TRUE(QFile::link(source, link));
    ASSERT_EQ(::chmod(QFile::encodeName(source).constData(), 0444), 0);
    const auto copyInto = [&](const QString& path, const QString& destination, bool dated) {
        int seenFd = -1;
        SafeFileReplace::CopyScope copy(link, destination, [&](int fd) {
            seenFd = fd;
            return dated;
        });
        SafeFileReplace file(path);
        file.setFlushToDisk(false);
        const bool read = file.readTarget(std::nullopt, 4096) == SafeFileReplace::ReadResult::Read;
        const bool done = read && file.replaceHeadWith(head.constData(), std::size_t(head.size()),
                                                       5000, [](QByteArray&) { return true; });
        EXPECT_EQ(done, copy.published());
        EXPECT_EQ(seenFd >= 0, read && path == link);
        return std::pair{done, copy.placeError()};
    };

    const QString made = tmp.path() + "/made.jpg";
    EXPECT_EQ(copyInto(link, made, true), std::pair(true, 0));
    EXPECT_TRUE(readBytes(made) == head + old.mid(5000));
    EXPECT_TRUE(QFileInfo(made).permissions() & QFile::WriteOwner);

    const QString taken = tmp.path() + "/taken.jpg";
    const QByteArray theirs = randomBytes(20000, 7);
    ASSERT_TRUE(writeBytes(taken, theirs));
    EXPECT_EQ(copyInto(link, taken, true), std::pair(false, EEXIST));
    EXPECT_TRUE(readBytes(taken) == theirs);

    const QString undated = tmp.path() + "/undated.jpg";
    EXPECT_EQ(copyInto(link, undated, false), std::pair(false, 0));
    EXPECT_EQ(copyInto(taken, undated, true), std::pair(false, 0));
    EXPECT_FALSE(QFileInfo::exists(undated));
    EXPECT_TRUE(readBytes(taken) == theirs);

    EXPECT_TRUE(readBytes(source) == old);
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(QDir(tmp.path()).entryList(QDir::Files | QDir::Hidden | QDir::System),
              (QStringList{"link.jpg", "made.jpg", "source.jpg", "taken.jpg"}));
}

} // namespace
} // namespace tagmoor::test
