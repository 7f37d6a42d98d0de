// The standard form, the default: what is read is what the file holds, and a batch touches
// nothing but the fields it edits. Checked over every sample with the exiv2 and exiftool
// commands as independent readers.
#include "BatchTestSupport.h"
#include "metadata/MetadataLibrary.h"

#include "extras/CopiesInStep.h"
#include "foundation/ValueForm.h"
#include "metadata/PropertyLoading.h"
#include "metadata/WriteSupport.h"
#include "processing/SidecarSettings.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QSet>

#include <exiv2/exiv2.hpp>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// Tags whose values say where data lie in the file, which any rewrite moves; the IFD0 tags
// that Exif does not record in a compressed picture (Exiv2 leaves them out of every JPEG); and
// the XMP packet's bytes, whose properties are compared one by one as Xmp keys.
bool movesWithTheFile(const QString& key) {
    static const QRegularExpression layout(
        R"(\.(StripOffsets|TileOffsets|JPEGInterchangeFormat|SubIFDs|ExifTag|GPSTag|)"
        R"(InteroperabilityTag|Preview|Offset|MakerNote|XMLPacket)$)");
    return layout.match(key).hasMatch() || key == "Exif.Image.PhotometricInterpretation";
}

// Every datum as "key type value" lines, sorted, so that a tag added, lost or changed shows
// as a line of difference whatever order the blocks were written in.
QStringList exiv2Lines(const QString& path) {
    const ToolResult r = runTool("exiv2", {"-q", "-Pkyv", path});
    static const QRegularExpression keyStart(R"(^(Exif|Iptc|Xmp)\.\S+\s)");
    QStringList lines;
    for (const QString& line : QString::fromUtf8(r.out).split('\n')) {
        if (keyStart.match(line).hasMatch())
            lines << line.simplified();
        else if (!lines.isEmpty() && !line.trimmed().isEmpty())
            lines.last() += ' ' + line.simplified(); // a value that spans lines
    }
    lines.removeIf([](const QString& line) { return movesWithTheFile(line.section(' ', 0, 0)); });
    lines.sort();
    return lines;
}

// Whether the photo has an XMP packet that does not decode (no copy is written into it).
bool xmpUnreadable(const QString& path) {
    try {
        // Exiv2 writes XMP through a toolkit that the program shares between threads.
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        return !image->xmpPacket().empty() && image->xmpData().empty();
    } catch (const Exiv2::Error&) {
        return false;
    }
}

QStringList minus(QStringList a, const QStringList& b) {
    for (const QString& line : b)
        a.removeOne(line);
    return a;
}

QStringList jsonList(const QJsonValue& v) {
    if (v.isUndefined())
        return {};
    if (!v.isArray())
        return {v.toVariant().toString()};
    QStringList list;
    for (const QJsonValue& item : v.toArray())
        list << item.toVariant().toString();
    return list;
}

QStringList keywordsOf(const QJsonObject& tags, const char* group) {
    return jsonList(tags.value(QLatin1String(group)));
}

QVariantList keywordsIn(const QString& photo) {
    const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
    return record ? record->iptcProperties->keywords.list().value_or(QVariantList())
                  : QVariantList();
}

class StandardForm : public ::testing::Test {
protected:
    void SetUp() override {
        if (!haveTool("exiv2") || !haveTool("exiftool"))
            GTEST_SKIP() << "needs the exiv2 and exiftool commands";
    }
    // Every sample that loads, copied.
    QStringList copies(const QString& folder) {
        QStringList photos;
        QDir().mkpath(tmp.filePath(folder));
        for (const QString& name : fileNames(formatsDir())) {
            const QString photo = copySample(formatsDir() + '/' + name, tmp.filePath(folder));
            if (loadImageProperties(QUrl::fromLocalFile(photo)))
                photos << photo;
        }
        return photos;
    }
    ValueFormScope form{ValueForm::standard};
    QTemporaryDir tmp;
};

} // namespace

// A batch that sets Artist alone, with the copies of a value in step as the window keeps them
// by default, writes the creator's XMP and IPTC copies with it and adds, loses and changes no
// other tag of any sample, keeps every keyword of both lists, and leaves the picture's pixels
// as they were. A photo that cannot be written is refused whole, byte for byte.
TEST_F(StandardForm, OneFieldEditTouchesNothingElse) {
    const CopiesInStepScope inStep(kCopiesInStepByDefault);
    RunValues v = editRun(ProcessingMode::keepUnedited);
    ASSERT_TRUE(v.writeOptions.standardForm);
    edit(v, "Artist", "Only This");
    const QStringList photos = copies("edit");
    QMap<QString, QStringList> before;
    QMap<QString, QByteArray> bytes;
    QMap<QString, QVariantList> keywordsBefore;
    for (const QString& photo : photos) {
        keywordsBefore.insert(photo, keywordsIn(photo));
        before.insert(photo, exiv2Lines(photo));
        bytes.insert(photo, readBytes(photo));
    }
    const QMap<QString, QJsonObject> tagsBefore = exiftoolTagsOf(photos);
    QSet<QString> unreadableXmp;
    for (const QString& photo : photos) {
        if (xmpUnreadable(photo))
            unreadableXmp.insert(photo);
    }
    const QMap<QString, QByteArray> picturesBefore = pictureFingerprints(photos);

    const BatchResult result = runBatch(v, recordsOf(photos));
    QSet<QString> refused;
    for (const PhotoProblem& problem : result.problems)
        refused.insert(problem.path);
    ASSERT_GT(photos.size() - refused.size(), 20);

    const QMap<QString, QJsonObject> tagsAfter = exiftoolTagsOf(photos);
    const QMap<QString, QByteArray> picturesAfter = pictureFingerprints(photos);
    for (const QString& photo : photos) {
        const std::string name = QFileInfo(photo).fileName().toStdString();
        if (refused.contains(photo)) {
            EXPECT_EQ(readBytes(photo), bytes.value(photo)) << name;
            continue;
        }
        const QStringList after = exiv2Lines(photo);
        QStringList added = minus(after, before.value(photo));
        QStringList lost = minus(before.value(photo), after);
        EXPECT_EQ(added.filter(QRegularExpression("^Exif.Image.Artist ")).size(), 1) << name;
        // The copies: a JPEG gets the creator in XMP (unless its packet does not decode) and
        // its IPTC By-line.
        // (A TIFF keeps its IPTC block in the tag IPTCNAA.)
        static const QRegularExpression creator(
            "^(Exif.Image.Artist|Xmp.dc.creator|Iptc.Application2.Byline|Exif.Image.IPTCNAA) ");
        if (kCopiesInStepByDefault && name.ends_with(".jpg") && !unreadableXmp.contains(photo)) {
            EXPECT_EQ(added.filter(QRegularExpression("^Xmp.dc.creator \\S+ Only This$")).size(), 1)
                << name;
            EXPECT_EQ(added.filter(QRegularExpression("^Iptc.Application2.Byline \\S+ Only This$"))
                          .size(),
                      1)
                << name;
        }
        lost.removeIf([](const QString& l) { return creator.match(l).hasMatch(); });
        // A packet that names one namespace in two spellings under one prefix keeps one of
        // the two properties when its block is written anew: the other spelling's value goes,
        // the kept one stands unchanged.
        const QStringList& was = before.value(photo);
        lost.removeIf([&](const QString& l) {
            const QString key = l.section(' ', 0, 0) + ' ';
            return key.startsWith("Xmp.") &&
                   was.filter(QRegularExpression('^' + QRegularExpression::escape(key))).size() >
                       1 &&
                   !after.filter(QRegularExpression('^' + QRegularExpression::escape(key)))
                        .isEmpty();
        });
        added.removeIf([](const QString& l) { return creator.match(l).hasMatch(); });
        // A JPEG that had no first directory gets the four tags a JPEG's first directory needs.
        added.removeIf([](const QString& l) {
            return QRegularExpression("^Exif.Image.(XResolution|YResolution|ResolutionUnit|"
                                      "YCbCrPositioning) ")
                .match(l)
                .hasMatch();
        });
        EXPECT_EQ(added.join('\n').toStdString(), "") << name << ": added or changed";
        EXPECT_EQ(lost.join('\n').toStdString(), "") << name << ": lost or changed";
        // Keywords as both readers see them (a block that exiftool could not find before
        // Exiv2 wrote it anew may show up; none goes).
        EXPECT_EQ(keywordsBefore.value(photo), keywordsIn(photo)) << name;
        for (const char* group : {"IPTC:Keywords", "XMP-dc:Subject"}) {
            const QStringList was = keywordsOf(tagsBefore.value(photo), group);
            if (!was.isEmpty()) {
                EXPECT_EQ(keywordsOf(tagsAfter.value(photo), group), was) << name << " " << group;
            }
        }
        EXPECT_EQ(picturesAfter.value(photo), picturesBefore.value(photo)) << name;
    }
}

// An edited keyword list replaces both lists with exactly the new one: one IPTC dataset a
// keyword, the same items in the XMP subject, repeats and blanks dropped. Reading gives the
// list back, and a keyword too long for IPTC refuses the photo without changing it.
TEST_F(StandardForm, KeywordEditWritesExactlyTheNewList) {
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Keywords", " harbour, dusk ,boats, dusk,, ");
    const QStringList photos = copies("keywords");
    const BatchResult result = runBatch(v, recordsOf(photos));
    QSet<QString> refused;
    for (const PhotoProblem& problem : result.problems)
        refused.insert(problem.path);
    const QStringList expected{"harbour", "dusk", "boats"};
    const QMap<QString, QJsonObject> tags = exiftoolTagsOf(photos);
    int checked = 0;
    for (const QString& photo : photos) {
        if (refused.contains(photo))
            continue;
        const std::string name = QFileInfo(photo).fileName().toStdString();
        EXPECT_EQ(keywordsOf(tags.value(photo), "IPTC:Keywords"), expected) << name;
        EXPECT_EQ(keywordsOf(tags.value(photo), "XMP-dc:Subject"), expected) << name;
        const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
        ASSERT_TRUE(record) << name;
        EXPECT_EQ(record->iptcProperties->keywords.list().value_or(QVariantList()),
                  QVariantList({"harbour", "dusk", "boats"}))
            << name;
        ++checked;
    }
    EXPECT_GT(checked, 15);

    RunValues tooLong = editRun(ProcessingMode::keepUnedited);
    edit(tooLong, "Keywords", "short, " + QString(65, 'k'));
    const QString photo = copySample(formatsDir() + "/et-IPTC.jpg", tmp.path(), "long.jpg");
    const QByteArray original = readBytes(photo);
    const BatchResult refusedResult = runBatch(tooLong, recordsOf({photo}));
    ASSERT_EQ(refusedResult.problems.size(), 1u);
    EXPECT_TRUE(refusedResult.problems.front().reason.contains("at most 64 bytes"))
        << refusedResult.problems.front().reason.toStdString();
    EXPECT_EQ(readBytes(photo), original);
}

// Every sample's GPS position reads as exiftool reads it, to a millionth of a degree, the
// seconds over their own denominators and the sign from the reference.
TEST_F(StandardForm, GpsPositionsReadAsTheFileHoldsThem) {
    QStringList photos;
    for (const QString& name : fileNames(formatsDir()))
        photos << formatsDir() + '/' + name;
    const QMap<QString, QJsonObject> tags =
        exiftoolTagsOf(photos, {"-Composite:GPSLatitude", "-Composite:GPSLongitude"});
    int positions = 0;
    for (const QString& photo : photos) {
        const std::string name = QFileInfo(photo).fileName().toStdString();
        const QJsonObject t = tags.value(photo);
        const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
        const QJsonValue lat = t.value("Composite:GPSLatitude");
        const QJsonValue lon = t.value("Composite:GPSLongitude");
        if (!record || !lat.isDouble() || !lon.isDouble())
            continue;
        ++positions;
        ASSERT_TRUE(record->gpsProperties->latitude.float64()) << name;
        EXPECT_NEAR(*record->gpsProperties->latitude.float64(), lat.toDouble(), 1e-6) << name;
        EXPECT_NEAR(*record->gpsProperties->longitude.float64(), lon.toDouble(), 1e-6) << name;
    }
    EXPECT_GE(positions, 3);
}

// A position is written with the fraction of its seconds and the references of its signs, in
// every hemisphere, reads back the same, and brings the GPS version beside it.
TEST_F(StandardForm, PositionsKeepTheirHemisphereAndFraction) {
    struct Place {
        double lat, lon;
        const char *latRef, *lonRef;
    };
    const Place places[] = {{38.717, -9.133, "N", "W"},
                            {-33.8688, 151.2093, "S", "E"},
                            {-22.9068, -43.1729, "S", "W"},
                            {59.3293, 18.0686, "N", "E"}};
    int n = 0;
    for (const Place& place : places) {
        RunValues v = editRun(ProcessingMode::keepUnedited);
        edit(v, "GPSLatitude", QString::number(place.lat, 'g', 10));
        edit(v, "GPSLongitude", QString::number(place.lon, 'g', 10));
        const QString photo = copySample(formatsDir() + "/Reagan.jpg", tmp.path(),
                                         QStringLiteral("p%1.jpg").arg(n++));
        ASSERT_TRUE(runBatch(v, recordsOf({photo})).problems.empty());
        const QJsonObject t = exiftoolTags(photo);
        EXPECT_NEAR(t.value("Composite:GPSLatitude").toDouble(), place.lat, 1e-6);
        EXPECT_NEAR(t.value("Composite:GPSLongitude").toDouble(), place.lon, 1e-6);
        EXPECT_EQ(t.value("GPS:GPSLatitudeRef").toString().toStdString(), place.latRef);
        EXPECT_EQ(t.value("GPS:GPSLongitudeRef").toString().toStdString(), place.lonRef);
        EXPECT_FALSE(t.value("GPS:GPSVersionID").toString().isEmpty());
        const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
        EXPECT_NEAR(record->gpsProperties->latitude.float64().value_or(0), place.lat, 1e-7);
        EXPECT_NEAR(record->gpsProperties->longitude.float64().value_or(0), place.lon, 1e-7);
    }
}

// Numbers read as what they are in the standard form, and as the classic rules say in the
// described one: a byte of 200, a TIFF float of 2.5, a TIFF double, GPS seconds over 5, and
// keywords spread over IPTC and XMP.
TEST_F(StandardForm, ReadingTakesNumbersAndListsAsTheFileHoldsThem) {
    const QString photo = copySample(formatsDir() + "/Reagan.jpg", tmp.path(), "built.jpg");
    {
        // Exiv2 writes XMP through a toolkit that the program shares between threads.
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(photo.toStdString());
        image->readMetadata();
        Exiv2::ExifData& exif = image->exifData();
        Exiv2::DataValue altitudeRef(Exiv2::unsignedByte);
        altitudeRef.read("200");
        exif.add(Exiv2::ExifKey("Exif.GPSInfo.GPSAltitudeRef"), &altitudeRef);
        exif.erase(exif.findKey(Exiv2::ExifKey("Exif.Photo.DigitalZoomRatio")));
        Exiv2::ValueType<float> zoom(2.5f);
        exif.add(Exiv2::ExifKey("Exif.Photo.DigitalZoomRatio"), &zoom);
        exif["Exif.GPSInfo.GPSLatitude"] = "38/1 43/1 78/5";
        exif["Exif.GPSInfo.GPSLatitudeRef"] = "S";
        exif["Exif.GPSInfo.GPSLongitude"] = "9/1 7/1 5880/100";
        exif["Exif.GPSInfo.GPSLongitudeRef"] = "W";
        Exiv2::IptcData& iptc = image->iptcData();
        iptc.clear();
        for (const char* k : {"harbour", "dusk", "boats"}) {
            Exiv2::StringValue value(k);
            iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), &value);
        }
        Exiv2::XmpArrayValue bag(Exiv2::xmpBag);
        for (const char* k : {"dusk", "sea"})
            bag.read(k);
        image->xmpData().add(Exiv2::XmpKey("Xmp.dc.subject"), &bag);
        image->writeMetadata();
    }
    const auto standard = loadImageProperties(QUrl::fromLocalFile(photo));
    ASSERT_TRUE(standard);
    EXPECT_EQ(standard->gpsProperties->altitudeRef.uint8(), std::optional<quint8>(200));
    EXPECT_EQ(standard->exifProperties->digitalZoomRatio.float32(), std::optional<float>(2.5f));
    EXPECT_NEAR(*standard->gpsProperties->latitude.float64(), -(38 + 43 / 60.0 + 15.6 / 3600),
                1e-9);
    EXPECT_NEAR(*standard->gpsProperties->longitude.float64(), -(9 + 7 / 60.0 + 58.8 / 3600), 1e-9);
    EXPECT_EQ(standard->iptcProperties->keywords.list(),
              std::optional<QVariantList>({"harbour", "dusk", "boats", "sea"}));

    ValueFormScope described(ValueForm::described);
    const auto classic = loadImageProperties(QUrl::fromLocalFile(photo));
    ASSERT_TRUE(classic);
    EXPECT_FALSE(classic->gpsProperties->altitudeRef.isPresent()); // -56 is no byte
    EXPECT_EQ(classic->exifProperties->digitalZoomRatio.float32(), std::optional<float>(2.0f));
    EXPECT_NEAR(*classic->gpsProperties->latitude.float32(), -(38 + 43 / 60.0 + 78 / 3600.0), 1e-4);
    EXPECT_EQ(classic->iptcProperties->keywords.text(), std::optional<QString>("boats"));
}

// No Orientation outside 1-8 reaches a file: the standard form leaves such an edit out, and
// the described form's zero for a missing value is erased from a TIFF-built photo.
TEST_F(StandardForm, NoOrientationOutsideOneToEight) {
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Orientation", "9");
    edit(v, "Artist", "x");
    const QString tiff = copySample(formatsDir() + "/Reagan.tiff", tmp.path(), "a.tiff");
    const std::optional<QString> was = exiv2Value(tiff, "Exif.Image.Orientation");
    ASSERT_TRUE(runBatch(v, recordsOf({tiff})).problems.empty());
    EXPECT_EQ(exiv2Value(tiff, "Exif.Image.Orientation"), was);

    ValueFormScope described(ValueForm::described);
    RunValues classic = editRun(ProcessingMode::keepUnedited);
    edit(classic, "Artist", "x");
    classic.editedProperties.tiffProperties->orientation.clear();
    const QString other = copySample(formatsDir() + "/mini9.tif", tmp.path(), "b.tif");
    ASSERT_TRUE(runBatch(classic, recordsOf({other})).problems.empty());
    const std::optional<QString> orientation = exiv2Value(other, "Exif.Image.Orientation");
    EXPECT_TRUE(!orientation || (orientation->toInt() >= 1 && orientation->toInt() <= 8))
        << orientation.value_or("").toStdString();
}

// The command line's default is the standard form: a one-field batch writes no zero for the
// absent fields, and `read` gives keywords as a list; --form described brings the classic
// rules back.
TEST_F(StandardForm, IsTheCommandLinesDefault) {
    const QString photo = copySample(formatsDir() + "/et-IPTC.jpg", tmp.path());
    const auto cli = [](const QStringList& args) {
        QProcess p;
        p.start(QStringLiteral(TAGMOOR_CLI), args); // no --form: the program's own default
        return finishTool(p);
    };
    const ToolResult read = cli({"read", photo});
    ASSERT_EQ(read.exitCode, 0) << read.err.toStdString();
    EXPECT_TRUE(
        read.out.contains(R"("iptcProperties.keywords": {"value": ["ExifTool","Test","IPTC"])"))
        << read.out.toStdString();
    const ToolResult apply =
        cli({"apply", "--quiet", "--set", "Artist=Only This", "--out", tmp.filePath("out"), photo});
    ASSERT_EQ(apply.exitCode, 0) << apply.err.toStdString();
    const QString written = tmp.filePath("out/et-IPTC.jpg");
    EXPECT_FALSE(exiv2Value(written, "Exif.Photo.ISOSpeedRatings"));
    EXPECT_FALSE(exiv2Value(written, "Exif.GPSInfo.GPSLatitude"));
    const ToolResult classic =
        cli({"apply", "--form", "described", "--quiet", "--overwrite", "--set", "Artist=Only This",
             "--out", tmp.filePath("out"), photo});
    ASSERT_EQ(classic.exitCode, 0) << classic.err.toStdString();
    EXPECT_EQ(cli({"read", "--form", "nonsense", photo}).exitCode, 2);

    // A reference typed beside its coordinate signs it; typed alone it turns the photo's own
    // position to that hemisphere, keeping its degrees.
    const QString gps = copySample(formatsDir() + "/Reagan.jpg", tmp.path(), "gps.jpg");
    ASSERT_EQ(cli({"apply", "--quiet", "--in-place", "--set", "GPSLatitude=38.717", "--set",
                   "GPSLatitudeRef=S", "--set", "GPSLongitude=9.133", gps})
                  .exitCode,
              0);
    QJsonObject t = exiftoolTags(gps);
    EXPECT_NEAR(t.value("Composite:GPSLatitude").toDouble(), -38.717, 1e-6);
    EXPECT_NEAR(t.value("Composite:GPSLongitude").toDouble(), 9.133, 1e-6);
    ASSERT_EQ(cli({"apply", "--quiet", "--in-place", "--set", "GPSLongitudeRef=W", gps}).exitCode,
              0);
    t = exiftoolTags(gps);
    EXPECT_NEAR(t.value("Composite:GPSLatitude").toDouble(), -38.717, 1e-6);
    EXPECT_NEAR(t.value("Composite:GPSLongitude").toDouble(), -9.133, 1e-6);
}
