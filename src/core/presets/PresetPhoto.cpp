#include "presets/PresetPhoto.h"

#include "foundation/BoundedFile.h"
#include "metadata/ImageKind.h"
#include "metadata/PropertyLoading.h"

#include <QTemporaryFile>

namespace tagmoor {

namespace {

// An XMP date reaches the preset as a date; anything that is no date text leaves it absent.
PropertyValue asDate(const PropertyValue& v) {
    if (const auto text = v.text()) {
        if (const auto date = parseMetadataDate(*text))
            return *date;
    }
    return {};
}

} // namespace

std::optional<PresetPhotoFacts> readPresetPhoto(const QString& path, QString* why) {
    const auto refuse = [why](const QString& reason) {
        if (why)
            *why = reason;
        return std::nullopt;
    };
    // Its first bytes first: a file that is no photo is not read further.
    if (sniffImageKind(readImageHead(path)) == ImageKind::Unknown)
        return refuse(QStringLiteral("not a photo, or not a file that can be read"));
    const BoundedRead read = readBoundedFile(path, kMaxPresetPhotoBytes);
    if (!read.ok())
        return refuse(read.error);
    if (sniffImageKind(read.bytes.left(kImageKindHeadSize)) == ImageKind::Unknown)
        return refuse(QStringLiteral("not a photo"));
    // The metadata library reads from a path: it gets a private copy of the bytes read, so
    // that nothing done to the photo's path meanwhile can make it wait or read elsewhere.
    QTemporaryFile copy;
    if (!copy.open() || copy.write(read.bytes) != read.bytes.size() || !copy.flush())
        return refuse(QStringLiteral("no room for a copy to read: %1").arg(copy.errorString()));
    const MetadataFieldSet set = readMetadataFieldSet(copy.fileName());
    PresetPhotoFacts facts;
    facts.fileSize = read.bytes.size();
    facts.xmp.photoshopCreateDate = asDate(set.xmp[xmprow::PhotoshopDateCreated]);
    facts.xmp.createDate = asDate(set.xmp[xmprow::CreateDate]);
    facts.xmp.modifyDate = asDate(set.xmp[xmprow::ModifyDate]);
    facts.xmp.lens = set.xmp[xmprow::Lens];
    facts.xmp.serialNumber = set.xmp[xmprow::SerialNumber];
    return facts;
}

void applyPresetPhoto(CGImageProperties& record, const PresetPhotoFacts& facts) {
    record.fileSize = facts.fileSize;
    if (!record.xmpDataProperties)
        record.xmpDataProperties.emplace();
    XMPDataProperties& xmp = *record.xmpDataProperties;
    for (const auto member : {&XMPDataProperties::photoshopCreateDate,
                              &XMPDataProperties::createDate, &XMPDataProperties::modifyDate,
                              &XMPDataProperties::lens, &XMPDataProperties::serialNumber}) {
        if ((facts.xmp.*member).isPresent())
            xmp.*member = facts.xmp.*member;
    }
}

} // namespace tagmoor
