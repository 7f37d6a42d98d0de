#include "shell/LoginItem.h"

#include "shell/ShellLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace tagmoor {

LoginItem::LoginItem(QString executable) : m_executable(std::move(executable)) {}

QString LoginItem::entryPath() {
    QString base = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (base.isEmpty() || QDir::isRelativePath(base))
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/autostart/tagmoor.desktop");
}

bool LoginItem::isInstalled() const {
    return QFileInfo::exists(entryPath());
}

void LoginItem::apply(bool on) const {
    const QString path = entryPath();
    if (!on) {
        if (QFileInfo::exists(path) && !QFile::remove(path))
            qCWarning(lcShell) << "Could not remove the autostart entry" << path;
        return;
    }
    if (QFileInfo::exists(path))
        return;
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        qCWarning(lcShell) << "Could not create the autostart folder for" << path;
        return;
    }
    QString exec = m_executable.isEmpty() ? QCoreApplication::applicationFilePath() : m_executable;
    // Desktop entry Exec values quote arguments with double quotes.
    if (exec.contains(QLatin1Char(' ')))
        exec = QLatin1Char('"') + exec + QLatin1Char('"');
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        qCWarning(lcShell) << "Could not write the autostart entry" << path;
        return;
    }
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Name=Tagmoor\n"
                                        "Exec=%1\n"
                                        "Icon=tagmoor\n"
                                        "Terminal=false\n"
                                        "X-GNOME-Autostart-enabled=true\n")
                             .arg(exec);
    file.write(text.toUtf8());
    if (!file.commit())
        qCWarning(lcShell) << "Could not write the autostart entry" << path;
}

} // namespace tagmoor
