// The JSON form of the date rules that presets keep.
#include "dates/OriginalFinalDateJson.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

namespace tagmoor {
namespace {

OriginalFinalDate sampleRules() {
    OriginalFinalDate rules;
    rules.dateTimeOriginal = QDateTime(QDate(2021, 5, 6), QTime(10, 22, 33), Qt::UTC);
    rules.createDateXMPPhotoshop = QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59, 250));
    rules.configurationTimeOriginal = SelectDate{rules.dateTimeOriginal};
    rules.configurationModifyDate =
        UpdateDate{9, 8, 2020, 7, 6, 5, TimeMode::pm, true, false, true, false};
    rules.configurationCreateDateXMP = IDOD{-30, 11, -100, false, true, false};
    // The values of a row whose mode is not chosen are kept as well.
    DateRuleInputs rows;
    rows.idot = {-23, 59, -59, true, false, true};
    rules.configurationModifyDateXMP = {KeepOriginal{}, rows};
    rules.configurationCreationDate = EmptyValue{};
    rules.modifyDateAlive = true;
    rules.createDateXMPAlive = true;
    return rules;
}

TEST(OriginalFinalDateJson, RoundTripKeepsEveryMember) {
    for (const OriginalFinalDate& rules : {OriginalFinalDate{}, sampleRules()}) {
        const auto decoded = decodeOriginalFinalDate(encodeOriginalFinalDate(rules));
        ASSERT_TRUE(decoded.has_value());
        EXPECT_EQ(*decoded, rules);
    }
}

TEST(OriginalFinalDateJson, MembersUnderTheirNamesInStoredOrder) {
    const QByteArray json = encodeOriginalFinalDate(sampleRules());
    EXPECT_TRUE(json.startsWith("{\"dateTimeOriginal\":\"2021-05-06T10:22:33.000Z\","
                                "\"createDateXMPPhotoshop\":\"1999-12-31T23:59:59.250Z\","
                                "\"configurationTimeOriginal\":{\"isKeepOriginal\":false,"))
        << json.constData();
    EXPECT_TRUE(json.endsWith("\"modifyDateXMPAlive\":false,"
                              "\"createDateXMPPhotoshopAlive\":false}"))
        << json.constData();
    // Absent dates are left out; each group follows the declared order.
    EXPECT_FALSE(json.contains("\"creationDate\":"));
    EXPECT_LT(json.indexOf("configurationCreateDateXMPPhotoshop"),
              json.indexOf("dateTimeOriginalAlive"));
    EXPECT_TRUE(json.contains("\"updateDate\":{\"changeDays\":9,\"changeMonths\":8,"
                              "\"changeYears\":2020,\"changeHours\":7,\"changeMinutes\":6,"
                              "\"changeSeconds\":5,\"timeMode\":\"pm\",\"isKeepOriginalDays\":"
                              "true,\"isKeepOriginalMonths\":false,\"isKeepOriginalYears\":true,"
                              "\"isKeepOriginalTime\":false}"));
    EXPECT_TRUE(json.contains("\"idod\":{\"changeDays\":-30,\"changeMonths\":11,"
                              "\"changeYears\":-100,"));
}

// Replaces one member inside the encoded sample, at a path of object names.
QByteArray withMember(const QStringList& path, const QJsonValue& value) {
    QJsonObject root = QJsonDocument::fromJson(encodeOriginalFinalDate(sampleRules())).object();
    std::function<void(QJsonObject&, int)> set = [&](QJsonObject& object, int depth) {
        if (depth + 1 == path.size()) {
            if (value.isUndefined())
                object.remove(path[depth]);
            else
                object[path[depth]] = value;
            return;
        }
        QJsonObject child = object[path[depth]].toObject();
        set(child, depth + 1);
        object[path[depth]] = child;
    };
    set(root, 0);
    return QJsonDocument(root).toJson();
}

TEST(OriginalFinalDateJson, BrokenTextIsRefusedWhole) {
    // Member order does not matter when reading, and a null or absent date is no date.
    const auto reordered = decodeOriginalFinalDate(withMember({"dateTimeOriginal"}, QJsonValue()));
    ASSERT_TRUE(reordered.has_value());
    EXPECT_EQ(reordered->dateTimeOriginal, std::nullopt);
    EXPECT_EQ(reordered->configurationModifyDate, sampleRules().configurationModifyDate);
    EXPECT_TRUE(decodeOriginalFinalDate(withMember({"creationDate"}, QJsonValue::Undefined)));

    const QByteArray broken[] = {
        "",
        "not json",
        "[]",
        "{}",
        withMember({"modifyDateAlive"}, QJsonValue::Undefined),
        withMember({"modifyDateAlive"}, 1),
        withMember({"dateTimeOriginal"}, "yesterday"),
        withMember({"dateTimeOriginal"}, 12345),
        withMember({"configurationModifyDate", "updateDate", "timeMode"}, "noon"),
        withMember({"configurationModifyDate", "updateDate", "changeDays"}, 1.5),
        withMember({"configurationModifyDate", "updateDate", "changeDays"}, 3e10),
        withMember({"configurationModifyDate", "idot"}, QJsonValue::Undefined),
        withMember({"configurationModifyDate", "idot", "isKeepOriginalHours"}, "true"),
        withMember({"configurationCreateDateXMP"}, 7),
    };
    for (const QByteArray& json : broken)
        EXPECT_EQ(decodeOriginalFinalDate(json), std::nullopt) << json.left(200).constData();
}

TEST(OriginalFinalDateJson, SeveralModeFlagsReadAsTheModeARunObeys) {
    const auto stored = [](std::initializer_list<const char*> flags) {
        QJsonObject rule = QJsonDocument::fromJson(encodeOriginalFinalDate(sampleRules()))
                               .object()[QStringLiteral("configurationModifyDate")]
                               .toObject();
        for (const char* flag :
             {"isKeepOriginal", "isEmptyValue", "isSelectDate", "isUpdateDate", "isIDOD", "isIDOT"})
            rule[QLatin1String(flag)] = false;
        for (const char* flag : flags)
            rule[QLatin1String(flag)] = true;
        QJsonObject root =
            QJsonDocument::fromJson(encodeOriginalFinalDate(OriginalFinalDate{})).object();
        root[QStringLiteral("configurationModifyDate")] = rule;
        const auto decoded = decodeOriginalFinalDate(QJsonDocument(root).toJson());
        EXPECT_TRUE(decoded.has_value());
        return decoded ? decoded->configurationModifyDate : DateTimeConfiguration{};
    };
    const UpdateDate update = *sampleRules().configurationModifyDate.as<UpdateDate>();
    EXPECT_TRUE(stored({"isKeepOriginal", "isEmptyValue"}).is<EmptyValue>());
    EXPECT_TRUE(stored({"isKeepOriginal", "isUpdateDate", "isIDOT"}).is<KeepOriginal>());
    EXPECT_TRUE(stored({"isSelectDate", "isIDOD"}).is<SelectDate>());
    EXPECT_EQ(stored({"isUpdateDate", "isIDOD", "isIDOT"}), DateTimeConfiguration(update));
    EXPECT_TRUE(stored({"isIDOD", "isIDOT"}).is<IDOD>());
    EXPECT_TRUE(stored({}).is<KeepOriginal>()) << "no mode at all keeps the original";
    // The rows come along whatever the mode.
    EXPECT_EQ(stored({"isKeepOriginal", "isEmptyValue"}).inputs().updateDate, update);

    // Read again and written, such a rule has the one flag of its mode.
    OriginalFinalDate rules;
    rules.configurationModifyDate = stored({"isKeepOriginal", "isEmptyValue"});
    EXPECT_TRUE(encodeOriginalFinalDate(rules).contains(
        "\"configurationModifyDate\":{\"isKeepOriginal\":false,\"isEmptyValue\":true,"
        "\"isSelectDate\":false,"));
}

} // namespace
} // namespace tagmoor
