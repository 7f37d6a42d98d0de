// Times putting 10,000 photos on a track of 100,000 fixes: the binary search of TrackMatch
// against a plain linear scan of the fixes, in the same run (the panel's re-match on each key
// stroke of the clock offset is the same work). Prints milliseconds and the ratio; checks that both
// ways agree.
#include "geo/TrackMatch.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cmath>
#include <cstdio>
#include <random>

using namespace tagmoor;

namespace {

// A track that wanders, one fix every 5 s, with a gap of 20 minutes every 10,000 fixes.
QList<TrackPoint> makeTrack(int fixes) {
    QList<TrackPoint> points;
    points.reserve(fixes);
    QDateTime time(QDate(2024, 6, 1), QTime(6, 0), QTimeZone::utc());
    double lat = 46.0;
    double lon = 7.0;
    for (int i = 0; i < fixes; ++i) {
        points.push_back({time, lat, lon, 500.0 + (i % 300), QStringLiteral("bench.gpx"), i + 3});
        lat += 0.0001 * std::sin(i / 50.0);
        lon += 0.0001 * std::cos(i / 70.0);
        time = time.addSecs(i % 10000 == 9999 ? 1200 : 5);
    }
    return points;
}

// The plain way: walk the fixes from the start until the first one after the photo.
GeotagMatch linearMatch(const QList<TrackPoint>& points, const QDateTime& camera,
                        const GeotagOptions& options) {
    GeotagMatch match;
    match.utc = receiverTime(camera, options);
    qsizetype later = 0;
    while (later < points.size() && points[later].time <= match.utc)
        ++later;
    if (later > 0 && points[later - 1].time == match.utc) {
        match.outcome = GeotagMatch::Outcome::Matched;
        match.latitude = points[later - 1].latitude;
        match.longitude = points[later - 1].longitude;
        return match;
    }
    if (later == 0 || later == points.size()) {
        match.outcome =
            later == 0 ? GeotagMatch::Outcome::BeforeTrack : GeotagMatch::Outcome::AfterTrack;
        return match;
    }
    const TrackPoint& a = points[later - 1];
    const TrackPoint& b = points[later];
    const qint64 gap = a.time.msecsTo(b.time);
    if (gap > options.maxGapSeconds * 1000) {
        match.outcome = GeotagMatch::Outcome::InGap;
        return match;
    }
    const double f = double(a.time.msecsTo(match.utc)) / double(gap);
    match.outcome = GeotagMatch::Outcome::Matched;
    match.latitude = a.latitude + (b.latitude - a.latitude) * f;
    match.longitude = a.longitude + (b.longitude - a.longitude) * f;
    return match;
}

template <typename Fn> double timeMs(Fn&& fn) {
    QElapsedTimer timer;
    timer.start();
    fn();
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const int photos = argc > 1 ? std::atoi(argv[1]) : 10000;
    const int fixes = argc > 2 ? std::atoi(argv[2]) : 100000;
    const QList<TrackPoint> track = makeTrack(fixes);
    GeotagOptions options;
    options.cameraZone = QTimeZone(7200);
    // Capture times on a camera two hours ahead of UTC, spread over the track and a little
    // beyond its ends.
    std::mt19937 random(7);
    const qint64 span = track.first().time.secsTo(track.last().time);
    std::uniform_int_distribution<qint64> offset(-600, span + 600);
    QList<QDateTime> shots;
    for (int i = 0; i < photos; ++i) {
        const QDateTime utc = track.first().time.addSecs(offset(random));
        const QDateTime camera = utc.toOffsetFromUtc(7200);
        shots.push_back(QDateTime(camera.date(), camera.time()));
    }

    std::vector<GeotagMatch> ours(photos);
    std::vector<GeotagMatch> plain(photos);
    const double trackMatchMs = timeMs([&] {
        for (int i = 0; i < photos; ++i)
            ours[i] = matchOnTrack(track, shots[i], options);
    });
    const double linearMs = timeMs([&] {
        for (int i = 0; i < photos; ++i)
            plain[i] = linearMatch(track, shots[i], options);
    });
    int matched = 0;
    int disagree = 0;
    for (int i = 0; i < photos; ++i) {
        matched += ours[i].matched() ? 1 : 0;
        if (ours[i].outcome != plain[i].outcome ||
            std::fabs(ours[i].latitude - plain[i].latitude) > 1e-9 ||
            std::fabs(ours[i].longitude - plain[i].longitude) > 1e-9)
            ++disagree;
    }

    std::printf("%d photos against %d fixes (%d placed, %d disagree)\n", photos, fixes, matched,
                disagree);
    std::printf("TrackMatch (binary search)   %10.2f ms\n", trackMatchMs);
    std::printf("plain linear scan            %10.2f ms\n", linearMs);
    std::printf("ratio TrackMatch / linear    %10.4f  (linear is %.0fx slower)\n",
                trackMatchMs / linearMs, linearMs / trackMatchMs);
    std::printf("budget 100 ms: %s\n", trackMatchMs < 100 ? "met" : "MISSED");
    return disagree == 0 && trackMatchMs < 100 ? 0 : 1;
}
