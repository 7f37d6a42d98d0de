// The checks of a value before it is written, over kinds that a preset can hold and typing never
// gives: doubles, not-a-number, infinities, lone surrogates.
#include "editor/FieldValueCheck.h"

#include "batch/FormSnapshot.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tagmoor;

TEST(FieldValueCheck, ValuesOfEveryKindMustFitWhatTheWriterMakesOfThem) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const QList<std::tuple<const char*, PropertyValue, bool>> cases = {
        {"ISO", PropertyValue(65535.9), true}, // a run cuts the fraction
        {"ISO", PropertyValue(1e20), false},
        {"ISO", PropertyValue(nan), false},
        {"FNumber", PropertyValue(std::numeric_limits<float>::infinity()), false},
        {"FNumber", PropertyValue(2147483647.0), false},  // a float rounds it up to 2^31
        {"GPSLatitude", PropertyValue(90.000001), false}, // a coordinate keeps its double
        {"GPSLongitude", PropertyValue(nan), false},
        {"Artist", PropertyValue(QStringLiteral("Ann") + QChar(0xD800)), false},
    };
    for (const auto& [name, value, passes] : cases) {
        const FormField* field = findFormField(QString::fromLatin1(name));
        CGImageProperties record = FormSnapshot::empty();
        *field->keyRow().field(record) = value;
        const auto refused = refusedFieldValue(*field, record);
        EXPECT_EQ(!refused, passes) << name << " " << value.variant().toString().toStdString();
    }
}

// A date rule's year counts only when the rule writes it.
TEST(FieldValueCheck, ADateRulesYearCountsWhenTheRuleWritesIt) {
    UpdateDate rule;
    const QDateTime far(QDate(12000, 5, 1), QTime(8, 0));
    rule.isKeepOriginalYears = true;
    EXPECT_FALSE(refusedDateRule(DateField::modifyDate, rule, far));
    rule.isKeepOriginalYears = false;
    EXPECT_EQ(refusedDateRule(DateField::modifyDate, rule, far),
              "ModifyDate: the year 12000 is not from 0001 to 9999");
    EXPECT_FALSE(refusedDateRule(DateField::modifyDate, EmptyValue{}, far));
}
