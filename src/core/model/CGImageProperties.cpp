#include "model/CGImageProperties.h"

namespace tagmoor {

std::span<const FieldInfo<CGImageProperties>> CGImageProperties::topLevelFields() {
    using Self = CGImageProperties;
    static const FieldInfo<Self> table[] = {TAGMOOR_TOP_LEVEL_FIELDS(TAGMOOR_FIELD_INFO)
                                                TAGMOOR_TOP_LEVEL_TAIL_FIELDS(TAGMOOR_FIELD_INFO)};
    return table;
}

QString CGImageProperties::path() const {
    return url && url->isLocalFile() ? url->toLocalFile() : QString();
}

CGImageProperties makeEmptyRecord(const std::optional<QUrl>& url) {
    CGImageProperties r;
    r.url = url;
    r.tiffProperties.emplace();
    r.gifProperties.emplace();
    r.jfifProperties.emplace();
    r.exifProperties.emplace();
    r.pngProperties.emplace();
    r.iptcProperties.emplace();
    r.gpsProperties.emplace();
    r.ciffProperties.emplace();
    r.makerCanonProperties.emplace();
    r.makerNikonProperties.emplace();
    r.bimProperties.emplace();
    r.exifAuxProperties.emplace();
    r.openEXRProperties.emplace();
    r.colorModelProperties.emplace();
    r.xmpDataProperties.emplace();
    r.isSelected = true;
    r.isTempDataAvailable = false;
    return r;
}

} // namespace tagmoor
