// The stored form of presets: what goes in comes back with its kinds, and a block that is not
// ours gives nothing instead of a crash or a huge allocation.
#include "TestSupport.h"

#include "presets/PresetArchive.h"
#include "presets/PresetDictionary.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QPoint>
#include <QRandomGenerator>

namespace tagmoor {
namespace {

QDateTime at(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s, ms), Qt::UTC);
}

// A record with a value of each of the ten kinds, in groups read from files and in groups
// that only presets carry, plus a marker group, the colour model and the XMP values.
CGImageProperties recordOfEveryKind() {
    CGImageProperties r = makeEmptyRecord(std::nullopt);
    r.tiffProperties->artist = QStringLiteral("Ann Ödön");
    r.tiffProperties->orientation = qint64(6);
    r.exifProperties->fNumber = 2.8f;
    r.exifProperties->standardOutputSensitivity = quint64(18446744073709551615ULL);
    r.exifProperties->dateTimeOriginal = at(2021, 5, 6, 10, 22, 33, 250);
    r.exifProperties->makerNote = QByteArray("\x00\x01\xff", 3);
    r.exifProperties->subjectArea =
        QVariantList{qint64(1), 2.5, QStringLiteral("x"), QVariantList{true, 7}};
    r.gpsProperties->altitudeRef = quint8(1);
    r.gpsProperties->latitude = -33.865f;
    r.bimProperties->layerNames = QVariantMap{{"a", QStringList{"one", "two"}}, {"b", 3.0f}};
    r.rawProperties.emplace();
    r.makerAppleProperties.emplace();
    r.pixelWidth = 4000.0;
    r.iccName = QStringLiteral("sRGB");
    *r.colorModelProperties = {};
    r.colorModelProperties->cmyk = QStringLiteral("kCGImagePropertyColorModelCMYK");
    r.xmpDataProperties->serialNumber = QStringLiteral("SN-1");
    r.xmpDataProperties->lens = qint64(50);
    r.xmpDataProperties->createDate = at(2020, 1, 2, 3, 4, 5);
    r.xmpDataProperties->photoshopCreateDate = at(1999, 12, 31, 23, 59, 59);
    r.createDate = at(2019, 7, 8, 9, 10, 11, 999);
    r.modifyDate = QStringLiteral("not a date, still kept");
    return r;
}

OriginalFinalDate someRules() {
    OriginalFinalDate rules;
    rules.dateTimeOriginal = at(2021, 5, 6, 10, 22, 33);
    rules.configurationTimeOriginal = SelectDate{rules.dateTimeOriginal};
    rules.configurationModifyDateXMP = IDOT{-23, 59, -59, true, false, true};
    rules.modifyDateXMPAlive = true;
    return rules;
}

QByteArray streamOf(const QVariantList& list) {
    QByteArray block;
    QDataStream out(&block, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << list;
    return block;
}

TEST(PresetArchive, EveryValueKindAndTheDateRulesComeBackInOrder) {
    const QList<ActualPreset> presets{
        {7, QStringLiteral("Studio"), recordOfEveryKind(), someRules()},
        {0, QStringLiteral("Plain"), makeEmptyRecord(std::nullopt), OriginalFinalDate{}},
        {std::nullopt, QStringLiteral("Zeta"), makeEmptyRecord(std::nullopt), someRules()},
    };
    const auto decoded = decodePresetArchive(encodePresetArchive(presets));
    ASSERT_TRUE(decoded.has_value());
    ASSERT_EQ(decoded->size(), 3);
    for (qsizetype i = 0; i < presets.size(); ++i)
        EXPECT_EQ(decoded->at(i), presets[i]) << "preset " << i;

    // Equality of values includes their kind; spot-check the ones most easily lost.
    const CGImageProperties& r = *decoded->at(0).properties;
    EXPECT_EQ(r.exifProperties->fNumber.kind(), PropertyValue::Kind::Float32);
    EXPECT_EQ(r.gpsProperties->altitudeRef.kind(), PropertyValue::Kind::UInt8);
    EXPECT_EQ(r.exifProperties->dateTimeOriginal.date()->time().msec(), 250);
    EXPECT_FALSE(r.fileSize.isPresent()) << "no file, no size";
    EXPECT_FALSE(r.url.has_value());

    EXPECT_EQ(decodePresetArchive(encodePresetArchive({})), QList<ActualPreset>{});
    EXPECT_FALSE(encodePresetArchive({}).isEmpty()) << "an empty list is stored, not nothing";
}

TEST(PresetArchive, DictionaryKeysAreTheStoredFormat) {
    ActualPreset preset{3, QStringLiteral("P"), recordOfEveryKind(), OriginalFinalDate{}};
    preset.properties->fileSize = qint64(1234);
    const QVariantMap dict = presetToDictionary(preset);
    EXPECT_EQ(dict.keys(), QStringList({"TimeSetting", "createDate", "index", "modifyDate", "name",
                                        "propertite"}));
    EXPECT_EQ(dict["index"].typeId(), QMetaType::LongLong);
    EXPECT_EQ(dict["TimeSetting"].typeId(), QMetaType::QByteArray);

    const QVariantMap p = dict["propertite"].toMap();
    EXPECT_EQ(p["kCGImagePropertyTIFFDictionary"].toMap(),
              (QVariantMap{{"kCGImagePropertyTIFFArtist", QStringLiteral("Ann Ödön")},
                           {"kCGImagePropertyTIFFOrientation", qint64(6)}}));
    EXPECT_EQ(p["kCGImagePropertyRawDictionary"].toMap(), QVariantMap{});
    EXPECT_FALSE(p.contains("kCGImagePropertyMakerFujiDictionary")) << "absent marker group";
    EXPECT_EQ(p["kCGImagePropertyColorModel"], QStringLiteral("kCGImagePropertyColorModelCMYK"));
    EXPECT_EQ(p["kCGImagePropertyFileSize"], qint64(1234));
    EXPECT_EQ(p["CreateDateXMP"], QStringLiteral("2020-01-02 03:04:05"));
    EXPECT_EQ(p["LensXMP"], qint64(50));
    EXPECT_FALSE(p.contains("ModifyDateXMP"));

    // The size is never taken back from the dictionary.
    EXPECT_FALSE(dictionaryToRecord(p, std::nullopt).fileSize.isPresent());
}

TEST(PresetArchive, StoredDictionariesAreReadLeniently) {
    // No record, a mistyped name and index, and date rules that are not JSON: the preset
    // keeps what can be read.
    const ActualPreset odd = presetFromDictionary(
        {{"name", 12}, {"index", "4"}, {"TimeSetting", QByteArray("{broken")}});
    EXPECT_EQ(odd.name, QString());
    EXPECT_FALSE(odd.index.has_value());
    EXPECT_EQ(odd.properties, makeEmptyRecord(std::nullopt));
    EXPECT_EQ(odd.timeSetting, OriginalFinalDate{});

    const ActualPreset kept = presetFromDictionary(
        {{"name", "Kept"},
         {"index", 2},
         {"TimeSetting", "not bytes"},
         {"propertite",
          QVariantMap{{"kCGImagePropertyIPTCDictionary", "not a dictionary"},
                      {"kCGImagePropertyGPSDictionary",
                       QVariantMap{{"kCGImagePropertyGPSLatitude", 1.5f}, {"unknownKey", 1}}},
                      {"CreateDateXMP", "2021:05:06 10:22:33"},
                      {"ModifyDateXMP", "no date"},
                      {"kCGImagePropertyColorModel", "Purple"}}}});
    EXPECT_EQ(kept.name, QStringLiteral("Kept"));
    EXPECT_EQ(kept.index, 2);
    ASSERT_TRUE(kept.properties.has_value());
    EXPECT_FALSE(kept.properties->iptcProperties.has_value());
    EXPECT_EQ(kept.properties->gpsProperties->latitude, PropertyValue(1.5f));
    EXPECT_EQ(kept.properties->xmpDataProperties->createDate,
              PropertyValue(at(2021, 5, 6, 10, 22, 33)));
    EXPECT_FALSE(kept.properties->xmpDataProperties->modifyDate.isPresent());
    EXPECT_EQ(*kept.properties->colorModelProperties, ColorModelProperties{});
}

TEST(PresetArchive, ARecordWithAFileTakesTheFilesSizeAndXmp) {
    if (!test::haveTool(QStringLiteral("exiv2")))
        GTEST_SKIP() << "exiv2 is not installed";
    QTemporaryDir dir;
    const QString photo = test::makeJpeg(dir.filePath(QStringLiteral("p.jpg")));
    const test::ToolResult made = test::runTool(
        QStringLiteral("exiv2"),
        {QStringLiteral("-Mset Xmp.aux.Lens FileLens"),
         QStringLiteral("-Mset Xmp.xmp.CreateDate 2018-03-04T05:06:07+00:00"), photo});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();

    CGImageProperties record = makeEmptyRecord(QUrl::fromLocalFile(photo));
    record.xmpDataProperties->lens = QStringLiteral("DictLens");
    record.xmpDataProperties->serialNumber = QStringLiteral("DictSerial");
    record.fileSize = qint64(1);
    const QVariantMap dict = presetToDictionary({0, QStringLiteral("F"), record, {}});
    EXPECT_EQ(dict["path"], photo);

    const ActualPreset loaded = presetFromDictionary(dict);
    EXPECT_EQ(loaded.properties->url, QUrl::fromLocalFile(photo));
    EXPECT_EQ(loaded.properties->fileSize, PropertyValue(qint64(QFileInfo(photo).size())));
    EXPECT_EQ(loaded.properties->xmpDataProperties->lens, PropertyValue("FileLens"));
    EXPECT_EQ(loaded.properties->xmpDataProperties->createDate,
              PropertyValue(at(2018, 3, 4, 5, 6, 7)));
    EXPECT_EQ(loaded.properties->xmpDataProperties->serialNumber, PropertyValue("DictSerial"))
        << "a tag the file lacks keeps the stored value";

    // The file is gone: the stored values stand, and there is no size.
    QFile::remove(photo);
    const ActualPreset gone = presetFromDictionary(dict);
    EXPECT_EQ(gone.properties->xmpDataProperties->lens, PropertyValue("DictLens"));
    EXPECT_FALSE(gone.properties->fileSize.isPresent());
}

TEST(PresetArchive, BlocksThatAreNotOursGiveNothing) {
    const QByteArray good =
        encodePresetArchive({{1, QStringLiteral("A"), recordOfEveryKind(), someRules()},
                             {2, QStringLiteral("B"), makeEmptyRecord(std::nullopt), {}}});
    ASSERT_TRUE(decodePresetArchive(good));

    // Every cut of a good block, and a good block with a byte too many.
    for (qsizetype cut = 0; cut < good.size(); ++cut)
        ASSERT_FALSE(decodePresetArchive(good.left(cut))) << "cut at " << cut;
    EXPECT_FALSE(decodePresetArchive(good + '\0'));

    // Random bytes, including runs that start like a real list.
    QRandomGenerator random(20240506);
    for (int i = 0; i < 300; ++i) {
        QByteArray junk(int(random.bounded(1, 4096)), Qt::Uninitialized);
        random.fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
        if (i % 2)
            junk.replace(0, 4, QByteArray("\0\0\0\x02", 4));
        EXPECT_FALSE(decodePresetArchive(junk)) << "junk " << i;
    }

    // Well-formed streams of the wrong shape: an element that is no dictionary, a value of a
    // type no preset holds, nesting without end.
    EXPECT_FALSE(decodePresetArchive(streamOf({QVariantMap{}, QStringLiteral("x")})));
    EXPECT_FALSE(decodePresetArchive(streamOf({QVariantMap{{"name", QPoint(1, 2)}}})));
    QVariant deep = QVariantList{};
    for (int i = 0; i < 100; ++i)
        deep = QVariantList{deep};
    EXPECT_FALSE(decodePresetArchive(streamOf({QVariantMap{{"name", deep}}})));

    // Counts that promise more than the block holds are refused before any allocation.
    QElapsedTimer clock;
    clock.start();
    EXPECT_FALSE(decodePresetArchive(QByteArray("\xff\xff\xff\xff", 4)));
    QByteArray hugeInner = streamOf({QVariantMap{{"name", QVariantList{}}}});
    hugeInner.replace(hugeInner.size() - 4, 4, QByteArray("\x7f\xff\xff\xff", 4));
    EXPECT_FALSE(decodePresetArchive(hugeInner));
    EXPECT_LT(clock.elapsed(), 1000);
}

TEST(PresetArchive, ValuesTheReaderWouldRefuseAreLeftOutWhenWriting) {
    CGImageProperties r = makeEmptyRecord(std::nullopt);
    r.tiffProperties->artist = QStringLiteral("kept");
    r.exifProperties->subjectArea = QVariantList{qint64(1), QPoint(3, 4), qint64(2)};
    const auto decoded =
        decodePresetArchive(encodePresetArchive({{0, QStringLiteral("P"), r, {}}}));
    ASSERT_TRUE(decoded.has_value()) << "one odd value must not make the whole block unreadable";
    EXPECT_EQ(decoded->at(0).properties->tiffProperties->artist, PropertyValue("kept"));
    EXPECT_EQ(decoded->at(0).properties->exifProperties->subjectArea,
              PropertyValue(QVariantList{qint64(1), qint64(2)}));
}

} // namespace
} // namespace tagmoor
