// The preset store with many presets: the time to load them at start (settings file opened
// and list decoded, as a new process would), and what a save costs the main thread.
//
//   bench_presets [presets] [rounds]

#include "foundation/Settings.h"
#include "metadata/MetadataLibrary.h"
#include "presets/PresetArchive.h"
#include "presets/PresetFile.h"
#include "presets/PresetStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace tagmoor;

namespace {

// A preset as a user makes one: a name, the author, place and camera fields that a batch
// sets, and a date rule or two.
ActualPreset typicalPreset(int i) {
    ActualPreset p = makeNewPreset(QStringLiteral("Preset %1").arg(i), i);
    CGImageProperties& r = *p.properties;
    r.tiffProperties->artist = QStringLiteral("Photographer %1").arg(i % 17);
    r.tiffProperties->copyRight = QStringLiteral("(c) 2024 Studio %1, all rights reserved").arg(i);
    r.tiffProperties->imageDescription = QStringLiteral("Holiday series number %1").arg(i);
    r.tiffProperties->make = QStringLiteral("Camera maker");
    r.tiffProperties->model = QStringLiteral("Model X%1").arg(i % 5);
    r.exifProperties->userComment = QStringLiteral("Edited in batch");
    r.exifProperties->fNumber = 2.8f + float(i % 4);
    r.exifProperties->isoSpeedRating = qint64(100 << (i % 5));
    r.exifProperties->lensModel = QStringLiteral("24-70mm f/2.8");
    r.iptcProperties->byLine = QStringLiteral("Photographer %1").arg(i % 17);
    r.iptcProperties->city = QStringLiteral("Lyon");
    r.iptcProperties->countryPrimaryLocationName = QStringLiteral("France");
    r.iptcProperties->countryPrimaryLocationCode = QStringLiteral("FRA");
    r.iptcProperties->keywords = QStringLiteral("holiday, sea, family, %1").arg(i);
    r.iptcProperties->headlines = QStringLiteral("Summer %1").arg(2000 + i % 24);
    r.gpsProperties->latitude = 45.76f;
    r.gpsProperties->latitudeRef = QStringLiteral("N");
    r.gpsProperties->longitude = 4.83f;
    r.gpsProperties->longitudeRef = QStringLiteral("E");
    r.xmpDataProperties->lens = QStringLiteral("24-70mm");
    OriginalFinalDate& rules = *p.timeSetting;
    IDOD shift;
    shift.changeDays = i % 30;
    rules.configurationTimeOriginal = shift;
    rules.dateTimeOriginalAlive = true;
    return p;
}

double ms(qint64 ns) {
    return double(ns) / 1e6;
}

struct Round {
    double loadMs = 0;       // settings file opened and list decoded
    double openMs = 0;       // of which opening the settings file
    double decodeMs = 0;     // the block alone
    double otherWriteMs = 0; // another key written and synced on the main thread
    double saveCallMs = 0;   // main thread: the change and the start of its save
    double saveWallMs = 0;   // until the save is on disk
    double longestGapMs = 0; // longest main-thread stall while the save ran
    double legacyLoadMs = 0; // the same block in the main settings file, as kept before
};

Round measure(const QString& dir, const QList<ActualPreset>& presets, int round) {
    Round out;
    const QString file = QStringLiteral("%1/written-%2.conf").arg(dir).arg(round);
    {
        Settings settings(file);
        PresetStore store(settings);
        store.setSaveDelay(0);
        for (const ActualPreset& p : presets) {
            store.addPreset(*p.name);
            store.replaceValues(store.size() - 1, *p.properties, *p.timeSetting);
        }
        store.waitForSaves();

        // One more change, as a user makes it: the time on this thread until the save is
        // under way, then the event loop kept turning while it runs.
        QElapsedTimer clock;
        clock.start();
        store.renamePreset(0, QStringLiteral("Renamed"));
        QCoreApplication::processEvents(); // the delay is over: the save starts here
        out.saveCallMs = ms(clock.nsecsElapsed());
        bool finished = false;
        QObject::connect(&store, &PresetStore::saveFinished, [&] { finished = true; });
        qint64 last = clock.nsecsElapsed();
        while (!finished) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            const qint64 now = clock.nsecsElapsed();
            out.longestGapMs = std::max(out.longestGapMs, ms(now - last));
            last = now;
            QThread::usleep(200);
        }
        out.saveWallMs = ms(clock.nsecsElapsed());
    }

    // A copy under a new name, so that nothing of the file is cached in this process.
    const QString fresh = QStringLiteral("%1/fresh-%2.conf").arg(dir).arg(round);
    QFile::copy(file, fresh);
    QFile::copy(PresetFile::pathFor(file), PresetFile::pathFor(fresh));
    QElapsedTimer clock;
    clock.start();
    Settings settings(fresh);
    settings.isPopUp(); // the file is read on first use
    out.openMs = ms(clock.nsecsElapsed());
    PresetStore store(settings);
    const PresetStore::LoadReport report = store.load();
    out.loadMs = ms(clock.nsecsElapsed());
    if (report.damaged || store.size() != presets.size())
        std::fprintf(stderr, "load gave %lld presets\n", static_cast<long long>(store.size()));

    QByteArray block;
    PresetFile::read(store.fileName(), &block);
    clock.restart();
    const auto decoded = decodePresetArchive(block);
    out.decodeMs = ms(clock.nsecsElapsed());
    if (!decoded)
        std::fprintf(stderr, "the block does not decode\n");

    // The old place of the block, in the same run: the main settings file, read as a start did.
    {
        const QString legacy = QStringLiteral("%1/legacy-%2.conf").arg(dir).arg(round);
        {
            Settings writer(legacy);
            writer.setPropertiesData(block);
            writer.sync();
        }
        const QString legacyFresh = QStringLiteral("%1/legacy-fresh-%2.conf").arg(dir).arg(round);
        QFile::copy(legacy, legacyFresh);
        clock.restart();
        Settings old(legacyFresh);
        const auto oldBlock = old.propertiesData();
        const auto oldList = decodePresetArchive(oldBlock.value_or(QByteArray()));
        out.legacyLoadMs = ms(clock.nsecsElapsed());
        if (!oldList || oldList->size() != presets.size())
            std::fprintf(stderr, "the old layout did not read back\n");
    }

    // Any other setting written on the main thread rewrites the main file (no presets in it).
    clock.restart();
    settings.setIsPopUp(round % 2 == 0);
    settings.sync();
    out.otherWriteMs = ms(clock.nsecsElapsed());
    return out;
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 1000;
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;

    QList<ActualPreset> presets;
    for (int i = 0; i < count; ++i)
        presets.append(typicalPreset(i));
    QTemporaryDir dir;

    const QByteArray block = encodePresetArchive(presets);
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < rounds; ++i)
        encodePresetArchive(presets);
    const double encodeMs = ms(clock.nsecsElapsed()) / rounds;

    std::vector<Round> all;
    for (int i = 0; i < rounds; ++i)
        all.push_back(measure(dir.path(), presets, i));
    const auto median = [&](double Round::*field) {
        std::vector<double> v;
        for (const Round& r : all)
            v.push_back(r.*field);
        std::sort(v.begin(), v.end());
        return v[v.size() / 2];
    };

    const QString written = dir.filePath(QStringLiteral("written-0.conf"));
    std::printf("== %d presets: block %.2f MB, settings file %.3f MB, presets file %.2f MB; "
                "median of %d rounds\n",
                count, double(block.size()) / 1e6, double(QFileInfo(written).size()) / 1e6,
                double(QFileInfo(PresetFile::pathFor(written)).size()) / 1e6, rounds);
    std::printf("load at start (file opened, list decoded): %.1f ms (target under 100 ms)\n",
                median(&Round::loadMs));
    std::printf("  of which opening the settings file: %.1f ms; decoding the block: %.1f ms\n",
                median(&Round::openMs), median(&Round::decodeMs));
    std::printf("the same block in the main settings file (the old place): %.1f ms; ratio "
                "new/old %.2f\n",
                median(&Round::legacyLoadMs),
                median(&Round::loadMs) / median(&Round::legacyLoadMs));
    std::printf("encoding the block (on the save thread): %.1f ms\n", encodeMs);
    std::printf("save, time on the calling thread: %.2f ms; longest main-thread stall while it "
                "ran: %.2f ms\n",
                median(&Round::saveCallMs), median(&Round::longestGapMs));
    std::printf("save, until written (background): %.1f ms\n", median(&Round::saveWallMs));
    std::printf("another setting written and synced on the main thread: %.1f ms\n",
                median(&Round::otherWriteMs));
    return 0;
}
