// How far the XMP decode of a read goes on two threads with this Exiv2: takes the XMP packet of
// each JPEG given (as the read does: from the file's head, without its padding), then times
// Exiv2's own decode of all of them on one thread, and on N threads (default 2) twice: each
// decode under the program's XMP lock, and with no lock of the program's at all. The second
// shows what a shared lock, or none, would give: the XMP toolkit inside Exiv2 takes a lock of
// its own, for the whole process, in each of its calls.
//
//   bench_xmp_decode [--threads N] [--rounds R] FILE...
//
// Prints, for each way, the microseconds a packet on the wall clock and against one thread:
//
//   one thread            T us a packet
//   N threads, locked     T us a packet   R x one thread
//   N threads, no lock    T us a packet   R x one thread
//
// Only packets whose namespaces are all known at start are timed: decoding one that brings a
// namespace of its own changes the toolkit's tables, which no two threads may do at once.
#include "metadata/JpegHead.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/XmpNamespaces.h"

#include <QCoreApplication>
#include <QStringList>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

enum class Guard { Lock, None };

// Decodes packets[i] for every i that `next` hands out, until there are none left.
void decodeShare(const std::vector<std::string>& packets, std::atomic<std::size_t>& next,
                 Guard guard, std::atomic<std::size_t>& failed) {
    for (std::size_t i = next++; i < packets.size(); i = next++) {
        Exiv2::XmpData xmp;
        int status = 0;
        if (guard == Guard::Lock) {
            const auto xmpLock = tagmoor::lockXmpToolkit();
            status = Exiv2::XmpParser::decode(xmp, packets[i]);
        } else {
            status = Exiv2::XmpParser::decode(xmp, packets[i]);
        }
        if (status != 0 || xmp.empty())
            ++failed;
    }
}

// Wall microseconds a packet for one pass over all packets on `threads` threads.
double microsecondsAPacket(const std::vector<std::string>& packets, int threads, Guard guard,
                           std::atomic<std::size_t>& failed) {
    std::atomic<std::size_t> next{0};
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> workers;
    for (int t = 1; t < threads; ++t)
        workers.emplace_back(decodeShare, std::cref(packets), std::ref(next), guard,
                             std::ref(failed));
    decodeShare(packets, next, guard, failed);
    for (std::thread& worker : workers)
        worker.join();
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - start;
    return took.count() / double(packets.size());
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[(values.size() - 1) / 2];
}

} // namespace

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    QStringList files = app.arguments().mid(1);
    int threads = 2;
    int rounds = 5;
    while (files.size() >= 2 && files.first().startsWith(QLatin1String("--")) &&
           files.first() != QLatin1String("--")) {
        (files.first() == QLatin1String("--threads") ? threads : rounds) = files.at(1).toInt();
        files = files.mid(2);
    }
    if (files.value(0) == QLatin1String("--"))
        files.removeFirst();
    if (files.isEmpty() || threads < 1 || rounds < 1) {
        std::fputs("usage: bench_xmp_decode [--threads N] [--rounds R] FILE...\n", stderr);
        return 2;
    }
    tagmoor::keepFreedMemoryInProcess();
    std::vector<std::string> packets;
    for (const QString& file : files) {
        const std::optional<tagmoor::JpegHead> head = tagmoor::readJpegHead(file);
        if (!head || head->xmpPacket.empty())
            continue;
        std::string packet = tagmoor::xmpPacketWithoutPadding(head->xmpPacket);
        if (tagmoor::unusualXmpDeclarations(packet).empty())
            packets.push_back(std::move(packet));
    }
    if (packets.empty()) {
        std::fputs("bench_xmp_decode: no JPEG given holds an XMP packet of known namespaces\n",
                   stderr);
        return 1;
    }
    std::atomic<std::size_t> failed{0};
    std::vector<double> one, locked, unlocked;
    // The three take turns, so that a slow spell of a shared machine weighs on each alike.
    for (int round = 0; round < rounds; ++round) {
        one.push_back(microsecondsAPacket(packets, 1, Guard::Lock, failed));
        locked.push_back(microsecondsAPacket(packets, threads, Guard::Lock, failed));
        unlocked.push_back(microsecondsAPacket(packets, threads, Guard::None, failed));
    }
    const double base = median(one);
    std::printf("%zu packets, median of %d rounds\n", packets.size(), rounds);
    std::printf("one thread            %7.1f us a packet\n", base);
    std::printf("%d threads, locked     %7.1f us a packet  %5.2fx one thread\n", threads,
                median(locked), median(locked) / base);
    std::printf("%d threads, no lock    %7.1f us a packet  %5.2fx one thread\n", threads,
                median(unlocked), median(unlocked) / base);
    if (failed != 0) {
        std::fprintf(stderr, "bench_xmp_decode: %zu decodes failed\n", failed.load());
        return 1;
    }
    return 0;
}
