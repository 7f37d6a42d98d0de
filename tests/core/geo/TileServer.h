#pragma once
// A tile server on the loopback interface for tests: answers every GET with the same PNG and
// headers that let a cache keep it for a day, and counts what it was asked.

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSet>
#include <QStringList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace tagmoor::test {

class TileServer : public QObject {
public:
    TileServer() {
        QImage tile(256, 256, QImage::Format_RGB32);
        tile.fill(QColor(170, 211, 223));
        for (int i = 0; i < 256; ++i)
            tile.setPixelColor(i, i, QColor(242, 239, 233));
        QBuffer buffer(&m_png);
        buffer.open(QIODevice::WriteOnly);
        tile.save(&buffer, "PNG");
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = m_server.nextPendingConnection()) {
                m_open.insert(socket);
                m_maxOpen = std::max(m_maxOpen, int(m_open.size()));
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { serve(socket); });
                connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
                    m_open.remove(socket);
                    socket->deleteLater();
                });
            }
        });
    }

    // The connections close with the server, after the members they report to are gone.
    ~TileServer() override {
        for (QTcpSocket* socket : m_server.findChildren<QTcpSocket*>())
            socket->disconnect(this);
    }

    // Makes each tile's PNG from its address instead of the one plain tile.
    void setTileMaker(std::function<QByteArray(int zoom, int x, int y)> maker) {
        m_maker = std::move(maker);
    }

    // Answers a tile with the status this gives (200: the tile), the body then a short text.
    void setStatusMaker(std::function<int(int zoom, int x, int y)> maker) {
        m_status = std::move(maker);
    }

    QString urlTemplate() const {
        return QStringLiteral("http://127.0.0.1:%1/{z}/{x}/{y}.png").arg(m_server.serverPort());
    }
    int requests() const { return int(m_paths.size()); }
    const QStringList& paths() const { return m_paths; }
    QByteArray userAgent() const { return m_userAgent; }
    int maxOpenConnections() const { return m_maxOpen; }
    void close() { m_server.close(); }

private:
    void serve(QTcpSocket* socket) {
        QByteArray& pending = m_input[socket];
        pending += socket->readAll();
        qsizetype end;
        while ((end = pending.indexOf("\r\n\r\n")) >= 0) {
            const QByteArray head = pending.left(end);
            pending.remove(0, end + 4);
            const QList<QByteArray> lines = head.split('\n');
            const QString path = QString::fromLatin1(lines.first().split(' ').value(1));
            m_paths.append(path);
            for (const QByteArray& line : lines) {
                if (line.toLower().startsWith("user-agent:"))
                    m_userAgent = line.mid(11).trimmed();
            }
            QByteArray png = m_png;
            const QStringList parts = path.section(QLatin1Char('.'), 0, 0).split(QLatin1Char('/'));
            const int status = m_status && parts.size() == 4
                                   ? m_status(parts[1].toInt(), parts[2].toInt(), parts[3].toInt())
                                   : 200;
            if (status != 200) {
                const QByteArray body = "no tile here";
                socket->write("HTTP/1.1 " + QByteArray::number(status) +
                              " Error\r\nContent-Type: text/plain\r\nContent-Length: " +
                              QByteArray::number(body.size()) + "\r\n\r\n" + body);
                continue;
            }
            if (m_maker && parts.size() == 4)
                png = m_maker(parts[1].toInt(), parts[2].toInt(), parts[3].toInt());
            QByteArray reply = "HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n"
                               "Cache-Control: public, max-age=86400\r\nContent-Length: " +
                               QByteArray::number(png.size()) + "\r\n\r\n" + png;
            socket->write(reply);
        }
    }

    QTcpServer m_server;
    QByteArray m_png;
    std::function<QByteArray(int, int, int)> m_maker;
    std::function<int(int, int, int)> m_status;
    QHash<QTcpSocket*, QByteArray> m_input;
    QSet<QTcpSocket*> m_open;
    QStringList m_paths;
    QByteArray m_userAgent;
    int m_maxOpen = 0;
};

} // namespace tagmoor::test
