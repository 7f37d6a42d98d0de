#include "../metadata/ExivFixture.h"
#include "foundation/ValueForm.h"

#include <QDir>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

ToolResult readCli(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI), QStringList{QStringLiteral("read")} + args);
}

QList<QJsonObject> objectsOf(const QByteArray& out) {
    QList<QJsonObject> objects;
    for (const QByteArray& line : out.split('\n')) {
        if (line.isEmpty())
            continue;
        QJsonParseError error;
        const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
        objects << doc.object();
    }
    return objects;
}

TEST(ReadCommand, PrintsOneObjectPerPathWithValuesAndKinds) {
    QTemporaryDir dir;
    const QString photo = jpegWithTags(dir.filePath("p.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Ann \"A\" Lee");
        addExif(img.exifData(), "Exif.Photo.FNumber", Exiv2::unsignedRational, "28/10");
        addExif(img.exifData(), "Exif.Photo.DateTimeOriginal", Exiv2::asciiString,
                "2019-05-01T10:20:30+0200");
        addExif(img.exifData(), "Exif.GPSInfo.GPSAltitudeRef", Exiv2::unsignedByte, "1");
    });
    writeBytes(dir.filePath("note.jpg"), "not a photo");

    const ToolResult r = readCli({photo, dir.filePath("note.jpg"), dir.filePath("none.jpg")});
    EXPECT_EQ(r.exitCode, 1);
    const QList<QJsonObject> objects = objectsOf(r.out);
    ASSERT_EQ(objects.size(), 3);

    const QJsonObject& p = objects[0];
    EXPECT_EQ(p["path"].toString(), photo);
    EXPECT_EQ(p["tiffProperties.artist"]["value"].toString(), QStringLiteral("Ann \"A\" Lee"));
    EXPECT_EQ(p["tiffProperties.artist"]["kind"].toString(), QStringLiteral("text"));
    EXPECT_DOUBLE_EQ(p["exifProperties.fNumber"]["value"].toDouble(), 2.8);
    EXPECT_EQ(p["exifProperties.fNumber"]["kind"].toString(), QStringLiteral("float32"));
    EXPECT_EQ(p["gpsProperties.altitudeRef"]["kind"].toString(), QStringLiteral("uint8"));
    EXPECT_EQ(p["exifProperties.dateTimeOriginal"]["kind"].toString(), QStringLiteral("date"));
    EXPECT_EQ(QDateTime::fromString(p["exifProperties.dateTimeOriginal"]["value"].toString(),
                                    Qt::ISODateWithMs),
              QDateTime(QDate(2019, 5, 1), QTime(8, 20, 30), Qt::UTC));
    EXPECT_EQ(p["pixelWidth"]["value"].toDouble(), 64.0);
    EXPECT_EQ(p["pixelWidth"]["kind"].toString(), QStringLiteral("float64"));
    EXPECT_FALSE(p.contains("error"));

    EXPECT_EQ(objects[1].keys(), (QStringList{"error", "path"}));
    EXPECT_EQ(objects[2]["error"].toString(), QStringLiteral("no such file"));

    EXPECT_EQ(readCli({photo}).exitCode, 0);
}

// Texts are escaped the same way whether they are plain ASCII or not: quotes, backslashes and
// control characters, with every other character as its UTF-8 bytes.
TEST(ReadCommand, EscapesTextsInJson) {
    QTemporaryDir dir;
    const char* ascii = "a\"b\\c\td\ne\rf\x01g\x1fh/";
    const char* utf8 = "\xc3\xb8\"b\\c\td\ne\rf\x01g\x1fh\xe2\x82\xac";
    const QString photo = jpegWithTags(dir.filePath("p.jpg"), [&](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, ascii);
        addExif(img.exifData(), "Exif.Image.ImageDescription", Exiv2::asciiString, utf8);
        for (const char* keyword : {"a\"b\\c", "\xc3\xb8\xe2\x82\xac", "t\tu\x01\x08"}) {
            Exiv2::StringValue value(keyword);
            img.iptcData().add(Exiv2::IptcKey("Iptc.Application2.Keywords"), &value);
        }
    });
    const ToolResult r = readCli({photo});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains(R"("a\"b\\c\td\ne\rf\u0001g\u001fh/")")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("\"\xc3\xb8\\\"b\\\\c\\td\\ne\\rf\\u0001g\\u001fh\xe2\x82\xac\""))
        << r.out.toStdString();
    const QJsonObject p = objectsOf(r.out).value(0);
    EXPECT_EQ(p["tiffProperties.imageDescription"]["value"].toString(), QString::fromUtf8(utf8));
    // A list of texts is written as Qt's JSON writer writes it (every keyword is read in the
    // standard form).
    const ValueFormScope standard(ValueForm::standard);
    const ToolResult all = readCli({photo});
    EXPECT_TRUE(all.out.contains("\"iptcProperties.keywords\": {\"value\": "
                                 "[\"a\\\"b\\\\c\",\"\xc3\xb8\xe2\x82\xac\",\"t\\tu\\u0001\\b\"]"))
        << all.out.toStdString();
}

// The values beyond the form's fields come as one object, keys in order, with a sidecar's
// values over the photo's and named under "fromSidecar".
TEST(ReadCommand, ExtrasComeAsOneObjectInKeyOrder) {
    const ValueFormScope standard(ValueForm::standard); // where sidecars are read
    QTemporaryDir dir;
    const QString photo = jpegWithTags(dir.filePath("p.jpg"), [](Exiv2::Image& img) {
        Exiv2::XmpData& xmp = img.xmpData();
        const Exiv2::Value::AutoPtr bag = Exiv2::Value::create(Exiv2::xmpBag);
        bag->read("b\"q");
        bag->read("\xf0\x9f\x98\x80");
        xmp.add(Exiv2::XmpKey("Xmp.dc.subject"), bag.get());
        xmp["Xmp.xmp.Rating"] = "-1";
        xmp["Xmp.xmp.Label"] = "Red";
        xmp["Xmp.photoshop.Credit"] = "C\\r\t";
    });
    const QString bare = jpegWithTags(dir.filePath("bare.jpg"), [](Exiv2::Image&) {});
    writeBytes(dir.filePath("p.xmp"),
               "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
               "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
               "rdf:about=\"\" xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" xmp:Rating=\"4\"/>"
               "</rdf:RDF></x:xmpmeta>");
    const ToolResult r = readCli({photo, bare});
    EXPECT_EQ(r.exitCode, 0);
    const QList<QByteArray> lines = r.out.split('\n');
    ASSERT_GE(lines.size(), 2);
    EXPECT_TRUE(lines[0].contains(
        "\"extras\": {\"creditLine\":\"C\\\\r\\t\",\"fromSidecar\":[\"rating\"],"
        "\"keywords\":[\"b\\\"q\",\"\xf0\x9f\x98\x80\"],\"label\":\"Red\",\"rating\":4}"))
        << lines[0].toStdString();
    EXPECT_FALSE(lines[1].contains("extras")) << lines[1].toStdString();
}

// A date is printed at the offset of the zone it is read in: "Z" at UTC, else the offset in
// whole minutes (seconds of an offset shift the time but are not printed).
TEST(ReadCommand, DatesCarryTheOffsetOfTheLocalZone) {
    QTemporaryDir dir;
    const QString photo = jpegWithTags(dir.filePath("p.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Photo.DateTimeOriginal", Exiv2::asciiString,
                "2019-05-01T10:20:30+0200");
    });
    const auto dateIn = [&](const QString& zone) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TZ"), zone);
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(TAGMOOR_CLI), cliArgs({QStringLiteral("read"), photo}));
        const ToolResult r = finishTool(p);
        EXPECT_EQ(r.exitCode, 0) << zone.toStdString();
        const QJsonObject record = objectsOf(r.out).value(0);
        return record["exifProperties.dateTimeOriginal"]["value"].toString();
    };
    EXPECT_EQ(dateIn(QStringLiteral("UTC")), QStringLiteral("2019-05-01T08:20:30.000Z"));
    EXPECT_EQ(dateIn(QStringLiteral("XYZ-5:30")), QStringLiteral("2019-05-01T13:50:30.000+05:30"));
    EXPECT_EQ(dateIn(QStringLiteral("XYZ+11")), QStringLiteral("2019-04-30T21:20:30.000-11:00"));
    EXPECT_EQ(dateIn(QStringLiteral("XYZ+0:20:30")),
              QStringLiteral("2019-05-01T08:00:00.000-00:20"));
}

TEST(ReadCommand, ArgumentsAndHelp) {
    const ToolResult help = readCli({QStringLiteral("--help")});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.startsWith("usage: tagmoor-cli read"));
    EXPECT_EQ(readCli({}).exitCode, 2);
    EXPECT_EQ(readCli({QStringLiteral("--bogus"), QStringLiteral("x.jpg")}).exitCode, 2);
    // After "--" a name that starts with a dash is a path.
    const ToolResult dashed = readCli({QStringLiteral("--"), QStringLiteral("-odd.jpg")});
    EXPECT_EQ(dashed.exitCode, 1);
    EXPECT_EQ(objectsOf(dashed.out).value(0)["path"].toString(), QStringLiteral("-odd.jpg"));
}

// Reading on several threads prints exactly what one thread prints, in the order of the
// paths: every sample (photos, damaged files, files of no photo type), a path given twice and
// a missing one, read as relative paths from the samples folder.
TEST(ReadCommand, ThreadsGiveTheSameOutputAsOneThread) {
    const QDir root(QStringLiteral(TAGMOOR_SAMPLES));
    QStringList paths;
    for (const QString& folder : {QStringLiteral("formats"), QStringLiteral("malformed")})
        for (const QString& name : QDir(root.filePath(folder)).entryList(QDir::Files, QDir::Name))
            paths << folder + QLatin1Char('/') + name;
    ASSERT_GT(paths.size(), 20);
    paths << paths.first() << QStringLiteral("formats/none.jpg");

    const auto read = [&](const QStringList& options) {
        QProcess p;
        p.setWorkingDirectory(root.absolutePath());
        p.start(QStringLiteral(TAGMOOR_CLI), cliArgs(QStringList{QStringLiteral("read")} + options +
                                                     QStringList{QStringLiteral("--")} + paths));
        return finishTool(p, 120000);
    };
    const ToolResult one = read({});
    EXPECT_EQ(one.exitCode, 1);
    EXPECT_EQ(objectsOf(one.out).size(), paths.size());
    for (const QString& threads : {QStringLiteral("2"), QStringLiteral("5")}) {
        const ToolResult many = read({QStringLiteral("--threads"), threads});
        EXPECT_EQ(many.exitCode, one.exitCode);
        EXPECT_EQ(many.out, one.out) << "--threads " << threads.toStdString();
    }
    EXPECT_EQ(readCli({QStringLiteral("--threads"), QStringLiteral("0"), QStringLiteral("x.jpg")})
                  .exitCode,
              2);
    EXPECT_EQ(readCli({QStringLiteral("x.jpg"), QStringLiteral("--threads")}).exitCode, 2);
}

// Qt's image readers come with Qt Gui, which a command loads only when a photo needs them: not
// for JPEGs, whose size is read with their tags. A program copied away from its module still
// reads every photo, takes their sizes from the other readers, and says so once.
TEST(ReadCommand, LoadsQtsImageReadersOnlyForPhotosThatNeedThem) {
    QTemporaryDir dir;
    const QString jpeg = jpegWithTags(dir.filePath("p.jpg"), [](Exiv2::Image&) {});
    QStringList pngs;
    for (const QString& name : {QStringLiteral("a.png"), QStringLiteral("b.png")}) {
        QImage picture(40, 30, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        ASSERT_TRUE(picture.save(dir.filePath(name)));
        pngs << dir.filePath(name);
    }
    // The dynamic linker lists every library it loads.
    const auto read = [](const QString& program, const QStringList& paths) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("LD_DEBUG"), QStringLiteral("files"));
        p.setProcessEnvironment(env);
        p.start(program, cliArgs(QStringList{QStringLiteral("read")} + paths));
        return finishTool(p);
    };
    const auto loaded = [](const ToolResult& r, const char* library) {
        return r.err.contains(QByteArray("file=") + library) ||
               r.err.contains(QByteArray("/") + library);
    };

    const ToolResult jpegs = read(QStringLiteral(TAGMOOR_CLI), {jpeg});
    EXPECT_EQ(jpegs.exitCode, 0);
    EXPECT_FALSE(loaded(jpegs, "libQt6Gui.so")) << "Qt Gui came in for a JPEG";

    const ToolResult withModule = read(QStringLiteral(TAGMOOR_CLI), pngs);
    EXPECT_EQ(withModule.exitCode, 0);
    EXPECT_TRUE(loaded(withModule, "tagmoor-cli-images.so"));
    EXPECT_FALSE(withModule.err.contains("tagmoor-cli:")) << withModule.err.toStdString();
    const QList<QJsonObject> sized = objectsOf(withModule.out);
    ASSERT_EQ(sized.size(), 2);
    EXPECT_EQ(sized[0]["pixelWidth"]["value"].toDouble(), 40.0);
    EXPECT_EQ(sized[1]["pixelHeight"]["value"].toDouble(), 30.0);

    const QString lone = dir.filePath("tagmoor-cli");
    ASSERT_TRUE(QFile::copy(QStringLiteral(TAGMOOR_CLI), lone));
    const ToolResult withoutModule = read(lone, pngs);
    EXPECT_EQ(withoutModule.exitCode, 0);
    EXPECT_EQ(withoutModule.out, withModule.out);
    EXPECT_EQ(withoutModule.err.count("tagmoor-cli: Qt's image readers could not be loaded"), 1)
        << withoutModule.err.toStdString();
}

} // namespace
} // namespace tagmoor
