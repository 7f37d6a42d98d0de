#pragma once
// Photo collections built the way their programs store them: the tables and columns used
// here are those of the real databases (a package's Photos.sqlite or photos.db, digiKam's
// digikam4.db, Shotwell's photo.db), reduced to the columns Tagmoor reads.

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <sqlite3.h>

namespace tagmoor::test {

// Runs a script on a database file (created if missing); the error text, empty on success.
inline QString execSql(const QString& dbPath, const QString& sql) {
    QDir().mkpath(QFileInfo(dbPath).absolutePath());
    sqlite3* db = nullptr;
    if (sqlite3_open(dbPath.toUtf8().constData(), &db) != SQLITE_OK) {
        sqlite3_close(db);
        return QStringLiteral("cannot open ") + dbPath;
    }
    char* error = nullptr;
    sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &error);
    const QString out = error ? QString::fromUtf8(error) : QString();
    sqlite3_free(error);
    sqlite3_close(db);
    return out;
}

inline QString sqlText(const QString& text) {
    return QLatin1Char('\'') + QString(text).replace(QLatin1Char('\''), QStringLiteral("''")) +
           QLatin1Char('\'');
}

// The new package schema: assets, their extra attributes, albums and the numbered join table.
inline QString newPackageSchema(int albumEntity = 27, int assetEntity = 3) {
    return QStringLiteral(
               "CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, ZTRASHEDSTATE "
               "INTEGER, ZADDITIONALATTRIBUTES INTEGER, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR, "
               "ZUUID VARCHAR);"
               "CREATE TABLE ZADDITIONALASSETATTRIBUTES (Z_PK INTEGER PRIMARY KEY, "
               "ZORIGINALFILESIZE INTEGER, ZASSET INTEGER, ZORIGINALFILENAME VARCHAR);"
               "CREATE TABLE ZGENERICALBUM (Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, "
               "ZTRASHEDSTATE INTEGER, ZTITLE VARCHAR);"
               "CREATE TABLE Z_%1ASSETS (Z_%1ALBUMS INTEGER, Z_%2ASSETS INTEGER, "
               "Z_FOK_%2ASSETS INTEGER, PRIMARY KEY (Z_%1ALBUMS, Z_%2ASSETS));"
               "CREATE TABLE Z_1KEYWORDS (Z_1ASSETATTRIBUTES INTEGER, Z_38KEYWORDS INTEGER);")
        .arg(albumEntity)
        .arg(assetEntity);
}

inline QString newAssetRow(int pk, const QString& directory, const QString& fileName,
                           const QString& originalName, qint64 size, int trashed = 0) {
    return QStringLiteral("INSERT INTO ZASSET VALUES (%1, 3, %2, %1, %3, %4, 'UUID-%1');"
                          "INSERT INTO ZADDITIONALASSETATTRIBUTES VALUES (%1, %5, %1, %6);")
        .arg(pk)
        .arg(trashed)
        .arg(sqlText(directory), sqlText(fileName))
        .arg(size)
        .arg(sqlText(originalName));
}

// A user album (kind 2) holding the given assets.
inline QString newAlbumRows(int pk, const QString& title, const QList<int>& assets,
                            int albumEntity = 27, int assetEntity = 3, int kind = 2) {
    QString sql = QStringLiteral("INSERT INTO ZGENERICALBUM VALUES (%1, %2, 0, %3);")
                      .arg(pk)
                      .arg(kind)
                      .arg(sqlText(title));
    int order = 1024;
    for (int asset : assets)
        sql += QStringLiteral("INSERT INTO Z_%1ASSETS (Z_%1ALBUMS, Z_%5ASSETS, Z_FOK_%5ASSETS) "
                              "VALUES (%2, %3, %4);")
                   .arg(albumEntity)
                   .arg(pk)
                   .arg(asset)
                   .arg(order += 1024)
                   .arg(assetEntity);
    return sql;
}

// The old package schema: masters (the files), versions (what the user sees), albums.
inline QString oldPackageSchema() {
    return QStringLiteral(
        "CREATE TABLE RKMaster (modelId INTEGER PRIMARY KEY, uuid varchar, fileIsReference "
        "INTEGER, fileSize INTEGER, fileName varchar, imagePath varchar, originalFileName "
        "varchar);"
        "CREATE TABLE RKVersion (modelId INTEGER PRIMARY KEY, uuid varchar, name varchar, "
        "isInTrash INTEGER, masterUuid varchar, masterId INTEGER);"
        "CREATE TABLE RKAlbum (modelId INTEGER PRIMARY KEY, albumType INTEGER, albumSubclass "
        "INTEGER, name varchar, folderUuid varchar, isInTrash INTEGER);"
        "CREATE TABLE RKAlbumVersion (modelId INTEGER PRIMARY KEY, versionId INTEGER, albumId "
        "INTEGER);");
}

inline QString oldMasterRow(int id, const QString& imagePath, qint64 size, bool reference = false) {
    return QStringLiteral("INSERT INTO RKMaster VALUES (%1, 'M%1', %2, %3, %4, %5, %4);")
        .arg(id)
        .arg(reference ? 1 : 0)
        .arg(size)
        .arg(sqlText(QFileInfo(imagePath).fileName()), sqlText(imagePath));
}

inline QString oldVersionRow(int id, int master, int trashed = 0) {
    return QStringLiteral("INSERT INTO RKVersion VALUES (%1, 'V%1', NULL, %3, 'M%2', %2);")
        .arg(id)
        .arg(master)
        .arg(trashed);
}

// digiKam's collection tables.
inline QString digiKamSchema() {
    return QStringLiteral(
        "CREATE TABLE AlbumRoots (id INTEGER PRIMARY KEY, label TEXT, status INTEGER NOT NULL, "
        "type INTEGER NOT NULL, identifier TEXT, specificPath TEXT, UNIQUE(identifier, "
        "specificPath));"
        "CREATE TABLE Albums (id INTEGER PRIMARY KEY, albumRoot INTEGER NOT NULL, relativePath "
        "TEXT NOT NULL, date DATE, caption TEXT, collection TEXT, icon INTEGER, "
        "UNIQUE(albumRoot, relativePath));"
        "CREATE TABLE Images (id INTEGER PRIMARY KEY, album INTEGER, name TEXT NOT NULL, status "
        "INTEGER NOT NULL, category INTEGER NOT NULL, modificationDate DATETIME, fileSize "
        "INTEGER, uniqueHash TEXT, UNIQUE (album, name));"
        "CREATE TABLE Tags (id INTEGER PRIMARY KEY, pid INTEGER, name TEXT NOT NULL, icon "
        "INTEGER, iconkde TEXT, UNIQUE (name, pid));"
        "CREATE TABLE ImageTags (imageid INTEGER NOT NULL, tagid INTEGER NOT NULL, UNIQUE "
        "(imageid, tagid));");
}

// Shotwell's photo, event and tag tables.
inline QString shotwellSchema() {
    return QStringLiteral(
        "CREATE TABLE PhotoTable (id INTEGER PRIMARY KEY, filename TEXT UNIQUE NOT NULL, width "
        "INTEGER, height INTEGER, filesize INTEGER, timestamp INTEGER, exposure_time INTEGER, "
        "orientation INTEGER, original_orientation INTEGER, import_id INTEGER, event_id "
        "INTEGER, transformations TEXT, md5 TEXT, thumbnail_md5 TEXT, exif_md5 TEXT, "
        "time_created INTEGER, flags INTEGER DEFAULT 0, rating INTEGER DEFAULT 0, file_format "
        "INTEGER DEFAULT 0, title TEXT);"
        "CREATE TABLE EventTable (id INTEGER PRIMARY KEY, name TEXT, primary_photo_id INTEGER, "
        "time_created INTEGER, primary_source_id TEXT, comment TEXT);"
        "CREATE TABLE TagTable (id INTEGER PRIMARY KEY, name TEXT UNIQUE NOT NULL, "
        "photo_id_list TEXT, time_created INTEGER);");
}

inline QString shotwellPhotoRow(int id, const QString& path, int eventId, qint64 exposure) {
    return QStringLiteral("INSERT INTO PhotoTable (id, filename, filesize, exposure_time, "
                          "event_id) VALUES (%1, %2, %3, %4, %5);")
        .arg(id)
        .arg(sqlText(path))
        .arg(QFileInfo(path).size())
        .arg(exposure)
        .arg(eventId);
}

// A tag's members as Shotwell stores them: "thumb" and the id in 16 hex digits, commas after.
inline QString shotwellIdList(const QList<int>& photoIds, const QList<int>& videoIds = {}) {
    QString out;
    for (int id : photoIds)
        out += QStringLiteral("thumb%1,").arg(id, 16, 16, QLatin1Char('0'));
    for (int id : videoIds)
        out += QStringLiteral("video-%1,").arg(id, 16, 16, QLatin1Char('0'));
    return out;
}

} // namespace tagmoor::test
