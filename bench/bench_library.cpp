// Photo library benchmark.
//  1. A package of the new schema with ASSETS assets (100,000 by default): the time to copy
//     its database and the time to read every row from the copy (target under 1 s).
//  2. A package whose originals are the files of DIR: adding them through the scan, against
//     adding the same files as a folder, alternately in one run (target ratio at most 1.10).
//
//   bench_library DIR [--assets N] [--rounds N]
#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "metadata/MetadataLibrary.h"
#include "photolibrary/DatabaseCopy.h"
#include "photolibrary/PhotoLibraryReader.h"
#include "photolibrary/SqliteReader.h"
#include "workingset/FolderWalk.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>

#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

using namespace tagmoor;

// A package database with one asset per file name; `folder` empty puts the originals in the
// package, a path makes them referenced from there.
bool writePackage(const QString& package, const QStringList& names, const QString& folder) {
    const QString path = package + QStringLiteral("/database/Photos.sqlite");
    QDir().mkpath(QFileInfo(path).absolutePath());
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK)
        return false;
    const char* schema =
        "PRAGMA journal_mode=WAL;"
        "CREATE TABLE ZASSET (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, ZTRASHEDSTATE INTEGER, "
        "ZADDITIONALATTRIBUTES INTEGER, ZDIRECTORY VARCHAR, ZFILENAME VARCHAR, ZUUID VARCHAR);"
        "CREATE TABLE ZADDITIONALASSETATTRIBUTES (Z_PK INTEGER PRIMARY KEY, ZORIGINALFILESIZE "
        "INTEGER, ZASSET INTEGER, ZORIGINALFILENAME VARCHAR);"
        "CREATE TABLE ZGENERICALBUM (Z_PK INTEGER PRIMARY KEY, ZKIND INTEGER, ZTRASHEDSTATE "
        "INTEGER, ZTITLE VARCHAR);"
        "CREATE TABLE Z_27ASSETS (Z_27ALBUMS INTEGER, Z_3ASSETS INTEGER, Z_FOK_3ASSETS INTEGER, "
        "PRIMARY KEY (Z_27ALBUMS, Z_3ASSETS));"
        "BEGIN;";
    sqlite3_exec(db, schema, nullptr, nullptr, nullptr);
    sqlite3_stmt* asset = nullptr;
    sqlite3_stmt* attributes = nullptr;
    sqlite3_prepare_v2(db, "INSERT INTO ZASSET VALUES (?, 3, 0, ?, ?, ?, ?)", -1, &asset, nullptr);
    sqlite3_prepare_v2(db, "INSERT INTO ZADDITIONALASSETATTRIBUTES VALUES (?, ?, ?, ?)", -1,
                       &attributes, nullptr);
    for (int i = 0; i < names.size(); ++i) {
        const QByteArray name = names[i].toUtf8();
        const QByteArray directory =
            folder.isEmpty() ? QByteArray::number(i % 16, 16).toUpper() : folder.toUtf8();
        const QByteArray uuid = QByteArray::number(i).rightJustified(12, '0');
        sqlite3_bind_int(asset, 1, i + 1);
        sqlite3_bind_int(asset, 2, i + 1);
        sqlite3_bind_text(asset, 3, directory.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(asset, 4, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(asset, 5, uuid.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(asset);
        sqlite3_reset(asset);
        sqlite3_bind_int(attributes, 1, i + 1);
        sqlite3_bind_int(attributes, 2, 1000000 + i);
        sqlite3_bind_int(attributes, 3, i + 1);
        sqlite3_bind_text(attributes, 4, name.constData(), -1, SQLITE_TRANSIENT);
        sqlite3_step(attributes);
        sqlite3_reset(attributes);
    }
    sqlite3_finalize(asset);
    sqlite3_finalize(attributes);
    const bool ok = sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

// Adds what `staged` names through the scan; seconds and records.
std::pair<double, int> scanOnce(const QString& staged) {
    WorkingSet set;
    ScriptedPrompt prompt;
    AppEvents events;
    ScanController controller(set, prompt, events);
    QEventLoop loop;
    QObject::connect(&controller, &ScanController::scanFinished, &loop, &QEventLoop::quit);
    set.stageURLs({QUrl::fromLocalFile(staged)});
    QElapsedTimer clock;
    clock.start();
    controller.retriveImages(true);
    loop.exec();
    return {clock.nsecsElapsed() / 1e9, int(set.count())};
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: bench_library DIR [--assets N] [--rounds N]\n");
        return 2;
    }
    const QString dir = QFileInfo(args[1]).absoluteFilePath();
    int assets = 100000;
    int rounds = 3;
    for (int i = 2; i + 1 < args.size(); i += 2) {
        if (args[i] == "--assets")
            assets = std::max(1, args[i + 1].toInt());
        else if (args[i] == "--rounds")
            rounds = std::max(1, args[i + 1].toInt());
    }
    QTemporaryDir scratch;

    // 1. Rows of a large library.
    QStringList names;
    names.reserve(assets);
    for (int i = 0; i < assets; ++i)
        names << QStringLiteral("%1.jpeg").arg(i, 8, 10, QLatin1Char('0'));
    const QString large = scratch.filePath(QStringLiteral("Large.photoslibrary"));
    if (!writePackage(large, names, {})) {
        std::fprintf(stderr, "could not write the large package\n");
        return 1;
    }
    std::vector<double> rowSeconds;
    for (int r = 0; r < rounds; ++r) {
        DatabaseCopy copy(scratch.filePath(QStringLiteral("cache")));
        QElapsedTimer clock;
        clock.start();
        copy.copyFrom(large + QStringLiteral("/database/Photos.sqlite"),
                      QStringLiteral("photosTempTM.sqlite"));
        const double copySeconds = clock.nsecsElapsed() / 1e9;
        PhotoLibraryReader reader(large, scratch.filePath(QStringLiteral("cache")));
        clock.restart();
        const LibraryRead read = reader.readAll();
        const double readSeconds = clock.nsecsElapsed() / 1e9;
        std::printf("round %d: %d assets: copy %.3f s; copy and %lld rows read %.3f s\n", r + 1,
                    assets, copySeconds, qlonglong(read.items.size()), readSeconds);
        rowSeconds.push_back(readSeconds);
    }
    std::sort(rowSeconds.begin(), rowSeconds.end());
    std::printf("median time to the rows of %d assets (copy included) %.3f s (target < 1 s)\n",
                assets, rowSeconds[rowSeconds.size() / 2]);

    // 2. The same originals as a library and as a folder.
    QStringList files;
    for (const QString& path : walkFolder(dir).files)
        files << QFileInfo(path).fileName();
    const QString referencing = scratch.filePath(QStringLiteral("Corpus.photoslibrary"));
    if (!writePackage(referencing, files, dir)) {
        std::fprintf(stderr, "could not write the corpus package\n");
        return 1;
    }
    std::printf("files: %lld, rounds: %d\n", qlonglong(files.size()), rounds);
    std::vector<double> ratios;
    for (int r = 0; r < rounds; ++r) {
        const auto folder = scanOnce(dir);
        const auto library = scanOnce(referencing);
        std::printf("round %d: folder %.3f s (%d records), library %.3f s (%d records), "
                    "ratio %.3f\n",
                    r + 1, folder.first, folder.second, library.first, library.second,
                    library.first / folder.first);
        if (folder.second != library.second)
            std::printf("  records differ!\n");
        ratios.push_back(library.first / folder.first);
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf("median ratio library/folder %.3f (target <= 1.10)\n", ratios[ratios.size() / 2]);
    return 0;
}
