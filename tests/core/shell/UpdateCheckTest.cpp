#include "TestSupport.h"
#include "shell/ShellFixture.h"
#include "shell/UpdateChecker.h"
#include "workingset/WaitFor.h"

#include <QTcpServer>
#include <QTcpSocket>

namespace tagmoor {
namespace {

const QByteArray feed = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
  <channel>
    <title>Tagmoor</title>
    <item>
      <title>Version 2.10</title>
      <enclosure url="https://example.invalid/tagmoor-2.10.tar.gz" length="1234"
                 type="application/octet-stream" sparkle:version="210"
                 sparkle:shortVersionString="2.10"/>
    </item>
    <item>
      <title>Version 2.9</title>
      <sparkle:version>209</sparkle:version>
      <sparkle:shortVersionString>2.9</sparkle:shortVersionString>
      <enclosure url="https://example.invalid/tagmoor-2.9.tar.gz" length="99"/>
    </item>
    <item><title>No version at all</title></item>
  </channel>
</rss>)";

// Serves one fixed body to every request on 127.0.0.1.
class FeedServer {
public:
    explicit FeedServer(QByteArray body) : m_body(std::move(body)) {
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* s = m_server.nextPendingConnection()) {
                QObject::connect(s, &QTcpSocket::readyRead, s, [this, s] {
                    if (!s->readAll().contains("\r\n\r\n"))
                        return;
                    ++requests;
                    s->write("HTTP/1.1 200 OK\r\nContent-Type: application/rss+xml\r\n"
                             "Connection: close\r\nContent-Length: " +
                             QByteArray::number(m_body.size()) + "\r\n\r\n" + m_body);
                    s->disconnectFromHost();
                });
                QObject::connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
            }
        });
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
    }
    QString url() const {
        return QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(m_server.serverPort());
    }
    int requests = 0;

private:
    QTcpServer m_server;
    QByteArray m_body;
};

struct Outcome {
    QList<AppcastItem> found;
    int none = 0;
    int failed = 0;
};

Outcome watch(UpdateChecker& checker) {
    auto out = std::make_shared<Outcome>();
    QObject::connect(&checker, &UpdateChecker::updateFound,
                     [out](const AppcastItem& i) { out->found << i; });
    QObject::connect(&checker, &UpdateChecker::noUpdateFound, [out] { ++out->none; });
    QObject::connect(&checker, &UpdateChecker::checkFailed, [out] { ++out->failed; });
    test::waitFor([out] { return out->found.size() + out->none + out->failed > 0; }, 10000);
    return *out;
}

TEST(UpdateCheck, ReadsTheFeedFromLoopbackAndPicksTheNewestRelease) {
    const QList<AppcastItem> items = parseAppcast(feed);
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(items[0].version, "210");
    EXPECT_EQ(items[0].shortVersion, "2.10");
    EXPECT_EQ(items[0].length, 1234);
    EXPECT_EQ(items[1].version, "209");
    EXPECT_EQ(items[1].downloadUrl, QUrl("https://example.invalid/tagmoor-2.9.tar.gz"));
    EXPECT_GT(compareVersions("2.10", "2.9"), 0);
    EXPECT_EQ(compareVersions("2.0", "2"), 0);
    EXPECT_LT(compareVersions("1.9.9", "2"), 0);
    EXPECT_TRUE(parseAppcast("<rss><channel><item>").isEmpty());
    EXPECT_TRUE(parseAppcast("not xml at all").isEmpty());
    EXPECT_EQ(newestUpdate(items, "2.9")->shortVersion, "2.10");
    EXPECT_FALSE(newestUpdate(items, "2.10"));

    test::ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    FeedServer server(feed);
    settings.setUpdateFeedUrl(server.url());

    UpdateChecker older(settings, "2.1");
    older.autoInstallUpdates();
    EXPECT_TRUE(older.automaticallyChecksForUpdates && older.automaticallyDownloadsUpdates);
    Outcome o = watch(older);
    ASSERT_EQ(o.found.size(), 1);
    EXPECT_EQ(o.found[0].shortVersion, "2.10");

    UpdateChecker current(settings, "2.10");
    current.checkForUpdate();
    EXPECT_FALSE(current.automaticallyChecksForUpdates);
    o = watch(current);
    EXPECT_EQ(o.none, 1);
    EXPECT_TRUE(o.found.isEmpty());
    EXPECT_EQ(server.requests, 2);
}

TEST(UpdateCheck, WithoutAnAddressOrAServerItStaysQuiet) {
    test::ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    UpdateChecker checker(settings, "1.0");
    int reports = 0;
    QObject::connect(&checker, &UpdateChecker::updateFound, [&] { ++reports; });
    QObject::connect(&checker, &UpdateChecker::noUpdateFound, [&] { ++reports; });
    QObject::connect(&checker, &UpdateChecker::checkFailed, [&] { ++reports; });
    EXPECT_FALSE(checker.checkForUpdatesInBackground());
    settings.setUpdateFeedUrl("not an address");
    EXPECT_FALSE(checker.checkForUpdatesInBackground());
    test::serveEvents(100);
    EXPECT_EQ(reports, 0);

    // A closed port: the check ends as failed, and nothing else.
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    settings.setUpdateFeedUrl(QStringLiteral("http://127.0.0.1:%1/feed").arg(port));
    EXPECT_TRUE(checker.checkForUpdatesInBackground());
    const Outcome o = watch(checker);
    EXPECT_EQ(o.failed, 1);
    EXPECT_TRUE(o.found.isEmpty());

    // A server that answers with something else than a feed: no update, no crash.
    FeedServer junk("<html>hello</html>");
    settings.setUpdateFeedUrl(junk.url());
    EXPECT_TRUE(checker.checkForUpdatesInBackground());
    EXPECT_EQ(watch(checker).none, 1);
}

// A check the user asked for ends with one answer, never before the caller has returned; a
// check of the program's own gives none. (The texts the user sees: tests/app/UpdateMenuTest.)
TEST(UpdateCheck, OnlyTheUsersCheckIsAnswered) {
    test::ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    UpdateChecker checker(settings, "2.10");
    QList<UpdateChecker::Answer> answers;
    QObject::connect(&checker, &UpdateChecker::userCheckAnswered,
                     [&](UpdateChecker::Answer a) { answers << a; });

    checker.checkAskedByUser(); // no address
    EXPECT_TRUE(answers.isEmpty());
    test::waitFor([&] { return !answers.isEmpty(); }, 10000);
    EXPECT_EQ(answers, QList{UpdateChecker::Answer::NoSource});

    FeedServer server(feed);
    settings.setUpdateFeedUrl(server.url());
    answers.clear();
    EXPECT_TRUE(checker.checkForUpdatesInBackground());
    EXPECT_EQ(watch(checker).none, 1);
    checker.checkAskedByUser();
    test::waitFor([&] { return !answers.isEmpty(); }, 10000);
    test::serveEvents(50);
    EXPECT_EQ(answers, QList{UpdateChecker::Answer::UpToDate});
    EXPECT_EQ(server.requests, 2);
}

// The feed is read over https; plain http only from this computer, whose traffic never
// leaves it. A refused address sends nothing and counts as no check.
TEST(UpdateCheck, OnlyAnHttpsOrLoopbackFeedIsAsked) {
    using Source = UpdateChecker::Source;
    const std::pair<const char*, Source> rows[] = {
        {"", Source::None},
        {"   ", Source::None},
        {"https://updates.example.org/appcast.xml", Source::Usable},
        {"HTTPS://updates.example.org/appcast.xml", Source::Usable},
        {"http://updates.example.org/appcast.xml", Source::Refused},
        {"http://127.0.0.1:8080/appcast.xml", Source::Usable},
        {"http://localhost/appcast.xml", Source::Usable},
        {"http://[::1]:8080/appcast.xml", Source::Usable},
        {"http://127.0.0.1.example.org/appcast.xml", Source::Refused},
        {"ftp://updates.example.org/appcast.xml", Source::Refused},
        {"file:///tmp/appcast.xml", Source::Refused},
        {"not an address", Source::Refused},
    };
    for (const auto& [address, expected] : rows)
        EXPECT_EQ(UpdateChecker::sourceOf(QString::fromLatin1(address)), expected) << address;

    test::ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    settings.setUpdateFeedUrl("http://updates.example.org/appcast.xml");
    UpdateChecker checker(settings, "1.0");
    QList<UpdateChecker::Answer> answers;
    QObject::connect(&checker, &UpdateChecker::userCheckAnswered,
                     [&](UpdateChecker::Answer a) { answers << a; });
    EXPECT_FALSE(checker.checkForUpdatesInBackground());
    checker.checkAskedByUser();
    test::waitFor([&] { return !answers.isEmpty(); }, 10000);
    EXPECT_EQ(answers, QList{UpdateChecker::Answer::RefusedSource});
    EXPECT_FALSE(settings.lastUpdateCheck().has_value());
}

// The check of the program's own asks the feed at most once a day, counted from the last
// check of any kind; a clock set back makes it due again.
TEST(UpdateCheck, TheAutomaticCheckRunsAtMostOnceADay) {
    test::ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    FeedServer server(feed);
    settings.setUpdateFeedUrl(server.url());
    UpdateChecker checker(settings, "2.10");
    QDateTime now = QDateTime(QDate(2026, 3, 1), QTime(9, 0), Qt::UTC);
    checker.setClock([&now] { return now; });

    EXPECT_TRUE(checker.isAutomaticCheckDue());
    EXPECT_TRUE(checker.runAutomaticCheck(false));
    EXPECT_EQ(watch(checker).none, 1);
    EXPECT_EQ(settings.lastUpdateCheck(), now.toSecsSinceEpoch());

    now = now.addSecs(23 * 3600);
    EXPECT_FALSE(checker.runAutomaticCheck(true));
    test::serveEvents(50);
    EXPECT_EQ(server.requests, 1);
    EXPECT_FALSE(checker.automaticallyDownloadsUpdates);

    // The user's own check is never held back, and the day starts again from it.
    checker.checkAskedByUser();
    EXPECT_EQ(watch(checker).none, 1);
    EXPECT_EQ(server.requests, 2);
    now = now.addSecs(3600);
    EXPECT_FALSE(checker.runAutomaticCheck(false));
    now = now.addSecs(23 * 3600);
    EXPECT_TRUE(checker.runAutomaticCheck(true));
    EXPECT_EQ(watch(checker).none, 1);
    EXPECT_EQ(server.requests, 3);

    now = now.addDays(-2);
    EXPECT_TRUE(checker.isAutomaticCheckDue());
}

} // namespace
} // namespace tagmoor
