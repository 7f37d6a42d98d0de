#pragma once

#include "foundation/MapType.h"
#include "foundation/ValueForm.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

class QDateTime;
class QSettings;

// Every stored key, once: KEY(name, value type, getter, setter) for a key without a default,
// KEY_WITH_DEFAULT(..., default) for one with a default, which seedDefaults stores and the
// `OrDefault` getter gives while nothing is stored. The name is the stored key; values are
// stored as the type's QVariant (a ValueForm as its name).
#define TAGMOOR_SETTINGS_KEYS(KEY, KEY_WITH_DEFAULT)                                               \
    /* Present once the welcome screen was left; only presence counts. */                          \
    KEY(StartupOTM, bool, startup, setStartup)                                                     \
    KEY(FirstRunOTM, bool, firstRun, setFirstRun)                                                  \
    KEY(lastVersion, QString, lastVersionString, setLastVersionString)                             \
    KEY_WITH_DEFAULT(AutoCheckForUpdateOTM, qint64, autoCheckForUpdate, setAutoCheckForUpdate, 1)  \
    KEY_WITH_DEFAULT(LoginStartStatusOTM, bool, loginStartStatus, setLoginStartStatus, false)      \
    /* Whether Start Process goes on without offering to save a preset. */                         \
    KEY_WITH_DEFAULT(IsPresetSavingSettingInHomeOTM, bool, isPresetSavingSettingInHome,            \
                     setIsPresetSavingSettingInHome, true)                                         \
    KEY_WITH_DEFAULT(kIsOverwriteIfAFileWithASameNameOTM, bool, isOverwriteIfAFileWithASameName,   \
                     setIsOverwriteIfAFileWithASameName, false)                                    \
    KEY(TutorialShowOTM, bool, tutorialShow, setTutorialShow)                                      \
    /* The window's size and place, the home screen's divider, the folded preview. */              \
    KEY(MainWindowGeometry, QByteArray, mainWindowGeometry, setMainWindowGeometry)                 \
    KEY(HomeSplitterState, QByteArray, homeSplitterState, setHomeSplitterState)                    \
    KEY_WITH_DEFAULT(HomePreviewFolded, bool, homePreviewFolded, setHomePreviewFolded, false)      \
    /* The folder the last accepted file panel showed; the next panel opens there. */              \
    KEY(LastPanelFolderOTM, QString, lastPanelFolder, setLastPanelFolder)                          \
    /* The window's colours: "system" follows the desktop, "light" or "dark" holds. */             \
    KEY(AppearanceOTM, QString, appearance, setAppearance)                                         \
    /* The photo table's columns: shown or hidden, widths, order and sorting (header state). */    \
    KEY(PhotoTableColumnsOTM, QByteArray, photoTableColumns, setPhotoTableColumns)                 \
    KEY_WITH_DEFAULT(OpenWithItemsOTM, bool, openWithItems, setOpenWithItems, false)               \
    KEY_WITH_DEFAULT(IsPopUpOTM, bool, isPopUp, setIsPopUp, false)                                 \
    /* Address of the update feed; without it no update check happens. */                          \
    KEY(UpdateFeedURL, QString, updateFeedUrl, setUpdateFeedUrl)                                   \
    /* When the feed was last asked, in seconds since 1970 (UTC); the automatic check waits a      \
       day after it. */                                                                            \
    KEY(LastUpdateCheckOTM, qint64, lastUpdateCheck, setLastUpdateCheck)                           \
    /* The saved presets, one byte block. */                                                       \
    KEY(kPropertiesDataAP, QByteArray, propertiesData, setPropertiesData)                          \
    /* Tile addresses of the map types ({z}, {x}, {y}); the standard map has a built-in one. */    \
    KEY(MapTileURLStandard, QString, mapTileUrlStandard, setMapTileUrlStandard)                    \
    KEY(MapTileURLSatellite, QString, mapTileUrlSatellite, setMapTileUrlSatellite)                 \
    KEY(MapTileURLHybrid, QString, mapTileUrlHybrid, setMapTileUrlHybrid)                          \
    /* Whether the maps fetch web tiles at all (the world outline works without them). */          \
    KEY_WITH_DEFAULT(LoadMapTilesFromInternetOTM, bool, loadMapTilesFromInternet,                  \
                     setLoadMapTilesFromInternet, true)                                            \
    /* How values are read, shifted and written: "standard" (the default) or "described"           \
       (see ValueForm). A new key: the old Boolean of the standard form, seeded false by           \
       earlier versions, no longer decides. */                                                     \
    KEY_WITH_DEFAULT(ValueFormOTM, ValueForm, valueForm, setValueForm, ValueForm::standard)        \
    /* Where a run writes the XMP: "never", "fallback", "always" or "both"; where it goes when     \
       stripped: "keep", "strip" or "remove"; the name of a new sidecar: "ext" (NAME.EXT.xmp)      \
       or "base" (NAME.xmp). Absent: the form's choice (see SidecarOptions::frontEndDefault). */   \
    KEY(SidecarWriteOTM, QString, sidecarWrite, setSidecarWrite)                                   \
    KEY(SidecarStripOTM, QString, sidecarStrip, setSidecarStrip)                                   \
    KEY(SidecarNamingOTM, QString, sidecarNaming, setSidecarNaming)                                \
    /* Only the 39 classic extensions are accepted. Absent: so in the described form only. */      \
    KEY(ClassicExtensionsOnlyOTM, bool, classicExtensionsOnly, setClassicExtensionsOnly)           \
    /* Whether the window keeps the copies of a caption, creator, rights or location value in      \
       step. Absent: see copiesInStepFrom. */                                                      \
    KEY(CopiesInStepOTM, bool, copiesInStep, setCopiesInStep)

namespace tagmoor {

// Typed access to the stored settings (QSettings, native format, organisation and
// application "Tagmoor"). One getter and setter per key; a value that is absent or not of
// the key's type reads as absent. Defaults live in one table (see Settings.cpp).
//
// The file is checked before it is read: one that is no regular file, is too large, is not
// text or holds lines that are neither groups nor keys would be overwritten by the next
// write, so it is kept aside ("<file>.damaged-<time>") and the settings start anew. Every
// setter writes the file at once and checks that it was written; a file or folder that
// cannot be written is told once, through the problem handler.
class Settings {
public:
    // Something the user should hear of about the settings file.
    struct Problem {
        enum class Kind { KeptAside, NotWritable };
        Kind kind;
        QString path; // the damaged file's new path, or the file that cannot be written

        bool operator==(const Problem&) const = default;
    };

    // The user's settings.
    Settings();
    // Settings in the given file (tests).
    explicit Settings(const QString& fileName);
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    // The tile address of a map type.
    std::optional<QString> mapTileUrl(MapType mapType) const;
    void setMapTileUrl(MapType mapType, const QString& v);

    // The default of a key from the table; nothing for keys without one.
    static std::optional<QVariant> defaultFor(const QString& key);
    // Stores the default of each listed key whose stored value is absent or mistyped.
    void seedDefaults(const QStringList& keys);

    // Raw access by key, typed as the table says (for generic callers and tests).
    bool contains(const QString& key) const;
    void remove(const QString& key);
    void sync();
    QSettings& raw();

    // Whatever is stored under the key, of any type (a mistyped value included).
    bool holdsAnyValue(const QString& key) const;
    // Moves the stored value of `key`, whatever its type, to "<key>.damaged-<UTC time>"
    // (with "-2", "-3", ... when that key is taken) and writes the file at once, so that a
    // value that cannot be read is kept for the user instead of being overwritten. Gives the
    // new key, or an empty text when nothing was stored.
    QString moveAside(const QString& key, const QDateTime& when);

    // The file that holds the settings. Another Settings opened on it in another thread sees
    // and makes the same values (QSettings is reentrant and shares one file cache).
    QString fileName() const;

    // Where a damaged settings file was kept when these settings were opened; empty when the
    // file was sound.
    const QString& keptAsideAs() const { return m_keptAsideAs; }
    // Receives each kind of problem once: at once for one met before the handler was set
    // (a damaged file kept aside at the start), later as it happens.
    void setProblemHandler(std::function<void(const Problem&)> handler);

    // Key names, and one typed getter and setter per key, generated from the key table
    // (TAGMOOR_SETTINGS_KEYS above). A key with a default also has `<getter>OrDefault()`,
    // the stored value or that default.
#define TAGMOOR_SETTING_NAME(name, Type, getter, setter, ...)                                      \
    static constexpr const char* name = #name;
    TAGMOOR_SETTINGS_KEYS(TAGMOOR_SETTING_NAME, TAGMOOR_SETTING_NAME)
#undef TAGMOOR_SETTING_NAME

#define TAGMOOR_SETTING_ACCESSORS(name, Type, getter, setter)                                      \
    std::optional<Type> getter() const;                                                            \
    void setter(const Type& v);
#define TAGMOOR_SETTING_ACCESSORS_WITH_DEFAULT(name, Type, getter, setter, defaultValue)           \
    TAGMOOR_SETTING_ACCESSORS(name, Type, getter, setter)                                          \
    Type getter##OrDefault() const;
    TAGMOOR_SETTINGS_KEYS(TAGMOOR_SETTING_ACCESSORS, TAGMOOR_SETTING_ACCESSORS_WITH_DEFAULT)
#undef TAGMOOR_SETTING_ACCESSORS
#undef TAGMOOR_SETTING_ACCESSORS_WITH_DEFAULT

private:
    void open(const QString& path, const std::function<std::unique_ptr<QSettings>()>& make);
    void report(const Problem& problem);
    void checkWritten();
    void requireAtomicWrites();
    template <typename T> std::optional<T> read(const char* key) const;
    void write(const char* key, const QVariant& value);

    std::unique_ptr<QSettings> m_settings;
    QString m_keptAsideAs;
    std::function<void(const Problem&)> m_problemHandler;
    QList<Problem> m_unreported;
    bool m_toldNotWritable = false;
    bool m_toldKeptAside = false;
};

} // namespace tagmoor
