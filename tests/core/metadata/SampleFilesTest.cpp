// Every sample is read and checked against the exiv2 tool, an independent reader.
#include "TestSupport.h"
#include "foundation/ValueForm.h"
#include "metadata/FieldSetReading.h"
#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"
#include "model/KeyTable.h"

#include <QRegularExpression>
#include <QUrl>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

struct ToolDatum {
    QString type;
    int count = 0;
    QString value;
};

// `exiv2 -PEIXkycv` prints "key type count  value" per datum; a value with line breaks
// continues on the following lines. Later data of the same key replace earlier ones.
QHash<QString, ToolDatum> toolData(const QByteArray& output) {
    static const QRegularExpression line(QStringLiteral("^(\\S+) +(\\S+) +(\\d+)  (.*)$"));
    QHash<QString, ToolDatum> data;
    QString lastKey;
    QList<QByteArray> lines = output.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    for (const QByteArray& raw : lines) {
        const QString text = QString::fromUtf8(raw);
        const auto m = line.match(text);
        if (m.hasMatch() && m.captured(1).count(QLatin1Char('.')) >= 2) {
            lastKey = m.captured(1);
            data[lastKey] = {m.captured(2), m.captured(3).toInt(), m.captured(4)};
        } else if (!lastKey.isEmpty()) {
            data[lastKey].value += QLatin1Char('\n') + text;
        }
    }
    return data;
}

QList<qint64> fractionsOf(const QString& token) {
    const QStringList parts = token.split(QLatin1Char('/'));
    return {parts.value(0).toLongLong(), parts.value(1).toLongLong()};
}

// The reading rule, restated from the tool's text form.
QVariant expectedValue(const QString& key, const ToolDatum& d) {
    const QStringList tokens = d.value.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString first = tokens.value(0);
    if (d.type == QLatin1String("Byte") || d.type == QLatin1String("SByte"))
        return QVariant::fromValue(float(static_cast<std::int8_t>(first.toLongLong())));
    if (d.type == QLatin1String("Short") || d.type == QLatin1String("Long") ||
        d.type == QLatin1String("SShort") || d.type == QLatin1String("SLong"))
        return QVariant::fromValue(float(first.toLongLong()));
    if (d.type == QLatin1String("Float") || d.type == QLatin1String("Double"))
        return QVariant::fromValue(float(std::trunc(first.toDouble())));
    if (d.type == QLatin1String("Rational") || d.type == QLatin1String("SRational")) {
        if (key == QLatin1String("Exif.GPSInfo.GPSLatitude") ||
            key == QLatin1String("Exif.GPSInfo.GPSLongitude")) {
            if (tokens.size() != 3)
                return 0.0;
            const auto deg = fractionsOf(tokens[0]), min = fractionsOf(tokens[1]),
                       sec = fractionsOf(tokens[2]);
            if (deg[1] == 0)
                return 0.0;
            double v = double(deg[0]) / double(deg[1]);
            if (min[1] == 0)
                return v;
            if (double(min[0]) / double(min[1]) != -1.0)
                v += double(min[0]) / double(min[1]) / 60.0;
            if (sec[0] == 0 || sec[0] == -1 || sec[1] == 0)
                return v;
            return v + double(sec[0]) / 3600.0;
        }
        const auto f = fractionsOf(first);
        return QVariant::fromValue(f[1] == 0 ? 0.0f : float(f[0]) / float(f[1]));
    }
    if (d.type == QLatin1String("Ascii") || d.type == QLatin1String("String") ||
        d.type == QLatin1String("Undefined") || d.type == QLatin1String("Comment") ||
        d.type == QLatin1String("XmpText"))
        return d.value;
    return {};
}

TEST(SampleFiles, BridgeAgreesWithTheExiv2ToolOnEveryListedKey) {
    if (!haveTool(QStringLiteral("exiv2")))
        GTEST_SKIP() << "the exiv2 tool is not installed";
    int compared = 0;
    for (const QString& file : sampleFiles(formatsDir())) {
        SCOPED_TRACE(file.toStdString());
        const ToolResult tool =
            runTool(QStringLiteral("exiv2"), {QStringLiteral("-PEIXkycv"), file});
        const auto ours = MetadataTest().readAllPropertiesFrom(file);
        if (tool.out.isEmpty()) {
            EXPECT_FALSE(ours && !ours->value(QStringLiteral("exif")).toMap().isEmpty());
            continue;
        }
        ASSERT_TRUE(ours);
        const QHash<QString, ToolDatum> theirs = toolData(tool.out);
        for (const KeyRow& row : allKeyRows()) {
            const QString key = QString::fromLatin1(row.key);
            const char* block = row.block == KeyBlock::Exif   ? "exif"
                                : row.block == KeyBlock::Iptc ? "iptc"
                                                              : "xmp";
            const QVariantMap map = ours->value(QLatin1String(block)).toMap();
            const auto it = theirs.constFind(key);
            const QVariant expected =
                it == theirs.constEnd() || it->count == 0 ? QVariant() : expectedValue(key, *it);
            ASSERT_EQ(map.contains(key), expected.isValid()) << row.key;
            if (!expected.isValid())
                continue;
            const QVariant got = map.value(key);
            ASSERT_EQ(got.metaType(), expected.metaType()) << row.key;
            if (expected.metaType().id() == QMetaType::Float)
                EXPECT_FLOAT_EQ(got.value<float>(), expected.value<float>()) << row.key;
            else if (expected.metaType().id() == QMetaType::Double)
                EXPECT_DOUBLE_EQ(got.toDouble(), expected.toDouble()) << row.key;
            else
                EXPECT_EQ(got.toString().toStdString(), expected.toString().toStdString())
                    << row.key;
            ++compared;
        }
    }
    EXPECT_GT(compared, 300);
}

// The field set reads by tag numbers; it must find what the full dictionaries hold.
TEST(SampleFiles, FieldSetMatchesTheFullDictionaries) {
    int checked = 0;
    for (const QString& file : sampleFiles(formatsDir())) {
        SCOPED_TRACE(file.toStdString());
        const auto all = MetadataTest().readAllPropertiesFrom(file);
        const MetadataFieldSet set = readMetadataFieldSet(file);
        for (const KeyRow& row : allKeyRows()) {
            if (row.read == ReadKind::NotRead || row.row == exifrow::GPSLatitude ||
                row.row == exifrow::GPSLongitude)
                continue;
            const char* block = row.block == KeyBlock::Exif   ? "exif"
                                : row.block == KeyBlock::Iptc ? "iptc"
                                                              : "xmp";
            const QVariant v =
                all ? all->value(QLatin1String(block)).toMap().value(row.key) : QVariant();
            const PropertyValue& got = set.at(row);
            if (v.metaType().id() == QMetaType::QString) {
                const bool isText = row.read == ReadKind::Text || row.read == ReadKind::DateText;
                // Latitude and longitude references are dropped with a missing coordinate.
                if (isText && row.block == KeyBlock::Exif &&
                    (row.row == exifrow::GPSLatitudeRef || row.row == exifrow::GPSLongitudeRef))
                    continue;
                EXPECT_EQ(got.text(), isText ? std::optional(v.toString()) : std::nullopt)
                    << row.key;
                ++checked;
            } else if (v.isValid()) {
                const double n = v.toDouble();
                const std::optional<double> ours =
                    got.int64()     ? std::optional(double(*got.int64()))
                    : got.float32() ? std::optional(double(*got.float32()))
                    : got.uint8()   ? std::optional(double(*got.uint8()))
                    : got.uint64()  ? std::optional(double(*got.uint64()))
                                    : std::nullopt;
                if (ours) {
                    EXPECT_EQ(*ours, n) << row.key;
                }
                // A whole number in range is never lost by the integer casts.
                if (row.read == ReadKind::Int64 && std::trunc(n) == n) {
                    EXPECT_TRUE(ours) << row.key;
                }
                ++checked;
            } else {
                EXPECT_TRUE(got.isAbsent()) << row.key;
            }
        }
    }
    EXPECT_GT(checked, 300);
}

// An edit that shifts a photo's own dates reads them alone: they are the whole reading's, in
// both forms, and nothing else is read.
TEST(SampleFiles, TheDatesAloneAreTheWholeReadingsDates) {
    int dates = 0;
    for (const ValueForm form : {ValueForm::standard, ValueForm::described}) {
        const ValueFormScope scope(form);
        for (const QString& file : sampleFiles(formatsDir())) {
            SCOPED_TRACE(file.toStdString());
            MetadataFieldSet whole;
            MetadataFieldSet alone;
            MetadataBlockReader::readParsed(file, [&](const Exiv2::Image& image) {
                whole = readMetadataFieldSet(image);
                alone = readMetadataDates(image);
            });
            for (const KeyRow& row : allKeyRows()) {
                if (row.read != ReadKind::DateText) {
                    EXPECT_TRUE(alone.at(row).isAbsent()) << row.key;
                    continue;
                }
                EXPECT_EQ(alone.at(row).text(), whole.at(row).text()) << row.key;
                dates += whole.at(row).isAbsent() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(dates, 20);
}

TEST(SampleFiles, EveryFormatSampleGivesARecordWithItsSize) {
    // Sizes taken from the files' headers; the cut-down camera files keep their sensor size.
    const QHash<QString, QSize> sizes{
        {QStringLiteral("Reagan.jp2"), QSize(200, 130)},
        {QStringLiteral("et-Photoshop.psd"), QSize(8, 8)},
        {QStringLiteral("et-Jpeg2000.j2c"), QSize(8, 8)},
        {QStringLiteral("et-Sigma.x3f"), QSize(2268, 1512)},
        {QStringLiteral("et-PhaseOne.iiq"), QSize(7320, 5484)},
        {QStringLiteral("et-CanonRaw.cr2"), QSize(3456, 2304)},
        {QStringLiteral("imagemagick.png"), QSize(320, 211)},
        {QStringLiteral("mini9.tif"), QSize(9, 9)},
        {QStringLiteral("FurnaceCreekInn.jpg"), QSize(400, 300)},
    };
    for (const QString& file : sampleFiles(formatsDir())) {
        const auto record = loadImageProperties(QUrl::fromLocalFile(file));
        ASSERT_TRUE(record) << file.toStdString();
        const QString name = QFileInfo(file).fileName();
        EXPECT_TRUE(record->pixelWidth.float64().has_value()) << name.toStdString();
        if (sizes.contains(name)) {
            EXPECT_EQ(record->pixelWidth.float64(), double(sizes[name].width()))
                << name.toStdString();
            EXPECT_EQ(record->pixelHeight.float64(), double(sizes[name].height()))
                << name.toStdString();
        }
    }
}

} // namespace
} // namespace tagmoor
