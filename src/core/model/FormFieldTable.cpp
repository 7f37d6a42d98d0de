#include "model/FormFieldTable.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <vector>

namespace tagmoor {

namespace {

using K = FormKind;
constexpr KeyBlock E = KeyBlock::Exif;
constexpr KeyBlock I = KeyBlock::Iptc;
constexpr KeyBlock X = KeyBlock::Xmp;

// Form position -> control -> key row. The positions are part of the design: presets and
// the edit flags address fields by them.
const std::array<FormField, 75> kFields{{
    {0, "txtFieldArtist", K::Text, E, 0},
    {1, "txtFieldImageDescription", K::Text, E, 1},
    {2, "txtFieldCopyright", K::Text, E, 2},
    {3, "txtFieldSoftware", K::Text, E, 3},
    {4, "txtViewUserComment", K::Text, E, 4},
    {5, "txtFieldMake", K::Text, E, 5},
    {6, "txtFieldCameraModalName", K::Text, E, 6},
    {7, "txtFieldOwnerName", K::Text, E, 7},
    {8, "txtFieldSerialNumber", K::Text, E, 8},
    {9, "txtFieldDateTimeOriginal", K::Date, E, 9},
    {10, "txtFieldCreationDate", K::Date, E, 53},
    {11, "txtFieldModifyDate", K::Date, E, 54},
    {12, "txtFieldISO", K::Integer, E, 10},
    {13, "txtFieldFNumber", K::Decimal, E, 11},
    {14, "txtFieldFocalLength", K::Decimal, E, 12},
    {15, "txtFieldFocalLengthIn35mmFormat", K::Integer, E, 13},
    {16, "popUpFlash", K::Popup, E, 14},
    {17, "popUpOrientation", K::Popup, E, 15},
    {18, "popUpExposureMode", K::Popup, E, 16},
    {19, "popUpExposureProgram", K::Popup, E, 17},
    {20, "txtFieldExposureTime", K::Decimal, E, 18},
    {21, "popUpMeteringMode", K::Popup, E, 19},
    {22, "popUpSceneCaptureType", K::Popup, E, 20},
    {23, "txtFieldWhiteBalance", K::Integer, E, 21},
    {24, "txtFieldSaturation", K::Integer, E, 22},
    {25, "popUpSensingMethod", K::Popup, E, 23},
    {26, "txtFieldSharpness", K::Integer, E, 24},
    {27, "popUpSubjectDistanceRange", K::Popup, E, 25},
    {28, "txtFieldLensMake", K::Text, E, 26},
    {29, "txtFieldLensModel", K::Text, E, 27},
    {30, "txtFieldLensSerialNumber", K::Text, E, 28},
    {31, "txtFieldGPSLatitude", K::Decimal, E, 29},
    {32, "popUpGPSLatitudeRef", K::Popup, E, 30},
    {33, "txtFieldGPSLongitude", K::Decimal, E, 31},
    {34, "popUpGPSLongitudeRef", K::Popup, E, 32},
    {35, "txtFieldGPSAltitude", K::Decimal, E, 33},
    {36, "popUpGPSAltitudeRef", K::Popup, E, 34},
    {37, "txtFieldByLine", K::Text, I, 0},
    {38, "txtFieldByLineTitle", K::Text, I, 1},
    {39, "txtFieldCopyrightNotice", K::Text, I, 2},
    {40, "txtFieldHeadline", K::Text, I, 3},
    {41, "txtFieldCaptionAbstract", K::Text, I, 4},
    {42, "txtFieldWriterEditor", K::Text, I, 5},
    {43, "txtFieldObjectName", K::Text, I, 6},
    {44, "txtFieldCategory", K::Text, I, 7},
    {45, "txtFieldSupplementalCategories", K::Text, I, 8},
    {46, "txtFieldKeywords", K::Text, I, 9},
    {47, "txtFieldSubLocation", K::Text, I, 10},
    {48, "txtFieldCity", K::Text, I, 11},
    {49, "txtFieldProvinceState", K::Text, I, 12},
    {50, "txtFieldCountryPrimaryLocationName", K::Text, I, 13},
    {51, "popUpCountryPrimaryLocationCode", K::Popup, I, 14},
    {52, "txtFieldOriginalTransmissionRef", K::Text, I, 15},
    {53, "txtFieldSpecialInstructions", K::Text, I, 16},
    {54, "txtFieldCredit", K::Text, I, 17},
    {55, "txtFieldSource", K::Text, I, 18},
    {56, "txtFieldSerialNumberXMP", K::Text, X, 0},
    {57, "txtFieldLensXMP", K::Text, X, 1},
    // Deliberately not ascending: the XMP create date comes before the modify date on the
    // form, the Photoshop date last.
    {58, "txtFieldCreateDateXMP", K::Date, X, 3},
    {59, "txtFieldModifyDateXMP", K::Date, X, 4},
    {60, "txtFieldCreateDatePhotoshop", K::Date, X, 2},
    {61, "popUpCompressionTiffData", K::Popup, E, 35},
    {62, "txtFieldDocumentNameTiffData", K::Text, E, 36},
    {63, "txtFieldFXResolutionTiffData", K::Decimal, E, 37},
    {64, "txtFieldFYResolutionTiffData", K::Decimal, E, 38},
    {65, "txtFieldHostComputerTiffData", K::Text, E, 39},
    {66, "txtFieldPrimaryChromaticitiesTiffData", K::Decimal, E, 40},
    {77, "txtFieldSpectralSensitivityOthers", K::Text, E, 41},
    {78, "popUpSensitivityTypeOthers", K::Popup, E, 42},
    {79, "txtFieldStandardOutputSensitivityOthers", K::Integer, E, 43},
    {80, "txtFieldCompressedBitsPerPixelOthers", K::Decimal, E, 44},
    {81, "txtFieldMaxApertureValueOthers", K::Decimal, E, 45},
    {82, "txtFieldColorSpaceOthers", K::Integer, E, 46},
    {83, "popUpLightSourceOthers", K::Popup, E, 47},
    {89, "txtFieldDigitalZoomRatioOthers", K::Decimal, E, 52},
}};

int blockOrder(KeyBlock b) {
    switch (b) {
    case KeyBlock::Exif:
        return 0;
    case KeyBlock::Iptc:
        return 1;
    case KeyBlock::Xmp:
        break;
    }
    return 2;
}

} // namespace

const KeyRow& FormField::keyRow() const {
    switch (block) {
    case KeyBlock::Exif:
        return exifKeyRows()[row];
    case KeyBlock::Iptc:
        return iptcKeyRows()[row];
    case KeyBlock::Xmp:
        break;
    }
    return xmpKeyRows()[row];
}

QString FormField::name() const {
    QString n = QString::fromLatin1(control);
    for (const char* prefix : {"txtField", "txtView", "popUp"}) {
        if (n.startsWith(QLatin1String(prefix)))
            return n.mid(int(qstrlen(prefix)));
    }
    return n;
}

std::span<const FormField> formFields() {
    return kFields;
}

const FormField* formFieldAt(int position) {
    static const auto byPosition = [] {
        std::array<const FormField*, kFormPositionCount> a{};
        for (const auto& f : kFields)
            a[f.position] = &f;
        return a;
    }();
    if (position < 0 || position >= kFormPositionCount)
        return nullptr;
    return byPosition[position];
}

const FormField* formFieldForRow(const KeyRow& row) {
    for (const auto& f : kFields) {
        if (f.block == row.block && f.row == row.row)
            return &f;
    }
    return nullptr;
}

const FormField* findFormField(const QString& nameOrKey) {
    static const QHash<QString, const FormField*> byName = [] {
        QHash<QString, const FormField*> h;
        for (const auto& f : kFields) {
            h.insert(f.name().toLower(), &f);
            h.insert(QString::fromLatin1(f.keyRow().key).toLower(), &f);
        }
        return h;
    }();
    return byName.value(nameOrKey.trimmed().toLower(), nullptr);
}

std::span<const FormField* const> plainFieldsInKeyOrder() {
    static const std::vector<const FormField*> order = [] {
        std::vector<const FormField*> v;
        for (const auto& f : kFields) {
            if (!f.isDate())
                v.push_back(&f);
        }
        std::stable_sort(v.begin(), v.end(), [](const FormField* a, const FormField* b) {
            if (a->block != b->block)
                return blockOrder(a->block) < blockOrder(b->block);
            return a->row < b->row;
        });
        return v;
    }();
    return order;
}

std::span<const FormField* const> dateFieldsInRunOrder() {
    static const std::array<const FormField*, 6> order{
        formFieldAt(formpos::DateTimeOriginal), formFieldAt(formpos::CreationDate),
        formFieldAt(formpos::ModifyDate),       formFieldAt(formpos::CreateDateXMP),
        formFieldAt(formpos::ModifyDateXMP),    formFieldAt(formpos::CreateDatePhotoshop)};
    return order;
}

} // namespace tagmoor
