// The kernel's name for an opened file stands in for the folder-by-folder resolution: for any
// path they must agree, links, dots and dead ends included.
#include "foundation/CanonicalPath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {
namespace {

TEST(CanonicalPath, AgreesWithTheFolderByFolderResolution) {
    QTemporaryDir tmp;
    const QString root = tmp.path();
    ASSERT_TRUE(QDir(root).mkpath("real/inner"));
    QFile file(root + "/real/inner/photo.jpg");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    ASSERT_TRUE(QFile::link(root + "/real", root + "/linked"));
    ASSERT_TRUE(QFile::link(root + "/real/inner/photo.jpg", root + "/photo-link.jpg"));
    ASSERT_TRUE(QFile::link("inner/photo.jpg", root + "/real/relative-link.jpg"));
    ASSERT_TRUE(QFile::link(root + "/nowhere", root + "/dangling.jpg"));

    const QStringList paths = {
        root + "/real/inner/photo.jpg",
        root + "/linked/inner/photo.jpg",
        root + "/photo-link.jpg",
        root + "/real/relative-link.jpg",
        root + "/real/inner/../inner/./photo.jpg",
        root + "//real///inner/photo.jpg",
        root + "/linked/inner",
        root + "/dangling.jpg",
        root + "/missing.jpg",
        root + "/real/inner/photo.jpg/more",
        QStringLiteral("relative-from-here.jpg"),
    };
    for (const QString& path : paths)
        EXPECT_EQ(canonicalPathOf(path), QFileInfo(path).canonicalFilePath()) << path.toStdString();
    EXPECT_EQ(canonicalPathOf(root + "/linked/inner/photo.jpg"),
              QFileInfo(root + "/real/inner/photo.jpg").canonicalFilePath());
    EXPECT_TRUE(canonicalPathOf(root + "/dangling.jpg").isEmpty());
    EXPECT_TRUE(canonicalPathOf(QString()).isEmpty());
}

} // namespace
} // namespace tagmoor::test
