#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QTabWidget;

namespace tagmoor {

class LoginItem;
class Settings;
struct LaunchState;

// The preferences window with its one tab, "General". Every box stores its setting the
// moment it changes; there is nothing to apply.
class PreferencesWindow : public QWidget {
    Q_OBJECT
public:
    PreferencesWindow(Settings& settings, LoginItem& loginItem, LaunchState& state,
                      QWidget* parent = nullptr);

    // Loads the boxes from the settings and applies the login setting to the login item.
    void reload();

    QTabWidget* tabs() const { return m_tabs; }
    QCheckBox* btnLaunchAutomatically() const { return m_launch; }
    QComboBox* comboBoxLanguage() const { return m_language; }
    QCheckBox* btnOverwriteIfAFileWithASameName() const { return m_overwrite; }
    QCheckBox* btnShowPresetSavingSettingInHome() const { return m_presetSaving; }
    QCheckBox* btnAutoUpdate() const { return m_autoUpdate; }
    QCheckBox* btnWriteTagsInStandardForm() const { return m_standardForm; }

    void clickedAutomatically(bool on);
    void clickedOverwriteIfAFileWithASameName(bool on);
    void clickedShowPresetSettingInHome(bool on);

private:
    QWidget* makeGeneralTab();

    Settings& m_settings;
    LoginItem& m_loginItem;
    LaunchState& m_state;
    QTabWidget* m_tabs;
    QCheckBox* m_launch;
    QComboBox* m_language;
    QCheckBox* m_overwrite;
    QCheckBox* m_presetSaving;
    QCheckBox* m_autoUpdate;
    QCheckBox* m_standardForm = nullptr;
};

} // namespace tagmoor
