#include "workingset/FolderWalk.h"
#include "TestSupport.h"

#include <QDir>
#include <QTemporaryDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {
namespace {

using test::writeBytes;

QString relative(const QString& root, const QString& path) {
    return QDir(root).relativeFilePath(path);
}

QStringList walkRelative(const QString& root) {
    QStringList out;
    for (const QString& p : walkFolder(root).files)
        out << relative(root, p);
    return out;
}

TEST(FolderWalk, ListsRegularFilesInNameOrderAndKeepsOutHiddenPackagesAndMediaLibraries) {
    QTemporaryDir tmp;
    const QString r = tmp.path();
    QDir d(r);
    for (const char* sub :
         {"a", "b/c", ".hidden", "Pics.photoslibrary/originals", "Music/iTunes/Album",
          "x/Photo Booth Library/Pictures", "2024.05 Trip", "empty"})
        ASSERT_TRUE(d.mkpath(sub));
    for (const char* f :
         {"z.jpg", "a/1.jpg", "a/2.txt", "b/c/3.png", "b/0.jpg", ".dot.jpg", ".hidden/4.jpg",
          "Pics.photoslibrary/originals/5.jpg", "Music/iTunes/Album/6.jpg", "Music/keep.jpg",
          "x/Photo Booth Library/Pictures/7.jpg", "2024.05 Trip/8.jpg", "iTunesArt.jpg"})
        ASSERT_TRUE(writeBytes(r + "/" + f, "x"));

    // Files before or after folders purely by name; a folder's files where it stands.
    EXPECT_EQ(walkRelative(r), (QStringList{"2024.05 Trip/8.jpg", "Music/keep.jpg", "a/1.jpg",
                                            "a/2.txt", "b/0.jpg", "b/c/3.png", "z.jpg"}));
    // "/itunes" matches any name that starts so, as a file's own name too.
    EXPECT_TRUE(isExcludedMediaPath("/p/ITUNES Media/x.jpg"));
    EXPECT_TRUE(isExcludedMediaPath("/p/iTunesArt.jpg"));
    EXPECT_TRUE(isExcludedMediaPath("/p/PHOTO BOOTH LIBRARY/x.jpg"));
    EXPECT_FALSE(isExcludedMediaPath("/p/myitunes/x.jpg"));
    EXPECT_TRUE(isPackageFolderName("Lib.PhotosLibrary"));
    EXPECT_FALSE(isPackageFolderName("2024.05 Trip"));
    EXPECT_FALSE(isPackageFolderName(".photoslibrary"));

    // A walk that starts inside an excluded place finds nothing; an empty folder neither.
    EXPECT_TRUE(walkFolder(r + "/Music/iTunes").files.isEmpty());
    EXPECT_TRUE(walkFolder(r + "/empty").files.isEmpty());
    EXPECT_FALSE(walkFolder(r + "/empty").failed);
}

TEST(FolderWalk, SurvivesLinkLoopsOddNamesMissingAndUnreadableFolders) {
    QTemporaryDir tmp;
    const QString r = tmp.path();
    ASSERT_TRUE(QDir(r).mkpath("loop/inner"));
    ASSERT_TRUE(writeBytes(r + "/loop/inner/a.jpg", "x"));
    // A link back to its own ancestor, and a link to a file.
    ASSERT_EQ(::symlink("..", QFile::encodeName(r + "/loop/inner/up").constData()), 0);
    ASSERT_EQ(::symlink("a.jpg", QFile::encodeName(r + "/loop/inner/alias.jpg").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", QFile::encodeName(r + "/loop/dangling.jpg").constData()), 0);
    // A newline in a name, and a name that is not valid UTF-8.
    ASSERT_TRUE(writeBytes(r + "/loop/new\nline.jpg", "x"));
    const QByteArray raw = QFile::encodeName(r + "/loop/") + QByteArray("bad\xff\xfe.jpg");
    const int fd = ::open(raw.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(fd, 0);
    ::close(fd);

    const QStringList found = walkRelative(r + "/loop");
    EXPECT_TRUE(found.contains("inner/a.jpg"));
    EXPECT_TRUE(found.contains("inner/alias.jpg"));
    EXPECT_TRUE(found.contains("new\nline.jpg"));
    EXPECT_FALSE(found.contains("dangling.jpg"));
    // The loop is not followed: every file once, nothing below the link.
    EXPECT_EQ(found.count("inner/a.jpg"), 1) << found.join(", ").toStdString();
    EXPECT_TRUE(found.filter("inner/up/").isEmpty());

    const FolderWalkResult missing = walkFolder(r + "/not-there");
    EXPECT_TRUE(missing.failed);
    EXPECT_TRUE(missing.files.isEmpty());
    EXPECT_TRUE(walkFolder(r + "/loop/inner/a.jpg").failed);

    std::atomic_bool stop{true};
    EXPECT_TRUE(walkFolder(r + "/loop", &stop).files.isEmpty());
    ::unlink(raw.constData()); // the temporary folder cannot remove it by name
}

// Names come in QString's order, by UTF-16 code units, which is not the order of their UTF-8
// bytes: a character beyond U+FFFF (a surrogate pair) sorts before one of U+E000..U+FFFF.
TEST(FolderWalk, OrdersNamesAsQStringDoes) {
    QTemporaryDir tmp;
    const QString r = tmp.path();
    QStringList names;
    for (const QString& middle :
         {QStringLiteral("\uE000"), QStringLiteral("\uFFFD"), QStringLiteral("😀"),
          QStringLiteral("\U00020000"), QStringLiteral("é"), QStringLiteral("\u0800"),
          QStringLiteral("\uD7FF"), QStringLiteral("Z"), QStringLiteral("a"), QString()}) {
        names << QStringLiteral("p") + middle + QStringLiteral(".jpg");
        ASSERT_TRUE(writeBytes(r + "/" + names.last(), "x"));
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(walkRelative(r), names);
    QStringList streamed;
    QList<LeftOutEntry> leftOut;
    EXPECT_TRUE(walkFolder(
        r, [&](const QString& path) { streamed << relative(r, path); }, &leftOut));
    EXPECT_EQ(streamed, names);
    EXPECT_FALSE(walkFolder(
        r + "/not-there", [](const QString&) {}, &leftOut));
}

TEST(FolderWalk, PassesOverAnUnreadableSubfolder) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "running as root: permissions do not keep a folder closed";
    QTemporaryDir tmp;
    const QString r = tmp.path();
    ASSERT_TRUE(QDir(r).mkpath("open"));
    ASSERT_TRUE(QDir(r).mkpath("closed"));
    ASSERT_TRUE(writeBytes(r + "/open/a.jpg", "x"));
    ASSERT_TRUE(writeBytes(r + "/closed/b.jpg", "x"));
    ::chmod(QFile::encodeName(r + "/closed").constData(), 0);
    EXPECT_EQ(walkRelative(r), QStringList{"open/a.jpg"});
    EXPECT_TRUE(walkFolder(r + "/closed").failed);
    ::chmod(QFile::encodeName(r + "/closed").constData(), 0755);
}

} // namespace
} // namespace tagmoor
