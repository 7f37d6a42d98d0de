#pragma once
// Helpers of the screen tests that follow an edit from the window into the written file:
// photos loaded through a drop, a run with its questions answered, and exiv2's view of the
// result.

#include "AppTestSupport.h"
#include "app/batch/FinalProcessedVC.h"
#include "app/workingset/HomeScreen.h"
#include "workingset/ScanController.h"

#include <QProcess>
#include <QPushButton>

#include <cmath>
#include <optional>

namespace tagmoor::test {

// Copies `sample` into `folder` under `name`, writable, and gives the copy's path.
inline QString copySample(const QString& folder, const QString& sample, const QString& name) {
    QDir().mkpath(folder);
    const QString target = folder + QLatin1Char('/') + name;
    QFile::remove(target);
    QFile::copy(formatsDir() + QLatin1Char('/') + sample, target);
    QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return target;
}

// exiv2's -M commands on a file; false when exiv2 refused them.
inline bool modifyWithExiv2(const QString& path, const QStringList& commands) {
    QStringList args;
    for (const QString& command : commands)
        args << QStringLiteral("-M") << command;
    args << path;
    return QProcess::execute(QStringLiteral("exiv2"), args) == 0;
}

// The value of one tag as exiv2 prints it (-Pv), empty when the file lacks it.
inline QString exiv2Value(const QString& path, const char* key) {
    QProcess p;
    p.start(QStringLiteral("exiv2"), {QStringLiteral("-q"), QStringLiteral("-Pv"),
                                      QStringLiteral("-K"), QString::fromLatin1(key), path});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

// A coordinate of the file in signed decimal degrees, from its three rationals and its reference.
inline std::optional<double> fileCoordinate(const QString& path, bool latitude) {
    const QString value =
        exiv2Value(path, latitude ? "Exif.GPSInfo.GPSLatitude" : "Exif.GPSInfo.GPSLongitude");
    const QString ref =
        exiv2Value(path, latitude ? "Exif.GPSInfo.GPSLatitudeRef" : "Exif.GPSInfo.GPSLongitudeRef");
    const QStringList parts = value.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() != 3 || ref.isEmpty())
        return std::nullopt;
    double degrees = 0;
    double unit = 1;
    for (const QString& part : parts) {
        const double n = part.section(QLatin1Char('/'), 0, 0).toDouble();
        const double d = part.section(QLatin1Char('/'), 1, 1).toDouble();
        degrees += n / d / unit;
        unit *= 60;
    }
    return ref == QLatin1String("S") || ref == QLatin1String("W") ? -degrees : degrees;
}

// Drops `paths` on the add screen and waits for the list to hold `count` photos.
inline HomeScreen* dropPhotos(TestApp& t, const QStringList& paths, int count) {
    t.app->scans().addFromDrop(paths);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == count, 20000); }();
    QCoreApplication::processEvents();
    return named<HomeScreen>(&t.window(), QStringLiteral("Home"));
}

// Start Process into `out` with every question answered by its first button, up to the
// result; no offer to save a preset. The sheet of an earlier run still holds its result while
// hidden, so only a shown sheet counts.
inline FinalProcessedVC* runInto(TestApp& t, HomeScreen* home, const QString& out) {
    QDir().mkpath(out);
    t.app->settings().setIsPresetSavingSettingInHome(false);
    t.prompt.panelAnswers = {{out}};
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    [&] {
        QTRY_VERIFY_WITH_TIMEOUT(
            named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")) &&
                named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isVisible() &&
                named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))
                    ->isShowingResult(),
            60000);
    }();
    return named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"));
}

// Finish on the result: the list empties and the add screen comes back.
inline void finish(HomeScreen* home) {
    QTest::mouseClick(
        named<QPushButton>(named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")),
                           QStringLiteral("btnFinish")),
        Qt::LeftButton);
}

} // namespace tagmoor::test
