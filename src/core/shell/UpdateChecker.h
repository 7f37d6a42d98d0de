#pragma once

#include "shell/Appcast.h"

#include <QObject>

class QNetworkAccessManager;

namespace tagmoor {

class Settings;

// The update check: reads the feed at the address in the settings and reports a newer
// release. A check of its own (at start) says nothing when there is no address or the network
// does not answer; a check the user asked for always gets its answer.
class UpdateChecker : public QObject {
    Q_OBJECT
public:
    UpdateChecker(Settings& settings, QString currentVersion, QObject* parent = nullptr);

    bool automaticallyChecksForUpdates = false;
    bool automaticallyDownloadsUpdates = false;

    // Check and ask: automatic checks off, then a check in the background.
    void checkForUpdate();
    // Check and install: automatic checks and downloads on, then a check.
    void autoInstallUpdates();
    // One background check; false when no address is set (nothing started).
    bool checkForUpdatesInBackground();
    // The check the user asked for from the menu: as checkForUpdate, and it always ends with
    // userCheckAnswered, also when no address is set.
    void checkAskedByUser();

    // How a check asked for by the user ended.
    enum class Answer { UpdateAvailable, UpToDate, Unreachable };
    Q_ENUM(Answer)

signals:
    void updateFound(const tagmoor::AppcastItem& item);
    void noUpdateFound();
    // Each check that was started ends with exactly one of the three.
    void checkFailed();
    // After the three above, for a check that the user asked for.
    void userCheckAnswered(tagmoor::UpdateChecker::Answer answer);

private:
    bool startCheck(bool askedByUser);

    Settings& m_settings;
    QString m_currentVersion;
    QNetworkAccessManager* m_network = nullptr;
};

} // namespace tagmoor
