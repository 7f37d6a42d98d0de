#pragma once

#include "shell/Appcast.h"

#include <QObject>

class QNetworkAccessManager;

namespace tagmoor {

class Settings;

// The update check: reads the feed at the address in the settings and reports a newer
// release. Without an address, or when the network does not answer, it does nothing and
// says nothing.
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

signals:
    void updateFound(const tagmoor::AppcastItem& item);
    void noUpdateFound();
    // Each check that was started ends with exactly one of the three.
    void checkFailed();

private:
    Settings& m_settings;
    QString m_currentVersion;
    QNetworkAccessManager* m_network = nullptr;
};

} // namespace tagmoor
