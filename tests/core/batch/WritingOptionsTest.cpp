// The writing options of a run, read back with the exiv2 and exiftool commands: tags in their
// standard form, IPTC text with its character set, shifts that carry, names from the capture
// date.
#include "BatchTestSupport.h"

#include "dates/DateField.h"
#include "metadata/IptcDigest.h"
#include "metadata/PropertyLoading.h"

#include <QRegularExpression>
#include <QSet>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// Tags that say where data lie in the file (a rewrite moves them: the maker note's block
// holds its own offsets, its tags are compared one by one), and the strip tags of IFD0 that
// Exiv2 never writes into a JPEG, whatever the caller asks.
bool isLayoutTag(const QString& key) {
    static const QSet<QString> layout = {"Exif.Image.ExifTag",
                                         "Exif.Image.GPSTag",
                                         "Exif.Photo.InteroperabilityTag",
                                         "Exif.Thumbnail.JPEGInterchangeFormat",
                                         "Exif.Image.StripOffsets",
                                         "Exif.MakerNote.Offset",
                                         "Exif.Photo.MakerNote",
                                         "Exif.Image.PhotometricInterpretation"};
    return layout.contains(key);
}

// Records as the photo list reads them, with the photos' own dates.
QList<CGImageProperties> loaded(const QStringList& paths) {
    QList<CGImageProperties> records;
    for (const QString& path : paths)
        records << loadImageProperties(QUrl::fromLocalFile(path)).value();
    return records;
}

// Every tag as the exiv2 command prints it, "type value" by key (a repeated key numbered from
// its second datum on), without the offsets that a rewrite moves.
QMap<QString, QString> exiv2Listing(const QString& path) {
    const ToolResult r = runTool("exiv2", {"-q", "-Pkyv", path});
    QMap<QString, QString> tags;
    static const QRegularExpression keyStart(R"(^(Exif|Iptc|Xmp)\.\S+\s)");
    QString current;
    for (const QString& line : QString::fromUtf8(r.out).split('\n')) {
        if (!keyStart.match(line).hasMatch()) {
            if (!current.isEmpty())
                tags[current] += '\n' + line; // a value that spans lines
            continue;
        }
        const QString key = line.section(' ', 0, 0);
        current = key;
        for (int n = 2; tags.contains(current); ++n)
            current = key + QStringLiteral("[%1]").arg(n);
        tags.insert(current, line.mid(key.size()).trimmed());
    }
    for (auto it = tags.begin(); it != tags.end();)
        it = isLayoutTag(it.key().section('[', 0, 0)) ? tags.erase(it) : std::next(it);
    return tags;
}

// A listing as one text, a tag a line, for readable failures.
std::string text(const QMap<QString, QString>& tags) {
    QStringList lines;
    for (auto it = tags.begin(); it != tags.end(); ++it)
        lines << it.key() + ' ' + it.value().simplified();
    return lines.join('\n').toStdString();
}

// Exiv2's dates as exiftool prints them whatever their separators: "2021:01:01 00:37:53".
std::string exifDate(const QString& text) {
    return QString(text).replace('-', ':').toStdString();
}

QString exiftoolValue(const QString& path, const QString& tag) {
    return QString::fromUtf8(runTool("exiftool", {"-s3", "-" + tag, path}).out).trimmed();
}

DateTimeConfiguration shiftTime(int hours) {
    IDOT rule;
    rule.changeHours = hours;
    return rule;
}

void setDateRule(RunValues& v, DateField field, const DateTimeConfiguration& rule) {
    v.editorDates.rule(field) = rule;
    v.editorDates.alive(field) = true;
    v.fieldEditedFlags.set(dateFieldsInRunOrder()[std::size_t(field)]->field);
}

class WritingOptions : public ::testing::Test {
protected:
    void SetUp() override {
        if (!haveTool("exiv2") || !haveTool("exiftool"))
            GTEST_SKIP() << "needs the exiv2 and exiftool commands";
    }
    QString copy(const QString& sample, const QString& name = {}) {
        return copySample(formatsDir() + '/' + sample, tmp.path(), name);
    }
    QTemporaryDir tmp;
};

} // namespace

// With the standard form, a batch that edits one field leaves every other tag as it was, in
// value and in type; the default rewrite does not (it retypes and normalises).
TEST_F(WritingOptions, StandardFormLeavesUneditedTagsByteIdentical) {
    RunValues standard = editRun(ProcessingMode::keepUnedited);
    edit(standard, "Artist", "Jane Doe");
    standard.writeOptions.standardForm = true;
    for (const QString sample :
         {"Reagan.jpg", "Reagan.tiff", "et-GPS.jpg", "exiv2-gc.jpg", "exiv2-sony-dsc-w7.jpg"}) {
        const QString photo = copy(sample);
        QMap<QString, QString> before = exiv2Listing(photo);
        const QStringList warningsBefore = validationWarnings(photo);
        ASSERT_EQ(runBatch(standard, loaded({photo})).totalProcessedPhotos, 1);
        QMap<QString, QString> after = exiv2Listing(photo);
        EXPECT_EQ(after.take("Exif.Image.Artist").simplified().toStdString(), "Ascii Jane Doe")
            << sample.toStdString();
        before.remove("Exif.Image.Artist");
        EXPECT_EQ(text(after), text(before)) << sample.toStdString();
        // Exiv2 re-encodes every IPTC block it writes; the Photoshop digest follows it.
        for (const QString& warning : validationWarnings(photo))
            EXPECT_TRUE(warningsBefore.contains(warning))
                << sample.toStdString() << ": " << warning.toStdString();
    }
    RunValues plain = standard;
    plain.writeOptions.standardForm = false;
    const QString photo = copy("Reagan.jpg", "plain.jpg");
    ASSERT_EQ(runBatch(plain, loaded({photo})).totalProcessedPhotos, 1);
    EXPECT_TRUE(exiv2Listing(photo).value("Exif.Image.Orientation").startsWith("SLong"));
}

// Edited numbers keep the type of the tag they replace, a new tag takes its standard type, an
// exposure time is a fraction of a second, and dates take the forms of Exif and XMP.
TEST_F(WritingOptions, StandardFormWritesTypesAndDatesAsOtherProgramsExpect) {
    const QString photo = copy("Reagan.jpg");
    RunValues v = editRun(ProcessingMode::keepUnedited);
    v.writeOptions.standardForm = true;
    edit(v, "Exif.Image.Orientation", "6");
    edit(v, "Exif.Photo.ISOSpeedRatings", "400");
    edit(v, "Exif.Photo.ExposureTime", "0.004");
    setDateRule(v, DateField::dateTimeOriginal, shiftTime(-1));
    setDateRule(v, DateField::createDateXMP, shiftTime(-1));
    const QString original = exiftoolValue(photo, "DateTimeOriginal");
    ASSERT_EQ(runBatch(v, loaded({photo})).totalProcessedPhotos, 1);

    const QMap<QString, QString> tags = exiv2Listing(photo);
    EXPECT_EQ(tags.value("Exif.Image.Orientation").simplified().toStdString(), "Short 6");
    EXPECT_EQ(tags.value("Exif.Photo.ISOSpeedRatings").simplified().toStdString(), "Short 400");
    EXPECT_EQ(tags.value("Exif.Photo.ExposureTime").simplified().toStdString(), "Rational 1/250");
    const QString shifted = exiftoolValue(photo, "DateTimeOriginal");
    EXPECT_TRUE(QRegularExpression(R"(^\d{4}:\d\d:\d\d \d\d:\d\d:\d\d$)").match(shifted).hasMatch())
        << shifted.toStdString();
    EXPECT_NE(shifted.toStdString(), original.toStdString());
    EXPECT_TRUE(QRegularExpression(R"(^XmpText\s+\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d)")
                    .match(tags.value("Xmp.xmp.CreateDate"))
                    .hasMatch())
        << tags.value("Xmp.xmp.CreateDate").toStdString();

    // Into a photo without metadata only the edited field goes: no zeros for the others.
    const QString bare = makeJpeg(tmp.path() + "/bare.jpg");
    RunValues artist = editRun(ProcessingMode::keepUnedited);
    artist.writeOptions.standardForm = true;
    edit(artist, "Artist", "Jane Doe");
    ASSERT_EQ(runBatch(artist, loaded({bare})).totalProcessedPhotos, 1);
    // Only the edited field, and the tags a JPEG's first directory must hold, which the edit
    // made.
    EXPECT_EQ(exiv2Listing(bare).keys().join(' ').toStdString(),
              "Exif.Image.Artist Exif.Image.ResolutionUnit Exif.Image.XResolution "
              "Exif.Image.YCbCrPositioning Exif.Image.YResolution");
    EXPECT_TRUE(validationWarnings(bare).filter("Missing required").isEmpty());
}

// The Photoshop digest of the IPTC block matches the block after a batch in the standard form,
// also where the source's digest was stale already; the default rewrite leaves it alone. The
// refresh never touches a byte outside the digest, whatever part of a head it is given.
TEST_F(WritingOptions, StandardFormKeepsTheIptcDigestCurrent) {
    RunValues standard = editRun(ProcessingMode::keepUnedited);
    edit(standard, "City", "Paris");
    standard.writeOptions.standardForm = true;
    edit(standard, "Artist", "Jane Doe");
    for (const QString sample : {"Reagan.jpg", "FurnaceCreekInn.jpg", "et-IPTC.jpg",
                                 "et-Photoshop.psd", "exiv2-photoshop.psd"}) {
        const QString photo = copy(sample);
        const QStringList warningsBefore = validationWarnings(photo);
        ASSERT_EQ(runBatch(standard, loaded({photo})).totalProcessedPhotos, 1);
        const QString stored = exiftoolValue(photo, "IPTCDigest");
        EXPECT_FALSE(stored.isEmpty()) << sample.toStdString();
        EXPECT_EQ(stored, exiftoolValue(photo, "CurrentIPTCDigest")) << sample.toStdString();
        // et-IPTC.jpg has no Exif: the directory the edit makes gets its required tags.
        for (const QString& warning : validationWarnings(photo))
            EXPECT_TRUE(warningsBefore.contains(warning))
                << sample.toStdString() << ": " << warning.toStdString();
    }
    RunValues plain = standard;
    plain.writeOptions.standardForm = false;
    const QString photo = copy("Reagan.jpg", "plain.jpg");
    const QString before = exiftoolValue(photo, "IPTCDigest");
    ASSERT_EQ(runBatch(plain, loaded({photo})).totalProcessedPhotos, 1);
    EXPECT_EQ(exiftoolValue(photo, "IPTCDigest"), before);

    QFile file(formatsDir() + "/FurnaceCreekInn.jpg");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.read(64 * 1024);
    for (qsizetype length = 0; length <= whole.size(); length += 7) {
        QByteArray part = whole.left(length);
        const QByteArray original = part;
        refreshIptcDigest(reinterpret_cast<unsigned char*>(part.data()), std::size_t(part.size()));
        int changed = 0;
        for (qsizetype i = 0; i < part.size(); ++i)
            changed += part[i] != original[i];
        EXPECT_LE(changed, 16) << length;
    }
}

// A standard batch over every sample adds no warning of exiftool's validation. A PNG's Exif
// lands in its eXIf chunk, an XMP packet that no edit touched goes back byte for byte, and a
// photo that Exiv2 would damage further (cut short, or with a maker note directory it drops)
// is not changed and says why.
TEST_F(WritingOptions, StandardFormAddsNoValidationWarningToAnySample) {
    RunValues v = editRun(ProcessingMode::keepUnedited);
    v.writeOptions.standardForm = true;
    edit(v, "Artist", "Jane Doe");
    edit(v, "Iptc.Application2.City", QStringLiteral("Zürich"));
    QStringList photos;
    QMap<QString, QByteArray> bytesBefore;
    QList<CGImageProperties> records;
    for (const QString& name : fileNames(formatsDir())) {
        const QString photo = copy(name);
        const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
        if (!record)
            continue;
        records << *record;
        photos << photo;
        bytesBefore.insert(photo, readBytes(photo));
    }
    const QMap<QString, QStringList> warningsBefore = validationWarnings(photos);
    const QByteArray packet937 =
        runTool("exiftool", {"-b", "-XMP", copy("exiv2-bug937.jpg", "packet.jpg")}).out;
    ASSERT_FALSE(packet937.isEmpty());

    const BatchResult result = runBatch(v, records);
    QMap<QString, QString> refused;
    static const QRegularExpression expected(
        "not supported|cut short|maker note|character set other than UTF-8");
    for (const PhotoProblem& problem : result.problems) {
        refused.insert(QFileInfo(problem.path).fileName(), problem.reason);
        EXPECT_TRUE(expected.match(problem.reason).hasMatch())
            << problem.path.toStdString() << ": " << problem.reason.toStdString();
    }
    const QMap<QString, QStringList> warningsAfter = validationWarnings(photos);
    for (const QString& photo : photos) {
        const std::string name = QFileInfo(photo).fileName().toStdString();
        if (refused.contains(QFileInfo(photo).fileName())) {
            EXPECT_EQ(readBytes(photo), bytesBefore.value(photo)) << name;
            continue;
        }
        EXPECT_NE(readBytes(photo), bytesBefore.value(photo)) << name;
        for (const QString& warning : warningsAfter.value(photo))
            EXPECT_TRUE(warningsBefore.value(photo).contains(warning))
                << name << ": " << warning.toStdString();
    }
    EXPECT_TRUE(refused.value("IMG_1361.dng").contains("cut short"))
        << refused.value("IMG_1361.dng").toStdString();
    EXPECT_TRUE(refused.value("et-Nikon.nef").contains("maker note"))
        << refused.value("et-Nikon.nef").toStdString();
    for (const QString png : {"1343_exif.png", "et-PNG.png"}) {
        const QString photo = tmp.path() + '/' + png;
        EXPECT_EQ(exiftoolValue(photo, "EXIF:Artist").toStdString(), "Jane Doe");
        EXPECT_TRUE(runTool("exiv2", {"-pS", photo}).out.contains("eXIf"));
        EXPECT_FALSE(runTool("exiv2", {"-pS", photo}).out.contains("Raw profile type exif"));
    }
    EXPECT_EQ(runTool("exiftool", {"-b", "-XMP", tmp.path() + "/exiv2-bug937.jpg"}).out, packet937);
}

// A shift keeps the zone that an XMP date carries, counted on the photo's own clock, both
// wrapping and carried; a date without a zone keeps its plain form.
TEST_F(WritingOptions, ShiftedXmpDateKeepsItsZone) {
    const auto xmpDate = [](const QString& path) {
        return QString::fromUtf8(
                   runTool("exiv2", {"-q", "-Pv", "-K", "Xmp.xmp.CreateDate", path}).out)
            .trimmed()
            .toStdString();
    };
    const auto photoWith = [&](const QString& name, const QString& date) {
        const QString photo = makeJpeg(tmp.path() + '/' + name);
        EXPECT_EQ(runTool("exiv2", {"-M", "set Xmp.xmp.CreateDate " + date, photo}).exitCode, 0);
        return photo;
    };
    for (const bool carry : {false, true}) {
        RunValues v = editRun(ProcessingMode::keepUnedited);
        v.carryShifts = carry;
        setDateRule(v, DateField::createDateXMP, shiftTime(1));
        const QString east = photoWith("east.jpg", "2008-05-08T10:54:28+02:00");
        const QString west = photoWith("west.jpg", "2008-05-08T20:54:28-0500");
        const QString plain = photoWith("plain.jpg", "2008-05-08 10:54:28");
        ASSERT_EQ(runBatch(v, loaded({east, west, plain})).totalProcessedPhotos, 3);
        EXPECT_EQ(xmpDate(east), "2008-05-08T11:54:28+02:00") << carry;
        EXPECT_EQ(xmpDate(west), "2008-05-08T21:54:28-05:00") << carry;
        // The plain date counts as the user's own time and keeps the rule's text.
        EXPECT_EQ(xmpDate(plain), "2008-05-08 11:54:28") << carry;
    }
}

// Non-ASCII IPTC text goes with the UTF-8 declaration (on by default), so other programs read
// it as written; a photo that declares another set is not changed and says why.
TEST_F(WritingOptions, IptcTextOutsideAsciiIsDeclaredUtf8) {
    const QString bare = makeJpeg(tmp.path() + "/bare.jpg");
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Iptc.Application2.City", QStringLiteral("Zürich"));
    ASSERT_TRUE(runBatch(v, loaded({bare})).problems.isEmpty());
    EXPECT_EQ(exiftoolValue(bare, "IPTC:City").toStdString(), "Zürich");
    EXPECT_EQ(exiftoolValue(bare, "IPTC:CodedCharacterSet").toStdString(), "UTF8");

    // ASCII text needs no declaration.
    const QString ascii = makeJpeg(tmp.path() + "/ascii.jpg");
    RunValues paris = editRun(ProcessingMode::keepUnedited);
    edit(paris, "Iptc.Application2.City", "Paris");
    ASSERT_TRUE(runBatch(paris, loaded({ascii})).problems.isEmpty());
    EXPECT_EQ(exiftoolValue(ascii, "IPTC:City").toStdString(), "Paris");
    EXPECT_EQ(exiftoolValue(ascii, "IPTC:CodedCharacterSet").toStdString(), "");

    const QString latin = makeJpeg(tmp.path() + "/latin.jpg");
    ASSERT_EQ(runTool("exiv2", {"-M", QStringLiteral("set Iptc.Envelope.CharacterSet \x1b.A"), "-M",
                                "set Iptc.Application2.City Bern", latin})
                  .exitCode,
              0);
    const QByteArray latinBytes = readBytes(latin);
    const BatchResult refused = runBatch(v, loaded({latin}));
    ASSERT_EQ(refused.problems.size(), 1);
    EXPECT_TRUE(refused.problems.first().reason.contains("character set"))
        << refused.problems.first().reason.toStdString();
    EXPECT_EQ(readBytes(latin), latinBytes);
}

// A carried shift of one hour at 23:37:53 on 31 December lands on 1 January of the next
// year; without carrying the hour wraps and the date stays.
TEST_F(WritingOptions, CarriedShiftCrossesTheYearEnd) {
    const QString photo = copy("Reagan.jpg");
    RunValues select = editRun(ProcessingMode::keepUnedited);
    const DateTimeConfiguration at = SelectDate{};
    select.editorDates.slot(DateField::dateTimeOriginal) =
        QDateTime(QDate(2020, 12, 31), QTime(23, 37, 53));
    setDateRule(select, DateField::dateTimeOriginal, at);
    ASSERT_EQ(runBatch(select, loaded({photo})).totalProcessedPhotos, 1);
    const QString wrapped = copy("Reagan.jpg", "wrapped.jpg");
    QFile::remove(wrapped);
    QFile::copy(photo, wrapped);

    RunValues carry = editRun(ProcessingMode::keepUnedited);
    setDateRule(carry, DateField::dateTimeOriginal, shiftTime(1));
    carry.carryShifts = true;
    ASSERT_EQ(runBatch(carry, loaded({photo})).totalProcessedPhotos, 1);
    EXPECT_EQ(exifDate(exiftoolValue(photo, "DateTimeOriginal")), "2021:01:01 00:37:53");

    RunValues wrap = carry;
    wrap.carryShifts = false;
    ASSERT_EQ(runBatch(wrap, loaded({wrapped})).totalProcessedPhotos, 1);
    EXPECT_EQ(exifDate(exiftoolValue(wrapped, "DateTimeOriginal")), "2020:12:31 23:37:53");
}

// Twenty photos of one second get twenty names, the plain one first and then counted; a
// pattern's "/" and ":" never reach a name; a photo without a capture date takes its file's.
TEST_F(WritingOptions, CaptureDateNamesAreUniqueAndSafe) {
    QStringList photos;
    for (int i = 0; i < 20; ++i)
        photos << copy("Reagan.jpg", QStringLiteral("IMG_%1.jpg").arg(i, 4, 10, QChar('0')));
    const QString undated = makeJpeg(tmp.path() + "/undated.jpg");
    QFile file(undated);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime(QDate(2019, 3, 4), QTime(5, 6, 7)),
                                 QFileDevice::FileModificationTime));
    file.close();
    const QString taken = exiftoolValue(photos.first(), "DateTimeOriginal"); // "Y:M:D h:m:s"
    const QString expected = QString(taken).remove(':').replace(' ', '-');

    // The capture date is the record's.
    const QList<CGImageProperties> records = loaded(photos + QStringList{undated});
    RunValues v = editRun(ProcessingMode::keepUnedited, tmp.path() + "/out");
    QDir().mkpath(tmp.path() + "/out");
    v.renameSettings = CaptureDateName{};
    const BatchResult result = runBatch(v, records);
    EXPECT_EQ(result.totalProcessedPhotos, 21);
    QStringList names = fileNames(tmp.path() + "/out");
    EXPECT_EQ(names.size(), 21);
    EXPECT_TRUE(names.contains(expected + ".jpg")) << names.join(' ').toStdString();
    for (int n = 1; n < 20; ++n)
        EXPECT_TRUE(names.contains(QStringLiteral("%1-%2.jpg").arg(expected).arg(n)));
    EXPECT_TRUE(names.contains("20190304-050607.jpg"));

    RunValues odd = v;
    odd.destinationFolder = tmp.path() + "/odd";
    QDir().mkpath(tmp.path() + "/odd");
    odd.renameSettings = CaptureDateName{"yyyy/MM/dd HH:mm:ss"};
    EXPECT_EQ(runBatch(odd, records.mid(0, 2)).totalProcessedPhotos, 2);
    for (const QString& name : fileNames(tmp.path() + "/odd")) {
        EXPECT_FALSE(name.contains(':') || name.contains('/')) << name.toStdString();
        EXPECT_TRUE(name.startsWith(expected.left(4) + '-')) << name.toStdString();
    }
}
