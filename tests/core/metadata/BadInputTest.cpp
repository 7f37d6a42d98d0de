// Broken, hostile and vanishing files give no record (or a partial one), never a crash.
#include "TestSupport.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

#include <QTemporaryDir>
#include <QUrl>

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

std::optional<CGImageProperties> load(const QString& path) {
    return loadImageProperties(QUrl::fromLocalFile(path));
}

class BadInput : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
};

TEST_F(BadInput, NonPhotosWithAPhotoNameGiveNothing) {
    writeBytes(path("empty.jpg"), {});
    writeBytes(path("text.jpg"), "Dear diary,\nno photo today.\n");
    writeBytes(path("movie.jpg"), QByteArray("\0\0\0\x18"
                                             "ftypmp42\0\0\0\0mp42isom",
                                             24) +
                                      QByteArray(2000, '\0'));
    QDir(dir.path()).mkdir(QStringLiteral("folder.jpg"));
    mkfifo(QFile::encodeName(path("pipe.jpg")).constData(), 0600);
    for (const char* name :
         {"empty.jpg", "text.jpg", "movie.jpg", "folder.jpg", "pipe.jpg", "missing.jpg"}) {
        EXPECT_FALSE(load(path(name))) << name;
        EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(path(name))) << name;
    }
    EXPECT_FALSE(loadImageProperties(QUrl(QStringLiteral("https://example.com/a.jpg"))));
}

TEST_F(BadInput, PostScriptNamedJpegNeverReachesTheParser) {
    // Exiv2 itself reads PostScript and would find the tag; the bridge must not let it.
    writeBytes(path("page.eps"), "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n"
                                 "%%EndComments\n%%BeginProlog\n%%EndProlog\n%%Page: 1 1\n"
                                 "showpage\n%%EOF\n");
    // Exiv2 writes XMP through a toolkit that the program shares between threads.
    const auto xmpLock = lockXmpToolkit();
    Exiv2::Image::AutoPtr eps = Exiv2::ImageFactory::open(path("page.eps").toStdString());
    eps->readMetadata();
    eps->xmpData()["Xmp.xmp.Label"] = "hidden";
    eps->writeMetadata();
    QFile::rename(path("page.eps"), path("page.jpg"));
    Exiv2::Image::AutoPtr check = Exiv2::ImageFactory::open(path("page.jpg").toStdString());
    check->readMetadata();
    ASSERT_FALSE(check->xmpData().empty());

    EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(path("page.jpg")));
    EXPECT_TRUE(MetadataTest().readJSONStringFrom(path("page.jpg")).isEmpty());
    EXPECT_FALSE(load(path("page.jpg")));
}

TEST_F(BadInput, TruncatedPhotosGiveAtMostWhatTheyHold) {
    const QByteArray jpeg = readBytes(formatsDir() + QStringLiteral("/Reagan.jpg"));
    for (int cut : {2, 3, 10, 100, 1000, int(jpeg.size()) / 2, int(jpeg.size()) - 1}) {
        writeBytes(path("cut.jpg"), jpeg.left(cut));
        const auto record = load(path("cut.jpg"));
        if (record) {
            ASSERT_TRUE(record->pixelWidth.float64()) << cut;
            EXPECT_EQ(*record->pixelWidth.float64(), 200.0);
        }
    }
    writeBytes(path("cut.jpg"), jpeg.left(10));
    EXPECT_FALSE(load(path("cut.jpg")));
    writeBytes(path("cut.jpg"), jpeg.left(jpeg.size() - 1));
    EXPECT_TRUE(load(path("cut.jpg")));
}

TEST_F(BadInput, FilesThatOnceCrashedALibraryAreSurvived) {
    // In a child process first, so that a crash or a hang fails this test, not the run.
    const QStringList files = sampleFiles(malformedDir());
    ASSERT_FALSE(files.isEmpty());
    const ToolResult cli =
        runTool(QStringLiteral(TAGMOOR_CLI), QStringList{QStringLiteral("read")} + files, 30000);
    ASSERT_TRUE(cli.exitCode == 0 || cli.exitCode == 1) << cli.err.toStdString();
    EXPECT_EQ(cli.out.count('\n'), files.size());
    for (const QString& file : files) {
        const auto record = load(file);
        if (record) {
            EXPECT_TRUE(record->tiffProperties && record->exifProperties) << file.toStdString();
        }
        MetadataTest().readJSONStringFrom(file);
    }
}

TEST_F(BadInput, VanishingAndOddlyNamedFiles) {
    // Listed, then removed before it is read.
    makeJpeg(path("gone.jpg"));
    const QStringList listed = sampleFiles(dir.path());
    QFile::remove(path("gone.jpg"));
    for (const QString& file : listed)
        EXPECT_FALSE(load(file));

    // A name that is not UTF-8 can't survive the trip through a QString; it reads as nothing.
    const QByteArray raw = QFile::encodeName(dir.path()) + "/caf\xE9.jpg";
    const int fd = ::open(raw.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(fd, 0);
    const QByteArray jpeg = readBytes(formatsDir() + QStringLiteral("/Reagan.jpg"));
    ASSERT_EQ(::write(fd, jpeg.constData(), jpeg.size()), jpeg.size());
    ::close(fd);
    const QString name = QFile::decodeName(raw);
    EXPECT_FALSE(load(name));
    EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(name));
    ::unlink(raw.constData());
}

TEST_F(BadInput, UnreadableFileGivesNothing) {
    makeJpeg(path("locked.jpg"));
    QFile::setPermissions(path("locked.jpg"), QFileDevice::WriteOwner);
    const auto tryRead = [&] {
        return load(path("locked.jpg")).has_value() ||
               MetadataTest().readAllPropertiesFrom(path("locked.jpg")).has_value();
    };
    if (geteuid() != 0) {
        EXPECT_FALSE(tryRead());
        return;
    }
    // Root reads every file: the read is tried by a child that gave up its privileges. The
    // folder is opened to all, so that only the file's own bits keep it closed.
    QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                          QFileDevice::ExeOther);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (setgid(65534) != 0 || setuid(65534) != 0)
            _exit(3);
        _exit(tryRead() ? 1 : 0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 3)
        GTEST_SKIP() << "running as root and could not drop privileges";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace tagmoor
