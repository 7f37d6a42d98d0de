#include "TestSupport.h"
#include "photolibrary/LibraryFixtures.h"
#include "photolibrary/PhotoLibraryReader.h"
#include "workingset/ScanFixture.h"
#include "workingset/WorkingSetAlerts.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QUrl>

#include <atomic>
#include <thread>

namespace tagmoor {
namespace {

using test::execSql;

QString sample(const char* name) {
    return test::formatsDir() + QLatin1Char('/') + QLatin1String(name);
}

QString place(const QString& samplePath, const QString& target) {
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile::remove(target);
    EXPECT_TRUE(QFile::copy(samplePath, target)) << target.toStdString();
    return target;
}

QStringList pathsOf(const QList<LibraryItem>& items) {
    QStringList out;
    for (const LibraryItem& item : items)
        out << item.path;
    return out;
}

QStringList namesOf(const QList<LibraryAlbum>& albums) {
    QStringList out;
    for (const LibraryAlbum& album : albums)
        out << album.name;
    return out;
}

// Every file below `root` with the hash of its bytes and its modification time.
QStringList fingerprint(const QString& root) {
    QStringList out;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        QFile f(path);
        EXPECT_TRUE(f.open(QIODevice::ReadOnly));
        out << path + QLatin1Char(' ') +
                   QString::fromLatin1(
                       QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256).toHex()) +
                   QLatin1Char(' ') +
                   QString::number(QFileInfo(path).lastModified().toMSecsSinceEpoch());
    }
    out.sort();
    return out;
}

// Hands the items to the scan as the chooser does from the home screen, and waits.
bool scanItems(test::ScanFixture& f, const LibraryRead& read) {
    const int before = f.finishedScans;
    f.controller.addLibraryItems(PanelScreen::HomeScreen, read);
    const bool done = test::waitFor([&] { return f.finishedScans > before; });
    test::serveEvents(200);
    return done;
}

bool hasAlertText(const test::ScanFixture& f, const QString& text) {
    for (const Alert& a : f.prompt.alerts) {
        if (a.text.contains(text))
            return true;
    }
    return false;
}

// A package of the new schema. Assets: 1 and 2 in the package, 3 an empty file, 4 missing
// from disk, 5 in the trash, 7 referenced from a folder outside the package. Albums "Trip"
// (1, 2) and "Family" (2, 7) share asset 2; "Smart" is not one the user made.
struct NewPackage {
    QString package;
    QString a1, b2, c3, d4, outside;
};

NewPackage makeNewPackage(const QString& dir) {
    NewPackage p;
    p.package = dir + QStringLiteral("/Photos Library.photoslibrary");
    const QString originals = p.package + QStringLiteral("/originals/");
    p.a1 = place(sample("Reagan.jpg"), originals + QStringLiteral("A/A1.jpeg"));
    p.b2 = place(sample("FurnaceCreekInn.jpg"), originals + QStringLiteral("B/B2.jpeg"));
    p.c3 = test::makeFile(originals + QStringLiteral("C/C3.jpeg"), QByteArray());
    p.d4 = originals + QStringLiteral("D/D4.jpeg");
    place(sample("et-IPTC.jpg"), originals + QStringLiteral("E/E5.jpeg"));
    p.outside = place(sample("et-GPS.jpg"), dir + QStringLiteral("/elsewhere/ref.jpg"));
    const QString db = p.package + QStringLiteral("/database/Photos.sqlite");
    const QString error =
        execSql(db, test::newPackageSchema(26, 34) +
                        test::newAssetRow(1, "A", "A1.jpeg", "IMG_0001.JPG", 2000) +
                        test::newAssetRow(2, "B", "B2.jpeg", "IMG_0002.JPG", 3000) +
                        test::newAssetRow(3, "C", "C3.jpeg", "IMG_0003.JPG", 0) +
                        test::newAssetRow(4, "D", "D4.jpeg", "IMG_0004.JPG", 4000) +
                        test::newAssetRow(5, "E", "E5.jpeg", "IMG_0005.JPG", 5000, 1) +
                        test::newAssetRow(7, dir + "/elsewhere", "ref.jpg", "ref.jpg", 6000) +
                        test::newAlbumRows(10, "Trip", {1, 2}, 26, 34) +
                        test::newAlbumRows(11, "Family", {2, 7}, 26, 34) +
                        test::newAlbumRows(12, "Smart", {1}, 26, 34, 1505));
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    return p;
}

TEST(PhotoLibrary, NewSchemaWholeLibraryAndChosenAlbumsEnterTheListWithoutTouchingThePackage) {
    QTemporaryDir dir;
    const NewPackage p = makeNewPackage(dir.path());
    const QStringList before = fingerprint(p.package);

    PhotoLibraryReader reader(p.package, dir.path() + "/cache");
    EXPECT_EQ(reader.source().kind, LibraryKind::PackageNew);
    const QList<LibraryAlbum> albums = reader.albums();
    EXPECT_EQ(namesOf(albums), (QStringList{"Family", "Trip"}));
    const LibraryRead all = reader.readAll();
    EXPECT_TRUE(all.note.isEmpty());
    EXPECT_EQ(pathsOf(all.items), (QStringList{p.a1, p.b2, p.c3, p.d4, p.outside}));
    ASSERT_TRUE(all.items[0].properties.has_value());
    EXPECT_EQ(all.items[0].properties->RKVfilename, "A1.jpeg");
    EXPECT_EQ(all.items[0].properties->RKMimagePath, "A");
    EXPECT_EQ(all.items[0].properties->RKMFilSize, "2000");
    EXPECT_EQ(all.items[0].properties->OriginalFileName, "IMG_0001.JPG");

    {
        // The whole package staged: the empty file never enters, the missing one is counted.
        test::ScanFixture f;
        f.stage({p.package});
        ASSERT_TRUE(f.scan());
        EXPECT_EQ(f.listedPaths(), (QStringList{p.a1, p.b2, p.outside}));
        EXPECT_EQ(f.controller.lastResult().missingOriginals, 1);
        EXPECT_TRUE(hasAlertText(f, "1 photo of the library is not on disk"));
        ASSERT_TRUE(f.set.workingImages()[0].photoLibraryProperties.has_value());
        EXPECT_EQ(f.set.workingImages()[0].photoLibraryProperties->OriginalFileName,
                  "IMG_0001.JPG");
    }
    {
        // Both albums: asset 2 is in both and enters once, without a word about it.
        test::ScanFixture f;
        const LibraryRead chosen = reader.readAlbums(albums);
        EXPECT_EQ(pathsOf(chosen.items), (QStringList{p.b2, p.outside, p.a1}));
        ASSERT_TRUE(scanItems(f, chosen));
        EXPECT_EQ(f.listedPaths(), (QStringList{p.b2, p.outside, p.a1}));
        EXPECT_FALSE(hasAlertText(f, "already added"));
    }
    {
        // One album of two.
        test::ScanFixture f;
        QList<LibraryAlbum> onlyTrip = albums;
        onlyTrip[0].isSelected = false;
        ASSERT_TRUE(scanItems(f, reader.readAlbums(onlyTrip)));
        EXPECT_EQ(f.listedPaths(), (QStringList{p.a1, p.b2}));
        EXPECT_TRUE(f.prompt.alerts.isEmpty());
    }
    EXPECT_EQ(fingerprint(p.package), before);
}

TEST(PhotoLibrary, OldSchemaReadsItsNamedColumnsAndListsEachOriginalOnce) {
    QTemporaryDir dir;
    const QString package = dir.path() + "/Old Library.photoslibrary";
    const QString m1 = place(sample("Reagan.jpg"), package + "/Masters/2019/08/24/a.jpg");
    const QString m2 = place(sample("FurnaceCreekInn.jpg"), package + "/Masters/2019/08/24/b.jpg");
    const QString ref = place(sample("et-GPS.jpg"), dir.path() + "/Shared/ref.jpg");
    const QString error =
        execSql(package + "/database/photos.db",
                test::oldPackageSchema() + test::oldMasterRow(1, "2019/08/24/a.jpg", 100) +
                    test::oldMasterRow(2, "2019/08/24/b.jpg", 200) +
                    test::oldMasterRow(3, ref.mid(1), 300, true) + test::oldVersionRow(1, 1) +
                    test::oldVersionRow(2, 2) + test::oldVersionRow(3, 1) +
                    test::oldVersionRow(4, 3) + test::oldVersionRow(5, 2, 1) +
                    "INSERT INTO RKAlbum VALUES (3, 1, 2, 'All Photos', 'LibraryFolder', 0);"
                    "INSERT INTO RKAlbum VALUES (20, 1, 3, 'Pumpkin Farm', 'TopLevelAlbums', 0);"
                    "INSERT INTO RKAlbum VALUES (21, 1, 3, NULL, 'TopLevelAlbums', 0);"
                    "INSERT INTO RKAlbum VALUES (22, 1, 3, 'Harvest', 'TopLevelAlbums', 0);"
                    "INSERT INTO RKAlbumVersion VALUES (7, 1, 20);"
                    "INSERT INTO RKAlbumVersion VALUES (8, 4, 20);"
                    "INSERT INTO RKAlbumVersion VALUES (9, 3, 22);");
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();

    PhotoLibraryReader reader(package, dir.path() + "/cache");
    EXPECT_EQ(reader.source().kind, LibraryKind::PackageOld);
    EXPECT_EQ(identifyLibrary(package + "/database/photos.db").root, package);
    // Two versions of the first master name one file: it is listed once.
    const LibraryRead all = reader.readAll();
    EXPECT_EQ(pathsOf(all.items), (QStringList{m1, m2, ref}));
    // The master's uuid stands for the version's model key too, and its file name for the
    // original name (the one a rename by original name uses); only albums give an entry key.
    const PhotoLibraryProperties& first = *all.items[0].properties;
    EXPECT_EQ(first.RKMuuid, "M1");
    EXPECT_EQ(first.RKVmodelId, "M1");
    EXPECT_EQ(first.RKVfilename, "a.jpg");
    EXPECT_EQ(first.OriginalFileName, "a.jpg");
    EXPECT_EQ(first.RKAVMId, "");
    const QList<LibraryAlbum> albums = reader.albums();
    EXPECT_EQ(namesOf(albums), (QStringList{"Harvest", "Pumpkin Farm"}));
    // The first master is in both albums (as two versions): it comes once, from the first.
    const LibraryRead chosen = reader.readAlbums(albums);
    EXPECT_EQ(pathsOf(chosen.items), (QStringList{m1, ref}));
    EXPECT_EQ(chosen.items[0].properties->RKAVMId, "9");
    EXPECT_EQ(chosen.items[0].properties->RKVuuid, "V3");
    EXPECT_TRUE(chosen.leftOut.isEmpty());

    test::ScanFixture f;
    f.stage({package});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.listedPaths(), (QStringList{m1, m2, ref}));
    EXPECT_FALSE(hasAlertText(f, "already added"));

    // A first add of the chosen albums says nothing about photos already in the list.
    test::ScanFixture g;
    ASSERT_TRUE(scanItems(g, chosen));
    EXPECT_EQ(g.listedPaths(), (QStringList{m1, ref}));
    EXPECT_TRUE(g.prompt.alerts.isEmpty());
}

// A library cannot lead the list out of its package: a folder written with "..", or a link
// among the originals that points elsewhere, is left out and named with the reason, while
// the library's own originals and the ones it marks as referenced enter.
TEST(PhotoLibrary, OriginalsOutsideThePackageAreLeftOutAndNamed) {
    QTemporaryDir dir;
    const QString package = dir.path() + "/Old Library.photoslibrary";
    const QString inside = place(sample("Reagan.jpg"), package + "/Masters/2020/a.jpg");
    const QString secret = place(sample("FurnaceCreekInn.jpg"), dir.path() + "/private/b.jpg");
    const QString ref = place(sample("et-GPS.jpg"), dir.path() + "/Shared/ref.jpg");
    QDir().mkpath(package + "/Masters/2021");
    ASSERT_TRUE(QFile::link(secret, package + "/Masters/2021/link.jpg"));
    const QString error = execSql(
        package + "/database/photos.db",
        test::oldPackageSchema() + test::oldMasterRow(1, "2020/a.jpg", 100) +
            test::oldMasterRow(2, "../../private/b.jpg", 200) +
            test::oldMasterRow(3, "2021/link.jpg", 300) +
            test::oldMasterRow(4, ref.mid(1), 400, true) + test::oldVersionRow(1, 1) +
            test::oldVersionRow(2, 2) + test::oldVersionRow(3, 3) + test::oldVersionRow(4, 4));
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();

    const LibraryRead read = PhotoLibraryReader(package, dir.path() + "/cache").readAll();
    EXPECT_EQ(pathsOf(read.items), (QStringList{inside, ref}));
    ASSERT_EQ(read.leftOut.size(), 2);
    EXPECT_EQ(read.leftOut[0].path, package + "/Masters/../../private/b.jpg");
    EXPECT_EQ(read.leftOut[1].path, package + "/Masters/2021/link.jpg");
    EXPECT_TRUE(read.leftOut[1].reason.contains("outside the library"));

    // Staged as a whole, the package adds what lies inside and tells what it left out.
    test::ScanFixture f;
    f.stage({package});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.listedPaths(), (QStringList{inside, ref}));
    EXPECT_TRUE(hasAlertText(f, "2021/link.jpg"));
    EXPECT_FALSE(f.listedPaths().contains(secret));
}

TEST(PhotoLibrary, DigiKamFolderAlbumsAndTagsListTheirPhotosByPathOnDisk) {
    QTemporaryDir dir;
    const QString root = dir.path() + "/Pictures";
    const QString top = place(sample("Reagan.jpg"), root + "/top.jpg");
    const QString trip = place(sample("FurnaceCreekInn.jpg"), root + "/2021/Trip/a.jpg");
    const QString db = dir.path() + "/digikam4.db";
    const QString identifier =
        "volumeid:?path=" + QString::fromLatin1(QUrl::toPercentEncoding(root));
    const QString error = execSql(
        db, test::digiKamSchema() +
                QStringLiteral("INSERT INTO AlbumRoots VALUES (1, 'Pictures', 0, 1, %1, '/');")
                    .arg(test::sqlText(identifier)) +
                "INSERT INTO Albums (id, albumRoot, relativePath) VALUES (1, 1, '/');"
                "INSERT INTO Albums (id, albumRoot, relativePath) VALUES (2, 1, '/2021/Trip');"
                "INSERT INTO Images (id, album, name, status, category) VALUES "
                "(1, 1, 'top.jpg', 1, 1), (2, 2, 'a.jpg', 1, 1), (3, 2, 'gone.jpg', 3, 1), "
                "(4, 2, 'clip.mp4', 1, 2);"
                "INSERT INTO Tags (id, pid, name) VALUES (1, 0, '_Digikam_Internal_Tags_'), "
                "(2, 1, 'Color Label None'), (3, 0, 'Family');"
                "INSERT INTO ImageTags VALUES (1, 3), (2, 3), (3, 3), (2, 2);");
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    const QStringList before = fingerprint(dir.path());

    // Chosen as the file or as the folder that holds it.
    QTemporaryDir cache;
    for (const QString& chosen : {db, dir.path()}) {
        PhotoLibraryReader reader(chosen, cache.path());
        EXPECT_EQ(reader.source().kind, LibraryKind::DigiKam);
        EXPECT_EQ(pathsOf(reader.readAll().items), (QStringList{top, trip}));
        QList<LibraryAlbum> albums = reader.albums();
        ASSERT_EQ(namesOf(albums), (QStringList{"Pictures", "2021/Trip", "Tag: Family"}));
        albums[0].isSelected = false;
        EXPECT_EQ(pathsOf(reader.readAlbums(albums).items), (QStringList{trip, top}));
    }
    EXPECT_EQ(fingerprint(dir.path()), before);
}

TEST(PhotoLibrary, ShotwellEventsAndTagsListTheirPhotosByPathOnDisk) {
    QTemporaryDir dir;
    const QString p1 = place(sample("Reagan.jpg"), dir.path() + "/Photos/2021/a.jpg");
    const QString p2 = place(sample("FurnaceCreekInn.jpg"), dir.path() + "/Photos/2021/b.jpg");
    const QString p3 = place(sample("et-GPS.jpg"), dir.path() + "/Photos/2022/c.jpg");
    const QString db = dir.path() + "/shotwell/data/photo.db";
    const QString error =
        execSql(db, test::shotwellSchema() + test::shotwellPhotoRow(1, p1, 1, 1625097600) +
                        test::shotwellPhotoRow(2, p2, 1, 1625184000) +
                        test::shotwellPhotoRow(3, p3, 2, 1656633600) +
                        "INSERT INTO EventTable (id, name) VALUES (1, 'Summer'), (2, NULL);" +
                        QStringLiteral("INSERT INTO TagTable (id, name, photo_id_list) VALUES "
                                       "(1, 'Family', %1);")
                            .arg(test::sqlText(test::shotwellIdList({1, 3}, {5}))));
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();

    PhotoLibraryReader reader(dir.path() + "/shotwell", dir.path() + "/cache");
    EXPECT_EQ(reader.source().kind, LibraryKind::Shotwell);
    EXPECT_EQ(pathsOf(reader.readAll().items), (QStringList{p1, p2, p3}));
    QList<LibraryAlbum> albums = reader.albums();
    ASSERT_EQ(namesOf(albums), (QStringList{"Summer", "Event of 2022-07-01", "Tag: Family"}));
    albums[0].isSelected = false;
    albums[1].isSelected = false;
    EXPECT_EQ(pathsOf(reader.readAlbums(albums).items), (QStringList{p1, p3}));
}

TEST(PhotoLibrary, APackageWithoutAReadableDatabaseGivesNothingAndSaysWhy) {
    QTemporaryDir dir;
    const QString empty = dir.path() + "/Empty.photoslibrary";
    QDir().mkpath(empty + "/originals");
    const QString other = dir.path() + "/Other.photoslibrary";
    ASSERT_TRUE(
        execSql(other + "/database/Photos.sqlite", "CREATE TABLE notes (text TEXT);").isEmpty());
    const QString garbage = dir.path() + "/Garbage.photoslibrary";
    test::makeFile(garbage + "/database/Photos.sqlite", QByteArray(4096, 'x'));

    for (const QString& package : {empty, other, garbage}) {
        PhotoLibraryReader reader(package, dir.path() + "/cache");
        const LibraryRead read = reader.readAll();
        EXPECT_TRUE(read.items.isEmpty()) << package.toStdString();
        EXPECT_FALSE(read.note.isEmpty()) << package.toStdString();
        EXPECT_TRUE(reader.albums().isEmpty());
    }
    EXPECT_FALSE(identifyLibrary(dir.path()).note.isEmpty());

    // Staged with a photo: the photo enters, and the end of the scan says what the package
    // did not give.
    test::ScanFixture f;
    const QString photo = place(sample("Reagan.jpg"), dir.path() + "/loose/photo.jpg");
    f.stage({empty, photo});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.listedPaths(), QStringList{photo});
    EXPECT_TRUE(hasAlertText(f, "holds no photo database"));
}

// A writer that holds its database open in write-ahead mode: committed rows partly only in
// the log, and a transaction in progress whose pages spill into the log uncommitted.
TEST(PhotoLibrary, ALockedHalfWrittenDatabaseIsReadFromItsCopyWithCommittedRowsOnly) {
    QTemporaryDir dir;
    const QString package = dir.path() + "/Busy.photoslibrary";
    const QString db = package + "/database/Photos.sqlite";
    ASSERT_TRUE(execSql(db, "PRAGMA journal_mode=WAL;" + test::newPackageSchema()).isEmpty());
    sqlite3* writer = nullptr;
    ASSERT_EQ(sqlite3_open(db.toUtf8().constData(), &writer), SQLITE_OK);
    auto run = [&](const QString& sql) {
        char* err = nullptr;
        sqlite3_exec(writer, sql.toUtf8().constData(), nullptr, nullptr, &err);
        EXPECT_EQ(err, nullptr) << err;
        sqlite3_free(err);
    };
    run("PRAGMA wal_autocheckpoint=0; PRAGMA cache_size=2;");
    QString committed = "BEGIN;";
    for (int i = 1; i <= 20; ++i)
        committed += test::newAssetRow(i, "A", QStringLiteral("%1.jpg").arg(i), "x.jpg", 1);
    run(committed + "COMMIT;");
    QString open = "BEGIN EXCLUSIVE;";
    for (int i = 100; i < 400; ++i)
        open += QStringLiteral("INSERT INTO ZASSET VALUES (%1, 3, 0, 0, 'B', '%2', hex(randomblob("
                               "2000)));")
                    .arg(i)
                    .arg(QString(300, QLatin1Char('n')));
    run(open);
    EXPECT_GT(QFileInfo(db + "-wal").size(), 0);

    PhotoLibraryReader reader(package, dir.path() + "/cache");
    EXPECT_EQ(reader.readAll().items.size(), 20);
    run("ROLLBACK;");
    sqlite3_close(writer);
}

TEST(PhotoLibrary, ADatabaseWrittenWhileItIsReadGivesWholeTransactions) {
    QTemporaryDir dir;
    const QString package = dir.path() + "/Live.photoslibrary";
    const QString db = package + "/database/Photos.sqlite";
    ASSERT_TRUE(execSql(db, "PRAGMA journal_mode=WAL;" + test::newPackageSchema(28, 3)).isEmpty());
    std::atomic_bool done{false};
    std::atomic_int written{0};
    std::thread writer([&] {
        sqlite3* w = nullptr;
        sqlite3_open(db.toUtf8().constData(), &w);
        sqlite3_busy_timeout(w, 1000);
        int pk = 1;
        for (int round = 0; !done && round < 400; ++round) {
            QString sql = "BEGIN;";
            // Large rows, so that folding the log back rewrites many pages of the file.
            for (int i = 0; i < 10; ++i, ++pk)
                sql += test::newAssetRow(pk, "A", QStringLiteral("%1.jpg").arg(pk), "o.jpg", pk) +
                       QStringLiteral("UPDATE ZASSET SET ZUUID = hex(randomblob(3000)) WHERE "
                                      "Z_PK = %1;")
                           .arg(pk);
            sql += "COMMIT;";
            // Now and then the log is folded back into the database file.
            if (round % 3 == 2)
                sql += "PRAGMA wal_checkpoint(TRUNCATE);";
            sqlite3_exec(w, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
            written = pk - 1;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        sqlite3_close(w);
    });
    int reads = 0;
    int last = 0;
    while (reads < 25) {
        PhotoLibraryReader reader(package, dir.path() + "/cache");
        const LibraryRead read = reader.readAll();
        ++reads;
        EXPECT_TRUE(read.note.isEmpty()) << read.note.toStdString();
        EXPECT_EQ(read.items.size() % 10, 0) << "read " << reads;
        EXPECT_GE(read.items.size(), last);
        last = int(read.items.size());
        for (const LibraryItem& item : read.items)
            EXPECT_TRUE(item.path.endsWith(".jpg")) << item.path.toStdString();
    }
    done = true;
    writer.join();
    EXPECT_GT(written.load(), 0);
}

} // namespace
} // namespace tagmoor
