#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// A table of comma separated values as spreadsheets and the common metadata tools exchange
// them: a first line of column names, then one line per photo. A cell is put in double quotes
// when it holds a quote (doubled), a comma or a line break, or begins or ends with white
// space; lines end in "\n".
struct CsvTable {
    QStringList header;
    QList<QStringList> rows;

    // The table as UTF-8 text.
    QByteArray toText() const;

    // Reads a table. Lines may end in "\n", "\r\n" or "\r"; a quoted cell may span lines; a
    // leading UTF-8 byte order mark is dropped; blanks before a cell and after an unquoted one
    // are not part of it. Rows shorter than the header are filled with empty cells. Gives
    // nothing, with `error` set, for a text without a header line.
    static std::optional<CsvTable> parse(const QByteArray& text, QString* error);

    // One cell as it stands in a line.
    static QString quoted(const QString& cell);
};

} // namespace tagmoor
