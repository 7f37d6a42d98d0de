#include "geo/GpxTrack.h"

#include <QCoreApplication>
#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>

namespace tagmoor {

namespace {

// A track file larger than this is not a track log.
constexpr qint64 kLargestTrackFile = 512LL * 1024 * 1024;

QString problemAt(const QString& name, qint64 line, const QString& what) {
    return QStringLiteral("%1:%2: %3").arg(name).arg(line).arg(what);
}

std::optional<double> coordinate(const QXmlStreamAttributes& attributes, QLatin1String name,
                                 double limit) {
    bool ok = false;
    const double value = attributes.value(name).toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::abs(value) > limit)
        return std::nullopt;
    return value;
}

// The children of one point that matter: its time and its elevation.
void readPointChildren(QXmlStreamReader& xml, TrackPoint& point, QString& timeText) {
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("time")) {
            timeText = xml.readElementText().trimmed();
        } else if (xml.name() == QLatin1String("ele")) {
            bool ok = false;
            const double ele = xml.readElementText().trimmed().toDouble(&ok);
            if (ok && std::isfinite(ele))
                point.elevation = ele;
        } else {
            xml.skipCurrentElement();
        }
    }
}

bool isPointElement(QStringView name) {
    return name == QLatin1String("trkpt") || name == QLatin1String("rtept") ||
           name == QLatin1String("wpt");
}

void sortByTime(QList<TrackPoint>& points) {
    std::stable_sort(points.begin(), points.end(),
                     [](const TrackPoint& a, const TrackPoint& b) { return a.time < b.time; });
}

} // namespace

GpxTracks readGpx(const QByteArray& bytes, const QString& name) {
    GpxTracks tracks;
    QXmlStreamReader xml(bytes);
    bool sawGpx = false;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == QLatin1String("gpx")) {
            sawGpx = true;
            continue;
        }
        if (!isPointElement(xml.name()))
            continue;
        TrackPoint point;
        point.file = name;
        point.line = int(xml.lineNumber());
        const auto latitude = coordinate(xml.attributes(), QLatin1String("lat"), 90);
        const auto longitude = coordinate(xml.attributes(), QLatin1String("lon"), 180);
        QString timeText;
        readPointChildren(xml, point, timeText);
        if (xml.hasError())
            break;
        if (!latitude || !longitude) {
            tracks.problems << problemAt(
                name, point.line,
                QCoreApplication::translate("Geotag", "a point without a valid position"));
            continue;
        }
        point.latitude = *latitude;
        point.longitude = *longitude;
        point.time = QDateTime::fromString(timeText, Qt::ISODateWithMs);
        if (!point.time.isValid())
            continue; // an untimed point cannot be matched to a photo
        point.time = point.time.toUTC();
        tracks.points.append(point);
    }
    sortByTime(tracks.points);
    if (xml.hasError()) {
        tracks.problems << problemAt(name, xml.lineNumber(), xml.errorString());
    } else if (!sawGpx) {
        tracks.problems << problemAt(name, 1,
                                     QCoreApplication::translate("Geotag", "not a GPX file"));
    }
    return tracks;
}

GpxTracks loadGpxFiles(const QStringList& paths) {
    GpxTracks all;
    for (const QString& path : paths) {
        QFile file(path);
        if (file.size() > kLargestTrackFile) {
            all.problems << problemAt(path, 0,
                                      QCoreApplication::translate("Geotag", "too large to be a "
                                                                            "track log"));
            continue;
        }
        if (!file.open(QIODevice::ReadOnly)) {
            all.problems << problemAt(path, 0, file.errorString());
            continue;
        }
        GpxTracks one = readGpx(file.readAll(), path);
        all.points += one.points;
        all.problems += one.problems;
    }
    sortByTime(all.points);
    return all;
}

} // namespace tagmoor
