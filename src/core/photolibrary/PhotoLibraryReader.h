#pragma once

#include "photolibrary/PhotoLibraryTypes.h"

#include <QString>

#include <memory>

namespace tagmoor {

// Where a chosen path leads: the kind of library, its root and its database.
struct LibrarySource {
    LibraryKind kind = LibraryKind::Unknown;
    QString root;         // the package folder, or the folder of a manager's database
    QString databasePath; // the database inside it; empty when none was found
    QString name;         // what the chooser calls it ("Photos Library", "digikam4.db")
    QString note;         // why it cannot be read; empty when it can be tried
};

// Tells a library by the files it holds: a "*.photoslibrary" package (database/Photos.sqlite
// for the new schema, database/photos.db for the old), a digikam4.db or a Shotwell photo.db,
// chosen directly or through the folder that holds it.
LibrarySource identifyLibrary(const QString& chosenPath);

// Reads one library through a private copy of its database; the library itself is only read.
// Each read lists the originals in the database's order, each once however many versions or
// albums name it. In a package, an original that the library keeps inside it must be inside
// it: a folder with "..", or a link that leads out, is left out with the reason. Originals the
// library marks as referenced from elsewhere keep their own folders. Runs on any one thread at
// a time.
class PhotoLibraryReader {
public:
    explicit PhotoLibraryReader(const QString& chosenPath, const QString& cacheRoot = {});
    ~PhotoLibraryReader();

    const LibrarySource& source() const { return m_source; }

    // The albums a user may choose from, in the order shown.
    QList<LibraryAlbum> albums();
    // Every original of the library.
    LibraryRead readAll();
    // The originals of the albums marked selected, album after album.
    LibraryRead readAlbums(const QList<LibraryAlbum>& chosen);

    // Why the last call gave nothing; empty after a good read.
    QString note() const { return m_note; }

private:
    struct Session;
    bool open();

    LibrarySource m_source;
    QString m_cacheRoot;
    QString m_note;
    std::unique_ptr<Session> m_session;
};

// The reader the scan calls for a package staged as a whole.
LibraryRead readWholeLibrary(const QString& chosenPath);

} // namespace tagmoor
