// Loads the records of every file in a folder and compares the time with the bare Exiv2
// floor (open, readMetadata, a walk over every datum of the three blocks) on the same files
// in the same run.
//
//   bench_load DIR [--rounds N] [--breakdown]
//
// The page cache is warmed first; the two passes then alternate in order from round to
// round, and the best round of each is reported, as wall time and as the thread's CPU
// time (steadier on a shared machine).
#include "metadata/ImageProbe.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>
#include <QUrl>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <vector>

namespace {

const char* kUsage = "usage: bench_load DIR [--rounds N] [--breakdown]\n";

qint64 threadCpuNs() {
    timespec ts{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
    return qint64(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

struct Times {
    qint64 wall = std::numeric_limits<qint64>::max();
    qint64 cpu = std::numeric_limits<qint64>::max();
};

// Times one pass of `fn` over all files and keeps it if it is the best so far.
template <typename Fn> void timePass(const QStringList& files, Times& best, Fn&& fn) {
    QElapsedTimer wall;
    wall.start();
    const qint64 cpu = threadCpuNs();
    for (const QString& f : files)
        fn(f);
    best.cpu = std::min(best.cpu, threadCpuNs() - cpu);
    best.wall = std::min(best.wall, wall.nsecsElapsed());
}

template <typename Data> std::size_t walk(const Data& data) {
    std::size_t sum = 0;
    for (const auto& datum : data)
        sum += datum.key().size() + std::size_t(datum.typeId()) + std::size_t(datum.count());
    return sum;
}

// What any reader has to pay: Exiv2 parses the file and every datum is visited once.
std::size_t floorRead(const QString& f) {
    try {
        Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(QFile::encodeName(f).toStdString());
        image->readMetadata();
        return walk(image->exifData()) + walk(image->iptcData()) + walk(image->xmpData());
    } catch (const Exiv2::AnyError&) {
        return 1;
    }
}

// Where the time of a load goes: the bridge read with its casts, the date parsing, and the
// QImageReader probe (which a JPEG only needs when Exiv2 found no frame header), each timed
// alone over all files.
void breakdown(const QStringList& files) {
    std::size_t sink = 0;
    Times probe, fieldSets, dates;
    timePass(files, probe,
             [&](const QString& f) { sink += tagmoor::ImageProbe::probe(f).readable; });
    std::vector<tagmoor::MetadataFieldSet> sets;
    timePass(files, fieldSets,
             [&](const QString& f) { sets.push_back(tagmoor::readMetadataFieldSet(f)); });
    std::size_t i = 0;
    timePass(files, dates, [&](const QString&) {
        for (const tagmoor::KeyRow& row : tagmoor::allKeyRows())
            if (row.read == tagmoor::ReadKind::DateText && sets[i].at(row).isPresent())
                sink += tagmoor::parseMetadataDate(*sets[i].at(row).text()).has_value();
        ++i;
    });
    const double n = files.size();
    std::printf("cpu per file: field set %.1f us, six dates unshared %.1f us, QImageReader probe "
                "%.1f us (%zu)\n",
                fieldSets.cpu / 1e3 / n, dates.cpu / 1e3 / n, probe.cpu / 1e3 / n, sink % 10);
}

void warmPageCache(const QStringList& files) {
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    for (const QString& f : files) {
        QFile file(f);
        if (file.open(QIODevice::ReadOnly))
            while (file.read(buffer.data(), buffer.size()) > 0) {
            }
    }
}

} // namespace

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    int rounds = 3;
    bool showBreakdown = false;
    QString dirPath;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--rounds") && i + 1 < args.size()) {
            rounds = std::max(1, args[++i].toInt());
        } else if (args[i] == QLatin1String("--breakdown")) {
            showBreakdown = true;
        } else if (dirPath.isEmpty() && !args[i].startsWith(QLatin1Char('-'))) {
            dirPath = args[i];
        } else {
            QTextStream(stderr) << kUsage;
            return 2;
        }
    }
    if (dirPath.isEmpty()) {
        QTextStream(stderr) << kUsage;
        return 2;
    }
    QStringList files;
    const QDir dir(dirPath);
    for (const QString& name : dir.entryList(QDir::Files, QDir::Name))
        files << dir.absoluteFilePath(name);
    if (files.isEmpty()) {
        QTextStream(stderr) << "bench_load: no files in " << dirPath << "\n";
        return 1;
    }

    warmPageCache(files);
    std::size_t sink = 0;
    int records = 0;
    const auto floorFn = [&](const QString& f) { sink += floorRead(f); };
    const auto loadFn = [&](const QString& f) {
        if (const auto record = tagmoor::loadImageProperties(QUrl::fromLocalFile(f))) {
            ++records;
            sink += record->tiffProperties->artist.isPresent();
        }
    };
    // One untimed pass of each over a few files: one-time set-up (plugins, formatters) is
    // not what is measured.
    Times ignored;
    timePass(files.mid(0, 5), ignored, floorFn);
    timePass(files.mid(0, 5), ignored, loadFn);
    Times floor, load;
    for (int round = 0; round < rounds; ++round) {
        records = 0;
        if (round % 2 == 0) {
            timePass(files, floor, floorFn);
            timePass(files, load, loadFn);
        } else {
            timePass(files, load, loadFn);
            timePass(files, floor, floorFn);
        }
    }
    const double n = files.size();
    std::printf("files: %d (%d records), best of %d rounds (checksum %zu)\n", int(files.size()),
                records, rounds, sink % 1000);
    std::printf("                      wall ms  us/file   cpu ms  us/file\n");
    std::printf("exiv2 floor          %8.1f %8.1f %8.1f %8.1f\n", floor.wall / 1e6,
                floor.wall / 1e3 / n, floor.cpu / 1e6, floor.cpu / 1e3 / n);
    std::printf("loadImageProperties  %8.1f %8.1f %8.1f %8.1f\n", load.wall / 1e6,
                load.wall / 1e3 / n, load.cpu / 1e6, load.cpu / 1e3 / n);
    std::printf("ratio                %8.2fx          %8.2fx\n", double(load.wall) / floor.wall,
                double(load.cpu) / floor.cpu);
    if (showBreakdown)
        breakdown(files);
    return records == int(files.size()) ? 0 : 1;
}
