#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;

namespace tagmoor {

// Fetches web map tiles for the map, politely: a User-Agent that names Tagmoor and its
// version, at most two requests (so two connections) at a time, newest wishes first, and a
// disk cache that keeps each tile as long as the server's headers allow. When the server
// cannot be reached the loader rests for a while and asks nothing, so an offline map never
// waits. Main thread.
class TileLoader : public QObject {
    Q_OBJECT
public:
    static constexpr int kMaxConnections = 2;

    // `urlTemplate` holds {z}, {x} and {y}; `cacheFolder` empty means no disk cache.
    TileLoader(const QString& urlTemplate, const QString& cacheFolder, QObject* parent = nullptr);
    ~TileLoader() override;

    QString urlTemplate() const { return m_template; }
    // The cache folder of the user: tiles/ in the XDG cache folder of Tagmoor.
    static QString defaultCacheFolder();
    // "Tagmoor/<version> (photo metadata editor)".
    static QByteArray userAgent();

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
    void tileReady(int zoom, int x, int y, const QByteArray& bytes);
    // The server could not be reached, or answered with an error.
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

    QString m_template;
    QNetworkAccessManager* m_network;
    QList<Key> m_queue;
    QSet<Key> m_queued;
    QHash<QNetworkReply*, Key> m_running;
    QDateTime m_restUntil;
    int m_sent = 0;
};

} // namespace tagmoor
