#include "metadata/StandardForm.h"

#include "metadata/PropertyWriter.h"
#include "metadata/WrittenProperties.h"
#include "model/ErasedRows.h"
#include "model/KeyTable.h"
#include "model/Keywords.h"

#include <QRegularExpression>

#include <exiv2/exiv2.hpp>

#include <algorithm>

#include <cmath>
#include <string>

namespace tagmoor {

namespace {

// A date with its parts, whichever separators it was written with; fraction and zone are
// kept as written.
const QRegularExpression& datePattern() {
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\s*(\d{4})[-:](\d{2})[-:](\d{2})[ T](\d{2})[:-](\d{2})[:-](\d{2})(\.\d+)?\s*(Z|[+-]\d{2}:?\d{2})?\s*$)"));
    return pattern;
}

std::string textOf(const PropertyValue& value) {
    return writtenText(value).toStdString();
}

// An integer row's value as text, read by the datum into the type it already has.
std::string integerText(const PropertyValue& value) {
    return std::to_string(writtenInteger(value));
}

// Decimal degrees as the three rationals of a GPS coordinate, the seconds to a ten-thousandth
// (about 3 mm), and the hemisphere from the sign: "S" or "W" below zero.
void writeStandardGps(Exiv2::ExifData& exifData, const std::string& key, const std::string& refKey,
                      double value, bool latitude) {
    const qint64 units = qint64(std::llround(std::fabs(value) * 3600.0 * 10000.0));
    const qint64 degrees = units / (3600 * 10000);
    const qint64 minutes = units / (60 * 10000) % 60;
    const qint64 tenThousandths = units % (60 * 10000);
    std::string text = std::to_string(degrees) + "/1 " + std::to_string(minutes) + "/1 ";
    if (tenThousandths % 10000 == 0)
        text += std::to_string(tenThousandths / 10000) + "/1";
    else
        text += std::to_string(tenThousandths) + "/10000";
    const auto existing = exifData.findKey(Exiv2::ExifKey(key));
    if (existing != exifData.end())
        exifData.erase(existing);
    exifData[key] = text;
    const bool negative = value < 0 && units != 0;
    exifData[refKey] = std::string(latitude ? (negative ? "S" : "N") : (negative ? "W" : "E"));
    // Readers expect the version of the GPS block beside a position.
    if (exifData.findKey(Exiv2::ExifKey("Exif.GPSInfo.GPSVersionID")) == exifData.end())
        exifData["Exif.GPSInfo.GPSVersionID"].setValue("2 3 0 0");
}

bool isValidOrientation(qint64 value) {
    return value >= 1 && value <= 8;
}

void applyExif(Exiv2::ExifData& exifData, const WrittenProperties& written) {
    for (const KeyRow& row : exifKeyRows()) {
        const PropertyValue& value = written.at(row);
        if (value.isAbsent())
            continue;
        const std::string key = row.key;
        switch (row.write) {
        case WriteKind::NotWritten:
            break;
        case WriteKind::GpsRef: {
            // A reference goes with its coordinate, which writes it from its sign; a reference
            // edited alone turns the photo's own position to that hemisphere.
            const int coordinateRow =
                row.row == exifrow::GPSLatitudeRef ? exifrow::GPSLatitude : exifrow::GPSLongitude;
            if (written.has(exifKeyRows()[coordinateRow]))
                break;
            const std::string ref = writtenText(value).trimmed().toUpper().toStdString();
            if (!ref.empty()) {
                exifData[key].setValue(ref);
            } else if (const auto found = exifData.findKey(Exiv2::ExifKey(key));
                       found != exifData.end()) {
                exifData.erase(found);
            }
            break;
        }
        case WriteKind::Text:
            exifData[key].setValue(row.read == ReadKind::DateText
                                       ? exifDateText(writtenText(value)).toStdString()
                                       : textOf(value));
            break;
        case WriteKind::Integer:
            // An orientation outside 1-8 makes a photo that viewers refuse: never written.
            if (row.row == exifrow::Orientation && !isValidOrientation(writtenInteger(value)))
                break;
            exifData[key].setValue(integerText(value));
            break;
        case WriteKind::Rational:
            exifData[key].setValue(rationalText(writtenDouble(value)));
            break;
        case WriteKind::Gps: {
            const bool latitude = row.row == exifrow::GPSLatitude;
            const int refRow = latitude ? exifrow::GPSLatitudeRef : exifrow::GPSLongitudeRef;
            writeStandardGps(exifData, key, exifKeyRows()[refRow].key, writtenDouble(value),
                             latitude);
            break;
        }
        }
    }
}

// An edited keyword list replaces both lists: one IPTC dataset a keyword, and the same items as
// the XMP subject bag. An empty list removes both.
void writeKeywords(Exiv2::Image& image, Exiv2::IptcData& iptcData, const QStringList& keywords) {
    const Exiv2::IptcKey iptcKey("Iptc.Application2.Keywords");
    for (auto it = iptcData.begin(); it != iptcData.end();) {
        if (it->record() == iptcKey.record() && it->tag() == iptcKey.tag())
            it = iptcData.erase(it);
        else
            ++it;
    }
    for (const QString& keyword : keywords) {
        if (const QString refusal = keywordRefusal(keyword); !refusal.isEmpty())
            throw Exiv2::Error(Exiv2::kerErrorMessage, refusal.toStdString());
        Exiv2::StringValue value(keyword.toStdString());
        iptcData.add(iptcKey, &value);
    }
    Exiv2::XmpData& xmpData = image.xmpData();
    const Exiv2::XmpKey xmpKey("Xmp.dc.subject");
    for (auto it = xmpData.findKey(xmpKey); it != xmpData.end(); it = xmpData.findKey(xmpKey))
        xmpData.erase(it);
    if (!keywords.isEmpty()) {
        Exiv2::XmpArrayValue bag(Exiv2::xmpBag);
        for (const QString& keyword : keywords)
            bag.read(keyword.toStdString());
        xmpData.add(xmpKey, &bag);
    }
}

bool isAscii(const QString& text) {
    for (const QChar c : text) {
        if (c.unicode() > 0x7f)
            return false;
    }
    return true;
}

} // namespace

QString exifDateText(const QString& text) {
    const auto m = datePattern().match(text);
    if (!m.hasMatch())
        return text;
    return QStringLiteral("%1:%2:%3 %4:%5:%6")
        .arg(m.captured(1), m.captured(2), m.captured(3), m.captured(4), m.captured(5),
             m.captured(6));
}

QString xmpDateText(const QString& text) {
    const auto m = datePattern().match(text);
    if (!m.hasMatch())
        return text;
    QString zone = m.captured(8);
    if (zone.size() == 5) // "+0200" becomes "+02:00"
        zone.insert(3, QLatin1Char(':'));
    return QStringLiteral("%1-%2-%3T%4:%5:%6")
               .arg(m.captured(1), m.captured(2), m.captured(3), m.captured(4), m.captured(5),
                    m.captured(6)) +
           m.captured(7) + zone;
}

std::string rationalText(double value) {
    if (value > 0 && value < 1) {
        const double inverse = std::round(1.0 / value);
        if (inverse <= 1e6 && std::fabs(1.0 / inverse - value) <= value * 1e-4)
            return "1/" + std::to_string(qint64(inverse));
    }
    const Exiv2::Rational r = Exiv2::floatToRationalCast(float(value));
    return std::to_string(r.first) + "/" + std::to_string(r.second);
}

namespace {

bool hasMainDirectory(const Exiv2::ExifData& exifData) {
    return std::any_of(exifData.begin(), exifData.end(),
                       [](const Exiv2::Exifdatum& d) { return d.groupName() == "Image"; });
}

// A JPEG's first directory must hold the resolution and the chroma positioning; when an edit
// makes that directory in a photo that had none, they get the usual values, as other programs
// do when they create it.
void addRequiredJpegTags(Exiv2::ExifData& exifData) {
    const auto addIfAbsent = [&](const char* key, const char* value) {
        if (exifData.findKey(Exiv2::ExifKey(key)) == exifData.end())
            exifData[key].setValue(value);
    };
    addIfAbsent("Exif.Image.XResolution", "72/1");
    addIfAbsent("Exif.Image.YResolution", "72/1");
    addIfAbsent("Exif.Image.ResolutionUnit", "2");
    addIfAbsent("Exif.Image.YCbCrPositioning", "1");
}

// Whether the XMP packet that was read may go back as it stands: in a JPEG and a PNG the
// packet is where Exiv2 took the XMP from. Other types' writers do not all write back a packet
// given as it stands (a Photoshop file would lose its XMP), so those take the usual way.
bool packetMayStay(const Exiv2::Image& image) {
    return (image.mimeType() == "image/jpeg" || image.mimeType() == "image/png") &&
           !image.xmpPacket().empty();
}

} // namespace

void applyStandardForm(Exiv2::Image& image, const WrittenProperties& written,
                       const ErasedRows& erased) {
    Exiv2::ExifData& exifData = image.exifData();
    const bool hadMainDirectory = hasMainDirectory(exifData);
    applyExif(exifData, written);
    PropertyWriter::eraseRows(exifData, erased);
    if (!hadMainDirectory && hasMainDirectory(exifData) && image.mimeType() == "image/jpeg")
        addRequiredJpegTags(exifData);
    image.setExifData(exifData);

    Exiv2::IptcData& iptcData = image.iptcData();
    bool keywordsEdited = false;
    for (const KeyRow& row : iptcKeyRows()) {
        const PropertyValue& value = written.at(row);
        if (value.isAbsent())
            continue;
        if (row.row == iptcrow::Keywords) {
            writeKeywords(image, iptcData, keywordsOfValue(value.variant()));
            keywordsEdited = true;
        } else {
            iptcData[row.key].setValue(textOf(value));
        }
    }
    // Erasing the keywords erases the whole list, in both blocks.
    if (erased.contains(iptcKeyRows()[iptcrow::Keywords])) {
        writeKeywords(image, iptcData, {});
        keywordsEdited = true;
    }
    PropertyWriter::eraseRows(iptcData, erased);
    image.setIptcData(iptcData);

    if (written.isEmpty(KeyBlock::Xmp) && erased.isEmpty(KeyBlock::Xmp) && !keywordsEdited &&
        packetMayStay(image)) {
        // No XMP field edited: the packet goes back as it was read, byte for byte, rather
        // than as Exiv2 would serialise it anew (with its own namespace URIs and layout).
        image.writeXmpFromPacket(true);
        return;
    }
    Exiv2::XmpData& xmpData = image.xmpData();
    for (const KeyRow& row : xmpKeyRows()) {
        const PropertyValue& value = written.at(row);
        if (value.isAbsent())
            continue;
        const QString text =
            row.read == ReadKind::DateText ? xmpDateText(writtenText(value)) : writtenText(value);
        xmpData[row.key] = text.toStdString();
    }
    PropertyWriter::eraseRows(xmpData, erased);
    image.setXmpData(xmpData);
}

void declareIptcCharset(Exiv2::Image& image, const WrittenProperties& written) {
    const auto wide = [&](const KeyRow& row) {
        const std::optional<QString> text = written.at(row).text();
        return text && !isAscii(*text);
    };
    if (std::none_of(iptcKeyRows().begin(), iptcKeyRows().end(), wide))
        return;
    declareIptcUtf8(image);
}

void declareIptcUtf8(Exiv2::Image& image) {
    static const std::string utf8 = "\x1b%G";
    Exiv2::IptcData& iptcData = image.iptcData();
    const auto declared = iptcData.findKey(Exiv2::IptcKey("Iptc.Envelope.CharacterSet"));
    if (declared == iptcData.end()) {
        iptcData["Iptc.Envelope.CharacterSet"] = utf8;
        image.setIptcData(iptcData);
        return;
    }
    if (declared->toString() != utf8)
        throw Exiv2::Error(Exiv2::kerErrorMessage,
                           "the photo declares an IPTC character set other than UTF-8, in "
                           "which the new text would be misread");
}

} // namespace tagmoor
