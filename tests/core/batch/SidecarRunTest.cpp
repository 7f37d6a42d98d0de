// Runs that write, carry and strip XMP sidecars.
#include "BatchTestSupport.h"

#include "metadata/ExtraTags.h"
#include "metadata/XmpSidecar.h"
#include "model/KeyTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

QString modernFixture(const char* name) {
    return QStringLiteral(TAGMOOR_TEST_DATA "/modern/") + QLatin1String(name);
}

// The text a sidecar holds for a key of the key lists; nothing when it holds none.
std::optional<QString> sidecarText(const QString& path, const char* key) {
    const auto set = readSidecarFile(path);
    if (!set)
        return std::nullopt;
    return set->at(*findKeyRow(QLatin1String(key))).text();
}

const QByteArray kAdobeSidecar =
    "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
    "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" "
    "xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\" "
    "xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\" photoshop:City=\"Lyon\" "
    "crs:Exposure2012=\"+0.50\"/></rdf:RDF></x:xmpmeta>";

class SidecarRun : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const QString& name) const { return dir.filePath(name); }
};

TEST_F(SidecarRun, AFormatThatCannotBeWrittenGetsASidecarAndKeepsItsBytes) {
    const QString heic = copySample(modernFixture("small.heic"), dir.path());
    const QString cr3 = copySample(modernFixture("tags.cr3"), dir.path());
    const QString jpeg = makeJpeg(path("plain.jpg"));
    const QByteArray heicBytes = readBytes(heic);
    const QByteArray cr3Bytes = readBytes(cr3);
    {
        // The described form leaves sidecars alone: the photos are reported as not written.
        RunValues described = editRun(ProcessingMode::keepUnedited);
        described.sidecar = SidecarOptions::frontEndDefault();
        edit(described, "Artist", "Jane");
        const BatchResult result = runBatch(described, recordsOf({heic, cr3}));
        EXPECT_EQ(result.problems.size(), 2);
        EXPECT_FALSE(findSidecar(heic));
    }
    ValueFormScope scope(ValueForm::standard);
    RunValues values = editRun(ProcessingMode::keepUnedited);
    values.sidecar = SidecarOptions::frontEndDefault();
    edit(values, "Artist", "Jane");
    const BatchResult result = runBatch(values, recordsOf({heic, cr3, jpeg}));
    EXPECT_TRUE(result.problems.isEmpty()) << result.problems.value(0).reason.toStdString();
    EXPECT_EQ(result.savedPhotos(), 3);
    EXPECT_EQ(result.notes,
              (QList<PhotoProblem>{{heic, "written to sidecar"}, {cr3, "written to sidecar"}}));
    EXPECT_EQ(readBytes(heic), heicBytes);
    EXPECT_EQ(readBytes(cr3), cr3Bytes);
    EXPECT_EQ(sidecarText(heic + ".xmp", "Exif.Image.Artist"), QStringLiteral("Jane"));
    EXPECT_EQ(sidecarText(cr3 + ".xmp", "Exif.Image.Artist"), QStringLiteral("Jane"));
    if (haveTool("exiftool")) {
        const ToolResult tags = runTool("exiftool", {"-a", "-G1", "-s", heic + ".xmp"});
        EXPECT_TRUE(tags.out.contains("[XMP-dc]        Creator                         : Jane"))
            << tags.out.toStdString();
    }
    // A photo that can be written takes the edit itself and gets no sidecar.
    EXPECT_EQ(tagOf(jpeg, "Exif.Image.Artist"), QStringLiteral("Jane"));
    EXPECT_FALSE(findSidecar(jpeg));
}

// Into an output folder, such a photo is copied as it is, its sidecar beside it.
TEST_F(SidecarRun, ACopyOfAFormatThatCannotBeWrittenKeepsItsBytesBesideItsSidecar) {
    const QString heic = copySample(modernFixture("small.heic"), dir.path());
    const QString jpeg = makeJpeg(path("plain.jpg"));
    ASSERT_TRUE(QDir().mkpath(path("out")));
    ValueFormScope scope(ValueForm::standard);
    RunValues values = editRun(ProcessingMode::keepUnedited, path("out"));
    values.sidecar = SidecarOptions::frontEndDefault();
    edit(values, "Artist", "Jane");
    const BatchResult result = runBatch(values, recordsOf({heic, jpeg}));
    EXPECT_TRUE(result.problems.isEmpty()) << result.problems.value(0).reason.toStdString();
    EXPECT_EQ(readBytes(path("out/small.heic")), readBytes(heic));
    EXPECT_EQ(sidecarText(path("out/small.heic.xmp"), "Exif.Image.Artist"), QStringLiteral("Jane"));
    EXPECT_EQ(tagOf(path("out/plain.jpg"), "Exif.Image.Artist"), QStringLiteral("Jane"));
}

TEST_F(SidecarRun, AlwaysLeavesThePhotoAndBothWritesBothIntoTheSidecarFound) {
    ValueFormScope scope(ValueForm::standard);
    const QString jpeg = makeJpeg(path("photo.jpg"));
    ASSERT_TRUE(writeBytes(path("photo.xmp"), kAdobeSidecar));
    const QByteArray before = readBytes(jpeg);
    RunValues values = editRun(ProcessingMode::keepUnedited);
    values.sidecar.write = SidecarWrite::always;
    edit(values, "Artist", "Jane");
    EXPECT_TRUE(runBatch(values, recordsOf({jpeg})).problems.isEmpty());
    EXPECT_EQ(readBytes(jpeg), before);
    // The sidecar found (NAME.xmp) takes the edit; no second one is made.
    EXPECT_EQ(sidecarText(path("photo.xmp"), "Exif.Image.Artist"), QStringLiteral("Jane"));
    EXPECT_EQ(sidecarText(path("photo.xmp"), "Iptc.Application2.City"), QStringLiteral("Lyon"));
    EXPECT_TRUE(readBytes(path("photo.xmp")).contains("Exposure2012"));
    EXPECT_FALSE(QFileInfo::exists(path("photo.jpg.xmp")));

    values.sidecar.write = SidecarWrite::both;
    edit(values, "Artist", "Joe");
    EXPECT_TRUE(runBatch(values, recordsOf({jpeg})).problems.isEmpty());
    EXPECT_EQ(tagOf(jpeg, "Exif.Image.Artist"), QStringLiteral("Joe"));
    EXPECT_EQ(sidecarText(path("photo.xmp"), "Exif.Image.Artist"), QStringLiteral("Joe"));
}

TEST_F(SidecarRun, KeywordsRatingAndLabelGoToTheSidecarAndReadBackFromIt) {
    ValueFormScope scope(ValueForm::standard);
    const QString jpeg = makeJpeg(path("photo.jpg"));
    RunValues values = editRun(ProcessingMode::keepUnedited);
    values.extras.addKeywords = QStringList{"Dawn", "Places|Lisbon"};
    ASSERT_TRUE(runBatch(values, recordsOf({jpeg})).problems.isEmpty());
    const QByteArray before = readBytes(jpeg);

    // A sidecar made for a keyword edit starts from the photo's own keywords.
    values.sidecar.write = SidecarWrite::always;
    values.extras.addKeywords = QStringList{"Harbour"};
    values.extras.rating = 4;
    values.extras.label = QStringLiteral("Red");
    const BatchResult result = runBatch(values, recordsOf({jpeg}));
    EXPECT_TRUE(result.problems.isEmpty()) << result.problems.value(0).reason.toStdString();
    EXPECT_EQ(readBytes(jpeg), before);
    const auto merged = readExtraValuesOf(jpeg);
    ASSERT_TRUE(merged);
    EXPECT_EQ(merged->keywords.subject, (QStringList{"Dawn", "Lisbon", "Harbour"}));
    EXPECT_EQ(merged->keywords.hierarchical, QStringList{"Places|Lisbon"});
    EXPECT_EQ(merged->rating, 4);
    EXPECT_EQ(merged->label, QStringLiteral("Red"));
    EXPECT_EQ(merged->sidecarPath, jpeg + ".xmp");
    EXPECT_TRUE(merged->fromSidecar.keywords && merged->fromSidecar.rating &&
                merged->fromSidecar.label);
    EXPECT_FALSE(merged->fromSidecar.persons);
    const auto own = readExtraValuesOf(jpeg, SidecarValues::Ignored);
    ASSERT_TRUE(own);
    EXPECT_EQ(own->keywords.subject, (QStringList{"Dawn", "Lisbon"}));
    EXPECT_FALSE(own->rating);
    EXPECT_FALSE(own->fromSidecar.any());
    if (haveTool("exiftool")) {
        const ToolResult tags = runTool("exiftool", {"-a", "-G1", "-s", jpeg + ".xmp"});
        for (const char* line : {"[XMP-xmp]       Rating                          : 4",
                                 "[XMP-xmp]       Label                           : Red",
                                 "[XMP-dc]        Subject                         : Dawn, Lisbon, "
                                 "Harbour"})
            EXPECT_TRUE(tags.out.contains(line)) << line << "\n" << tags.out.toStdString();
    }

    // The next edit starts from the sidecar, which now holds the photo's whole set.
    values.extras = {};
    values.extras.removeKeywords = QStringList{"Dawn"};
    EXPECT_TRUE(runBatch(values, recordsOf({jpeg})).problems.isEmpty());
    EXPECT_EQ(readExtraValuesOf(jpeg)->keywords.subject, (QStringList{"Lisbon", "Harbour"}));
    EXPECT_EQ(readExtraValuesOf(jpeg)->rating, 4);
    EXPECT_EQ(readBytes(jpeg), before);
}

} // namespace
} // namespace tagmoor

namespace {

using namespace tagmoor;
using namespace tagmoor::test;

ToolResult sidecarCli(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI), args);
}

class SidecarCommand : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        makeJpeg(in() + "/a.jpg");
        makeJpeg(in() + "/b.jpg");
        writeBytes(in() + "/a.jpg.xmp", kAdobeSidecar);
        writeBytes(in() + "/b.xmp", kAdobeSidecar);
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }
    QTemporaryDir tmp;
    ValueFormScope scope{ValueForm::standard};
};

TEST_F(SidecarCommand, ACopyUnderANewNameTakesItsSidecarAndASidecarInTheWayIsACollision) {
    QDir().mkpath(out());
    writeBytes(out() + "/b-new.xmp", "old");
    const QStringList args{"apply",          "--out", out(),         "--rename",
                           "add-after:-new", "--set", "Artist=Jane", in()};
    const ToolResult first = sidecarCli(args);
    EXPECT_EQ(first.exitCode, 1) << first.err.toStdString();
    EXPECT_TRUE(QFileInfo::exists(out() + "/a-new.jpg"));
    EXPECT_EQ(readBytes(out() + "/a-new.jpg.xmp"), kAdobeSidecar);
    // b's sidecar would replace a file that is there: b is skipped whole.
    EXPECT_FALSE(QFileInfo::exists(out() + "/b-new.jpg"));
    EXPECT_EQ(readBytes(out() + "/b-new.xmp"), "old");

    const ToolResult again = sidecarCli(QStringList(args) << "--overwrite");
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(tagOf(out() + "/b-new.jpg", "Exif.Image.Artist"), QStringLiteral("Jane"));
    EXPECT_EQ(sidecarText(out() + "/b-new.xmp", "Iptc.Application2.City"), QStringLiteral("Lyon"));
    // The sources keep theirs.
    EXPECT_EQ(readBytes(in() + "/b.xmp"), kAdobeSidecar);
}

TEST_F(SidecarCommand, StrippingXmpEmptiesRemovesOrKeepsTheSidecar) {
    const QStringList strip{"apply", "--in-place", "--mode", "remove", "--strip", "xmp"};
    EXPECT_EQ(sidecarCli(QStringList(strip) << in() + "/a.jpg").exitCode, 0);
    ASSERT_TRUE(QFileInfo::exists(in() + "/a.jpg.xmp"));
    EXPECT_EQ(sidecarText(in() + "/a.jpg.xmp", "Iptc.Application2.City"), std::nullopt);
    EXPECT_FALSE(readBytes(in() + "/a.jpg.xmp").contains("Exposure2012"));

    EXPECT_EQ(sidecarCli(QStringList(strip) << "--sidecar-strip"
                                            << "keep" << in() + "/b.jpg")
                  .exitCode,
              0);
    EXPECT_EQ(readBytes(in() + "/b.xmp"), kAdobeSidecar);
    EXPECT_EQ(sidecarCli(QStringList(strip) << "--sidecar-strip"
                                            << "remove" << in() + "/b.jpg")
                  .exitCode,
              0);
    EXPECT_FALSE(QFileInfo::exists(in() + "/b.xmp"));
}

TEST_F(SidecarCommand, ReadNamesTheSidecarAndApplyNamesThePhotosWrittenToTheirSidecar) {
    const ToolResult read = sidecarCli({"read", in() + "/b.jpg"});
    const QJsonObject line = QJsonDocument::fromJson(read.out).object();
    EXPECT_EQ(line["sidecar"].toObject()["path"].toString(), in() + "/b.xmp");
    EXPECT_EQ(line["sidecar"].toObject()["keys"].toArray(), QJsonArray{"Iptc.Application2.City"});
    EXPECT_EQ(line["iptcProperties.city"].toObject()["value"].toString(), "Lyon");

    const QString heic = copySample(modernFixture("small.heic"), in());
    const ToolResult json =
        sidecarCli({"apply", "--in-place", "--json", "--set", "Artist=Jane", heic});
    EXPECT_EQ(json.exitCode, 0) << json.err.toStdString();
    const QJsonObject result = QJsonDocument::fromJson(json.out).object();
    EXPECT_EQ(result["notes"].toArray(),
              (QJsonArray{QJsonObject{{"path", heic}, {"note", "written to sidecar"}}}));
    const ToolResult described =
        sidecarCli({"--form", "described", "apply", "--in-place", "--sidecar", "always",
                    "--formats", "all", "--set", "Artist=Joe", heic});
    EXPECT_EQ(described.exitCode, 0) << described.err.toStdString();
    EXPECT_TRUE(described.out.contains(heic.toUtf8() + ": written to sidecar"));
    EXPECT_EQ(sidecarText(heic + ".xmp", "Exif.Image.Artist"), QStringLiteral("Joe"));
}

} // namespace
