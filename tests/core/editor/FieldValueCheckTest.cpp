// The checks of a value before it is written, over the kinds a preset can hold that typing on
// the command line never gives (doubles, unsigned numbers, not-a-number, lone surrogates).
#include "editor/FieldValueCheck.h"

#include "batch/FormSnapshot.h"
#include "metadata/TagValueRange.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tagmoor;

namespace {

std::optional<QString> check(const char* field, const PropertyValue& value) {
    const FormField* f = findFormField(QString::fromLatin1(field));
    EXPECT_NE(f, nullptr) << field;
    CGImageProperties record = FormSnapshot::empty();
    *f->keyRow().field(record) = value;
    return refusedFieldValue(*f, record);
}

} // namespace

TEST(FieldValueCheck, NumbersOfEveryKindMustFitTheirTag) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const QList<std::tuple<const char*, PropertyValue, bool>> cases = {
        {"ISO", PropertyValue(qint64(65535)), true},
        {"ISO", PropertyValue(qint64(-1)), false},
        {"ISO", PropertyValue(65535.9), true}, // a run cuts the fraction
        {"ISO", PropertyValue(1e20), false},   // no integer at all
        {"ISO", PropertyValue(quint64(65536)), false},
        {"ISO", PropertyValue(nan), false},
        {"GPSAltitudeRef", PropertyValue(quint8(1)), true},
        {"Exif.Photo.StandardOutputSensitivity", PropertyValue(quint64(4294967295u)), true},
        {"Exif.Photo.StandardOutputSensitivity", PropertyValue(qint64(-3)), false},
        {"FNumber", PropertyValue(0.0f), true},
        {"FNumber", PropertyValue(-0.5f), false},
        {"FNumber", PropertyValue(nan), false},
        {"FNumber", PropertyValue(std::numeric_limits<float>::infinity()), false},
        {"FNumber", PropertyValue(2147483520.0f), true},
        {"FNumber", PropertyValue(2147483647.0), false}, // a float rounds it up to 2^31
        {"GPSLatitude", PropertyValue(-90.0), true},
        {"GPSLatitude", PropertyValue(90.000001), false},
        {"GPSLongitude", PropertyValue(-180.0f), true},
        {"GPSLongitude", PropertyValue(nan), false},
        {"Orientation", PropertyValue(qint64(8)), true},
        {"Orientation", PropertyValue(qint64(9)), false},
    };
    for (const auto& [field, value, passes] : cases) {
        const auto refused = check(field, value);
        EXPECT_EQ(!refused.has_value(), passes)
            << field << " " << value.variant().toString().toStdString() << ": "
            << refused.value_or(QString()).toStdString();
    }
    // The ranges come from the tags' own types.
    EXPECT_EQ(tagValueRange("Exif.GPSInfo.GPSAltitudeRef")->highest, 255);
    EXPECT_EQ(tagValueRange("Exif.Photo.ISOSpeedRatings")->highest, 65535);
    EXPECT_FALSE(tagValueRange("Exif.Photo.ISOSpeedRatings")->contains(-1));
    EXPECT_FALSE(tagValueRange("Exif.Image.Artist").has_value());
    EXPECT_FALSE(tagValueRange("Iptc.Application2.City").has_value());
}

TEST(FieldValueCheck, TextsAndDateRules) {
    const QString lone = QStringLiteral("Ann") + QChar(0xD800);
    EXPECT_EQ(check("Artist", PropertyValue(lone)), "Artist is not valid UTF-8 text");
    EXPECT_TRUE(check("City", PropertyValue(QStringLiteral("Zürich 🌍"))) == std::nullopt);
    EXPECT_TRUE(check("Artist", PropertyValue(QString())) == std::nullopt);

    // Only what a run writes is checked: a refused value under a clear flag passes.
    CGImageProperties record = FormSnapshot::empty();
    record.exifProperties->isoSpeedRating = PropertyValue(qint64(-5));
    FieldEditedFlags flags;
    OriginalFinalDate dates;
    EXPECT_FALSE(refusedRunValue(record, flags, dates).has_value());
    flags.set(findFormField("ISO")->position);
    EXPECT_TRUE(refusedRunValue(record, flags, dates).has_value());

    // A date rule's year counts when the rule writes it: not for a rule that keeps or
    // empties, nor for an update that keeps the year.
    record.exifProperties->isoSpeedRating = PropertyValue(qint64(100));
    DateTimeConfiguration& rule = dates.rule(DateField::modifyDate);
    dates.slot(DateField::modifyDate) = QDateTime(QDate(12000, 5, 1), QTime(8, 0));
    flags.set(formpos::ModifyDate);
    rule.isKeepOriginal = false;
    rule.isUpdateDate = true;
    rule.updateDate.isKeepOriginalYears = true;
    EXPECT_FALSE(refusedRunValue(record, flags, dates).has_value());
    rule.updateDate.isKeepOriginalYears = false;
    EXPECT_EQ(refusedRunValue(record, flags, dates),
              "ModifyDate: the year 12000 is not from 0001 to 9999");
    rule.isEmptyValue = true;
    EXPECT_FALSE(refusedRunValue(record, flags, dates).has_value());
    EXPECT_EQ(refusedYear(DateField::createDateXMP, 0),
              "CreateDateXMP: the year 0 is not from 0001 to 9999");
    EXPECT_FALSE(refusedYear(DateField::createDateXMP, 1).has_value());
}
