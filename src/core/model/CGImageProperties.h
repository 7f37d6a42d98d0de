#pragma once

#include "model/PropertyGroups.h"
#include "model/PropertyValue.h"
#include "model/SharedGroup.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace tagmoor {

// One entry of a group's field table: the member's name, its ImageIO key text (nullptr when
// the field has none) and the member itself.
template <typename Group> struct FieldInfo {
    const char* name;
    const char* imageIOKey;
    PropertyValue Group::*member;
};

#define TAGMOOR_DECLARE_MEMBER(name, key) PropertyValue name;
#define TAGMOOR_FIELD_INFO(name, key) FieldInfo<Self>{#name, key, &Self::name},
#define TAGMOOR_COUNT_FIELD(name, key) +1

// Declares a group struct from its field list: members in declared order, equality, and a
// static table of its fields.
#define TAGMOOR_DECLARE_GROUP(Type, LIST)                                                          \
    struct Type {                                                                                  \
        using Self = Type;                                                                         \
        LIST(TAGMOOR_DECLARE_MEMBER)                                                               \
        static constexpr std::size_t fieldCount = 0 LIST(TAGMOOR_COUNT_FIELD);                     \
        static std::span<const FieldInfo<Type>> fields() {                                         \
            static const std::array<FieldInfo<Type>, fieldCount> table{                            \
                {LIST(TAGMOOR_FIELD_INFO)}};                                                       \
            return table;                                                                          \
        }                                                                                          \
        bool operator==(const Type&) const = default;                                              \
    };

TAGMOOR_DECLARE_GROUP(TiffProperties, TAGMOOR_TIFF_FIELDS)
TAGMOOR_DECLARE_GROUP(EXIFProperties, TAGMOOR_EXIF_FIELDS)
TAGMOOR_DECLARE_GROUP(IPTCProperties, TAGMOOR_IPTC_FIELDS)
TAGMOOR_DECLARE_GROUP(GPSProperties, TAGMOOR_GPS_FIELDS)
TAGMOOR_DECLARE_GROUP(XMPDataProperties, TAGMOOR_XMP_FIELDS)
TAGMOOR_DECLARE_GROUP(ColorModelProperties, TAGMOOR_COLOR_MODEL_FIELDS)
TAGMOOR_DECLARE_GROUP(PNGProperties, TAGMOOR_PNG_FIELDS)
TAGMOOR_DECLARE_GROUP(GIFProperties, TAGMOOR_GIF_FIELDS)
TAGMOOR_DECLARE_GROUP(JFIFProperties, TAGMOOR_JFIF_FIELDS)
TAGMOOR_DECLARE_GROUP(CIFFProperties, TAGMOOR_CIFF_FIELDS)
TAGMOOR_DECLARE_GROUP(MakerCanonProperties, TAGMOOR_MAKER_CANON_FIELDS)
TAGMOOR_DECLARE_GROUP(MakerNikonProperties, TAGMOOR_MAKER_NIKON_FIELDS)
TAGMOOR_DECLARE_GROUP(BIMProperties, TAGMOOR_BIM_FIELDS)
TAGMOOR_DECLARE_GROUP(ExifAuxProperties, TAGMOOR_EXIF_AUX_FIELDS)
TAGMOOR_DECLARE_GROUP(OpenEXRProperties, TAGMOOR_OPEN_EXR_FIELDS)

// Deliberately empty marker groups: the preset format names them, they carry no fields.
#define TAGMOOR_DECLARE_MARKER(Type)                                                               \
    struct Type {                                                                                  \
        bool operator==(const Type&) const = default;                                              \
    };
TAGMOOR_DECLARE_MARKER(RawProperties)
TAGMOOR_DECLARE_MARKER(MakerMinoltaProperties)
TAGMOOR_DECLARE_MARKER(MakerFujiProperties)
TAGMOOR_DECLARE_MARKER(MakerOlympusProperties)
TAGMOOR_DECLARE_MARKER(MakerPentaxProperties)
TAGMOOR_DECLARE_MARKER(DNGProperties)
TAGMOOR_DECLARE_MARKER(MakerAppleProperties)

// The eight texts of a photo that came from a photo library database.
struct PhotoLibraryProperties {
    QString RKMuuid;
    QString RKMimagePath;
    QString RKMFilSize;
    QString RKVuuid;
    QString RKVmodelId;
    QString RKVfilename;
    QString RKAVMId;
    QString OriginalFileName;
    bool operator==(const PhotoLibraryProperties&) const = default;
};

// The record of one photo. A value type: copies share nothing.
struct CGImageProperties {
    std::optional<QUrl> url;
    SharedGroup<PhotoLibraryProperties> photoLibraryProperties;
    SharedGroup<TiffProperties> tiffProperties;
    SharedGroup<GIFProperties> gifProperties;
    SharedGroup<JFIFProperties> jfifProperties;
    SharedGroup<EXIFProperties> exifProperties;
    SharedGroup<PNGProperties> pngProperties;
    SharedGroup<IPTCProperties> iptcProperties;
    SharedGroup<GPSProperties> gpsProperties;
    std::optional<RawProperties> rawProperties;
    SharedGroup<CIFFProperties> ciffProperties;
    SharedGroup<MakerCanonProperties> makerCanonProperties;
    SharedGroup<MakerNikonProperties> makerNikonProperties;
    std::optional<MakerMinoltaProperties> makerMinoltaProperties;
    std::optional<MakerFujiProperties> makerFujiProperties;
    std::optional<MakerOlympusProperties> makerOlympusProperties;
    std::optional<MakerPentaxProperties> makerPentaxProperties;
    SharedGroup<BIMProperties> bimProperties;
    std::optional<DNGProperties> dngProperties;
    SharedGroup<ExifAuxProperties> exifAuxProperties;
    SharedGroup<OpenEXRProperties> openEXRProperties;
    std::optional<MakerAppleProperties> makerAppleProperties;
    TAGMOOR_TOP_LEVEL_FIELDS(TAGMOOR_DECLARE_MEMBER)
    SharedGroup<ColorModelProperties> colorModelProperties;
    TAGMOOR_TOP_LEVEL_TAIL_FIELDS(TAGMOOR_DECLARE_MEMBER)
    SharedGroup<XMPDataProperties> xmpDataProperties;
    bool isSelected = true;
    bool isTempDataAvailable = false;
    // Only the url is known: a run reads the photo's values from the bytes it edits.
    bool valuesUnread = false;
    // The XMP sidecar whose values were laid over the photo's own (empty: none was), and the
    // keys of the key lists whose values came from it; every other value is the photo's.
    QString sidecarPath;
    QStringList sidecarKeys;

    // The top-level values (those of type PropertyValue) in declared order.
    static std::span<const FieldInfo<CGImageProperties>> topLevelFields();

    // The local path of `url`, or an empty text when there is none.
    QString path() const;

    bool operator==(const CGImageProperties&) const = default;
};

// A record whose url is the argument, with every group that has fields present and all
// fields absent; the empty marker groups stay absent. Marked, no temporary data.
CGImageProperties makeEmptyRecord(const std::optional<QUrl>& url);

// Calls fn(groupName, fieldName, imageIOKey, value) for every present value of the record,
// groups in declared order and fields in declared order; top-level values use an empty
// group name. The photo library texts and the booleans are not visited.
template <typename Fn> void forEachPresentValue(const CGImageProperties& record, Fn&& fn);

} // namespace tagmoor

#include "model/CGImagePropertiesVisit.h"
