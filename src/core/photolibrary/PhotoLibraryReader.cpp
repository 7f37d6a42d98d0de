#include "photolibrary/PhotoLibraryReader.h"

#include "photolibrary/DatabaseCopy.h"
#include "photolibrary/PhotoLibraryLog.h"
#include "photolibrary/SqliteReader.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QUrlQuery>

namespace tagmoor {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("PhotoLibraryReader", text);
}

const QString packageSuffix = QStringLiteral(".photoslibrary");
const QString newDatabase = QStringLiteral("/database/Photos.sqlite");
const QString oldDatabase = QStringLiteral("/database/photos.db");
const QString digiKamDatabase = QStringLiteral("digikam4.db");
const QString shotwellDatabase = QStringLiteral("photo.db");

// The copy's file name per kind, so that a look into the cache folder tells what it holds.
QString copyNameFor(LibraryKind kind) {
    switch (kind) {
    case LibraryKind::PackageNew:
        return QStringLiteral("photosTempTM.sqlite");
    case LibraryKind::PackageOld:
        return QStringLiteral("photosTempTM.db");
    case LibraryKind::DigiKam:
        return QStringLiteral("digikamTempTM.db");
    case LibraryKind::Shotwell:
        return QStringLiteral("shotwellTempTM.db");
    case LibraryKind::Unknown:
        break;
    }
    return QStringLiteral("libraryTempTM.db");
}

QString otherSchemaNote(const QString& name) {
    return tr("The database of \"%1\" is not one Tagmoor can read, so no photos were added "
              "from it.")
        .arg(name);
}

// The folder of a digiKam collection root on this machine. The identifier names the volume
// ("volumeid:?uuid=..." or "volumeid:?path=..."); specificPath is the root's path within it.
QString digiKamRootPath(const QString& identifier, const QString& specificPath) {
    const int query = identifier.indexOf(QLatin1Char('?'));
    const QUrlQuery items(query < 0 ? QString() : identifier.mid(query + 1));
    if (items.hasQueryItem(QStringLiteral("path")))
        return items.queryItemValue(QStringLiteral("path"), QUrl::FullyDecoded);
    QString mountPoint;
    if (items.hasQueryItem(QStringLiteral("uuid"))) {
        const QString device = QFileInfo(QStringLiteral("/dev/disk/by-uuid/") +
                                         items.queryItemValue(QStringLiteral("uuid")))
                                   .canonicalFilePath();
        for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
            if (!device.isEmpty() && QString::fromLocal8Bit(volume.device()) == device) {
                mountPoint = volume.rootPath();
                break;
            }
        }
    }
    if (mountPoint == QLatin1String("/"))
        mountPoint.clear();
    return mountPoint + specificPath;
}

QString joinPath(const QString& folder, const QString& name) {
    if (folder.endsWith(QLatin1Char('/')))
        return folder + name;
    return folder + QLatin1Char('/') + name;
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
            source.note = tr("The library \"%1\" holds no photo database, so no photos were "
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
            if (QFileInfo(joinPath(path, candidate)).isFile()) {
                database = joinPath(path, candidate);
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
        source.note = tr("\"%1\" is not a photo library Tagmoor can read.").arg(source.name);
        return source;
    }
    source.databasePath = database;
    source.root = QFileInfo(database).absolutePath();
    source.name = fileName;
    return source;
}

struct PhotoLibraryReader::Session {
    explicit Session(const QString& cacheRoot) : copy(cacheRoot) {}
    DatabaseCopy copy;
    SqliteReader db;
    QString assetTable; // package, new schema: ZASSET, or ZGENERICASSET in earlier years
    QString joinTable;  // package, new schema: the numbered album-to-asset table
    QString joinAlbums; // its album column
    QString joinAssets; // its asset column
};

PhotoLibraryReader::PhotoLibraryReader(const QString& chosenPath, const QString& cacheRoot)
    : m_source(identifyLibrary(chosenPath)), m_cacheRoot(cacheRoot) {}

PhotoLibraryReader::~PhotoLibraryReader() = default;

bool PhotoLibraryReader::open() {
    m_note.clear();
    if (m_session)
        return true;
    if (m_source.kind == LibraryKind::Unknown) {
        m_note = m_source.note;
        qCInfo(lcPhotoLibrary).noquote() << m_note;
        return false;
    }
    auto session = std::make_unique<Session>(m_cacheRoot);
    if (!session->copy.copyFrom(m_source.databasePath, copyNameFor(m_source.kind)) ||
        !session->db.open(session->copy.path())) {
        m_note = tr("The database of \"%1\" could not be read, so no photos were added from it.")
                     .arg(m_source.name);
        return false;
    }
    SqliteReader& db = session->db;
    bool known = false;
    switch (m_source.kind) {
    case LibraryKind::PackageNew: {
        for (const QString& table : {QStringLiteral("ZASSET"), QStringLiteral("ZGENERICASSET")}) {
            if (db.hasTable(table)) {
                session->assetTable = table;
                break;
            }
        }
        known = !session->assetTable.isEmpty() &&
                db.columnsOf(session->assetTable).contains(QStringLiteral("ZDIRECTORY")) &&
                db.hasTable(QStringLiteral("ZADDITIONALASSETATTRIBUTES"));
        break;
    }
    case LibraryKind::PackageOld:
        known = db.hasTable(QStringLiteral("RKMaster")) && db.hasTable(QStringLiteral("RKVersion"));
        break;
    case LibraryKind::DigiKam:
        known = db.hasTable(QStringLiteral("Images")) && db.hasTable(QStringLiteral("Albums")) &&
                db.hasTable(QStringLiteral("AlbumRoots"));
        break;
    case LibraryKind::Shotwell:
        known = db.hasTable(QStringLiteral("PhotoTable"));
        break;
    case LibraryKind::Unknown:
        break;
    }
    if (!known) {
        m_note = otherSchemaNote(m_source.name);
        qCInfo(lcPhotoLibrary).noquote() << m_note;
        return false;
    }
    m_session = std::move(session);
    return true;
}

namespace {

// Package, new schema: the name and folder of the stored original, its uuid (read, not
// used), the original's size and its name, then the asset key.
QString newAssetColumns(const QString& asset) {
    return QStringLiteral("a.ZFILENAME, a.ZDIRECTORY, a.ZUUID, attr.ZORIGINALFILESIZE, "
                          "attr.ZORIGINALFILENAME, a.Z_PK FROM %1 a "
                          "LEFT JOIN ZADDITIONALASSETATTRIBUTES attr "
                          "ON attr.Z_PK = a.ZADDITIONALATTRIBUTES")
        .arg(asset);
}

LibraryItem newItem(const QString& root, const SqliteReader::Row& row) {
    PhotoLibraryProperties p;
    p.RKVfilename = row.value(0);
    p.RKMimagePath = row.value(1);
    p.RKMFilSize = row.value(3);
    p.OriginalFileName = row.value(4);
    // A referenced original keeps its absolute folder; the others lie in the package.
    const QString folder = p.RKMimagePath.startsWith(QLatin1Char('/'))
                               ? p.RKMimagePath
                               : root + QStringLiteral("/originals/") + p.RKMimagePath;
    return {folder + QLatin1Char('/') + p.RKVfilename, p};
}

// Package, old schema: master key, image path, size, version uuid, master uuid, file name,
// version key, original name and whether the master is referenced rather than copied in.
const QString oldColumns =
    QStringLiteral("m.modelId, m.imagePath, m.fileSize, v.uuid, m.uuid, m.fileName, v.modelId, "
                   "m.originalFileName, m.fileIsReference");
const QString oldTables =
    QStringLiteral("FROM RKVersion v JOIN RKMaster m ON m.uuid = v.masterUuid");

LibraryItem oldItem(const QString& root, const SqliteReader::Row& row, const QString& albumKey) {
    PhotoLibraryProperties p;
    p.RKMimagePath = row.value(1);
    p.RKMFilSize = row.value(2);
    p.RKVuuid = row.value(3);
    p.RKMuuid = row.value(4);
    p.RKVfilename = row.value(5);
    p.RKVmodelId = row.value(6);
    p.OriginalFileName = row.value(7);
    p.RKAVMId = albumKey;
    const bool referenced = row.value(8) == QLatin1String("1");
    return {(referenced ? QStringLiteral("/") : root + QStringLiteral("/Masters/")) +
                p.RKMimagePath,
            p};
}

const QString digiKamColumns =
    QStringLiteral("r.identifier, r.specificPath, a.relativePath, i.name FROM Images i "
                   "JOIN Albums a ON a.id = i.album JOIN AlbumRoots r ON r.id = a.albumRoot");
// Visible photos only: status 1 is a file on disk, category 1 an image.
const QString digiKamVisible = QStringLiteral("i.status = 1 AND i.category = 1");

LibraryItem digiKamItem(const SqliteReader::Row& row) {
    QString folder = digiKamRootPath(row.value(0), row.value(1));
    const QString relative = row.value(2);
    if (relative != QLatin1String("/"))
        folder += relative;
    return {joinPath(folder, row.value(3)), std::nullopt};
}

// Shotwell keeps a tag's members as one text: "thumb" and the photo id in 16 hex digits for
// a photo, "video-" and an id for a video, separated by commas.
QStringList shotwellPhotoIds(const QString& list) {
    QStringList ids;
    for (const QString& entry : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString trimmed = entry.trimmed();
        if (!trimmed.startsWith(QLatin1String("thumb")))
            continue;
        bool ok = false;
        const qint64 id = trimmed.mid(5).toLongLong(&ok, 16);
        if (ok)
            ids << QString::number(id);
    }
    return ids;
}

} // namespace

QList<LibraryAlbum> PhotoLibraryReader::albums() {
    QList<LibraryAlbum> out;
    if (!open())
        return out;
    SqliteReader& db = m_session->db;
    auto addNamed = [&out](const QString& key, const QString& name) {
        if (name.isNull()) {
            qCDebug(lcPhotoLibrary) << "albumName not found";
            return;
        }
        out.append({key, name, true});
    };
    switch (m_source.kind) {
    case LibraryKind::PackageNew:
        // Kind 2 is an album the user made; the others are smart and system albums.
        db.select(QStringLiteral("SELECT Z_PK, ZTITLE FROM ZGENERICALBUM WHERE ZKIND = 2 AND "
                                 "COALESCE(ZTRASHEDSTATE, 0) = 0 ORDER BY ZTITLE, Z_PK"),
                  {}, [&](const SqliteReader::Row& r) { addNamed(r.value(0), r.value(1)); });
        break;
    case LibraryKind::PackageOld:
        // Subclass 3 is an album the user made.
        db.select(QStringLiteral("SELECT modelId, name FROM RKAlbum WHERE albumSubclass = 3 AND "
                                 "COALESCE(isInTrash, 0) = 0 ORDER BY name, modelId"),
                  {}, [&](const SqliteReader::Row& r) { addNamed(r.value(0), r.value(1)); });
        break;
    case LibraryKind::DigiKam: {
        db.select(QStringLiteral("SELECT a.id, a.relativePath, r.label FROM Albums a "
                                 "JOIN AlbumRoots r ON r.id = a.albumRoot "
                                 "ORDER BY r.id, a.relativePath"),
                  {}, [&](const SqliteReader::Row& r) {
                      QString name = r.value(1);
                      if (name == QLatin1String("/"))
                          name = r.value(2).isEmpty() ? name : r.value(2);
                      else if (name.startsWith(QLatin1Char('/')))
                          name = name.mid(1);
                      addNamed(QStringLiteral("a:") + r.value(0), name);
                  });
        // Tags below digiKam's own internal root are its bookkeeping, not the user's.
        db.select(QStringLiteral(
                      "SELECT id, name FROM Tags WHERE name <> '_Digikam_Internal_Tags_' AND "
                      "pid NOT IN (SELECT id FROM Tags WHERE name = '_Digikam_Internal_Tags_') "
                      "ORDER BY name, id"),
                  {}, [&](const SqliteReader::Row& r) {
                      addNamed(QStringLiteral("t:") + r.value(0),
                               r.value(1).isNull() ? QString() : tr("Tag: %1").arg(r.value(1)));
                  });
        break;
    }
    case LibraryKind::Shotwell:
        if (db.hasTable(QStringLiteral("EventTable"))) {
            db.select(QStringLiteral("SELECT e.id, e.name, MIN(p.exposure_time) FROM EventTable e "
                                     "LEFT JOIN PhotoTable p ON p.event_id = e.id "
                                     "GROUP BY e.id ORDER BY MIN(p.exposure_time), e.id"),
                      {}, [&](const SqliteReader::Row& r) {
                          QString name = r.value(1);
                          // An event the user did not name is shown by its first day.
                          if (name.isEmpty())
                              name = tr("Event of %1")
                                         .arg(QDateTime::fromSecsSinceEpoch(r.value(2).toLongLong())
                                                  .date()
                                                  .toString(Qt::ISODate));
                          addNamed(QStringLiteral("e:") + r.value(0), name);
                      });
        }
        if (db.hasTable(QStringLiteral("TagTable"))) {
            db.select(QStringLiteral("SELECT id, name FROM TagTable ORDER BY name, id"), {},
                      [&](const SqliteReader::Row& r) {
                          addNamed(QStringLiteral("t:") + r.value(0),
                                   r.value(1).isNull() ? QString() : tr("Tag: %1").arg(r.value(1)));
                      });
        }
        break;
    case LibraryKind::Unknown:
        break;
    }
    return out;
}

LibraryRead PhotoLibraryReader::readAll() {
    LibraryRead read;
    if (!open()) {
        read.note = m_note;
        return read;
    }
    SqliteReader& db = m_session->db;
    const QString& root = m_source.root;
    bool prepared = false;
    switch (m_source.kind) {
    case LibraryKind::PackageNew:
        prepared =
            db.select(QStringLiteral("SELECT %1 WHERE COALESCE(a.ZTRASHEDSTATE, 0) = 0 "
                                     "ORDER BY a.Z_PK")
                          .arg(newAssetColumns(m_session->assetTable)),
                      {}, [&](const SqliteReader::Row& r) { read.items << newItem(root, r); });
        break;
    case LibraryKind::PackageOld:
        prepared = db.select(
            QStringLiteral("SELECT %1 %2 WHERE COALESCE(v.isInTrash, 0) = 0 "
                           "ORDER BY v.modelId")
                .arg(oldColumns, oldTables),
            {}, [&](const SqliteReader::Row& r) { read.items << oldItem(root, r, QString()); });
        break;
    case LibraryKind::DigiKam:
        prepared = db.select(
            QStringLiteral("SELECT %1 WHERE %2 ORDER BY i.id").arg(digiKamColumns, digiKamVisible),
            {}, [&](const SqliteReader::Row& r) { read.items << digiKamItem(r); });
        break;
    case LibraryKind::Shotwell:
        prepared = db.select(QStringLiteral("SELECT filename FROM PhotoTable ORDER BY id"), {},
                             [&](const SqliteReader::Row& r) {
                                 read.items << LibraryItem{r.value(0), std::nullopt};
                             });
        break;
    case LibraryKind::Unknown:
        break;
    }
    if (!prepared) {
        m_note = otherSchemaNote(m_source.name);
        read.note = m_note;
    }
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
    SqliteReader& db = m_session->db;
    Session& s = *m_session;
    const QString& root = m_source.root;
    if (m_source.kind == LibraryKind::PackageNew && s.joinTable.isEmpty()) {
        // Album membership lies in a table whose name and columns carry the model's entity
        // numbers ("Z_27ASSETS" with "Z_27ALBUMS" and "Z_3ASSETS"), which change from one
        // release to the next: they are found in the schema.
        static const QRegularExpression numbered(QStringLiteral("^Z_([0-9]{1,2})ASSETS$"));
        db.select(QStringLiteral("SELECT m.name, p.name FROM sqlite_master m, "
                                 "pragma_table_info(m.name) p WHERE m.type = 'table' AND "
                                 "m.name LIKE 'Z\\_%ASSETS' ESCAPE '\\'"),
                  {}, [&](const SqliteReader::Row& r) {
                      if (r.value(0).isNull()) {
                          qCDebug(lcPhotoLibrary) << "Table not found";
                          return;
                      }
                      if (r.value(1).isNull()) {
                          qCDebug(lcPhotoLibrary) << "Column not found";
                          return;
                      }
                      const auto table = numbered.match(r.value(0));
                      const auto column = numbered.match(r.value(1));
                      if (!table.hasMatch() || !column.hasMatch())
                          return;
                      const QString albums = QStringLiteral("Z_%1ALBUMS").arg(table.captured(1));
                      if (!db.columnsOf(r.value(0)).contains(albums))
                          return;
                      s.joinTable = r.value(0);
                      s.joinAlbums = albums;
                      s.joinAssets = r.value(1);
                  });
        if (s.joinTable.isEmpty()) {
            qCWarning(lcPhotoLibrary) << "Table not found";
            m_note = otherSchemaNote(m_source.name);
            read.note = m_note;
            return read;
        }
    }
    for (const LibraryAlbum& album : chosen) {
        if (!album.isSelected)
            continue;
        const int before = int(read.items.size());
        QString key = album.key;
        const QChar kind = key.size() > 2 && key[1] == QLatin1Char(':') ? key[0] : QChar();
        if (!kind.isNull())
            key = key.mid(2);
        switch (m_source.kind) {
        case LibraryKind::PackageNew:
            db.select(
                QStringLiteral("SELECT %1 JOIN %2 j ON j.%3 = a.Z_PK WHERE j.%4 = ? AND "
                               "COALESCE(a.ZTRASHEDSTATE, 0) = 0 ORDER BY a.Z_PK")
                    .arg(newAssetColumns(s.assetTable), s.joinTable, s.joinAssets, s.joinAlbums),
                {key}, [&](const SqliteReader::Row& r) { read.items << newItem(root, r); });
            break;
        case LibraryKind::PackageOld:
            db.select(QStringLiteral("SELECT %1, av.modelId %2 JOIN RKAlbumVersion av ON "
                                     "av.versionId = v.modelId WHERE av.albumId = ? AND "
                                     "COALESCE(v.isInTrash, 0) = 0 ORDER BY v.modelId")
                          .arg(oldColumns, oldTables),
                      {key}, [&](const SqliteReader::Row& r) {
                          read.items << oldItem(root, r, r.value(9));
                      });
            break;
        case LibraryKind::DigiKam:
            if (kind == QLatin1Char('t'))
                db.select(QStringLiteral("SELECT %1 JOIN ImageTags t ON t.imageid = i.id "
                                         "WHERE t.tagid = ? AND %2 ORDER BY i.id")
                              .arg(digiKamColumns, digiKamVisible),
                          {key}, [&](const SqliteReader::Row& r) { read.items << digiKamItem(r); });
            else
                db.select(QStringLiteral("SELECT %1 WHERE a.id = ? AND %2 ORDER BY i.id")
                              .arg(digiKamColumns, digiKamVisible),
                          {key}, [&](const SqliteReader::Row& r) { read.items << digiKamItem(r); });
            break;
        case LibraryKind::Shotwell:
            if (kind == QLatin1Char('t')) {
                const auto lists = db.rows(
                    QStringLiteral("SELECT photo_id_list FROM TagTable WHERE id = ?"), {key});
                for (const QString& id : shotwellPhotoIds(lists.value(0).value(0))) {
                    db.select(QStringLiteral("SELECT filename FROM PhotoTable WHERE id = ?"), {id},
                              [&](const SqliteReader::Row& r) {
                                  read.items << LibraryItem{r.value(0), std::nullopt};
                              });
                }
            } else {
                db.select(QStringLiteral("SELECT filename FROM PhotoTable WHERE event_id = ? "
                                         "ORDER BY exposure_time, id"),
                          {key}, [&](const SqliteReader::Row& r) {
                              read.items << LibraryItem{r.value(0), std::nullopt};
                          });
            }
            break;
        case LibraryKind::Unknown:
            break;
        }
        qCDebug(lcPhotoLibrary).noquote()
            << "Album: " + album.name + " albumID: " + album.key << read.items.size() - before;
    }
    return read;
}

LibraryRead readWholeLibrary(const QString& chosenPath) {
    PhotoLibraryReader reader(chosenPath);
    return reader.readAll();
}

} // namespace tagmoor
