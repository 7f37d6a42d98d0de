#include "shell/StartSequence.h"

#include "foundation/Settings.h"
#include "foundation/ValueForm.h"
#include "shell/LaunchState.h"
#include "shell/LoginItem.h"
#include "shell/ShellLog.h"

namespace tagmoor {

StartSequence::StartSequence(Settings& settings, LoginItem& loginItem, LaunchState& state,
                             QString currentVersion)
    : m_settings(settings), m_loginItem(loginItem), m_state(state),
      m_currentVersion(std::move(currentVersion)) {}

std::optional<float> StartSequence::versionNumber(const QString& version) {
    bool ok = false;
    const float value = version.trimmed().toFloat(&ok);
    return ok ? std::optional<float>(value) : std::nullopt;
}

StartPlan StartSequence::applicationWillFinishLaunching(const ShowFirstWindow& showFirstWindow) {
    StartPlan plan;
    m_settings.seedDefaults({Settings::OpenWithItemsOTM, Settings::LoginStartStatusOTM,
                             Settings::IsPresetSavingSettingInHomeOTM});
    m_loginItem.apply(m_settings.loginStartStatusOrDefault());
    m_settings.setIsPopUp(false);

    // Only the presence of a Boolean counts, not its value. In the standard form the add screen,
    // which greets the user anyway, is the one welcome: the first start goes straight to the main
    // window, and starting at login stays off until the user turns it on in Preferences.
    if (!m_settings.startup().has_value() && isStandardForm())
        m_settings.setStartup(true);
    plan.showWelcomeWindow = !m_settings.startup().has_value();
    if (showFirstWindow)
        showFirstWindow(plan.showWelcomeWindow);

    if (!m_settings.firstRun().has_value()) {
        // First start: no update check is scheduled, on purpose.
        m_settings.setFirstRun(false);
        plan.firstStart = true;
        plan.usageEvents << QStringLiteral("install");
        m_settings.setLastVersionString(m_currentVersion);
    } else {
        const std::optional<QString> last = m_settings.lastVersionString();
        if (last && last->toLower() != m_currentVersion.toLower()) {
            const auto lastNumber = versionNumber(*last);
            const auto currentNumber = versionNumber(m_currentVersion);
            if (lastNumber && currentNumber && *currentNumber > *lastNumber) {
                m_settings.setLastVersionString(m_currentVersion);
                plan.usageEvents << QStringLiteral("tagmoorupdated");
            }
        }
        const std::optional<qint64> mode = m_settings.autoCheckForUpdate();
        if (!mode) {
            m_settings.setAutoCheckForUpdate(1);
            plan.updateAction = StartPlan::UpdateAction::AutoInstallUpdates;
        } else if (*mode == 0) {
            plan.updateAction = StartPlan::UpdateAction::CheckForUpdate;
        } else if (*mode == 1) {
            plan.updateAction = StartPlan::UpdateAction::AutoInstallUpdates;
        }
    }

    const std::optional<bool> overwrite = m_settings.isOverwriteIfAFileWithASameName();
    if (!overwrite)
        m_settings.setIsOverwriteIfAFileWithASameName(false);
    m_state.isOverwriteIfAFileWithASameName = overwrite.value_or(false);
    m_settings.sync();
    for (const QString& event : plan.usageEvents)
        qCDebug(lcShell) << "usage event (not sent):" << event;
    return plan;
}

void StartSequence::applicationDidFinishLaunching() {
    m_state.launchFinished = true;
}

void StartSequence::welcomeLeft(bool launchAtLogin) {
    m_settings.setStartup(true);
    m_settings.setLoginStartStatus(launchAtLogin);
    m_loginItem.apply(launchAtLogin);
    m_settings.sync();
}

} // namespace tagmoor
