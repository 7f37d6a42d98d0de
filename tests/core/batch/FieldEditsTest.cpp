#include "BatchTestSupport.h"

#include "batch/FieldEdits.h"
#include "dates/DateField.h"

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

const KeyRow& rowOf(const char* name) {
    return findFormField(name)->keyRow();
}

} // namespace

// The six cases of keeping unedited tags: a field without a value goes whatever its flag
// says, an edited one takes its value (the empty text too), an unedited one stays.
TEST(FieldEdits, KeepUneditedWritesEditedAndErasesOnlyFieldsWithoutValue) {
    RunValues v = editRun(ProcessingMode::keepUnedited);
    edit(v, "Artist", "Jane Doe");
    edit(v, "Copyright", ""); // cleared by the user
    edit(v, "FNumber", "2.8");
    // An edited field whose value is missing in the snapshot: erased, not written.
    v.editedProperties.tiffProperties->make = PropertyValue();
    v.fieldEditedFlags.set(Field::Make);
    // An unedited field without value (its group absent in the snapshot): erased too.
    v.editedProperties.iptcProperties.reset();

    const FieldEdits e = plainFieldEdits(v);
    EXPECT_EQ(e.values.at(rowOf("Artist")).text(), "Jane Doe");
    EXPECT_EQ(e.values.at(rowOf("Copyright")).text(), "");
    EXPECT_FLOAT_EQ(*e.values.at(rowOf("FNumber")).float32(), 2.8f);
    EXPECT_FALSE(e.isErased(rowOf("Copyright")));
    EXPECT_TRUE(e.values.at(rowOf("Software")).isAbsent());
    EXPECT_FALSE(e.isErased(rowOf("Software")));
    EXPECT_TRUE(e.isErased(rowOf("Make")));
    EXPECT_TRUE(e.values.at(rowOf("Make")).isAbsent());
    EXPECT_EQ(e.erased.keys(KeyBlock::Iptc).size(), 19);
    EXPECT_EQ(e.erased.keys(KeyBlock::Exif), QStringList{"Exif.Image.Make"});
    EXPECT_TRUE(e.erased.keys(KeyBlock::Xmp).isEmpty());
}

TEST(FieldEdits, ClearUneditedErasesEveryUnflaggedKeyAndKeepsFlaggedOnesWithoutValue) {
    RunValues v = editRun(ProcessingMode::clearUnedited);
    const PhotoPipeline nothingFlagged(v);
    const FieldEdits all = nothingFlagged.fieldEditsFor(recordOf("/nowhere/a.jpg"));
    EXPECT_EQ(all.erased.keys(KeyBlock::Exif).size(), 51); // rows 0-47 and 52-54
    EXPECT_EQ(all.erased.keys(KeyBlock::Iptc).size(), 19);
    EXPECT_EQ(all.erased.keys(KeyBlock::Xmp).size(), 5);
    EXPECT_EQ(all.values, MetadataFieldSet{});

    edit(v, "City", "Paris");
    v.editedProperties.tiffProperties->artist = PropertyValue(qint64(5)); // not a text
    v.fieldEditedFlags.set(Field::Artist);
    const FieldEdits e = plainFieldEdits(v);
    EXPECT_EQ(e.values.at(rowOf("City")).text(), "Paris");
    EXPECT_FALSE(e.isErased(rowOf("City")));
    EXPECT_FALSE(e.isErased(rowOf("Artist")));
    EXPECT_TRUE(e.values.at(rowOf("Artist")).isAbsent());
}

TEST(FieldEdits, NumbersTakeTheirRowsKindAndFloatsAreCutForIntegerRows) {
    const KeyRow& iso = rowOf("ISO");
    EXPECT_EQ(valueOfRowType(iso, PropertyValue(399.9f))->int64(), 399);
    EXPECT_EQ(valueOfRowType(iso, PropertyValue(-2.5))->int64(), -2);
    EXPECT_FALSE(valueOfRowType(iso, PropertyValue(std::numeric_limits<double>::infinity())));
    EXPECT_FALSE(valueOfRowType(iso, PropertyValue(1e300)));
    EXPECT_FALSE(valueOfRowType(iso, PropertyValue("400")));
    EXPECT_EQ(valueOfRowType(rowOf("GPSAltitudeRef"), PropertyValue(qint64(1)))->uint8(), 1);
    EXPECT_FALSE(valueOfRowType(rowOf("GPSAltitudeRef"), PropertyValue(qint64(300))));
    EXPECT_EQ(valueOfRowType(rowOf("StandardOutputSensitivityOthers"), PropertyValue(qint64(7)))
                  ->uint64(),
              7u);
    EXPECT_FLOAT_EQ(*valueOfRowType(rowOf("FNumber"), PropertyValue(qint64(4)))->float32(), 4.0f);
    EXPECT_DOUBLE_EQ(*valueOfRowType(rowOf("GPSLatitude"), PropertyValue(48.5f))->float64(), 48.5);
    EXPECT_FALSE(valueOfRowType(rowOf("Artist"), PropertyValue(qint64(1))));
}

// Date fields follow the date rules only when flagged; unflagged ones are erased only when
// clearing unedited tags.
TEST(FieldEdits, DateFieldsFollowTheirRulesWhenFlagged) {
    RunValues v = editRun(ProcessingMode::keepUnedited);
    CGImageProperties photo = recordOf("/nowhere/a.jpg");
    photo.exifProperties->dateTimeOriginal =
        PropertyValue(QDateTime(QDate(2020, 5, 6), QTime(10, 22, 33)));

    v.editorDates.rule(DateField::dateTimeOriginal) = IDOT{2, 0, 0, false, true, true};
    v.editorDates.rule(DateField::createDateXMP) = EmptyValue{};
    v.editorDates.rule(DateField::modifyDate) = SelectDate{};
    v.editorDates.slot(DateField::modifyDate) = QDateTime(QDate(2001, 2, 3), QTime(4, 5, 6));

    const FieldEdits unflagged = PhotoPipeline(v).fieldEditsFor(photo);
    EXPECT_TRUE(unflagged.values.at(rowOf("DateTimeOriginal")).isAbsent());
    EXPECT_TRUE(unflagged.erased.keys(KeyBlock::Xmp).isEmpty());

    for (Field f :
         {Field::DateTimeOriginal, Field::ModifyDate, Field::CreateDateXMP, Field::ModifyDateXMP})
        v.fieldEditedFlags.set(f);
    const FieldEdits e = PhotoPipeline(v).fieldEditsFor(photo);
    EXPECT_EQ(e.values.at(rowOf("DateTimeOriginal")).text(), "2020-05-06 12:22:33");
    EXPECT_EQ(e.values.at(rowOf("ModifyDate")).text(), "2001-02-03 04:05:06");
    EXPECT_EQ(e.erased.keys(KeyBlock::Xmp), QStringList{"Xmp.xmp.CreateDate"});
    // Flag 59 with a rule left at keep original: nothing.
    EXPECT_TRUE(e.values.at(rowOf("ModifyDateXMP")).isAbsent());

    v.processingMode = ProcessingMode::clearUnedited;
    const FieldEdits cleared = PhotoPipeline(v).fieldEditsFor(photo);
    EXPECT_TRUE(cleared.erased.keys(KeyBlock::Exif).contains("Exif.Photo.DateTimeDigitized"));
    EXPECT_TRUE(cleared.erased.keys(KeyBlock::Xmp).contains("Xmp.photoshop.DateCreated"));
    EXPECT_FALSE(cleared.erased.keys(KeyBlock::Xmp).contains("Xmp.xmp.ModifyDate"));
}
