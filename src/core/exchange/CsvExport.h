#pragma once

#include "exchange/CsvTable.h"
#include "model/CGImageProperties.h"
#include "model/Field.h"

#include <QList>
#include <QString>

#include <optional>

namespace tagmoor {

// One photo of a table: the path its row names, and its record.
struct CsvPhoto {
    QString sourceFile;
    CGImageProperties record;
};

// Metadata tables written from photos' records, in plain numbers (the form in which the
// common metadata tools print a table with their option for numbers, -n): codes rather than
// their words, decimal GPS degrees signed by their hemisphere beside the reference letter,
// rationals as decimals, dates as "YYYY:MM:DD hh:mm:ss", a list's items joined by ", ".
namespace CsvExport {

// The cell of a field for a record; empty when the record has no value.
QString cellOf(const CGImageProperties& record, Field field);

// The table of `photos`: "SourceFile", then the columns of `fields` in their order, or
// without them the columns of every field that some photo has a value for, in form order.
CsvTable table(const QList<CsvPhoto>& photos,
               const std::optional<QList<Field>>& fields = std::nullopt);

} // namespace CsvExport

} // namespace tagmoor
