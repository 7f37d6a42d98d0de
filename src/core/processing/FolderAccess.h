#pragma once

#include <QSet>
#include <QString>

namespace tagmoor {

class UserPrompt;

// Where the application may write: folders inside the user's home folder, and the photos'
// own folders once the user has granted access to the home folder. The grant is a yes or no
// held for the life of the process.
class FolderAccess {
public:
    explicit FolderAccess(QString homePath);

    const QString& homePath() const { return m_home; }
    // Whether `path` lies within the home folder (the home folder itself included).
    bool isWithinHome(const QString& path) const;

    bool homeAccessGranted() const { return m_homeGranted; }
    // A folder chosen in a panel: remembered as granted.
    void grant(const QString& folder);
    bool isGranted(const QString& folder) const;

    // The grant panel: asks for the home folder, then opens a folder panel on it. True when
    // the user chose the home folder itself; a cancel clears the grant.
    bool askForHomeAccess(UserPrompt& prompt);

private:
    QString m_home;
    bool m_homeGranted = false;
    QSet<QString> m_granted;
};

} // namespace tagmoor
