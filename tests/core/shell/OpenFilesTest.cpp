#include "TestSupport.h"
#include "presets/PresetArchive.h"
#include "presets/PresetFile.h"
#include "shell/ApplicationShell.h"
#include "shell/InstanceChannel.h"
#include "shell/LaunchState.h"
#include "shell/OpenWithQueue.h"
#include "shell/ShellFixture.h"
#include "workingset/ScanFixture.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QUuid>
#include <QtConcurrent>

namespace tagmoor {
namespace {

using test::makeFile;
using test::ScanFixture;
using test::ScratchConfig;
using test::waitFor;

struct QueueFixture : ScanFixture {
    ScratchConfig cfg;
    Settings settings{cfg.settingsFile()};
    LaunchState state;
    OpenWithQueue queue{set, settings, state, events};
    int showRequests = 0;

    QueueFixture() {
        queue.setInterval(50);
        settings.setStartup(true);
        state.launchFinished = true;
        QObject::connect(&events, &AppEvents::showMainWindowRequested, [this] { ++showRequests; });
        // What the screens do with the two notifications.
        QObject::connect(&events, &AppEvents::OpenWithItemsOTM,
                         [this] { controller.getOpenWithItems(); });
        QObject::connect(&events, &AppEvents::UpdateVCOTM, [this](RootPage page) {
            if (page == RootPage::home)
                controller.homeScreenWillAppear();
        });
        controller.setRecordLoader(test::fakeLoader);
    }
};

TEST(OpenFiles, WelcomeWindowDropsFilesAndRepeatedPathsArriveOnce) {
    QTemporaryDir tmp;
    const QString a = makeFile(tmp.path() + "/a.jpg");
    const QString b = makeFile(tmp.path() + "/b.jpg");
    {
        QueueFixture f;
        f.settings.remove(Settings::StartupOTM);
        EXPECT_FALSE(f.queue.openFiles({a}));
        test::serveEvents(150);
        EXPECT_TRUE(f.set.pendingOpenURLs().isEmpty());
        EXPECT_EQ(f.showRequests, 0);
        EXPECT_TRUE(f.set.isEmpty());
    }
    QueueFixture f;
    EXPECT_TRUE(f.queue.openFiles({a, b}));
    EXPECT_TRUE(f.queue.openFiles({a}));
    EXPECT_EQ(f.set.pendingOpenURLs().size(), 2);
    EXPECT_EQ(f.showRequests, 2);
    ASSERT_TRUE(waitFor([&] { return f.finishedScans == 1; }));
    EXPECT_EQ(f.listedPaths(), (QStringList{a, b}));
    EXPECT_EQ(f.screens, QList<int>{1});
    EXPECT_TRUE(f.set.pendingOpenURLs().isEmpty());
    EXPECT_FALSE(f.set.isFirstAdding());
}

TEST(OpenFiles, FilesOpenedDuringAScanOrBeforeLaunchFinishedWaitTheirTurn) {
    QTemporaryDir tmp;
    QStringList first;
    for (int i = 0; i < 150; ++i)
        first << makeFile(tmp.path() + QStringLiteral("/batch/p%1.jpg").arg(i, 3, 10, QChar('0')));
    const QString late = makeFile(tmp.path() + "/late.jpg");
    const QString early = makeFile(tmp.path() + "/early.jpg");

    QueueFixture f;
    f.state.launchFinished = false;
    f.queue.openFiles({early});
    test::serveEvents(200);
    EXPECT_TRUE(f.set.isEmpty()) << "waits for the end of the launch";
    EXPECT_TRUE(f.queue.isWaiting());
    f.state.launchFinished = true;
    ASSERT_TRUE(waitFor([&] { return f.finishedScans == 1; }));
    EXPECT_EQ(f.listedPaths(), QStringList{early});

    // A slow scan; a file opened meanwhile joins after it, in a second scan.
    f.controller.setRecordLoader([](const QUrl& url) {
        QThread::msleep(2);
        return test::fakeLoader(url);
    });
    f.stage({tmp.path() + "/batch"});
    f.controller.retriveImages(false);
    ASSERT_TRUE(f.set.isScanning());
    f.queue.openFiles({late});
    ASSERT_TRUE(waitFor([&] { return f.finishedScans == 3; }));
    QStringList expected{early};
    expected << first << late;
    EXPECT_EQ(f.listedPaths(), expected);
    EXPECT_FALSE(f.set.isScanning());
    EXPECT_TRUE(f.set.stagedURLs().isEmpty());
}

// A hand-over of tens of thousands of files, many of them twice, arrives once each, in
// order, in time that grows with the count: duplicates are found through a set.
TEST(OpenFiles, AHandOverOfManyFilesKeepsEachPathOnceInLinearTime) {
    ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    settings.setStartup(true);
    WorkingSet set;
    AppEvents events;
    LaunchState state;
    OpenWithQueue queue(set, settings, state, events);
    constexpr int kCount = 40000;
    QStringList paths;
    for (int i = 0; i < kCount; ++i)
        paths << QStringLiteral("/photos/%1/p%2.jpg").arg(i % 97).arg(i);
    const QStringList firstHalf = paths.mid(0, kCount / 2);
    set.stageURLs({QUrl::fromLocalFile(paths[7])}); // already staged by a drop

    QElapsedTimer clock;
    clock.start();
    ASSERT_TRUE(queue.openFiles(paths + firstHalf));
    ASSERT_TRUE(queue.openFiles(firstHalf));
    set.stagePendingOpenURLs();
    EXPECT_LT(clock.elapsed(), 3000);

    const QList<QUrl>& staged = set.stagedURLs();
    ASSERT_EQ(staged.size(), kCount);
    EXPECT_EQ(staged[0], QUrl::fromLocalFile(paths[7]));
    EXPECT_EQ(staged[1], QUrl::fromLocalFile(paths[0]));
    EXPECT_EQ(staged.last(), QUrl::fromLocalFile(paths.last()));
    EXPECT_TRUE(set.pendingOpenURLs().isEmpty());

    // Once staged, the same path may wait again for the next scan.
    set.addPendingOpenURL(QUrl::fromLocalFile(paths[0]));
    EXPECT_EQ(set.pendingOpenURLs().size(), 1);
}

TEST(OpenFiles, ASecondLaunchHandsItsPathsToTheFirst) {
    const QString name = "tagmoor-test-" + QUuid::createUuid().toString(QUuid::Id128);
    InstanceChannel first(name);
    ASSERT_TRUE(first.listen());
    QStringList received;
    QObject::connect(&first, &InstanceChannel::filesReceived,
                     [&](const QStringList& paths) { received << paths; });

    // Another instance cannot take over the name while the first answers.
    InstanceChannel rival(name);
    EXPECT_FALSE(rival.listen());

    const QStringList paths{"/photos/a b.jpg",
                            QString::fromUtf8("/photos/\xc3\xa9t\xc3\xa9\n.jpg")};
    QFuture<bool> sent = QtConcurrent::run([&] { return InstanceChannel(name).forward(paths); });
    ASSERT_TRUE(waitFor([&] { return sent.isFinished(); }));
    EXPECT_TRUE(sent.result());
    ASSERT_TRUE(waitFor([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, paths);

    // A garbled sender is cut off and the channel goes on working.
    QLocalSocket bad;
    bad.connectToServer(name);
    ASSERT_TRUE(bad.waitForConnected(2000));
    bad.write(QByteArray("\xff\xff\xff\xff garbage", 12));
    bad.flush();
    test::serveEvents(100);
    received.clear();
    sent = QtConcurrent::run([&] { return InstanceChannel(name).forward({"/x.jpg"}); });
    ASSERT_TRUE(waitFor([&] { return sent.isFinished() && !received.isEmpty(); }));
    EXPECT_EQ(received, QStringList{"/x.jpg"});

    EXPECT_FALSE(InstanceChannel(name + "-nobody").forward({"/y.jpg"}, 300));
}

TEST(OpenFiles, ASecondLaunchWithAPathQuitsAndTheFirstStagesIt) {
    ScratchConfig cfg;
    QTemporaryDir tmp;
    const QString photo = makeFile(tmp.path() + "/photo.jpg");
    const QString name = "tagmoor-test-" + QUuid::createUuid().toString(QUuid::Id128);
    ApplicationShell first({"1.0", cfg.settingsFile(), name, "/usr/bin/tagmoor"});
    first.settings().setStartup(true);
    first.openWithQueue().setInterval(50);
    ASSERT_TRUE(first.claimInstance({}));
    const StartPlan plan = first.start();
    EXPECT_FALSE(plan.showWelcomeWindow);
    first.finishLaunching();
    QList<int> screens;
    QObject::connect(&first.events(), &AppEvents::UpdateVCOTM,
                     [&](RootPage page) { screens << int(page); });

    // The later launch's settings still hold presets the way earlier versions kept them: a
    // launch that only hands over its files must neither read nor move them.
    const QString otherConf = tmp.path() + "/other.conf";
    Settings(otherConf).setPropertiesData(encodePresetArchive({makeNewPreset("Old", 0)}));
    QFuture<bool> second = QtConcurrent::run([&] {
        ApplicationShell later({"1.0", otherConf, name, "/usr/bin/tagmoor"});
        return later.claimInstance({photo}) || later.presets().size() != 0;
    });
    ASSERT_TRUE(waitFor([&] { return second.isFinished(); }));
    EXPECT_FALSE(second.result()) << "the second launch hands over and quits";
    EXPECT_TRUE(Settings(otherConf).holdsAnyValue(Settings::kPropertiesDataAP));
    EXPECT_FALSE(QFileInfo::exists(PresetFile::pathFor(otherConf)));
    ASSERT_TRUE(waitFor([&] { return !screens.isEmpty(); }));
    EXPECT_EQ(first.workingSet().stagedURLs(), QList<QUrl>{QUrl::fromLocalFile(photo)});
    EXPECT_EQ(screens, QList<int>{1});
    EXPECT_TRUE(first.workingSet().retrieveOnAppear());
}

} // namespace
} // namespace tagmoor
