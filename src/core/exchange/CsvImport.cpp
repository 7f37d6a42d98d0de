#include "exchange/CsvImport.h"

#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "dates/DateField.h"
#include "editor/FieldValueCheck.h"
#include "exchange/CsvColumns.h"
#include "metadata/PropertyLoading.h"
#include "model/FormFieldTable.h"

#include <QDir>
#include <QFileInfo>

namespace tagmoor {

namespace {

const QString kErase = QStringLiteral("-");
const QString kEveryRow = QStringLiteral("*");

QString absolutePath(const QString& base, const QString& path) {
    return QDir::cleanPath(QDir(base).absoluteFilePath(path));
}

// Erasing a plain field: no value, which each form's rules turn into an erase of the tag.
// The standard form erases an edited field without a value; the described form erases a
// field without a value in the keep mode, and an unedited one in the clear mode.
void eraseField(RunValues& values, const FormField& field) {
    *field.keyRow().field(values.editedProperties) = PropertyValue();
    values.fieldEditedFlags.set(field.field, values.writeOptions.standardForm);
}

std::optional<QString> applyDate(RunValues& values, DateField field, const QString& text) {
    OriginalFinalDate& dates = values.editorDates;
    if (text == kErase) {
        dates.rule(field) = EmptyValue{};
    } else {
        const auto date = parseMetadataDate(text);
        if (!date)
            return QStringLiteral("'%1' is no date").arg(text);
        if (auto refused = refusedYear(field, date->date().year()))
            return refused;
        dates.rule(field) = SelectDate{*date};
        dates.slot(field) = *date;
    }
    dates.alive(field) = true;
    values.fieldEditedFlags.set(formFieldOf(field));
    return std::nullopt;
}

} // namespace

std::optional<QString> CsvImport::applyCell(RunValues& values, Field field, const QString& text) {
    if (const auto date = dateFieldOf(field))
        return applyDate(values, *date, text);
    const FormField& form = formField(field);
    values.editedProperties = withKeyGroups(values.editedProperties);
    if (text == kErase) {
        eraseField(values, form);
        return std::nullopt;
    }
    if (auto problem = FormSnapshot::setText(values.editedProperties, form, text))
        return problem;
    if (auto refused = refusedFieldValue(form, values.editedProperties))
        return refused;
    values.fieldEditedFlags.set(field);
    return std::nullopt;
}

std::optional<CsvImport> CsvImport::fromTable(const CsvTable& table, const QString& baseFolder,
                                              QString* error) {
    const qsizetype sourceColumn =
        table.header.indexOf(QString::fromLatin1(CsvColumns::sourceFile), 0);
    if (sourceColumn < 0) {
        *error = QStringLiteral("the table has no SourceFile column");
        return std::nullopt;
    }
    CsvImport import;
    QList<std::optional<Field>> fields;
    for (qsizetype i = 0; i < table.header.size(); ++i) {
        fields << (i == sourceColumn ? std::nullopt : CsvColumns::fieldOf(table.header[i]));
        if (i != sourceColumn && !fields.back())
            import.m_problems.unknownColumns << table.header[i];
    }
    QList<Cell> everyRow;
    QList<std::pair<QString, QList<Cell>>> rows;
    for (const QStringList& row : table.rows) {
        QList<Cell> cells;
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (fields[i] && !row[i].isEmpty())
                cells << Cell{*fields[i], row[i]};
        }
        if (row[sourceColumn] == kEveryRow)
            everyRow << cells;
        else if (!row[sourceColumn].isEmpty())
            rows.emplace_back(row[sourceColumn], cells);
    }
    for (const auto& [sourceFile, cells] : rows)
        import.addRow(absolutePath(baseFolder, sourceFile), sourceFile, everyRow + cells);
    return import;
}

void CsvImport::addRow(const QString& path, const QString& sourceFile, const QList<Cell>& cells) {
    if (!QFileInfo(path).isFile()) {
        m_problems.missingFiles << sourceFile;
        return;
    }
    // Each cell is tried on its own, so that one a field does not take is told before the
    // run and left out of it.
    QList<Cell> taken;
    for (const Cell& cell : cells) {
        RunValues trial;
        trial.editedProperties = FormSnapshot::empty();
        if (auto refused = applyCell(trial, cell.field, cell.text)) {
            m_problems.refusedCells
                << QStringLiteral("%1: %2: %3")
                       .arg(sourceFile, CsvColumns::nameOf(cell.field), *refused);
            continue;
        }
        taken << cell;
        m_holdsTemplates = m_holdsTemplates || cell.text.contains(QLatin1Char('{'));
    }
    if (!m_cells.contains(path))
        m_photos << path;
    // A photo named twice takes its last row, as the metadata tools do.
    m_cells.insert(path, taken);
}

void CsvImport::adjust(const CGImageProperties& record, RunValues& values) const {
    const auto it = m_cells.constFind(absolutePath(QDir::currentPath(), record.path()));
    if (it == m_cells.constEnd())
        return;
    for (const Cell& cell : *it)
        applyCell(values, cell.field, cell.text);
    FormSnapshot::signCoordinates(values.editedProperties);
}

} // namespace tagmoor
