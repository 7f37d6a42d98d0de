#include "app/widgets/DesktopActions.h"

#include "foundation/UserPrompt.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace tagmoor {

DesktopActions::DesktopActions(UserPrompt& prompt, QObject* parent)
    : QObject(parent), m_prompt(prompt) {}

void DesktopActions::tellNotOpened(const QString& path) {
    m_prompt.tell(tr("The photo could not be opened"),
                  tr("No application is set to open \"%1\". Choose a default application for "
                     "this type of file in your desktop's settings.")
                      .arg(QFileInfo(path).fileName()));
}

void DesktopActions::openInDefaultApplication(const QString& path) {
    auto* opener = new QProcess(this);
    opener->setProgram(m_opener);
    opener->setArguments({path});
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(QProcess::nullDevice());
    connect(opener, &QProcess::finished, this, [this, opener, path](int code) {
        const bool opened = code == 0 && opener->exitStatus() == QProcess::NormalExit;
        if (!opened)
            tellNotOpened(path);
        emit openFinished(path, opened);
        opener->deleteLater();
    });
    connect(opener, &QProcess::errorOccurred, this, [this, opener, path](QProcess::ProcessError e) {
        if (e != QProcess::FailedToStart)
            return;
        tellNotOpened(path);
        emit openFinished(path, false);
        opener->deleteLater();
    });
    opener->start();
}

void DesktopActions::revealInFileManager(const QString& path) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString()} << QString();
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 3000);
    if (reply.type() == QDBusMessage::ReplyMessage)
        return;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath())))
        m_prompt.tell(
            tr("The folder could not be shown"),
            tr("No file manager answered for \"%1\".").arg(QFileInfo(path).absolutePath()));
}

} // namespace tagmoor
