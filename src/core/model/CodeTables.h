#pragma once

#include "model/PropertyValue.h"

#include <QString>

#include <optional>
#include <span>

namespace tagmoor {

// One row of a numeric code table: the number stored in the tag and the text the user sees.
struct CodeRow {
    int index;
    const char* name;

    QString text() const { return QString::fromUtf8(name); }
};

// One row of a letter table (GPS references): the stored letter and the text the user sees.
struct LetterRow {
    const char* id;
    const char* name;

    QString text() const { return QString::fromUtf8(name); }
};

// The numeric code tables, named after the tables they select.
enum class CodeTable {
    Flash,
    Orientation,
    ExposureMode,
    ExposureProgram,
    MeteringMode,
    SceneCaptureType,
    SensingMethod,
    SubjectDistanceRange,
    AltitudeRef,
    EXIFFileSource,
    EXIFLightSource,
    EXIFSensitivityType,
    TiffCompression,
};

enum class LetterTable {
    LatitudeRef,
    LongitudeRef,
};

// Every table in display order. Row 0 is the blank row: it stands for "no value" and its
// stored number or letter is never written to a tag. Its index is -1, except in
// EXIFFileSource and TiffCompression, where 0 is free and serves as the blank.
// The rows are constant data and safe to read from any thread.
std::span<const CodeRow> codeRows(CodeTable table);
std::span<const LetterRow> letterRows(LetterTable table);

// The row a field's value selects: the first row whose stored number (or letter) equals the
// value, or 0 (the blank row) when none does. Any integer kind is matched by its number; an
// absent value, a value of another kind and a number that stands in no row give 0.
int rowOfValue(CodeTable table, const PropertyValue& value);
int rowOfValue(LetterTable table, const PropertyValue& value);
int rowOfNumber(CodeTable table, qint64 number);
int rowOfLetter(LetterTable table, const QString& letter);

// The value a chosen row stands for: nothing for the blank row and for a row out of range.
std::optional<int> numberOfRow(CodeTable table, int row);
std::optional<QString> letterOfRow(LetterTable table, int row);

} // namespace tagmoor
