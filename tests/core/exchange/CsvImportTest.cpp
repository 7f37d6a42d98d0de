#include "exchange/CsvImport.h"

#include "batch/FieldEdits.h"
#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "foundation/ValueForm.h"
#include "model/FormFieldTable.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <cmath>

namespace tagmoor {
namespace {

RunValues standardRun() {
    RunValues values;
    values.writeOptions.standardForm = true;
    values.editedProperties = FormSnapshot::empty();
    return values;
}

const PropertyValue& valueOf(const RunValues& values, Field field) {
    return *formField(field).keyRow().peek(values.editedProperties);
}

// A cell is an edit whether it holds plain numbers or the other tool's printed values.
TEST(CsvImport, CellsInPlainAndPrintedFormBecomeTheSameEdits) {
    const ValueFormScope scope(ValueForm::standard);
    struct Case {
        Field field;
        QString cell;
        double number;
    };
    const Case cases[] = {
        {Field::GPSLatitude, "54 deg 59' 22.80\" N", 54.0 + 59.0 / 60 + 22.8 / 3600},
        {Field::GPSLongitude, "1 deg 54' 51.00\" W", -(1.0 + 54.0 / 60 + 51.0 / 3600)},
        {Field::GPSLongitude, "-1.91416666666667", -1.91416666666667},
        {Field::ExposureTime, "1/155", 1.0 / 155},
        {Field::FocalLength, "6.0 mm", 6.0},
        {Field::GPSAltitude, "14.2 m Below Sea Level", 14.2},
        {Field::GPSAltitudeRef, "Below Sea Level", 1},
        {Field::ISO, "100", 100},
    };
    for (const Case& c : cases) {
        RunValues values = standardRun();
        EXPECT_EQ(CsvImport::applyCell(values, c.field, c.cell), std::nullopt)
            << c.cell.toStdString();
        const auto number = valueOf(values, c.field).number();
        ASSERT_TRUE(number) << c.cell.toStdString();
        EXPECT_NEAR(*number, c.number, 1e-6) << c.cell.toStdString();
        EXPECT_TRUE(values.fieldEditedFlags.test(c.field));
    }
    RunValues values = standardRun();
    EXPECT_EQ(CsvImport::applyCell(values, Field::GPSLatitudeRef, "South"), std::nullopt);
    EXPECT_EQ(valueOf(values, Field::GPSLatitudeRef).text(), "S");
    // A popup's printed words are no code: refused, with a reason.
    EXPECT_NE(CsvImport::applyCell(values, Field::Orientation, "Horizontal (normal)"),
              std::nullopt);
    EXPECT_NE(CsvImport::applyCell(values, Field::DateTimeOriginal, "last summer"), std::nullopt);
}

// "-" erases in both forms and both edit modes; a date becomes a rule that sets it.
TEST(CsvImport, ADashErasesAndADateIsSet) {
    for (const bool standard : {true, false}) {
        for (const ProcessingMode mode :
             {ProcessingMode::keepUnedited, ProcessingMode::clearUnedited}) {
            RunValues values = standardRun();
            values.writeOptions.standardForm = standard;
            values.processingMode = mode;
            ASSERT_EQ(CsvImport::applyCell(values, Field::City, "-"), std::nullopt);
            ASSERT_EQ(CsvImport::applyCell(values, Field::ModifyDate, "-"), std::nullopt);
            const FieldEdits edits = plainFieldEdits(values);
            EXPECT_TRUE(edits.isErased(formField(Field::City).keyRow())) << standard << int(mode);
            EXPECT_TRUE(values.editorDates.rule(DateField::modifyDate).is<EmptyValue>());
        }
    }
    RunValues values = standardRun();
    ASSERT_EQ(CsvImport::applyCell(values, Field::DateTimeOriginal, "2002:07:13 15:58:28"),
              std::nullopt);
    EXPECT_EQ(values.editorDates.slot(DateField::dateTimeOriginal),
              QDateTime(QDate(2002, 7, 13), QTime(15, 58, 28)));
    EXPECT_TRUE(values.fieldEditedFlags.test(Field::DateTimeOriginal));
}

TEST(CsvImport, NamesWhatTheTableCannotGiveAndGivesTheRestToItsPhoto) {
    QTemporaryFile photo;
    ASSERT_TRUE(photo.open());
    CsvTable table;
    // The XMP keywords of the other tool's table join the row's keywords.
    table.header = {"sourcefile", "Artist", "Nope", "ISO", "Keywords", "XMP:Subject"};
    table.rows = {{"/nowhere/a.jpg", "Bob", "", "", "", ""},
                  {photo.fileName(), "Ann", "y", "fast", "a, b", "b, c"}};
    QString error;
    const auto import = CsvImport::fromTable(table, "/", &error);
    ASSERT_TRUE(import) << error.toStdString();
    EXPECT_EQ(import->photos(), QStringList{QFileInfo(photo.fileName()).absoluteFilePath()});
    EXPECT_EQ(import->problems().unknownColumns, QStringList{"Nope"});
    EXPECT_EQ(import->problems().missingFiles, QStringList{"/nowhere/a.jpg"});
    ASSERT_EQ(import->problems().refusedCells.size(), 1);
    EXPECT_TRUE(import->problems().refusedCells.front().contains("ISO"));

    RunValues values = standardRun();
    import->adjust(makeEmptyRecord(QUrl::fromLocalFile(photo.fileName())), values);
    EXPECT_EQ(valueOf(values, Field::Artist).text(), "Ann");
    EXPECT_EQ(valueOf(values, Field::Keywords).text(), "a, b, c");
    EXPECT_TRUE(values.fieldEditedFlags.test(Field::Artist));
    EXPECT_FALSE(values.fieldEditedFlags.test(Field::ISO));
    // Another photo keeps the run's values.
    RunValues other = standardRun();
    import->adjust(makeEmptyRecord(QUrl::fromLocalFile("/nowhere/a.jpg")), other);
    EXPECT_FALSE(other.fieldEditedFlags.hasEdits());

    table.header[0] = "Path";
    EXPECT_FALSE(CsvImport::fromTable(table, "/", &error));
}

} // namespace
} // namespace tagmoor
