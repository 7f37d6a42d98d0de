#include "metadata/PropertyLoading.h"
#include "ExivFixture.h"
#include "foundation/ValueForm.h"
#include "metadata/ExtraTags.h"

#include <QDir>
#include <QTemporaryDir>
#include <QUrl>
#include <QtConcurrent/QtConcurrentMap>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

class PropertyLoading : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
};

QDateTime utc(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::UTC);
}

TEST_F(PropertyLoading, RecordJoinsTagValuesAndPixelSize) {
    const QString file = jpegWithTags(path("full.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.Image.Artist", Exiv2::asciiString, "Ann");
        addExif(exif, "Exif.Image.Orientation", Exiv2::unsignedShort, "6");
        addExif(exif, "Exif.Photo.FNumber", Exiv2::unsignedRational, "28/10");
        addExif(exif, "Exif.Photo.DateTimeOriginal", Exiv2::asciiString, "2019:05:01 10:20:30");
        addExif(exif, "Exif.Photo.DateTimeDigitized", Exiv2::asciiString, "2019:05:01 10:20");
        addExif(exif, "Exif.Image.DateTime", Exiv2::asciiString, "2020-06-07 18:00:00");
        addExif(exif, "Exif.GPSInfo.GPSLatitude", Exiv2::unsignedRational, "10/1 30/1 0/1");
        addExif(exif, "Exif.GPSInfo.GPSLatitudeRef", Exiv2::asciiString, "S");
        addExif(exif, "Exif.GPSInfo.GPSAltitudeRef", Exiv2::unsignedByte, "1");
        addExif(exif, "Exif.Photo.MakerNote", Exiv2::undefined, "1 2 3");
        addIptc(img.iptcData(), "Iptc.Application2.Keywords", "a");
        addIptc(img.iptcData(), "Iptc.Application2.Keywords", "b");
        img.xmpData()["Xmp.aux.Lens"] = "50mm";
        img.xmpData()["Xmp.photoshop.DateCreated"] = "2018-01-02 03:04:05";
        img.xmpData()["Xmp.xmp.ModifyDate"] = "not a date";
    });
    const auto record = loadImageProperties(QUrl::fromLocalFile(file));
    ASSERT_TRUE(record);
    EXPECT_EQ(record->url, QUrl::fromLocalFile(file));
    EXPECT_EQ(record->tiffProperties->artist.text(), QStringLiteral("Ann"));
    EXPECT_EQ(record->tiffProperties->orientation.int64(), 6);
    EXPECT_TRUE(record->orientation.isAbsent());
    EXPECT_EQ(record->exifProperties->fNumber.float32(), 2.8f);
    EXPECT_EQ(record->exifProperties->dateTimeOriginal.date(), utc(2019, 5, 1, 10, 20, 30));
    EXPECT_TRUE(record->createDate.isAbsent()); // no pattern takes a time without seconds
    EXPECT_EQ(record->modifyDate.date(), utc(2020, 6, 7, 18, 0, 0));
    EXPECT_EQ(record->gpsProperties->latitude.float32(), -10.5f);
    EXPECT_EQ(record->gpsProperties->latitudeRef.text(), QStringLiteral("S"));
    EXPECT_EQ(record->gpsProperties->altitudeRef.uint8(), quint8(1));
    EXPECT_EQ(record->iptcProperties->keywords.text(), QStringLiteral("b"));
    EXPECT_EQ(record->xmpDataProperties->lens.text(), QStringLiteral("50mm"));
    EXPECT_EQ(record->xmpDataProperties->photoshopCreateDate.date(), utc(2018, 1, 2, 3, 4, 5));
    EXPECT_TRUE(record->xmpDataProperties->modifyDate.isAbsent());
    EXPECT_EQ(record->pixelWidth.float64(), 64.0);
    EXPECT_EQ(record->pixelHeight.float64(), 48.0);
    EXPECT_TRUE(record->isSelected);
    EXPECT_FALSE(record->isTempDataAvailable);
}

TEST_F(PropertyLoading, PhotoWithoutTagsHasFiveEmptyGroupsAndItsSize) {
    const QString file = makeJpeg(path("bare.jpg"), 33, 17);
    const auto record = loadImageProperties(QUrl::fromLocalFile(file));
    ASSERT_TRUE(record);
    CGImageProperties expected;
    expected.url = QUrl::fromLocalFile(file);
    expected.tiffProperties.emplace();
    expected.exifProperties.emplace();
    expected.iptcProperties.emplace();
    expected.gpsProperties.emplace();
    expected.xmpDataProperties.emplace();
    expected.pixelWidth = 33.0;
    expected.pixelHeight = 17.0;
    EXPECT_EQ(*record, expected);
}

TEST_F(PropertyLoading, ReadersAreJoinedWhenOnlyOneOfThemUnderstandsTheFile) {
    // Exiv2 has no reader for a bare JPEG 2000 code stream: the size alone makes the record.
    const auto j2c =
        loadImageProperties(QUrl::fromLocalFile(formatsDir() + QStringLiteral("/et-Jpeg2000.j2c")));
    ASSERT_TRUE(j2c);
    EXPECT_EQ(j2c->pixelWidth.float64(), 8.0);
    EXPECT_TRUE(j2c->tiffProperties && *j2c->tiffProperties == TiffProperties{});

    // Camera files whose picture data was cut away still give their tags and sensor size.
    const auto nef =
        loadImageProperties(QUrl::fromLocalFile(formatsDir() + QStringLiteral("/et-Nikon.nef")));
    ASSERT_TRUE(nef);
    EXPECT_EQ(nef->tiffProperties->make.text(), QStringLiteral("NIKON CORPORATION"));
    EXPECT_GT(nef->pixelWidth.float64().value_or(0), 3000.0);

    // A JPEG whose frame header is cut off is no picture, whatever tags come before it.
    QByteArray bytes = readBytes(jpegWithTags(path("tagged.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Ann");
    }));
    writeBytes(path("headless.jpg"), bytes.left(bytes.indexOf("\xFF\xC0")));
    EXPECT_FALSE(loadImageProperties(QUrl::fromLocalFile(path("headless.jpg"))));
    // Cut after the frame header, the record keeps its tags and size.
    writeBytes(path("half.jpg"), bytes.left(bytes.indexOf("\xFF\xDA") + 40));
    const auto half = loadImageProperties(QUrl::fromLocalFile(path("half.jpg")));
    ASSERT_TRUE(half);
    EXPECT_EQ(half->tiffProperties->artist.text(), QStringLiteral("Ann"));
    EXPECT_EQ(half->pixelWidth.float64(), 64.0);
}

// "group.field=value(kind)" for every present value, for readable failures.
QStringList describe(const std::optional<CGImageProperties>& record) {
    QStringList out;
    if (!record)
        return {QStringLiteral("no record")};
    forEachPresentValue(*record, [&](const char* group, const char* field, const char*,
                                     const PropertyValue& value) {
        out << QStringLiteral("%1.%2=%3(%4)")
                   .arg(QLatin1String(group), QLatin1String(field), value.variant().toString(),
                        QLatin1String(PropertyValue::kindName(value.kind())));
    });
    return out;
}

TEST_F(PropertyLoading, ThreadsLoadingAtOnceGetTheSameRecords) {
    QList<QUrl> urls;
    for (const QString& file : sampleFiles(formatsDir()))
        urls << QUrl::fromLocalFile(file);
    QList<std::optional<CGImageProperties>> expected;
    for (const QUrl& url : urls)
        expected << loadImageProperties(url);
    QList<QUrl> many;
    for (int i = 0; i < 4; ++i)
        many += urls;
    const auto loaded = QtConcurrent::blockingMapped(
        many, [](const QUrl& url) { return loadImageProperties(url); });
    for (qsizetype i = 0; i < many.size(); ++i)
        EXPECT_EQ(describe(loaded[i]).join(' ').toStdString(),
                  describe(expected[i % urls.size()]).join(' ').toStdString());
}

} // namespace
} // namespace tagmoor

namespace tagmoor {
namespace {

// One parse gives what the two readers give apart: the record of loadImageProperties and the
// extras of readExtraValuesOf, for every sample (damaged ones and files of no photo type among
// them) and for a photo whose sidecar adds keywords and a rating, in both forms.
TEST_F(PropertyLoading, RecordAndExtrasFromOneParseAreThoseOfTwo) {
    QStringList files;
    for (const char* folder : {"formats", "malformed"}) {
        const QDir samples(QStringLiteral(TAGMOOR_SAMPLES "/") + QLatin1String(folder));
        for (const QString& name : samples.entryList(QDir::Files, QDir::Name))
            files << samples.filePath(name);
    }
    const QString withSidecar =
        copySample(QStringLiteral(TAGMOOR_SAMPLES "/formats/Reagan.jpg"), dir.path());
    ASSERT_TRUE(writeBytes(
        path("Reagan.xmp"),
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
        "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
        "rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
        "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmp:Rating=\"4\"><dc:subject><rdf:Bag>"
        "<rdf:li>Harbour</rdf:li></rdf:Bag></dc:subject></rdf:Description></rdf:RDF>"
        "</x:xmpmeta>"));
    files << withSidecar;
    for (const ValueForm form : {ValueForm::standard, ValueForm::described}) {
        const ValueFormScope scope(form);
        int withExtras = 0;
        for (const QString& file : std::as_const(files)) {
            SCOPED_TRACE(file.toStdString());
            const QUrl url = QUrl::fromLocalFile(file);
            const auto both = loadImagePropertiesAndExtras(url);
            const auto record = loadImageProperties(url);
            ASSERT_EQ(both.has_value(), record.has_value());
            if (!both)
                continue;
            EXPECT_TRUE(both->record == *record);
            EXPECT_EQ(both->extras, readExtraValuesOf(file));
            withExtras += both->extras ? 1 : 0;
        }
        EXPECT_GT(withExtras, 20);
    }
    ValueFormScope standard(ValueForm::standard);
    const auto read = loadImagePropertiesAndExtras(QUrl::fromLocalFile(withSidecar));
    ASSERT_TRUE(read && read->extras);
    EXPECT_EQ(read->extras->rating, 4);
    EXPECT_TRUE(read->extras->keywords.subject.contains(QStringLiteral("Harbour")));
}

} // namespace
} // namespace tagmoor
