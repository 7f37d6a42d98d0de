// The table commands of tagmoor-cli, checked against an outside reader and writer of the same
// tables (exiftool) where it is installed.
#include "TestSupport.h"

#include "exchange/CsvTable.h"
#include "foundation/ValueForm.h"
#include "metadata/PropertyLoading.h"
#include "model/FormFieldTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

ToolResult csvCli(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI), args);
}

const QStringList kSources = {"et-GPS.jpg", "et-IPTC.jpg", "et-ExifTool.jpg"};

// The tags both tools know by these names; the text ones are compared cell by cell.
// (Make and Model by their group: the other tool may give a maker note's otherwise.)
const QStringList kTextTags = {"Artist",     "ImageDescription", "Copyright", "EXIF:Make",
                               "EXIF:Model", "Software",         "By-line",   "By-lineTitle",
                               "Headline",   "Caption-Abstract", "City",      "Province-State",
                               "Credit",     "Source",           "Keywords",  "ObjectName"};
// (Without its group, the other tool may give a maker note's DateTimeOriginal.)
const QStringList kNumberTags = {"GPSLatitude",     "GPSLatitudeRef",        "GPSLongitude",
                                 "GPSLongitudeRef", "EXIF:DateTimeOriginal", "Orientation"};

QString withoutGroup(const QString& tag) {
    return tag.mid(tag.indexOf(':') + 1);
}

// Where the tools differ by design: the standard form's keyword list is the photo's IPTC and
// XMP keywords together, the other tool's Keywords the IPTC list alone; this photo's two
// lists differ.
bool comparable(const QString& photo, const QString& tag) {
    return !(photo.endsWith("et-ExifTool.jpg") && withoutGroup(tag) == "Keywords");
}

// `after` holds every value of `before` that can be compared.
void expectSameValues(const QJsonObject& before, const QJsonObject& after, const QString& photo) {
    for (auto it = before.begin(); it != before.end(); ++it) {
        if (!comparable(photo, it.key()))
            continue;
        EXPECT_EQ(after.value(it.key()), it.value())
            << photo.toStdString() << " " << it.key().toStdString();
    }
}

// What exiftool reads from a photo, as plain numbers, for the tags given.
QJsonObject readBack(const QString& path, const QStringList& tags) {
    QStringList args{"-j", "-n"};
    for (const QString& tag : tags)
        args << "-" + tag;
    const ToolResult r = runTool("exiftool", args << path);
    QJsonObject o = QJsonDocument::fromJson(r.out).array().at(0).toObject();
    o.remove("SourceFile");
    return o;
}

CsvTable tableOf(const QByteArray& text) {
    QString error;
    auto t = CsvTable::parse(text, &error);
    EXPECT_TRUE(t) << error.toStdString();
    return t.value_or(CsvTable{});
}

// The table with each photo's row pointed at its copy in `folder`.
QByteArray retargeted(CsvTable table, const QString& folder) {
    for (QStringList& row : table.rows)
        row[0] = folder + "/" + QFileInfo(row[0]).fileName();
    return table.toText();
}

// The program's own form, the standard one, unless a test says otherwise.
class CsvCommand : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(targets());
        for (const QString& name : kSources) {
            sources << formatsDir() + "/" + name;
            // Each target starts as another photo, so that every value has to travel.
            copySample(formatsDir() + "/Reagan.jpg", targets(), name);
        }
    }
    QString targets() const { return tmp.path() + "/targets"; }
    ValueFormScope scope{ValueForm::standard};
    QTemporaryDir tmp;
    QStringList sources;
};

TEST_F(CsvCommand, ExportNamesAndFillsItsColumnsAsTheOtherToolDoes) {
    if (!haveTool("exiftool"))
        GTEST_SKIP() << "needs the exiftool command";
    const ToolResult ours = csvCli(QStringList{"export", "--csv"} + sources);
    ASSERT_EQ(ours.exitCode, 0) << ours.err.toStdString();
    QStringList args{"-csv", "-n"};
    for (const QString& tag : kTextTags + kNumberTags)
        args << "-" + tag;
    const ToolResult theirs = runTool("exiftool", args + sources);
    const CsvTable a = tableOf(ours.out);
    const CsvTable b = tableOf(theirs.out);
    ASSERT_EQ(a.rows.size(), 3);
    ASSERT_EQ(b.rows.size(), 3);
    int compared = 0;
    for (const QString& tag : kTextTags + kNumberTags) {
        const qsizetype ca = a.header.indexOf(withoutGroup(tag));
        const qsizetype cb = b.header.indexOf(withoutGroup(tag));
        // A tag that some photo has is a column of both tables, under the same name.
        EXPECT_EQ(ca >= 0, cb >= 0) << tag.toStdString();
        if (ca < 0 || cb < 0 || !kTextTags.contains(tag))
            continue;
        for (int r = 0; r < 3; ++r) {
            EXPECT_EQ(a.rows[r][0], b.rows[r][0]);
            if (!comparable(a.rows[r][0], tag))
                continue;
            EXPECT_EQ(a.rows[r][ca], b.rows[r][cb])
                << tag.toStdString() << " of " << a.rows[r][0].toStdString();
            ++compared;
        }
    }
    EXPECT_GT(compared, 20);
    // Columns no photo has a value for are left out, and --fields names its own.
    EXPECT_FALSE(a.header.contains("LensSerialNumber"));
    const ToolResult two = csvCli({"export", "--csv", "--fields", "Keywords,Artist", sources[0]});
    EXPECT_EQ(tableOf(two.out).header, (QStringList{"SourceFile", "Keywords", "Artist"}));
}

TEST_F(CsvCommand, TablesTravelBothWaysBetweenTheTools) {
    if (!haveTool("exiftool"))
        GTEST_SKIP() << "needs the exiftool command";
    const QStringList tags = kTextTags + kNumberTags;
    QMap<QString, QJsonObject> expected;
    for (const QString& source : sources)
        expected[QFileInfo(source).fileName()] = readBack(source, tags);

    // Their table into our import.
    QStringList args{"-csv", "-n"};
    for (const QString& tag : tags)
        args << "-" + tag;
    const QString theirs = tmp.path() + "/theirs.csv";
    writeBytes(theirs, retargeted(tableOf(runTool("exiftool", args + sources).out), targets()));
    const ToolResult imported = csvCli({"import", "--csv", theirs, "--in-place"});
    EXPECT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    for (const QString& name : kSources)
        expectSameValues(expected[name], readBack(targets() + "/" + name, tags), name);

    // Our table into their import, on fresh targets.
    for (const QString& name : kSources)
        copySample(formatsDir() + "/Reagan.jpg", targets(), name);
    const QString ours = tmp.path() + "/ours.csv";
    const ToolResult exported =
        csvCli(QStringList{"export", "--csv", "--fields", tags.join(",")} + sources);
    writeBytes(ours, retargeted(tableOf(exported.out), targets()));
    const ToolResult written =
        runTool("exiftool", {"-csv=" + ours, "-n", "-sep", ", ", "-overwrite_original", targets()});
    EXPECT_EQ(written.exitCode, 0) << written.err.toStdString();
    for (const QString& name : kSources)
        expectSameValues(expected[name], readBack(targets() + "/" + name, tags), name);
}

// A file that is no photo is left out of the table; only one named by the user counts as a
// failure, as in apply.
TEST_F(CsvCommand, ExportLeavesOutWhatIsNoPhoto) {
    writeBytes(targets() + "/broken.jpg", "no photo");
    const ToolResult folder = csvCli({"export", "--csv", "--fields", "Artist", targets()});
    EXPECT_EQ(folder.exitCode, 0) << folder.err.toStdString();
    EXPECT_EQ(tableOf(folder.out).rows.size(), 3);
    EXPECT_TRUE(folder.err.contains("broken.jpg: not a photo"));
    const ToolResult named = csvCli({"export", "--csv", targets() + "/broken.jpg"});
    EXPECT_EQ(named.exitCode, 1);
    EXPECT_EQ(csvCli({"export", targets()}).exitCode, 2); // no format named
}

// The other tool's table without its option for plain numbers: positions in degrees, minutes
// and seconds, hemispheres and sea level in words, fractions. (Its altitude is rounded to a
// tenth of a metre and its FNumber to two decimals in that form, so they are left out here.)
TEST_F(CsvCommand, ImportTakesTheOtherToolsPrintedPositions) {
    if (!haveTool("exiftool"))
        GTEST_SKIP() << "needs the exiftool command";
    const QStringList tags{"GPSLatitude",     "GPSLatitudeRef", "GPSLongitude",
                           "GPSLongitudeRef", "GPSAltitudeRef", "ExposureTime"};
    const QStringList photos{formatsDir() + "/et-GPS.jpg", formatsDir() + "/FurnaceCreekInn.jpg"};
    QStringList args{"-csv"};
    for (const QString& tag : tags)
        args << "-" + tag;
    for (const QString& photo : photos)
        copySample(formatsDir() + "/Reagan.jpg", targets(), QFileInfo(photo).fileName());
    const QString table = tmp.path() + "/printed.csv";
    writeBytes(table, retargeted(tableOf(runTool("exiftool", args + photos).out), targets()));
    const ToolResult r = csvCli({"import", "--csv", table, "--in-place"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    for (const QString& photo : photos) {
        const QString name = QFileInfo(photo).fileName();
        expectSameValues(readBack(photo, tags), readBack(targets() + "/" + name, tags), name);
    }
}

TEST_F(CsvCommand, ImportSkipsWhatIsNotThereErasesOnADashAndFillsInDefaults) {
    const QString a = copySample(formatsDir() + "/et-IPTC.jpg", tmp.path());
    const QString b = copySample(formatsDir() + "/et-GPS.jpg", tmp.path());
    const QString table = tmp.path() + "/t.csv";
    // The "*" row gives its cells to every row that has none of its own.
    writeBytes(table, "SourceFile,Artist,City,FileName,Caption-Abstract,ISO,Headline,ModifyDate\n"
                      "et-IPTC.jpg,Ann,-,x.jpg,,,,\n"
                      "gone.jpg,Bob,,y.jpg,,,,\n" +
                          QFileInfo(b).absoluteFilePath().toUtf8() +
                          ",,Lyon,,-,fast,,2020:01:02 03:04:05\n" +
                          "*,Everyone,,,,,{counter} {filename},\n");
    QProcess p;
    p.setWorkingDirectory(tmp.path());
    p.start(TAGMOOR_CLI, cliArgs({"import", "--csv", table, "--in-place"}));
    const ToolResult r = finishTool(p);
    // The missing photo and the refused cell are told; the others are written.
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("gone.jpg: no such photo, row left out")) << r.err.toStdString();
    EXPECT_EQ(r.err.count("FileName"), 1);
    EXPECT_TRUE(r.err.contains("ISO")) << r.err.toStdString();

    const auto recordA = loadImageProperties(QUrl::fromLocalFile(a));
    const auto recordB = loadImageProperties(QUrl::fromLocalFile(b));
    ASSERT_TRUE(recordA && recordB);
    EXPECT_EQ(recordA->tiffProperties->artist.text(), "Ann");
    EXPECT_TRUE(recordA->iptcProperties->city.isAbsent()); // "-" erased Kingston
    EXPECT_EQ(recordA->iptcProperties->captionAbstract.text(), "A witty caption"); // empty cell
    EXPECT_EQ(recordA->iptcProperties->headlines.text(), "1 et-IPTC.jpg");
    EXPECT_EQ(recordB->tiffProperties->artist.text(), "Everyone");
    EXPECT_EQ(recordB->iptcProperties->headlines.text(), "2 et-GPS.jpg");
    EXPECT_EQ(recordB->iptcProperties->city.text(), "Lyon");
    // A photo's own modify date becomes its file's time too, as a run's does.
    const QDateTime modified(QDate(2020, 1, 2), QTime(3, 4, 5));
    EXPECT_EQ(recordB->modifyDate.date(), modified);
    EXPECT_EQ(QFileInfo(b).lastModified(), modified);
    EXPECT_NE(QFileInfo(a).lastModified(), modified);
    EXPECT_TRUE(recordB->iptcProperties->captionAbstract.isAbsent());
    EXPECT_EQ(recordB->exifProperties->isoSpeedRating,
              loadImageProperties(QUrl::fromLocalFile(formatsDir() + "/et-GPS.jpg"))
                  ->exifProperties->isoSpeedRating);
}

} // namespace
