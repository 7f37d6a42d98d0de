#include "shell/InstanceChannel.h"

#include "shell/ShellLog.h"

#include <QDataStream>
#include <QLocalServer>
#include <QLocalSocket>

#include <unistd.h>

namespace tagmoor {

namespace {
// A message is a QDataStream of one QStringList, preceded by its byte length (quint32).
constexpr quint32 maxMessageBytes = 16 * 1024 * 1024;
} // namespace

InstanceChannel::InstanceChannel(QString name, QObject* parent)
    : QObject(parent), m_name(name.isEmpty() ? defaultName() : std::move(name)) {}

InstanceChannel::~InstanceChannel() = default;

QString InstanceChannel::defaultName() {
    return QStringLiteral("tagmoor-%1").arg(::getuid());
}

bool InstanceChannel::forward(const QStringList& paths, int timeoutMs) const {
    QLocalSocket socket;
    socket.connectToServer(m_name);
    if (!socket.waitForConnected(timeoutMs))
        return false;
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
    // A running instance answers on the name; then this one must not take it over.
    {
        QLocalSocket probe;
        probe.connectToServer(m_name);
        if (probe.waitForConnected(200)) {
            probe.abort();
            return false;
        }
    }
    // Nobody answers: a socket left by a crashed instance can go.
    QLocalServer::removeServer(m_name);
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
