#include "processing/FolderAccess.h"

#include "foundation/UserPrompt.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

namespace tagmoor {

namespace {

// The path with links resolved where the folder exists, cleaned otherwise.
QString canonical(const QString& path) {
    const QString resolved = QFileInfo(path).canonicalFilePath();
    return resolved.isEmpty() ? QDir::cleanPath(path) : resolved;
}

} // namespace

QString systemLoginName() {
    if (const passwd* entry = getpwuid(geteuid()); entry && entry->pw_name)
        return QString::fromLocal8Bit(entry->pw_name);
    return QString();
}

FolderAccess::FolderAccess(QString homePath, QString loginName)
    : m_home(canonical(homePath)), m_loginName(std::move(loginName)) {}

bool FolderAccess::mayHoldOutput(const QString& path) const {
    if (isWithinHome(path))
        return true;
    return !m_loginName.isEmpty() && canonical(path).contains(QLatin1Char('/') + m_loginName);
}

bool FolderAccess::isWithinHome(const QString& path) const {
    const QString p = canonical(path);
    return !m_home.isEmpty() && (p == m_home || p.startsWith(m_home + QLatin1Char('/')));
}

void FolderAccess::grant(const QString& folder) {
    m_granted.insert(canonical(folder));
}

bool FolderAccess::isGranted(const QString& folder) const {
    return m_granted.contains(canonical(folder));
}

bool FolderAccess::askForHomeAccess(UserPrompt& prompt) {
    const Alert ask{
        QCoreApplication::translate("FolderAccess",
                                    "Please grant access to your Home Folder to continue"),
        QCoreApplication::translate("FolderAccess", "Home Folder") + QStringLiteral(": ") + m_home,
        {QCoreApplication::translate("FolderAccess", "Grant Access"),
         QCoreApplication::translate("FolderAccess", "Cancel")}};
    if (prompt.ask(ask) != 0) {
        m_homeGranted = false;
        return false;
    }
    OpenPanelRequest request;
    request.prompt = QCoreApplication::translate("FolderAccess", "Grant Access");
    request.canChooseFiles = false;
    request.canChooseDirectories = true;
    request.allowsMultipleSelection = false;
    request.directory = QFileInfo(m_home).absolutePath();
    request.message = QCoreApplication::translate(
        "FolderAccess", "Please grant access to your Home Folder to continue");
    request.onlyEnabledFolder = m_home;
    const QStringList chosen = prompt.openPanel(request);
    if (chosen.isEmpty()) {
        m_homeGranted = false;
        return false;
    }
    // Only the home folder itself is a grant; another folder, if forced, is not stored.
    if (canonical(chosen.first()) != m_home)
        return false;
    m_homeGranted = true;
    grant(m_home);
    return true;
}

} // namespace tagmoor
