#pragma once
// A scan controller with scripted answers and a working set, for tests without a window.

#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "workingset/ScanController.h"
#include "workingset/WaitFor.h"
#include "workingset/WorkingSet.h"

#include <QFileInfo>

#include <ftw.h>
#include <stdio.h>

#include <gtest/gtest.h>

namespace tagmoor::test {

// A record for every existing file whose content starts with "IMG": fast and predictable.
inline std::optional<CGImageProperties> fakeLoader(const QUrl& url) {
    QFile f(url.toLocalFile());
    if (!f.open(QIODevice::ReadOnly) || f.read(3) != "IMG")
        return std::nullopt;
    return makeEmptyRecord(url);
}

struct ScanFixture {
    WorkingSet set;
    ScriptedPrompt prompt;
    AppEvents events;
    ScanController controller{set, prompt, events};
    QList<int> screens; // every UpdateVCOTM index, in order
    int finishedScans = 0;

    ScanFixture() {
        QObject::connect(&events, &AppEvents::UpdateVCOTM,
                         [this](RootPage page) { screens << int(page); });
        QObject::connect(&controller, &ScanController::scanFinished,
                         [this](const ScanResult&) { ++finishedScans; });
    }

    QStringList listedPaths() const { return set.imagePaths(); }

    void stage(const QStringList& paths) {
        for (const QString& p : paths)
            set.stageURLs({QUrl::fromLocalFile(p)});
    }

    // Scans what is staged and waits for the end of the scan and its alert (if any).
    bool scan(bool isFirst = true) {
        const int before = finishedScans;
        controller.retriveImages(isFirst);
        const bool done = waitFor([&] { return finishedScans > before; });
        serveEvents(150); // delayed alerts
        return done;
    }

    QStringList alertTitles() const {
        QStringList out;
        for (const Alert& a : prompt.alerts)
            out << a.title;
        return out;
    }
};

inline QString makeFile(const QString& path, const QByteArray& bytes = "IMG") {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly)) << path.toStdString();
    f.write(bytes);
    return path;
}

// Removes a folder tree without following links, by raw names (so names that are not
// valid UTF-8 go too).
inline void removeTree(const QString& path) {
    ::nftw(
        QFile::encodeName(path).constData(),
        [](const char* p, const struct stat*, int, struct FTW*) { return ::remove(p); }, 64,
        FTW_DEPTH | FTW_PHYS);
}

} // namespace tagmoor::test
