#include "editor/FormSections.h"

#include <QCoreApplication>

#include <array>

namespace tagmoor {

namespace {

constexpr FormLine kGeneral[] = {{0, QT_TRANSLATE_NOOP("Form", "Artist")},
                                 {1, QT_TRANSLATE_NOOP("Form", "Image Description")},
                                 {2, QT_TRANSLATE_NOOP("Form", "Copyright")},
                                 {3, QT_TRANSLATE_NOOP("Form", "Software")},
                                 {4, QT_TRANSLATE_NOOP("Form", "User Comment")}};
constexpr FormLine kCamera[] = {{5, QT_TRANSLATE_NOOP("Form", "Make")},
                                {6, QT_TRANSLATE_NOOP("Form", "Camera Model")},
                                {7, QT_TRANSLATE_NOOP("Form", "Owner Name")},
                                {8, QT_TRANSLATE_NOOP("Form", "Serial Number")}};
constexpr FormLine kDate[] = {{9, QT_TRANSLATE_NOOP("Form", "Date Time Original")},
                              {10, QT_TRANSLATE_NOOP("Form", "Creation Date")},
                              {11, QT_TRANSLATE_NOOP("Form", "Modify Date")}};
constexpr FormLine kCameraSettings[] = {{12, QT_TRANSLATE_NOOP("Form", "ISO")},
                                        {13, QT_TRANSLATE_NOOP("Form", "F Number")},
                                        {14, QT_TRANSLATE_NOOP("Form", "Focal Length")},
                                        {15, QT_TRANSLATE_NOOP("Form", "Focal Length (35 mm)")},
                                        {16, QT_TRANSLATE_NOOP("Form", "Flash")},
                                        {17, QT_TRANSLATE_NOOP("Form", "Orientation")}};
constexpr FormLine kAdvancedCameraSettings[] = {
    {18, QT_TRANSLATE_NOOP("Form", "Exposure Mode")},
    {19, QT_TRANSLATE_NOOP("Form", "Exposure Program")},
    {20, QT_TRANSLATE_NOOP("Form", "Exposure Time")},
    {21, QT_TRANSLATE_NOOP("Form", "Metering Mode")},
    {22, QT_TRANSLATE_NOOP("Form", "Scene Capture Type")},
    {23, QT_TRANSLATE_NOOP("Form", "White Balance")},
    {24, QT_TRANSLATE_NOOP("Form", "Saturation")},
    {25, QT_TRANSLATE_NOOP("Form", "Sensing Method")},
    {26, QT_TRANSLATE_NOOP("Form", "Sharpness")},
    {27, QT_TRANSLATE_NOOP("Form", "Subject Distance Range")}};
constexpr FormLine kLens[] = {{28, QT_TRANSLATE_NOOP("Form", "Lens Make")},
                              {29, QT_TRANSLATE_NOOP("Form", "Lens Model")},
                              {30, QT_TRANSLATE_NOOP("Form", "Lens Serial Number")}};
constexpr FormLine kGps[] = {
    {31, QT_TRANSLATE_NOOP("Form", "Latitude")},  {32, QT_TRANSLATE_NOOP("Form", "Latitude Ref.")},
    {33, QT_TRANSLATE_NOOP("Form", "Longitude")}, {34, QT_TRANSLATE_NOOP("Form", "Longitude Ref.")},
    {35, QT_TRANSLATE_NOOP("Form", "Altitude")},  {36, QT_TRANSLATE_NOOP("Form", "Altitude Ref.")}};
constexpr FormLine kTiffData[] = {{61, QT_TRANSLATE_NOOP("Form", "Compression")},
                                  {62, QT_TRANSLATE_NOOP("Form", "Document Name")},
                                  {63, QT_TRANSLATE_NOOP("Form", "X Resolution")},
                                  {64, QT_TRANSLATE_NOOP("Form", "Y Resolution")},
                                  {65, QT_TRANSLATE_NOOP("Form", "Host Computer")},
                                  {66, QT_TRANSLATE_NOOP("Form", "Primary Chromaticities")}};
constexpr FormLine kOthers[] = {{77, QT_TRANSLATE_NOOP("Form", "Spectral Sensitivity")},
                                {78, QT_TRANSLATE_NOOP("Form", "Sensitivity Type")},
                                {79, QT_TRANSLATE_NOOP("Form", "Standard Output Sensitivity")},
                                {80, QT_TRANSLATE_NOOP("Form", "Compressed Bits per Pixel")},
                                {81, QT_TRANSLATE_NOOP("Form", "Max Aperture Value")},
                                {82, QT_TRANSLATE_NOOP("Form", "Color Space")},
                                {83, QT_TRANSLATE_NOOP("Form", "Light Source")},
                                {89, QT_TRANSLATE_NOOP("Form", "Digital Zoom Ratio")}};
constexpr FormLine kAuthor[] = {{37, QT_TRANSLATE_NOOP("Form", "By-line")},
                                {38, QT_TRANSLATE_NOOP("Form", "By-line Title")},
                                {39, QT_TRANSLATE_NOOP("Form", "Copyright Notice")}};
constexpr FormLine kInformation[] = {{40, QT_TRANSLATE_NOOP("Form", "Headline")},
                                     {41, QT_TRANSLATE_NOOP("Form", "Caption/Abstract")},
                                     {42, QT_TRANSLATE_NOOP("Form", "Writer/Editor")},
                                     {43, QT_TRANSLATE_NOOP("Form", "Object Name")}};
constexpr FormLine kCategory[] = {{44, QT_TRANSLATE_NOOP("Form", "Category")},
                                  {45, QT_TRANSLATE_NOOP("Form", "Supplemental Categories")}};
constexpr FormLine kKeywords[] = {{46, QT_TRANSLATE_NOOP("Form", "Keywords")}};
constexpr FormLine kLocation[] = {{47, QT_TRANSLATE_NOOP("Form", "Sub-location")},
                                  {48, QT_TRANSLATE_NOOP("Form", "City")},
                                  {49, QT_TRANSLATE_NOOP("Form", "Province/State")},
                                  {50, QT_TRANSLATE_NOOP("Form", "Country Name")},
                                  {51, QT_TRANSLATE_NOOP("Form", "Country Code")}};
constexpr FormLine kWorkflow[] = {{52, QT_TRANSLATE_NOOP("Form", "Transmission Reference")},
                                  {53, QT_TRANSLATE_NOOP("Form", "Special Instructions")},
                                  {54, QT_TRANSLATE_NOOP("Form", "Credit")},
                                  {55, QT_TRANSLATE_NOOP("Form", "Source")}};
constexpr FormLine kGeneralXmp[] = {{56, QT_TRANSLATE_NOOP("Form", "Serial Number")},
                                    {57, QT_TRANSLATE_NOOP("Form", "Lens")},
                                    {58, QT_TRANSLATE_NOOP("Form", "Create Date")},
                                    {59, QT_TRANSLATE_NOOP("Form", "Modify Date")}};
constexpr FormLine kPhotoshop[] = {{60, QT_TRANSLATE_NOOP("Form", "Date Created")}};

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

QString labelOf(int position) {
    for (const FormSection& section : kSections) {
        for (const FormLine& line : section.lines) {
            if (line.position == position)
                return QCoreApplication::translate("Form", line.label);
        }
    }
    return {};
}

} // namespace tagmoor
