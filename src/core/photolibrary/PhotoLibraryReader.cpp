#include "photolibrary/PhotoLibraryReader.h"

#include "photolibrary/DatabaseCopy.h"
#include "photolibrary/LibraryKindReader.h"
#include "photolibrary/PhotoLibraryLog.h"
#include "photolibrary/SqliteReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace tagmoor {

namespace {

const QString packageSuffix = QStringLiteral(".photoslibrary");
const QString newDatabase = QStringLiteral("/database/Photos.sqlite");
const QString oldDatabase = QStringLiteral("/database/photos.db");
const QString digiKamDatabase = QStringLiteral("digikam4.db");
const QString shotwellDatabase = QStringLiteral("photo.db");

bool isPackage(LibraryKind kind) {
    return kind == LibraryKind::PackageNew || kind == LibraryKind::PackageOld;
}

// Whether `path` lies inside the folder `root`, by its written form and, where it exists, by
// where its links lead.
bool liesInside(const QString& path, const QString& root, const QString& realRoot) {
    const auto under = [](const QString& p, const QString& folder) {
        return !folder.isEmpty() && p.startsWith(folder + QLatin1Char('/'));
    };
    if (!under(QDir::cleanPath(path), root))
        return false;
    const QString real = QFileInfo(path).canonicalFilePath();
    return real.isEmpty() || under(real, realRoot);
}

// Keeps the first naming of each original, and in a package only the originals that are
// where the library says they are kept: those written below the package must stay below it.
void settleItems(LibraryRead& read, const LibrarySource& source) {
    const QString root = QDir::cleanPath(source.root);
    const QString realRoot = QFileInfo(root).canonicalFilePath();
    QSet<QString> seen;
    QList<LibraryItem> kept;
    for (LibraryItem& item : read.items) {
        if (seen.contains(item.path))
            continue;
        seen.insert(item.path);
        if (isPackage(source.kind) && item.path.startsWith(root + QLatin1Char('/')) &&
            !liesInside(item.path, root, realRoot)) {
            read.leftOut.append(
                {item.path, QCoreApplication::translate("PhotoLibraryReader",
                                                        "it leads outside the library \"%1\"")
                                .arg(source.name)});
            qCWarning(lcPhotoLibrary).noquote() << "left out, outside the package:" << item.path;
            continue;
        }
        kept.append(std::move(item));
    }
    read.items = std::move(kept);
}

QString otherSchemaNote(const QString& name) {
    return QCoreApplication::translate(
               "PhotoLibraryReader",
               "The database of \"%1\" is not one Tagmoor can read, so no photos were added "
               "from it.")
        .arg(name);
}

} // namespace

LibrarySource identifyLibrary(const QString& chosenPath) {
    LibrarySource source;
    QString path = QDir::cleanPath(chosenPath);
    // The database of a package chosen directly stands for its package.
    if (const int at = path.indexOf(packageSuffix + QStringLiteral("/database/")); at > 0)
        path.truncate(at + packageSuffix.size());
    const QFileInfo info(path);
    source.name = info.fileName();
    if (info.isDir() && path.endsWith(packageSuffix)) {
        source.root = path;
        source.name = info.completeBaseName();
        if (QFileInfo(path + newDatabase).isFile()) {
            source.kind = LibraryKind::PackageNew;
            source.databasePath = path + newDatabase;
        } else if (QFileInfo(path + oldDatabase).isFile()) {
            source.kind = LibraryKind::PackageOld;
            source.databasePath = path + oldDatabase;
        } else {
            source.note = QCoreApplication::translate(
                              "PhotoLibraryReader",
                              "The library \"%1\" holds no photo database, so no photos were "
                              "added from it.")
                              .arg(source.name);
        }
        return source;
    }
    QString database;
    if (info.isFile()) {
        database = path;
    } else if (info.isDir()) {
        for (const QString& candidate :
             {digiKamDatabase, shotwellDatabase, QStringLiteral("data/") + shotwellDatabase}) {
            if (QFileInfo(joinLibraryPath(path, candidate)).isFile()) {
                database = joinLibraryPath(path, candidate);
                break;
            }
        }
    }
    const QString fileName = QFileInfo(database).fileName();
    if (fileName == digiKamDatabase)
        source.kind = LibraryKind::DigiKam;
    else if (fileName == shotwellDatabase)
        source.kind = LibraryKind::Shotwell;
    if (source.kind == LibraryKind::Unknown) {
        source.note = QCoreApplication::translate("PhotoLibraryReader",
                                                  "\"%1\" is not a photo library Tagmoor can read.")
                          .arg(source.name);
        return source;
    }
    source.databasePath = database;
    source.root = QFileInfo(database).absolutePath();
    source.name = fileName;
    return source;
}

struct PhotoLibraryReader::Session {
    Session(const QString& cacheRoot, std::unique_ptr<LibraryKindReader> reader)
        : copy(cacheRoot), kind(std::move(reader)) {}
    DatabaseCopy copy;
    SqliteReader db;
    std::unique_ptr<LibraryKindReader> kind;
};

PhotoLibraryReader::PhotoLibraryReader(const QString& chosenPath, const QString& cacheRoot)
    : m_source(identifyLibrary(chosenPath)), m_cacheRoot(cacheRoot) {}

PhotoLibraryReader::~PhotoLibraryReader() = default;

bool PhotoLibraryReader::open() {
    m_note.clear();
    if (m_session)
        return true;
    std::unique_ptr<LibraryKindReader> reader = readerForKind(m_source.kind);
    if (!reader) {
        m_note = m_source.note;
        qCInfo(lcPhotoLibrary).noquote() << m_note;
        return false;
    }
    const QString copyName = reader->copyName();
    auto session = std::make_unique<Session>(m_cacheRoot, std::move(reader));
    if (!session->copy.copyFrom(m_source.databasePath, copyName) ||
        !session->db.open(session->copy.path())) {
        m_note = QCoreApplication::translate(
                     "PhotoLibraryReader",
                     "The database of \"%1\" could not be read, so no photos were added from it.")
                     .arg(m_source.name);
        return false;
    }
    if (!session->kind->knowsSchema(session->db)) {
        m_note = otherSchemaNote(m_source.name);
        qCInfo(lcPhotoLibrary).noquote() << m_note;
        return false;
    }
    m_session = std::move(session);
    return true;
}

QList<LibraryAlbum> PhotoLibraryReader::albums() {
    QList<LibraryAlbum> out;
    if (!open())
        return out;
    m_session->kind->albums(m_session->db, [&out](const QString& key, const QString& name) {
        if (name.isNull()) {
            qCDebug(lcPhotoLibrary) << "albumName not found";
            return;
        }
        out.append({key, name, true});
    });
    return out;
}

LibraryRead PhotoLibraryReader::readAll() {
    LibraryRead read;
    if (!open()) {
        read.note = m_note;
        return read;
    }
    if (!m_session->kind->readAll(m_session->db, m_source.root, read.items)) {
        m_note = otherSchemaNote(m_source.name);
        read.note = m_note;
    }
    settleItems(read, m_source);
    qCInfo(lcPhotoLibrary) << "Read" << read.items.size() << "originals from"
                           << m_source.databasePath;
    return read;
}

LibraryRead PhotoLibraryReader::readAlbums(const QList<LibraryAlbum>& chosen) {
    LibraryRead read;
    if (!open()) {
        read.note = m_note;
        return read;
    }
    if (!m_session->kind->prepareAlbums(m_session->db)) {
        m_note = otherSchemaNote(m_source.name);
        read.note = m_note;
        return read;
    }
    for (const LibraryAlbum& album : chosen) {
        if (!album.isSelected)
            continue;
        const int before = int(read.items.size());
        QString key = album.key;
        const QChar kind = key.size() > 2 && key[1] == QLatin1Char(':') ? key[0] : QChar();
        if (!kind.isNull())
            key = key.mid(2);
        m_session->kind->readAlbum(m_session->db, m_source.root, kind, key, read.items);
        qCDebug(lcPhotoLibrary).noquote()
            << "Album: " + album.name + " albumID: " + album.key << read.items.size() - before;
    }
    settleItems(read, m_source);
    return read;
}

LibraryRead readWholeLibrary(const QString& chosenPath) {
    PhotoLibraryReader reader(chosenPath);
    return reader.readAll();
}

} // namespace tagmoor
