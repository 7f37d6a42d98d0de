// The first half of loading: the bridge's dictionaries cast row by row to the key table's
// kinds. A value of the wrong kind, or a number the kind can't hold exactly, stays absent.
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

#include <cmath>
#include <limits>

namespace tagmoor {

namespace {

// The bridge gives numbers as float, and GPS degrees as double.
std::optional<double> numberOf(const QVariant& v) {
    switch (v.metaType().id()) {
    case QMetaType::Float:
        return double(v.value<float>());
    case QMetaType::Double:
        return v.value<double>();
    default:
        return std::nullopt;
    }
}

bool isWhole(double d) { return std::isfinite(d) && std::trunc(d) == d; }

PropertyValue castTo(ReadKind kind, const QVariant& v) {
    if (kind == ReadKind::Text || kind == ReadKind::DateText) {
        if (v.metaType().id() == QMetaType::QString)
            return v.toString();
        return {};
    }
    const std::optional<double> n = numberOf(v);
    if (!n)
        return {};
    const double d = *n;
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

template <std::size_t N>
void readRows(std::span<const KeyRow, N> rows, const QVariantMap& block, MetadataFieldSet& set) {
    for (const KeyRow& row : rows) {
        if (row.read == ReadKind::NotRead)
            continue;
        const auto it = block.constFind(QLatin1String(row.key));
        if (it != block.constEnd())
            set.at(row) = castTo(row.read, *it);
    }
}

// Signs a coordinate by its reference ("N" or "E" positive, anything else negative), or
// drops both halves when one is missing.
void signCoordinate(MetadataFieldSet& set, int valueRow, int refRow, const QString& positive) {
    const std::optional<double> degrees = set.exif[valueRow].float64();
    const std::optional<QString> ref = set.exif[refRow].text();
    if (!degrees || !ref) {
        set.exif[valueRow].clear();
        set.exif[refRow].clear();
        return;
    }
    const double signedDegrees = *ref == positive ? std::fabs(*degrees) : 0.0 - *degrees;
    set.exif[valueRow] = float(signedDegrees);
}

} // namespace

MetadataFieldSet readMetadataFieldSet(const QString& path) {
    MetadataFieldSet set;
    const std::optional<QVariantMap> all = MetadataTest().readAllPropertiesFrom(path);
    if (!all)
        return set;
    const auto exif = all->constFind(QStringLiteral("exif"));
    if (exif != all->constEnd() && exif->metaType().id() == QMetaType::QVariantMap) {
        readRows(exifKeyRows(), exif->toMap(), set);
        signCoordinate(set, exifrow::GPSLatitude, exifrow::GPSLatitudeRef, QStringLiteral("N"));
        signCoordinate(set, exifrow::GPSLongitude, exifrow::GPSLongitudeRef, QStringLiteral("E"));
    }
    const auto iptc = all->constFind(QStringLiteral("iptc"));
    if (iptc != all->constEnd() && iptc->metaType().id() == QMetaType::QVariantMap)
        readRows(iptcKeyRows(), iptc->toMap(), set);
    const auto xmp = all->constFind(QStringLiteral("xmp"));
    if (xmp != all->constEnd() && xmp->metaType().id() == QMetaType::QVariantMap)
        readRows(xmpKeyRows(), xmp->toMap(), set);
    return set;
}

} // namespace tagmoor
