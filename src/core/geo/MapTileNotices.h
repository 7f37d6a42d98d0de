#pragma once

#include <QObject>

namespace tagmoor {

// What the user decides about web map tiles, told to every map at once: whether tiles are
// fetched from the internet at all, and that the tile cache was emptied (it holds where the
// photos were taken). Main thread.
class MapTileNotices : public QObject {
    Q_OBJECT
public:
    static MapTileNotices& instance();

signals:
    // "Load map tiles from the internet" was switched.
    void loadingChanged(bool on);
    // The disk cache of tiles was emptied: the tiles kept in memory go too.
    void cacheCleared();

private:
    MapTileNotices() = default;
};

} // namespace tagmoor
