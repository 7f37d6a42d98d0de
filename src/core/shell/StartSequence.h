#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tagmoor {

class LoginItem;
class Settings;
struct LaunchState;

// What the start sequence decided; the application carries it out.
struct StartPlan {
    enum class UpdateAction { None, CheckForUpdate, AutoInstallUpdates };
    // No welcome seen yet: show the welcome window instead of the main window.
    bool showWelcomeWindow = false;
    bool firstStart = false;
    UpdateAction updateAction = UpdateAction::None;
    int updateDelayMs = 5000;
    // Usage events the original sends; kept for the log only, nothing is sent.
    QStringList usageEvents;
};

// The steps before the first window: seeds settings, applies the login item, resets the
// pop-up flag, decides between welcome and main window, records versions, picks the update
// check and reads the overwrite preference into the launch state.
class StartSequence {
public:
    StartSequence(Settings& settings, LoginItem& loginItem, LaunchState& state,
                  QString currentVersion);

    // Shows the welcome window (true) or the main window (false).
    using ShowFirstWindow = std::function<void(bool welcome)>;

    // The window is shown in the middle of the sequence, before the version and update steps.
    StartPlan applicationWillFinishLaunching(const ShowFirstWindow& showFirstWindow = {});
    // After the presets are loaded.
    void applicationDidFinishLaunching();

    // The welcome window is left: stores StartupOTM and the login choice, applies it.
    void welcomeLeft(bool launchAtLogin);

    // Parses a short version as a single number the way the version check does: nothing
    // for texts that are not one number (a second dot, say).
    static std::optional<float> versionNumber(const QString& version);

private:
    Settings& m_settings;
    LoginItem& m_loginItem;
    LaunchState& m_state;
    QString m_currentVersion;
};

} // namespace tagmoor
