#include "metadata/PropertyLoading.h"

#include "metadata/ImageProbe.h"

namespace tagmoor {

std::optional<CGImageProperties> loadImageProperties(const QUrl& url) {
    if (!url.isLocalFile())
        return std::nullopt;
    const QString path = url.toLocalFile();
    const ImageProbeResult probe = ImageProbe::probe(path);
    if (!probe.readable)
        return std::nullopt;

    const MetadataFieldSet set = readMetadataFieldSet(path);
    CGImageProperties record;
    record.url = url;
    record.tiffProperties.emplace();
    record.exifProperties.emplace();
    record.iptcProperties.emplace();
    record.gpsProperties.emplace();
    record.xmpDataProperties.emplace();
    for (const KeyRow& row : allKeyRows()) {
        const PropertyValue& value = set.at(row);
        if (!row.field || value.isAbsent())
            continue;
        if (row.read == ReadKind::DateText) {
            // A date text of no known form leaves the field absent; the text is not kept.
            if (const auto date = parseMetadataDate(*value.text()))
                *row.field(record) = *date;
        } else {
            *row.field(record) = value;
        }
    }
    if (probe.pixelSize) {
        record.pixelWidth = double(probe.pixelSize->width());
        record.pixelHeight = double(probe.pixelSize->height());
    }
    record.isSelected = true;
    record.isTempDataAvailable = false;
    return record;
}

} // namespace tagmoor
