#pragma once

#include <QSet>
#include <QString>

namespace tagmoor {

class UserPrompt;

// The login name of the user the process runs as; empty when the system does not know it.
QString systemLoginName();

// Where the application may write: folders inside the user's home folder or whose path holds
// the user's login name (a removable disk mounted at /media/<user>/...), and the photos' own
// folders once the user has granted access to the home folder. The grant is a yes or no held
// for the life of the process.
class FolderAccess {
public:
    explicit FolderAccess(QString homePath, QString loginName = systemLoginName());

    const QString& homePath() const { return m_home; }
    // Whether `path` lies within the home folder (the home folder itself included).
    bool isWithinHome(const QString& path) const;
    // Whether an output folder may be chosen: within the home folder, or its path holds "/"
    // followed by the login name.
    bool mayHoldOutput(const QString& path) const;

    bool homeAccessGranted() const { return m_homeGranted; }
    // A folder chosen in a panel: remembered as granted.
    void grant(const QString& folder);
    bool isGranted(const QString& folder) const;

    // The grant panel: asks for the home folder, then opens a folder panel on it. True when
    // the user chose the home folder itself; a cancel clears the grant.
    bool askForHomeAccess(UserPrompt& prompt);

private:
    QString m_home;
    QString m_loginName;
    bool m_homeGranted = false;
    QSet<QString> m_granted;
};

} // namespace tagmoor
