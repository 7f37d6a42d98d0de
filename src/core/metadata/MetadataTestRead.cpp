// The reading half of the bridge: every tag of a file into three plain dictionaries.
#include "metadata/ImageKind.h"
#include "metadata/MetadataTest.h"

#include <QFile>
#include <QLoggingCategory>
#include <QStringList>

#include <exiv2/exiv2.hpp>

#include <cstdint>
#include <exception>

namespace tagmoor {

namespace {

Q_LOGGING_CATEGORY(lcRead, "tagmoor.metadata.read", QtInfoMsg)

const QString kExif = QStringLiteral("exif");
const QString kIptc = QStringLiteral("iptc");
const QString kXmp = QStringLiteral("xmp");

// The path as the file system wants it, or nothing when the text has no such form (an
// unpaired surrogate, say): such a path never names a file, so it is not looked up.
std::optional<std::string> nativePath(const QString& path) {
    const QByteArray native = QFile::encodeName(path);
    if (native.isEmpty() || QFile::decodeName(native) != path)
        return std::nullopt;
    return native.toStdString();
}

// Three rationals (degrees, minutes, seconds) to decimal degrees. Kept as the files of
// this program have always been read: a minutes value of exactly -1 adds nothing, and the
// seconds' denominator is not applied, since our own writer always stores seconds over 1.
double gpsDegrees(const Exiv2::Metadatum& datum) {
    if (datum.count() != 3)
        return 0.0;
    const Exiv2::Rational d = datum.toRational(0);
    if (d.second == 0)
        return 0.0;
    double result = double(d.first) / double(d.second);
    const Exiv2::Rational m = datum.toRational(1);
    if (m.second == 0)
        return result;
    const double minutes = double(m.first) / double(m.second);
    if (minutes != -1.0)
        result += minutes / 60.0;
    const Exiv2::Rational s = datum.toRational(2);
    if (s.first == 0 || s.first == -1 || s.second == 0)
        return result;
    return result + double(s.first) / 3600.0;
}

bool isGpsCoordinate(const std::string& key) {
    return key == "Exif.GPSInfo.GPSLatitude" || key == "Exif.GPSInfo.GPSLongitude";
}

// The dictionary value of one datum, or an invalid variant for the types that are skipped.
// Numbers keep only their first component and become 32-bit floats; whole-number types
// go through toLong, so a TIFF float of 2.5 reads as 2 and a byte of 200 as -56.
QVariant valueOf(const Exiv2::Metadatum& datum, const std::string& key, bool gpsRule) {
    const Exiv2::Value& value = datum.value();
    switch (datum.typeId()) {
    case Exiv2::unsignedByte:
    case Exiv2::signedByte:
        return QVariant::fromValue(float(static_cast<std::int8_t>(value.toLong(0))));
    case Exiv2::unsignedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedShort:
    case Exiv2::signedLong:
    case Exiv2::tiffFloat:
        return QVariant::fromValue(float(value.toLong(0)));
    case Exiv2::tiffDouble:
        return QVariant::fromValue(float(double(value.toLong(0))));
    case Exiv2::unsignedRational:
    case Exiv2::signedRational:
        if (gpsRule && isGpsCoordinate(key))
            return QVariant::fromValue(gpsDegrees(datum));
        return QVariant::fromValue(value.toFloat(0));
    case Exiv2::asciiString:
    case Exiv2::string:
    case Exiv2::undefined:
    case Exiv2::comment:
    case Exiv2::xmpText:
        return QString::fromStdString(value.toString());
    default:
        return {};
    }
}

// One block of metadata (ExifData, IptcData or XmpData) into a dictionary. A key that
// occurs again replaces what the earlier one set.
template <typename Data>
QVariantMap readBlock(const Data& data, bool isExif) {
    QVariantMap block;
    for (const auto& datum : data) {
        const std::string key = datum.key();
        if (isExif && lcRead().isDebugEnabled()) {
            qCDebug(lcRead).noquote().nospace()
                << "key: " << QString::fromStdString(key) << " value: "
                << (datum.size() > 0 ? QString::fromStdString(datum.value().toString())
                                     : QString())
                << ' ';
        }
        if (datum.size() == 0 || key.empty())
            continue;
        QVariant v = valueOf(datum, key, isExif);
        if (v.isValid())
            block.insert(QString::fromStdString(key), std::move(v));
    }
    return block;
}

// Opens and parses the file, or gives nothing for content that is not a photo we accept:
// such a file never reaches Exiv2's parsers.
Exiv2::Image::AutoPtr openImage(const std::string& native, const QString& path) {
    if (!exiv2Reads(sniffImageKindOfFile(path)))
        return Exiv2::Image::AutoPtr();
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(native, true);
    Q_ASSERT_X(image.get() != 0, "readAllPropertiesFrom", "image.get() != 0");
    if (image.get())
        image->readMetadata();
    return image;
}

QString jsonEscaped(const QString& text) {
    QString out;
    out.reserve(text.size() + 2);
    for (const QChar c : text) {
        if (c == u'"' || c == u'\\')
            out += QLatin1Char('\\') + c;
        else if (c.unicode() < 0x20)
            out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out;
}

// "{", one line per datum ("  \"key\": \"value\"", with "," between), "}".
template <typename Data>
QString jsonShaped(const Data& data) {
    QStringList lines;
    for (const auto& datum : data) {
        const QString value =
            datum.size() > 0 ? QString::fromStdString(datum.value().toString()) : QString();
        lines << QStringLiteral("  \"%1\": \"%2\"")
                     .arg(jsonEscaped(QString::fromStdString(datum.key())), jsonEscaped(value));
    }
    return QStringLiteral("{\n") + lines.join(QStringLiteral(",\n")) + QStringLiteral("\n}");
}

} // namespace

std::optional<QVariantMap> MetadataTest::readAllPropertiesFrom(const QString& path) const {
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return QVariantMap{};
    try {
        Exiv2::Image::AutoPtr image = openImage(*native, path);
        if (!image.get())
            return std::nullopt;
        QVariantMap result;
        result.insert(kExif, readBlock(image->exifData(), true));
        result.insert(kIptc, readBlock(image->iptcData(), false));
        result.insert(kXmp, readBlock(image->xmpData(), false));
        return result;
    } catch (const Exiv2::AnyError& e) {
        qCDebug(lcRead) << "no metadata from" << path << ":" << e.what();
    } catch (const std::exception& e) {
        qCDebug(lcRead) << "no metadata from" << path << ":" << e.what();
    } catch (...) {
        qCDebug(lcRead) << "no metadata from" << path << ": unknown exception";
    }
    return std::nullopt;
}

QVariantMap MetadataTest::readJSONStringFrom(const QString& path) const {
    QVariantMap result;
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return result;
    try {
        Exiv2::Image::AutoPtr image = openImage(*native, path);
        if (!image.get())
            return result;
        result.insert(kExif, jsonShaped(image->exifData()));
        result.insert(kIptc, jsonShaped(image->iptcData()));
        result.insert(kXmp, jsonShaped(image->xmpData()));
    } catch (const Exiv2::AnyError& e) {
        qCDebug(lcRead) << "partial JSON of" << path << ":" << e.what();
    } catch (const std::exception& e) {
        qCDebug(lcRead) << "partial JSON of" << path << ":" << e.what();
    } catch (...) {
        qCDebug(lcRead) << "partial JSON of" << path << ": unknown exception";
    }
    return result;
}

} // namespace tagmoor
