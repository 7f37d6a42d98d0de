#pragma once

#include "exchange/CsvImport.h"
#include "exchange/CsvTable.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace tagmoor {

// The rows of a metadata table matched to the photos of a list, for File > Import Metadata...:
// a row names its photo by its SourceFile path (relative to the table's folder when it is not
// absolute) or, when no photo of the list has that path, by its file name, provided one photo
// of the list alone has that name. A row of SourceFile "*" gives every matched row its cells.
struct ListMatch {
    // The table with each matched row naming its photo's path, and only those rows and the
    // "*" rows.
    CsvTable table;
    // The paths of the photos matched, each once, in table order.
    QStringList photos;
    // The rows that matched no photo: their SourceFile as the table gives it.
    QStringList unmatched;
    // The rows with a SourceFile, "*" rows aside.
    int rows = 0;
};

ListMatch matchTableToList(const CsvTable& table, const QStringList& listPaths,
                           const QString& tableFolder);

// What reading a table for a list gave.
struct ListImport {
    // Why the table could not be read at all; empty when it was.
    QString error;
    ListMatch match;
    // The per-photo edits of the matched rows; null when no row matched.
    std::shared_ptr<const CsvImport> edits;
    // Columns that name no field, and cells a field does not take ("PATH: COLUMN: why").
    QStringList unknownColumns;
    QStringList refusedCells;
};

// Reads the table at `path` for the photos of a list (any thread): parses it, matches its rows
// and turns the matched ones into edits.
ListImport importTableForList(const QString& path, const QStringList& listPaths);

// The alert text that sums an import up: rows read and matched, the rows that matched no photo
// and the columns not understood (the first few of each, with a count of the rest).
QString listImportSummary(const ListImport& import);

// The largest table that is read: a row of every field of 100,000 photos is well below it.
inline constexpr qint64 kMaxTableBytes = 512LL * 1024 * 1024;

} // namespace tagmoor
