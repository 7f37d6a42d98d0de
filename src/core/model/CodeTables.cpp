#include "model/CodeTables.h"

#include <limits>

namespace tagmoor {

namespace {

constexpr CodeRow kFlash[] = {
    {-1, "Leave Blank"},
    {0, "Flash did not fire"},
    {1, "Flash fired"},
    {5, "Strobe return light not detected"},
    {7, "Strobe return light detected"},
    {9, "Flash fired, compulsory flash mode"},
    {13, "Flash fired, compulsory flash mode, return light not detected"},
    {15, "Flash fired, compulsory flash mode, return light detected"},
    {16, "Flash did not fire, compulsory flash mode"},
    {24, "Flash did not fire, auto mode"},
    {25, "Flash fired, auto mode"},
    {29, "Flash fired, auto mode, return light not detected"},
    {31, "Flash fired, auto mode, return light detected"},
    {32, "No flash function"},
    {65, "Flash fired, red-eye reduction mode"},
    {69, "Flash fired, red-eye reduction mode, return light not detected"},
    {71, "Flash fired, red-eye reduction mode, return light detected"},
    {73, "Flash fired, compulsory flash mode, red-eye reduction mode"},
    {77, "Flash fired, compulsory flash mode, red-eye reduction mode, return light not detected"},
    {79, "Flash fired, compulsory flash mode, red-eye reduction mode, return light detected"},
    {89, "Flash fired, auto mode, red-eye reduction mode"},
    {93, "Flash fired, auto mode, return light not detected, red-eye reduction mode"},
    {95, "Flash fired, auto mode, return light detected, red-eye reduction mode"},
};

constexpr CodeRow kOrientation[] = {
    {-1, "Leave Blank"},
    {1, "Orientation Normal"},
    {2, "Orientation Flip Horizontal"},
    {3, "Orientation Rotate 180"},
    {4, "Orientation Flip Vertical"},
    {5, "Orientation Transpose"},
    {6, "Orientation Rotate 90"},
    {7, "Orientation Transverse"},
    {8, "Orientation Rotate 270"},
};

constexpr CodeRow kExposureMode[] = {
    {-1, "Leave Blank"},
    {0, "Auto"},
    {1, "Manual"},
    {2, "Auto Bracket"},
};

constexpr CodeRow kExposureProgram[] = {
    {-1, "Leave Blank"},     {0, "Not Defined"},       {1, "Manual"},
    {2, "Normal Program"},   {3, "Aperture Priority"}, {4, "Shutter Priority"},
    {5, "Creative Program"}, {6, "Action Program"},    {7, "Portrait Mode"},
    {8, "Landscape Mode"},
};

constexpr CodeRow kMeteringMode[] = {
    {-1, "Leave Blank"}, {0, "Unknown"},   {1, "Average"}, {2, "Center"},
    {3, "Spot"},         {4, "MultiSpot"}, {5, "Pattern"}, {6, "Partial"},
};

constexpr CodeRow kSceneCaptureType[] = {
    {-1, "Leave Blank"}, {0, "Standard"}, {1, "Landscape"}, {2, "Portrait"}, {3, "Night scene"},
};

constexpr CodeRow kSensingMethod[] = {
    {-1, "Leave Blank"},
    {1, "Not defined"},
    {2, "One-chip color area sensor"},
    {3, "Two-chip color area sensor"},
    {4, "Three-chip color area sensor"},
    {5, "Color sequential area sensor"},
    {7, "Trilinear sensor"},
    {8, "Color sequential linear sensor"},
};

// The small b of "Leave blank" is this table's own spelling and is kept.
constexpr CodeRow kSubjectDistanceRange[] = {
    {-1, "Leave blank"}, {0, "Unknown"}, {1, "Macro"}, {2, "Close view"}, {3, "Distant view"},
};

constexpr CodeRow kAltitudeRef[] = {
    {-1, "Leave Blank"},
    {0, "Above Sea Level"},
    {1, "Below Sea Level"},
};

// 0 is no valid file source, so it serves as the blank row.
constexpr CodeRow kFileSource[] = {
    {0, "Leave Blank"},
    {1, "Film Scanner"},
    {2, "Reflection Print Scanner"},
    {3, "Digital Camera"},
};

constexpr CodeRow kLightSource[] = {
    {-1, "Leave Blank"},
    {0, "Unknown"},
    {1, "Daylight"},
    {2, "Fluorescent"},
    {3, "Tungsten (incandescent light)"},
    {4, "Flash"},
    {9, "Fine weather"},
    {10, "Cloudy weather"},
    {11, "Shade"},
    {12, "Daylight fluorescent (D 5700 - 7100K)"},
    {13, "Day white fluorescent (N 4600 - 5400K)"},
    {14, "Cool white fluorescent (W 3900 - 4500K)"},
    {15, "White fluorescent (WW 3200 - 3700K)"},
    {17, "Standard light A"},
    {18, "Standard light B"},
    {19, "Standard light C"},
    {20, "D55"},
    {21, "D65"},
    {22, "D75"},
    {23, "D50"},
    {24, "ISO studio tungsten"},
    {255, "Other light source"},
};

// Plain numbers, not a bit mask: row 4 is its own combination.
constexpr CodeRow kSensitivityType[] = {
    {-1, "Leave Blank"},
    {0, "Unknown"},
    {1, "Standard output sensitivity (SOS)"},
    {2, "Recommended exposure index (REI)"},
    {3, "ISO speed"},
    {4, "Standard output sensitivity (SOS) and recommended exposure index (REI)"},
    {5, "Standard output sensitivity (SOS) and ISO speed"},
    {6, "Recommended exposure index (REI) and ISO speed"},
    {7, "Standard output sensitivity (SOS) and recommended exposure index (REI) and ISO speed"},
};

// 0 is no valid compression, so it serves as the blank row. "overriden" is the table's own
// spelling and is kept.
constexpr CodeRow kCompression[] = {
    {0, "Leave Blank"},
    {1, "No Compression"},
    {2, "CCITT modified Huffman RLE"},
    {3, "CCITT Group 3 fax encoding"},
    {4, "CCITT Group 4 fax encoding"},
    {5, "LZW"},
    {6, "JPEG ('old-style' JPEG, later overriden in Technote2)"},
    {7, "JPEG ('new-style' JPEG)"},
    {8, "Deflate ('Adobe-style')"},
    {32766, "NEXT"},
    {32771, "CCITTRLEW"},
    {32773, "PACKBITS"},
    {32809, "THUNDERSCAN"},
    {32895, "IT8CTPAD"},
    {32896, "IT8LW"},
    {32897, "IT8MP"},
    {32898, "IT8BL"},
    {32908, "PIXARFILM"},
    {32909, "PIXARLOG"},
    {32946, "DEFLATE"},
    {32947, "DCS"},
    {34661, "JBIG"},
    {34676, "SGILOG"},
    {34677, "SGILOG24"},
    {34712, "JP2000"},
};

constexpr LetterRow kLatitudeRef[] = {
    {"NIL", "Leave Blank"},
    {"N", "North"},
    {"S", "South"},
};

constexpr LetterRow kLongitudeRef[] = {
    {"NIL", "Leave Blank"},
    {"E", "East"},
    {"W", "West"},
};

std::optional<qint64> integerOf(const PropertyValue& value) {
    if (const auto v = value.int64())
        return *v;
    if (const auto v = value.uint8())
        return qint64(*v);
    if (const auto v = value.uint64()) {
        if (*v <= quint64(std::numeric_limits<qint64>::max()))
            return qint64(*v);
    }
    return std::nullopt;
}

} // namespace

std::span<const CodeRow> codeRows(CodeTable table) {
    switch (table) {
    case CodeTable::Flash:
        return kFlash;
    case CodeTable::Orientation:
        return kOrientation;
    case CodeTable::ExposureMode:
        return kExposureMode;
    case CodeTable::ExposureProgram:
        return kExposureProgram;
    case CodeTable::MeteringMode:
        return kMeteringMode;
    case CodeTable::SceneCaptureType:
        return kSceneCaptureType;
    case CodeTable::SensingMethod:
        return kSensingMethod;
    case CodeTable::SubjectDistanceRange:
        return kSubjectDistanceRange;
    case CodeTable::AltitudeRef:
        return kAltitudeRef;
    case CodeTable::EXIFFileSource:
        return kFileSource;
    case CodeTable::EXIFLightSource:
        return kLightSource;
    case CodeTable::EXIFSensitivityType:
        return kSensitivityType;
    case CodeTable::TiffCompression:
        return kCompression;
    }
    return {};
}

std::span<const LetterRow> letterRows(LetterTable table) {
    switch (table) {
    case LetterTable::LatitudeRef:
        return kLatitudeRef;
    case LetterTable::LongitudeRef:
        return kLongitudeRef;
    }
    return {};
}

int rowOfNumber(CodeTable table, qint64 number) {
    const auto rows = codeRows(table);
    // Row 0 is skipped: its number is a marker, not a tag value, so a stored -1 (or the 0 of
    // the two tables whose blank is 0) selects the blank row by falling through.
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (rows[i].index == number)
            return int(i);
    }
    return 0;
}

int rowOfLetter(LetterTable table, const QString& letter) {
    const auto rows = letterRows(table);
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (letter == QLatin1String(rows[i].id))
            return int(i);
    }
    return 0;
}

int rowOfValue(CodeTable table, const PropertyValue& value) {
    const auto number = integerOf(value);
    return number ? rowOfNumber(table, *number) : 0;
}

int rowOfValue(LetterTable table, const PropertyValue& value) {
    const auto text = value.text();
    return text ? rowOfLetter(table, *text) : 0;
}

std::optional<int> numberOfRow(CodeTable table, int row) {
    const auto rows = codeRows(table);
    if (row <= 0 || std::size_t(row) >= rows.size())
        return std::nullopt;
    return rows[std::size_t(row)].index;
}

std::optional<QString> letterOfRow(LetterTable table, int row) {
    const auto rows = letterRows(table);
    if (row <= 0 || std::size_t(row) >= rows.size())
        return std::nullopt;
    return QString::fromLatin1(rows[std::size_t(row)].id);
}

} // namespace tagmoor
