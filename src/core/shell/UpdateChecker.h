#pragma once

#include "shell/Appcast.h"

#include <QDateTime>
#include <QObject>
#include <QUrl>

#include <functional>

class QNetworkAccessManager;

namespace tagmoor {

class Settings;

// The update check: reads the feed at the address in the settings and reports a newer
// release. A check of its own (at start) says nothing when there is no address or the network
// does not answer, and runs at most once a day; a check the user asked for always gets its
// answer.
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
    // One background check; false when no usable address is set (nothing started).
    bool checkForUpdatesInBackground();
    // The check the user asked for from the menu: as checkForUpdate, and it always ends with
    // userCheckAnswered, also when no address is set or the address is refused.
    void checkAskedByUser();

    // The check scheduled at start: checkForUpdate (or autoInstallUpdates with `install`),
    // unless the feed was asked less than a day ago. False when it was skipped for that.
    bool runAutomaticCheck(bool install);
    // Whether a day has passed since the last check (or none is stored, or the stored time
    // lies ahead of the clock, which was set back).
    bool isAutomaticCheckDue() const;
    static constexpr qint64 automaticCheckIntervalSecs = 24 * 60 * 60;

    // The clock that the day between checks is measured on (tests set their own).
    void setClock(std::function<QDateTime()> now) { m_now = std::move(now); }

    // How the stored address can be used. The feed is read over https only: plain http would
    // let anyone on the way announce a release. A feed served from this computer (loopback)
    // may use http, since its traffic never leaves the machine.
    enum class Source { None, Refused, Usable };
    static Source sourceOf(const QString& address);

    // How a check asked for by the user ended.
    enum class Answer { UpdateAvailable, UpToDate, Unreachable, NoSource, RefusedSource };
    Q_ENUM(Answer)

signals:
    void updateFound(const tagmoor::AppcastItem& item);
    void noUpdateFound();
    // Each check that was started ends with exactly one of the three.
    void checkFailed();
    // After the three above, for a check that the user asked for.
    void userCheckAnswered(tagmoor::UpdateChecker::Answer answer);

private:
    // Starts a check; the reason when none could be started.
    std::optional<Answer> startCheck(bool askedByUser);

    Settings& m_settings;
    QString m_currentVersion;
    QNetworkAccessManager* m_network = nullptr;
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTimeUtc(); };
};

} // namespace tagmoor
