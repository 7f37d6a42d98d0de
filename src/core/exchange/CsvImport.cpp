#include "exchange/CsvImport.h"

#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "dates/DateField.h"
#include "editor/FieldValueCheck.h"
#include "exchange/CsvColumns.h"
#include "metadata/PropertyLoading.h"
#include "model/FormFieldTable.h"
#include "model/Keywords.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>

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

// A coordinate as degrees, minutes and seconds with its hemisphere: 54 deg 59' 22.80" N.
std::optional<double> degreesOf(const QString& text) {
    static thread_local const QRegularExpression dms(QStringLiteral(
        R"re(^(\d+(?:\.\d+)?) deg (\d+(?:\.\d+)?)' (\d+(?:\.\d+)?)"(?: ([NSEW]))?$)re"));
    const QRegularExpressionMatch m = dms.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    const double degrees = m.captured(1).toDouble() + m.captured(2).toDouble() / 60.0 +
                           m.captured(3).toDouble() / 3600.0;
    const QString hemisphere = m.captured(4);
    return hemisphere == QLatin1String("S") || hemisphere == QLatin1String("W") ? -degrees
                                                                                : degrees;
}

// A number as the metadata tools print it without their option for plain numbers: a fraction
// ("1/155") or a number with its unit and words after it ("6.0 mm", "14.2 m Below Sea Level").
std::optional<double> printedNumberOf(const QString& text) {
    static thread_local const QRegularExpression fraction(
        QStringLiteral(R"(^(-?\d+(?:\.\d+)?)/(\d+(?:\.\d+)?)$)"));
    static thread_local const QRegularExpression withUnit(
        QStringLiteral(R"(^(-?\d+(?:\.\d+)?) ?[A-Za-z].*$)"));
    if (const QRegularExpressionMatch m = fraction.match(text); m.hasMatch()) {
        const double divisor = m.captured(2).toDouble();
        if (divisor != 0.0)
            return m.captured(1).toDouble() / divisor;
    }
    if (const QRegularExpressionMatch m = withUnit.match(text); m.hasMatch())
        return m.captured(1).toDouble();
    return std::nullopt;
}

// The text the form takes for a cell written in the tools' printed form rather than in plain
// numbers: hemisphere and sea level words, coordinates in degrees, minutes and seconds,
// fractions and lengths. Any other text stays as it is.
QString plainValue(Field field, const QString& text) {
    const QString t = text.trimmed();
    if (field == Field::GPSLatitudeRef || field == Field::GPSLongitudeRef) {
        static const QHash<QString, QString> words{{QStringLiteral("north"), QStringLiteral("N")},
                                                   {QStringLiteral("south"), QStringLiteral("S")},
                                                   {QStringLiteral("east"), QStringLiteral("E")},
                                                   {QStringLiteral("west"), QStringLiteral("W")}};
        return words.value(t.toLower(), text);
    }
    if (field == Field::GPSAltitudeRef) {
        if (t.compare(QLatin1String("Above Sea Level"), Qt::CaseInsensitive) == 0)
            return QStringLiteral("0");
        if (t.compare(QLatin1String("Below Sea Level"), Qt::CaseInsensitive) == 0)
            return QStringLiteral("1");
        return text;
    }
    const FormKind kind = formKind(field);
    bool isNumber = false;
    t.toDouble(&isNumber);
    if ((kind != FormKind::Decimal && kind != FormKind::Integer) || isNumber)
        return text;
    std::optional<double> number;
    if (field == Field::GPSLatitude || field == Field::GPSLongitude)
        number = degreesOf(t);
    if (!number)
        number = printedNumberOf(t);
    return number ? QString::number(*number, 'g', 17) : text;
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

// The other tool's column of XMP keywords: "Subject", alone or with an XMP group.
bool isSubjectColumn(const QString& heading) {
    const qsizetype colon = heading.indexOf(QLatin1Char(':'));
    const QString group = colon < 0 ? QString() : heading.left(colon);
    return heading.mid(colon + 1).compare(QLatin1String("Subject"), Qt::CaseInsensitive) == 0 &&
           (group.isEmpty() || group.startsWith(QLatin1String("XMP"), Qt::CaseInsensitive));
}

} // namespace

// A photo's keywords are one list, its IPTC and XMP keywords together, and an edited list
// replaces both: so the XMP keywords of a row join its Keywords cell.
void CsvImport::addSubject(QList<Cell>& cells, const QString& subject) {
    if (subject.isEmpty() || subject == kErase)
        return;
    for (Cell& cell : cells) {
        if (cell.field != Field::Keywords)
            continue;
        if (cell.text != kErase)
            cell.text = joinKeywords(splitKeywords(cell.text + QStringLiteral(", ") + subject));
        return;
    }
    cells << Cell{Field::Keywords, subject};
}

std::optional<QString> CsvImport::applyCell(RunValues& values, Field field, const QString& text) {
    if (const auto date = dateFieldOf(field))
        return applyDate(values, *date, text);
    const FormField& form = formField(field);
    values.editedProperties = withKeyGroups(values.editedProperties);
    if (text == kErase) {
        eraseField(values, form);
        return std::nullopt;
    }
    if (auto problem =
            FormSnapshot::setText(values.editedProperties, form, plainValue(field, text)))
        return problem;
    if (auto refused = refusedFieldValue(form, values.editedProperties))
        return refused;
    values.fieldEditedFlags.set(field);
    return std::nullopt;
}

std::optional<CsvImport> CsvImport::fromTable(const CsvTable& table, const QString& baseFolder,
                                              QString* error) {
    // The column of the paths, in any case of its name, as the metadata tools take it.
    const QLatin1String sourceName(CsvColumns::sourceFile);
    qsizetype sourceColumn = -1;
    for (qsizetype i = 0; i < table.header.size() && sourceColumn < 0; ++i) {
        if (table.header[i].compare(sourceName, Qt::CaseInsensitive) == 0)
            sourceColumn = i;
    }
    if (sourceColumn < 0) {
        *error = QStringLiteral("the table has no SourceFile column");
        return std::nullopt;
    }
    CsvImport import;
    QList<std::optional<Field>> fields;
    QList<qsizetype> subjectColumns;
    for (qsizetype i = 0; i < table.header.size(); ++i) {
        fields << (i == sourceColumn ? std::nullopt : CsvColumns::fieldOf(table.header[i]));
        if (i != sourceColumn && !fields.back() && isSubjectColumn(table.header[i]))
            subjectColumns << i;
        else if (i != sourceColumn && !fields.back())
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
        for (const qsizetype i : subjectColumns)
            addSubject(cells, row[i]);
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
