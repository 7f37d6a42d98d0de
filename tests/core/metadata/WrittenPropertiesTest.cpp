// The typed values of a write: what the merge puts in, how each kind is read for its tag, and
// how the writers of both forms treat the rows that have a value and those that have none.
#include "WriteSupport.h"

#include "metadata/MergeForWriting.h"
#include "metadata/MetadataTest.h"
#include "metadata/WrittenProperties.h"

namespace tagmoor::test {
namespace {

const KeyRow& rowOf(const char* key) {
    return *findKeyRow(QString::fromLatin1(key));
}

QByteArray xmpPacketOf(const QString& path) {
    return runTool(QStringLiteral("exiv2"), {QStringLiteral("-pX"), path}).out;
}

TEST(WrittenProperties, MergeFillsOnlyTheRowsThatAreReadAndTellsEmptyBlocks) {
    MetadataFieldSet edited;
    edited.at(rowOf("Exif.Photo.MakerNote")) = QStringLiteral("edited");
    edited.at(rowOf("Iptc.Application2.City")) = QString();
    MetadataFieldSet inFile;
    inFile.at(rowOf("Exif.Photo.FileSource")) = qint64(3);
    inFile.at(rowOf("Iptc.Application2.City")) = QStringLiteral("Old");
    inFile.at(rowOf("Xmp.aux.Lens")) = QStringLiteral("L");

    const WrittenProperties merged = mergeForWriting(edited, inFile);
    // Rows that nothing reads never reach the writer, edited or not.
    EXPECT_FALSE(merged.has(rowOf("Exif.Photo.MakerNote")));
    EXPECT_FALSE(merged.has(rowOf("Exif.Photo.FileSource")));
    EXPECT_TRUE(merged.isEmpty(KeyBlock::Exif));
    // An edited empty text wins over the file's text.
    EXPECT_EQ(merged.at(rowOf("Iptc.Application2.City")), PropertyValue(QString()));
    EXPECT_FALSE(merged.isEmpty(KeyBlock::Iptc));
    EXPECT_EQ(merged.at(rowOf("Xmp.aux.Lens")), PropertyValue(QStringLiteral("L")));
    EXPECT_FALSE(merged.isEmpty(KeyBlock::Xmp));

    const WrittenProperties none = mergeForWriting({}, MetadataFieldSet{});
    for (const KeyBlock block : {KeyBlock::Exif, KeyBlock::Iptc, KeyBlock::Xmp})
        EXPECT_TRUE(none.isEmpty(block));
}

TEST(WrittenProperties, EachKindReadsAsItsTagNeedsIt) {
    struct Case {
        PropertyValue value;
        const char* text;
        qint64 integer;
        double real;
    };
    const Case cases[] = {
        // Nothing stands for the empty text and zero: the described form writes that zero.
        {PropertyValue(), "", 0, 0.0},
        // A text that spells a number gives the number to a numeric tag.
        {QStringLiteral("400"), "400", 400, 400.0},
        {QStringLiteral("Ann"), "Ann", 0, 0.0},
        // Numbers in a text tag are their shortest decimal text.
        {qint64(-7), "-7", -7, -7.0},
        {quint8(1), nullptr, 1, 1.0}, // a byte is only ever written as a number
        {quint64(1600), "1600", 1600, 1600.0},
        {4.0f, "4", 4, 4.0},
        {-2.25f, "-2.25", -2, -2.25},
        {48.5, "48.5", 49, 48.5},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value.variant().toString().toStdString());
        if (c.text) {
            EXPECT_EQ(writtenText(c.value), QString::fromUtf8(c.text));
        }
        EXPECT_EQ(writtenInteger(c.value), c.integer);
        EXPECT_DOUBLE_EQ(writtenDouble(c.value), c.real);
        EXPECT_FLOAT_EQ(writtenFloat(c.value), float(c.real));
    }
    // A float's text is that of the double it widens to, as files written so far hold it.
    EXPECT_EQ(writtenText(2.8f), QStringLiteral("2.799999952316284"));
}

TEST(WrittenProperties, StandardWriterTouchesOnlyRowsWithAValue) {
    QTemporaryDir dir;
    MetadataTest standard;
    standard.setWriteOptions({.standardForm = true});

    // Without an XMP value the packet goes back as another program wrote it; an XMP value
    // makes it anew.
    const QString tagged = copySample(formatsDir() + QStringLiteral("/et-XMP.jpg"), dir.path());
    const QByteArray packet = xmpPacketOf(tagged);
    ASSERT_FALSE(packet.isEmpty());
    WrittenProperties city;
    city.set(rowOf("Iptc.Application2.City"), QStringLiteral("Lyon"));
    ASSERT_TRUE(standard.setImagePropertiesAll(tagged, city, {}).written());
    EXPECT_EQ(xmpPacketOf(tagged), packet);
    EXPECT_EQ(exiv2Value(tagged, QStringLiteral("Iptc.Application2.City")), QStringLiteral("Lyon"));
    WrittenProperties lens;
    lens.set(rowOf("Xmp.aux.Lens"), QStringLiteral("NewLens"));
    ASSERT_TRUE(standard.setImagePropertiesAll(tagged, lens, {}).written());
    EXPECT_NE(xmpPacketOf(tagged), packet);
    EXPECT_EQ(exiv2Value(tagged, QStringLiteral("Xmp.aux.Lens")), QStringLiteral("NewLens"));

    const QString photo = makeJpeg(dir.filePath(QStringLiteral("photo.jpg")));
    const ToolResult made = runTool(QStringLiteral("exiv2"),
                                    {QStringLiteral("-Mset Exif.Image.Artist Old"),
                                     QStringLiteral("-Mset Exif.GPSInfo.GPSLatitude 10/1 0/1 0/1"),
                                     QStringLiteral("-Mset Exif.GPSInfo.GPSLatitudeRef N"), photo});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    // A reference alone turns the photo's position to its hemisphere and leaves the other
    // tags; beside its coordinate the coordinate's sign decides.
    WrittenProperties gps;
    gps.set(rowOf("Exif.GPSInfo.GPSLatitudeRef"), QStringLiteral("s"));
    ASSERT_TRUE(standard.setImagePropertiesAll(photo, gps, {}).written());
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitudeRef")),
              QStringLiteral("S"));
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.Image.Artist")), QStringLiteral("Old"));
    gps.set(rowOf("Exif.GPSInfo.GPSLatitude"), 12.25);
    ASSERT_TRUE(standard.setImagePropertiesAll(photo, gps, {}).written());
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitudeRef")),
              QStringLiteral("N"));
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitude")),
              QStringLiteral("12/1 15/1 0/1"));
}

TEST(WrittenProperties, OnlyIptcTextOutsideAsciiDeclaresUtf8) {
    QTemporaryDir dir;
    const QString photo = makeJpeg(dir.filePath(QStringLiteral("photo.jpg")));
    const QString charset = QStringLiteral("Iptc.Envelope.CharacterSet");

    // Wide text in Exif and XMP is no concern of the IPTC block.
    WrittenProperties written;
    written.set(rowOf("Exif.Image.Artist"), QStringLiteral("Zoë"));
    written.set(rowOf("Xmp.aux.Lens"), QStringLiteral("Objectif ø"));
    written.set(rowOf("Iptc.Application2.City"), QStringLiteral("Lyon"));
    ASSERT_TRUE(MetadataTest().setImagePropertiesAll(photo, written, {}).written());
    EXPECT_EQ(exiv2Value(photo, charset), std::nullopt);

    written.set(rowOf("Iptc.Application2.City"), QStringLiteral("Zürich"));
    ASSERT_TRUE(MetadataTest().setImagePropertiesAll(photo, written, {}).written());
    EXPECT_NE(exiv2Value(photo, charset), std::nullopt);
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Iptc.Application2.City")),
              QStringLiteral("Zürich"));
}

} // namespace
} // namespace tagmoor::test
