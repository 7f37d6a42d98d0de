#pragma once

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

    // Key names.
    static constexpr const char* StartupOTM = "StartupOTM";
    static constexpr const char* FirstRunOTM = "FirstRunOTM";
    static constexpr const char* lastVersion = "lastVersion";
    static constexpr const char* AutoCheckForUpdateOTM = "AutoCheckForUpdateOTM";
    static constexpr const char* LoginStartStatusOTM = "LoginStartStatusOTM";
    static constexpr const char* IsPresetSavingSettingInHomeOTM = "IsPresetSavingSettingInHomeOTM";
    static constexpr const char* kIsOverwriteIfAFileWithASameNameOTM =
        "kIsOverwriteIfAFileWithASameNameOTM";
    static constexpr const char* TutorialShowOTM = "TutorialShowOTM";
    static constexpr const char* OpenWithItemsOTM = "OpenWithItemsOTM";
    static constexpr const char* IsPopUpOTM = "IsPopUpOTM";
    // Address of the update feed; without it no update check happens.
    static constexpr const char* UpdateFeedURL = "UpdateFeedURL";
    // Tile addresses of the map types ({z}, {x}, {y}); the standard map has a built-in one.
    static constexpr const char* MapTileURLStandard = "MapTileURLStandard";
    static constexpr const char* MapTileURLSatellite = "MapTileURLSatellite";
    static constexpr const char* MapTileURLHybrid = "MapTileURLHybrid";
    // Whether the maps fetch web tiles at all (the world outline works without them).
    static constexpr const char* LoadMapTilesFromInternetOTM = "LoadMapTilesFromInternetOTM";
    // The saved presets, one byte block.
    static constexpr const char* kPropertiesDataAP = "kPropertiesDataAP";
    // How values are read, shifted and written: "standard" (the default) or "described"
    // (see ValueForm). A new key: the old Boolean of the standard form, seeded false by
    // earlier versions, no longer decides.
    static constexpr const char* ValueFormOTM = "ValueFormOTM";

    // Present once the welcome screen was left; only presence counts.
    std::optional<bool> startup() const;
    void setStartup(bool v);
    std::optional<bool> firstRun() const;
    void setFirstRun(bool v);
    std::optional<QString> lastVersionString() const;
    void setLastVersionString(const QString& v);
    std::optional<qint64> autoCheckForUpdate() const;
    void setAutoCheckForUpdate(qint64 v);
    std::optional<bool> loginStartStatus() const;
    void setLoginStartStatus(bool v);
    std::optional<bool> isPresetSavingSettingInHome() const;
    void setIsPresetSavingSettingInHome(bool v);
    std::optional<bool> isOverwriteIfAFileWithASameName() const;
    void setIsOverwriteIfAFileWithASameName(bool v);
    std::optional<bool> tutorialShow() const;
    void setTutorialShow(bool v);
    std::optional<bool> openWithItems() const;
    void setOpenWithItems(bool v);
    std::optional<bool> isPopUp() const;
    void setIsPopUp(bool v);
    std::optional<QString> updateFeedUrl() const;
    void setUpdateFeedUrl(const QString& v);
    // 0 standard, 1 satellite, 2 hybrid.
    std::optional<QString> mapTileUrl(int mapType) const;
    void setMapTileUrl(int mapType, const QString& v);
    std::optional<bool> loadMapTilesFromInternet() const;
    void setLoadMapTilesFromInternet(bool v);
    std::optional<QByteArray> propertiesData() const;
    void setPropertiesData(const QByteArray& v);
    std::optional<ValueForm> valueForm() const;
    void setValueForm(ValueForm v);

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

private:
    void open(const QString& path, const std::function<std::unique_ptr<QSettings>()>& make);
    void report(const Problem& problem);
    void checkWritten();
    void requireAtomicWrites();
    std::optional<bool> readBool(const char* key) const;
    std::optional<qint64> readInt(const char* key) const;
    std::optional<QString> readText(const char* key) const;
    void write(const char* key, const QVariant& value);

    std::unique_ptr<QSettings> m_settings;
    QString m_keptAsideAs;
    std::function<void(const Problem&)> m_problemHandler;
    QList<Problem> m_unreported;
    bool m_toldNotWritable = false;
    bool m_toldKeptAside = false;
};

} // namespace tagmoor
