// The code tables: exact texts, the blank rows, the gaps between codes, and which row a
// stored value selects.
#include "model/CodeTables.h"
#include "model/CountryHelper.h"

#include <gtest/gtest.h>

#include <set>

namespace tagmoor {
namespace {

constexpr CodeTable kAllTables[] = {
    CodeTable::Flash,           CodeTable::Orientation,          CodeTable::ExposureMode,
    CodeTable::ExposureProgram, CodeTable::MeteringMode,         CodeTable::SceneCaptureType,
    CodeTable::SensingMethod,   CodeTable::SubjectDistanceRange, CodeTable::AltitudeRef,
    CodeTable::EXIFFileSource,  CodeTable::EXIFLightSource,      CodeTable::EXIFSensitivityType,
    CodeTable::TiffCompression,
};

QString textOf(CodeTable table, qint64 number) {
    return codeRows(table)[std::size_t(rowOfNumber(table, number))].text();
}

TEST(CodeTables, RowCountsAndBlankRows) {
    struct Expected {
        CodeTable table;
        std::size_t rows;
        int blankIndex;
        const char* blankText;
    };
    const Expected expected[] = {
        {CodeTable::Flash, 23, -1, "Leave Blank"},
        {CodeTable::Orientation, 9, -1, "Leave Blank"},
        {CodeTable::ExposureMode, 4, -1, "Leave Blank"},
        {CodeTable::ExposureProgram, 10, -1, "Leave Blank"},
        {CodeTable::MeteringMode, 8, -1, "Leave Blank"},
        {CodeTable::SceneCaptureType, 5, -1, "Leave Blank"},
        {CodeTable::SensingMethod, 8, -1, "Leave Blank"},
        {CodeTable::SubjectDistanceRange, 5, -1, "Leave blank"},
        {CodeTable::AltitudeRef, 3, -1, "Leave Blank"},
        {CodeTable::EXIFFileSource, 4, 0, "Leave Blank"},
        {CodeTable::EXIFLightSource, 22, -1, "Leave Blank"},
        {CodeTable::EXIFSensitivityType, 9, -1, "Leave Blank"},
        {CodeTable::TiffCompression, 25, 0, "Leave Blank"},
    };
    for (const auto& e : expected) {
        const auto rows = codeRows(e.table);
        SCOPED_TRACE(rows[1].name);
        EXPECT_EQ(rows.size(), e.rows);
        EXPECT_EQ(rows[0].index, e.blankIndex);
        EXPECT_STREQ(rows[0].name, e.blankText);
        // The blank row stands for no value: choosing it never yields a number to write.
        EXPECT_EQ(numberOfRow(e.table, 0), std::nullopt);
    }
}

TEST(CodeTables, RealRowsAscendWithoutDuplicates) {
    for (CodeTable table : kAllTables) {
        const auto rows = codeRows(table);
        std::set<QString> names;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            if (i > 1) {
                EXPECT_LT(rows[i - 1].index, rows[i].index) << rows[i].name;
            }
            EXPECT_TRUE(names.insert(rows[i].text()).second) << rows[i].name;
            // Row and number map onto each other both ways.
            EXPECT_EQ(rowOfNumber(table, rows[i].index), int(i));
            EXPECT_EQ(numberOfRow(table, int(i)), rows[i].index);
        }
    }
}

TEST(CodeTables, ExactTextsOfSampleRows) {
    EXPECT_EQ(textOf(CodeTable::Flash, 0), "Flash did not fire");
    EXPECT_EQ(textOf(CodeTable::Flash, 93),
              "Flash fired, auto mode, return light not detected, red-eye reduction mode");
    EXPECT_EQ(textOf(CodeTable::Flash, 77), "Flash fired, compulsory flash mode, red-eye "
                                            "reduction mode, return light not detected");
    EXPECT_EQ(textOf(CodeTable::Orientation, 6), "Orientation Rotate 90");
    EXPECT_EQ(textOf(CodeTable::ExposureMode, 2), "Auto Bracket");
    EXPECT_EQ(textOf(CodeTable::ExposureProgram, 8), "Landscape Mode");
    EXPECT_EQ(textOf(CodeTable::MeteringMode, 4), "MultiSpot");
    EXPECT_EQ(textOf(CodeTable::SceneCaptureType, 3), "Night scene");
    EXPECT_EQ(textOf(CodeTable::SensingMethod, 7), "Trilinear sensor");
    EXPECT_EQ(textOf(CodeTable::SubjectDistanceRange, 2), "Close view");
    EXPECT_EQ(textOf(CodeTable::AltitudeRef, 1), "Below Sea Level");
    EXPECT_EQ(textOf(CodeTable::EXIFFileSource, 3), "Digital Camera");
    EXPECT_EQ(textOf(CodeTable::EXIFLightSource, 12), "Daylight fluorescent (D 5700 - 7100K)");
    EXPECT_EQ(textOf(CodeTable::EXIFLightSource, 255), "Other light source");
    EXPECT_EQ(textOf(CodeTable::EXIFSensitivityType, 7),
              "Standard output sensitivity (SOS) and recommended exposure index (REI) and ISO "
              "speed");
    EXPECT_EQ(textOf(CodeTable::TiffCompression, 6),
              "JPEG ('old-style' JPEG, later overriden in Technote2)");
    EXPECT_EQ(textOf(CodeTable::TiffCompression, 32766), "NEXT");
    EXPECT_EQ(textOf(CodeTable::TiffCompression, 34712), "JP2000");
}

TEST(CodeTables, CodesBetweenRowsSelectTheBlankRow) {
    // Flash has no rows for 2, 3, 4 or 96; LightSource jumps 4 -> 9 and 15 -> 17;
    // SensingMethod has no 6 and no 0.
    for (qint64 code : {2, 3, 4, 96, -1})
        EXPECT_EQ(rowOfNumber(CodeTable::Flash, code), 0) << code;
    for (qint64 code : {5, 8, 16, 25, 254, 256})
        EXPECT_EQ(rowOfNumber(CodeTable::EXIFLightSource, code), 0) << code;
    EXPECT_EQ(rowOfNumber(CodeTable::EXIFLightSource, 9), 6);
    EXPECT_EQ(rowOfNumber(CodeTable::EXIFLightSource, 17), 13);
    EXPECT_EQ(rowOfNumber(CodeTable::EXIFLightSource, 255), 21);
    EXPECT_EQ(rowOfNumber(CodeTable::SensingMethod, 6), 0);
    EXPECT_EQ(rowOfNumber(CodeTable::SensingMethod, 0), 0);
    EXPECT_EQ(rowOfNumber(CodeTable::SensingMethod, 7), 6);
    // Sensitivity types are plain numbers: 4 is its own row, not 1|3.
    EXPECT_EQ(textOf(CodeTable::EXIFSensitivityType, 4),
              "Standard output sensitivity (SOS) and recommended exposure index (REI)");
    // Where the blank is 0, a stored 0 shows blank.
    EXPECT_EQ(rowOfNumber(CodeTable::TiffCompression, 0), 0);
    EXPECT_EQ(rowOfNumber(CodeTable::EXIFFileSource, 0), 0);
    EXPECT_EQ(numberOfRow(CodeTable::Flash, 23), std::nullopt);
    EXPECT_EQ(numberOfRow(CodeTable::Flash, -1), std::nullopt);
}

TEST(CodeTables, FieldValuesSelectRowsByIntegerKindOnly) {
    EXPECT_EQ(rowOfValue(CodeTable::Flash, PropertyValue(qint64(16))), 8);
    EXPECT_EQ(rowOfValue(CodeTable::Orientation, PropertyValue(quint8(3))), 3);
    EXPECT_EQ(rowOfValue(CodeTable::TiffCompression, PropertyValue(quint64(32773))), 11);
    EXPECT_EQ(rowOfValue(CodeTable::Orientation, PropertyValue(quint64(~0ull))), 0);
    EXPECT_EQ(rowOfValue(CodeTable::Orientation, PropertyValue(3.0)), 0);
    EXPECT_EQ(rowOfValue(CodeTable::Orientation, PropertyValue("3")), 0);
    EXPECT_EQ(rowOfValue(CodeTable::Orientation, PropertyValue()), 0);
}

TEST(CodeTables, GpsReferenceLetters) {
    EXPECT_EQ(rowOfValue(LetterTable::LatitudeRef, PropertyValue("N")), 1);
    EXPECT_EQ(rowOfValue(LetterTable::LatitudeRef, PropertyValue("S")), 2);
    EXPECT_EQ(rowOfValue(LetterTable::LatitudeRef, PropertyValue("E")), 0);
    EXPECT_EQ(rowOfValue(LetterTable::LatitudeRef, PropertyValue("NIL")), 0);
    EXPECT_EQ(rowOfValue(LetterTable::LatitudeRef, PropertyValue()), 0);
    EXPECT_EQ(rowOfValue(LetterTable::LongitudeRef, PropertyValue("W")), 2);
    EXPECT_EQ(rowOfLetter(LetterTable::LongitudeRef, QStringLiteral("w")), 0);
    EXPECT_STREQ(letterRows(LetterTable::LongitudeRef)[1].name, "East");
    EXPECT_STREQ(letterRows(LetterTable::LatitudeRef)[0].name, "Leave Blank");
    EXPECT_EQ(letterOfRow(LetterTable::LatitudeRef, 2), QStringLiteral("S"));
    EXPECT_EQ(letterOfRow(LetterTable::LatitudeRef, 0), std::nullopt);
}

TEST(CountryHelper, RegionListInCodeOrderWithLocaleNames) {
    const auto rows = CountryHelper::Country();
    ASSERT_GT(rows.size(), 200u);
    EXPECT_EQ(rows[0], (CountryRow{QStringLiteral("Leave Blank"), QStringLiteral("NIL")}));
    EXPECT_EQ(rows[1].code, "AD");
    EXPECT_EQ(rows[1].name, "Andorra");
    for (std::size_t i = 2; i < rows.size(); ++i) {
        EXPECT_LT(rows[i - 1].code, rows[i].code) << "not in code order at " << i;
        EXPECT_NE(rows[i].name, rows[i].code);
    }
    const auto row = [&](const char* code) {
        return rows[std::size_t(CountryHelper::indexOfCountry(QString::fromLatin1(code)))];
    };
    EXPECT_EQ(row("US").name, "United States");
    EXPECT_EQ(row("DE").name, "Germany");
    EXPECT_EQ(row("JP").name, "Japan");
    // Codes order the list, names don't: Germany (DE) comes before Algeria (DZ) but after
    // Czechia (CZ).
    EXPECT_LT(CountryHelper::indexOfCountry("CZ"), CountryHelper::indexOfCountry("DE"));
    EXPECT_LT(CountryHelper::indexOfCountry("DE"), CountryHelper::indexOfCountry("DZ"));

    EXPECT_EQ(CountryHelper::indexOfCountry("NIL"), 0);
    EXPECT_EQ(CountryHelper::indexOfCountry("ZZ"), 0);
    EXPECT_EQ(CountryHelper::indexOfCountry(""), 0);
    EXPECT_EQ(CountryHelper::indexOfCountry("us"), 0);
}

TEST(CountryHelper, NamesFollowTheLocaleCodesStay) {
    const auto english = CountryHelper::buildRows("en_US");
    const auto german = CountryHelper::buildRows("de_DE");
    ASSERT_EQ(english.size(), german.size());
    for (std::size_t i = 0; i < english.size(); ++i)
        EXPECT_EQ(english[i].code, german[i].code);
    const auto shared = CountryHelper::Country();
    EXPECT_TRUE(std::equal(english.begin(), english.end(), shared.begin(), shared.end()));
    const auto de = std::find_if(german.begin(), german.end(),
                                 [](const CountryRow& r) { return r.code == "DE"; });
    ASSERT_NE(de, german.end());
    EXPECT_EQ(de->name, "Deutschland");
}

} // namespace
} // namespace tagmoor
