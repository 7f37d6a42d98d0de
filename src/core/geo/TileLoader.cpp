#include "geo/TileLoader.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QUrl>

Q_LOGGING_CATEGORY(lcTiles, "tagmoor.geo.tiles")

namespace tagmoor {

namespace {
// How long the loader rests after the server could not be reached.
constexpr int kRestSeconds = 60;
constexpr qint64 kCacheBytes = 200 * 1024 * 1024;
constexpr int kTimeoutMs = 10000;
} // namespace

TileLoader::TileLoader(const QString& urlTemplate, const QString& cacheFolder, QObject* parent)
    : QObject(parent), m_template(urlTemplate), m_network(new QNetworkAccessManager(this)) {
    if (!cacheFolder.isEmpty()) {
        auto* cache = new QNetworkDiskCache(m_network);
        cache->setCacheDirectory(cacheFolder);
        cache->setMaximumCacheSize(kCacheBytes);
        m_network->setCache(cache);
    }
}

TileLoader::~TileLoader() {
    for (QNetworkReply* reply : m_running.keys()) {
        reply->disconnect(this);
        reply->abort();
    }
}

QString TileLoader::defaultCacheFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
           QStringLiteral("/tiles");
}

QByteArray TileLoader::userAgent() {
    QString version = QCoreApplication::applicationVersion();
    if (version.isEmpty())
        version = QStringLiteral("0");
    return QStringLiteral("Tagmoor/%1 (photo metadata editor)").arg(version).toUtf8();
}

bool TileLoader::isResting() const {
    return m_restUntil.isValid() && QDateTime::currentDateTimeUtc() < m_restUntil;
}

void TileLoader::request(int zoom, int x, int y) {
    if (m_template.isEmpty() || isResting())
        return;
    const Key key{zoom, x, y};
    if (m_queued.contains(key))
        return;
    for (const Key& running : m_running) {
        if (running == key)
            return;
    }
    m_queue.append(key);
    m_queued.insert(key);
    pump();
}

void TileLoader::clearQueue() {
    m_queue.clear();
    m_queued.clear();
}

void TileLoader::pump() {
    while (m_running.size() < kMaxConnections && !m_queue.isEmpty()) {
        // The newest wish first: it is what the map shows now.
        const Key key = m_queue.takeLast();
        m_queued.remove(key);
        QString address = m_template;
        address.replace(QStringLiteral("{z}"), QString::number(key.zoom))
            .replace(QStringLiteral("{x}"), QString::number(key.x))
            .replace(QStringLiteral("{y}"), QString::number(key.y));
        QNetworkRequest request{QUrl(address)};
        request.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                             QNetworkRequest::PreferNetwork);
        // One request per connection keeps the count of connections that of the requests.
        request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
        request.setTransferTimeout(kTimeoutMs);
        QNetworkReply* reply = m_network->get(request);
        ++m_sent;
        m_running.insert(reply, key);
        connect(reply, &QNetworkReply::finished, this,
                [this, reply, key] { finished(reply, key); });
    }
}

void TileLoader::finished(QNetworkReply* reply, Key key) {
    m_running.remove(reply);
    reply->deleteLater();
    const QNetworkReply::NetworkError error = reply->error();
    if (error == QNetworkReply::NoError) {
        emit tileReady(key.zoom, key.x, key.y, reply->readAll());
    } else {
        qCInfo(lcTiles) << "tile" << key.zoom << key.x << key.y << reply->errorString();
        if (error < QNetworkReply::ContentAccessDenied) {
            // Connection refused, host not found, timeout: the server is out of reach.
            m_restUntil = QDateTime::currentDateTimeUtc().addSecs(kRestSeconds);
            clearQueue();
        }
        emit tileFailed(key.zoom, key.x, key.y);
    }
    pump();
}

} // namespace tagmoor
