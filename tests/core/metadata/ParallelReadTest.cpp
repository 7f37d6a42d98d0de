// Records are read on several threads at once, XMP included, while another thread writes XMP:
// every read must give what a read alone gives. (Exiv2's XMP parsing, left to run on two
// threads at once, now and then loses a photo's XMP values without an error: this test
// catches that.)
#include "WriteSupport.h"

#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

#include <QTemporaryDir>
#include <QUrl>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace tagmoor::test {
namespace {

TEST(ParallelRead, ConcurrentReadersGiveTheRecordsOfOneReader) {
    QStringList files = sampleFiles(formatsDir());
    ASSERT_FALSE(files.isEmpty());
    std::vector<std::optional<CGImageProperties>> alone;
    for (const QString& f : files)
        alone.push_back(loadImageProperties(QUrl::fromLocalFile(f)));

    QTemporaryDir tmp;
    const QString written = copySample(formatsDir() + "/et-XMP.jpg", tmp.path());
    std::atomic<bool> reading{true};
    std::thread writer([&] {
        for (int i = 0; reading.load(); ++i) {
            const WrittenProperties tags = properties(
                {}, {}, {{QStringLiteral("Xmp.aux.Lens"), QStringLiteral("Lens %1").arg(i)}});
            const WriteResult w = MetadataTest().setImagePropertiesAll(written, tags, {});
            EXPECT_TRUE(w.written()) << w.detail.toStdString();
        }
    });

    constexpr int kThreads = 4;
    std::atomic<int> mismatches{0};
    std::vector<std::thread> readers;
    for (int t = 0; t < kThreads; ++t) {
        readers.emplace_back([&, t] {
            for (int round = 0; round < 3; ++round) {
                // Each thread walks the files from another starting point.
                for (qsizetype k = 0; k < files.size(); ++k) {
                    const qsizetype i = (k + t * files.size() / kThreads) % files.size();
                    if (loadImageProperties(QUrl::fromLocalFile(files[i])) != alone[i]) {
                        ++mismatches;
                        ADD_FAILURE() << files[i].toStdString();
                    }
                }
            }
        });
    }
    for (auto& r : readers)
        r.join();
    reading = false;
    writer.join();
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_TRUE(loadImageProperties(QUrl::fromLocalFile(written)).has_value());
}

} // namespace
} // namespace tagmoor::test
