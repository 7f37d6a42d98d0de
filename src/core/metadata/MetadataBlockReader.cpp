#include "metadata/MetadataBlockReader.h"

#include "extras/CopiesInStep.h"
#include "extras/CopyGroups.h"
#include "foundation/ValueForm.h"
#include "metadata/Exiv2Guard.h"
#include "metadata/ExtraTags.h"
#include "metadata/ImageKind.h"
#include "metadata/JpegHead.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>
#include <QLoggingCategory>
#include <QStringList>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <string_view>
#include <typeinfo>
#include <unordered_map>
#include <utility>
#include <vector>

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

// Three rationals (degrees, minutes, seconds) to decimal degrees, by the classic rule: a
// minutes value of exactly -1 adds nothing, and the seconds' denominator is not applied,
// since that writer always stored seconds over 1.
double describedGpsDegrees(const Exiv2::Metadatum& datum) {
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

// The same as the coordinate stands in the file: each of degrees, minutes and seconds over its
// own denominator (cameras store seconds as 78/5 or 2534/100). A position without a degrees
// value, or with one over zero, is no position; a part over zero that follows counts nothing
// (0/0 is how some writers leave an unknown part).
std::optional<double> gpsDegrees(const Exiv2::Metadatum& datum) {
    const long count = datum.count();
    if (count < 1)
        return std::nullopt;
    const Exiv2::Rational d = datum.toRational(0);
    if (d.second == 0)
        return std::nullopt;
    double result = double(d.first) / double(d.second);
    const double scale[] = {60.0, 3600.0};
    for (long i = 1; i < std::min(count, 3L); ++i) {
        const Exiv2::Rational part = datum.toRational(i);
        if (part.second != 0)
            result += double(part.first) / double(part.second) / scale[i - 1];
    }
    return std::isfinite(result) ? std::optional<double>(result) : std::nullopt;
}

bool isGpsCoordinate(std::string_view key) {
    return key == "Exif.GPSInfo.GPSLatitude" || key == "Exif.GPSInfo.GPSLongitude";
}

// The text Exiv2's toString() would give, without its string stream for the common kinds:
// a whole photo has dozens of texts.
QString textOf(const Exiv2::Value& value) {
    // Exiv2's value classes have no subclasses: each is told by its exact type, which costs
    // a comparison where a dynamic_cast walks the class tree.
    const std::type_info& type = typeid(value);
    if (type == typeid(Exiv2::AsciiValue)) {
        // An ASCII value ends at its first NUL.
        const std::string& v = static_cast<const Exiv2::AsciiValue&>(value).value_;
        return QString::fromUtf8(v.data(), qsizetype(std::min(v.find('\0'), v.size())));
    }
    if (type == typeid(Exiv2::StringValue))
        return QString::fromStdString(static_cast<const Exiv2::StringValue&>(value).value_);
    if (type == typeid(Exiv2::XmpTextValue)) {
        const auto& xmp = static_cast<const Exiv2::XmpTextValue&>(value);
        if (xmp.xmpArrayType() == Exiv2::XmpValue::xaNone &&
            xmp.xmpStruct() == Exiv2::XmpValue::xsNone)
            return QString::fromStdString(xmp.value_);
    }
    return QString::fromStdString(value.toString());
}

// What one datum reads as: a text, a number, or nothing for the types that are skipped.
// Numbers keep only their first component. In the described form they become 32-bit floats
// (GPS latitude and longitude: double degrees) and whole-number types go through toLong, so a
// TIFF float of 2.5 reads as 2 and a byte of 200 as -56. In the standard form each number
// is what the file holds: a byte of 200 is 200, a TIFF float of 2.5 is 2.5.
struct DatumValue {
    enum class Kind { Skipped, Text, Float, Double, Whole } kind = Kind::Skipped;
    QString text;
    double number = 0; // a Float holds a float's value exactly, a Whole an integer's
};

DatumValue readStandardNumber(const Exiv2::Metadatum& datum, std::string_view key, bool gpsRule) {
    using Kind = DatumValue::Kind;
    const Exiv2::Value& value = datum.value();
    switch (datum.typeId()) {
    case Exiv2::unsignedByte:
    case Exiv2::signedByte:
    case Exiv2::unsignedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedShort:
    case Exiv2::signedLong:
        return {Kind::Whole, {}, double(value.toLong(0))};
    case Exiv2::tiffFloat:
        return {Kind::Float, {}, double(value.toFloat(0))};
    case Exiv2::tiffDouble:
        if (const auto* d = dynamic_cast<const Exiv2::DoubleValue*>(&value);
            d && !d->value_.empty())
            return {Kind::Double, {}, d->value_.front()};
        return {Kind::Float, {}, double(value.toFloat(0))};
    case Exiv2::unsignedRational:
    case Exiv2::signedRational:
        if (gpsRule && isGpsCoordinate(key)) {
            if (const std::optional<double> degrees = gpsDegrees(datum))
                return {Kind::Double, {}, *degrees};
            return {};
        }
        if (value.toRational(0).second == 0)
            return {};
        return {Kind::Float, {}, double(value.toFloat(0))};
    default:
        return {};
    }
}

DatumValue readDatum(const Exiv2::Metadatum& datum, std::string_view key, bool gpsRule) {
    using Kind = DatumValue::Kind;
    const Exiv2::Value& value = datum.value();
    const bool standard = isStandardForm();
    switch (datum.typeId()) {
    case Exiv2::unsignedByte:
    case Exiv2::signedByte:
        if (standard)
            return readStandardNumber(datum, key, gpsRule);
        return {Kind::Float, {}, float(static_cast<std::int8_t>(value.toLong(0)))};
    case Exiv2::unsignedShort:
    case Exiv2::unsignedLong:
    case Exiv2::signedShort:
    case Exiv2::signedLong:
    case Exiv2::tiffFloat:
        if (standard)
            return readStandardNumber(datum, key, gpsRule);
        return {Kind::Float, {}, float(value.toLong(0))};
    case Exiv2::tiffDouble:
        if (standard)
            return readStandardNumber(datum, key, gpsRule);
        return {Kind::Float, {}, float(double(value.toLong(0)))};
    case Exiv2::unsignedRational:
    case Exiv2::signedRational:
        if (standard)
            return readStandardNumber(datum, key, gpsRule);
        if (gpsRule && isGpsCoordinate(key))
            return {Kind::Double, {}, describedGpsDegrees(datum)};
        return {Kind::Float, {}, value.toFloat(0)};
    case Exiv2::asciiString:
    case Exiv2::string:
    case Exiv2::undefined:
    case Exiv2::comment:
    case Exiv2::xmpText:
        return {Kind::Text, textOf(value), 0};
    default:
        return {};
    }
}

// The dictionary value of one datum: a QString, a float or a double; an invalid variant for
// the types that are skipped.
QVariant valueOf(const Exiv2::Metadatum& datum, std::string_view key, bool gpsRule) {
    DatumValue v = readDatum(datum, key, gpsRule);
    switch (v.kind) {
    case DatumValue::Kind::Text:
        return std::move(v.text);
    case DatumValue::Kind::Float:
        return QVariant::fromValue(float(v.number));
    case DatumValue::Kind::Double:
        return QVariant::fromValue(v.number);
    case DatumValue::Kind::Whole:
        return QVariant::fromValue(qint64(v.number));
    case DatumValue::Kind::Skipped:
        break;
    }
    return {};
}

bool isWhole(double d) {
    return std::isfinite(d) && std::trunc(d) == d;
}

// A datum's value cast to its row's kind; absent when the kind does not fit (a number for a
// text row, a text for a number row) or a number the kind can't hold exactly.
PropertyValue castTo(ReadKind kind, DatumValue&& v) {
    if (kind == ReadKind::Text || kind == ReadKind::DateText) {
        if (v.kind == DatumValue::Kind::Text)
            return PropertyValue(v.text);
        return {};
    }
    if (v.kind == DatumValue::Kind::Skipped || v.kind == DatumValue::Kind::Text)
        return {};
    const double d = v.number;
    switch (kind) {
    case ReadKind::Int64:
        // 2^63 is the first double past the range.
        if (isWhole(d) && d >= -9223372036854775808.0 && d < 9223372036854775808.0)
            return qint64(d);
        return {};
    case ReadKind::UInt64:
        if (isWhole(d) && d >= 0 && d < 18446744073709551616.0)
            return quint64(d);
        return {};
    case ReadKind::UInt8:
        if (isWhole(d) && d >= 0 && d <= 255)
            return quint8(d);
        return {};
    case ReadKind::Float32:
        if (std::isnan(d) || double(float(d)) == d)
            return float(d);
        // A double the file holds (a TIFF double) shows as the nearest float.
        if (v.kind == DatumValue::Kind::Double && isStandardForm() && std::isfinite(d))
            return float(d);
        return {};
    case ReadKind::Float64:
        return d;
    case ReadKind::NotRead:
    case ReadKind::Text:
    case ReadKind::DateText:
        break;
    }
    return {};
}

// The "key: ... value: ..." line of an Exif datum, in the debug log; other blocks have none.
void logIfExif(const Exiv2::Exifdatum& datum) {
    if (!lcRead().isDebugEnabled())
        return;
    qCDebug(lcRead).noquote().nospace()
        << "key: " << QString::fromStdString(datum.key()) << " value: "
        << (datum.size() > 0 ? QString::fromStdString(datum.value().toString()) : QString()) << ' ';
}
void logIfExif(const Exiv2::Metadatum&) {}

// Walks one block, handing each datum with a kept value to the sink. The Exif block also
// writes its "key: ... value: ..." lines to the debug log.
template <typename Data>
void readBlock(const Data& data, KeyBlock block, const MetadataBlockReader::Sink& sink) {
    const bool isExif = block == KeyBlock::Exif;
    for (const auto& datum : data) {
        const std::string key = datum.key();
        logIfExif(datum);
        if (datum.size() == 0 || key.empty())
            continue;
        QVariant v = valueOf(datum, key, isExif);
        if (v.isValid())
            sink(block, key, std::move(v));
    }
}

// The read rows of the key table by Exiv2's numbers: IFD and tag for Exif, record and
// dataset for IPTC; XMP by key text.
struct KeyListIndex {
    std::unordered_map<quint32, const KeyRow*> exif;
    std::unordered_map<quint32, const KeyRow*> iptc;
    // The few XMP rows by their key's parts, looked through in turn: a datum gives its parts
    // as they are, where its whole key text is built anew on each call.
    struct XmpRow {
        std::string prefix;
        std::string property;
        const KeyRow* row;
    };
    std::vector<XmpRow> xmp;

    static quint32 pack(int group, int tag) { return quint32(group) << 16 | quint32(tag); }

    static const KeyListIndex& get() {
        static const KeyListIndex index = [] {
            KeyListIndex built;
            for (const KeyRow& row : allKeyRows()) {
                if (row.read == ReadKind::NotRead)
                    continue;
                switch (row.block) {
                case KeyBlock::Exif: {
                    const Exiv2::ExifKey key(row.key);
                    built.exif.emplace(pack(key.ifdId(), key.tag()), &row);
                    break;
                }
                case KeyBlock::Iptc: {
                    const Exiv2::IptcKey key(row.key);
                    built.iptc.emplace(pack(key.record(), key.tag()), &row);
                    break;
                }
                case KeyBlock::Xmp: {
                    const Exiv2::XmpKey key(row.key);
                    built.xmp.push_back({key.groupName(), key.tagName(), &row});
                    break;
                }
                }
            }
            return built;
        }();
        return index;
    }

    const KeyRow* find(const Exiv2::Exifdatum& d) const {
        return find(exif, pack(d.ifdId(), d.tag()));
    }
    const KeyRow* find(const Exiv2::Iptcdatum& d) const {
        return find(iptc, pack(d.record(), d.tag()));
    }
    const KeyRow* find(const Exiv2::Xmpdatum& d) const {
        const std::string prefix = d.groupName();
        const std::string property = d.tagName();
        for (const XmpRow& x : xmp)
            if (x.property == property && x.prefix == prefix)
                return x.row;
        return nullptr;
    }

private:
    static const KeyRow* find(const std::unordered_map<quint32, const KeyRow*>& map, quint32 id) {
        const auto it = map.find(id);
        return it == map.end() ? nullptr : it->second;
    }
};

// Whether a group of copies holds a date row: only then does a read of the dates alone look
// for the copies a reader prefers.
bool copiesHoldDates() {
    static const bool holds = [] {
        for (const CopyGroup& group : copyGroups())
            for (const CopyKey& copy : group.copies())
                if (const KeyRow* row = findKeyRow(QLatin1String(copy.key));
                    row && row->read == ReadKind::DateText)
                    return true;
        return false;
    }();
    return holds;
}

// A datum of a skipped type leaves its row as it was; any other sets it, absent or not.
template <typename Data> void readRows(const Data& data, MetadataFieldSet& set, bool datesOnly) {
    const KeyListIndex& index = KeyListIndex::get();
    for (const auto& datum : data) {
        logIfExif(datum);
        const KeyRow* row = index.find(datum);
        if (!row || datum.size() == 0 || (datesOnly && row->read != ReadKind::DateText))
            continue;
        DatumValue v = readDatum(datum, row->key, row->block == KeyBlock::Exif);
        if (v.kind != DatumValue::Kind::Skipped)
            set.at(*row) = castTo(row->read, std::move(v));
    }
}

// Opens and parses the file, or gives nothing for content that is not a photo we accept:
// such a file never reaches Exiv2's parsers. A JPEG is parsed from its head with the XMP
// packet set aside, so that the XMP lock is held only while the packet is decoded.
Exiv2::Image::AutoPtr openImage(const QString& path, const std::string& native, ImageKind kind,
                                const QByteArray& start = {}) {
    if (!exiv2Reads(kind))
        return Exiv2::Image::AutoPtr();
    if (kind == ImageKind::Jpeg) {
        if (std::optional<JpegHead> head = readJpegHead(path, start)) {
            // The image keeps its own copy of the head: it outlives `head`.
            Exiv2::BasicIo::AutoPtr io(new Exiv2::MemIo);
            io->write(reinterpret_cast<const Exiv2::byte*>(head->segments.constData()),
                      long(head->segments.size()));
            Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(io);
            if (image.get() && image->imageType() == Exiv2::ImageType::jpeg) {
                // The packet is decoded before the rest is parsed when the XMP lock is free,
                // else after: a reader that would wait for another to finish its packet parses
                // its Exif meanwhile, and finds the lock free by then. The two parts do not
                // touch each other; readMetadata() empties the image's XMP, so the packet goes
                // into a block of its own that the image takes at the end. The toolkit parses
                // the packet without its padding, which holds nothing and costs it a sixth of
                // the decode, under the lock.
                const std::string packet = xmpPacketWithoutPadding(head->xmpPacket);
                Exiv2::XmpData xmp;
                const auto decode = [&] {
                    if (decodeXmpPacket(xmp, packet) != 0)
                        qCDebug(lcRead) << "Failed to decode XMP metadata of" << path;
                };
                bool decoded = packet.empty();
                if (!decoded) {
                    if (const auto xmpLock = tryLockXmpToolkit(); xmpLock.ownsLock()) {
                        decode();
                        decoded = true;
                    }
                }
                image->readMetadata();
                if (!decoded) {
                    const auto xmpLock = lockXmpToolkit();
                    decode();
                }
                if (!packet.empty())
                    std::swap(image->xmpData(), xmp);
                return image;
            }
        }
    }
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(native, true);
    Q_ASSERT_X(image.get() != 0, "MetadataBlockReader", "image.get() != 0");
    if (image.get()) {
        const auto xmpLock = lockXmpToolkit();
        image->readMetadata();
        settleXmpPrefixesAfterRead(*image);
    }
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
template <typename Data> QString jsonShaped(const Data& data) {
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

namespace {

// Opens and parses the file, hands the image to `body`, and keeps every exception inside:
// a file Exiv2 cannot read gives Failed and a debug line, never an error to the caller.
template <typename Body>
MetadataBlockReader::Outcome
withParsedImage(const QString& path, const MetadataBlockReader::Options& options, Body&& body) {
    using Outcome = MetadataBlockReader::Outcome;
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return Outcome::UnencodablePath;
    Outcome outcome = Outcome::Failed;
    guardExiv2(
        [&] {
            Exiv2::Image::AutoPtr image =
                openImage(path, *native, options.kind ? *options.kind : sniffImageKindOfFile(path),
                          options.start);
            if (!image.get())
                return;
            if (options.headerSize && image->pixelWidth() > 0 && image->pixelHeight() > 0)
                *options.headerSize = QSize(image->pixelWidth(), image->pixelHeight());
            body(*image);
            outcome = Outcome::Read;
            if (options.alsoRead)
                options.alsoRead(*image);
        },
        [&](Exiv2Failure, const QString& what) {
            qCDebug(lcRead) << "no metadata from" << path << ":" << what;
        });
    return outcome;
}

} // namespace

MetadataBlockReader::Outcome MetadataBlockReader::readKeyListRows(const QString& path,
                                                                  MetadataFieldSet& set,
                                                                  const Options& options) {
    return withParsedImage(path, options,
                           [&](Exiv2::Image& image) { readKeyListRows(image, set, false); });
}

void MetadataBlockReader::readKeyListRows(const Exiv2::Image& image, MetadataFieldSet& set,
                                          bool datesOnly) {
    readRows(image.exifData(), set, datesOnly);
    readRows(image.iptcData(), set, datesOnly);
    readRows(image.xmpData(), set, datesOnly);
    // A photo's keywords are a list: every IPTC dataset and every item of the XMP subject,
    // where the described rule keeps the last dataset alone.
    if (isStandardForm()) {
        if (copiesInStep() && (!datesOnly || copiesHoldDates()))
            preferCopies(image, set);
        if (datesOnly)
            return;
        const QStringList keywords = keywordList(image);
        PropertyValue& row = set.iptc[iptcrow::Keywords];
        if (keywords.isEmpty())
            row.clear();
        else
            row = PropertyValue(QVariant(keywords).toList());
    }
}

QStringList MetadataBlockReader::keywordList(const Exiv2::Image& image) {
    QStringList keywords;
    const auto take = [&](const QString& keyword) {
        if (!keyword.isEmpty() && !keywords.contains(keyword))
            keywords << keyword;
    };
    static const Exiv2::IptcKey iptcKey("Iptc.Application2.Keywords");
    for (const Exiv2::Iptcdatum& datum : image.iptcData()) {
        if (datum.record() == iptcKey.record() && datum.tag() == iptcKey.tag() && datum.size() > 0)
            take(textOf(datum.value()));
    }
    for (const Exiv2::Xmpdatum& datum : image.xmpData()) {
        // "Xmp.dc.subject", told by its parts: the whole key text is built anew on each call.
        if (datum.groupName() != "dc" || datum.tagName() != "subject")
            continue;
        for (long i = 0; i < datum.count(); ++i)
            take(QString::fromStdString(datum.toString(i)));
    }
    return keywords;
}

MetadataBlockReader::Outcome MetadataBlockReader::read(const QString& path, const Sink& sink) {
    return read(path, sink, Options{});
}

MetadataBlockReader::Outcome MetadataBlockReader::read(const QString& path, const Sink& sink,
                                                       const Options& options) {
    return withParsedImage(path, options, [&](Exiv2::Image& image) {
        readBlock(image.exifData(), KeyBlock::Exif, sink);
        readBlock(image.iptcData(), KeyBlock::Iptc, sink);
        readBlock(image.xmpData(), KeyBlock::Xmp, sink);
    });
}

MetadataBlockReader::Outcome
MetadataBlockReader::readParsed(const QString& path,
                                const std::function<void(const Exiv2::Image&)>& visit) {
    return withParsedImage(path, Options{}, [&](Exiv2::Image& image) { visit(image); });
}

QVariantMap MetadataBlockReader::readJsonShaped(const QString& path) {
    QVariantMap result;
    const std::optional<std::string> native = nativePath(path);
    if (!native)
        return result;
    guardExiv2(
        [&] {
            Exiv2::Image::AutoPtr image = openImage(path, *native, sniffImageKindOfFile(path));
            if (!image.get())
                return;
            result.insert(QStringLiteral("exif"), jsonShaped(image->exifData()));
            result.insert(QStringLiteral("iptc"), jsonShaped(image->iptcData()));
            result.insert(QStringLiteral("xmp"), jsonShaped(image->xmpData()));
        },
        [&](Exiv2Failure, const QString& what) {
            qCDebug(lcRead) << "partial JSON of" << path << ":" << what;
        });
    return result;
}

} // namespace tagmoor
