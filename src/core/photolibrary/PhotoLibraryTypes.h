#pragma once

#include "model/CGImageProperties.h"

#include <QList>
#include <QMetaType>
#include <QString>

namespace tagmoor {

// The kinds of photo collections the reader knows, each told by the database file it holds.
enum class LibraryKind {
    Unknown,
    PackageNew, // a "*.photoslibrary" package with database/Photos.sqlite
    PackageOld, // a "*.photoslibrary" package with database/photos.db
    DigiKam,    // a digiKam collection database, digikam4.db
    Shotwell,   // a Shotwell library database, photo.db
};

// One album of a library as the chooser lists it: a package album, a digiKam folder album or
// tag, a Shotwell event or tag. `key` tells it apart from others of the same name.
struct LibraryAlbum {
    QString key;
    QString name;
    bool isSelected = true;
    bool operator==(const LibraryAlbum&) const = default;
};

// One original named by a library: where it lies on disk and, for a package, the library's
// texts about it.
struct LibraryItem {
    QString path;
    std::optional<PhotoLibraryProperties> properties;
    bool operator==(const LibraryItem&) const = default;
};

// An original the library names that is not added, and why, in the user's words.
struct LibraryLeftOut {
    QString path;
    QString reason;
    bool operator==(const LibraryLeftOut&) const = default;
};

// What one read of a library gave: each original once, in the database's order. `note` says,
// in the user's words, why nothing could be read (no database, a database of another kind);
// empty after a good read. `leftOut` lists the originals that were not taken.
struct LibraryRead {
    QList<LibraryItem> items;
    QString note;
    QList<LibraryLeftOut> leftOut;
};

} // namespace tagmoor

Q_DECLARE_METATYPE(tagmoor::LibraryAlbum)
Q_DECLARE_METATYPE(tagmoor::LibraryItem)
