#include "geo/TileLoader.h"

#include "geo/MapTileNotices.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkDiskCache>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStandardPaths>
#include <QUrl>

#include <sys/stat.h>

Q_LOGGING_CATEGORY(lcTiles, "tagmoor.geo.tiles")

namespace tagmoor {

namespace {
// How long the loader rests after the server could not be reached or answered with an error;
// each rest in a row lasts twice as long as the one before, up to the longest.
constexpr int kRestSeconds = 60;
constexpr int kLongestRestSeconds = 15 * 60;
// How long a tile the server lacks is not asked for again.
constexpr int kMissingSeconds = 10 * 60;
constexpr qint64 kCacheBytes = 200 * 1024 * 1024;
constexpr int kTimeoutMs = 10000;
constexpr int kTileSize = 256;

// The loaders alive, to empty their caches with the folder (main thread only).
QList<TileLoader*>& liveLoaders() {
    static QList<TileLoader*> loaders;
    return loaders;
}
} // namespace

TileLoader::TileLoader(const QString& urlTemplate, const QString& cacheFolder, QObject* parent)
    : QObject(parent), m_template(urlTemplate), m_cacheFolder(cacheFolder),
      m_network(new QNetworkAccessManager(this)), m_restSeconds(kRestSeconds) {
    if (!cacheFolder.isEmpty()) {
        // The tiles tell where the photos were taken: the folder is the user's alone.
        QDir().mkpath(cacheFolder);
        ::chmod(QFile::encodeName(cacheFolder).constData(), 0700);
        m_cache = new QNetworkDiskCache(m_network);
        m_cache->setCacheDirectory(cacheFolder);
        m_cache->setMaximumCacheSize(kCacheBytes);
        m_network->setCache(m_cache);
    }
    m_decoders.setMaxThreadCount(2);
    liveLoaders().append(this);
}

TileLoader::~TileLoader() {
    liveLoaders().removeAll(this);
    for (QNetworkReply* reply : m_running.keys()) {
        reply->disconnect(this);
        reply->abort();
    }
    m_decoders.waitForDone();
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

QImage TileLoader::decodeTile(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // The header's size first: a small file may claim a huge picture.
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > kMaxTileSide || size.height() > kMaxTileSide)
        return {};
    QImage image;
    if (!reader.read(&image))
        return {};
    if (image.size() != QSize(kTileSize, kTileSize))
        image = image.scaled(kTileSize, kTileSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

void TileLoader::clearDiskCache(const QString& folder) {
    const QString wanted = QDir::cleanPath(folder);
    for (TileLoader* loader : std::as_const(liveLoaders())) {
        if (loader->m_cache && QDir::cleanPath(loader->m_cacheFolder) == wanted)
            loader->m_cache->clear();
    }
    QDir(folder).removeRecursively();
    emit MapTileNotices::instance().cacheCleared();
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
    if (const auto missing = m_missingUntil.constFind(key); missing != m_missingUntil.cend()) {
        if (QDateTime::currentDateTimeUtc() < *missing)
            return;
        m_missingUntil.erase(missing);
    }
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

QUrl TileLoader::urlOf(Key key) const {
    QString address = m_template;
    address.replace(QStringLiteral("{z}"), QString::number(key.zoom))
        .replace(QStringLiteral("{x}"), QString::number(key.x))
        .replace(QStringLiteral("{y}"), QString::number(key.y));
    return QUrl(address);
}

void TileLoader::pump() {
    while (m_running.size() < kMaxConnections && !m_queue.isEmpty()) {
        // The newest wish first: it is what the map shows now.
        const Key key = m_queue.takeLast();
        m_queued.remove(key);
        QNetworkRequest request{urlOf(key)};
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

void TileLoader::rest() {
    m_restUntil = QDateTime::currentDateTimeUtc().addSecs(m_restSeconds);
    m_restSeconds = std::min(m_restSeconds * 2, kLongestRestSeconds);
    clearQueue();
}

void TileLoader::finished(QNetworkReply* reply, Key key) {
    m_running.remove(reply);
    reply->deleteLater();
    const QNetworkReply::NetworkError error = reply->error();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (error == QNetworkReply::NoError) {
        m_restSeconds = kRestSeconds;
        const QByteArray bytes = reply->readAll();
        emit tileReady(key.zoom, key.x, key.y, bytes);
        // Decoded off the main thread: a tile of many pixels would stall the screens.
        // The loader waits for its decoders when it goes, and a call queued to it then is
        // dropped with it.
        m_decoders.start([this, key, bytes] {
            const QImage image = decodeTile(bytes);
            QMetaObject::invokeMethod(
                this,
                [this, key, image] {
                    if (image.isNull()) {
                        qCInfo(lcTiles)
                            << "tile" << key.zoom << key.x << key.y << "is no picture of at most"
                            << kMaxTileSide << "pixels a side";
                        // Neither asked for again on the next repaint nor kept.
                        m_missingUntil.insert(
                            key, QDateTime::currentDateTimeUtc().addSecs(kMissingSeconds));
                        if (m_cache)
                            m_cache->remove(urlOf(key));
                        emit tileFailed(key.zoom, key.x, key.y);
                    } else {
                        emit tileDecoded(key.zoom, key.x, key.y, image);
                    }
                },
                Qt::QueuedConnection);
        });
    } else {
        qCInfo(lcTiles) << "tile" << key.zoom << key.x << key.y << status << reply->errorString();
        const bool serverSideTrouble = status >= 500 || status == 429 || status == 403;
        if (status >= 400 && !serverSideTrouble) {
            // This tile is missing; the others may well be there.
            m_missingUntil.insert(key, QDateTime::currentDateTimeUtc().addSecs(kMissingSeconds));
        } else {
            // Out of reach or too slow, or the server is in trouble or wants fewer requests.
            rest();
        }
        emit tileFailed(key.zoom, key.x, key.y);
    }
    pump();
}

} // namespace tagmoor

// The meta-object code goes with this file rather than with every class of the library, so
// that a program that does not use the class links neither it nor what it needs.
#include "moc_TileLoader.cpp"
