// No photo is ever lost: hostile and ordinary set-ups of a run, each checked for the three
// promises of RunInvariants.
#include "BatchTestSupport.h"
#include "RunInvariants.h"

#include "batch/BatchObserver.h"
#include "metadata/WriteHooks.h"
#include "rename/RenameRule.h"
#include "workingset/FolderWalk.h"
#include "workingset/ScanFixture.h"

#include <QProcess>
#include <QRegularExpression>

#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <future>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

constexpr uid_t kNobody = 65534;

ToolResult apply(const QStringList& args, std::optional<uid_t> asUser = std::nullopt) {
    QProcess p;
    if (asUser) {
        p.setChildProcessModifier([uid = *asUser] {
            if (::setgroups(0, nullptr) != 0 || ::setgid(uid) != 0 || ::setuid(uid) != 0)
                ::_exit(99);
        });
    }
    p.start(QStringLiteral(TAGMOOR_CLI), cliArgs(QStringList{"apply"} + args));
    return finishTool(p);
}

// Whether the tests can run the command line as an ordinary user: they must be root to switch
// users, and the build tree must be open to that user (a checkout in a private folder is not).
bool canRunAsNobody() {
    static const bool can = ::geteuid() == 0 && apply({"--help"}, kNobody).exitCode == 0;
    return can;
}

// Whether the command said `text` on stderr.
bool said(const ToolResult& r, const QString& text) {
    return QString::fromUtf8(r.err).contains(text);
}

bool hasArtist(const QString& path) {
    return tagOf(path, "Exif.Image.Artist") == "Jane";
}

mode_t modeOf(const QString& path) {
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_mode & 07777 : 0;
}

QStringList reportedPaths(const BatchResult& r) {
    QStringList paths;
    for (const PhotoProblem& p : r.problems)
        paths << p.path;
    return paths;
}

class Safety : public ::testing::Test {
protected:
    void SetUp() override {
        // Deep enough that a name climbing out of the output folder still lands in the root.
        ASSERT_TRUE(QDir().mkpath(in()));
        ::chmod(QFile::encodeName(tmp.path()).constData(), 0755);
    }
    QString root() const { return tmp.path(); }
    QString in() const { return tmp.path() + "/a/b/in"; }
    QString out() const { return tmp.path() + "/a/b/out"; }
    QString photo(const QString& name, const QString& dir = {}) {
        return copySample(formatsDir() + "/Reagan.jpg", dir.isEmpty() ? in() : dir, name);
    }
    static QString inFolder(const QString& folder, const QString& source) {
        return folder + "/" + QFileInfo(source).fileName();
    }

    QTemporaryDir tmp;
};

} // namespace

// An output folder that is the source folder reached another way (a link to it, a bind
// mount of it, or sources named through a linked folder) is the source itself: with
// --overwrite each photo is edited in place, never removed and copied.
TEST_F(Safety, AliasedFoldersEditInPlaceAndNeverDeleteASource) {
    const QString link = root() + "/a/link";
    ASSERT_EQ(::symlink(QFile::encodeName(in()).constData(), QFile::encodeName(link).constData()),
              0);
    const QStringList photos = {photo("p1.jpg"), photo("p2.jpg")};
    const auto same = [&](const QString& s) { return s; };

    QList<QPair<QString, QStringList>> runs = {
        {"output through a link", {"--out", link, "--overwrite", in()}},
        {"sources through a link", {"--out", in(), "--overwrite", link + "/p1.jpg", link}},
    };
    const QString mountPoint = root() + "/a/mnt";
    bool mounted = false;
    if (::geteuid() == 0) {
        QDir().mkpath(mountPoint);
        mounted =
            ::mount(QFile::encodeName(in()).constData(), QFile::encodeName(mountPoint).constData(),
                    nullptr, MS_BIND, nullptr) == 0;
    }
    if (mounted)
        runs.append({"output through a bind mount", {"--out", mountPoint, "--overwrite", in()}});
    else
        std::cout << "[ SKIPPED  ] bind mount: needs root and mount rights\n";

    for (const auto& [what, args] : runs) {
        SCOPED_TRACE(what.toStdString());
        for (const QString& p : photos)
            photo(QFileInfo(p).fileName());
        RunInvariants check(root(), {in()}, photos, hasArtist);
        const ToolResult r = apply(QStringList{"--set", "Artist=Jane"} + args);
        EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_TRUE(r.out.contains("Batch Process Completed!"));
        check.checkAgainstStderr(same, r.err);
        for (const QString& p : photos)
            EXPECT_TRUE(hasArtist(p));
        EXPECT_EQ(fileNames(in()), (QStringList{"p1.jpg", "p2.jpg"}));
    }
    if (mounted)
        ::umount(QFile::encodeName(mountPoint).constData());

    // Without --overwrite the aliased output is in the way: skipped, reported, untouched.
    for (const QString& p : photos)
        photo(QFileInfo(p).fileName());
    RunInvariants check(root(), {in()}, photos, hasArtist);
    const ToolResult r = apply({"--set", "Artist=Jane", "--out", link, in()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("a file exists at the output path"));
    check.checkAgainstStderr(same, r.err);
}

// A generated name is one file name. The command line refuses a text with "/" before any
// file is touched; the pipeline refuses any name that would make or leave a folder, or be
// "." or "..", as a second guard.
TEST_F(Safety, NamesThatClimbAreRefused) {
    const QString p = photo("img.jpg");
    const auto before = folderChecksums(root());
    for (const char* rule : {"add-before:../", "add-after:/x", "replace:img=../../img",
                             "replace:a/b=c", "index:text=../up", "date:text=x/y,after"}) {
        const ToolResult r = apply({"--rename", rule, "--out", out(), "--overwrite", in()});
        EXPECT_EQ(r.exitCode, 2) << rule;
        EXPECT_TRUE(r.err.contains("cannot hold '/'")) << r.err.toStdString();
    }
    EXPECT_EQ(folderChecksums(root()), before);

    // Rules handed to the pipeline directly, as a panel might; the second source has no
    // extension, so that an emptied name gives "." and a name of "." gives "..".
    const QString bare = copySample(p, in(), "img");
    const QStringList sources = {p, bare};
    for (const auto& [find, replacement] : QList<QPair<QString, QString>>{
             {"img", "../../../escaped"}, {"img", "/tmp/escaped"}, {"img", ""}, {"img", "."}}) {
        SCOPED_TRACE(replacement.toStdString());
        for (const bool inPlace : {false, true}) {
            RunValues v = editRun(ProcessingMode::keepUnedited,
                                  inPlace ? std::nullopt : std::optional(out()));
            edit(v, "Artist", "Jane");
            v.overwriteExisting = true;
            v.renameSettings = ReplaceText{find, replacement};
            ASSERT_TRUE(refusedRenameText(v.renameSettings).has_value() ==
                        replacement.contains('/'));
            QDir().mkpath(out());
            RunInvariants check(root(), {out(), in()}, sources, hasArtist);
            const BatchResult r = runBatch(v, recordsOf(sources));
            const QStringList reported = reportedPaths(r);
            check.check(
                [&](const QString&) {
                    return (inPlace ? in() : out()) + "/" + replacement + ".jpg";
                },
                reported);
            // Names with "/" and the bare "." and ".." are refused; ".jpg" and "..jpg" are
            // file names.
            EXPECT_EQ(reported.contains(bare), true);
            EXPECT_EQ(reported.contains(p), replacement.contains('/'));
        }
    }
    EXPECT_FALSE(QFileInfo::exists("/tmp/escaped.jpg"));
}

// In place, a rename onto the name of another photo of the same run never replaces that
// photo, even with --overwrite: the photo whose name is taken is skipped and reported.
TEST_F(Safety, ARunNeverOverwritesItsOwnSources) {
    const QStringList photos = {photo("a.jpg"), photo("b.jpg")};
    RunInvariants check(root(), {in()}, photos, hasArtist);
    const ToolResult r = apply({"--set", "Artist=Jane", "--rename", "replace:a=b", "--in-place",
                                "--overwrite", photos[0], photos[1]});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.contains("Images Processed: 1"));
    EXPECT_TRUE(said(r, photos[0] + ": skipped: another photo of this batch"))
        << r.err.toStdString();
    check.checkAgainstStderr([&](const QString&) { return in() + "/b.jpg"; }, r.err);
    EXPECT_TRUE(hasArtist(photos[1]));
    EXPECT_FALSE(hasArtist(photos[0]));

    // The same with an output folder that holds a photo of the run.
    QDir().mkpath(out());
    photo("a.jpg", out());
    const QStringList both = {photo("a.jpg"), out() + "/a.jpg"};
    RunInvariants again(root(), {out()}, both, hasArtist);
    const ToolResult o =
        apply({"--set", "Artist=Jane", "--out", out(), "--overwrite", both[0], both[1]});
    EXPECT_TRUE(said(o, both[0] + ": skipped: another photo of this batch"));
    again.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, o.err);
}

// A read-only source copied to an output folder by an ordinary user: the copy is ours and
// gets its owner's write bit, so the edit lands. In place a read-only photo is left as it is,
// still read-only, and reported, for root too.
TEST_F(Safety, ReadOnlySourcesAreCopiedWithTheEditAndLeftAloneInPlace) {
    const QString p = photo("ro.jpg");
    ASSERT_EQ(::chmod(QFile::encodeName(p).constData(), 0444), 0);
    for (const char* dir : {"/a", "/a/b", "/a/b/in"})
        ::chmod(QFile::encodeName(root() + dir).constData(), 0755);
    QDir().mkpath(out());
    ::chmod(QFile::encodeName(out()).constData(), 0777);

    if (canRunAsNobody()) {
        RunInvariants check(root(), {out()}, {p}, hasArtist);
        const ToolResult r = apply({"--set", "Artist=Jane", "--out", out(), in()}, kNobody);
        ASSERT_NE(r.exitCode, 99) << "could not become an ordinary user";
        EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
        check.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, r.err);
        EXPECT_TRUE(hasArtist(out() + "/ro.jpg"));
        EXPECT_EQ(modeOf(out() + "/ro.jpg"), 0644u);
    } else {
        std::cout << "[ SKIPPED  ] copy as an ordinary user: needs root to switch users and a "
                     "build tree that user can reach\n";
    }

    for (const std::optional<uid_t> user : {std::optional<uid_t>(), std::optional(kNobody)}) {
        if (user && !canRunAsNobody())
            continue;
        RunInvariants check(root(), {in()}, {p}, hasArtist);
        const ToolResult r = apply({"--set", "Artist=Jane", "--in-place", p}, user);
        EXPECT_EQ(r.exitCode, 1);
        EXPECT_TRUE(r.out.contains("Images Processed: 1"));
        EXPECT_TRUE(said(r, p + ": no permission")) << r.err.toStdString();
        check.checkAgainstStderr([](const QString& s) { return s; }, r.err);
        EXPECT_EQ(modeOf(p), 0444u);
        EXPECT_FALSE(hasArtist(p));
    }
}

// A name that is not valid UTF-8 is told, by the walk, the command line and the scan alike;
// the other photos go on.
TEST_F(Safety, NamesThatAreNotUtf8AreLeftOutAloud) {
    const QString good = photo("good.jpg");
    const QByteArray latin1 = QFile::encodeName(in()) + "/caf\xe9.jpg";
    const QByteArray jpeg = readBytes(good);
    const int fd = ::open(latin1.constData(), O_CREAT | O_WRONLY, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, jpeg.constData(), size_t(jpeg.size())), jpeg.size());
    ::close(fd);
    ASSERT_EQ(::mkdir((QFile::encodeName(in()) + "/d\xe9j\xe0").constData(), 0755), 0);

    const FolderWalkResult walk = walkFolder(in());
    EXPECT_EQ(walk.files, QStringList{good});
    ASSERT_EQ(walk.leftOut.size(), 2);
    EXPECT_EQ(walk.leftOut[0].path, in() + "/caf\\xe9.jpg");
    EXPECT_EQ(walk.leftOut[1].path, in() + "/d\\xe9j\\xe0");
    EXPECT_TRUE(walk.leftOut[1].isFolder);
    EXPECT_EQ(displayFileName("\xc3\xa9t\xe9\xff"), QString::fromUtf8("\xc3\xa9t\\xe9\\xff"));

    RunInvariants check(root(), {out()}, {good}, hasArtist);
    const ToolResult r = apply({"--set", "Artist=Jane", "--out", out(), in()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("caf\\xe9.jpg: left out: the file name is not valid UTF-8"))
        << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Batch Process Completed!"));
    check.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, r.err);
    EXPECT_EQ(fileNames(out()), QStringList{"good.jpg"});
    struct stat st {};
    ASSERT_EQ(::stat(latin1.constData(), &st), 0);
    EXPECT_EQ(qint64(st.st_size), jpeg.size());

    ScanFixture scan;
    scan.stage({in()});
    ASSERT_TRUE(scan.scan());
    EXPECT_EQ(scan.listedPaths(), QStringList{good});
    EXPECT_EQ(scan.controller.lastResult().leftOut, walk.leftOut);

    ::unlink(latin1.constData());
    ::rmdir((QFile::encodeName(in()) + "/d\xe9j\xe0").constData());

    // A folder closed to the user is told as well.
    if (!canRunAsNobody()) {
        std::cout << "[ SKIPPED  ] closed folder: needs root to switch users and a build tree "
                     "that user can reach\n";
        return;
    }
    QDir().mkpath(in() + "/closed");
    photo("shut.jpg", in() + "/closed");
    for (const char* dir : {"/a", "/a/b", "/a/b/in"})
        ::chmod(QFile::encodeName(root() + dir).constData(), 0755);
    ::chmod(QFile::encodeName(in() + "/closed").constData(), 0700);
    const ToolResult shut = apply({"--dry-run", "--out", out(), in()}, kNobody);
    EXPECT_EQ(shut.exitCode, 1);
    EXPECT_TRUE(said(shut, in() + "/closed: left out: the folder cannot be read"))
        << shut.err.toStdString();
}

namespace {

// Puts something else in a photo's place as its file work is about to start.
class SwapOnStart : public BatchObserver {
public:
    explicit SwapOnStart(std::function<void(const QString&)> swap) : m_swap(std::move(swap)) {}
    void photoStarted(const PhotoPlan& plan) override { m_swap(plan.sourcePath); }

private:
    std::function<void(const QString&)> m_swap;
};

} // namespace

// Between the scan and the write a photo is replaced by a PostScript file, a video or a
// named pipe under its name: the run neither crashes nor hangs, nothing of that reaches
// Exiv2, and each is reported.
TEST_F(Safety, SwappedFilesAreTestedAgainAndNeverHangOrCrash) {
    const QByteArray eps = "\xC5\xD0\xD3\xC6\x20\x00\x00\x00\x10\x00\x00\x00\x00\x00\x00\x00"
                           "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n";
    const QByteArray video = QByteArray("\0\0\0\x18"
                                        "ftypmp42\0\0\0\0mp42isom",
                                        24) +
                             QByteArray(4096, '\1');
    for (const bool inPlace : {true, false}) {
        SCOPED_TRACE(inPlace ? "in place" : "to an output folder");
        const QStringList photos = {photo("eps.jpg"), photo("video.jpg"), photo("pipe.jpg"),
                                    photo("kept.jpg")};
        QDir().mkpath(out());
        RunValues v =
            editRun(ProcessingMode::keepUnedited, inPlace ? std::nullopt : std::optional(out()));
        edit(v, "Artist", "Jane");
        v.overwriteExisting = true;
        // The pipe is left out of the byte checks: reading it would wait for a writer.
        RunInvariants check(root(), {inPlace ? in() : out()}, {photos[0], photos[1], photos[3]},
                            hasArtist);
        SwapOnStart swap([&](const QString& path) {
            if (path.endsWith("eps.jpg")) {
                writeBytes(path, eps);
                check.replacedDuringRun(path, eps);
            } else if (path.endsWith("video.jpg")) {
                writeBytes(path, video);
                check.replacedDuringRun(path, video);
            } else if (path.endsWith("pipe.jpg")) {
                QFile::remove(path);
                ::mkfifo(QFile::encodeName(path).constData(), 0644);
            }
        });
        RenameNumbering numbering;
        auto run = std::async(std::launch::async,
                              [&] { return runBatch(v, recordsOf(photos), numbering, 1, &swap); });
        ASSERT_EQ(run.wait_for(std::chrono::seconds(60)), std::future_status::ready) << "hung";
        const BatchResult r = run.get();
        const QStringList reported = reportedPaths(r);
        check.check([&](const QString& s) { return inPlace ? s : inFolder(out(), s); }, reported);
        EXPECT_EQ(reported, photos.mid(0, 3));
        for (const PhotoProblem& p : r.problems)
            EXPECT_TRUE(p.reason.contains("not a photo any more") ||
                        p.reason.contains("not a regular file"))
                << p.reason.toStdString();
        if (!inPlace) {
            EXPECT_FALSE(QFileInfo(out() + "/pipe.jpg").exists());
        }
        QFile::remove(in() + "/pipe.jpg");
        QDir(out()).removeRecursively();
    }
}

// Photos that do not get the edit are listed with their reason, while the counts stay those
// of the result screen: a full disk (a small tmpfs, as root), formats that Exiv2 cannot
// write or that drop what was asked.
TEST_F(Safety, EveryPhotoThatDidNotGetTheEditIsReported) {
    const QStringList unwritable = {
        copySample(formatsDir() + "/et-FujiFilm.raf", in()),
        copySample(formatsDir() + "/et-Minolta.mrw", in()),
        copySample(formatsDir() + "/et-Sigma.x3f", in()),
        copySample(formatsDir() + "/exiv2-canon-powershot-s40.crw", in())};
    const QString fine = photo("fine.jpg");
    const QStringList all = unwritable + QStringList{fine};
    RunInvariants check(root(), {out()}, all, [](const QString& path) {
        return tagOf(path, "Iptc.Application2.City") == "Paris";
    });
    const ToolResult r = apply({"--set", "Iptc.Application2.City=Paris", "--out", out(), in()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.contains("Images Processed: 5")); // the copies exist
    EXPECT_EQ(r.err.count("format not writable"), unwritable.size()) << r.err.toStdString();
    check.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, r.err);

    // Exiv2 drops a tag that does not fit a JPEG's Exif segment without a word.
    RunValues big = editRun(ProcessingMode::keepUnedited, out());
    big.overwriteExisting = true;
    edit(big, "Artist", QString(70000, 'x'));
    const BatchResult dropped = runBatch(big, recordsOf({fine}));
    ASSERT_EQ(dropped.problems.size(), 1);
    EXPECT_TRUE(dropped.problems[0].reason.contains("did not keep Exif.Image.Artist"));

    if (::geteuid() != 0) {
        std::cout << "[ SKIPPED  ] full disk: needs root to mount a tmpfs\n";
        return;
    }
    const QString small = root() + "/a/b/small";
    QDir().mkpath(small);
    if (::mount("tmpfs", QFile::encodeName(small).constData(), "tmpfs", 0, "size=200k") != 0) {
        std::cout << "[ SKIPPED  ] full disk: mounting a tmpfs failed\n";
        return;
    }
    QStringList photos;
    QDir().mkpath(root() + "/a/b/many");
    for (int i = 0; i < 12; ++i)
        photos << photo(QStringLiteral("p%1.jpg").arg(i), root() + "/a/b/many");
    RunInvariants full(root(), {small}, photos, hasArtist);
    const ToolResult f =
        apply({"--set", "Artist=Jane", "--out", small, "--threads", "2", root() + "/a/b/many"});
    EXPECT_EQ(f.exitCode, 1);
    EXPECT_TRUE(f.err.contains("disk full")) << f.err.toStdString();
    full.checkAgainstStderr([&](const QString& s) { return inFolder(small, s); }, f.err);
    // The count is of the outputs that exist, edited or not.
    const int outputs = int(fileNames(small).filter(QRegularExpression("^p\\d+\\.jpg$")).size());
    EXPECT_TRUE(f.out.contains(QStringLiteral("Images Processed: %1").arg(outputs).toUtf8()));
    ::umount(QFile::encodeName(small).constData());
}

// A batch killed while writing into an output folder leaves nothing there: its copies have no
// name until they are complete. Hidden files that a killed writer left (one without files of
// no name, say) are removed by the next run there, but those of a process that still lives.
TEST_F(Safety, LeftoversOfAKilledRunAreRemovedByTheNextRunThere) {
    const QStringList photos = {photo("p1.jpg"), photo("p2.jpg")};
    QDir().mkpath(out());
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        test::setWriteFaultHook([](SafeFileReplace::Step step) {
            if (step == SafeFileReplace::Step::Write)
                ::raise(SIGKILL);
            return 0;
        });
        RunValues v = editRun(ProcessingMode::keepUnedited, out());
        edit(v, "Artist", "Jane");
        runBatch(v, recordsOf(photos));
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(QDir(out()).entryList(QDir::Files | QDir::Hidden), QStringList());
    writeBytes(out() + QStringLiteral("/.tagmoor-%1-abcdef.tmp").arg(child), "x");
    // One of a process that lives (this one) must stay.
    const QString live = QStringLiteral("/.tagmoor-%1-abcdef.tmp").arg(::getpid());
    writeBytes(out() + live, "x");

    RunInvariants check(root(), {out()}, photos, hasArtist);
    const ToolResult r = apply({"--set", "Artist=Jane", "--out", out(), in()});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    check.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, r.err);
    EXPECT_EQ(fileNames(out()), (QStringList{live.mid(1), "p1.jpg", "p2.jpg"}));
}

// A copy takes its name only while the name is free: a file put there while the copy was
// being written stays as it is, and is named. A photo reached through a link is copied like
// any other, the link and its file left as they are.
TEST_F(Safety, ACopyNeverTakesTheNameOfAFilePutThereMeanwhile) {
    const QString linked = photo("real.jpg", root() + "/a");
    const QByteArray linkedBytes = readBytes(linked);
    ASSERT_TRUE(QFile::link(linked, in() + "/linked.jpg"));
    const QStringList photos = {photo("p1.jpg"), in() + "/linked.jpg"};
    const QString theirs = out() + "/p1.jpg";
    QDir().mkpath(out());
    test::setWriteFaultHook([&](SafeFileReplace::Step step) {
        if (step == SafeFileReplace::Step::Verify && !QFileInfo::exists(theirs))
            writeBytes(theirs, "not ours");
        return 0;
    });
    const auto unhook = qScopeGuard([] { test::setWriteFaultHook({}); });
    RunValues v = editRun(ProcessingMode::keepUnedited, out());
    edit(v, "Artist", "Jane");
    const BatchResult r = runBatch(v, recordsOf(photos));
    EXPECT_EQ(readBytes(theirs), QByteArray("not ours"));
    EXPECT_EQ(reportedPaths(r), QStringList{photos[0]});
    EXPECT_TRUE(hasArtist(out() + "/linked.jpg"));
    EXPECT_TRUE(readBytes(linked) == linkedBytes);
    EXPECT_TRUE(QFileInfo(in() + "/linked.jpg").isSymLink());
    EXPECT_EQ(fileNames(out()), (QStringList{"linked.jpg", "p1.jpg"}));
}

// A file that gives no record is no photo of the run: named on stderr, not counted.
TEST_F(Safety, ANonPhotoIsNoPhotoOfTheBatch) {
    const QString p = photo("real.jpg");
    const QString text = in() + "/notes.jpg";
    writeBytes(text, "just some text");
    RunInvariants check(root(), {out()}, {p}, hasArtist);
    const ToolResult r = apply({"--set", "Artist=Jane", "--out", out(), in()});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Batch Process Completed!"));
    EXPECT_TRUE(r.out.contains("Batch Count: 1"));
    EXPECT_TRUE(said(r, text + ": not a photo")) << r.err.toStdString();
    check.checkAgainstStderr([&](const QString& s) { return inFolder(out(), s); }, r.err);
    EXPECT_EQ(fileNames(out()), QStringList{"real.jpg"});
}

// Date names with a custom text made in one burst: every photo gets a name of its own.
TEST_F(Safety, DateNamesOfOneRunAreDistinct) {
    QStringList photos;
    for (int i = 0; i < 6; ++i)
        photos << photo(QStringLiteral("p%1.jpg").arg(i));
    RunValues v = editRun(ProcessingMode::keepUnedited, out());
    ChangeFileNameFormat dated;
    dated.nameFormatNF = NameFormat::nameAndDate();
    dated.customFormatValueNF = "trip";
    v.renameSettings = dated;
    const PhotoPipeline pipeline(v);
    QSet<QString> names;
    for (int i = 0; i < 200; ++i)
        names << pipeline.plan(recordOf(photos[0]), 1, 1, i).finalPath;
    EXPECT_EQ(names.size(), 200);

    QDir().mkpath(out());
    const BatchResult r = runBatch(v, recordsOf(photos));
    EXPECT_EQ(r.totalProcessedPhotos, photos.size());
    EXPECT_TRUE(r.problems.isEmpty());
    EXPECT_EQ(fileNames(out()).size(), photos.size());
}
