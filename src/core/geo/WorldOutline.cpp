#include "geo/WorldOutline.h"

#include "geo/GeoData.h"

#include <QDataStream>

#include <mutex>

namespace tagmoor {

namespace {

bool readLine(QDataStream& in, WorldOutline::Line& line) {
    quint32 count = 0;
    in >> count;
    if (in.status() != QDataStream::Ok || count > 10'000'000)
        return false;
    line.points.reserve(count);
    double minX = 180, minY = 90, maxX = -180, maxY = -90;
    for (quint32 i = 0; i < count; ++i) {
        qint32 x = 0;
        qint32 y = 0;
        in >> x >> y;
        const QPointF p(x / 1e4, y / 1e4);
        line.points.append(p);
        minX = std::min(minX, p.x());
        maxX = std::max(maxX, p.x());
        minY = std::min(minY, p.y());
        maxY = std::max(maxY, p.y());
    }
    line.bounds = QRectF(QPointF(minX, minY), QPointF(maxX, maxY));
    return in.status() == QDataStream::Ok;
}

} // namespace

std::shared_ptr<const WorldOutline> WorldOutline::fromData(const QByteArray& data) {
    QDataStream in(data);
    in.setByteOrder(QDataStream::LittleEndian);
    char magic[4] = {};
    quint32 version = 0;
    if (in.readRawData(magic, 4) != 4 || std::string_view(magic, 4) != "TMOL")
        return nullptr;
    in >> version;
    if (version != 1)
        return nullptr;
    auto outline = std::make_shared<WorldOutline>();
    quint32 rings = 0;
    in >> rings;
    for (quint32 i = 0; i < rings && in.status() == QDataStream::Ok; ++i) {
        Line ring;
        if (!readLine(in, ring))
            return nullptr;
        outline->land.append(std::move(ring));
    }
    quint32 lines = 0;
    in >> lines;
    for (quint32 i = 0; i < lines && in.status() == QDataStream::Ok; ++i) {
        quint8 kind = 0;
        in >> kind;
        Line line;
        if (!readLine(in, line))
            return nullptr;
        line.isBorder = kind == 1;
        outline->lines.append(std::move(line));
    }
    if (in.status() != QDataStream::Ok)
        return nullptr;
    return outline;
}

std::shared_ptr<const WorldOutline> WorldOutline::shared() {
    static std::once_flag once;
    static std::shared_ptr<const WorldOutline> outline;
    std::call_once(once, [] {
        outline =
            fromData(GeoData::readCompressed(GeoData::locate(QStringLiteral("world-outline.bin"))));
    });
    return outline;
}

} // namespace tagmoor
