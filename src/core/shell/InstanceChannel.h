#pragma once

#include <QObject>
#include <QStringList>

class QLocalServer;

namespace tagmoor {

// Hands the paths of a second launch to the running instance through a local socket. The
// first instance listens; a later one forwards and exits.
//
// The socket lies in a folder that only this user can enter: tagmoor/ in $XDG_RUNTIME_DIR
// when that is the user's own closed folder, else tagmoor-<uid>/ in the temporary folder,
// made with mode 0700. Another user can then neither listen on the name nor put anything in
// its way; a folder or a name in the way that is not ours is reported and never used. Both
// ends check the user id of the other end of the connection before anything is sent or
// accepted.
class InstanceChannel : public QObject {
    Q_OBJECT
public:
    // `name` empty: the per-user default; an absolute path: that socket, whose folder must be
    // this user's own closed folder too. A plain name is taken as Qt takes it, in the
    // temporary folder without the folder's checks: tests run channels of their own so.
    explicit InstanceChannel(QString name = {}, QObject* parent = nullptr);
    ~InstanceChannel() override;

    // The socket of the per-user default.
    static QString defaultName();
    // The per-user folder the socket lies in.
    static QString privateFolder();
    // The socket's name as given (the path, for the default).
    const QString& name() const { return m_name; }

    // Sends the paths to a running instance of this user; false when none answers within the
    // timeout, or when the folder or the answering end is not this user's.
    bool forward(const QStringList& paths, int timeoutMs = 2000) const;
    // Starts listening (removing a stale socket of ours first); false on failure, with the
    // reason in problem() when the folder or a name in the way is not ours.
    bool listen();
    bool isListening() const;

    // Why the channel could not be used, in words; empty while nothing stood in the way.
    QString problem() const { return m_problem; }
    // The folder or name that stood in the way and is not ours; empty while none did.
    QString blockedPath() const { return m_blockedPath; }

signals:
    void filesReceived(const QStringList& paths);

private:
    // Makes the folder where it is missing and checks that it is ours and closed to others.
    bool folderIsOurs() const;
    void onNewConnection();
    QString m_name;
    bool m_ownFolder; // the folder is checked: the default, or an absolute path
    QString m_path;   // the socket's path
    mutable QString m_problem;
    mutable QString m_blockedPath;
    QLocalServer* m_server = nullptr;
};

} // namespace tagmoor
