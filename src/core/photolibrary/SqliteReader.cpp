#include "photolibrary/SqliteReader.h"

#include "photolibrary/PhotoLibraryLog.h"

#include <sqlite3.h>

namespace tagmoor {

SqliteReader::~SqliteReader() {
    close();
}

bool SqliteReader::open(const QString& path) {
    close();
    // Read and write: SQLite replays the copied write-ahead log or rolls back a copied hot
    // journal on open, which needs to write the copy (never the library's own files).
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &m_db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc != SQLITE_OK) {
        m_lastError = m_db ? QString::fromUtf8(sqlite3_errmsg(m_db)) : QString::number(rc);
        qCWarning(lcPhotoLibrary) << "Could not open the database copy:" << m_lastError;
        close();
        return false;
    }
    sqlite3_busy_timeout(m_db, 2000);
    sqlite3_exec(m_db, "PRAGMA query_only = 1", nullptr, nullptr, nullptr);
    if (sqlite3_exec(m_db, "BEGIN", nullptr, nullptr, nullptr) != SQLITE_OK)
        m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db));
    return true;
}

void SqliteReader::close() {
    if (!m_db)
        return;
    sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close_v2(m_db);
    m_db = nullptr;
}

bool SqliteReader::select(const QString& sql, const QStringList& arguments,
                          const std::function<void(const Row&)>& onRow) {
    if (!m_db)
        return false;
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &statement, nullptr) != SQLITE_OK) {
        m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db));
        qCWarning(lcPhotoLibrary).noquote() << "error preparing select: " + m_lastError;
        sqlite3_finalize(statement);
        return false;
    }
    for (int i = 0; i < arguments.size(); ++i) {
        bool isNumber = false;
        const qint64 number = arguments[i].toLongLong(&isNumber);
        if (isNumber) {
            sqlite3_bind_int64(statement, i + 1, number);
        } else {
            const QByteArray text = arguments[i].toUtf8();
            sqlite3_bind_text(statement, i + 1, text.constData(), int(text.size()),
                              SQLITE_TRANSIENT);
        }
    }
    const int columns = sqlite3_column_count(statement);
    Row row;
    row.reserve(columns);
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
        row.clear();
        for (int c = 0; c < columns; ++c) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, c));
            row << (text ? QString::fromUtf8(text, sqlite3_column_bytes(statement, c)) : QString());
        }
        onRow(row);
    }
    if (rc != SQLITE_DONE) {
        m_lastError = QString::fromUtf8(sqlite3_errmsg(m_db));
        qCWarning(lcPhotoLibrary) << "Reading rows stopped:" << m_lastError;
    }
    if (sqlite3_finalize(statement) != SQLITE_OK && rc == SQLITE_DONE)
        qCWarning(lcPhotoLibrary) << "error finalizing statement:" << sqlite3_errmsg(m_db);
    return true;
}

QList<SqliteReader::Row> SqliteReader::rows(const QString& sql, const QStringList& arguments) {
    QList<Row> out;
    select(sql, arguments, [&out](const Row& row) { out << row; });
    return out;
}

bool SqliteReader::hasTable(const QString& name) {
    return !rows(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name = ?"),
                 {name})
                .isEmpty();
}

QStringList SqliteReader::columnsOf(const QString& table) {
    QStringList out;
    for (const Row& row : rows(QStringLiteral("SELECT name FROM pragma_table_info(?)"), {table}))
        out << row.value(0);
    return out;
}

} // namespace tagmoor
