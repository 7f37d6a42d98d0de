// Writing and cleaning every sample type: the tags change, the picture never does, and a type
// that Exiv2 can't write is left byte for byte.
#include "WriteSupport.h"

#include "metadata/MergeForWriting.h"
#include "metadata/MetadataTest.h"

namespace tagmoor::test {
namespace {

// Types whose writer Exiv2 lacks, or that it doesn't know at all.
bool notWritable(const QString& name) {
    static const QStringList suffixes{QStringLiteral("raf"), QStringLiteral("mrw"),
                                      QStringLiteral("x3f"), QStringLiteral("j2c"),
                                      QStringLiteral("raw")};
    return suffixes.contains(QFileInfo(name).suffix().toLower());
}

// Exiv2 refuses IPTC in this type, and the writer always hands it an IPTC block.
bool refusesIptc(const QString& name) {
    return QFileInfo(name).suffix().toLower() == "crw";
}

// Writes as a batch does: the edits merged over the file's values, and every row that ends
// up without a value listed for erasure (integer and rational rows are written as zero first).
void writeLikeABatch(const QString& path, const MetadataFieldSet& edited) {
    MetadataTest bridge;
    const WrittenProperties merged = mergeForWriting(edited, path);
    ErasedRows absent;
    for (const KeyRow& row : allKeyRows()) {
        if (!merged.has(row))
            absent.add(row);
    }
    bridge.setImagePropertiesAll(path, merged, absent);
}

bool hasError(const LogCapture& log) {
    for (const QString& line : log.lines())
        if (line.startsWith(QStringLiteral("*** error")))
            return true;
    return false;
}

TEST(WriteFormats, EverySampleKeepsItsPicture) {
    QTemporaryDir dir;
    MetadataFieldSet edited;
    edited.exif[0] = QStringLiteral("Ann");
    edited.exif[11] = 2.8f;
    edited.iptc[11] = QStringLiteral("Lyon");
    edited.xmp[1] = QStringLiteral("Zoom");
    const QStringList samples = sampleFiles(formatsDir());
    ASSERT_GE(samples.size(), 30);
    const QMap<QString, QByteArray> pictures = pictureFingerprints(samples);

    // Write one copy and clean all groups of another, for every sample.
    QStringList changed;
    QMap<QString, QString> sampleOf;
    for (const QString& sample : samples) {
        const QString name = QFileInfo(sample).fileName();
        SCOPED_TRACE(name.toStdString());
        const QByteArray before = readBytes(sample);
        const QString written = copySample(sample, dir.path());
        const QString cleaned = copySample(sample, dir.path(), QStringLiteral("clean-") + name);
        LogCapture writeLog;
        writeLikeABatch(written, edited);
        LogCapture cleanLog;
        MetadataTest().cleanMetadata(cleaned, kEveryGroup);
        EXPECT_FALSE(hasError(cleanLog));
        EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());

        if (notWritable(name) || refusesIptc(name)) {
            EXPECT_EQ(readBytes(written), before);
            EXPECT_TRUE(writeLog.contains(kExiv2ErrorStart));
        } else {
            EXPECT_FALSE(hasError(writeLog)) << writeLog.lines().join('\n').toStdString();
            EXPECT_NE(readBytes(written), before);
            changed << written;
            sampleOf.insert(written, sample);
        }
        if (notWritable(name)) {
            EXPECT_EQ(readBytes(cleaned), before);
        } else {
            changed << cleaned;
            sampleOf.insert(cleaned, sample);
        }
    }

    // Each changed file reads in both outside readers, and its picture is the sample's.
    const QMap<QString, QJsonObject> seen = exiftoolTagsOf(changed);
    const QMap<QString, QByteArray> after = pictureFingerprints(changed);
    int compared = 0;
    QStringList uncompared;
    for (const QString& path : changed) {
        SCOPED_TRACE(QFileInfo(path).fileName().toStdString());
        QString why;
        EXPECT_TRUE(readsCleanly(path, seen.value(path), &why)) << why.toStdString();
        // Two samples hold no picture data of their own (cut short, or a thumbnail only).
        if (!pictures.value(sampleOf.value(path)).isEmpty()) {
            EXPECT_EQ(after.value(path), pictures.value(sampleOf.value(path)));
            ++compared;
        } else {
            uncompared << QFileInfo(path).fileName();
        }
        const QJsonObject found = seen.value(path);
        if (QFileInfo(path).fileName().startsWith(QStringLiteral("clean-"))) {
            EXPECT_FALSE(found.contains(QStringLiteral("XMP-aux:Lens")));
            continue;
        }
        bool artist = false;
        for (auto it = found.begin(); it != found.end(); ++it)
            artist = artist || (it.key().endsWith(QStringLiteral(":Artist")) &&
                                it.value().toString() == QStringLiteral("Ann"));
        EXPECT_TRUE(artist);
        EXPECT_EQ(found.value(QStringLiteral("XMP-aux:Lens")).toString(), QStringLiteral("Zoom"));
    }
    EXPECT_LE(uncompared.size(), 3) << uncompared.join(' ').toStdString();
}

} // namespace
} // namespace tagmoor::test
