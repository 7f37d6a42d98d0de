#include "editor/FormSections.h"

#include <QCoreApplication>

#include <array>

namespace tagmoor {

namespace {

constexpr FormLine kGeneral[] = {
    {Field::Artist, QT_TRANSLATE_NOOP("Form", "Artist")},
    {Field::ImageDescription, QT_TRANSLATE_NOOP("Form", "Image Description")},
    {Field::Copyright, QT_TRANSLATE_NOOP("Form", "Copyright")},
    {Field::Software, QT_TRANSLATE_NOOP("Form", "Software")},
    {Field::UserComment, QT_TRANSLATE_NOOP("Form", "User Comment")}};
constexpr FormLine kCamera[] = {{Field::Make, QT_TRANSLATE_NOOP("Form", "Make")},
                                {Field::CameraModalName, QT_TRANSLATE_NOOP("Form", "Camera Model")},
                                {Field::OwnerName, QT_TRANSLATE_NOOP("Form", "Owner Name")},
                                {Field::SerialNumber, QT_TRANSLATE_NOOP("Form", "Serial Number")}};
constexpr FormLine kDate[] = {
    {Field::DateTimeOriginal, QT_TRANSLATE_NOOP("Form", "Date Time Original")},
    {Field::CreationDate, QT_TRANSLATE_NOOP("Form", "Creation Date")},
    {Field::ModifyDate, QT_TRANSLATE_NOOP("Form", "Modify Date")}};
constexpr FormLine kCameraSettings[] = {
    {Field::ISO, QT_TRANSLATE_NOOP("Form", "ISO")},
    {Field::FNumber, QT_TRANSLATE_NOOP("Form", "F Number")},
    {Field::FocalLength, QT_TRANSLATE_NOOP("Form", "Focal Length")},
    {Field::FocalLengthIn35mmFormat, QT_TRANSLATE_NOOP("Form", "Focal Length (35 mm)")},
    {Field::Flash, QT_TRANSLATE_NOOP("Form", "Flash")},
    {Field::Orientation, QT_TRANSLATE_NOOP("Form", "Orientation")}};
constexpr FormLine kAdvancedCameraSettings[] = {
    {Field::ExposureMode, QT_TRANSLATE_NOOP("Form", "Exposure Mode")},
    {Field::ExposureProgram, QT_TRANSLATE_NOOP("Form", "Exposure Program")},
    {Field::ExposureTime, QT_TRANSLATE_NOOP("Form", "Exposure Time")},
    {Field::MeteringMode, QT_TRANSLATE_NOOP("Form", "Metering Mode")},
    {Field::SceneCaptureType, QT_TRANSLATE_NOOP("Form", "Scene Capture Type")},
    {Field::WhiteBalance, QT_TRANSLATE_NOOP("Form", "White Balance")},
    {Field::Saturation, QT_TRANSLATE_NOOP("Form", "Saturation")},
    {Field::SensingMethod, QT_TRANSLATE_NOOP("Form", "Sensing Method")},
    {Field::Sharpness, QT_TRANSLATE_NOOP("Form", "Sharpness")},
    {Field::SubjectDistanceRange, QT_TRANSLATE_NOOP("Form", "Subject Distance Range")}};
constexpr FormLine kLens[] = {
    {Field::LensMake, QT_TRANSLATE_NOOP("Form", "Lens Make")},
    {Field::LensModel, QT_TRANSLATE_NOOP("Form", "Lens Model")},
    {Field::LensSerialNumber, QT_TRANSLATE_NOOP("Form", "Lens Serial Number")}};
constexpr FormLine kGps[] = {{Field::GPSLatitude, QT_TRANSLATE_NOOP("Form", "Latitude")},
                             {Field::GPSLatitudeRef, QT_TRANSLATE_NOOP("Form", "Latitude Ref.")},
                             {Field::GPSLongitude, QT_TRANSLATE_NOOP("Form", "Longitude")},
                             {Field::GPSLongitudeRef, QT_TRANSLATE_NOOP("Form", "Longitude Ref.")},
                             {Field::GPSAltitude, QT_TRANSLATE_NOOP("Form", "Altitude")},
                             {Field::GPSAltitudeRef, QT_TRANSLATE_NOOP("Form", "Altitude Ref.")}};
constexpr FormLine kTiffData[] = {
    {Field::CompressionTiffData, QT_TRANSLATE_NOOP("Form", "Compression")},
    {Field::DocumentNameTiffData, QT_TRANSLATE_NOOP("Form", "Document Name")},
    {Field::FXResolutionTiffData, QT_TRANSLATE_NOOP("Form", "X Resolution")},
    {Field::FYResolutionTiffData, QT_TRANSLATE_NOOP("Form", "Y Resolution")},
    {Field::HostComputerTiffData, QT_TRANSLATE_NOOP("Form", "Host Computer")},
    {Field::PrimaryChromaticitiesTiffData, QT_TRANSLATE_NOOP("Form", "Primary Chromaticities")}};
constexpr FormLine kOthers[] = {
    {Field::SpectralSensitivityOthers, QT_TRANSLATE_NOOP("Form", "Spectral Sensitivity")},
    {Field::SensitivityTypeOthers, QT_TRANSLATE_NOOP("Form", "Sensitivity Type")},
    {Field::StandardOutputSensitivityOthers,
     QT_TRANSLATE_NOOP("Form", "Standard Output Sensitivity")},
    {Field::CompressedBitsPerPixelOthers, QT_TRANSLATE_NOOP("Form", "Compressed Bits per Pixel")},
    {Field::MaxApertureValueOthers, QT_TRANSLATE_NOOP("Form", "Max Aperture Value")},
    {Field::ColorSpaceOthers, QT_TRANSLATE_NOOP("Form", "Color Space")},
    {Field::LightSourceOthers, QT_TRANSLATE_NOOP("Form", "Light Source")},
    {Field::DigitalZoomRatioOthers, QT_TRANSLATE_NOOP("Form", "Digital Zoom Ratio")}};
constexpr FormLine kAuthor[] = {
    {Field::ByLine, QT_TRANSLATE_NOOP("Form", "By-line")},
    {Field::ByLineTitle, QT_TRANSLATE_NOOP("Form", "By-line Title")},
    {Field::CopyrightNotice, QT_TRANSLATE_NOOP("Form", "Copyright Notice")}};
constexpr FormLine kInformation[] = {
    {Field::Headline, QT_TRANSLATE_NOOP("Form", "Headline")},
    {Field::CaptionAbstract, QT_TRANSLATE_NOOP("Form", "Caption/Abstract")},
    {Field::WriterEditor, QT_TRANSLATE_NOOP("Form", "Writer/Editor")},
    {Field::ObjectName, QT_TRANSLATE_NOOP("Form", "Object Name")}};
constexpr FormLine kCategory[] = {
    {Field::Category, QT_TRANSLATE_NOOP("Form", "Category")},
    {Field::SupplementalCategories, QT_TRANSLATE_NOOP("Form", "Supplemental Categories")}};
constexpr FormLine kKeywords[] = {{Field::Keywords, QT_TRANSLATE_NOOP("Form", "Keywords")}};
constexpr FormLine kLocation[] = {
    {Field::SubLocation, QT_TRANSLATE_NOOP("Form", "Sub-location")},
    {Field::City, QT_TRANSLATE_NOOP("Form", "City")},
    {Field::ProvinceState, QT_TRANSLATE_NOOP("Form", "Province/State")},
    {Field::CountryPrimaryLocationName, QT_TRANSLATE_NOOP("Form", "Country Name")},
    {Field::CountryPrimaryLocationCode, QT_TRANSLATE_NOOP("Form", "Country Code")}};
constexpr FormLine kWorkflow[] = {
    {Field::OriginalTransmissionRef, QT_TRANSLATE_NOOP("Form", "Transmission Reference")},
    {Field::SpecialInstructions, QT_TRANSLATE_NOOP("Form", "Special Instructions")},
    {Field::Credit, QT_TRANSLATE_NOOP("Form", "Credit")},
    {Field::Source, QT_TRANSLATE_NOOP("Form", "Source")}};
constexpr FormLine kGeneralXmp[] = {
    {Field::SerialNumberXMP, QT_TRANSLATE_NOOP("Form", "Serial Number")},
    {Field::LensXMP, QT_TRANSLATE_NOOP("Form", "Lens")},
    {Field::CreateDateXMP, QT_TRANSLATE_NOOP("Form", "Create Date")},
    {Field::ModifyDateXMP, QT_TRANSLATE_NOOP("Form", "Modify Date")}};
constexpr FormLine kPhotoshop[] = {
    {Field::CreateDatePhotoshop, QT_TRANSLATE_NOOP("Form", "Date Created")}};

using E = Editor;
const std::array<FormSection, 17> kSections{{
    {E::exif, "lblGeneral", QT_TRANSLATE_NOOP("Form", "General"), kGeneral},
    {E::exif, "lblCamera", QT_TRANSLATE_NOOP("Form", "Camera"), kCamera},
    {E::exif, "lblDate", QT_TRANSLATE_NOOP("Form", "Date"), kDate},
    {E::exif, "lblCameraSettings", QT_TRANSLATE_NOOP("Form", "Camera Settings"), kCameraSettings},
    {E::exif, "lblAdvanceCameraSettings", QT_TRANSLATE_NOOP("Form", "Advanced Camera Settings"),
     kAdvancedCameraSettings},
    {E::exif, "lblLens", QT_TRANSLATE_NOOP("Form", "Lens"), kLens},
    {E::exif, "lblGPS", QT_TRANSLATE_NOOP("Form", "GPS"), kGps},
    {E::exif, "lblTiffData", QT_TRANSLATE_NOOP("Form", "TIFF Data"), kTiffData},
    {E::exif, "lblOthers", QT_TRANSLATE_NOOP("Form", "Others"), kOthers},
    {E::iptc, "lblAuthor", QT_TRANSLATE_NOOP("Form", "Author"), kAuthor},
    {E::iptc, "lblInformation", QT_TRANSLATE_NOOP("Form", "Information"), kInformation},
    {E::iptc, "lblCategory", QT_TRANSLATE_NOOP("Form", "Category"), kCategory},
    {E::iptc, "lblKeywords", QT_TRANSLATE_NOOP("Form", "Keywords"), kKeywords},
    {E::iptc, "lblLocation", QT_TRANSLATE_NOOP("Form", "Location"), kLocation},
    {E::iptc, "lblWorkflow", QT_TRANSLATE_NOOP("Form", "Workflow"), kWorkflow},
    {E::xmp, "lblGeneralXMP", QT_TRANSLATE_NOOP("Form", "General"), kGeneralXmp},
    {E::xmp, "lblPhotoshop", QT_TRANSLATE_NOOP("Form", "Photoshop"), kPhotoshop},
}};

} // namespace

std::span<const FormSection> formSections() {
    return kSections;
}

const char* editorTitleControl(Editor editor) {
    switch (editor) {
    case Editor::exif:
        return "lblExifEditor";
    case Editor::iptc:
        return "lblPICTEditor";
    case Editor::xmp:
        break;
    }
    return "lblXMPEditor";
}

const char* editorTitle(Editor editor) {
    switch (editor) {
    case Editor::exif:
        return QT_TRANSLATE_NOOP("Form", "EXIF Editor");
    case Editor::iptc:
        return QT_TRANSLATE_NOOP("Form", "IPTC Editor");
    case Editor::xmp:
        break;
    }
    return QT_TRANSLATE_NOOP("Form", "XMP Editor");
}

QString labelOf(Field field) {
    for (const FormSection& section : kSections) {
        for (const FormLine& line : section.lines) {
            if (line.field == field)
                return QCoreApplication::translate("Form", line.label);
        }
    }
    return {};
}

} // namespace tagmoor
