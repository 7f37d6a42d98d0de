// The plan before writing: what it lists is what the run then does, tag by tag, read back with
// the exiv2 command; the command line's dry run prints it.
#include "BatchTestSupport.h"

#include "batch/ChangePlan.h"

#include <QRegularExpression>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// "key" -> "type value" of every tag, as the exiv2 command prints them; the offsets that a
// rewrite moves are left out, as the plan leaves them out.
QMap<QString, QString> exiv2Tags(const QString& path) {
    static const QStringList layout = {
        "Exif.Image.ExifTag", "Exif.Image.GPSTag", "Exif.Photo.InteroperabilityTag",
        "Exif.Thumbnail.JPEGInterchangeFormat", "Exif.Image.StripOffsets"};
    static const QRegularExpression keyStart(R"(^(Exif|Iptc|Xmp)\.\S+\s)");
    QMap<QString, QString> tags;
    QString current;
    for (const QString& line :
         QString::fromUtf8(runTool("exiv2", {"-q", "-Pkyv", path}).out).split('\n')) {
        if (!keyStart.match(line).hasMatch()) {
            if (!current.isEmpty())
                tags[current] += ' ' + line;
            continue;
        }
        const QString key = line.section(' ', 0, 0);
        current = key;
        for (int n = 2; tags.contains(current); ++n)
            current = key + QStringLiteral("[%1]").arg(n);
        tags.insert(current, line.mid(key.size()));
    }
    for (const QString& key : layout)
        tags.remove(key);
    for (QString& value : tags)
        value = value.simplified();
    return tags;
}

QString asListed(const std::optional<TagText>& tag) {
    return tag ? (tag->type + ' ' + tag->value).simplified() : QString();
}

// The changes between two listings, as "key: before -> after" lines.
QStringList differences(const QMap<QString, QString>& before, const QMap<QString, QString>& after) {
    QStringList lines;
    QStringList keys = before.keys() + after.keys();
    keys.removeDuplicates();
    keys.sort();
    for (const QString& key : keys) {
        if (before.value(key) != after.value(key))
            lines << key + ": " + before.value(key) + " -> " + after.value(key);
    }
    return lines;
}

QStringList planned(const PhotoChanges& photo) {
    QStringList lines;
    for (const TagChange& c : photo.changes)
        lines << c.key + ": " + asListed(c.before) + " -> " + asListed(c.after);
    lines.sort();
    return lines;
}

} // namespace

// Every photo's planned tag changes are exactly the differences between its source and the
// run's output, the normalisation of the default mode included; names, skips and their
// reasons are those of the run.
TEST(ChangePlan, ListsExactlyWhatTheRunDoes) {
    if (!haveTool("exiv2"))
        GTEST_SKIP() << "needs the exiv2 command";
    QTemporaryDir tmp;
    const QString in = tmp.path() + "/in";
    const QString out = tmp.path() + "/out";
    QDir().mkpath(in);
    QDir().mkpath(out);
    QStringList photos;
    for (const char* sample : {"Reagan.jpg", "et-GPS.jpg", "Reagan.tiff", "exiv2-gc.jpg"})
        photos << copySample(formatsDir() + '/' + sample, in);
    photos << makeJpeg(in + "/bare.jpg");
    const QString latin = makeJpeg(in + "/latin.jpg");
    ASSERT_EQ(
        runTool("exiv2", {"-M", QStringLiteral("set Iptc.Envelope.CharacterSet \x1b.A"), latin})
            .exitCode,
        0);
    photos << latin;
    writeBytes(out + "/exiv2-gc_e.jpg", "in the way");
    writeBytes(out + "/exiv2-gc_s.jpg", "in the way");

    for (const bool standard : {false, true}) {
        SCOPED_TRACE(standard ? "standard form" : "default form");
        RunValues v = editRun(ProcessingMode::keepUnedited, out);
        edit(v, "Artist", "Jane Doe");
        edit(v, "Iptc.Application2.City", QStringLiteral("Zürich"));
        v.renameSettings = AddText{standard ? "_s" : "_e", RenamePosition::afterName};
        v.writeOptions.standardForm = standard;

        const auto before = folderChecksums(tmp.path());
        const QList<PhotoChanges> plan =
            planChanges(PhotoPipeline(v), ListPhotoSource(recordsOf(photos)), 0);
        EXPECT_EQ(folderChecksums(tmp.path()), before);
        ASSERT_EQ(plan.size(), photos.size());

        const BatchResult result = runBatch(v, recordsOf(photos));
        QMap<QString, QString> problems;
        for (const PhotoProblem& p : result.problems)
            problems.insert(p.path, p.reason);
        int withChanges = 0;
        for (const PhotoChanges& photo : plan) {
            SCOPED_TRACE(photo.sourcePath.toStdString());
            EXPECT_EQ(problems.contains(photo.sourcePath), !photo.reason.isEmpty());
            if (!isCounted(photo.outcome)) {
                EXPECT_TRUE(problems.value(photo.sourcePath).startsWith(photo.reason));
                EXPECT_FALSE(QFileInfo(photo.finalPath).size() > 100);
                continue;
            }
            EXPECT_TRUE(photo.isRenamed());
            if (!photo.reason.isEmpty()) {
                EXPECT_TRUE(photo.reason.contains("character set"));
                continue;
            }
            ASSERT_TRUE(QFileInfo::exists(photo.finalPath));
            EXPECT_EQ(planned(photo),
                      differences(exiv2Tags(photo.sourcePath), exiv2Tags(photo.finalPath)));
            withChanges += photo.changes.isEmpty() ? 0 : 1;
        }
        EXPECT_EQ(withChanges, 4);
        EXPECT_EQ(plan[3].outcome, PhotoOutcome::SkippedCollision);
    }
}

// The dry run prints each change as "would change", the output as "would be written as",
// takes the new options, and changes nothing.
TEST(ChangePlan, DryRunSaysWhatWouldBeWritten) {
    QTemporaryDir tmp;
    const QString photo = copySample(formatsDir() + "/Reagan.jpg", tmp.path());
    const auto before = folderChecksums(tmp.path());
    const ToolResult dry = runTool(QStringLiteral(TAGMOOR_CLI),
                                   {"apply", "--dry-run", "--standard", "--carry", "--rename",
                                    "capture", "--set", "Artist=Jane Doe", "--date",
                                    "DateTimeOriginal=shift-time:+1:00:00", "--in-place", photo});
    ASSERT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    const QString text = QString::fromUtf8(dry.out);
    EXPECT_TRUE(
        text.contains(photo + " -> " + tmp.path() + "/20040621-233753.jpg: would be written"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("would change Exif.Image.Artist: Photographer"));
    EXPECT_TRUE(text.contains("-> Jane Doe (Ascii)"));
    EXPECT_TRUE(text.contains("would change Exif.Photo.DateTimeOriginal: 2004:06:21 23:37:53 "
                              "(Ascii) -> 2004:06:22 00:37:53 (Ascii)"));
    EXPECT_TRUE(text.contains("would be written as " + tmp.path() + "/20040621-233753.jpg"));
    EXPECT_FALSE(text.contains("Exif.Image.Orientation"));
    EXPECT_EQ(folderChecksums(tmp.path()), before);

    const ToolResult bad = runTool(QStringLiteral(TAGMOOR_CLI),
                                   {"apply", "--rename", "capture:'fixed'", "--in-place", photo});
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_TRUE(bad.err.contains("no date field")) << bad.err.toStdString();
}
