// Compares the safe write of the bridge (Exiv2 in memory, new bytes to a hidden temporary file,
// flushed to disk, read back, renamed over the photo) with a plain in-place Exiv2 write of the
// same tags (open the file, readMetadata, the same dictionary, writeMetadata), in one run.
//
//   bench_write DIR [--count N] [--rounds N] [--breakdown]
//
// Each file of DIR is copied twice per round into DIR/../<name>-work; the copies are made
// before timing, so both writes find the file in the page cache. The two writes alternate in
// order from file to file. Reported: total and per-file wall time of each, and their ratio;
// also a plain write followed by a flush of the file, which tells what durability alone costs,
// and the time still spent after the call giving back the replaced file in the background;
// with --breakdown also the time between the safe writer's steps (taken through writeFaultAt,
// which this benchmark defines for itself: see metadata/WriteSeams.h).
#include "metadata/MergeForWriting.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyWriter.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/WriteSeams.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <functional>
#include <unistd.h>

namespace {

using namespace tagmoor;

const char* kUsage = "usage: bench_write DIR [--count N] [--rounds N] [--breakdown]\n";

// Time spent before each step of the safe writer, from the previous step (or the call's start).
struct Breakdown {
    QElapsedTimer clock;
    qint64 last = 0;
    qint64 spent[7] = {};
    static const char* name(int step) {
        // Each step's time is what ran since the step before it.
        static const char* names[] = {"open+check", "read+exiv2", "create+write", "write end",
                                      "verify",     "flush",      "rename"};
        return names[step];
    }
};

// What a batch hands the bridge: a few edits over the file's values, and every row without a
// value listed for erasure.
struct WriteRequest {
    WrittenProperties properties;
    ErasedRows erased;
};

WriteRequest requestFor(const QString& path) {
    MetadataFieldSet edited;
    edited.exif[0] = QStringLiteral("Benchmark Artist");
    edited.exif[2] = QStringLiteral("(c) Tagmoor");
    edited.exif[exifrow::GPSLatitude] = 48.8566f;
    edited.exif[exifrow::GPSLongitude] = 2.3522f;
    edited.iptc[9] = QStringLiteral("bench");
    edited.iptc[11] = QStringLiteral("Paris");
    edited.xmp[1] = QStringLiteral("Zoom 24-70");
    MetadataTest bridge;
    WriteRequest r;
    r.properties = mergeForWriting(edited, path);
    for (const KeyRow& row : allKeyRows()) {
        if (!r.properties.has(row))
            r.erased.add(row);
    }
    return r;
}

void plainWrite(const QString& path, const WriteRequest& r) {
    auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
    image->readMetadata();
    PropertyWriter::apply(*image, r.properties, r.erased);
    image->writeMetadata();
}

// The plain write made durable too, for reference: what the flush alone costs.
void plainWriteFlushed(const QString& path, const WriteRequest& r) {
    plainWrite(path, r);
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd >= 0) {
        ::fdatasync(fd);
        ::close(fd);
    }
}

// What the safe writer calls before each step; set for --breakdown.
std::function<int(SafeFileReplace::Step)> stepHook;

void safeWrite(const QString& path, const WriteRequest& r) {
    MetadataTest().setImagePropertiesAll(path, r.properties, r.erased);
}

bool copyFile(const QString& from, const QString& to) {
    QFile::remove(to);
    return QFile::copy(from, to);
}

} // namespace

// The safe writer's seam, linked in place of the core's own.
int tagmoor::writeFaultAt(SafeFileReplace::Step step) {
    return stepHook ? stepHook(step) : 0;
}

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments().mid(1);
    if (args.isEmpty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const QString dirPath = args.first();
    int count = 100;
    int rounds = 2;
    bool breakdown = false;
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--count") && i + 1 < args.size())
            count = args[++i].toInt();
        else if (args[i] == QLatin1String("--rounds") && i + 1 < args.size())
            rounds = args[++i].toInt();
        else if (args[i] == QLatin1String("--breakdown"))
            breakdown = true;
    }
    Breakdown steps;
    if (breakdown) {
        stepHook = [&steps](SafeFileReplace::Step step) {
            const qint64 now = steps.clock.nsecsElapsed();
            steps.spent[int(step)] += now - steps.last;
            steps.last = now;
            return 0;
        };
    }
    QStringList files;
    for (const QFileInfo& fi :
         QDir(dirPath).entryInfoList({QStringLiteral("*.jpg")}, QDir::Files, QDir::Name))
        files << fi.absoluteFilePath();
    files = files.mid(0, count);
    if (files.isEmpty()) {
        std::fputs("no .jpg files in DIR\n", stderr);
        return 2;
    }
    const QString work = QFileInfo(dirPath).absoluteFilePath() + QStringLiteral("-work");
    QDir().mkpath(work);

    std::vector<WriteRequest> requests;
    qint64 bytes = 0;
    for (const QString& f : files) {
        requests.push_back(requestFor(f));
        bytes += QFileInfo(f).size();
    }

    qint64 bestSafe = -1, bestPlain = -1;
    for (int round = 0; round < rounds; ++round) {
        qint64 safeNs = 0, plainNs = 0, flushedNs = 0, releaseNs = 0;
        for (int i = 0; i < files.size(); ++i) {
            const QString safeCopy = work + QStringLiteral("/safe.jpg");
            const QString plainCopy = work + QStringLiteral("/plain.jpg");
            const QString flushedCopy = work + QStringLiteral("/flushed.jpg");
            if (!copyFile(files[i], safeCopy) || !copyFile(files[i], plainCopy) ||
                !copyFile(files[i], flushedCopy)) {
                std::fputs("cannot copy into the work folder\n", stderr);
                return 1;
            }
            QElapsedTimer t;
            const auto timeSafe = [&] {
                t.start();
                steps.clock.start();
                steps.last = 0;
                safeWrite(safeCopy, requests[std::size_t(i)]);
                safeNs += t.nsecsElapsed();
                steps.spent[6] += steps.clock.nsecsElapsed() - steps.last;
                // The old file is given back in the background; wait for it here, untimed in
                // the safe write's figure but reported, so it doesn't slow the plain write.
                t.start();
                SafeFileReplace::waitForReleases();
                releaseNs += t.nsecsElapsed();
            };
            const auto timePlain = [&] {
                t.start();
                plainWrite(plainCopy, requests[std::size_t(i)]);
                plainNs += t.nsecsElapsed();
            };
            if ((i + round) % 2 == 0) {
                timeSafe();
                timePlain();
            } else {
                timePlain();
                timeSafe();
            }
            t.start();
            plainWriteFlushed(flushedCopy, requests[std::size_t(i)]);
            flushedNs += t.nsecsElapsed();
            if (i == 0 && round == 0 && QFileInfo(safeCopy).size() != QFileInfo(plainCopy).size())
                std::fputs("warning: the two writes gave files of different sizes\n", stderr);
        }
        std::printf("round %d: safe %.1f ms/file, plain %.1f ms/file, ratio %.3f; with the "
                    "background release %.3f; plain with a flush %.1f ms/file, safe/that %.3f\n",
                    round + 1, safeNs / 1e6 / files.size(), plainNs / 1e6 / files.size(),
                    double(safeNs) / double(plainNs), double(safeNs + releaseNs) / double(plainNs),
                    flushedNs / 1e6 / files.size(), double(safeNs) / double(flushedNs));
        if (bestSafe < 0 || safeNs < bestSafe)
            bestSafe = safeNs;
        if (bestPlain < 0 || plainNs < bestPlain)
            bestPlain = plainNs;
    }
    QDir(work).removeRecursively();
    if (breakdown) {
        std::printf("safe write by step (ms/file, all rounds):");
        for (int step = 0; step < 7; ++step)
            std::printf(" %s %.2f", Breakdown::name(step),
                        steps.spent[step] / 1e6 / files.size() / rounds);
        std::printf("\n");
    }
    std::printf("%d files, %.1f MB each on average\n", int(files.size()),
                bytes / 1e6 / files.size());
    std::printf("best: safe %.1f ms/file, plain in-place %.1f ms/file, safe/plain %.3f\n",
                bestSafe / 1e6 / files.size(), bestPlain / 1e6 / files.size(),
                double(bestSafe) / double(bestPlain));
    return 0;
}
