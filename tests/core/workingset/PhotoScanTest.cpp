#include "TestSupport.h"
#include "metadata/ExivFixture.h"
#include "metadata/PropertyLoading.h"
#include "metadata/XmpSidecar.h"
#include "workingset/FolderWalk.h"
#include "workingset/ScanFixture.h"
#include "workingset/SupportedExtensions.h"

#include <QRandomGenerator>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTemporaryDir>

#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {
namespace {

using test::fakeLoader;
using test::makeFile;
using test::ScanFixture;

TEST(PhotoScan, AddsASampleFolderInWalkOrderWithTheRealLoaderAndEndsOnTrueCounts) {
    ScanFixture f;
    const QString dir = test::formatsDir();
    // What a plain loop over the same files gives.
    QStringList expected;
    const QStringList all = walkFolder(dir).files;
    for (const QString& path : all) {
        if (hasSupportedExtension(path) && loadImageProperties(QUrl::fromLocalFile(path)))
            expected << path;
    }
    ASSERT_FALSE(expected.isEmpty());

    QList<ScanProgressView> views;
    QObject::connect(&f.controller, &ScanController::progressViewChanged,
                     [&](const ScanProgressView& v) { views << v; });
    f.stage({dir, test::malformedDir()});
    ASSERT_TRUE(f.scan());

    const QStringList listed = f.listedPaths();
    ASSERT_GE(listed.size(), expected.size());
    EXPECT_EQ(listed.mid(0, expected.size()), expected);
    EXPECT_TRUE(f.set.stagedURLs().isEmpty());
    EXPECT_FALSE(f.set.isScanning());
    EXPECT_FALSE(f.set.retrieveOnAppear());

    const int total = int(all.size() + test::sampleFiles(test::malformedDir()).size());
    const ScanResult& r = f.controller.lastResult();
    EXPECT_EQ(r.counters.totalPhotos, total);
    EXPECT_EQ(r.counters.processedPhotos, total);
    EXPECT_EQ(r.added, listed.size());

    // The first look counts, the last update before the end carries the final numbers.
    ASSERT_GE(views.size(), 3);
    EXPECT_EQ(views.first(), ScanProgressView::countingLook());
    const ScanProgressView& last = views[views.size() - 2];
    EXPECT_EQ(last.objectsSelectedText, QStringLiteral("Objects Selected: %1 / %1").arg(total));
    EXPECT_EQ(last.percentText, "100%");
    EXPECT_EQ(last.imagesSelectedText, QStringLiteral("%1 Images Selected").arg(listed.size()));
    EXPECT_FALSE(views.last().boxLoaderVisible);
    EXPECT_TRUE(views.last().addMoreEnabled);
}

TEST(PhotoScan, TheSameFileAddedTwiceGivesOneEntryAndThePanelSaysAlreadyAdded) {
    QTemporaryDir tmp;
    const QString a = makeFile(tmp.path() + "/d/a.jpg");
    makeFile(tmp.path() + "/d/b.jpg");
    ScanFixture f;
    f.controller.setRecordLoader(fakeLoader);
    // Directly, through its folder, and once more: one record each.
    f.stage({a, tmp.path() + "/d", a});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.listedPaths(), (QStringList{a, tmp.path() + "/d/b.jpg"}));
    EXPECT_TRUE(f.prompt.alerts.isEmpty()) << "a file already in the list is passed silently";

    // Staged again without the panel (a drop, say): still no second entry.
    f.stage({a});
    ASSERT_TRUE(f.scan(false));
    EXPECT_EQ(f.set.count(), 2);

    // Through the home screen's panel, in another case: refused with the alert.
    f.controller.addFromPanel(PanelScreen::HomeScreen, {a.toUpper()});
    test::serveEvents(700);
    ASSERT_EQ(f.prompt.alerts.size(), 1);
    EXPECT_EQ(f.prompt.alerts[0], alertAlreadyAdded());
    EXPECT_EQ(f.set.count(), 2);
    EXPECT_TRUE(f.set.stagedURLs().isEmpty());
}

TEST(PhotoScan, EndAlertsAndTheWayBackToTheAddScreen) {
    QTemporaryDir tmp;
    for (int i = 0; i < 5; ++i)
        makeFile(tmp.path() + QStringLiteral("/text/note%1.txt").arg(i), "hello");
    QDir().mkpath(tmp.path() + "/empty");
    const QString photo = makeFile(tmp.path() + "/photo.jpg");

    { // Only unsupported files: the list stays empty, back to the add screen.
        ScanFixture f;
        f.controller.setRecordLoader(fakeLoader);
        f.stage({tmp.path() + "/text"});
        ASSERT_TRUE(f.scan());
        EXPECT_EQ(f.controller.lastResult().counters.totalPhotos, 5);
        EXPECT_TRUE(f.controller.lastResult().flags.isNotSupportedExtension);
        ASSERT_EQ(f.prompt.alerts.size(), 1);
        EXPECT_EQ(f.prompt.alerts[0].title, "Some items could not be added");
        EXPECT_EQ(f.prompt.alerts[0].text, "The items that are not supported could not be added "
                                           "to the list for processing.");
        EXPECT_EQ(f.screens, QList<int>{0});
    }
    { // A text file with a photo's name gives no photo: the same alert, not silence.
        ScanFixture f;
        const QString fake = makeFile(tmp.path() + "/notes.jpg", "not a picture");
        f.stage({fake});
        ASSERT_TRUE(f.scan());
        EXPECT_EQ(f.set.count(), 0);
        ASSERT_EQ(f.prompt.alerts.size(), 1);
        EXPECT_EQ(f.prompt.alerts[0].title, "Some items could not be added");
        QFile::remove(fake);
    }
    { // Unsupported files beside a photo: the list has it, the other text.
        ScanFixture f;
        f.controller.setRecordLoader(fakeLoader);
        f.stage({tmp.path() + "/text", photo});
        ASSERT_TRUE(f.scan());
        ASSERT_EQ(f.prompt.alerts.size(), 1);
        EXPECT_EQ(f.prompt.alerts[0], alertIgnoreFilesAdded());
        EXPECT_TRUE(f.screens.isEmpty());
        EXPECT_EQ(f.set.count(), 1);
    }
    { // An empty folder, and a path that is gone: the empty-folder alert only.
        ScanFixture f;
        f.controller.setRecordLoader(fakeLoader);
        f.stage({tmp.path() + "/empty", tmp.path() + "/gone.jpg"});
        ASSERT_TRUE(f.scan());
        ASSERT_EQ(f.prompt.alerts.size(), 1);
        EXPECT_EQ(f.prompt.alerts[0].title, "No images were found in the selected folder");
        EXPECT_EQ(f.prompt.alerts[0].text, "Please select another folder to add images.");
        EXPECT_EQ(f.screens, QList<int>{0});
    }
}

// Runs a scan of `count` files whose third read asks to stop, answered with `answer`.
struct StopRun {
    QStringList expectedOrder;
    QStringList listed;
    QList<Alert> alerts;
    bool stopped = false;
};

StopRun stopDuringScan(const QString& answer, int count) {
    QTemporaryDir tmp;
    StopRun run;
    for (int i = 0; i < count; ++i)
        run.expectedOrder << makeFile(tmp.path() +
                                      QStringLiteral("/p%1.jpg").arg(i, 4, 10, QChar('0')));
    ScanFixture f;
    QSemaphore asked;
    std::atomic_int calls{0};
    f.prompt.onAlert = [&](const Alert& a) {
        if (a == stopScanningQuestion())
            asked.release();
    };
    f.prompt.answerNext(answer);
    f.controller.setRecordLoader([&](const QUrl& url) {
        if (++calls == 3) {
            QMetaObject::invokeMethod(
                &f.controller, [&] { f.controller.clickedStopScanning(); }, Qt::QueuedConnection);
            EXPECT_TRUE(asked.tryAcquire(1, 10000));
        }
        return fakeLoader(url);
    });
    f.stage({tmp.path()});
    EXPECT_TRUE(f.scan());
    run.listed = f.listedPaths();
    run.alerts = f.prompt.alerts;
    run.stopped = f.controller.lastResult().stopped;
    EXPECT_TRUE(f.set.stagedURLs().isEmpty());
    return run;
}

TEST(PhotoScan, StopAnsweredNoGoesOnAndYesKeepsWhatWasAdded) {
    const StopRun no = stopDuringScan("NO", 300);
    ASSERT_EQ(no.alerts.size(), 1);
    EXPECT_EQ(no.alerts[0], stopScanningQuestion());
    EXPECT_EQ(no.alerts[0].buttons, (QStringList{"YES", "NO"}));
    EXPECT_FALSE(no.stopped);
    EXPECT_EQ(no.listed, no.expectedOrder);

    const StopRun yes = stopDuringScan("YES", 300);
    EXPECT_TRUE(yes.stopped);
    ASSERT_GE(yes.listed.size(), 2);
    EXPECT_LT(yes.listed.size(), yes.expectedOrder.size());
    // What was added stays, and it is the start of the list a full scan gives.
    EXPECT_EQ(yes.listed, yes.expectedOrder.mid(0, yes.listed.size()));
}

// A tree with everything the decisions depend on: images, non-images with an image
// extension, other files, duplicates through several routes, odd names.
QStringList makeMixedTree(const QString& root) {
    QStringList staged;
    for (int d = 0; d < 6; ++d) {
        const QString dir = root + QStringLiteral("/dir%1").arg(d);
        for (int i = 0; i < 25; ++i) {
            const QString base = dir + QStringLiteral("/f%1").arg(i);
            if (i % 7 == 0)
                makeFile(base + ".txt", "IMG");
            else if (i % 5 == 0)
                makeFile(base + ".JPG", "not an image");
            else
                makeFile(base + (i % 2 ? ".jpg" : ".CR2"));
        }
        staged << dir;
    }
    makeFile(root + "/dir2/new\nline.jpg");
    const QByteArray raw = QFile::encodeName(root + "/dir3/") + QByteArray("bad\xff.jpg");
    ::close(::open(raw.constData(), O_CREAT | O_WRONLY, 0644));
    staged << root + "/dir1/f3.jpg" << root + "/dir4" << root + "/missing.jpg"
           << root + "/dir0/f1.jpg";
    return staged;
}

TEST(PhotoScan, ParallelReadersEndWithTheListAndFlagsOfASequentialScan) {
    QTemporaryDir tmp;
    const QStringList staged = makeMixedTree(tmp.path());
    const auto jitteryLoader = [](const QUrl& url) {
        QThread::usleep(QRandomGenerator::global()->bounded(1500));
        return fakeLoader(url);
    };
    QStringList reference;
    ScanFlags referenceFlags;
    for (int readers : {1, 2, 4}) {
        ScanFixture f;
        // One record already in the list: it is passed over wherever it turns up.
        f.set.appendImages({makeEmptyRecord(QUrl::fromLocalFile(tmp.path() + "/dir5/f3.jpg"))});
        f.controller.setRecordLoader(jitteryLoader);
        f.controller.setReaderThreads(readers);
        f.stage(staged);
        ASSERT_TRUE(f.scan());
        if (readers == 1) {
            reference = f.listedPaths();
            referenceFlags = f.controller.lastResult().flags;
            EXPECT_TRUE(reference.contains(tmp.path() + "/dir2/new\nline.jpg"));
            EXPECT_EQ(reference.count(tmp.path() + "/dir1/f3.jpg"), 1);
            EXPECT_EQ(reference.count(tmp.path() + "/dir5/f3.jpg"), 1);
            EXPECT_TRUE(referenceFlags.isNotSupportedExtension);
            EXPECT_FALSE(referenceFlags.isAddedEmpty);
        } else {
            EXPECT_EQ(f.listedPaths(), reference) << "readers: " << readers;
            EXPECT_EQ(f.controller.lastResult().flags, referenceFlags);
        }
    }
    test::removeTree(tmp.path() + "/dir3");
}

// The scan lists a folder's sidecars once it has read some of its photos: sidecars of the
// photos read before and after that, under either naming and in either case, are each laid
// over their own photo alone.
TEST(PhotoScan, EachPhotoOfALargeFolderGetsItsOwnSidecar) {
    QTemporaryDir tmp;
    const QString first = test::jpegWithTags(tmp.filePath("p000.jpg"), [](Exiv2::Image& img) {
        test::addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Camera");
    });
    const int count = SidecarListing::kLooksBeforeListing + 16;
    for (int i = 1; i < count; ++i)
        ASSERT_TRUE(
            QFile::copy(first, tmp.filePath(QStringLiteral("p%1.jpg").arg(i, 3, 10, QChar('0')))));
    const auto sidecar = [](const char* artist) {
        return QByteArray(
                   "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF xmlns:rdf=\"http://www.w3.org/"
                   "1999/02/22-rdf-syntax-ns#\"><rdf:Description rdf:about=\"\" "
                   "xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><dc:creator><rdf:Seq><rdf:li>") +
               artist + "</rdf:li></rdf:Seq></dc:creator></rdf:Description></rdf:RDF></x:xmpmeta>";
    };
    const QMap<QString, QString> sidecars{
        {"p001.xmp", "First"}, {"p070.jpg.XMP", "Late"}, {"p079.XMP", "Last"}};
    for (auto it = sidecars.cbegin(); it != sidecars.cend(); ++it)
        ASSERT_TRUE(test::writeBytes(tmp.filePath(it.key()), sidecar(qPrintable(it.value()))));

    setSidecarsRead(true);
    const auto followTheForm = qScopeGuard([] { setSidecarsRead(std::nullopt); });
    ScanFixture f;
    f.controller.setReaderThreads(2);
    f.stage({tmp.path()});
    ASSERT_TRUE(f.scan());

    const QList<CGImageProperties>& records = f.set.workingImages();
    ASSERT_EQ(records.size(), count);
    for (const CGImageProperties& record : records) {
        const QString name = QFileInfo(record.url->toLocalFile()).completeBaseName();
        QString expected = QStringLiteral("Camera");
        for (auto it = sidecars.cbegin(); it != sidecars.cend(); ++it)
            if (it.key().startsWith(name + '.'))
                expected = it.value();
        EXPECT_EQ(record.tiffProperties->artist.text().value_or(QString()).toStdString(),
                  expected.toStdString())
            << name.toStdString();
    }
}

TEST(PhotoScan, AVanishingFolderOrAPipeUnderAnImageNameEndsCleanly) {
    QTemporaryDir tmp;
    const QString pipe = tmp.path() + "/pipe.jpg";
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0644), 0);
    for (int i = 0; i < 20; ++i) {
        makeFile(tmp.path() + QStringLiteral("/first/a%1.jpg").arg(i));
        makeFile(tmp.path() + QStringLiteral("/second/b%1.jpg").arg(i));
    }
    ScanFixture f;
    std::once_flag removed;
    f.controller.setRecordLoader([&](const QUrl& url) {
        // Every read waits until the removal is done.
        std::call_once(removed, [&] {
            QDir(tmp.path() + "/second").removeRecursively();
            QFile::remove(tmp.path() + "/first/a19.jpg");
        });
        return fakeLoader(url);
    });
    f.stage({tmp.path() + "/first", tmp.path() + "/second", pipe});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.set.count(), 19);
    EXPECT_EQ(f.controller.lastResult().counters.totalPhotos, 41);
    EXPECT_TRUE(f.prompt.alerts.isEmpty());
}

TEST(PhotoScan, ANameThatIsNotUtf8IsToldNotDropped) {
    QTemporaryDir tmp;
    makeFile(tmp.path() + "/fine.jpg");
    const QByteArray latin1 = QFile::encodeName(tmp.path()) + "/caf\xe9.jpg";
    const int fd = ::open(latin1.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, "IMG", 3), 3);
    ::close(fd);
    ScanFixture f;
    f.controller.setRecordLoader(fakeLoader);
    f.stage({tmp.path()});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.set.count(), 1);
    ASSERT_EQ(f.controller.lastResult().leftOut.size(), 1);
    ASSERT_EQ(f.prompt.alerts.size(), 1);
    EXPECT_EQ(f.prompt.alerts[0].title, "Some files were left out");
    EXPECT_TRUE(f.prompt.alerts[0].text.contains("caf\\xE9.jpg") ||
                f.prompt.alerts[0].text.contains("caf\\xe9.jpg"))
        << f.prompt.alerts[0].text.toStdString();
}

TEST(PhotoScan, TenThousandFilesOfTheSameNameInDifferentFolders) {
    // Ten thousand folders are made and removed: in memory when the system offers it.
    const bool shm = QFileInfo("/dev/shm").isDir() && QFileInfo("/dev/shm").isWritable();
    QTemporaryDir tmp(shm ? QStringLiteral("/dev/shm/tagmoor-test-XXXXXX") : QString());
    ASSERT_TRUE(tmp.isValid());
    const QString seed = makeFile(tmp.path() + "/seed.bin");
    QStringList expected;
    for (int a = 0; a < 100; ++a) {
        for (int b = 0; b < 100; ++b) {
            const QString dir =
                tmp.path() +
                QStringLiteral("/all/%1/%2").arg(a, 2, 10, QChar('0')).arg(b, 2, 10, QChar('0'));
            ASSERT_TRUE(QDir().mkpath(dir));
            const QString file = dir + "/IMG_0001.JPG";
            ASSERT_EQ(
                ::link(QFile::encodeName(seed).constData(), QFile::encodeName(file).constData()),
                0);
            expected << file;
        }
    }
    ScanFixture f;
    f.controller.setRecordLoader(fakeLoader);
    f.stage({tmp.path() + "/all"});
    ASSERT_TRUE(f.scan());
    EXPECT_EQ(f.listedPaths(), expected);
    EXPECT_EQ(f.controller.lastResult().counters.processedPhotos, 10000);
}

} // namespace
} // namespace tagmoor
