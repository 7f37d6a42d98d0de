#include "geo/TileLoader.h"
#include "geo/MapTileNotices.h"

#include "TileServer.h"
#include "workingset/WaitFor.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPoint>
#include <QSet>
#include <QTcpServer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace tagmoor;

TEST(TileLoader, FetchesPolitelyAndServesRepeatsFromItsDiskCache) {
    test::TileServer server;
    QTemporaryDir cache;
    int ready = 0;
    {
        TileLoader loader(server.urlTemplate(), cache.path());
        QObject::connect(&loader, &TileLoader::tileReady,
                         [&](int, int, int, const QByteArray& png) {
                             EXPECT_TRUE(png.startsWith("\x89PNG"));
                             ++ready;
                         });
        for (int x = 0; x < 4; ++x) {
            for (int y = 0; y < 2; ++y)
                loader.request(3, x, y);
        }
        loader.request(3, 0, 0); // already waiting: not asked twice
        EXPECT_LE(loader.inFlight(), TileLoader::kMaxConnections);
        ASSERT_TRUE(test::waitFor([&] { return ready == 8; }));
    }
    EXPECT_EQ(server.requests(), 8);
    EXPECT_LE(server.maxOpenConnections(), TileLoader::kMaxConnections);
    EXPECT_TRUE(server.userAgent().startsWith("Tagmoor/")) << server.userAgent().toStdString();
    // The newest wish goes first.
    EXPECT_EQ(server.paths().mid(2).first(), QStringLiteral("/3/3/1.png"));

    // Another loader on the same cache (the next start of the program) asks the server nothing.
    TileLoader again(server.urlTemplate(), cache.path());
    int cached = 0;
    QObject::connect(&again, &TileLoader::tileReady, [&] { ++cached; });
    for (int x = 0; x < 4; ++x)
        again.request(3, x, 0);
    ASSERT_TRUE(test::waitFor([&] { return cached == 4; }));
    EXPECT_EQ(server.requests(), 8);
}

TEST(TileLoader, RestsWithoutWaitingWhenTheServerIsOutOfReach) {
    // A port that was just free: nothing listens there.
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    const quint16 port = probe.serverPort();
    probe.close();

    QTemporaryDir cache;
    TileLoader loader(QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(port),
                      cache.path());
    int failed = 0;
    QObject::connect(&loader, &TileLoader::tileFailed, [&] { ++failed; });
    QElapsedTimer clock;
    clock.start();
    for (int x = 0; x < 6; ++x)
        loader.request(4, x, 0);
    EXPECT_LT(clock.elapsed(), 50) << "asking never blocks";
    ASSERT_TRUE(test::waitFor([&] { return failed >= 1 && loader.inFlight() == 0; }, 5000));
    EXPECT_TRUE(loader.isResting());
    const int sent = loader.requestsSent();
    EXPECT_LE(sent, TileLoader::kMaxConnections) << "the waiting wishes were dropped";
    loader.request(4, 9, 9);
    EXPECT_EQ(loader.requestsSent(), sent) << "a resting loader asks nothing";

    TileLoader nowhere{QString(), QString()};
    nowhere.request(1, 0, 0);
    EXPECT_EQ(nowhere.requestsSent(), 0);
}

namespace {

QByteArray pngOf(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

} // namespace

// A server in trouble (5xx), refusing (403) or asking for fewer requests (429) is left alone
// for a while, as one out of reach is; a tile it lacks (404) is not asked for again while the
// others still come. What comes is decoded to a 256-pixel tile, and a picture of more than
// kMaxTileSide pixels a side is refused from its header.
TEST(TileLoader, ErrorRepliesBackOffAndOnlyTileSizedPicturesAreDecoded) {
    for (const int status : {500, 503, 429, 403}) {
        test::TileServer server;
        server.setStatusMaker([status](int, int, int) { return status; });
        TileLoader loader(server.urlTemplate(), QString());
        int failed = 0;
        QObject::connect(&loader, &TileLoader::tileFailed, [&] { ++failed; });
        loader.request(3, 0, 0);
        ASSERT_TRUE(test::waitFor([&] { return failed == 1 && loader.inFlight() == 0; }));
        EXPECT_TRUE(loader.isResting()) << status;
        for (int repaint = 0; repaint < 5; ++repaint) {
            loader.request(3, 0, 0);
            loader.request(3, 1, 0);
        }
        test::serveEvents(100);
        EXPECT_EQ(server.requests(), 1) << status << ": asked again on a repaint";
    }

    test::TileServer server;
    server.setStatusMaker([](int, int x, int) { return x == 1 ? 404 : 200; });
    server.setTileMaker([](int zoom, int x, int) {
        return zoom == 4 && x == 2   ? pngOf(512, 512)
               : zoom == 4 && x == 3 ? pngOf(TileLoader::kMaxTileSide + 1, 4)
               : zoom == 4 && x == 4 ? QByteArray("\x89PNG but not one")
                                     : pngOf(256, 256);
    });
    TileLoader loader(server.urlTemplate(), QString());
    QList<QPoint> failed;
    QHash<int, QImage> decoded;
    QObject::connect(&loader, &TileLoader::tileFailed,
                     [&](int, int x, int y) { failed << QPoint(x, y); });
    QObject::connect(&loader, &TileLoader::tileDecoded,
                     [&](int, int x, int, const QImage& image) { decoded.insert(x, image); });
    loader.request(3, 1, 0);
    ASSERT_TRUE(test::waitFor([&] { return failed.size() == 1; }));
    loader.request(3, 1, 0);
    loader.request(3, 0, 0);
    ASSERT_TRUE(test::waitFor([&] { return decoded.contains(0); }));
    EXPECT_EQ(server.requests(), 2) << "the missing tile is not asked for again";
    EXPECT_FALSE(loader.isResting());

    QElapsedTimer clock;
    clock.start();
    for (int x = 2; x <= 4; ++x)
        loader.request(4, x, 0);
    ASSERT_TRUE(test::waitFor([&] { return decoded.contains(2) && failed.size() == 3; }));
    EXPECT_LT(clock.elapsed(), 3000);
    EXPECT_EQ(decoded[2].size(), QSize(256, 256));
    EXPECT_EQ(decoded[0].size(), QSize(256, 256));
    QSet<int> failedColumns;
    for (const QPoint& p : failed)
        failedColumns.insert(p.x());
    EXPECT_EQ(failedColumns, (QSet<int>{1, 3, 4})) << "missing, claiming too much, no picture";
    EXPECT_FALSE(TileLoader::decodeTile(pngOf(TileLoader::kMaxTileSide, 4)).isNull());
}

// Emptying the cache empties it for the loaders using it, and the next start asks the server
// again; the cache folder is closed to other users.
TEST(TileLoader, ClearingTheCacheForgetsEveryTile) {
    test::TileServer server;
    QTemporaryDir dir;
    const QString cache = dir.filePath("tiles");
    TileLoader loader(server.urlTemplate(), cache);
    EXPECT_EQ(QFileInfo(cache).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
    int ready = 0;
    QObject::connect(&loader, &TileLoader::tileReady, [&] { ++ready; });
    loader.request(2, 1, 1);
    ASSERT_TRUE(test::waitFor([&] { return ready == 1; }));
    int cleared = 0;
    QObject::connect(&MapTileNotices::instance(), &MapTileNotices::cacheCleared,
                     [&] { ++cleared; });
    TileLoader::clearDiskCache(cache);
    EXPECT_EQ(cleared, 1);
    EXPECT_FALSE(QFileInfo::exists(cache + "/data8"));

    TileLoader again(server.urlTemplate(), cache);
    QObject::connect(&again, &TileLoader::tileReady, [&] { ++ready; });
    again.request(2, 1, 1);
    ASSERT_TRUE(test::waitFor([&] { return ready == 2; }));
    EXPECT_EQ(server.requests(), 2) << "the cleared tile came from the server again";
}
