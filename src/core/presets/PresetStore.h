#pragma once

#include "foundation/UserPrompt.h"
#include "presets/ActualPreset.h"
#include "presets/PresetCheck.h"
#include "presets/PresetPhoto.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <optional>

class QFileSystemWatcher;

namespace tagmoor {

class Settings;

// The saved presets: one ordered list, kept in memory on the main thread and mirrored into
// the key "kPropertiesDataAP" of the presets file beside the settings file (PresetFile) after
// every change. Presets are addressed by their list position.
//
// A change schedules a save after a short delay, so that a burst of changes in one turn of
// the event loop is saved once. The save encodes a copy of the list and writes it on a
// thread of its own; saves run one after another, and a save that a newer one has already
// replaced is skipped. The presets file is replaced whole on each write, so a crash during
// a save leaves the previous list readable.
//
// The window and the command line keep the same file. A save holds the file's lock while it
// reads the file and writes it, and when another program changed the file since this store
// last read or wrote it, the other's changes are merged into the list (mergePresetLists)
// before it is written: nothing one program saved is dropped by the other. The merged list
// then becomes this store's list too. With watchFile() on, a change of the file made by
// another program is merged in as soon as it lands.
//
// Loading opens no photo. The photo a preset names (its "path") is read on a thread of its
// own after the load, and preset() lays its size and XMP values over the stored ones.
class PresetStore : public QObject {
    Q_OBJECT

public:
    // The fixed rows around the saved presets in the preset menu.
    static constexpr const char* NewConfigurationRow = "New Configuration";
    static constexpr const char* EditPresetsRow = "Edit Presets...";

    explicit PresetStore(Settings& settings, QObject* parent = nullptr);
    // Finishes the pending and the running saves.
    ~PresetStore() override;

    struct LoadReport {
        // A block was stored but could not be read; the list is empty.
        bool damaged = false;
        // Presets of a readable block that were left out, with their reasons.
        QList<RefusedPreset> refused;
        // Where the unreadable block, or the block as it was before presets were left out,
        // was kept: "<presets file>.damaged-<time>", or the key
        // "kPropertiesDataAP.damaged-<time>" of the main settings file.
        QString keptAs;

        bool isClean() const { return !damaged && refused.isEmpty(); }
    };
    // Replaces the list with the stored one; the application start calls it once. Without a
    // block the list is empty. A block that does not decode gives an empty list and is kept
    // aside (the presets file renamed, or a block still in the main settings file moved to a
    // new key), so that the next save cannot overwrite it. Presets that readPresetArchive
    // refuses are left out and the others kept: the block as it was is kept aside as a copy,
    // and the file then holds only the presets kept.
    // A readable block still in the main settings file moves to the presets file.
    LoadReport load();
    // The report of the last load.
    const LoadReport& lastLoad() const { return m_lastLoad; }

    // The presets as stored.
    const QList<ActualPreset>& presets() const { return m_presets; }
    // The preset at `position` as it is applied: the stored values with those of its photo
    // laid over them, once the photo was read. Where there is no preset, an empty one.
    ActualPreset preset(qsizetype position) const;
    qsizetype size() const { return m_presets.size(); }
    bool isValidPosition(qsizetype position) const {
        return position >= 0 && position < m_presets.size();
    }

    // The rows of the preset menu: "New Configuration", the saved presets, "Edit Presets...".
    // The two fixed rows are presets over an empty record and default rules; they are never
    // stored.
    QList<ActualPreset> menuRows() const;

    // "Preset", else "Preset1", "Preset2", ...: the first that no saved preset has as its name,
    // compared in small letters.
    QString defaultName() const;

    enum class NameCheck { Ok, Empty, Unfit, Taken };
    // Whether `name` may name a preset: not empty, fit to be a name (see presetNameRefusal),
    // and not the name of another preset in small letters; the preset at `exceptPosition` (the
    // one being renamed) is not compared.
    NameCheck checkName(const QString& name, qsizetype exceptPosition = -1) const;

    // Appends a fresh preset (empty record, default rules, `index` the count before) named
    // `name`, or the default name when `name` is empty; gives its position. The name is not
    // checked here: callers that take a name from the user check it first.
    qsizetype addPreset(const QString& name = {});
    // Appends a preset as it is, its `index` included (an imported preset); gives its
    // position. The name is not checked here.
    qsizetype appendPreset(const ActualPreset& preset);
    // Removes the preset at `position`; false when there is none.
    bool removePreset(qsizetype position);
    // Renames the preset at `position`. Gives the alert to show when the name is refused (and
    // keeps the old name); nothing when renamed, or when there is no preset at `position`.
    std::optional<Alert> renamePreset(qsizetype position, const QString& name);
    // Stores new values and date rules in the preset at `position`; false when there is none.
    bool replaceValues(qsizetype position, const CGImageProperties& properties,
                       const OriginalFinalDate& timeSetting);
    // Stores the edits beyond the form in the preset at `position` (none when they edit
    // nothing); false when there is no preset there.
    bool replaceExtras(qsizetype position, const ExtraEdits& extras);

    // The file the presets are saved in.
    const QString& fileName() const { return m_fileName; }

    // The delay between a change and its save (default 100 ms).
    void setSaveDelay(int milliseconds);
    // Saves after the delay; changes made through this class call it themselves.
    void scheduleSave();
    // Starts the pending save at once, if any, and waits until every save has finished.
    void waitForSaves();
    // Waits until the photos of the presets have been read.
    void waitForPhotos();

    // Merges in the changes that another program writes to the presets file, shortly after
    // it does (off by default: a command-line run reads the file once).
    void watchFile(bool on);
    // Merges in what another program has written to the file since this store last read or
    // wrote it; writes the file only when this store's list holds changes of its own.
    void syncWithFile();

signals:
    void presetsChanged();
    // Another program's changes came into the list (after presetsChanged): positions held
    // from before may name other presets now.
    void changedElsewhere();
    // A save has written the list (`ok`) or failed to. Saves replaced by a newer one before
    // they began write nothing and do not report.
    void saveFinished(bool ok);

private:
    // The file as this store last read or wrote it; touched by the save thread only, and by
    // load() while no save runs.
    struct DiskState {
        bool known = false;
        QByteArray block;
        QList<ActualPreset> presets;
    };
    struct SaveOutcome {
        bool ok = false;
        bool merged = false; // another program's changes came into the list
        QList<ActualPreset> written;
    };

    void changed();
    void startSave();
    SaveOutcome saveOnThread(const QList<ActualPreset>& mine);
    void saveDone(const SaveOutcome& outcome, const QList<ActualPreset>& mine);
    void readPhotos();

    Settings& m_settings;
    const QString m_fileName;
    QList<ActualPreset> m_presets;
    LoadReport m_lastLoad;
    DiskState m_disk;
    QTimer m_saveTimer;
    QThreadPool m_savePool;
    std::atomic<quint64> m_latestSave{0};
    // The photos read, by path; nothing for a photo that could not be read.
    QHash<QString, std::optional<PresetPhotoFacts>> m_photos;
    QThreadPool m_photoPool;
    QFileSystemWatcher* m_watcher = nullptr;
    QTimer m_watchTimer;
};

} // namespace tagmoor
