// LibRaw reads camera files through a stream with a budget, so a damaged file whose header
// sends LibRaw's parser round a loop is given up on instead of holding the loader.
#include "TestSupport.h"
#include "TimeBound.h"
#include "metadata/BoundedRawStream.h"
#include "metadata/ImageProbe.h"
#include "metadata/PropertyLoading.h"
#include "workingset/ScanFixture.h"
#include "workingset/ThumbnailLoader.h"

#include <QTemporaryDir>
#include <QUrl>

#include <cstdio>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

QString testData(const char* name) {
    return QStringLiteral(TAGMOOR_TEST_DATA "/") + QLatin1String(name);
}

// Files that made LibRaw 0.20's PhaseOne parser loop for good (found by mutating the sample).
const char* const kEndlessPhaseOne[] = {"phaseone-zero-entries-endless-parse.iiq",
                                        "phaseone-damaged-tags-endless-parse.iiq"};

// Whether the call throws LibRaw's input error, as a spent stream must.
template <typename Call> bool throwsInputError(Call&& call) {
    try {
        call();
    } catch (LibRaw_exceptions e) {
        return e == LIBRAW_EXCEPTION_IO_EOF;
    }
    return false;
}

TEST(BoundedRawStream, ReadsSeeksAndScansLikeAFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("text.bin"));
    ASSERT_TRUE(writeBytes(path, " 12 -3.5e1x\nline two\nend"));
    BoundedRawStream s(path, {1000, 1 << 20});
    ASSERT_TRUE(s.valid());
    EXPECT_EQ(s.size(), 24);

    int number = 0;
    float real = 0;
    EXPECT_EQ(s.scanf_one("%d", &number), 1);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(s.scanf_one("%f", &real), 1);
    EXPECT_FLOAT_EQ(real, -35.0f);
    EXPECT_EQ(s.get_char(), 'x'); // the character after a number is left to read
    EXPECT_EQ(s.get_char(), '\n');
    char line[64];
    ASSERT_NE(s.gets(line, sizeof line), nullptr);
    EXPECT_STREQ(line, "line two\n");
    ASSERT_NE(s.gets(line, 3), nullptr); // at most size - 1 characters
    EXPECT_STREQ(line, "en");
    EXPECT_EQ(s.scanf_one("%d", &number), EOF);

    // Reads count whole items; at the end there is nothing, and eof says so.
    char buf[16] = {};
    EXPECT_EQ(s.seek(1, SEEK_SET), 0);
    EXPECT_EQ(s.read(buf, 2, 3), 3);
    EXPECT_EQ(QByteArray(buf, 6), "12 -3.");
    EXPECT_EQ(s.seek(-3, SEEK_END), 0);
    EXPECT_EQ(s.read(buf, 2, 4), 1); // three bytes left: one whole item of two
    EXPECT_TRUE(s.eof());
    EXPECT_EQ(s.get_char(), -1);
    EXPECT_EQ(s.gets(line, sizeof line), nullptr);

    // Before the start is refused; past the end is allowed and reads nothing.
    EXPECT_NE(s.seek(-1, SEEK_SET), 0);
    EXPECT_EQ(s.tell(), 24);
    EXPECT_EQ(s.seek(100, SEEK_CUR), 0);
    EXPECT_EQ(s.tell(), 124);
    EXPECT_EQ(s.read(buf, 1, 4), 0);
    EXPECT_EQ(s.seek(-123, SEEK_CUR), 0);
    EXPECT_EQ(s.get_char(), '1');

    EXPECT_FALSE(s.exhausted());
    EXPECT_FALSE(BoundedRawStream(dir.filePath(QStringLiteral("missing"))).valid());
}

TEST(BoundedRawStream, StopsForGoodOnceEitherBudgetIsSpent) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("data.bin"));
    ASSERT_TRUE(writeBytes(path, QByteArray(100, 'a')));

    BoundedRawStream calls(path, {3, 1 << 20});
    EXPECT_EQ(calls.get_char(), 'a');
    EXPECT_EQ(calls.seek(0, SEEK_SET), 0);
    EXPECT_EQ(calls.tell(), 0);
    EXPECT_FALSE(calls.exhausted());
    char buf[8];
    EXPECT_TRUE(throwsInputError([&] { calls.read(buf, 1, 1); }));
    EXPECT_TRUE(calls.exhausted());
    // A parser that swallows the error still stops at its next call, of any kind.
    EXPECT_TRUE(throwsInputError([&] { calls.tell(); }));
    EXPECT_TRUE(throwsInputError([&] { calls.eof(); }));

    // Bytes count as handed over, and reading the same bytes again counts again.
    BoundedRawStream bytes(path, {1000, 150});
    char big[100];
    EXPECT_EQ(bytes.read(big, 1, 100), 100);
    EXPECT_EQ(bytes.seek(0, SEEK_SET), 0);
    EXPECT_TRUE(throwsInputError([&] { bytes.read(big, 1, 100); }));
    EXPECT_TRUE(bytes.exhausted());
    // Asking for more than is left costs only what is left.
    BoundedRawStream tail(path, {1000, 10});
    EXPECT_EQ(tail.seek(-5, SEEK_END), 0);
    EXPECT_EQ(tail.read(big, 1, 1000), 5);
    EXPECT_FALSE(tail.exhausted());
}

TEST(RawParseBound, EndlessPhaseOneFilesAreNotReadableAndLoadQuickly) {
    for (const char* name : kEndlessPhaseOne) {
        const QString path = testData(name);
        ASSERT_TRUE(QFile::exists(path)) << name;
        finishWithin(30, name, [&] {
            EXPECT_FALSE(ImageProbe::probe(path).readable) << name;
            EXPECT_FALSE(loadImageProperties(QUrl::fromLocalFile(path))) << name;
            // The thumbnail goes through LibRaw too; whatever it finds, it returns.
            EXPECT_EQ(ThumbnailLoader::load({path, 120}).fileSize, QFileInfo(path).size());
        });
    }
    // The intact file they were made from parses well within the budget.
    const ImageProbeResult intact = ImageProbe::probe(formatsDir() + "/et-PhaseOne.iiq");
    EXPECT_TRUE(intact.readable);
    EXPECT_EQ(intact.pixelSize, QSize(7320, 5484));
}

TEST(RawParseBound, AScanOverEndlessFilesEndsWithTheGoodOnesListed) {
    QTemporaryDir dir;
    for (const char* name : kEndlessPhaseOne)
        copySample(testData(name), dir.path());
    const QString good = copySample(formatsDir() + "/et-PhaseOne.iiq", dir.path());

    ScanFixture f;
    f.stage({dir.path()});
    finishWithin(60, "the scan", [&] { ASSERT_TRUE(f.scan()); });
    EXPECT_EQ(f.listedPaths(), QStringList{good});
    EXPECT_EQ(f.controller.lastResult().counters.processedPhotos, 3);
}

} // namespace
} // namespace tagmoor
