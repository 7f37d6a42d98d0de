#include "metadata/MetadataBlockReader.h"

#include "metadata/ImageKind.h"

#include <QFile>
#include <QLoggingCategory>
#include <QStringList>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cstdint>
#include <exception>

namespace tagmoor {

namespace {


Q_LOGGING_CATEGORY(lcRead, "tagmoor.metadata.read", QtInfoMsg)

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

// The text Exiv2's toString() would give, without its string stream for the common kinds:
// a whole photo has dozens of texts.
QString textOf(const Exiv2::Value& value) {
    if (const auto* ascii = dynamic_cast<const Exiv2::AsciiValue*>(&value)) {
        // An ASCII value ends at its first NUL.
        const std::string& v = ascii->value_;
        return QString::fromUtf8(v.data(), qsizetype(std::min(v.find('\0'), v.size())));
    }
    if (const auto* plain = dynamic_cast<const Exiv2::StringValue*>(&value))
        return QString::fromStdString(plain->value_);
    if (const auto* xmp = dynamic_cast<const Exiv2::XmpTextValue*>(&value);
        xmp && xmp->xmpArrayType() == Exiv2::XmpValue::xaNone &&
        xmp->xmpStruct() == Exiv2::XmpValue::xsNone)
        return QString::fromStdString(xmp->value_);
    return QString::fromStdString(value.toString());
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
        return textOf(value);
    default:
        return {};
    }
}

// Walks one block, handing each wanted datum with a kept value to the sink. The Exif block
// also writes its "key: ... value: ..." lines to the debug log.
template <typename Data>
void readBlock(const Data& data, KeyBlock block, const MetadataBlockReader::Filter& wanted,
               const MetadataBlockReader::Sink& sink) {
    const bool isExif = block == KeyBlock::Exif;
    for (const auto& datum : data) {
        const std::string key = datum.key();
        if (isExif && lcRead().isDebugEnabled()) {
            qCDebug(lcRead).noquote().nospace()
                << "key: " << QString::fromStdString(key) << " value: "
                << (datum.size() > 0 ? QString::fromStdString(datum.value().toString())
                                     : QString())
                << ' ';
        }
        if (datum.size() == 0 || key.empty() || (wanted && !wanted(block, key)))
            continue;
        QVariant v = valueOf(datum, key, isExif);
        if (v.isValid())
            sink(block, key, std::move(v));
    }
}

// Opens and parses the file, or gives nothing for content that is not a photo we accept:
// such a file never reaches Exiv2's parsers.
Exiv2::Image::AutoPtr openImage(const std::string& native, const QString& path) {
    if (!exiv2Reads(sniffImageKindOfFile(path)))
        return Exiv2::Image::AutoPtr();
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(native, true);
    Q_ASSERT_X(image.get() != 0, "MetadataBlockReader", "image.get() != 0");
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

MetadataBlockReader::Outcome MetadataBlockReader::read(const QString& path, const Filter& wanted,
                                                       const Sink& sink) {
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return Outcome::UnencodablePath;
    try {
        Exiv2::Image::AutoPtr image = openImage(*native, path);
        if (!image.get())
            return Outcome::Failed;
        readBlock(image->exifData(), KeyBlock::Exif, wanted, sink);
        readBlock(image->iptcData(), KeyBlock::Iptc, wanted, sink);
        readBlock(image->xmpData(), KeyBlock::Xmp, wanted, sink);
        return Outcome::Read;
    } catch (const Exiv2::AnyError& e) {
        qCDebug(lcRead) << "no metadata from" << path << ":" << e.what();
    } catch (const std::exception& e) {
        qCDebug(lcRead) << "no metadata from" << path << ":" << e.what();
    } catch (...) {
        qCDebug(lcRead) << "no metadata from" << path << ": unknown exception";
    }
    return Outcome::Failed;
}

QVariantMap MetadataBlockReader::readJsonShaped(const QString& path) {
    QVariantMap result;
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return result;
    try {
        Exiv2::Image::AutoPtr image = openImage(*native, path);
        if (!image.get())
            return result;
        result.insert(QStringLiteral("exif"), jsonShaped(image->exifData()));
        result.insert(QStringLiteral("iptc"), jsonShaped(image->iptcData()));
        result.insert(QStringLiteral("xmp"), jsonShaped(image->xmpData()));
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
