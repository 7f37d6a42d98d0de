// The formats of today's cameras and phones: accepted in the standard form, read where Exiv2
// reads them, and never handed to a writer that cannot write them.
#include "TestSupport.h"
#include "metadata/ImageKind.h"
#include "metadata/MetadataFieldSet.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"
#include "model/KeyTable.h"
#include "workingset/SupportedExtensions.h"
#include "workingset/ThumbnailLoader.h"

#include <QUrl>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

QString modernFixture(const char* name) {
    return QStringLiteral(TAGMOOR_TEST_DATA "/modern/") + QLatin1String(name);
}

TEST(TodaysFormats, TheStandardFormAcceptsThemAndASettingKeepsTheClassicList) {
    {
        ValueFormScope scope(ValueForm::standard);
        for (const char* name : {"a.HEIC", "b.heif", "c.avif", "d.cr3", "e.jxl", "f.webp", "g.rw2"})
            EXPECT_TRUE(hasSupportedExtension(QLatin1String(name))) << name;
        EXPECT_EQ(supportedExtensions().last(), "photoslibrary");
        EXPECT_TRUE(panelExtensions().contains("heic"));
        EXPECT_FALSE(panelExtensions().contains("photoslibrary"));
        setOnlyClassicExtensions(true);
        EXPECT_EQ(supportedExtensions().size(), 39);
        EXPECT_FALSE(hasSupportedExtension("a.heic"));
        setOnlyClassicExtensions(std::nullopt);
    }
    ValueFormScope scope(ValueForm::described);
    EXPECT_EQ(supportedExtensions(), classicExtensions());
    EXPECT_FALSE(hasSupportedExtension("a.heic"));
    setOnlyClassicExtensions(false);
    EXPECT_TRUE(hasSupportedExtension("a.heic"));
    setOnlyClassicExtensions(std::nullopt);
}

TEST(TodaysFormats, KindsAreToldFromTheFirstBytes) {
    EXPECT_EQ(sniffImageKindOfFile(modernFixture("small.heic")), ImageKind::Heif);
    EXPECT_EQ(sniffImageKindOfFile(modernFixture("small.avif")), ImageKind::Heif);
    EXPECT_EQ(sniffImageKindOfFile(modernFixture("tags.cr3")), ImageKind::Cr3);
    EXPECT_EQ(sniffImageKindOfFile(modernFixture("small.jxl")), ImageKind::Jxl);
    EXPECT_EQ(sniffImageKindOfFile(modernFixture("small-box.jxl")), ImageKind::Jxl);
    // A video in the same box format is no photo.
    EXPECT_EQ(sniffImageKind(QByteArray("\0\0\0\x18"
                                        "ftypisom\0\0\0\0isommp41",
                                        24)),
              ImageKind::Unknown);
}

TEST(TodaysFormats, RecordsAreBuiltWithTheirTagsAndSize) {
    const auto cr3 = loadImageProperties(QUrl::fromLocalFile(modernFixture("tags.cr3")));
    ASSERT_TRUE(cr3);
    EXPECT_EQ(cr3->tiffProperties->artist.text(), QStringLiteral("Raw Artist"));
    EXPECT_EQ(cr3->tiffProperties->model.text(), QStringLiteral("Canon EOS R"));

    const auto heic = loadImageProperties(QUrl::fromLocalFile(modernFixture("small.heic")));
    ASSERT_TRUE(heic);
    // The size as shown: the coded picture is larger than its crop.
    EXPECT_EQ(heic->pixelWidth.float64(), 16.0);
    for (const char* name : {"small.avif", "small.jxl", "small-box.jxl"})
        EXPECT_TRUE(loadImageProperties(QUrl::fromLocalFile(modernFixture(name)))) << name;

    // Pictures for the list: libheif decodes HEIF and AVIF, Qt's plugin WebP.
    QTemporaryDir dir;
    const QString webp = dir.filePath("small.webp");
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    ASSERT_TRUE(picture.save(webp, "WEBP"));
    for (const QString& file : {modernFixture("small.heic"), modernFixture("small.avif"), webp}) {
        const ThumbnailResult thumbnail = ThumbnailLoader::load({file, 8});
        EXPECT_FALSE(thumbnail.image.isNull()) << file.toStdString();
        EXPECT_LE(std::max(thumbnail.image.width(), thumbnail.image.height()), 8);
    }
    // WebP is written in place, as Exiv2 writes it.
    MetadataFieldSet edits;
    edits.at(*findKeyRow("Exif.Image.Artist")) = PropertyValue(QStringLiteral("Web Artist"));
    ASSERT_TRUE(MetadataTest().writeMergedFields(webp, edits, {}).written());
    EXPECT_EQ(loadImageProperties(QUrl::fromLocalFile(webp))->tiffProperties->artist.text(),
              QStringLiteral("Web Artist"));
}

TEST(TodaysFormats, AFormatExiv2CannotWriteKeepsItsBytes) {
    QTemporaryDir dir;
    QStringList files;
    for (const char* name : {"small.heic", "small.avif", "tags.cr3", "small.jxl", "small-box.jxl"})
        files << copySample(modernFixture(name), dir.path());
    for (const char* name : {"et-Minolta.mrw", "et-FujiFilm.raf"})
        files << copySample(formatsDir() + QLatin1Char('/') + QLatin1String(name), dir.path());
    MetadataFieldSet edits;
    edits.at(*findKeyRow("Exif.Image.Artist")) = PropertyValue(QStringLiteral("New"));
    for (const bool standard : {false, true}) {
        MetadataTest bridge;
        WriteOptions options;
        options.standardForm = standard;
        bridge.setWriteOptions(options);
        for (const QString& file : files) {
            const QByteArray before = readBytes(file);
            const WriteResult result = bridge.writeMergedFields(file, edits, {});
            EXPECT_EQ(result.status, WriteStatus::NotWritable) << file.toStdString();
            EXPECT_EQ(readBytes(file), before) << file.toStdString();
        }
    }
}

} // namespace
} // namespace tagmoor
