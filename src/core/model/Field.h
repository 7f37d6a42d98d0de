#pragma once

#include <array>
#include <cstddef>
#include <optional>

namespace tagmoor {

// The three key lists a field's tag belongs to.
enum class KeyBlock { Exif, Iptc, Xmp };

// What kind of control edits a field: a text field, an integer or decimal field, a date field
// filled by the date panel, or a popup over a code table.
enum class FormKind { Text, Integer, Decimal, Date, Popup };

// The 75 fields of the editor form: the one table that a field's identity, control, kind,
// stored position and key row are derived from. Each row gives
//   - the field's name: its enumerator, and its control's name after the control's prefix;
//   - its form position, the number presets store it under (67-76 and 84-88 are unused);
//   - the prefix of its control ("txtField", "txtView" or "popUp") and the control's kind;
//   - the key list and the row in it of the tag the field reads and writes.
// The rows are in ascending position order.
#define TAGMOOR_FORM_FIELDS(X)                                                                     \
    X(Artist, 0, txtField, Text, Exif, 0)                                                          \
    X(ImageDescription, 1, txtField, Text, Exif, 1)                                                \
    X(Copyright, 2, txtField, Text, Exif, 2)                                                       \
    X(Software, 3, txtField, Text, Exif, 3)                                                        \
    X(UserComment, 4, txtView, Text, Exif, 4)                                                      \
    X(Make, 5, txtField, Text, Exif, 5)                                                            \
    X(CameraModalName, 6, txtField, Text, Exif, 6)                                                 \
    X(OwnerName, 7, txtField, Text, Exif, 7)                                                       \
    X(SerialNumber, 8, txtField, Text, Exif, 8)                                                    \
    X(DateTimeOriginal, 9, txtField, Date, Exif, 9)                                                \
    X(CreationDate, 10, txtField, Date, Exif, 53)                                                  \
    X(ModifyDate, 11, txtField, Date, Exif, 54)                                                    \
    X(ISO, 12, txtField, Integer, Exif, 10)                                                        \
    X(FNumber, 13, txtField, Decimal, Exif, 11)                                                    \
    X(FocalLength, 14, txtField, Decimal, Exif, 12)                                                \
    X(FocalLengthIn35mmFormat, 15, txtField, Integer, Exif, 13)                                    \
    X(Flash, 16, popUp, Popup, Exif, 14)                                                           \
    X(Orientation, 17, popUp, Popup, Exif, 15)                                                     \
    X(ExposureMode, 18, popUp, Popup, Exif, 16)                                                    \
    X(ExposureProgram, 19, popUp, Popup, Exif, 17)                                                 \
    X(ExposureTime, 20, txtField, Decimal, Exif, 18)                                               \
    X(MeteringMode, 21, popUp, Popup, Exif, 19)                                                    \
    X(SceneCaptureType, 22, popUp, Popup, Exif, 20)                                                \
    X(WhiteBalance, 23, txtField, Integer, Exif, 21)                                               \
    X(Saturation, 24, txtField, Integer, Exif, 22)                                                 \
    X(SensingMethod, 25, popUp, Popup, Exif, 23)                                                   \
    X(Sharpness, 26, txtField, Integer, Exif, 24)                                                  \
    X(SubjectDistanceRange, 27, popUp, Popup, Exif, 25)                                            \
    X(LensMake, 28, txtField, Text, Exif, 26)                                                      \
    X(LensModel, 29, txtField, Text, Exif, 27)                                                     \
    X(LensSerialNumber, 30, txtField, Text, Exif, 28)                                              \
    X(GPSLatitude, 31, txtField, Decimal, Exif, 29)                                                \
    X(GPSLatitudeRef, 32, popUp, Popup, Exif, 30)                                                  \
    X(GPSLongitude, 33, txtField, Decimal, Exif, 31)                                               \
    X(GPSLongitudeRef, 34, popUp, Popup, Exif, 32)                                                 \
    X(GPSAltitude, 35, txtField, Decimal, Exif, 33)                                                \
    X(GPSAltitudeRef, 36, popUp, Popup, Exif, 34)                                                  \
    X(ByLine, 37, txtField, Text, Iptc, 0)                                                         \
    X(ByLineTitle, 38, txtField, Text, Iptc, 1)                                                    \
    X(CopyrightNotice, 39, txtField, Text, Iptc, 2)                                                \
    X(Headline, 40, txtField, Text, Iptc, 3)                                                       \
    X(CaptionAbstract, 41, txtField, Text, Iptc, 4)                                                \
    X(WriterEditor, 42, txtField, Text, Iptc, 5)                                                   \
    X(ObjectName, 43, txtField, Text, Iptc, 6)                                                     \
    X(Category, 44, txtField, Text, Iptc, 7)                                                       \
    X(SupplementalCategories, 45, txtField, Text, Iptc, 8)                                         \
    X(Keywords, 46, txtField, Text, Iptc, 9)                                                       \
    X(SubLocation, 47, txtField, Text, Iptc, 10)                                                   \
    X(City, 48, txtField, Text, Iptc, 11)                                                          \
    X(ProvinceState, 49, txtField, Text, Iptc, 12)                                                 \
    X(CountryPrimaryLocationName, 50, txtField, Text, Iptc, 13)                                    \
    X(CountryPrimaryLocationCode, 51, popUp, Popup, Iptc, 14)                                      \
    X(OriginalTransmissionRef, 52, txtField, Text, Iptc, 15)                                       \
    X(SpecialInstructions, 53, txtField, Text, Iptc, 16)                                           \
    X(Credit, 54, txtField, Text, Iptc, 17)                                                        \
    X(Source, 55, txtField, Text, Iptc, 18)                                                        \
    X(SerialNumberXMP, 56, txtField, Text, Xmp, 0)                                                 \
    X(LensXMP, 57, txtField, Text, Xmp, 1)                                                         \
    X(CreateDateXMP, 58, txtField, Date, Xmp, 3)                                                   \
    X(ModifyDateXMP, 59, txtField, Date, Xmp, 4)                                                   \
    X(CreateDatePhotoshop, 60, txtField, Date, Xmp, 2)                                             \
    X(CompressionTiffData, 61, popUp, Popup, Exif, 35)                                             \
    X(DocumentNameTiffData, 62, txtField, Text, Exif, 36)                                          \
    X(FXResolutionTiffData, 63, txtField, Decimal, Exif, 37)                                       \
    X(FYResolutionTiffData, 64, txtField, Decimal, Exif, 38)                                       \
    X(HostComputerTiffData, 65, txtField, Text, Exif, 39)                                          \
    X(PrimaryChromaticitiesTiffData, 66, txtField, Decimal, Exif, 40)                              \
    X(SpectralSensitivityOthers, 77, txtField, Text, Exif, 41)                                     \
    X(SensitivityTypeOthers, 78, popUp, Popup, Exif, 42)                                           \
    X(StandardOutputSensitivityOthers, 79, txtField, Integer, Exif, 43)                            \
    X(CompressedBitsPerPixelOthers, 80, txtField, Decimal, Exif, 44)                               \
    X(MaxApertureValueOthers, 81, txtField, Decimal, Exif, 45)                                     \
    X(ColorSpaceOthers, 82, txtField, Integer, Exif, 46)                                           \
    X(LightSourceOthers, 83, popUp, Popup, Exif, 47)                                               \
    X(DigitalZoomRatioOthers, 89, txtField, Decimal, Exif, 52)

enum class Field {
#define TAGMOOR_FIELD_ENUMERATOR(name, position, prefix, kind, block, row) name,
    TAGMOOR_FORM_FIELDS(TAGMOOR_FIELD_ENUMERATOR)
#undef TAGMOOR_FIELD_ENUMERATOR
};

inline constexpr std::array allFields{
#define TAGMOOR_FIELD_ENTRY(name, position, prefix, kind, block, row) Field::name,
    TAGMOOR_FORM_FIELDS(TAGMOOR_FIELD_ENTRY)
#undef TAGMOOR_FIELD_ENTRY
};

inline constexpr std::size_t kFieldCount = allFields.size();

// Where a field stands: its form position, its kind and its key row.
struct FieldPlace {
    int position;
    FormKind kind;
    KeyBlock block;
    int row;
};

inline constexpr std::array<FieldPlace, kFieldCount> kFieldPlaces{{
#define TAGMOOR_FIELD_PLACE(name, position, prefix, kind, block, row)                              \
    {position, FormKind::kind, KeyBlock::block, row},
    TAGMOOR_FORM_FIELDS(TAGMOOR_FIELD_PLACE)
#undef TAGMOOR_FIELD_PLACE
}};

constexpr const FieldPlace& fieldPlace(Field field) {
    return kFieldPlaces[std::size_t(field)];
}

// The number a preset stores the field under, and that indexes the form's controls.
constexpr int formPosition(Field field) {
    return fieldPlace(field).position;
}

constexpr FormKind formKind(Field field) {
    return fieldPlace(field).kind;
}

// The field's row in its key list.
constexpr int keyRowNumber(Field field) {
    return fieldPlace(field).row;
}

// The field at a form position, if the position has one.
std::optional<Field> fieldAtPosition(int position);

// The field's name: "Artist", "CameraModalName", "City".
const char* fieldName(Field field);

// The name of the field's control: "txtFieldArtist", "popUpFlash".
const char* fieldControl(Field field);

} // namespace tagmoor
