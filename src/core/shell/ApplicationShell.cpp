#include "shell/ApplicationShell.h"

#include "processing/SidecarSettings.h"
#include "shell/ShellLog.h"

#include <QTimer>

namespace tagmoor {

std::unique_ptr<Settings> ApplicationShell::makeSettings(const QString& file) {
    return file.isEmpty() ? std::make_unique<Settings>() : std::make_unique<Settings>(file);
}

ApplicationShell::ApplicationShell(Options options, QObject* parent)
    : QObject(parent), m_settingsOwner(makeSettings(options.settingsFile)),
      m_settings(*m_settingsOwner), m_loginItem(options.executable),
      m_start(m_settings, m_loginItem, m_launchState, options.version),
      m_openWith(m_workingSet, m_settings, m_launchState, m_events),
      m_updater(m_settings, options.version), m_channel(options.channelName),
      m_presets(std::make_unique<PresetStore>(m_settings)) {
    // The form decides how the first photo is read already.
    setValueForm(m_settings.valueFormOrDefault());
    applyProcessSidecarSettings(m_settings);
}

bool ApplicationShell::claimInstance(const QStringList& paths) {
    if (m_channel.listen()) {
        connect(&m_channel, &InstanceChannel::filesReceived, this,
                [this](const QStringList& received) { m_openWith.openFiles(received); });
        return true;
    }
    // A folder or a name in the way that is not ours: told already, and not to be used.
    if (!m_channel.problem().isEmpty())
        return true;
    if (m_channel.forward(paths))
        return false;
    qCWarning(lcShell) << "Another instance holds" << m_channel.name()
                       << "but does not answer; running on our own";
    return true;
}

StartPlan ApplicationShell::start(const StartSequence::ShowFirstWindow& showFirstWindow) {
    const StartPlan plan = m_start.applicationWillFinishLaunching(showFirstWindow);
    switch (plan.updateAction) {
    // The feed is asked at most once a day, however often the application starts.
    case StartPlan::UpdateAction::CheckForUpdate:
        QTimer::singleShot(plan.updateDelayMs, &m_updater,
                           [this] { m_updater.runAutomaticCheck(false); });
        break;
    case StartPlan::UpdateAction::AutoInstallUpdates:
        QTimer::singleShot(plan.updateDelayMs, &m_updater,
                           [this] { m_updater.runAutomaticCheck(true); });
        break;
    case StartPlan::UpdateAction::None:
        break;
    }
    return plan;
}

void ApplicationShell::finishLaunching() {
    m_presets->load();
    m_start.applicationDidFinishLaunching();
}

} // namespace tagmoor

// The meta-object code goes with this file rather than with every class of the library, so
// that a program that does not use the class links neither it nor what it needs.
#include "moc_ApplicationShell.cpp"
