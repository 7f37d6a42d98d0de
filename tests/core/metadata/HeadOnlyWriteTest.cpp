// A JPEG's metadata are written from its head alone, its picture data copied from the file.
// The result must be, byte for byte, what the writer gives when the whole file goes through
// Exiv2: on every sample, on broken files, and on heads built to trip the marker walk.
#include "TestSupport.h"
#include "WriteSupport.h"

#include "metadata/JpegHeadWalk.h"
#include "metadata/MetadataTest.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/SafeMetadataEdit.h"
#include "metadata/WriteHooks.h"

#include <QDir>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <unistd.h>

namespace tagmoor::test {
namespace {

QByteArray headSegment(unsigned char marker, const QByteArray& body) {
    QByteArray s;
    s.append(char(0xff)).append(char(marker));
    const int size = int(body.size()) + 2;
    s.append(char(size >> 8)).append(char(size & 0xff));
    return s + body;
}

// A real JPEG with `extra` put right after its start-of-image marker.
QByteArray withSegments(const QByteArray& jpeg, const QByteArray& extra) {
    return jpeg.left(2) + extra + jpeg.mid(2);
}

// One file through each writer, each on its own copy: the outcome and the bytes.
struct Written {
    WriteResult result;
    QByteArray bytes;
};

Written writeOnce(const QByteArray& file, const QString& dir, bool whole,
                  const std::function<WriteResult(const QString&)>& write) {
    const QString path = dir + (whole ? QStringLiteral("/whole.jpg") : QStringLiteral("/head.jpg"));
    writeBytes(path, file);
    test::setWholeFilesOnly(whole);
    const auto reset = qScopeGuard([] { test::setWholeFilesOnly(false); });
    Written w{write(path), readBytes(path)};
    QFile::remove(path);
    return w;
}

void expectSameBothWays(const QByteArray& file, const QString& what, const QString& dir) {
    SCOPED_TRACE(what.toStdString());
    const std::function<WriteResult(const QString&)> writes[] = {
        [](const QString& path) {
            return MetadataTest().setImagePropertiesAll(
                path,
                properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Jane Doe")},
                            {QStringLiteral("Exif.Photo.ISOSpeedRatings"), qint64(400)}},
                           {{QStringLiteral("Iptc.Application2.City"), QStringLiteral("Zürich")}},
                           {{QStringLiteral("Xmp.aux.Lens"), QStringLiteral("Lens 50")}}),
                {});
        },
        [](const QString& path) {
            MetadataTest standard;
            standard.setWriteOptions({.standardForm = true});
            return standard.setImagePropertiesAll(
                path,
                properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Jane Doe")}},
                           {{QStringLiteral("Iptc.Application2.Headline"), QStringLiteral("x")}}),
                {});
        },
        [](const QString& path) {
            return MetadataTest().cleanMetadata(
                path,
                {.cleanIPTC = true, .cleanXMP = true, .cleanGPS = true, .cleanComment = true});
        },
    };
    for (const auto& write : writes) {
        const Written head = writeOnce(file, dir, false, write);
        const Written whole = writeOnce(file, dir, true, write);
        EXPECT_EQ(head.result.status, whole.result.status) << head.result.detail.toStdString();
        EXPECT_TRUE(head.bytes == whole.bytes)
            << "sizes " << head.bytes.size() << " and " << whole.bytes.size();
    }
    EXPECT_TRUE(temporaryFilesIn(dir).isEmpty());
}

TEST(HeadOnlyWrite, GivesTheBytesOfTheWholeFileWrite) {
    QTemporaryDir tmp;
    LogCapture log;
    for (const QString& dir : {formatsDir(), malformedDir()}) {
        for (const QString& sample : sampleFiles(dir)) {
            const QByteArray bytes = readBytes(sample);
            if (bytes.startsWith("\xff\xd8"))
                expectSameBothWays(bytes, sample, tmp.path());
        }
    }

    const QByteArray jpeg = readBytes(makeJpeg(tmp.filePath(QStringLiteral("base.jpg")), 320, 240));
    const QByteArray big(60000, 'x');
    QByteArray longHead; // past the first read, and past a second one
    for (int i = 0; i < 6; ++i)
        longHead += headSegment(0xe2, "ICC_PROFILE" + big);
    expectSameBothWays(withSegments(jpeg, longHead), QStringLiteral("a head of 360 KB"),
                       tmp.path());
    expectSameBothWays(withSegments(jpeg, headSegment(0xe4, "a") + QByteArray(5, char(0xff)) +
                                              QByteArray(3, '\0') + headSegment(0xfe, "note")),
                       QStringLiteral("fill and padding between segments"), tmp.path());
    const qsizetype scan = jpeg.indexOf("\xff\xda");
    expectSameBothWays(jpeg.left(scan + 2), QStringLiteral("ends at the start of scan"),
                       tmp.path());
    expectSameBothWays(jpeg.left(2) + headSegment(0xe4, "a") + "\xff\xd9" + jpeg.mid(2),
                       QStringLiteral("an end of image before the scan"), tmp.path());
    expectSameBothWays(jpeg.left(2) + "\xff\xe4\x00\x01" + jpeg.mid(2),
                       QStringLiteral("a segment shorter than its length field"), tmp.path());
    expectSameBothWays(jpeg.left(scan - 100), QStringLiteral("cut before the scan"), tmp.path());
}

TEST(HeadOnlyWrite, ScanStartWalksTheMarkersAndAsksForMore) {
    const QByteArray file = QByteArray("\xff\xd8", 2) + headSegment(0xe1, QByteArray(60000, 'e')) +
                            "\xff\xff\xff\xda" + QByteArray(1000, 'p');
    QByteArray held = file.left(10);
    int asks = 0;
    const auto more = [&](qint64 size) {
        ++asks;
        held = file.left(qsizetype(size));
        return held.size() >= size;
    };
    EXPECT_EQ(jpegScanStart(held, more), 2 + 60004 + 4);
    EXPECT_GT(asks, 0);
    EXPECT_EQ(jpegScanStart(held, more, 50000), std::nullopt);
    held = file.left(2) + "\xff\xd9";
    EXPECT_EQ(jpegScanStart(held, [](qint64) { return false; }), std::nullopt);
}

TEST(HeadOnlyWrite, KeptBytesComeFromTheFileAsItWasRead) {
    QTemporaryDir tmp;
    const QString path = tmp.filePath(QStringLiteral("photo.jpg"));
    QByteArray old(500 * 1024, Qt::Uninitialized);
    for (qsizetype i = 0; i < old.size(); ++i)
        old[i] = char(i * 7 + (i >> 9));
    ASSERT_TRUE(writeBytes(path, old));
    {
        SafeFileReplace file(path);
        ASSERT_EQ(file.readTarget(std::nullopt, 1000), SafeFileReplace::ReadResult::Read);
        EXPECT_EQ(file.originalBytes().size(), 1000);
        const QByteArray head("a new head");
        ASSERT_TRUE(file.replaceWith(head.constData(), std::size_t(head.size()), 700,
                                     [](const QString&) { return true; }))
            << file.errorText().toStdString();
    }
    EXPECT_TRUE(readBytes(path) == QByteArray("a new head") + old.mid(700));

    // Cut short by someone else after the head was read: nothing is written.
    ASSERT_TRUE(writeBytes(path, old));
    {
        SafeFileReplace file(path);
        ASSERT_EQ(file.readTarget(std::nullopt, 1000), SafeFileReplace::ReadResult::Read);
        ASSERT_EQ(::truncate(QFile::encodeName(path).constData(), 100000), 0);
        EXPECT_FALSE(file.replaceWith("x", 1, 700, [](const QString&) { return true; }));
        EXPECT_EQ(file.trouble(), SafeFileReplace::Trouble::Changed);
    }
    EXPECT_EQ(readBytes(path), old.left(100000));
    EXPECT_TRUE(temporaryFilesIn(tmp.path()).isEmpty());
}

} // namespace
} // namespace tagmoor::test
