// Help > Check for Updates, asked by the user, always answers: a newer release, "You're up to
// date", "Could not reach the update server", or why no server was asked. The feed is served
// from loopback.

#include "AppTestSupport.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

QByteArray feedOf(const QString& version) {
    return QStringLiteral(R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
  <channel><item><title>Version %1</title>
    <enclosure url="https://example.invalid/tagmoor-%1.tar.gz" length="1"
               sparkle:version="%1" sparkle:shortVersionString="%1"/>
  </item></channel>
</rss>)")
        .arg(version)
        .toUtf8();
}

// Answers every request on 127.0.0.1 with the body it holds.
class FeedServer : public QTcpServer {
public:
    QByteArray body;
    FeedServer() {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* s = nextPendingConnection()) {
                connect(s, &QTcpSocket::readyRead, s, [this, s] {
                    if (!s->readAll().contains("\r\n\r\n"))
                        return;
                    s->write("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                             QByteArray::number(body.size()) + "\r\n\r\n" + body);
                    s->disconnectFromHost();
                });
                connect(s, &QTcpSocket::disconnected, s, &QObject::deleteLater);
            }
        });
        listen(QHostAddress::LocalHost);
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/feed").arg(serverPort()); }
};

} // namespace

class UpdateMenuTest : public QObject {
    Q_OBJECT
private slots:
    void checkForUpdatesAlwaysAnswersTheUser();
};

void UpdateMenuTest::checkForUpdatesAlwaysAnswersTheUser() {
    TestApp t;
    QAction* check = named<QAction>(&t.window(), QStringLiteral("menuItemCheckForUpdates"));
    QVERIFY(check);
    const auto lastTitle = [&] {
        return t.prompt.alerts.isEmpty() ? QString() : t.prompt.alerts.last().title;
    };

    // No address set: the answer says so, and does not blame the network.
    check->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(lastTitle(), QStringLiteral("No update source is set"));
    QTest::qWait(50);
    QCOMPARE(t.prompt.alerts.size(), 1);

    // A feed that is not read over https is refused before anything is sent.
    t.app->settings().setUpdateFeedUrl(QStringLiteral("http://updates.example.invalid/feed"));
    check->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 2);
    QCOMPARE(lastTitle(), QStringLiteral("The update address is refused"));
    QVERIFY(t.prompt.alerts.last().text.contains(
        QStringLiteral("\"http://updates.example.invalid/feed\"")));
    QVERIFY(t.prompt.alerts.last().text.contains(QStringLiteral("https")));
    QVERIFY(!t.app->settings().lastUpdateCheck().has_value());

    FeedServer server;
    QVERIFY(server.isListening());
    t.app->settings().setUpdateFeedUrl(server.url());
    server.body = feedOf(AppDelegate::version());
    check->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 3);
    QCOMPARE(lastTitle(), QStringLiteral("You're up to date"));
    QVERIFY(t.prompt.alerts.last().text.contains(AppDelegate::version()));

    // A newer release is told once, with where to get it.
    server.body = feedOf(QStringLiteral("99.0"));
    check->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 4);
    QCOMPARE(lastTitle(), QStringLiteral("A new version of Tagmoor is available"));
    QTest::qWait(100);
    QCOMPARE(t.prompt.alerts.size(), 4);

    // The server gone: the same port now refuses the connection.
    const QString url = server.url();
    server.close();
    t.app->settings().setUpdateFeedUrl(url);
    check->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(t.prompt.alerts.size(), 5, 15000);
    QCOMPARE(lastTitle(), QStringLiteral("Could not reach the update server"));
}

TAGMOOR_APP_TEST_MAIN(UpdateMenuTest)
#include "UpdateMenuTest.moc"
