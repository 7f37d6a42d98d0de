#include "model/FormFieldTable.h"
#include "batch/FieldEditedFlags.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace tagmoor;

// The form's positions, the key rows and the run order are one table; these checks catch a
// row typed twice, a position shifted, or a key row left without its control.
TEST(FormFieldTable, EveryWritableKeyRowHasExactlyOneFormPosition) {
    QSet<int> positions;
    QSet<QString> keys;
    for (const FormField& f : formFields()) {
        EXPECT_FALSE(positions.contains(f.position)) << f.position;
        positions.insert(f.position);
        keys.insert(QString::fromLatin1(f.keyRow().key));
        EXPECT_EQ(formFieldAt(f.position), &f);
        EXPECT_EQ(formFieldForRow(f.keyRow()), &f);
    }
    EXPECT_EQ(positions.size(), 75);
    for (int p : {67, 70, 76, 84, 88})
        EXPECT_EQ(formFieldAt(p), nullptr) << p;
    for (const KeyRow& row : allKeyRows()) {
        const bool skipped = row.block == KeyBlock::Exif && isSkippedExifRow(row.row);
        EXPECT_EQ(keys.contains(QString::fromLatin1(row.key)), !skipped) << row.key;
    }
}

// The enum, the names, the stored positions and the named key rows all come from one table:
// a row moved or renamed shows here as a field that no longer finds itself.
TEST(FormFieldTable, EachFieldFindsItselfByPositionNameAndKey) {
    ASSERT_EQ(kFieldCount, 75u);
    for (const Field field : allFields) {
        const FormField& f = formField(field);
        EXPECT_EQ(f.field, field);
        EXPECT_EQ(fieldAtPosition(formPosition(field)), field) << fieldName(field);
        EXPECT_EQ(findFormField(QString::fromLatin1(fieldName(field)))->field, field);
        EXPECT_EQ(findFormField(QString::fromLatin1(f.keyRow().key))->field, field);
        EXPECT_TRUE(QString::fromLatin1(fieldControl(field)).endsWith(f.name())) << f.control;
        EXPECT_EQ(f.kind, formKind(field));
        EXPECT_EQ(f.row, keyRowNumber(field));
    }
    EXPECT_EQ(fieldAtPosition(70), std::nullopt);
    EXPECT_EQ(fieldAtPosition(90), std::nullopt);
    EXPECT_STREQ(fieldControl(Field::UserComment), "txtViewUserComment");
    EXPECT_STREQ(fieldControl(Field::GPSLatitudeRef), "popUpGPSLatitudeRef");

    const auto exifKey = [](int row) { return QString::fromLatin1(exifKeyRows()[row].key); };
    EXPECT_EQ(exifKey(exifrow::ISOSpeedRatings), "Exif.Photo.ISOSpeedRatings");
    EXPECT_EQ(exifKey(exifrow::Orientation), "Exif.Image.Orientation");
    EXPECT_EQ(exifKey(exifrow::GPSLatitudeRef), "Exif.GPSInfo.GPSLatitudeRef");
    EXPECT_EQ(exifKey(exifrow::GPSLongitude), "Exif.GPSInfo.GPSLongitude");
    EXPECT_EQ(exifKey(exifrow::GPSAltitudeRef), "Exif.GPSInfo.GPSAltitudeRef");
    EXPECT_EQ(QString::fromLatin1(iptcKeyRows()[iptcrow::Keywords].key),
              "Iptc.Application2.Keywords");
    EXPECT_EQ(QString::fromLatin1(xmpKeyRows()[xmprow::PhotoshopDateCreated].key),
              "Xmp.photoshop.DateCreated");
    EXPECT_EQ(QString::fromLatin1(xmpKeyRows()[xmprow::Lens].key), "Xmp.aux.Lens");
}

TEST(FormFieldTable, PositionsLandOnTheirKeys) {
    const auto keyAt = [](int pos) { return QString::fromLatin1(formFieldAt(pos)->keyRow().key); };
    EXPECT_EQ(keyAt(0), "Exif.Image.Artist");
    EXPECT_EQ(keyAt(10), "Exif.Photo.DateTimeDigitized");
    EXPECT_EQ(keyAt(11), "Exif.Image.DateTime");
    EXPECT_EQ(keyAt(12), "Exif.Photo.ISOSpeedRatings");
    EXPECT_EQ(keyAt(36), "Exif.GPSInfo.GPSAltitudeRef");
    EXPECT_EQ(keyAt(37), "Iptc.Application2.Byline");
    EXPECT_EQ(keyAt(55), "Iptc.Application2.Source");
    EXPECT_EQ(keyAt(58), "Xmp.xmp.CreateDate");
    EXPECT_EQ(keyAt(59), "Xmp.xmp.ModifyDate");
    EXPECT_EQ(keyAt(60), "Xmp.photoshop.DateCreated");
    EXPECT_EQ(keyAt(61), "Exif.Image.Compression");
    EXPECT_EQ(keyAt(77), "Exif.Photo.SpectralSensitivity");
    EXPECT_EQ(keyAt(83), "Exif.Photo.LightSource");
    EXPECT_EQ(keyAt(89), "Exif.Photo.DigitalZoomRatio");

    EXPECT_EQ(findFormField("artist")->position, 0);
    EXPECT_EQ(findFormField("Iptc.Application2.City")->position, 48);
    EXPECT_EQ(findFormField("CameraModalName")->position, 6);
    EXPECT_EQ(findFormField("Nonsense"), nullptr);
}

TEST(FormFieldTable, RunOrderIsKeyListOrderAndDatesInTheirOwnOrder) {
    std::vector<int> order;
    for (const FormField* f : plainFieldsInKeyOrder())
        order.push_back(int(f->block) * 100 + f->row);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    EXPECT_EQ(order.size(), 69u);
    std::vector<int> dates;
    for (const FormField* f : dateFieldsInRunOrder())
        dates.push_back(f->position);
    EXPECT_EQ(dates, (std::vector<int>{9, 10, 11, 58, 59, 60}));
}

// The date rules and the form's fields are two tables; a date rule must flag the field that
// shows its own key.
TEST(FieldEditedFlags, ADateFieldFlagsTheFormFieldOfItsKey) {
    for (const DateField date : allDateFields) {
        const FormField& shown = formField(formFieldOf(date));
        EXPECT_STREQ(shown.keyRow().key, dateFieldKey(date));
        EXPECT_EQ(dateFieldOf(shown.field), date);
    }
}

TEST(FieldEditedFlags, OneFlagPerField) {
    FieldEditedFlags flags;
    EXPECT_FALSE(flags.hasEdits());
    flags.set(Field::ModifyDateXMP);
    EXPECT_TRUE(flags.hasEdits());
    EXPECT_TRUE(flags.test(Field::ModifyDateXMP));
    EXPECT_FALSE(flags.test(Field::CreateDateXMP));
    flags.set(Field::ModifyDateXMP, false);
    EXPECT_FALSE(flags.hasEdits());
    flags.set(Field::DigitalZoomRatioOthers);
    flags.clearAll();
    EXPECT_EQ(flags, FieldEditedFlags{});
}
