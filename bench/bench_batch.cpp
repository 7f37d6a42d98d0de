// Timing and memory probes for the batch benchmark (driven by bench/batch.sh).
//
//   bench_batch floor CORPUS OUT
//       The floor of an edit run: each photo copied into OUT, then the same tags written
//       with bare Exiv2 (open, read, set, write), one photo after another. Prints seconds.
//   bench_batch child -- PROGRAM ARGS...
//       Runs PROGRAM and prints its wall time and its peak resident memory (ru_maxrss of the
//       child alone, from wait4).
#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextStream>

#include <exiv2/exiv2.hpp>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
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
    if (argc == 4 && std::string(argv[1]) == "floor")
        return floor(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    std::fprintf(stderr,
                 "usage: bench_batch floor CORPUS OUT | bench_batch child -- PROGRAM ARGS...\n");
    return 2;
}
