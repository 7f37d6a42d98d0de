#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

class QNetworkAccessManager;
class QNetworkDiskCache;
class QNetworkReply;
class QUrl;

namespace tagmoor {

// Fetches web map tiles for the map, politely: a User-Agent that names Tagmoor and its
// version, at most two requests (so two connections) at a time, newest wishes first, and a
// disk cache, closed to other users, that keeps each tile as long as the server's headers
// allow. When the server cannot be reached, or answers with an error of its own (5xx), a
// refusal (403) or a request to slow down (429), the loader rests and asks nothing, a longer
// while each time until a tile comes again, so an offline map never waits and a server is not
// asked the same on every repaint. A tile the server says it lacks (another 4xx) is not asked
// for again for a while. Tiles are decoded on threads of their own. Main thread.
class TileLoader : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxConnections = 2;
    // The largest side of a tile that is decoded; tiles are 256 pixels, some servers send 512.
    static constexpr int kMaxTileSide = 1024;

    // `urlTemplate` holds {z}, {x} and {y}; `cacheFolder` empty means no disk cache.
    TileLoader(const QString& urlTemplate, const QString& cacheFolder, QObject* parent = nullptr);
    ~TileLoader() override;

    QString urlTemplate() const { return m_template; }
    // The cache folder of the user: tiles/ in the XDG cache folder of Tagmoor.
    static QString defaultCacheFolder();
    // "Tagmoor/<version> (photo metadata editor)".
    static QByteArray userAgent();
    // A tile's picture at 256 by 256 pixels; a null image for bytes that are no picture, or
    // whose header claims more than kMaxTileSide pixels a side (no pixel is decoded then).
    // Safe on any thread.
    static QImage decodeTile(const QByteArray& bytes);
    // Empties the tile cache in `folder`: the caches of the loaders that use it and the
    // folder itself; tells the maps (MapTileNotices::cacheCleared).
    static void clearDiskCache(const QString& folder);

    // Asks for a tile; `tileReady` follows when it comes. A tile asked for again while it is
    // on its way is not asked twice.
    void request(int zoom, int x, int y);
    // Forgets the wishes not yet sent (the map moved on).
    void clearQueue();
    // True while the loader rests after the server could not be reached.
    bool isResting() const;
    int requestsSent() const { return m_sent; }
    int inFlight() const { return int(m_running.size()); }

signals:
    // The tile's bytes as the server (or the cache) gave them.
    void tileReady(int zoom, int x, int y, const QByteArray& bytes);
    // The same tile decoded, after tileReady.
    void tileDecoded(int zoom, int x, int y, const QImage& image);
    // The server could not be reached, answered with an error, or sent no picture.
    void tileFailed(int zoom, int x, int y);

private:
    struct Key {
        int zoom, x, y;
        bool operator==(const Key&) const = default;
    };
    friend size_t qHash(const Key& key, size_t seed) {
        return qHashMulti(seed, key.zoom, key.x, key.y);
    }

    void pump();
    void finished(QNetworkReply* reply, Key key);
    void rest();
    QUrl urlOf(Key key) const;

    QString m_template;
    QString m_cacheFolder;
    QNetworkAccessManager* m_network;
    QNetworkDiskCache* m_cache = nullptr;
    QList<Key> m_queue;
    QSet<Key> m_queued;
    QHash<QNetworkReply*, Key> m_running;
    QDateTime m_restUntil;
    int m_restSeconds;
    // Tiles the server said it lacks, and until when they are not asked for.
    QHash<Key, QDateTime> m_missingUntil;
    QThreadPool m_decoders;
    int m_sent = 0;
};

} // namespace tagmoor
