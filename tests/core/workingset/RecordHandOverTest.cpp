#include "TestSupport.h"
#include "workingset/RecordQueue.h"
#include "workingset/ScanFixture.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>

namespace tagmoor {
namespace {

CGImageProperties numbered(int n) {
    CGImageProperties r;
    r.url = QUrl::fromLocalFile(QStringLiteral("/p/%1.jpg").arg(n));
    return r;
}

QList<CGImageProperties> numberedRun(int first, int count) {
    QList<CGImageProperties> out;
    for (int i = first; i < first + count; ++i)
        out.append(numbered(i));
    return out;
}

TEST(RecordHandOver, TakenInAnySlicesTheRecordsArriveWholeAndInOrder) {
    RecordQueue queue;
    // Only the first put into an empty queue asks for a word to the taker.
    EXPECT_TRUE(queue.put(numberedRun(0, 5)));
    EXPECT_FALSE(queue.put(numberedRun(5, 1)));
    EXPECT_FALSE(queue.put({}));
    EXPECT_FALSE(queue.put(numberedRun(6, 7)));
    EXPECT_EQ(queue.size(), 13);
    // A slice ends inside a batch, the next one spans the rest of it and the following ones.
    EXPECT_EQ(queue.take(3), numberedRun(0, 3));
    EXPECT_EQ(queue.take(4), numberedRun(3, 4));
    EXPECT_EQ(queue.size(), 6);
    EXPECT_EQ(queue.take(100), numberedRun(7, 6));
    EXPECT_TRUE(queue.take(10).isEmpty());
    EXPECT_TRUE(queue.put(numberedRun(13, 2)));

    // One thread puts batches of any length while this one takes slices of any length.
    RecordQueue shared;
    constexpr int total = 20000;
    QThread* producer = QThread::create([&shared] {
        QRandomGenerator random(7);
        for (int next = 0; next < total;) {
            const int count = std::min(total - next, int(random.bounded(1, 300)));
            shared.put(numberedRun(next, count));
            next += count;
        }
    });
    producer->start();
    QRandomGenerator random(11);
    QList<CGImageProperties> received;
    while (received.size() < total && !(producer->isFinished() && shared.size() == 0))
        received.append(shared.take(random.bounded(1, 500)));
    producer->wait();
    delete producer;
    EXPECT_EQ(received.size(), total);
    EXPECT_TRUE(received == numberedRun(0, total));
}

TEST(RecordHandOver, AMovedAppendCountsMarksAndLeavesASharedListAlone) {
    WorkingSet set;
    QList<CGImageProperties> kept = numberedRun(0, 3);
    kept[1].isSelected = false;
    QList<CGImageProperties> shared = kept;
    set.appendImages(std::move(shared));
    // Records still shared with another list are copied, not moved out of it.
    QStringList keptPaths;
    for (const CGImageProperties& r : kept)
        keptPaths << r.path();
    EXPECT_EQ(keptPaths, (QStringList{"/p/0.jpg", "/p/1.jpg", "/p/2.jpg"}));
    EXPECT_FALSE(kept[1].isSelected);
    QList<CGImageProperties> own = numberedRun(3, 2);
    set.appendImages(std::move(own));
    EXPECT_EQ(set.count(), 5);
    EXPECT_EQ(set.markedCount(), 4);
    EXPECT_EQ(set.markedIndices(), (QList<int>{0, 2, 3, 4}));
    EXPECT_EQ(set.workingImages().at(4).path(), "/p/4.jpg");
}

TEST(RecordHandOver, AScanFillsTheListInContiguousSlicesBeforeItsEnd) {
    QTemporaryDir tmp;
    QStringList expected;
    for (int i = 0; i < 2000; ++i)
        expected << test::makeFile(tmp.path() +
                                   QStringLiteral("/p%1.jpg").arg(i, 5, 10, QChar('0')));
    test::ScanFixture f;
    f.controller.setRecordLoader(test::fakeLoader);
    f.set.appendImages({numbered(-1)});
    int next = 1;
    bool contiguous = true;
    QObject::connect(&f.set, &WorkingSet::imagesAppended, [&](int first, int last) {
        contiguous = contiguous && first == next && last >= first;
        next = last + 1;
    });
    int countAtEnd = -1;
    QObject::connect(&f.controller, &ScanController::scanFinished,
                     [&](const ScanResult&) { countAtEnd = f.set.count(); });
    f.stage({tmp.path()});
    ASSERT_TRUE(f.scan());
    EXPECT_TRUE(contiguous);
    EXPECT_EQ(countAtEnd, 2001) << "every record is in the list when the scan says it ended";
    EXPECT_EQ(f.controller.lastResult().added, 2000);
    EXPECT_EQ(f.listedPaths().mid(1), expected);
    EXPECT_EQ(f.set.markedCount(), 2001);
    EXPECT_EQ(f.controller.scanner().waitingRecords(), 0);
}

} // namespace
} // namespace tagmoor
