#include "shell/InstanceChannel.h"

#include "shell/ShellLog.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tagmoor {

namespace {
// A message is a QDataStream of one QStringList, preceded by its byte length (quint32).
constexpr quint32 maxMessageBytes = 16 * 1024 * 1024;

QByteArray native(const QString& path) {
    return QFile::encodeName(path);
}

// A folder that is a real folder (not a link), owned by this user, that no one else may
// enter or change.
bool isOwnClosedFolder(const QString& path, struct stat* st) {
    return ::lstat(native(path).constData(), st) == 0 && S_ISDIR(st->st_mode) &&
           st->st_uid == ::getuid() && (st->st_mode & 077) == 0;
}

// The user id at the other end of a connected local socket.
std::optional<uid_t> peerUid(const QLocalSocket& socket) {
    struct ucred cred {};
    socklen_t size = sizeof cred;
    if (::getsockopt(int(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &cred, &size) != 0)
        return std::nullopt;
    return cred.uid;
}

bool peerIsThisUser(const QLocalSocket& socket) {
    const std::optional<uid_t> uid = peerUid(socket);
    return uid && *uid == ::getuid();
}

QString kindOf(mode_t mode) {
    if (S_ISREG(mode))
        return QStringLiteral("a file");
    if (S_ISDIR(mode))
        return QStringLiteral("a folder");
    if (S_ISLNK(mode))
        return QStringLiteral("a link");
    if (S_ISFIFO(mode))
        return QStringLiteral("a named pipe");
    if (S_ISSOCK(mode))
        return QStringLiteral("a socket");
    return QStringLiteral("a device");
}

} // namespace

InstanceChannel::InstanceChannel(QString name, QObject* parent)
    : QObject(parent), m_name(name.isEmpty() ? defaultName() : std::move(name)),
      m_ownFolder(QDir::isAbsolutePath(m_name)),
      m_path(m_ownFolder ? m_name : QDir::tempPath() + QLatin1Char('/') + m_name) {}

InstanceChannel::~InstanceChannel() = default;

QString InstanceChannel::privateFolder() {
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    struct stat st {};
    if (QDir::isAbsolutePath(runtime) && isOwnClosedFolder(runtime, &st))
        return QDir::cleanPath(runtime) + QStringLiteral("/tagmoor");
    return QDir::cleanPath(QDir::tempPath()) + QStringLiteral("/tagmoor-%1").arg(::getuid());
}

QString InstanceChannel::defaultName() {
    return privateFolder() + QStringLiteral("/instance");
}

bool InstanceChannel::folderIsOurs() const {
    if (!m_ownFolder)
        return true;
    const QString folder = QFileInfo(m_name).absolutePath();
    // Made closed from the start, so that no one can slip anything in before it is checked.
    if (::mkdir(native(folder).constData(), 0700) != 0 && errno != EEXIST) {
        m_problem = QStringLiteral("The folder %1 for the channel between launches cannot be "
                                   "made: %2")
                        .arg(folder, QString::fromLocal8Bit(std::strerror(errno)));
        return false;
    }
    struct stat st {};
    if (isOwnClosedFolder(folder, &st))
        return true;
    if (::lstat(native(folder).constData(), &st) == 0 && S_ISDIR(st.st_mode) &&
        st.st_uid == ::getuid() && ::chmod(native(folder).constData(), 0700) == 0 &&
        isOwnClosedFolder(folder, &st))
        return true; // ours, but left open to others: closed now
    m_blockedPath = folder;
    m_problem = QStringLiteral("%1 is not a folder of this user's own; another user may have "
                               "made it. Tagmoor does not use it, and runs without handing "
                               "files between its launches.")
                    .arg(folder);
    return false;
}

bool InstanceChannel::forward(const QStringList& paths, int timeoutMs) const {
    if (!folderIsOurs()) {
        qCWarning(lcShell).noquote() << m_problem;
        return false;
    }
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(timeoutMs))
        return false;
    if (!peerIsThisUser(socket)) {
        m_problem = QStringLiteral("The socket %1 is held by another user; nothing was sent "
                                   "to it.")
                        .arg(m_name);
        qCWarning(lcShell).noquote() << m_problem;
        socket.abort();
        return false;
    }
    QByteArray body;
    {
        QDataStream out(&body, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_6_4);
        out << paths;
    }
    QByteArray message;
    {
        QDataStream out(&message, QIODevice::WriteOnly);
        out << quint32(body.size());
    }
    message += body;
    socket.write(message);
    while (socket.bytesToWrite() > 0) {
        if (!socket.waitForBytesWritten(timeoutMs))
            return false;
    }
    // Wait for the one-byte acknowledgement so the paths are known to have arrived.
    if (!socket.waitForReadyRead(timeoutMs))
        return false;
    socket.disconnectFromServer();
    return true;
}

bool InstanceChannel::listen() {
    if (m_server)
        return m_server->isListening();
    if (!folderIsOurs()) {
        qCWarning(lcShell).noquote() << m_problem;
        return false;
    }
    // A running instance answers on the name; then this one must not take it over.
    {
        QLocalSocket probe;
        probe.connectToServer(m_name);
        if (probe.waitForConnected(200)) {
            probe.abort();
            return false;
        }
    }
    // Nobody answers: a socket of ours left by a crashed instance can go. Anything else in
    // the way is reported and left alone.
    struct stat st {};
    if (::lstat(native(m_path).constData(), &st) == 0) {
        if (!S_ISSOCK(st.st_mode) || st.st_uid != ::getuid()) {
            m_blockedPath = m_path;
            m_problem = QStringLiteral("%1 stands where Tagmoor's socket belongs (%2); it is "
                                       "left as it is, and Tagmoor runs without handing files "
                                       "between its launches.")
                            .arg(kindOf(st.st_mode), m_path);
            qCWarning(lcShell).noquote() << m_problem;
            return false;
        }
        ::unlink(native(m_path).constData());
    }
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(m_name)) {
        qCWarning(lcShell) << "Cannot listen for other launches:" << m_server->errorString();
        delete m_server;
        m_server = nullptr;
        return false;
    }
    connect(m_server, &QLocalServer::newConnection, this, &InstanceChannel::onNewConnection);
    return true;
}

bool InstanceChannel::isListening() const {
    return m_server && m_server->isListening();
}

void InstanceChannel::onNewConnection() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (!peerIsThisUser(*socket)) {
            qCWarning(lcShell) << "Refused a connection from another user";
            socket->abort();
            socket->deleteLater();
            continue;
        }
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->bytesAvailable() < qint64(sizeof(quint32)))
                return;
            quint32 size = 0;
            {
                QDataStream in(socket->peek(sizeof(quint32)));
                in >> size;
            }
            if (size > maxMessageBytes) {
                qCWarning(lcShell) << "Ignoring an oversized message from another launch";
                socket->abort();
                return;
            }
            if (socket->bytesAvailable() < qint64(sizeof(quint32) + size))
                return;
            socket->read(sizeof(quint32));
            QDataStream in(socket->read(size));
            in.setVersion(QDataStream::Qt_6_4);
            QStringList paths;
            in >> paths;
            socket->write("k", 1);
            socket->flush();
            if (in.status() == QDataStream::Ok)
                emit filesReceived(paths);
            else
                qCWarning(lcShell) << "Ignoring an unreadable message from another launch";
        });
    }
}

} // namespace tagmoor

// The meta-object code goes with this file rather than with every class of the library, so
// that a program that does not use the class links neither it nor what it needs.
#include "moc_InstanceChannel.cpp"
