#pragma once

#include <QString>

#include <memory>

class QTemporaryDir;

namespace tagmoor {

// A private copy of an SQLite database and its companions (write-ahead log, shared memory,
// rollback journal, lock), in a folder of its own under the cache folder. The source is only
// ever read; the copy is removed with the object. Another program may be writing the
// database while it is copied: the copy is taken again until no source file moved during it,
// and SQLite's own recovery on the copy drops a transaction that was half-written.
class DatabaseCopy {
public:
    // `cacheRoot` empty: the application's cache folder.
    explicit DatabaseCopy(const QString& cacheRoot = {});
    ~DatabaseCopy();
    DatabaseCopy(const DatabaseCopy&) = delete;
    DatabaseCopy& operator=(const DatabaseCopy&) = delete;

    // Copies `databasePath` with its companions under `copyName`. False when the database is
    // not a readable file or the copy could not be written.
    bool copyFrom(const QString& databasePath, const QString& copyName);

    // The path of the copied database; empty before a good copy.
    QString path() const { return m_path; }

    // Suffixes of the files that travel with a database.
    static const QStringList& companionSuffixes();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_path;
};

} // namespace tagmoor
