#include "exchange/ListTables.h"

#include "exchange/CsvColumns.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace tagmoor {

namespace {

qsizetype sourceColumnOf(const QStringList& header) {
    for (qsizetype i = 0; i < header.size(); ++i) {
        if (header[i].compare(QLatin1String(CsvColumns::sourceFile), Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

// Up to `shown` items of a list, one a line, and how many more there are.
QString someOf(const QStringList& items, int shown) {
    QStringList lines = items.mid(0, shown);
    if (items.size() > shown)
        lines
            << QCoreApplication::translate("ListTables", "… and %1 more").arg(items.size() - shown);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

ListMatch matchTableToList(const CsvTable& table, const QStringList& listPaths,
                           const QString& tableFolder) {
    ListMatch match;
    match.table.header = table.header;
    const qsizetype source = sourceColumnOf(table.header);
    if (source < 0)
        return match;
    QSet<QString> byPath(listPaths.begin(), listPaths.end());
    // A name that two photos of the list share names neither: the empty text marks it.
    QHash<QString, QString> byName;
    for (const QString& path : listPaths) {
        const QString name = QFileInfo(path).fileName();
        const auto known = byName.constFind(name);
        byName.insert(name, known == byName.constEnd() ? path : QString());
    }
    QSet<QString> matched;
    const QDir folder(tableFolder);
    for (const QStringList& row : table.rows) {
        const QString sourceFile = row.value(source);
        if (sourceFile.isEmpty())
            continue;
        if (sourceFile == QLatin1String("*")) {
            match.table.rows << row;
            continue;
        }
        ++match.rows;
        QString photo = QDir::cleanPath(folder.absoluteFilePath(sourceFile));
        if (!byPath.contains(photo))
            photo = byName.value(QFileInfo(sourceFile).fileName());
        if (photo.isEmpty()) {
            match.unmatched << sourceFile;
            continue;
        }
        QStringList named = row;
        named[source] = photo;
        match.table.rows << named;
        if (!matched.contains(photo)) {
            matched.insert(photo);
            match.photos << photo;
        }
    }
    return match;
}

ListImport importTableForList(const QString& path, const QStringList& listPaths) {
    ListImport import;
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        import.error =
            QCoreApplication::translate("ListTables", "The file %1 cannot be read.").arg(path);
        return import;
    }
    if (file.size() > kMaxTableBytes) {
        import.error = QCoreApplication::translate("ListTables",
                                                   "The file %1 is too large for a metadata table.")
                           .arg(path);
        return import;
    }
    QString why;
    const auto table = CsvTable::parse(file.readAll(), &why);
    if (!table || sourceColumnOf(table->header) < 0) {
        import.error =
            QCoreApplication::translate(
                "ListTables", "The file %1 is no metadata table: it needs a first line of column "
                              "names with a SourceFile column.")
                .arg(path);
        return import;
    }
    import.match = matchTableToList(*table, listPaths, QFileInfo(path).absolutePath());
    auto edits = CsvImport::fromTable(import.match.table, QStringLiteral("/"), &why);
    if (!edits) {
        import.error = why;
        return import;
    }
    import.unknownColumns = edits->problems().unknownColumns;
    import.refusedCells = edits->problems().refusedCells;
    if (!import.match.photos.isEmpty())
        import.edits = std::make_shared<const CsvImport>(std::move(*edits));
    return import;
}

QString listImportSummary(const ListImport& import) {
    const ListMatch& match = import.match;
    QStringList parts;
    parts << QCoreApplication::translate("ListTables", "Rows read: %1. Photos matched: %2.")
                 .arg(match.rows)
                 .arg(match.photos.size());
    if (!match.photos.isEmpty())
        parts << QCoreApplication::translate(
            "ListTables",
            "The matched photos are marked. Their new values show in Review Changes... "
            "and are written by Start Process.");
    if (!match.unmatched.isEmpty())
        parts << QCoreApplication::translate("ListTables",
                                             "Rows that match no photo of the list:") +
                     QLatin1Char('\n') + someOf(match.unmatched, 8);
    if (!import.unknownColumns.isEmpty())
        parts << QCoreApplication::translate("ListTables", "Columns not understood, left out:") +
                     QLatin1Char('\n') + someOf(import.unknownColumns, 8);
    if (!import.refusedCells.isEmpty())
        parts << QCoreApplication::translate("ListTables", "Cells left out:") + QLatin1Char('\n') +
                     someOf(import.refusedCells, 5);
    return parts.join(QStringLiteral("\n\n"));
}

} // namespace tagmoor
