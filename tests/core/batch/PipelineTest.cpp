#include "BatchTestSupport.h"

#include "batch/BatchSummary.h"
#include "dates/DateField.h"
#include "rename/RenameRule.h"

#include <QFileInfo>
#include <QImageReader>

#include <sys/stat.h>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

int widthOf(const QString& path) {
    return QImageReader(path).size().width();
}

int linkCount(const QString& path) {
    SafeFileReplace::waitForReleases();
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? int(st.st_nlink) : -1;
}

class Pipeline : public ::testing::Test {
protected:
    QString dir(const QString& name) {
        const QString p = tmp.path() + QLatin1Char('/') + name;
        QDir().mkpath(p);
        return p;
    }
    QTemporaryDir tmp;
};

} // namespace

// Two photos with one name into one folder: without overwriting the second is skipped and the
// first stays; with it the second replaces the first and both count.
TEST_F(Pipeline, SameNameIntoOneFolderWithAndWithoutOverwriting) {
    const QString a = makeJpeg(dir("a") + "/photo.jpg", 64, 48);
    const QString b = makeJpeg(dir("b") + "/photo.jpg", 32, 24);
    RunValues v = editRun(ProcessingMode::keepUnedited, dir("out"));
    edit(v, "Artist", "Jane");

    BatchResult r = runBatch(v, recordsOf({a, b}));
    EXPECT_EQ(r.total, 2);
    EXPECT_EQ(r.totalProcessedPhotos, 1);
    EXPECT_EQ(widthOf(dir("out") + "/photo.jpg"), 64);
    EXPECT_EQ(BatchSummary::of(r).lblBatchProcessCompleted, "Batch Process Partially Completed!");

    v.overwriteExisting = true;
    r = runBatch(v, recordsOf({a, b}));
    EXPECT_EQ(r.totalProcessedPhotos, 2);
    EXPECT_EQ(widthOf(dir("out") + "/photo.jpg"), 32);
    EXPECT_EQ(tagOf(dir("out") + "/photo.jpg", "Exif.Image.Artist"), "Jane");
    EXPECT_EQ(fileNames(dir("out")), QStringList{"photo.jpg"});
    EXPECT_EQ(r.outputDirectoryValue, dir("out"));
}

// Keeping the source folder: without a rename the source itself is edited even with
// overwriting off; with a rename a copy appears beside the untouched source, and a second
// run finds it in the way.
TEST_F(Pipeline, KeepSourceEditsInPlaceOrCopiesBesideWithARename) {
    const QString src = copySample(formatsDir() + "/Reagan.jpg", dir("in"));
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Artist", "Jane");
    BatchResult r = runBatch(v, recordsOf({src}));
    EXPECT_EQ(r.totalProcessedPhotos, 1);
    EXPECT_EQ(tagOf(src, "Exif.Image.Artist"), "Jane");
    EXPECT_EQ(fileNames(dir("in")), QStringList{"Reagan.jpg"});
    EXPECT_EQ(r.outputDirectoryValue, BatchSummary::destinationAsSameAsSource);
    EXPECT_FALSE(BatchSummary::of(r).outputDirectoryEnabled);

    const QByteArray before = checksum(src);
    edit(v, "Artist", "Kim");
    v.renameSettings = AddText{"_v2", RenamePosition::afterName};
    r = runBatch(v, recordsOf({src}));
    EXPECT_EQ(r.totalProcessedPhotos, 1);
    EXPECT_EQ(checksum(src), before);
    EXPECT_EQ(tagOf(dir("in") + "/Reagan_v2.jpg", "Exif.Image.Artist"), "Kim");

    r = runBatch(v, recordsOf({src}));
    EXPECT_EQ(r.totalProcessedPhotos, 0);
    EXPECT_EQ(BatchSummary::of(r).lblPhotosSavedSuccessfully, "0 Photo saved successfully!");
}

// A field the user emptied is written as the empty text, not erased; an unedited field
// keeps its value; clearing unedited tags with nothing flagged removes every tag of the
// table and nothing else.
TEST_F(Pipeline, ClearedFieldIsWrittenEmptyAndClearUneditedErasesTheWholeTable) {
    const QString src = copySample(formatsDir() + "/et-ExifTool.jpg", dir("in"));
    ASSERT_TRUE(tagOf(src, "Exif.Image.Copyright").has_value());
    const auto artist = tagOf(src, "Exif.Image.Artist");
    RunValues v = editRun(ProcessingMode::keepUnedited, dir("keep"));
    edit(v, "Copyright", "");
    ASSERT_EQ(runBatch(v, recordsOf({src})).totalProcessedPhotos, 1);
    EXPECT_EQ(tagOf(dir("keep") + "/et-ExifTool.jpg", "Exif.Image.Copyright"), "");
    EXPECT_EQ(tagOf(dir("keep") + "/et-ExifTool.jpg", "Exif.Image.Artist"), artist);

    RunValues clear = editRun(ProcessingMode::clearUnedited, dir("clear"));
    ASSERT_EQ(runBatch(clear, recordsOf({src})).totalProcessedPhotos, 1);
    const auto all = MetadataTest().readAllPropertiesFrom(dir("clear") + "/et-ExifTool.jpg");
    ASSERT_TRUE(all.has_value());
    for (const FormField& f : formFields()) {
        const QString key = QString::fromLatin1(f.keyRow().key);
        // Repeated datasets lose their first entry only.
        if (key == "Iptc.Application2.SuppCategory" || key == "Iptc.Application2.Keywords")
            continue;
        EXPECT_FALSE(all->value(key.section('.', 0, 0).toLower()).toMap().contains(key))
            << key.toStdString();
    }
    // Tags outside the table are not the run's business.
    EXPECT_EQ(tagOf(dir("clear") + "/et-ExifTool.jpg", "Xmp.photoshop.City"),
              tagOf(src, "Xmp.photoshop.City"));
}

// Odd sources: no extension gives a name ending in ".", a vanished source, a record
// without file, a source that cannot be copied and a missing output folder are skips.
TEST_F(Pipeline, OddSourcesAndFailedCopiesAreSkipsThatLeaveNothingBehind) {
    const QString noExt = dir("in") + "/photo";
    QFile::copy(makeJpeg(dir("in") + "/tmp.jpg"), noExt);
    QFile::remove(dir("in") + "/tmp.jpg");
    const QString folderNamedLikeAPhoto = dir("in/folder.jpg");
    const QString gone = dir("in") + "/gone.jpg";

    RunValues v = editRun(ProcessingMode::keepUnedited, dir("out"));
    edit(v, "Artist", "Jane");
    QList<CGImageProperties> records = recordsOf({noExt, folderNamedLikeAPhoto, gone});
    records << CGImageProperties{};
    BatchResult r = runBatch(v, records);
    EXPECT_EQ(r.total, 4);
    EXPECT_EQ(r.totalProcessedPhotos, 1);
    EXPECT_EQ(fileNames(dir("out")), QStringList{"photo."});
    EXPECT_EQ(tagOf(dir("out") + "/photo.", "Exif.Image.Artist"), "Jane");

    v.destinationFolder = tmp.path() + "/missing";
    r = runBatch(v, recordsOf({noExt}));
    EXPECT_EQ(r.totalProcessedPhotos, 0);
    EXPECT_FALSE(QFileInfo::exists(tmp.path() + "/missing"));
}

// With an output folder no source changes by a single byte, whatever the file; nothing but
// the outputs is left in the output folder.
TEST_F(Pipeline, OutputFolderRunNeverTouchesASource) {
    const QString in = dir("in");
    for (const QString& s : sampleFiles(formatsDir()))
        copySample(s, in);
    for (const QString& s : sampleFiles(malformedDir()))
        copySample(s, in);
    const auto before = folderChecksums(in);
    QStringList paths;
    for (const QString& name : fileNames(in))
        paths << in + "/" + name;

    RunValues v = editRun(ProcessingMode::clearUnedited, dir("out"));
    edit(v, "Artist", "Jane");
    edit(v, "GPSLatitude", "48.5");
    const BatchResult r = runBatch(v, recordsOf(paths));
    EXPECT_EQ(r.totalProcessedPhotos, paths.size());
    EXPECT_EQ(folderChecksums(in), before);
    EXPECT_EQ(fileNames(dir("out")).size(), paths.size());
    // Every output is a file of its own, also where the writer gave up (raw, broken files).
    for (const QString& name : fileNames(dir("out"))) {
        EXPECT_EQ(linkCount(dir("out") + "/" + name), 1) << name.toStdString();
        EXPECT_EQ(linkCount(in + "/" + name), 1) << name.toStdString();
    }
    // The unflagged reference is erased after the latitude is written.
    EXPECT_EQ(tagOf(dir("out") + "/Reagan.jpg", "Exif.GPSInfo.GPSLatitude"), "48.5");
    EXPECT_FALSE(tagOf(dir("out") + "/Reagan.jpg", "Exif.GPSInfo.GPSLatitudeRef").has_value());
}

// In place, a write that fails (a format the writer cannot write, a broken file) leaves the
// source as it was; the photo still counts, as its output exists.
TEST_F(Pipeline, FailedWriteInPlaceLeavesTheSourceWhole) {
    const QStringList sources = {copySample(formatsDir() + "/et-FujiFilm.raf", dir("in")),
                                 copySample(malformedDir() + "/issue_853_poc.jpg", dir("in"))};
    QList<QByteArray> before;
    for (const QString& s : sources)
        before << checksum(s);
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Artist", "Jane");
    const BatchResult r = runBatch(v, recordsOf(sources));
    EXPECT_EQ(r.totalProcessedPhotos, 2);
    for (int i = 0; i < sources.size(); ++i)
        EXPECT_EQ(checksum(sources[i]), before[i]) << sources[i].toStdString();
    EXPECT_EQ(fileNames(dir("in")).size(), 2);
}

// The modify-date rule also becomes the output's modification time; the removal mode strips
// groups only.
TEST_F(Pipeline, ModifyDateSetsTheFileTimeAndRemovalStripsGroups) {
    const QString src = copySample(formatsDir() + "/et-GPS.jpg", dir("in"));
    RunValues v = editRun(ProcessingMode::keepUnedited, dir("out"));
    v.editorDates.rule(DateField::modifyDate) = SelectDate{};
    v.editorDates.slot(DateField::modifyDate) = QDateTime(QDate(2011, 3, 4), QTime(5, 6, 7));
    v.fieldEditedFlags.set(Field::ModifyDate);
    ASSERT_EQ(runBatch(v, recordsOf({src})).totalProcessedPhotos, 1);
    const QString out = dir("out") + "/et-GPS.jpg";
    EXPECT_EQ(tagOf(out, "Exif.Image.DateTime"), "2011-03-04 05:06:07");
    EXPECT_EQ(QFileInfo(out).lastModified(), QDateTime(QDate(2011, 3, 4), QTime(5, 6, 7)));

    RunValues strip = editRun(ProcessingMode::removeGroups, dir("stripped"));
    strip.clean.cleanGPS = true;
    strip.clean.cleanIPTC = true;
    ASSERT_EQ(runBatch(strip, recordsOf({src})).totalProcessedPhotos, 1);
    const QString s = dir("stripped") + "/et-GPS.jpg";
    EXPECT_FALSE(tagOf(s, "Exif.GPSInfo.GPSLatitude").has_value());
    EXPECT_FALSE(tagOf(s, "Iptc.Application2.City").has_value());
    EXPECT_EQ(tagOf(s, "Exif.Image.Make"), tagOf(src, "Exif.Image.Make"));
}

// Numbers of a numbering rename go on across runs of one process, and a skipped photo uses
// one up.
TEST_F(Pipeline, RenameNumbersContinueAcrossRunsAndSkipsUseThemUp) {
    const QString a = makeJpeg(dir("in") + "/a.jpg");
    const QString gone = dir("in") + "/gone.jpg";
    RunValues v = editRun(ProcessingMode::keepUnedited, dir("out"));
    ChangeFileNameFormat counter;
    counter.nameFormatNF = NameFormat::nameAndCounter();
    counter.minNumberDigitsNF = 3;
    counter.whereTextPositionNF = RenamePosition::afterName;
    v.renameSettings = counter;
    RenameNumbering numbering;
    runBatch(v, recordsOf({gone, a}), numbering);
    runBatch(v, recordsOf({a}), numbering);
    EXPECT_EQ(fileNames(dir("out")), (QStringList{"a002.jpg", "a003.jpg"}));
    EXPECT_EQ(numbering.next(), 3);
}

TEST(BatchSummary, TextsOfTheResultScreen) {
    BatchSummary s = BatchSummary::of({3, 3, 3, "/out", false});
    EXPECT_EQ(s.lblBatchProcessCompleted, "Batch Process Completed!");
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "3 Photos saved successfully!");
    EXPECT_EQ(s.lblValueBatchCount, ": 3");
    EXPECT_EQ(s.lblValuePhotosSkipped, ": 0");
    s = BatchSummary::of({2, 1, 1, "", true});
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "1 Photo saved successfully!");
    EXPECT_EQ(s.lblValueImageProcessed, "2 / 2");
    EXPECT_EQ(s.lblValuePhotosSkipped, ": 1");
    EXPECT_TRUE(s.outputDirectoryEnabled);
    EXPECT_EQ(s.outputDirectoryTitle, "");
    s = BatchSummary::of({0, 0, 0, BatchSummary::destinationAsSameAsSource, false});
    EXPECT_EQ(s.lblPhotosSavedSuccessfully, "0 Photo saved successfully!");
    EXPECT_EQ(s.lblBatchProcessCompleted, "Batch Process Completed!");
    EXPECT_FALSE(s.outputDirectoryEnabled);
    EXPECT_EQ(s.outputDirectoryTitle, BatchSummary::destinationAsSameAsSource);
    s = BatchSummary::of({1, 1, 1, "/home/someone/Pictures/holidays/2024/edited-copies", false});
    EXPECT_TRUE(s.outputDirectoryTitle.startsWith("/home/someone/Pict..."));
    EXPECT_TRUE(s.outputDirectoryTitle.endsWith("edited-copies"));
    EXPECT_EQ(s.outputDirectoryTitle.size(), 40);
}
