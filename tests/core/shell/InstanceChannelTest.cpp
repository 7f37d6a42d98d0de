// The channel between launches: where its socket lies, and that no other user can take it.
#include "shell/InstanceChannel.h"
#include "TestSupport.h"
#include "shell/ApplicationShell.h"
#include "shell/ShellFixture.h"
#include "workingset/WaitFor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtConcurrent>

#include <cstring>

#include <grp.h>
#include <poll.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tagmoor {
namespace {

using test::ScratchConfig;

// Sets an environment variable (or unsets it, given nothing) for the life of the scope.
class EnvScope {
public:
    EnvScope(const char* name, const std::optional<QString>& value)
        : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name)) {
        if (value)
            qputenv(name, QFile::encodeName(*value));
        else
            qunsetenv(name);
    }
    ~EnvScope() {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

mode_t modeOf(const QString& path) {
    struct stat st {};
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_mode : 0;
}

// A listener of another user, in a child process that uses system calls only (it is forked
// from a process with threads): it becomes `uid`, makes the socket's folder where that is
// missing, listens on the socket's path and counts the bytes anyone sends it, answering each
// message as an instance would.
class Squatter {
public:
    Squatter(const QString& path, uid_t uid, gid_t gid) {
        const QByteArray socketPath = QFile::encodeName(path);
        const QByteArray folder = QFile::encodeName(QFileInfo(path).absolutePath());
        int report[2], stop[2];
        if (::pipe(report) != 0 || ::pipe(stop) != 0)
            return;
        m_pid = ::fork();
        if (m_pid == 0) {
            ::close(report[0]);
            ::close(stop[1]);
            run(socketPath.constData(), folder.constData(), uid, gid, report[1], stop[0]);
        }
        ::close(report[1]);
        ::close(stop[0]);
        m_report = report[0];
        m_stop = stop[1];
    }

    // Whether the child got to listen on the path.
    bool listening() {
        char state = 0;
        return readReport(&state, 1) && state == 'L';
    }

    // Stops the child; the bytes it received.
    qint64 stopAndCount() {
        ::close(m_stop);
        qint64 received = -1;
        readReport(&received, sizeof received);
        ::waitpid(m_pid, nullptr, 0);
        ::close(m_report);
        return received;
    }

private:
    bool readReport(void* into, std::size_t size) {
        pollfd fd{m_report, POLLIN, 0};
        return ::poll(&fd, 1, 10000) > 0 && ::read(m_report, into, size) == ssize_t(size);
    }

    [[noreturn]] static void run(const char* path, const char* folder, uid_t uid, gid_t gid,
                                 int report, int stop) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(gid) != 0 || ::setuid(uid) != 0)
            ::_exit(3);
        ::mkdir(folder, 0777);
        const int server = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        for (std::size_t i = 0; path[i] && i + 1 < sizeof address.sun_path; ++i)
            address.sun_path[i] = path[i];
        const bool bound =
            ::bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
            ::listen(server, 8) == 0;
        const char state = bound ? 'L' : 'F';
        if (::write(report, &state, 1) != 1)
            ::_exit(4);
        qint64 received = 0;
        while (bound) {
            pollfd fds[2] = {{server, POLLIN, 0}, {stop, POLLIN, 0}};
            if (::poll(fds, 2, 10000) <= 0 || fds[1].revents != 0)
                break;
            const int client = ::accept(server, nullptr, nullptr);
            if (client < 0)
                continue;
            pollfd in{client, POLLIN, 0};
            char buffer[4096];
            ssize_t got = 0;
            if (::poll(&in, 1, 1000) > 0 && (got = ::read(client, buffer, sizeof buffer)) > 0) {
                received += got;
                const ssize_t acknowledged = ::write(client, "k", 1);
                (void)acknowledged;
            }
            ::close(client);
        }
        if (::write(report, &received, sizeof received) != sizeof received)
            ::_exit(5);
        ::_exit(0);
    }

    pid_t m_pid = -1;
    int m_report = -1;
    int m_stop = -1;
};

// Another user on the same machine gets at the name first, in the folder a start would use:
// with $XDG_RUNTIME_DIR, and without it (the temporary folder, open to everyone). Our launch
// neither hands it a path nor gives up running.
TEST(InstanceChannel, AnotherUserNeitherReceivesOurPathsNorStopsOurStart) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "runs only as root: it listens as a second user ('nobody'), which "
                        "needs the right to change users";
    const passwd* nobody = ::getpwnam("nobody");
    if (!nobody)
        GTEST_SKIP() << "there is no user 'nobody' to listen as";
    const uid_t otherUid = nobody->pw_uid;
    const gid_t otherGid = nobody->pw_gid;

    QTemporaryDir top;
    ASSERT_EQ(::chmod(QFile::encodeName(top.path()).constData(), 0711), 0);
    const QString tmp = top.filePath("tmp");
    const QString runtime = top.filePath("run");
    ASSERT_TRUE(QDir().mkpath(tmp) && QDir().mkpath(runtime));
    ASSERT_EQ(::chmod(QFile::encodeName(tmp).constData(), 01777), 0); // as /tmp is
    ASSERT_EQ(::chmod(QFile::encodeName(runtime).constData(), 0700), 0);

    for (const bool withRuntime : {true, false}) {
        SCOPED_TRACE(withRuntime ? "with XDG_RUNTIME_DIR" : "without XDG_RUNTIME_DIR");
        EnvScope tmpdir("TMPDIR", tmp);
        EnvScope runtimeDir("XDG_RUNTIME_DIR",
                            withRuntime ? std::optional<QString>(runtime) : std::nullopt);
        const QString name = InstanceChannel::defaultName();
        const QString path = QDir::isAbsolutePath(name) ? name : QDir::tempPath() + "/" + name;

        Squatter squatter(path, otherUid, otherGid);
        const bool squatting = squatter.listening();
        ScratchConfig cfg;
        bool ranOnItsOwn = false;
        {
            ApplicationShell victim({"1.0", cfg.settingsFile(), {}, "/usr/bin/tagmoor"});
            ranOnItsOwn = victim.claimInstance({"/home/someone/private/photo.jpg"});
            if (squatting && !withRuntime) {
                EXPECT_TRUE(victim.channel().problem().contains(QFileInfo(path).absolutePath()))
                    << victim.channel().problem().toStdString();
            }
        }
        EXPECT_EQ(squatter.stopAndCount(), 0) << "the other user received our paths";
        EXPECT_TRUE(ranOnItsOwn) << "our start gave up, as if another instance had our files";

        for (const QString& folder : {tmp, runtime}) {
            for (const QFileInfo& entry : QDir(folder).entryInfoList(
                     QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System)) {
                if (entry.isDir() && !entry.isSymLink())
                    QDir(entry.filePath()).removeRecursively();
                else
                    QFile::remove(entry.filePath());
            }
        }
    }
}

// The folder of the socket: the runtime folder only when it is the user's own and closed,
// made closed, and never a link or a folder left open by someone else. Whatever stands at
// the socket's name and is not a socket of ours is reported and left alone; a stale socket
// of ours goes.
TEST(InstanceChannel, TheSocketLiesInAClosedFolderOfOurOwnAndNothingInTheWayIsUsed) {
    QTemporaryDir top;
    const QString runtime = top.filePath("run");
    const QString tmp = top.filePath("tmp");
    ASSERT_TRUE(QDir().mkpath(runtime) && QDir().mkpath(tmp));
    EnvScope tmpdir("TMPDIR", tmp);
    const QString fallback = tmp + QStringLiteral("/tagmoor-%1").arg(::getuid());

    // A runtime folder that others may enter is not used.
    ASSERT_EQ(::chmod(QFile::encodeName(runtime).constData(), 0755), 0);
    {
        EnvScope env("XDG_RUNTIME_DIR", runtime);
        EXPECT_EQ(InstanceChannel::privateFolder(), fallback);
    }
    ASSERT_EQ(::chmod(QFile::encodeName(runtime).constData(), 0700), 0);
    EnvScope env("XDG_RUNTIME_DIR", runtime);
    EXPECT_EQ(InstanceChannel::defaultName(), runtime + "/tagmoor/instance");

    {
        InstanceChannel first;
        ASSERT_TRUE(first.listen()) << first.problem().toStdString();
        EXPECT_EQ(modeOf(runtime + "/tagmoor") & 0777, 0700u);
        QStringList received;
        QObject::connect(&first, &InstanceChannel::filesReceived,
                         [&](const QStringList& paths) { received << paths; });
        QFuture<bool> sent =
            QtConcurrent::run([] { return InstanceChannel().forward({"/a.jpg"}); });
        ASSERT_TRUE(test::waitFor([&] { return sent.isFinished() && !received.isEmpty(); }));
        EXPECT_TRUE(sent.result());
        EXPECT_EQ(received, QStringList{"/a.jpg"});
    }

    // Our folder, left open: closed again before use.
    ASSERT_EQ(::chmod(QFile::encodeName(runtime + "/tagmoor").constData(), 0777), 0);
    {
        InstanceChannel again;
        EXPECT_TRUE(again.listen()) << again.problem().toStdString();
        EXPECT_EQ(modeOf(runtime + "/tagmoor") & 0777, 0700u);
    }

    // A stale socket of ours, left by a crash, goes.
    {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray path = QFile::encodeName(InstanceChannel::defaultName());
        std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
        ASSERT_EQ(::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ::close(fd);
        InstanceChannel afterCrash;
        EXPECT_TRUE(afterCrash.listen()) << afterCrash.problem().toStdString();
    }

    // A file at the name: reported, kept, and the start runs on its own.
    ASSERT_TRUE(test::writeBytes(InstanceChannel::defaultName(), "a note"));
    {
        InstanceChannel blocked;
        EXPECT_FALSE(blocked.listen());
        EXPECT_TRUE(blocked.problem().contains("a file")) << blocked.problem().toStdString();
        EXPECT_TRUE(blocked.problem().contains(InstanceChannel::defaultName()));
        EXPECT_EQ(test::readBytes(InstanceChannel::defaultName()), "a note");
        ScratchConfig cfg;
        ApplicationShell shell({"1.0", cfg.settingsFile(), {}, "/usr/bin/tagmoor"});
        EXPECT_TRUE(shell.claimInstance({"/b.jpg"}));
    }

    // A link in the folder's place is not followed, whatever it points to.
    QDir(runtime + "/tagmoor").removeRecursively();
    const QString elsewhere = top.filePath("elsewhere");
    ASSERT_TRUE(QDir().mkpath(elsewhere));
    ASSERT_EQ(::chmod(QFile::encodeName(elsewhere).constData(), 0700), 0);
    ASSERT_TRUE(QFile::link(elsewhere, runtime + "/tagmoor"));
    InstanceChannel linked;
    EXPECT_FALSE(linked.listen());
    EXPECT_FALSE(linked.forward({"/c.jpg"}, 300));
    EXPECT_TRUE(linked.problem().contains(runtime + "/tagmoor")) << linked.problem().toStdString();
    EXPECT_TRUE(QDir(elsewhere).isEmpty());
}

} // namespace
} // namespace tagmoor
