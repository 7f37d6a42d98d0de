// Merging edits over a file's values, and the whole way back: what is written through the key
// table reads back through our own reader, row for row.
#include "WriteSupport.h"

#include "metadata/MergeForWriting.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

namespace tagmoor::test {
namespace {

// The keys of the rows that have a value, sorted.
QStringList keysWithValues(const WrittenProperties& written, std::span<const KeyRow> rows) {
    QStringList keys;
    for (const KeyRow& row : rows) {
        if (written.has(row))
            keys << QString::fromLatin1(row.key);
    }
    keys.sort();
    return keys;
}

const PropertyValue& valueOf(const WrittenProperties& written, const char* key) {
    return written.at(*findKeyRow(QString::fromLatin1(key)));
}

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
    const WrittenProperties merged = mergeForWriting(edited, photo);

    EXPECT_EQ(keysWithValues(merged, exifKeyRows()),
              QStringList({"Exif.GPSInfo.GPSLatitude", "Exif.GPSInfo.GPSLatitudeRef",
                           "Exif.Image.Artist", "Exif.Image.Copyright", "Exif.Image.Model",
                           "Exif.Photo.FNumber", "Exif.Photo.ISOSpeedRatings"}));
    EXPECT_EQ(valueOf(merged, "Exif.Image.Artist"), PropertyValue(QStringLiteral("New")));
    EXPECT_EQ(valueOf(merged, "Exif.Image.Copyright"), PropertyValue(QString()));
    EXPECT_EQ(valueOf(merged, "Exif.Image.Model"), PropertyValue(QStringLiteral("M")));
    EXPECT_EQ(valueOf(merged, "Exif.Photo.ISOSpeedRatings"), PropertyValue(qint64(200)));
    EXPECT_EQ(valueOf(merged, "Exif.Photo.FNumber"), PropertyValue(4.0f));
    EXPECT_EQ(valueOf(merged, "Exif.GPSInfo.GPSLatitude"), PropertyValue(-10.5f));
    EXPECT_EQ(keysWithValues(merged, iptcKeyRows()).size(), 2);
    EXPECT_EQ(valueOf(merged, "Iptc.Application2.Keywords"), PropertyValue(QStringLiteral("two")));
    EXPECT_EQ(valueOf(merged, "Iptc.Application2.City"), PropertyValue(QStringLiteral("Lyon")));
    EXPECT_EQ(keysWithValues(merged, xmpKeyRows()), QStringList({"Xmp.aux.Lens"}));
    EXPECT_EQ(valueOf(merged, "Xmp.aux.Lens"), PropertyValue(QStringLiteral("L")));

    // A file that can't be read leaves only the edits.
    const WrittenProperties alone =
        mergeForWriting(edited, dir.filePath(QStringLiteral("missing.jpg")));
    EXPECT_EQ(keysWithValues(alone, exifKeyRows()).size(), 2);
    EXPECT_EQ(keysWithValues(alone, xmpKeyRows()).size(), 0);
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
