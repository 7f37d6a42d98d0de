#pragma once

#include "batch/PhotoValues.h"
#include "exchange/CsvTable.h"
#include "model/Field.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// The edits a metadata table gives the photos it names, laid over a run's values photo by
// photo. Each non-empty cell is an edit of its column's field: a text or number as the form
// would take it typed, a date as the date to write; a cell of "-" erases the tag (the
// metadata tools erase on "-" too, given their option to write missing values, -f). An empty
// cell leaves the tag as the run would. A row of SourceFile "*" gives every row its cells,
// under the row's own. A column of XMP keywords ("Subject") adds them to the row's keywords.
class CsvImport : public PhotoValues {
public:
    // What the table could not give.
    struct Problems {
        // Columns that name no field of the form, in table order.
        QStringList unknownColumns;
        // Rows whose photo is not there: the path as the row gives it.
        QStringList missingFiles;
        // Cells a field does not take: "PATH: COLUMN: why".
        QStringList refusedCells;
    };

    // Reads `table`; relative paths are taken from `baseFolder`. Gives nothing, with `error`
    // set, for a table without a SourceFile column.
    static std::optional<CsvImport> fromTable(const CsvTable& table, const QString& baseFolder,
                                              QString* error);

    // The photos the table names that exist, as absolute paths, in table order.
    const QStringList& photos() const { return m_photos; }
    const Problems& problems() const { return m_problems; }
    // Whether some cell holds a template placeholder ("{").
    bool holdsTemplates() const { return m_holdsTemplates; }

    void adjust(const CGImageProperties& record, RunValues& values) const override;

    // One cell's edit of `values`: what adjust() does for each cell of a row. Gives why the
    // field does not take `text`, if it does not.
    static std::optional<QString> applyCell(RunValues& values, Field field, const QString& text);

private:
    struct Cell {
        Field field;
        QString text;
    };
    void addRow(const QString& path, const QString& sourceFile, const QList<Cell>& cells);
    static void addSubject(QList<Cell>& cells, const QString& subject);

    QHash<QString, QList<Cell>> m_cells;
    QStringList m_photos;
    Problems m_problems;
    bool m_holdsTemplates = false;
};

} // namespace tagmoor
