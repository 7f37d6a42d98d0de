#include "exchange/ListTables.h"

#include "TestSupport.h"
#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "foundation/ValueForm.h"
#include "model/FormFieldTable.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

QString artistOf(const RunValues& values) {
    return formField(Field::Artist).keyRow().peek(values.editedProperties)->text().value_or("");
}

// A row finds its photo by its path, relative to the table's folder or absolute, and only
// then by its file name; a name that two photos of the list share finds neither. Rows that
// find nothing are named, the "*" row stays for the others, and a photo named twice is
// counted once.
TEST(ListTables, RowsMatchByPathThenByAFileNameOnePhotoHas) {
    const QStringList list{"/p/a/IMG_1.jpg", "/p/b/IMG_1.jpg", "/p/a/IMG_2.jpg", "/p/c/solo.tif"};
    CsvTable table;
    table.header = {"SourceFile", "Artist"};
    table.rows = {{"IMG_2.jpg", "by path"},
                  {"/elsewhere/solo.tif", "by name"},
                  {"/elsewhere/IMG_1.jpg", "shared"},
                  {"/p/b/IMG_1.jpg", "exact"},
                  {"missing.jpg", "none"},
                  {"*", "all"},
                  {"", "no path"},
                  {"./IMG_2.jpg", "again"}};
    const ListMatch match = matchTableToList(table, list, "/p/a");

    EXPECT_EQ(match.photos, (QStringList{"/p/a/IMG_2.jpg", "/p/c/solo.tif", "/p/b/IMG_1.jpg"}));
    EXPECT_EQ(match.unmatched, (QStringList{"/elsewhere/IMG_1.jpg", "missing.jpg"}));
    EXPECT_EQ(match.rows, 6);
    QStringList kept;
    for (const QStringList& row : match.table.rows)
        kept << row.join('=');
    EXPECT_EQ(kept, (QStringList{"/p/a/IMG_2.jpg=by path", "/p/c/solo.tif=by name",
                                 "/p/b/IMG_1.jpg=exact", "*=all", "/p/a/IMG_2.jpg=again"}));

    // Without a SourceFile column nothing matches.
    table.header = {"FileName", "Artist"};
    EXPECT_TRUE(matchTableToList(table, list, "/p/a").photos.isEmpty());
}

struct TableFixture {
    QTemporaryDir dir;
    QStringList photos;

    TableFixture() {
        QDir().mkpath(dir.filePath("list"));
        for (const char* name : {"one.jpg", "two.jpg"})
            photos << test::makeJpeg(dir.filePath("list/") + name);
    }
    QString table(const QByteArray& text) {
        const QString path = dir.filePath("table.csv");
        EXPECT_TRUE(test::writeBytes(path, text));
        return path;
    }
};

// The matched rows become per-photo edits; the summary names what was matched, what was not
// and the columns nobody understood.
TEST(ListTables, ImportGivesEachMatchedPhotoItsRowAndSumsUp) {
    const ValueFormScope scope(ValueForm::standard);
    TableFixture f;
    const QString path = f.table("SourceFile,Artist,Mood\n"
                                 "list/one.jpg,Ann,calm\n"
                                 "/old/place/two.jpg,Bob,\n"
                                 "gone.jpg,Cy,\n");
    const ListImport import = importTableForList(path, f.photos);
    ASSERT_TRUE(import.error.isEmpty()) << import.error.toStdString();
    ASSERT_TRUE(import.edits);
    EXPECT_EQ(import.match.photos, f.photos);
    EXPECT_EQ(import.unknownColumns, QStringList{"Mood"});

    for (int i = 0; i < 2; ++i) {
        RunValues values;
        values.writeOptions.standardForm = true;
        values.editedProperties = FormSnapshot::empty();
        import.edits->adjust(makeEmptyRecord(QUrl::fromLocalFile(f.photos[i])), values);
        EXPECT_EQ(artistOf(values), i == 0 ? "Ann" : "Bob");
        EXPECT_TRUE(values.fieldEditedFlags.test(Field::Artist));
    }
    const QString summary = listImportSummary(import);
    EXPECT_TRUE(summary.contains("Rows read: 3. Photos matched: 2.")) << summary.toStdString();
    EXPECT_TRUE(summary.contains("gone.jpg"));
    EXPECT_TRUE(summary.contains("Mood"));
}

// A file that is no table, a table without paths, a file that is not there: a reason, no edits.
TEST(ListTables, ImportRefusesWhatIsNoTableWithAReason) {
    TableFixture f;
    for (const QString& path : {f.table("Artist,Copyright\nAnn,me\n"), f.table(""),
                                f.dir.filePath("nothing.csv"), f.dir.path()}) {
        const ListImport import = importTableForList(path, f.photos);
        EXPECT_FALSE(import.error.isEmpty()) << path.toStdString();
        EXPECT_FALSE(import.edits);
    }
    // Rows that all miss: no edits, and the summary says so.
    const ListImport none = importTableForList(f.table("SourceFile,Artist\nx.jpg,Ann\n"), f.photos);
    EXPECT_TRUE(none.error.isEmpty());
    EXPECT_FALSE(none.edits);
    EXPECT_TRUE(listImportSummary(none).contains("Photos matched: 0"));
}

} // namespace
} // namespace tagmoor
