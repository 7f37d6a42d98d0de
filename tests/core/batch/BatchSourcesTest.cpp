#include "BatchTestSupport.h"

#include "batch/FileIdentity.h"
#include "batch/ListPhotoSource.h"

#include <cstdio>
#include <unistd.h>

using namespace tagmoor;
using namespace tagmoor::test;

// A source of the run counts by its file, whatever path reaches it (a hard link, a linked
// folder), and by its place once another file stands there; nothing else counts, among
// thousands of sources of one folder (whose names' hashes are only a first sieve) too.
TEST(BatchSources, KnowSourcesByFileAndByPlaceAndNothingElse) {
    QTemporaryDir tmp;
    const QString in = tmp.path() + "/in";
    const QString other = tmp.path() + "/other";
    QDir().mkpath(in);
    QDir().mkpath(other);
    QStringList paths;
    for (int i = 0; i < 3000; ++i) {
        paths << in + QStringLiteral("/p%1.jpg").arg(i);
        ASSERT_TRUE(writeBytes(paths.last(), "x"));
    }
    ASSERT_TRUE(writeBytes(in + "/beside.jpg", "x"));
    ASSERT_TRUE(writeBytes(other + "/p1.jpg", "x"));
    ASSERT_EQ(::link(QFile::encodeName(paths[7]).constData(),
                     QFile::encodeName(other + "/hard.jpg").constData()),
              0);
    ASSERT_EQ(::symlink(QFile::encodeName(in).constData(),
                        QFile::encodeName(tmp.path() + "/alias").constData()),
              0);
    // The last photo is a link to a file of another name, outside the folder.
    ASSERT_TRUE(writeBytes(other + "/target.jpg", "x"));
    ASSERT_TRUE(QFile::remove(paths.last()));
    ASSERT_EQ(::symlink(QFile::encodeName(other + "/target.jpg").constData(),
                        QFile::encodeName(paths.last()).constData()),
              0);

    QList<CGImageProperties> records = recordsOf(paths);
    records[5].isSelected = false;
    const ListPhotoSource photos(records);
    const BatchSources sources(photos);

    for (int i = 0; i < 3000; ++i) {
        if (i != 5) {
            ASSERT_TRUE(sources.contains(paths[i])) << i;
        }
    }
    EXPECT_TRUE(sources.contains(other + "/hard.jpg"));
    EXPECT_TRUE(sources.contains(tmp.path() + "/alias/p12.jpg"));
    EXPECT_TRUE(sources.contains(other + "/target.jpg"));
    EXPECT_FALSE(sources.contains(paths[5]));
    EXPECT_FALSE(sources.contains(in + "/beside.jpg"));
    EXPECT_FALSE(sources.contains(in + "/p3000.jpg"));
    EXPECT_FALSE(sources.contains(other + "/p1.jpg"));
    EXPECT_FALSE(sources.contains(tmp.path() + "/alias/beside.jpg"));

    // A source replaced by a new file is still a source by its place, and so is the file a
    // linked source leads to.
    for (const QString& path : {paths[9], other + "/target.jpg"}) {
        ASSERT_TRUE(writeBytes(path + ".new", "y"));
        ASSERT_EQ(::rename(QFile::encodeName(path + ".new").constData(),
                           QFile::encodeName(path).constData()),
                  0);
        EXPECT_TRUE(sources.contains(path)) << path.toStdString();
    }
    EXPECT_FALSE(BatchSources().contains(paths[9]));

    // A source's place, as the run's photos in work are kept apart by it: a linked folder
    // leads to the folder's place, a link at the path to its file's.
    EXPECT_EQ(resolvedLocationOf(tmp.path() + "/alias/p12.jpg"), locationOf(paths[12]));
    EXPECT_EQ(resolvedLocationOf(paths.last()), locationOf(other + "/target.jpg"));
    EXPECT_NE(resolvedLocationOf(paths.last()), locationOf(paths.last()));
}
