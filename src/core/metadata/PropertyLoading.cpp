#include "metadata/PropertyLoading.h"

#include "metadata/FieldSetReading.h"
#include "metadata/ImageProbe.h"
#include "metadata/JpegHead.h"
#include "metadata/XmpSidecar.h"

#include <QVarLengthArray>

#include <exiv2/exiv2.hpp>

#include <utility>

namespace tagmoor {

namespace {

// The readability test and the pixel size. A JPEG's frame header is one that Exiv2 has just
// walked past to read the tags, so its size is taken from there; QImageReader reads it
// again only when Exiv2 found none. Every other kind goes through the probe.
ImageProbeResult readability(const QString& path, const QByteArray& head, ImageKind kind,
                             const std::optional<QSize>& exiv2HeaderSize) {
    if (kind == ImageKind::Jpeg && exiv2HeaderSize)
        return {kind, true, exiv2HeaderSize};
    return ImageProbe::probe(path, head);
}

// The sidecar whose values a record of the photo at `path` takes: none when sidecars are not read.
std::optional<SidecarRead> sidecarToLay(const QString& path) {
    return sidecarsAreRead() ? readSidecarOf(path) : std::nullopt;
}

// Lays the values of the photo's sidecar, if it has one, over the photo's own, and notes in
// the record which keys they filled.
void mergeSidecar(const std::optional<SidecarRead>& sidecar, MetadataFieldSet& set,
                  CGImageProperties& record) {
    if (!sidecar || !sidecar->bytes)
        return;
    const auto inSidecar = readSidecarFieldSet(*sidecar->bytes);
    if (!inSidecar)
        return;
    record.sidecarPath = sidecar->file.path;
    for (const KeyRow& row : allKeyRows()) {
        const PropertyValue& value = inSidecar->at(row);
        if (value.isAbsent())
            continue;
        set.at(row) = value;
        record.sidecarKeys.append(QString::fromLatin1(row.key));
    }
}

// The record of a file whose key-list values are `set`: the sidecar's values laid over them,
// each value in its field (a date text parsed), and the pixel size.
CGImageProperties recordOfFieldSet(const QUrl& url, const std::optional<SidecarRead>& sidecar,
                                   MetadataFieldSet set, const std::optional<QSize>& pixelSize) {
    CGImageProperties record;
    mergeSidecar(sidecar, set, record);
    record.url = url;
    record.tiffProperties.emplace();
    record.exifProperties.emplace();
    record.iptcProperties.emplace();
    record.gpsProperties.emplace();
    record.xmpDataProperties.emplace();
    // The six dates often repeat one text; each distinct text is parsed once.
    QVarLengthArray<std::pair<QString, std::optional<QDateTime>>, 6> parsed;
    const auto dateOf = [&](const QString& text) {
        for (const auto& [seen, date] : parsed)
            if (seen == text)
                return date;
        parsed.append({text, parseMetadataDate(text)});
        return parsed.back().second;
    };
    for (const KeyRow& row : allKeyRows()) {
        PropertyValue& value = set.at(row);
        if (!row.field || value.isAbsent())
            continue;
        if (row.read == ReadKind::DateText) {
            // A date text of no known form leaves the field absent; the text is not kept.
            if (const auto date = dateOf(*value.text()))
                *row.field(record) = *date;
        } else {
            // The set is this call's own: its values move over without touching their counts.
            *row.field(record) = std::move(value);
        }
    }
    if (pixelSize) {
        record.pixelWidth = double(pixelSize->width());
        record.pixelHeight = double(pixelSize->height());
    }
    record.isSelected = true;
    record.isTempDataAvailable = false;
    return record;
}

// A file's record, `alsoRead` handed the image that it is read from; `sidecar`, when given,
// is handed the sidecar that was laid over it.
std::optional<CGImageProperties>
loadRecord(const QUrl& url, const std::function<void(const Exiv2::Image&)>& alsoRead,
           std::optional<SidecarRead>* sidecar = nullptr);

} // namespace

bool givesRecord(const QString& path) {
    // A JPEG is readable when Exiv2 finds its frame header or, failing that, Qt's reader does;
    // the first alone, found by walking the head as Exiv2 does, is a cheap test, and when it
    // holds the record is sure.
    const QByteArray start = readImageHead(path, kJpegHeadStartSize);
    if (sniffImageKind(start.left(kImageKindHeadSize)) == ImageKind::Jpeg &&
        jpegFrameSize(path, start))
        return true;
    return loadImageProperties(QUrl::fromLocalFile(path)).has_value();
}

std::optional<CGImageProperties> loadImageProperties(const QUrl& url) {
    return loadRecord(url, {});
}

std::optional<RecordAndExtras> loadImagePropertiesAndExtras(const QUrl& url) {
    std::optional<ExtraValues> extras;
    std::optional<SidecarRead> sidecar;
    std::optional<CGImageProperties> record = loadRecord(
        url, [&](const Exiv2::Image& image) { extras = readExtraValues(image); }, &sidecar);
    if (!record)
        return std::nullopt;
    return RecordAndExtras{std::move(*record), withSidecarValues(std::move(extras), sidecar)};
}

namespace {

std::optional<CGImageProperties>
loadRecord(const QUrl& url, const std::function<void(const Exiv2::Image&)>& alsoRead,
           std::optional<SidecarRead>* sidecarOut) {
    if (!url.isLocalFile())
        return std::nullopt;
    const QString path = url.toLocalFile();
    // One read for the kind and, for most JPEGs, the whole head that Exiv2 parses.
    const QByteArray start = readImageHead(path, kJpegHeadStartSize);
    const QByteArray head = start.left(kImageKindHeadSize);
    const ImageKind kind = sniffImageKind(head);
    if (kind == ImageKind::Unknown)
        return std::nullopt;

    std::optional<QSize> exiv2HeaderSize;
    MetadataFieldSet set = readMetadataFieldSet(path, {kind, &exiv2HeaderSize, start, alsoRead});
    const ImageProbeResult probe = readability(path, head, kind, exiv2HeaderSize);
    if (!probe.readable)
        return std::nullopt;

    std::optional<SidecarRead> sidecar = sidecarToLay(path);
    CGImageProperties record = recordOfFieldSet(url, sidecar, std::move(set), probe.pixelSize);
    if (sidecarOut)
        *sidecarOut = std::move(sidecar);
    return record;
}

} // namespace

CGImageProperties datesOfParsedImage(const QUrl& url, const Exiv2::Image& image) {
    std::optional<QSize> size;
    if (image.pixelWidth() > 0 && image.pixelHeight() > 0)
        size = QSize(image.pixelWidth(), image.pixelHeight());
    return recordOfFieldSet(url, sidecarToLay(url.toLocalFile()), readMetadataDates(image), size);
}

} // namespace tagmoor
