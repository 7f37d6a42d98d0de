// The preset file of export and import: every kind of value comes back as the same kind, and
// a file that is not a preset is refused with its reason.
#include "TestSupport.h"

#include "presets/PresetJson.h"

namespace tagmoor {
namespace {

QDateTime dateAt(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms), Qt::UTC);
}

ActualPreset presetOfEveryKind() {
    CGImageProperties r = makeEmptyRecord(std::nullopt);
    r.tiffProperties->artist = QStringLiteral("Ann \"Ödön\"\n");
    r.tiffProperties->orientation = qint64(6);
    r.tiffProperties->tileWidth = qint64(-9007199254740993LL); // beyond a double's digits
    r.exifProperties->fNumber = 2.8f;
    r.exifProperties->exposureTime = 1.0 / 3.0;
    r.exifProperties->standardOutputSensitivity = quint64(18446744073709551615ULL);
    r.exifProperties->dateTimeOriginal =
        QDateTime(QDate(2021, 5, 6), QTime(10, 22, 33, 250), Qt::OffsetFromUTC, 7200);
    r.exifProperties->makerNote = QByteArray("\x00\x01\xff", 3);
    r.exifProperties->subjectArea = QVariantList{qint64(1), 2.5, QStringLiteral("x"),
                                                 QVariantList{true, 7, uint(8)}, QDate(2001, 2, 3)};
    r.gpsProperties->altitudeRef = quint8(1);
    r.gpsProperties->latitude = -33.865f;
    r.gpsProperties->longitude = std::numeric_limits<float>::infinity();
    r.bimProperties->layerNames = QVariantMap{{"a", QStringList{"one", "two"}}, {"b", 3.0f}};
    r.rawProperties.emplace(); // a group present with nothing in it
    r.pixelWidth = 4000.0;
    r.xmpDataProperties->serialNumber = QStringLiteral("SN-1");
    r.xmpDataProperties->createDate = dateAt(2020, 1, 2, 3, 4, 5);
    r.createDate = dateAt(2019, 7, 8, 9, 10, 11, 999);
    r.modifyDate = QStringLiteral("not a date, still kept");

    OriginalFinalDate rules;
    rules.dateTimeOriginal = dateAt(2021, 5, 6, 10, 22, 33);
    rules.configurationTimeOriginal = SelectDate{rules.dateTimeOriginal};
    rules.dateTimeOriginalAlive = true;
    rules.configurationModifyDateXMP = IDOT{-23, 59, -59, true, false, true};
    rules.modifyDateXMPAlive = true;
    return {7, QStringLiteral("Studio"), r, rules};
}

TEST(PresetJson, EveryValueKindRoundTripsInAReadableFile) {
    const ActualPreset preset = presetOfEveryKind();
    QString error;
    const QByteArray json = encodePresetJson(preset, &error);
    ASSERT_FALSE(json.isEmpty()) << error.toStdString();
    const auto back = decodePresetJson(json, &error);
    ASSERT_TRUE(back.has_value()) << error.toStdString();
    EXPECT_EQ(*back, preset);
    EXPECT_EQ(back->properties->exifProperties->fNumber.kind(), PropertyValue::Kind::Float32);
    EXPECT_EQ(back->properties->gpsProperties->altitudeRef.kind(), PropertyValue::Kind::UInt8);

    // Texts stand as they are, numbers by their shortest text, rules as an object.
    const QString text = QString::fromUtf8(json);
    EXPECT_TRUE(text.contains(R"("kCGImagePropertyTIFFArtist": "Ann \"Ödön\"\n")")) << json.data();
    EXPECT_TRUE(text.contains(R"("float32": 2.8)"));
    EXPECT_TRUE(text.contains(R"("int64": "-9007199254740993")"));
    EXPECT_TRUE(text.contains(R"("isSelectDate": true)"));
    EXPECT_EQ(encodePresetJson(*back), json) << "the file is stable";
}

TEST(PresetJson, WhatIsNotAPresetFileIsRefusedWithItsReason) {
    const QByteArray good = encodePresetJson(presetOfEveryKind());
    QByteArray otherKind = good;
    otherKind.replace(R"("float32": 2.8)", R"("float128": 2.8)");
    QByteArray outOfRange = good;
    outOfRange.replace(R"("uint8": 1)", R"("uint8": 300)");
    QByteArray laterVersion = good;
    laterVersion.replace(R"("tagmoorPreset": 1)", R"("tagmoorPreset": 2)");
    QByteArray nestedOutOfRange = good; // a list's element: its own reason, not the list's
    nestedOutOfRange.replace(R"("uint32": 8)", R"("uint32": -8)");
    QByteArray listOfNoArray = good;
    listOfNoArray.replace(R"("bool": true)", R"("list": true)");
    QByteArray badRules = good;
    badRules.replace(R"("isSelectDate": true)", R"("isSelectDate": "yes")");
    const QList<std::pair<QByteArray, QString>> cases = {
        {"", "not JSON"},
        {"\x89PNG\r\n", "not JSON"},
        {R"({"path": "/p.jpg", "tiffProperties.artist": {"value": "x"}})", "not a preset file"},
        {R"([1, 2])", "not a preset file"},
        {R"({"tagmoorPreset": 1, "preset": {"index": {"int64": 1}}})", "has no name"},
        {otherKind, "unknown value kind \"float128\""},
        {outOfRange, "\"uint8\" does not read"},
        {nestedOutOfRange, "a value of kind \"uint32\" does not read as one"},
        {listOfNoArray, "a value of kind \"list\" does not read as one"},
        {laterVersion, "version 2"},
        {badRules, "date rules"},
    };
    for (const auto& [bytes, reason] : cases) {
        QString error;
        EXPECT_FALSE(decodePresetJson(bytes, &error).has_value()) << bytes.left(60).data();
        EXPECT_TRUE(error.contains(reason)) << error.toStdString() << " / " << reason.toStdString();
    }
}

} // namespace
} // namespace tagmoor
