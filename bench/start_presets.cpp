// Writes COUNT presets, each with the values and a date rule a user saves, into the settings of
// a scratch configuration, and marks the welcome as seen so that the main window comes first.
// Used by bench/start.sh.
//
//   start_presets SETTINGS_FILE COUNT

#include "foundation/Settings.h"
#include "metadata/MetadataLibrary.h"
#include "presets/PresetStore.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

using namespace tagmoor;

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: start_presets SETTINGS_FILE COUNT\n");
        return 2;
    }
    initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    Settings settings(QString::fromLocal8Bit(argv[1]));
    settings.setStartup(true);
    PresetStore store(settings);
    store.setSaveDelay(0);
    const int count = std::atoi(argv[2]);
    for (int i = 0; i < count; ++i) {
        ActualPreset p = makeNewPreset(QStringLiteral("Trip %1").arg(i), i);
        CGImageProperties& r = *p.properties;
        r.tiffProperties->artist = QStringLiteral("Photographer %1").arg(i % 17);
        r.tiffProperties->copyRight = QStringLiteral("(c) 2024 Studio %1").arg(i);
        r.iptcProperties->city = QStringLiteral("Lyon");
        r.iptcProperties->keywords = QStringLiteral("holiday, sea, family, %1").arg(i);
        r.gpsProperties->latitude = 45.76f;
        r.gpsProperties->latitudeRef = QStringLiteral("N");
        IDOD shift;
        shift.changeDays = i % 30;
        p.timeSetting->configurationTimeOriginal = shift;
        p.timeSetting->dateTimeOriginalAlive = true;
        store.addPreset(*p.name);
        store.replaceValues(store.size() - 1, *p.properties, *p.timeSetting);
    }
    store.waitForSaves();
    settings.sync();
    return store.size() == count ? 0 : 1;
}
