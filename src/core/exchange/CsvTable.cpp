#include "exchange/CsvTable.h"

namespace tagmoor {

namespace {

QString joinedLine(const QStringList& cells) {
    QStringList line;
    line.reserve(cells.size());
    for (const QString& cell : cells)
        line << CsvTable::quoted(cell);
    return line.join(QLatin1Char(',')) + QLatin1Char('\n');
}

// Reads the lines of a table one cell at a time.
class CsvReader {
public:
    explicit CsvReader(const QString& text) : m_text(text) {}

    bool atEnd() const { return m_pos >= m_text.size(); }

    // The cells of the next line.
    QStringList line() {
        QStringList cells;
        for (;;) {
            cells << cell();
            if (atEnd())
                break;
            const QChar c = m_text[m_pos++];
            if (c == QLatin1Char(','))
                continue;
            // A line break ends the line: "\r\n" counts as one.
            if (c == QLatin1Char('\r') && !atEnd() && m_text[m_pos] == QLatin1Char('\n'))
                ++m_pos;
            break;
        }
        return cells;
    }

private:
    static bool isBreak(QChar c) { return c == QLatin1Char('\n') || c == QLatin1Char('\r'); }

    QString cell() {
        while (!atEnd() && m_text[m_pos] == QLatin1Char(' '))
            ++m_pos;
        if (!atEnd() && m_text[m_pos] == QLatin1Char('"'))
            return quotedCell();
        const qsizetype start = m_pos;
        while (!atEnd() && m_text[m_pos] != QLatin1Char(',') && !isBreak(m_text[m_pos]))
            ++m_pos;
        QString value = m_text.mid(start, m_pos - start);
        while (value.endsWith(QLatin1Char(' ')))
            value.chop(1);
        return value;
    }

    QString quotedCell() {
        ++m_pos;
        QString value;
        while (!atEnd()) {
            const QChar c = m_text[m_pos++];
            if (c != QLatin1Char('"')) {
                value += c;
            } else if (!atEnd() && m_text[m_pos] == QLatin1Char('"')) {
                value += c;
                ++m_pos;
            } else {
                break;
            }
        }
        // What follows the closing quote up to the next separator is ignored.
        while (!atEnd() && m_text[m_pos] != QLatin1Char(',') && !isBreak(m_text[m_pos]))
            ++m_pos;
        return value;
    }

    const QString m_text;
    qsizetype m_pos = 0;
};

} // namespace

QString CsvTable::quoted(const QString& cell) {
    const bool needsQuotes = cell.contains(QLatin1Char('"')) || cell.contains(QLatin1Char(',')) ||
                             cell.contains(QLatin1Char('\n')) || cell.contains(QLatin1Char('\r')) ||
                             (!cell.isEmpty() && (cell.front().isSpace() || cell.back().isSpace()));
    if (!needsQuotes)
        return cell;
    QString escaped = cell;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QByteArray CsvTable::toText() const {
    QString text = joinedLine(header);
    for (const QStringList& row : rows)
        text += joinedLine(row);
    return text.toUtf8();
}

std::optional<CsvTable> CsvTable::parse(const QByteArray& bytes, QString* error) {
    QString text = QString::fromUtf8(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    CsvReader reader(text);
    CsvTable table;
    while (!reader.atEnd() && table.header.isEmpty()) {
        table.header = reader.line();
        // A header ends at its first empty name (a comma at the end of the line).
        const qsizetype blank = table.header.indexOf(QString());
        if (blank >= 0)
            table.header = table.header.first(blank);
    }
    if (table.header.isEmpty()) {
        *error = QStringLiteral("the file holds no line of column names");
        return std::nullopt;
    }
    while (!reader.atEnd()) {
        QStringList row = reader.line();
        if (row.size() == 1 && row.front().isEmpty())
            continue;
        while (row.size() < table.header.size())
            row << QString();
        table.rows << row.first(table.header.size());
    }
    return table;
}

} // namespace tagmoor
