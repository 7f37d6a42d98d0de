#include "photolibrary/LibraryKindReader.h"

#include "photolibrary/PhotoLibraryLog.h"
#include "photolibrary/SqliteReader.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QUrlQuery>

namespace tagmoor {

QString joinLibraryPath(const QString& folder, const QString& name) {
    if (folder.endsWith(QLatin1Char('/')))
        return folder + name;
    return folder + QLatin1Char('/') + name;
}

namespace {

// Package, new schema: the stored originals in ZASSET (ZGENERICASSET in earlier years), album
// membership in a numbered join table.
class PackageNewReader : public LibraryKindReader {
public:
    QString copyName() const override { return QStringLiteral("photosTempTM.sqlite"); }

    bool knowsSchema(SqliteReader& db) override {
        for (const QString& table : {QStringLiteral("ZASSET"), QStringLiteral("ZGENERICASSET")}) {
            if (db.hasTable(table)) {
                m_assetTable = table;
                break;
            }
        }
        return !m_assetTable.isEmpty() &&
               db.columnsOf(m_assetTable).contains(QStringLiteral("ZDIRECTORY")) &&
               db.hasTable(QStringLiteral("ZADDITIONALASSETATTRIBUTES"));
    }

    void albums(SqliteReader& db, const AddAlbum& add) override {
        // Kind 2 is an album the user made; the others are smart and system albums.
        db.select(QStringLiteral("SELECT Z_PK, ZTITLE FROM ZGENERICALBUM WHERE ZKIND = 2 AND "
                                 "COALESCE(ZTRASHEDSTATE, 0) = 0 ORDER BY ZTITLE, Z_PK"),
                  {}, [&](const SqliteReader::Row& r) { add(r.value(0), r.value(1)); });
    }

    bool readAll(SqliteReader& db, const QString& root, QList<LibraryItem>& items) override {
        return db.select(QStringLiteral("SELECT %1 WHERE COALESCE(a.ZTRASHEDSTATE, 0) = 0 "
                                        "ORDER BY a.Z_PK")
                             .arg(assetColumns()),
                         {}, [&](const SqliteReader::Row& r) { items << item(root, r); });
    }

    bool prepareAlbums(SqliteReader& db) override {
        if (!m_joinTable.isEmpty())
            return true;
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
                      m_joinTable = r.value(0);
                      m_joinAlbums = albums;
                      m_joinAssets = r.value(1);
                  });
        if (m_joinTable.isEmpty()) {
            qCWarning(lcPhotoLibrary) << "Table not found";
            return false;
        }
        return true;
    }

    void readAlbum(SqliteReader& db, const QString& root, QChar, const QString& key,
                   QList<LibraryItem>& items) override {
        db.select(QStringLiteral("SELECT %1 JOIN %2 j ON j.%3 = a.Z_PK WHERE j.%4 = ? AND "
                                 "COALESCE(a.ZTRASHEDSTATE, 0) = 0 ORDER BY a.Z_PK")
                      .arg(assetColumns(), m_joinTable, m_joinAssets, m_joinAlbums),
                  {key}, [&](const SqliteReader::Row& r) { items << item(root, r); });
    }

private:
    // The name and folder of the stored original, its uuid (read, not used), the original's
    // size and its name, then the asset key.
    QString assetColumns() const {
        return QStringLiteral("a.ZFILENAME, a.ZDIRECTORY, a.ZUUID, attr.ZORIGINALFILESIZE, "
                              "attr.ZORIGINALFILENAME, a.Z_PK FROM %1 a "
                              "LEFT JOIN ZADDITIONALASSETATTRIBUTES attr "
                              "ON attr.Z_PK = a.ZADDITIONALATTRIBUTES")
            .arg(m_assetTable);
    }

    static LibraryItem item(const QString& root, const SqliteReader::Row& row) {
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

    QString m_assetTable; // ZASSET, or ZGENERICASSET in earlier years
    QString m_joinTable;  // the numbered album-to-asset table
    QString m_joinAlbums; // its album column
    QString m_joinAssets; // its asset column
};

// Package, old schema: masters and their versions, albums in RKAlbum.
class PackageOldReader : public LibraryKindReader {
public:
    QString copyName() const override { return QStringLiteral("photosTempTM.db"); }

    bool knowsSchema(SqliteReader& db) override {
        return db.hasTable(QStringLiteral("RKMaster")) && db.hasTable(QStringLiteral("RKVersion"));
    }

    void albums(SqliteReader& db, const AddAlbum& add) override {
        // Subclass 3 is an album the user made.
        db.select(QStringLiteral("SELECT modelId, name FROM RKAlbum WHERE albumSubclass = 3 AND "
                                 "COALESCE(isInTrash, 0) = 0 ORDER BY name, modelId"),
                  {}, [&](const SqliteReader::Row& r) { add(r.value(0), r.value(1)); });
    }

    bool readAll(SqliteReader& db, const QString& root, QList<LibraryItem>& items) override {
        return db.select(QStringLiteral("SELECT %1 %2 WHERE COALESCE(v.isInTrash, 0) = 0 "
                                        "ORDER BY v.modelId")
                             .arg(columns(QStringLiteral("NULL")), tables),
                         {}, [&](const SqliteReader::Row& r) { items << item(root, r); });
    }

    void readAlbum(SqliteReader& db, const QString& root, QChar, const QString& key,
                   QList<LibraryItem>& items) override {
        db.select(QStringLiteral("SELECT %1 %2 JOIN RKAlbumVersion av ON "
                                 "av.versionId = v.modelId WHERE av.albumId = ? AND "
                                 "COALESCE(v.isInTrash, 0) = 0 ORDER BY v.modelId")
                      .arg(columns(QStringLiteral("av.modelId")), tables),
                  {key}, [&](const SqliteReader::Row& r) { items << item(root, r); });
    }

private:
    // Master key (read, not used), image path, size, version uuid, master uuid (which also
    // stands for the version's model key), the master's file name (which also stands for the
    // original name), the album membership key (`albumVersion`: NULL outside an album), the
    // master's own original name (read, not used), and whether the master is referenced
    // rather than copied in.
    static QString columns(const QString& albumVersion) {
        return QStringLiteral("m.modelId, m.imagePath, m.fileSize, v.uuid, m.uuid, m.fileName, "
                              "%1, m.originalFileName, m.fileIsReference")
            .arg(albumVersion);
    }
    inline static const QString tables =
        QStringLiteral("FROM RKVersion v JOIN RKMaster m ON m.uuid = v.masterUuid");

    static LibraryItem item(const QString& root, const SqliteReader::Row& row) {
        PhotoLibraryProperties p;
        p.RKMimagePath = row.value(1);
        p.RKMFilSize = row.value(2);
        p.RKVuuid = row.value(3);
        p.RKMuuid = row.value(4);
        p.RKVmodelId = row.value(4);
        p.RKVfilename = row.value(5);
        p.OriginalFileName = row.value(5);
        p.RKAVMId = row.value(6);
        const bool referenced = row.value(8) == QLatin1String("1");
        return {(referenced ? QStringLiteral("/") : root + QStringLiteral("/Masters/")) +
                    p.RKMimagePath,
                p};
    }
};

// digiKam: images in albums under collection roots, and tags; album keys "a:" and "t:".
class DigiKamReader : public LibraryKindReader {
public:
    QString copyName() const override { return QStringLiteral("digikamTempTM.db"); }

    bool knowsSchema(SqliteReader& db) override {
        return db.hasTable(QStringLiteral("Images")) && db.hasTable(QStringLiteral("Albums")) &&
               db.hasTable(QStringLiteral("AlbumRoots"));
    }

    void albums(SqliteReader& db, const AddAlbum& add) override {
        db.select(QStringLiteral("SELECT a.id, a.relativePath, r.label FROM Albums a "
                                 "JOIN AlbumRoots r ON r.id = a.albumRoot "
                                 "ORDER BY r.id, a.relativePath"),
                  {}, [&](const SqliteReader::Row& r) {
                      QString name = r.value(1);
                      if (name == QLatin1String("/"))
                          name = r.value(2).isEmpty() ? name : r.value(2);
                      else if (name.startsWith(QLatin1Char('/')))
                          name = name.mid(1);
                      add(QStringLiteral("a:") + r.value(0), name);
                  });
        // Tags below digiKam's own internal root are its bookkeeping, not the user's.
        db.select(QStringLiteral(
                      "SELECT id, name FROM Tags WHERE name <> '_Digikam_Internal_Tags_' AND "
                      "pid NOT IN (SELECT id FROM Tags WHERE name = '_Digikam_Internal_Tags_') "
                      "ORDER BY name, id"),
                  {}, [&](const SqliteReader::Row& r) {
                      add(QStringLiteral("t:") + r.value(0),
                          r.value(1).isNull()
                              ? QString()
                              : QCoreApplication::translate("PhotoLibraryReader", "Tag: %1")
                                    .arg(r.value(1)));
                  });
    }

    bool readAll(SqliteReader& db, const QString&, QList<LibraryItem>& items) override {
        return db.select(QStringLiteral("SELECT %1 WHERE %2 ORDER BY i.id").arg(columns, visible),
                         {}, [&](const SqliteReader::Row& r) { items << item(r); });
    }

    void readAlbum(SqliteReader& db, const QString&, QChar kind, const QString& key,
                   QList<LibraryItem>& items) override {
        if (kind == QLatin1Char('t'))
            db.select(QStringLiteral("SELECT %1 JOIN ImageTags t ON t.imageid = i.id "
                                     "WHERE t.tagid = ? AND %2 ORDER BY i.id")
                          .arg(columns, visible),
                      {key}, [&](const SqliteReader::Row& r) { items << item(r); });
        else
            db.select(QStringLiteral("SELECT %1 WHERE a.id = ? AND %2 ORDER BY i.id")
                          .arg(columns, visible),
                      {key}, [&](const SqliteReader::Row& r) { items << item(r); });
    }

private:
    inline static const QString columns =
        QStringLiteral("r.identifier, r.specificPath, a.relativePath, i.name FROM Images i "
                       "JOIN Albums a ON a.id = i.album JOIN AlbumRoots r ON r.id = a.albumRoot");
    // Visible photos only: status 1 is a file on disk, category 1 an image.
    inline static const QString visible = QStringLiteral("i.status = 1 AND i.category = 1");

    static LibraryItem item(const SqliteReader::Row& row) {
        QString folder = rootPath(row.value(0), row.value(1));
        const QString relative = row.value(2);
        if (relative != QLatin1String("/"))
            folder += relative;
        return {joinLibraryPath(folder, row.value(3)), std::nullopt};
    }

    // The folder of a collection root on this machine. The identifier names the volume
    // ("volumeid:?uuid=..." or "volumeid:?path=..."); specificPath is the root's path in it.
    static QString rootPath(const QString& identifier, const QString& specificPath) {
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
};

// Shotwell: photos by event and by tag; album keys "e:" and "t:".
class ShotwellReader : public LibraryKindReader {
public:
    QString copyName() const override { return QStringLiteral("shotwellTempTM.db"); }

    bool knowsSchema(SqliteReader& db) override {
        return db.hasTable(QStringLiteral("PhotoTable"));
    }

    void albums(SqliteReader& db, const AddAlbum& add) override {
        if (db.hasTable(QStringLiteral("EventTable"))) {
            db.select(QStringLiteral("SELECT e.id, e.name, MIN(p.exposure_time) FROM EventTable e "
                                     "LEFT JOIN PhotoTable p ON p.event_id = e.id "
                                     "GROUP BY e.id ORDER BY MIN(p.exposure_time), e.id"),
                      {}, [&](const SqliteReader::Row& r) {
                          QString name = r.value(1);
                          // An event the user did not name is shown by its first day.
                          if (name.isEmpty())
                              name =
                                  QCoreApplication::translate("PhotoLibraryReader", "Event of %1")
                                      .arg(QDateTime::fromSecsSinceEpoch(r.value(2).toLongLong())
                                               .date()
                                               .toString(Qt::ISODate));
                          add(QStringLiteral("e:") + r.value(0), name);
                      });
        }
        if (db.hasTable(QStringLiteral("TagTable"))) {
            db.select(QStringLiteral("SELECT id, name FROM TagTable ORDER BY name, id"), {},
                      [&](const SqliteReader::Row& r) {
                          add(QStringLiteral("t:") + r.value(0),
                              r.value(1).isNull()
                                  ? QString()
                                  : QCoreApplication::translate("PhotoLibraryReader", "Tag: %1")
                                        .arg(r.value(1)));
                      });
        }
    }

    bool readAll(SqliteReader& db, const QString&, QList<LibraryItem>& items) override {
        return db.select(QStringLiteral("SELECT filename FROM PhotoTable ORDER BY id"), {},
                         [&](const SqliteReader::Row& r) { items << item(r); });
    }

    void readAlbum(SqliteReader& db, const QString&, QChar kind, const QString& key,
                   QList<LibraryItem>& items) override {
        if (kind == QLatin1Char('t')) {
            const auto lists =
                db.rows(QStringLiteral("SELECT photo_id_list FROM TagTable WHERE id = ?"), {key});
            for (const QString& id : photoIds(lists.value(0).value(0))) {
                db.select(QStringLiteral("SELECT filename FROM PhotoTable WHERE id = ?"), {id},
                          [&](const SqliteReader::Row& r) { items << item(r); });
            }
        } else {
            db.select(QStringLiteral("SELECT filename FROM PhotoTable WHERE event_id = ? "
                                     "ORDER BY exposure_time, id"),
                      {key}, [&](const SqliteReader::Row& r) { items << item(r); });
        }
    }

private:
    static LibraryItem item(const SqliteReader::Row& row) { return {row.value(0), std::nullopt}; }

    // A tag keeps its members as one text: "thumb" and the photo id in 16 hex digits for a
    // photo, "video-" and an id for a video, separated by commas.
    static QStringList photoIds(const QString& list) {
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
};

} // namespace

std::unique_ptr<LibraryKindReader> readerForKind(LibraryKind kind) {
    switch (kind) {
    case LibraryKind::PackageNew:
        return std::make_unique<PackageNewReader>();
    case LibraryKind::PackageOld:
        return std::make_unique<PackageOldReader>();
    case LibraryKind::DigiKam:
        return std::make_unique<DigiKamReader>();
    case LibraryKind::Shotwell:
        return std::make_unique<ShotwellReader>();
    case LibraryKind::Unknown:
        break;
    }
    return nullptr;
}

} // namespace tagmoor
