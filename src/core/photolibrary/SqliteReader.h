#pragma once

#include <QString>
#include <QStringList>

#include <functional>

struct sqlite3;
struct sqlite3_stmt;

namespace tagmoor {

// A thin read-only session on one SQLite file (our private copy): prepared statements,
// every column read as text, and the whole session inside one read transaction so that all
// its statements see the same state.
class SqliteReader {
public:
    SqliteReader() = default;
    ~SqliteReader();
    SqliteReader(const SqliteReader&) = delete;
    SqliteReader& operator=(const SqliteReader&) = delete;

    bool open(const QString& path);
    void close();
    bool isOpen() const { return m_db != nullptr; }

    // One row: each column as text, a null column as a null QString.
    using Row = QStringList;
    // Runs `sql` with `arguments` bound as integers or texts, calling `onRow` per row. False
    // when the statement could not be prepared (logged as "error preparing select: ...").
    bool select(const QString& sql, const QStringList& arguments,
                const std::function<void(const Row&)>& onRow);
    // Convenience: every row at once.
    QList<Row> rows(const QString& sql, const QStringList& arguments = {});

    bool hasTable(const QString& name);
    QStringList columnsOf(const QString& table);
    QString lastError() const { return m_lastError; }

private:
    sqlite3* m_db = nullptr;
    QString m_lastError;
};

} // namespace tagmoor
