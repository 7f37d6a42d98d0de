// Timing and memory probes for the batch benchmark (driven by bench/batch.sh).
//
//   bench_batch floor CORPUS OUT
//       The floor of an edit run: each photo copied into OUT, then the same tags written
//       with bare Exiv2 (open, read, set, write), one photo after another. Prints seconds.
//   bench_batch memfloor CORPUS OUT [THREADS]
//       The in-memory floor of a run into a folder: on THREADS threads (default 2), each photo
//       read once into memory, edited there by bare Exiv2 and written once into OUT.
//   bench_batch copy CORPUS OUT
//       The plain in-kernel copy of the photos into OUT on one thread: each file opened,
//       created beside and copied with copy_file_range, nothing read into memory.
//   bench_batch inplacefloor FOLDER [THREADS]
//       The floor of a run in place: each photo of FOLDER read once, edited in memory, written
//       to a temporary file beside it, flushed and renamed over it (the safe replace).
//   With BENCH_EXIF_ONLY=1 the floors leave the XMP alone (the edits less Xmp.aux.Lens).
//   bench_batch child -- PROGRAM ARGS...
//       Runs PROGRAM and prints its wall time and its peak resident memory (ru_maxrss of the
//       child alone, from wait4).
#include "foundation/ThreadPriority.h"
#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <exiv2/exiv2.hpp>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

// The same edits as the batch run of batch.sh: eight fields and the original date an hour
// later.
void editTags(Exiv2::Image& image) {
    Exiv2::ExifData& exif = image.exifData();
    exif["Exif.Image.Artist"] = "Jane Doe";
    exif["Exif.Image.Copyright"] = "(c) Jane Doe";
    exif["Exif.Image.ImageDescription"] = "Harbour at dawn";
    exif["Exif.Photo.ISOSpeedRatings"] = int32_t(400);
    exif["Exif.Photo.FNumber"] = Exiv2::floatToRationalCast(2.8f);
    image.iptcData()["Iptc.Application2.City"] = "Paris";
    image.iptcData()["Iptc.Application2.Headline"] = "Morning";
    // BENCH_EXIF_ONLY=1 leaves the XMP as it is, as an edit of Exif and IPTC values does.
    static const bool exifOnly = qEnvironmentVariableIntValue("BENCH_EXIF_ONLY") == 1;
    if (!exifOnly)
        image.xmpData()["Xmp.aux.Lens"] = "Lens 50";
    auto it = exif.findKey(Exiv2::ExifKey("Exif.Photo.DateTimeOriginal"));
    if (it != exif.end()) {
        std::string date = it->toString();
        if (date.size() >= 13) {
            const int hour = (std::stoi(date.substr(11, 2)) + 1) % 24;
            date[11] = char('0' + hour / 10);
            date[12] = char('0' + hour % 10);
            *it = date;
        }
    }
}

int floor(const QString& corpus, const QString& out) {
    QDir().mkpath(out);
    const QStringList names = QDir(corpus).entryList({"*.jpg"}, QDir::Files, QDir::Name);
    QElapsedTimer timer;
    timer.start();
    for (const QString& name : names) {
        const std::string src = QFile::encodeName(corpus + "/" + name).toStdString();
        const std::string dst = QFile::encodeName(out + "/" + name).toStdString();
        std::filesystem::copy_file(src, dst, std::filesystem::copy_options::overwrite_existing);
        try {
            auto image = Exiv2::ImageFactory::open(dst);
            image->readMetadata();
            editTags(*image);
            image->writeMetadata();
        } catch (const Exiv2::AnyError& e) {
            std::fprintf(stderr, "%s: %s\n", dst.c_str(), e.what());
        }
    }
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const double cpu = double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                       double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    std::printf("floor: %lld photos wall=%.3f s cpu=%.3f s\n", static_cast<long long>(names.size()),
                double(timer.nsecsElapsed()) / 1e9, cpu);
    return 0;
}

double cpuSeconds() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

bool readWhole(const std::string& path, std::string& bytes) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct stat st {};
    ::fstat(fd, &st);
    bytes.resize(std::size_t(st.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (n <= 0)
            break;
        done += std::size_t(n);
    }
    ::close(fd);
    return done == bytes.size();
}

// Reads `from` once, edits it in memory and writes the new bytes once to `to` (created
// afresh); with `flushAndRename`, `to` is a temporary name that is flushed and renamed over
// `from`.
void editInMemory(const std::string& from, const std::string& to, bool flushAndRename) {
    std::string bytes;
    if (!readWhole(from, bytes)) {
        std::fprintf(stderr, "%s: cannot read\n", from.c_str());
        return;
    }
    try {
        auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.data()),
                                               long(bytes.size()));
        image->readMetadata();
        editTags(*image);
        image->writeMetadata();
        Exiv2::BasicIo& io = image->io();
        io.open();
        const long size = io.size();
        const Exiv2::byte* data = io.mmap();
        const int fd = ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        long done = 0;
        while (fd >= 0 && done < size) {
            const ssize_t n = ::write(fd, data + done, std::size_t(size - done));
            if (n <= 0)
                break;
            done += n;
        }
        if (fd >= 0 && flushAndRename)
            ::fdatasync(fd);
        if (fd >= 0)
            ::close(fd);
        io.munmap();
        io.close();
        if (flushAndRename)
            ::rename(to.c_str(), from.c_str());
    } catch (const Exiv2::AnyError& e) {
        std::fprintf(stderr, "%s: %s\n", from.c_str(), e.what());
    }
}

// Copies every photo of `corpus` into `out` inside the kernel, one after another.
int kernelCopy(const QString& corpus, const QString& out) {
    QDir().mkpath(out);
    const QStringList names = QDir(corpus).entryList({"*.jpg"}, QDir::Files, QDir::Name);
    QElapsedTimer timer;
    timer.start();
    const double cpu0 = cpuSeconds();
    for (const QString& name : names) {
        const std::string src = QFile::encodeName(corpus + "/" + name).toStdString();
        const std::string dst = QFile::encodeName(out + "/" + name).toStdString();
        const int in = ::open(src.c_str(), O_RDONLY | O_CLOEXEC);
        const int to = ::open(dst.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        struct stat st {};
        if (in < 0 || to < 0 || ::fstat(in, &st) != 0) {
            std::fprintf(stderr, "%s: cannot copy\n", src.c_str());
        } else {
            off_t left = st.st_size;
            while (left > 0) {
                const ssize_t n = ::copy_file_range(in, nullptr, to, nullptr, std::size_t(left), 0);
                if (n <= 0)
                    break;
                left -= n;
            }
        }
        if (in >= 0)
            ::close(in);
        if (to >= 0)
            ::close(to);
    }
    std::printf("kernel copy: %lld photos, 1 thread: wall=%.3f s cpu=%.3f s\n",
                static_cast<long long>(names.size()), double(timer.nsecsElapsed()) / 1e9,
                cpuSeconds() - cpu0);
    return 0;
}

// The photos of `corpus`, handed out one at a time to `threads` threads.
int inMemory(const QString& corpus, const QString& out, int threads) {
    const bool inPlace = out.isEmpty();
    if (!inPlace)
        QDir().mkpath(out);
    const QStringList names = QDir(corpus).entryList({"*.jpg"}, QDir::Files, QDir::Name);
    QElapsedTimer timer;
    timer.start();
    const double cpu0 = cpuSeconds();
    std::atomic<int> next{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([&] {
            // As niceness goes, the same as the run's own workers, so that a busy machine
            // treats both alike.
            tagmoor::lowerThisThreadsPriority();
            for (int i = next++; i < names.size(); i = next++) {
                const std::string src = QFile::encodeName(corpus + "/" + names[i]).toStdString();
                if (inPlace)
                    editInMemory(
                        src,
                        QFile::encodeName(corpus + "/.floor-" + names[i] + ".tmp").toStdString(),
                        true);
                else
                    editInMemory(src, QFile::encodeName(out + "/" + names[i]).toStdString(), false);
            }
        });
    }
    for (auto& w : workers)
        w.join();
    std::printf("%s: %lld photos, %d threads: wall=%.3f s cpu=%.3f s\n",
                inPlace ? "in-place floor" : "in-memory floor",
                static_cast<long long>(names.size()), threads, double(timer.nsecsElapsed()) / 1e9,
                cpuSeconds() - cpu0);
    return 0;
}

int child(char** argv) {
    QElapsedTimer timer;
    timer.start();
    const pid_t pid = fork();
    if (pid == 0) {
        execvp(argv[0], argv);
        std::perror("exec");
        _exit(127);
    }
    int status = 0;
    struct rusage usage {};
    if (wait4(pid, &status, 0, &usage) < 0) {
        std::perror("wait4");
        return 2;
    }
    const double cpu = double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                       double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    std::printf("wall=%.3f s cpu=%.3f s maxrss=%ld KiB exit=%d\n",
                double(timer.nsecsElapsed()) / 1e9, cpu, usage.ru_maxrss,
                WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc >= 4 && std::string(argv[1]) == "child" && std::string(argv[2]) == "--")
        return child(argv + 3);
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    const auto threadsAt = [&](int i) { return argc > i ? std::max(1, std::atoi(argv[i])) : 2; };
    if (argc >= 4 && std::string(argv[1]) == "memfloor")
        return inMemory(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                        threadsAt(4));
    if (argc >= 3 && std::string(argv[1]) == "inplacefloor")
        return inMemory(QString::fromLocal8Bit(argv[2]), QString(), threadsAt(3));
    if (argc == 4 && std::string(argv[1]) == "copy")
        return kernelCopy(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    if (argc == 4 && std::string(argv[1]) == "floor")
        return floor(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    std::fprintf(
        stderr,
        "usage: bench_batch floor CORPUS OUT | bench_batch memfloor CORPUS OUT [THREADS] | "
        "bench_batch copy CORPUS OUT | "
        "bench_batch inplacefloor FOLDER [THREADS] | bench_batch child -- PROGRAM ARGS...\n");
    return 2;
}
