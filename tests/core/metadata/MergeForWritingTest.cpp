// Merging edits over a file's values, and the whole way back: what is written through the key
// table reads back through our own reader, row for row.
#include "WriteSupport.h"

#include "metadata/MergeForWriting.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

namespace tagmoor::test {
namespace {

TEST(MergeForWriting, EditsOverFileValuesInAllThreeBlocks) {
    QTemporaryDir dir;
    const QString photo = makeJpeg(dir.filePath(QStringLiteral("photo.jpg")));
    const ToolResult made = runTool(QStringLiteral("exiv2"),
                                    {QStringLiteral("-Mset Exif.Image.Artist Old"),
                                     QStringLiteral("-Mset Exif.Image.Model M"),
                                     QStringLiteral("-Mset Exif.Photo.ISOSpeedRatings 200"),
                                     QStringLiteral("-Mset Exif.Photo.FNumber 4/1"),
                                     QStringLiteral("-Mset Exif.Photo.MakerNote Undefined 1 2 3"),
                                     QStringLiteral("-Mset Exif.GPSInfo.GPSLatitude 10/1 30/1 0/1"),
                                     QStringLiteral("-Mset Exif.GPSInfo.GPSLatitudeRef S"),
                                     QStringLiteral("-Madd Iptc.Application2.Keywords one"),
                                     QStringLiteral("-Madd Iptc.Application2.Keywords two"),
                                     QStringLiteral("-Mset Xmp.aux.Lens L"), photo});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();

    MetadataFieldSet edited;
    edited.exif[0] = QStringLiteral("New");
    edited.exif[2] = QString(); // an edited empty text is a value
    edited.iptc[11] = QStringLiteral("Lyon");
    const QVariantMap merged = mergeForWriting(edited, photo);

    EXPECT_EQ(merged.keys(), QStringList({"exif", "iptc", "xmp"}));
    const QVariantMap exif = merged["exif"].toMap();
    EXPECT_EQ(exif.keys(),
              QStringList({"Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef",
                           "Exif.Image.Artist", "Exif.Image.Copyright", "Exif.Image.Model",
                           "Exif.Photo.FNumber", "Exif.Photo.ISOSpeedRatings"}));
    EXPECT_EQ(exif["Exif.Image.Artist"], QVariant(QStringLiteral("New")));
    EXPECT_EQ(exif["Exif.Image.Copyright"], QVariant(QString()));
    EXPECT_EQ(exif["Exif.Image.Model"], QVariant(QStringLiteral("M")));
    EXPECT_EQ(exif["Exif.Photo.ISOSpeedRatings"], QVariant::fromValue<qint64>(200));
    EXPECT_EQ(exif["Exif.Photo.FNumber"], QVariant::fromValue(4.0f));
    EXPECT_EQ(exif["Exif.GPSInfo.GPSLatitude"], QVariant::fromValue(-10.5f));
    const QVariantMap iptc = merged["iptc"].toMap();
    EXPECT_EQ(iptc.size(), 2);
    EXPECT_EQ(iptc["Iptc.Application2.Keywords"], QVariant(QStringLiteral("two")));
    EXPECT_EQ(iptc["Iptc.Application2.City"], QVariant(QStringLiteral("Lyon")));
    EXPECT_EQ(merged["xmp"].toMap(), QVariantMap({{"Xmp.aux.Lens", QStringLiteral("L")}}));

    // A file that can't be read leaves only the edits, still in three blocks.
    const QVariantMap alone = mergeForWriting(edited, dir.filePath(QStringLiteral("missing.jpg")));
    EXPECT_EQ(alone.keys(), QStringList({"exif", "iptc", "xmp"}));
    EXPECT_EQ(alone["exif"].toMap().size(), 2);
    EXPECT_EQ(alone["xmp"].toMap().size(), 0);
}

// A value of the row's kind for every written row, chosen so that it survives the tag's form.
MetadataFieldSet everyRow() {
    MetadataFieldSet set;
    for (const KeyRow& row : allKeyRows()) {
        PropertyValue& v = set.at(row);
        const QString n = QString::number(row.row);
        switch (row.read) {
        case ReadKind::NotRead:
            break;
        case ReadKind::Text:
            v = (row.block == KeyBlock::Iptc && row.row == 14) ? QStringLiteral("FRA")
                                                               : QStringLiteral("text ") + n;
            break;
        case ReadKind::DateText:
            v = row.block == KeyBlock::Xmp ? QStringLiteral("2019-05-01T10:20:30")
                                           : QStringLiteral("2019:05:01 10:20:30");
            break;
        case ReadKind::Int64:
            v = qint64(row.row + 1);
            break;
        case ReadKind::Float32:
            v = 2.5f + float(row.row);
            break;
        case ReadKind::Float64:
            break;
        case ReadKind::UInt8:
            v = quint8(1);
            break;
        case ReadKind::UInt64:
            v = quint64(1600);
            break;
        }
    }
    set.exif[exifrow::GPSLatitude] = 48.5f;
    set.exif[exifrow::GPSLatitudeRef] = QStringLiteral("N");
    set.exif[exifrow::GPSLongitude] = -2.25f;
    set.exif[exifrow::GPSLongitudeRef] = QStringLiteral("W");
    return set;
}

TEST(MergeForWriting, EveryRowReadsBackThroughOurReader) {
    QTemporaryDir dir;
    const QString photo = makeJpeg(dir.filePath(QStringLiteral("photo.jpg")), 160, 120);
    const QByteArray pixels = pictureFingerprint(photo);
    const MetadataFieldSet edited = everyRow();

    LogCapture log;
    MetadataTest bridge;
    bridge.setImagePropertiesAll(photo, mergeForWriting(edited, photo), {});
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();

    const MetadataFieldSet back = readMetadataFieldSet(photo);
    for (const KeyRow& row : allKeyRows()) {
        if (row.block == KeyBlock::Exif && row.row == 4)
            continue; // the user comment is checked below
        EXPECT_EQ(back.at(row), edited.at(row)) << row.key;
    }
    EXPECT_TRUE(back.exif[4].text().value_or(QString()).endsWith(QStringLiteral("text 4")));
    QString why;
    EXPECT_TRUE(readsCleanly(photo, &why)) << why.toStdString();
    EXPECT_EQ(pictureFingerprint(photo), pixels);

    // Writing the file's own values back changes no value.
    bridge.setImagePropertiesAll(photo, mergeForWriting({}, photo), {});
    EXPECT_EQ(readMetadataFieldSet(photo), back);

    // Nothing edited and every key listed: no row keeps a tag.
    bridge.setImagePropertiesAll(
        photo, mergeForWriting({}, photo),
        ErasedRows::ofKeys(exifKeyNames() + iptcKeyNames() + xmpKeyNames()));
    EXPECT_EQ(readMetadataFieldSet(photo), MetadataFieldSet());
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();
}

} // namespace
} // namespace tagmoor::test
