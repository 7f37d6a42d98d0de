#include "BatchTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

ToolResult apply(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI), QStringList{"apply"} + args);
}

class ApplyCommand : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in() + "/sub");
        copySample(formatsDir() + "/et-GPS.jpg", in());
        copySample(formatsDir() + "/Reagan.jpg", in() + "/sub");
        writeBytes(in() + "/notes.txt", "not a photo");
        writeBytes(in() + "/.hidden.jpg", "hidden");
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }
    QTemporaryDir tmp;
};

} // namespace

TEST_F(ApplyCommand, BadArgumentsExitWithTwoAndAClearMessage) {
    const QList<std::pair<QStringList, QString>> cases = {
        {{"--set", "Artist=x", in()}, "--out DIR or --in-place"},
        {{"--out", out(), "--in-place", in()}, "exclude each other"},
        {{"--set", "Nope=1", "--out", out(), in()}, "no field named 'Nope'"},
        {{"--set", "ISO=fast", "--out", out(), in()}, "ISO takes an integer"},
        {{"--set", "DateTimeOriginal=2020", "--out", out(), in()}, "date field"},
        {{"--date", "Artist=keep", "--out", out(), in()}, "not a date field"},
        {{"--date", "ModifyDate=shift-time:1:2", "--out", out(), in()}, "three signed numbers"},
        {{"--date", "ModifyDate=select:yesterday", "--out", out(), in()}, "select wants a date"},
        {{"--mode", "remove", "--out", out(), in()}, "No options selected for removing metadata"},
        {{"--strip", "exif", "--out", out(), in()}, "--strip goes with --mode remove"},
        {{"--rename", "shuffle", "--out", out(), in()}, "unknown rename rule"},
        {{"--out", out(), in(), "--preset"}, "--preset needs a value"},
        {{"--out", out(), in() + "/nowhere"}, "no such file or folder"},
        {{"--bogus"}, "unknown option '--bogus'"},
    };
    for (const auto& [args, message] : cases) {
        const ToolResult r = apply(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(QString::fromUtf8(r.err).contains(message))
            << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(out()));
    const ToolResult help = apply({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_TRUE(help.out.contains("shift-time:H:M:S"));
}

// The dry run prints each photo's plan (folders walked by the list's rules) and changes
// nothing; the real run then does what it said, leaves the sources alone and prints the
// result screen's summary.
TEST_F(ApplyCommand, DryRunPrintsThePlanAndTheRunDoesIt) {
    const auto before = folderChecksums(in());
    const QStringList args = {"--set",    "Artist=Jane Doe",
                              "--set",    "Iptc.Application2.City=Paris",
                              "--date",   "DateTimeOriginal=shift-time:+1:00:00",
                              "--rename", "add-after:_e",
                              "--out",    out(),
                              in()};
    const ToolResult dry = apply(QStringList{"--dry-run"} + args);
    ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    const QString plan = QString::fromUtf8(dry.out);
    EXPECT_TRUE(
        plan.contains(in() + "/et-GPS.jpg -> " + out() + "/et-GPS_e.jpg: would be written"));
    EXPECT_TRUE(
        plan.contains(in() + "/sub/Reagan.jpg -> " + out() + "/Reagan_e.jpg: would be written"));
    EXPECT_TRUE(plan.contains("set Exif.Image.Artist = \"Jane Doe\""));
    EXPECT_TRUE(plan.contains("set Iptc.Application2.City = \"Paris\""));
    EXPECT_TRUE(plan.contains("set Exif.Photo.DateTimeOriginal = \"2002-07-13 16:58:28\""));
    EXPECT_FALSE(plan.contains("notes") || plan.contains("hidden"));
    EXPECT_FALSE(QFileInfo::exists(out()));
    EXPECT_EQ(folderChecksums(in()), before);

    const ToolResult run = apply(args);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString(); // no progress when not a terminal
    EXPECT_EQ(QString::fromUtf8(run.out).split('\n').first(), "Batch Process Completed!");
    EXPECT_TRUE(run.out.contains("2 Photos saved successfully!"));
    EXPECT_EQ(tagOf(out() + "/et-GPS_e.jpg", "Exif.Image.Artist"), "Jane Doe");
    EXPECT_EQ(tagOf(out() + "/Reagan_e.jpg", "Iptc.Application2.City"), "Paris");
    EXPECT_EQ(folderChecksums(in()), before);

    // Again, without --overwrite: both are in the way.
    const ToolResult again = apply(args);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.out.contains("Batch Process Partially Completed!"));
    EXPECT_TRUE(again.out.contains("Photos Skipped: 2"));
    EXPECT_EQ(apply(QStringList{"--overwrite"} + args).exitCode, 0);
}

TEST_F(ApplyCommand, InPlaceRemovalStripsTheChosenGroups) {
    const QString photo = in() + "/et-GPS.jpg";
    ASSERT_TRUE(tagOf(photo, "Exif.GPSInfo.GPSLatitude").has_value());
    const ToolResult r = apply({"--mode", "remove", "--strip", "gps,iptc", "--in-place", photo});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_FALSE(tagOf(photo, "Exif.GPSInfo.GPSLatitude").has_value());
    EXPECT_FALSE(tagOf(photo, "Iptc.Application2.City").has_value());
    EXPECT_TRUE(tagOf(photo, "Exif.Image.Make").has_value());
    EXPECT_TRUE(r.out.contains("Output Directory: Destination path is same as source path"));
}

// Hundreds of skipped photos (more than the run keeps in memory at once) are told on stderr
// and in the JSON in list order, after the summary; a folder's not-photos among them are left
// out and named.
TEST_F(ApplyCommand, ManyProblemsAreToldInListOrder) {
    const QString many = tmp.path() + "/many";
    QDir().mkpath(many);
    QStringList expected;
    for (int i = 0; i < 600; ++i) {
        const QString path =
            many + QStringLiteral("/photo with a long name %1.jpg").arg(i, 4, 10, QLatin1Char('0'));
        makeJpeg(path, 8, 8);
        if (i % 100 == 7)
            writeBytes(path, "not a photo any more");
        else
            expected << path;
    }
    // Into their own folder: every output is in the way.
    const QStringList args = {"--set", "Artist=Jane", "--out", many, many};
    const ToolResult run = apply(args);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.contains("Photos Skipped: 594"));
    QStringList told;
    for (const QString& line : QString::fromUtf8(run.err).split('\n', Qt::SkipEmptyParts)) {
        if (line.endsWith(": skipped: a file exists at the output path"))
            told << line.mid(QStringLiteral("tagmoor-cli apply: ").size())
                        .chopped(
                            QStringLiteral(": skipped: a file exists at the output path").size());
        else
            EXPECT_TRUE(line.endsWith(": not a photo, left out of the batch"))
                << line.toStdString();
    }
    EXPECT_EQ(told, expected);

    const ToolResult json = apply(QStringList{"--json"} + args);
    EXPECT_EQ(json.exitCode, 1);
    const QJsonObject r = QJsonDocument::fromJson(json.out).object();
    EXPECT_EQ(r["skipped"].toInt(), 594);
    QStringList inJson;
    for (const QJsonValue& problem : r["problems"].toArray())
        inJson << problem.toObject()["path"].toString();
    EXPECT_EQ(inJson, expected);
    EXPECT_EQ(r["notPhotos"].toArray().size(), 6);
}

// A run takes each photo's own dates from the bytes it edits, where the dry run reads the photo
// beforehand: both must see the same dates, a sidecar's among them (the standard form reads
// sidecars), into a folder and in place.
TEST_F(ApplyCommand, ARunShiftsTheDatesItsDryRunAnnounces) {
    ASSERT_TRUE(
        writeBytes(in() + "/sub/Reagan.xmp",
                   "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                   "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
                   "rdf:about=\"\" xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\" "
                   "photoshop:DateCreated=\"2010-05-01T10:00:00\"/></rdf:RDF></x:xmpmeta>"));
    const QString shift = QStringLiteral("DateTimeOriginal=shift-time:+1:00:00");
    for (const QString form : {"standard", "described"}) {
        for (const bool inPlace : {false, true}) {
            SCOPED_TRACE((form + (inPlace ? " in place" : " into a folder")).toStdString());
            QTemporaryDir work;
            const QString photos = work.filePath("in");
            QDir().mkpath(photos);
            copySample(in() + "/sub/Reagan.jpg", photos);
            QFile::copy(in() + "/sub/Reagan.xmp", photos + "/Reagan.xmp");
            copySample(in() + "/et-GPS.jpg", photos);
            const QStringList target =
                inPlace ? QStringList{"--in-place"} : QStringList{"--out", work.filePath("out")};
            const QStringList args =
                QStringList{"--form", form, "--date", shift} + target + QStringList{photos};
            const ToolResult dry = apply(QStringList{"--dry-run"} + args);
            ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
            const ToolResult run = apply(args);
            ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
            const QString folder = inPlace ? photos : work.filePath("out");
            for (const QString name : {"Reagan.jpg", "et-GPS.jpg"}) {
                const auto written = tagOf(folder + "/" + name, "Exif.Photo.DateTimeOriginal");
                ASSERT_TRUE(written) << name.toStdString();
                QString announced = *written;
                if (form == QLatin1String("standard"))
                    announced.replace(4, 1, '-').replace(7, 1, '-');
                EXPECT_TRUE(dry.out.contains("set Exif.Photo.DateTimeOriginal = \"" +
                                             announced.toUtf8() + "\""))
                    << name.toStdString() << ": " << written->toStdString();
            }
            if (form == QLatin1String("standard")) {
                EXPECT_EQ(tagOf(folder + "/Reagan.jpg", "Exif.Photo.DateTimeOriginal"),
                          "2010:05:01 11:00:00");
            }
        }
    }
}
