#pragma once

#include "photolibrary/PhotoLibraryTypes.h"

#include <QChar>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace tagmoor {

class SqliteReader;

// What one kind of library keeps where: its schema, its albums and the paths of its
// originals. PhotoLibraryReader copies the database and opens it; one of these reads it.
class LibraryKindReader {
public:
    virtual ~LibraryKindReader() = default;

    // The copy's file name, so that a look into the cache folder tells what it holds.
    virtual QString copyName() const = 0;
    // Whether the database has the tables this reader needs; may note where they are.
    virtual bool knowsSchema(SqliteReader& db) = 0;

    // Calls `add` with the key and name of each album a user may choose from, in the order
    // shown; a null name is an album without one.
    using AddAlbum = std::function<void(const QString& key, const QString& name)>;
    virtual void albums(SqliteReader& db, const AddAlbum& add) = 0;

    // Appends every original of the library; false when the query could not be prepared.
    virtual bool readAll(SqliteReader& db, const QString& root, QList<LibraryItem>& items) = 0;

    // Finds what reading albums needs beyond knowsSchema; false when it is not there.
    virtual bool prepareAlbums(SqliteReader&) { return true; }
    // Appends the originals of one album. `kind` is the letter of an album key ("t:12" is
    // tag 12), null for a key without one; `key` is what follows it.
    virtual void readAlbum(SqliteReader& db, const QString& root, QChar kind, const QString& key,
                           QList<LibraryItem>& items) = 0;
};

// The reader of a kind; none for LibraryKind::Unknown.
std::unique_ptr<LibraryKindReader> readerForKind(LibraryKind kind);

// `folder` and `name` joined by one slash, also when the folder ends in one.
QString joinLibraryPath(const QString& folder, const QString& name);

} // namespace tagmoor
