// The bytes of a batch's outputs are pinned: fixed runs over every sample photo must give the
// very files that a known-good build gave. Any change to the write path that alters what lands
// on disk (a different serialisation, a lost tag, a file written twice with other options)
// shows up here as a changed checksum.
#include "BatchTestSupport.h"

#include "dates/DateField.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QFileInfo>

#include <exiv2/exiv2.hpp>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// The edits of one run: texts in all three blocks, numbers, a shifted original date and a
// chosen modify date.
RunValues goldenRun(ProcessingMode mode, const std::optional<QString>& out) {
    RunValues v = editRun(mode, out);
    edit(v, "Artist", "Jane Doe");
    edit(v, "Copyright", "(c) Jane Doe");
    edit(v, "ImageDescription", QString::fromUtf8("Harbour at dawn \xc3\xa9t\xc3\xa9"));
    edit(v, "ISO", "400");
    edit(v, "FNumber", "2.8");
    edit(v, "City", "Paris");
    edit(v, "Headline", "Morning");
    edit(v, "LensXMP", "Lens 50");
    v.editorDates.rule(DateField::dateTimeOriginal) = IDOT{1, 0, 0, false, true, true};
    v.editorDates.rule(DateField::modifyDate) = SelectDate{};
    v.fieldEditedFlags.set(Field::DateTimeOriginal);
    v.editorDates.slot(DateField::modifyDate) = QDateTime(QDate(2011, 3, 4), QTime(5, 6, 7));
    v.fieldEditedFlags.set(Field::ModifyDate);
    return v;
}

// The records as the list holds them: loaded from the files, in name order.
QList<CGImageProperties> loadedRecords(const QStringList& paths) {
    QList<CGImageProperties> records;
    for (const QString& p : paths) {
        if (auto r = loadImageProperties(QUrl::fromLocalFile(p)))
            records << *r;
    }
    return records;
}

// "name sha256-prefix" per output file, so that a failure names the files that changed.
QStringList digestLines(const QString& dir) {
    QStringList lines;
    const auto sums = folderChecksums(dir);
    for (auto it = sums.begin(); it != sums.end(); ++it)
        lines << it.key() + QLatin1Char(' ') + QString::fromLatin1(it.value().toHex().left(16));
    return lines;
}

// Lines as the pinned files hold them. With TAGMOOR_GOLDEN_DUMP set to a folder, the lines of
// a run are also written there, to pin a deliberate change of the output.
std::string pinned(const QStringList& lines, const char* name) {
    QString s;
    for (const QString& l : lines)
        s += QStringLiteral("    \"%1\",\n").arg(l);
    const QString dump = qEnvironmentVariable("TAGMOOR_GOLDEN_DUMP");
    if (!dump.isEmpty() && *name)
        writeBytes(dump + QLatin1Char('/') + QLatin1String(name), s.toUtf8());
    return s.toStdString();
}

class GoldenOutput : public ::testing::Test {
protected:
    QString dir(const QString& name) {
        const QString p = tmp.path() + QLatin1Char('/') + name;
        QDir().mkpath(p);
        return p;
    }
    QStringList copiesOfSamples(const QString& folder) {
        QStringList paths;
        for (const QString& s : sampleFiles(formatsDir()))
            paths << copySample(s, dir(folder));
        return paths;
    }
    QTemporaryDir tmp;
};

const QStringList kIntoFolder = {
#include "GoldenOutputIntoFolder.inc"
};
const QStringList kInPlace = {
#include "GoldenOutputInPlace.inc"
};
const QStringList kRemoval = {
#include "GoldenOutputRemoval.inc"
};

} // namespace

// Into an output folder, in place, and the removal of groups: each run's outputs hash as pinned,
// and the sources of the runs into a folder stay as they were. A run on two threads gives the
// same bytes as one on one thread: a photo's new XMP packet takes its prefixes from the photo's
// own packet, whichever photos the other thread reads meanwhile.
TEST_F(GoldenOutput, BatchOutputsKeepTheirBytes) {
    const QStringList sources = copiesOfSamples("in");
    const auto sourceSums = folderChecksums(dir("in"));
    const QList<CGImageProperties> records = loadedRecords(sources);
    ASSERT_FALSE(records.isEmpty());

    RenameNumbering numbering;
    runBatch(goldenRun(ProcessingMode::keepUnedited, dir("out")), records, numbering, 1);
    EXPECT_EQ(pinned(digestLines(dir("out")), "GoldenOutputIntoFolder.inc"),
              pinned(kIntoFolder, ""));
    RenameNumbering secondNumbering;
    runBatch(goldenRun(ProcessingMode::keepUnedited, dir("out2")), records, secondNumbering, 2);
    EXPECT_EQ(pinned(digestLines(dir("out2")), ""), pinned(kIntoFolder, ""));

    RunValues strip = editRun(ProcessingMode::removeGroups, dir("stripped"));
    strip.clean.cleanGPS = strip.clean.cleanIPTC = strip.clean.cleanXMP = true;
    runBatch(strip, records, numbering, 2);
    EXPECT_EQ(pinned(digestLines(dir("stripped")), "GoldenOutputRemoval.inc"),
              pinned(kRemoval, ""));
    EXPECT_EQ(folderChecksums(dir("in")), sourceSums);

    const QStringList inPlaceSources = copiesOfSamples("inplace");
    runBatch(goldenRun(ProcessingMode::keepUnedited, std::nullopt), loadedRecords(inPlaceSources),
             numbering, 1);
    EXPECT_EQ(pinned(digestLines(dir("inplace")), "GoldenOutputInPlace.inc"), pinned(kInPlace, ""));
}
