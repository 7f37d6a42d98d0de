// The location subsystem against its targets:
//  - each gazetteer question (reverse and forward) under 5 ms, over all places;
//  - panning the outline map: every frame under 16 ms (60 frames a second);
//  - the preview of a 24-megapixel JPEG: the window at once, the picture within 300 ms.
//
//   bench_location [rounds]

#include "app/location/MapView.h"
#include "app/location/PreviewViewController.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "geo/Gazetteer.h"
#include "geo/GeoData.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tagmoor;

namespace {

struct Stats {
    double mean = 0, p95 = 0, worst = 0;
};

Stats statsOf(std::vector<double> ms) {
    Stats s;
    if (ms.empty())
        return s;
    std::sort(ms.begin(), ms.end());
    for (double v : ms)
        s.mean += v;
    s.mean /= double(ms.size());
    s.p95 = ms[std::size_t(double(ms.size() - 1) * 0.95)];
    s.worst = ms.back();
    return s;
}

void print(const char* what, const Stats& s, double target) {
    std::printf("%-34s mean %7.3f ms  p95 %7.3f ms  worst %7.3f ms  target < %.0f ms: %s\n", what,
                s.mean, s.p95, s.worst, target, s.worst < target ? "ok" : "MISSED");
}

void gazetteer(int rounds) {
    QElapsedTimer clock;
    clock.start();
    const auto places = Gazetteer::fromFile(GeoData::locate(QStringLiteral("places.bin")));
    std::printf("gazetteer: %d places loaded in %.0f ms (on a worker thread in the app)\n",
                places->size(), clock.nsecsElapsed() / 1e6);

    QRandomGenerator random(15);
    std::vector<double> reverse;
    std::vector<double> forward;
    const QStringList names{"Paris", "zurich",      "São Paulo", "new york",      "Tokyo",
                            "San",   "Springfield", "Reykjav",   "Mün",           "a",
                            "Lon",   "Kraków",      "ciudad",    "Paris, Canada", "Qxzqxz",
                            "st",    "Wien",        "Bogot"};
    for (int i = 0; i < rounds; ++i) {
        // Anywhere on the globe: towns, open sea and ice alike.
        const double lat = random.bounded(170.0) - 85;
        const double lon = random.bounded(360.0) - 180;
        clock.restart();
        const auto mark = places->reverse(lat, lon);
        reverse.push_back(clock.nsecsElapsed() / 1e6);
        Q_UNUSED(mark);
        const QString& name = names[i % names.size()];
        clock.restart();
        const auto marks = places->forward(name);
        forward.push_back(clock.nsecsElapsed() / 1e6);
    }
    print("reverse geocoding", statsOf(reverse), 5);
    print("forward geocoding", statsOf(forward), 5);
}

void pan(int rounds) {
    QTemporaryDir dir;
    Settings settings(dir.filePath(QStringLiteral("s.ini")));
    settings.setMapTileUrl(MapType::standard, QString());
    MapView map;
    map.configureTiles(settings);
    map.resize(1024, 768);
    QImage frame(map.size(), QImage::Format_RGB32);
    for (int zoom : {3, 6, 10}) {
        map.setRegion({46.0, 8.0, 1, 1});
        map.setZoom(zoom);
        std::vector<double> frames;
        QElapsedTimer clock;
        for (int i = 0; i < rounds; ++i) {
            clock.restart();
            map.panBy(QPointF(-12, 5));
            QPainter painter(&frame);
            map.render(&painter);
            painter.end();
            frames.push_back(clock.nsecsElapsed() / 1e6);
        }
        const QByteArray what = QStringLiteral("pan frame, outline, zoom %1").arg(zoom).toUtf8();
        print(what.constData(), statsOf(frames), 16);
    }
}

void preview() {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("big.jpg"));
    {
        QImage image(6000, 4000, QImage::Format_RGB32);
        QPainter painter(&image);
        QLinearGradient gradient(0, 0, 6000, 4000);
        gradient.setColorAt(0, QColor(30, 90, 160));
        gradient.setColorAt(1, QColor(230, 180, 90));
        painter.fillRect(image.rect(), gradient);
        painter.end();
        image.save(path, "JPEG", 90);
    }
    const auto record = loadImageProperties(QUrl::fromLocalFile(path));
    Settings settings(dir.filePath(QStringLiteral("s.ini")));
    settings.setMapTileUrl(MapType::standard, QString());
    ScriptedPrompt prompt;
    for (int round = 0; round < 3; ++round) {
        QElapsedTimer clock;
        clock.start();
        auto* window = new PreviewViewController(settings, prompt);
        bool shown = false;
        QObject::connect(window, &PreviewViewController::pictureShown, [&] { shown = true; });
        window->setImageProperties(*record);
        window->show();
        const double windowMs = clock.nsecsElapsed() / 1e6;
        while (!shown && clock.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        const double pictureMs = clock.nsecsElapsed() / 1e6;
        std::printf("preview of a 24 MP JPEG: window %6.1f ms (target < 100), picture %6.1f ms "
                    "(target < 300): %s\n",
                    windowMs, pictureMs, windowMs < 100 && pictureMs < 300 ? "ok" : "MISSED");
        window->close();
        delete window; // closing only hides the preview
        QCoreApplication::processEvents();
    }
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    initializeMetadataLibrary();
    QApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const int rounds = argc > 1 ? std::max(10, QByteArray(argv[1]).toInt()) : 1000;
    gazetteer(rounds);
    pan(std::min(rounds, 300));
    preview();
    return 0;
}
