// How much of a read holds the XMP lock: reads the records of the files given, as
// `tagmoor-cli read` does (in order, on N reader threads), with the lock timed, and prints
//
//   xmp lock: LOCKS times, held HELD ms, waited for WAITED ms
//
//   bench_xmp_lock [--threads N] FILE...
//
// The timing is this benchmark's own: it links xmpLockTimed() and xmpLockHeld() in place of
// the core's, which time nothing (see metadata/MetadataLibrary.h).
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"
#include "workingset/OrderedRecordReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<std::int64_t> locks{0};
std::atomic<std::int64_t> heldNs{0};
std::atomic<std::int64_t> waitedNs{0};

} // namespace

bool tagmoor::xmpLockTimed() {
    return true;
}

void tagmoor::xmpLockHeld(std::int64_t waited, std::int64_t held) {
    ++locks;
    heldNs += held;
    waitedNs += waited;
}

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    QStringList files = app.arguments().mid(1);
    int threads = 1;
    if (files.size() >= 2 && files.first() == QLatin1String("--threads")) {
        threads = files.at(1).toInt();
        files = files.mid(2);
    }
    if (files.value(0) == QLatin1String("--"))
        files.removeFirst();
    if (files.isEmpty() || threads < 1) {
        std::fputs("usage: bench_xmp_lock [--threads N] FILE...\n", stderr);
        return 2;
    }
    tagmoor::keepFreedMemoryInProcess();
    int missing = 0;
    tagmoor::OrderedRecordReader reader(
        &tagmoor::loadImageProperties, threads,
        [&](const QString&, std::optional<tagmoor::CGImageProperties>&& record) {
            missing += record ? 0 : 1;
        });
    for (const QString& file : files)
        reader.read(QDir::cleanPath(QFileInfo(file).absoluteFilePath()));
    reader.finish();
    std::printf("xmp lock: %lld times, held %lld ms, waited for %lld ms\n",
                static_cast<long long>(locks.load()), static_cast<long long>(heldNs / 1000000),
                static_cast<long long>(waitedNs / 1000000));
    return missing == 0 ? 0 : 1;
}
