#include "geo/TileLoader.h"

#include "TileServer.h"
#include "workingset/WaitFor.h"

#include <QElapsedTimer>
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
