// The cheap test of the input check must answer as building the record would.
#include "TestSupport.h"

#include "metadata/PropertyLoading.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

namespace tagmoor::test {
namespace {

TEST(GivesRecord, AnswersAsLoadingTheRecordDoesForEverySampleAndDamagedJpeg) {
    QStringList paths;
    for (const QString& folder : {formatsDir(), malformedDir()})
        for (const QString& name : QDir(folder).entryList(QDir::Files))
            paths << folder + "/" + name;
    // JPEGs that Qt's reader and Exiv2 judge differently: no frame header at all, a frame
    // header of no size, the picture cut off right after the start-of-image marker.
    QTemporaryDir dir;
    const QByteArray jpeg = readBytes(formatsDir() + "/Reagan.jpg");
    const qsizetype frame = jpeg.lastIndexOf("\xff\xc0"); // after the thumbnail's
    ASSERT_GT(frame, 0);
    QByteArray noFrame = jpeg;
    noFrame[frame + 1] = '\xfe'; // a comment where the frame header was
    QByteArray noSize = jpeg;
    noSize[frame + 5] = noSize[frame + 6] = noSize[frame + 7] = noSize[frame + 8] = '\0';
    const QList<std::pair<const char*, QByteArray>> made{{"noframe.jpg", noFrame},
                                                         {"nosize.jpg", noSize},
                                                         {"cut.jpg", jpeg.left(2)},
                                                         {"empty.jpg", {}},
                                                         {"text.jpg", "not a photo"}};
    for (const auto& [name, bytes] : made) {
        ASSERT_TRUE(writeBytes(dir.filePath(name), bytes));
        paths << dir.filePath(name);
    }
    int photos = 0;
    for (const QString& path : paths) {
        const bool loaded = loadImageProperties(QUrl::fromLocalFile(path)).has_value();
        EXPECT_EQ(givesRecord(path), loaded) << path.toStdString();
        photos += loaded;
    }
    // Both answers occur, or the comparison proves nothing.
    EXPECT_GT(photos, 10);
    EXPECT_LT(photos, paths.size());
}

} // namespace
} // namespace tagmoor::test
