#include "TestSupport.h"

#include "metadata/PreviewExtractor.h"
#include "workingset/ThumbnailLoader.h"

#include <QImage>

using namespace tagmoor;
using namespace tagmoor::test;

TEST(ThumbnailLoader, ScalesDownAndReportsTheFileFacts) {
    QTemporaryDir dir;
    const QString wide = makeJpeg(dir.filePath("wide.jpg"), 800, 400);
    const QString small = makeJpeg(dir.filePath("small.jpg"), 40, 30);

    const ThumbnailResult r = ThumbnailLoader::load({wide, 120});
    ASSERT_FALSE(r.image.isNull());
    EXPECT_EQ(r.image.width(), 120);
    EXPECT_EQ(r.image.height(), 60);
    EXPECT_EQ(r.originalSize, QSize(800, 400));
    EXPECT_EQ(r.fileSize, QFileInfo(wide).size());
    EXPECT_EQ(r.modified, QFileInfo(wide).lastModified());
    EXPECT_EQ(r.maxSide, 120);

    // A picture smaller than asked is not blown up.
    const ThumbnailResult s = ThumbnailLoader::load({small, 120});
    EXPECT_EQ(s.image.size(), QSize(40, 30));

    const ThumbnailResult table = ThumbnailLoader::load({wide, 30});
    EXPECT_EQ(std::max(table.image.width(), table.image.height()), 30);
}

TEST(ThumbnailLoader, MissingAndUnreadableFilesGiveNoPicture) {
    QTemporaryDir dir;
    const ThumbnailResult missing = ThumbnailLoader::load({dir.filePath("gone.jpg"), 120});
    EXPECT_TRUE(missing.image.isNull());
    EXPECT_EQ(missing.fileSize, -1);

    const QString text = dir.filePath("notes.jpg");
    ASSERT_TRUE(writeBytes(text, "this is not a picture at all"));
    const ThumbnailResult junk = ThumbnailLoader::load({text, 120});
    EXPECT_TRUE(junk.image.isNull());
    EXPECT_EQ(junk.fileSize, 28);
}

TEST(ThumbnailLoader, EverySampleLoadsWithinBoundsAndCommonFormatsDecode) {
    int decoded = 0;
    for (const QString& path : sampleFiles(formatsDir()) + sampleFiles(malformedDir())) {
        const ThumbnailResult r = ThumbnailLoader::load({path, 120});
        if (r.image.isNull())
            continue;
        ++decoded;
        EXPECT_LE(std::max(r.image.width(), r.image.height()), 120) << path.toStdString();
    }
    EXPECT_GE(decoded, 10);
    for (const char* name : {"Reagan.jpg", "Reagan.tiff", "ReaganSmallPng.png", "et-PNG.png"}) {
        const ThumbnailResult r = ThumbnailLoader::load({formatsDir() + "/" + name, 120});
        EXPECT_FALSE(r.image.isNull()) << name;
    }
}

TEST(PreviewExtractor, PicksAnEmbeddedPreviewAndToleratesFilesWithout) {
    // The Canon sample carries an embedded JPEG thumbnail in its EXIF data.
    QByteArray found;
    for (const QString& path : sampleFiles(formatsDir())) {
        const QByteArray bytes = PreviewExtractor::embeddedPreview(path, 120);
        if (!bytes.isEmpty() && !QImage::fromData(bytes).isNull()) {
            found = bytes;
            break;
        }
    }
    EXPECT_FALSE(found.isEmpty());

    QTemporaryDir dir;
    const QString plain = makeJpeg(dir.filePath("plain.jpg"));
    EXPECT_TRUE(PreviewExtractor::embeddedPreview(plain, 120).isEmpty());
    EXPECT_TRUE(PreviewExtractor::embeddedPreview(dir.filePath("missing.cr2"), 120).isEmpty());
    for (const QString& path : sampleFiles(malformedDir()))
        PreviewExtractor::embeddedPreview(path, 120); // must not throw or crash
}
