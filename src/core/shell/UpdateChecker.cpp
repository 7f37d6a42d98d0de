#include "shell/UpdateChecker.h"

#include "foundation/Settings.h"
#include "shell/ShellLog.h"

#include <QHostAddress>
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
    return !startCheck(false).has_value();
}

void UpdateChecker::checkAskedByUser() {
    automaticallyChecksForUpdates = false;
    if (const std::optional<Answer> refused = startCheck(true)) {
        // Nothing to reach: the answer still comes as a signal, after the caller has
        // returned, as it does for a check that was started.
        QMetaObject::invokeMethod(
            this, [this, answer = *refused] { emit userCheckAnswered(answer); },
            Qt::QueuedConnection);
    }
}

bool UpdateChecker::isAutomaticCheckDue() const {
    const std::optional<qint64> last = m_settings.lastUpdateCheck();
    if (!last)
        return true;
    const qint64 now = m_now().toSecsSinceEpoch();
    return now < *last || now - *last >= automaticCheckIntervalSecs;
}

bool UpdateChecker::runAutomaticCheck(bool install) {
    if (!isAutomaticCheckDue()) {
        qCDebug(lcShell) << "Update check skipped: the feed was asked less than a day ago";
        return false;
    }
    if (install)
        autoInstallUpdates();
    else
        checkForUpdate();
    return true;
}

UpdateChecker::Source UpdateChecker::sourceOf(const QString& address) {
    if (address.trimmed().isEmpty())
        return Source::None;
    const QUrl url(address.trimmed());
    if (!url.isValid() || url.host().isEmpty())
        return Source::Refused;
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1String("https"))
        return Source::Usable;
    const bool loopback =
        url.host().compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 ||
        QHostAddress(url.host()).isLoopback();
    return scheme == QLatin1String("http") && loopback ? Source::Usable : Source::Refused;
}

std::optional<UpdateChecker::Answer> UpdateChecker::startCheck(bool askedByUser) {
    const QString address = m_settings.updateFeedUrl().value_or(QString());
    switch (sourceOf(address)) {
    case Source::None:
        return Answer::NoSource;
    case Source::Refused:
        qCWarning(lcShell).noquote()
            << "Update feed refused, it is not an https address:" << address;
        return Answer::RefusedSource;
    case Source::Usable:
        break;
    }
    const QUrl url(address.trimmed());
    m_settings.setLastUpdateCheck(m_now().toSecsSinceEpoch());
    if (!m_network)
        m_network = new QNetworkAccessManager(this);
    QNetworkRequest request(url);
    request.setTransferTimeout(feedTimeoutMs);
    // A feed on https may move to another https address; a loopback one stays where it is.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         url.scheme().toLower() == QLatin1String("https")
                             ? QNetworkRequest::NoLessSafeRedirectPolicy
                             : QNetworkRequest::SameOriginRedirectPolicy);
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
    return std::nullopt;
}

} // namespace tagmoor

// The meta-object code goes with this file rather than with every class of the library, so
// that a program that does not use the class links neither it nor what it needs.
#include "moc_UpdateChecker.cpp"
