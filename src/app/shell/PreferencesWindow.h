#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QTabWidget;
class QVBoxLayout;

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

    void clickedAutomatically(bool on);
    void clickedOverwriteIfAFileWithASameName(bool on);
    void clickedShowPresetSettingInHome(bool on);
    // Stores the choice and tells the maps, which fetch tiles or show the outline alone.
    void clickedLoadMapTiles(bool on);
    // Empties the tile cache, on disk and in the maps.
    void clickedClearMapCache();
    // Stores the choice and applies it to the process (the photos read from now on, and runs).
    void clickedCopiesInStep(bool on);
    // "never", "fallback", "always" or "both": stored, and sidecars read or not from now on.
    void chosenSidecarWrite(const QString& word);
    void clickedClassicExtensionsOnly(bool on);

signals:
    // "system", "light" or "dark", as the appearance box was set.
    void appearanceChosen(const QString& name);

private:
    QWidget* makeGeneralTab();
    QVBoxLayout* makeMetadataRows();
    QHBoxLayout* makeLanguageRow();
    QHBoxLayout* makeAppearanceRow();

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
    QCheckBox* m_mapTiles = nullptr;
    QPushButton* m_clearMapCache = nullptr;
    QLabel* m_mapCacheState = nullptr;
    QComboBox* m_appearance = nullptr;
    QCheckBox* m_copiesInStep = nullptr;
    QComboBox* m_sidecarWrite = nullptr;
    QCheckBox* m_classicOnly = nullptr;
};

} // namespace tagmoor
