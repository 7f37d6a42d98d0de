#pragma once

#include <QObject>
#include <QStringList>

class QLocalServer;

namespace tagmoor {

// Hands the paths of a second launch to the running instance through a local socket whose
// name is per user. The first instance listens; a later one forwards and exits.
class InstanceChannel : public QObject {
    Q_OBJECT
public:
    // `name` empty: the per-user default.
    explicit InstanceChannel(QString name = {}, QObject* parent = nullptr);
    ~InstanceChannel() override;

    static QString defaultName();
    const QString& name() const { return m_name; }

    // Sends the paths to a running instance; false when none answers within the timeout.
    bool forward(const QStringList& paths, int timeoutMs = 2000) const;
    // Starts listening (removing a stale socket first); false on failure.
    bool listen();
    bool isListening() const;

signals:
    void filesReceived(const QStringList& paths);

private:
    void onNewConnection();
    QString m_name;
    QLocalServer* m_server = nullptr;
};

} // namespace tagmoor
