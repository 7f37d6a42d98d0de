#include "exchange/CsvColumns.h"

#include <QHash>

#include <array>

namespace tagmoor::CsvColumns {

namespace {

// The tag names, in the order of TAGMOOR_FORM_FIELDS.
constexpr std::array<const char*, kFieldCount> kNames{
    "Artist",
    "ImageDescription",
    "Copyright",
    "Software",
    "UserComment",
    "Make",
    "Model",
    "OwnerName",
    "SerialNumber",
    "DateTimeOriginal",
    "CreateDate",
    "ModifyDate",
    "ISO",
    "FNumber",
    "FocalLength",
    "FocalLengthIn35mmFormat",
    "Flash",
    "Orientation",
    "ExposureMode",
    "ExposureProgram",
    "ExposureTime",
    "MeteringMode",
    "SceneCaptureType",
    "WhiteBalance",
    "Saturation",
    "SensingMethod",
    "Sharpness",
    "SubjectDistanceRange",
    "LensMake",
    "LensModel",
    "LensSerialNumber",
    "GPSLatitude",
    "GPSLatitudeRef",
    "GPSLongitude",
    "GPSLongitudeRef",
    "GPSAltitude",
    "GPSAltitudeRef",
    "By-line",
    "By-lineTitle",
    "CopyrightNotice",
    "Headline",
    "Caption-Abstract",
    "Writer-Editor",
    "ObjectName",
    "Category",
    "SupplementalCategories",
    "Keywords",
    "Sub-location",
    "City",
    "Province-State",
    "Country-PrimaryLocationName",
    "Country-PrimaryLocationCode",
    "OriginalTransmissionReference",
    "SpecialInstructions",
    "Credit",
    "Source",
    "XMP-aux:SerialNumber",
    "XMP-aux:Lens",
    "XMP-xmp:CreateDate",
    "XMP-xmp:ModifyDate",
    "XMP-photoshop:DateCreated",
    "Compression",
    "DocumentName",
    "XResolution",
    "YResolution",
    "HostComputer",
    "PrimaryChromaticities",
    "SpectralSensitivity",
    "SensitivityType",
    "StandardOutputSensitivity",
    "CompressedBitsPerPixel",
    "MaxApertureValue",
    "ColorSpace",
    "LightSource",
    "DigitalZoomRatio",
};

QString tagPart(const QString& name) {
    const qsizetype colon = name.indexOf(QLatin1Char(':'));
    return colon < 0 ? name : name.mid(colon + 1);
}

QString groupPart(const QString& name) {
    const qsizetype colon = name.indexOf(QLatin1Char(':'));
    return colon < 0 ? QString() : name.left(colon);
}

bool isXmp(Field field) {
    return fieldPlace(field).block == KeyBlock::Xmp;
}

// Per tag name (lower case) the fields of that name: one, or an EXIF or IPTC field and the
// XMP field of the same name.
const QHash<QString, QList<Field>>& fieldsByTag() {
    static const QHash<QString, QList<Field>> table = [] {
        QHash<QString, QList<Field>> t;
        for (const Field field : allFields)
            t[tagPart(nameOf(field)).toLower()] << field;
        return t;
    }();
    return table;
}

} // namespace

QString nameOf(Field field) {
    return QString::fromLatin1(kNames[std::size_t(field)]);
}

std::optional<Field> fieldOf(const QString& heading) {
    QString name = heading.trimmed();
    if (name.endsWith(QLatin1Char('#')))
        name.chop(1);
    const auto it = fieldsByTag().constFind(tagPart(name).toLower());
    if (it == fieldsByTag().constEnd())
        return std::nullopt;
    const QList<Field>& fields = *it;
    if (fields.size() == 1)
        return fields.front();
    const bool wantsXmp = groupPart(name).startsWith(QLatin1String("XMP"), Qt::CaseInsensitive);
    for (const Field field : fields) {
        if (isXmp(field) == wantsXmp)
            return field;
    }
    return fields.front();
}

std::span<const Field> fieldsInOrder() {
    return allFields;
}

} // namespace tagmoor::CsvColumns
