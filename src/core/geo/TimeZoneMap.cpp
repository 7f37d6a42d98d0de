#include "geo/TimeZoneMap.h"

#include "geo/GeoData.h"

#include <QDataStream>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace tagmoor {

namespace {

// The grid as it is read: zone names, and per row the runs of one zone from 180 degrees west.
struct ZoneGrid {
    int perDegree = 0;
    QStringList zones;
    // Row r's runs are runs[rowStart[r]] up to runs[rowStart[r + 1]].
    QList<quint32> rowStart;
    QList<QPair<quint16, quint16>> runs;

    bool isEmpty() const { return perDegree == 0; }
};

ZoneGrid readGrid(const QByteArray& bytes) {
    ZoneGrid grid;
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    char magic[4] = {};
    quint16 version = 0, perDegree = 0, zoneCount = 0;
    if (in.readRawData(magic, 4) != 4 || QByteArray(magic, 4) != "TMTZ")
        return {};
    in >> version >> perDegree >> zoneCount;
    if (version != 1 || perDegree == 0 || perDegree > 1000)
        return {};
    for (int i = 0; i < zoneCount; ++i) {
        quint16 length = 0;
        in >> length;
        QByteArray name(length, Qt::Uninitialized);
        if (in.readRawData(name.data(), length) != length)
            return {};
        grid.zones << QString::fromUtf8(name);
    }
    const int rows = 180 * perDegree;
    const int width = 360 * perDegree;
    grid.rowStart.reserve(rows + 1);
    for (int row = 0; row < rows; ++row) {
        grid.rowStart << quint32(grid.runs.size());
        quint16 count = 0;
        in >> count;
        int covered = 0;
        for (int i = 0; i < count; ++i) {
            quint16 zone = 0, length = 0;
            in >> zone >> length;
            if (zone >= zoneCount)
                return {};
            grid.runs.append({zone, length});
            covered += length;
        }
        if (in.status() != QDataStream::Ok || covered != width)
            return {};
    }
    grid.rowStart << quint32(grid.runs.size());
    grid.perDegree = perDegree;
    return grid;
}

const ZoneGrid& grid() {
    static const ZoneGrid loaded = [] {
        const QString path = GeoData::locate(QStringLiteral("time-zones.bin"));
        return path.isEmpty() ? ZoneGrid() : readGrid(GeoData::readCompressed(path));
    }();
    return loaded;
}

} // namespace

std::optional<QString> TimeZoneMap::zoneAt(double latitude, double longitude) {
    const ZoneGrid& g = grid();
    if (g.isEmpty() || !std::isfinite(latitude) || !std::isfinite(longitude) ||
        std::abs(latitude) > 90 || std::abs(longitude) > 180)
        return std::nullopt;
    const int rows = 180 * g.perDegree;
    const int width = 360 * g.perDegree;
    const int row = std::clamp(int(std::floor((90.0 - latitude) * g.perDegree)), 0, rows - 1);
    const int column = std::clamp(int(std::floor((longitude + 180.0) * g.perDegree)), 0, width - 1);
    int start = 0;
    for (quint32 i = g.rowStart[row]; i < g.rowStart[row + 1]; ++i) {
        start += g.runs[i].second;
        if (column < start)
            return g.zones[g.runs[i].first];
    }
    return std::nullopt;
}

bool TimeZoneMap::isAvailable() {
    return !grid().isEmpty();
}

} // namespace tagmoor
