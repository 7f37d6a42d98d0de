#include "shell/UpdateChecker.h"

#include "foundation/Settings.h"
#include "shell/ShellLog.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace tagmoor {

namespace {
constexpr int feedTimeoutMs = 15000;
constexpr qint64 maxFeedBytes = 4 * 1024 * 1024;
} // namespace

UpdateChecker::UpdateChecker(Settings& settings, QString currentVersion, QObject* parent)
    : QObject(parent), m_settings(settings), m_currentVersion(std::move(currentVersion)) {}

void UpdateChecker::checkForUpdate() {
    automaticallyChecksForUpdates = false;
    checkForUpdatesInBackground();
}

void UpdateChecker::autoInstallUpdates() {
    automaticallyChecksForUpdates = true;
    automaticallyDownloadsUpdates = true;
    checkForUpdatesInBackground();
}

bool UpdateChecker::checkForUpdatesInBackground() {
    return startCheck(false);
}

void UpdateChecker::checkAskedByUser() {
    automaticallyChecksForUpdates = false;
    if (!startCheck(true)) {
        // Without an address there is no server to reach; the answer still comes as a
        // signal, after the caller has returned, as it does for a check that was started.
        QMetaObject::invokeMethod(
            this, [this] { emit userCheckAnswered(Answer::Unreachable); }, Qt::QueuedConnection);
    }
}

bool UpdateChecker::startCheck(bool askedByUser) {
    const std::optional<QString> address = m_settings.updateFeedUrl();
    const QUrl url(address.value_or(QString()));
    if (!url.isValid() || url.scheme().isEmpty() || url.host().isEmpty())
        return false;
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkRequest request(url);
    request.setTransferTimeout(feedTimeoutMs);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    QNetworkReply* reply = m_network->get(request);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
        if (received > maxFeedBytes)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply, askedByUser] {
        reply->deleteLater();
        if (reply->error() != QNetworkReply::NoError) {
            // No network or no server: a check of our own stays silent.
            qCDebug(lcShell) << "Update check failed:" << reply->errorString();
            emit checkFailed();
            if (askedByUser)
                emit userCheckAnswered(Answer::Unreachable);
            return;
        }
        const auto update = newestUpdate(parseAppcast(reply->readAll()), m_currentVersion);
        if (update)
            emit updateFound(*update);
        else
            emit noUpdateFound();
        if (askedByUser)
            emit userCheckAnswered(update ? Answer::UpdateAvailable : Answer::UpToDate);
    });
    return true;
}

} // namespace tagmoor
