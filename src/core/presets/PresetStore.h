#pragma once

#include "foundation/UserPrompt.h"
#include "presets/ActualPreset.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <optional>

namespace tagmoor {

class Settings;

// The saved presets: one ordered list, kept in memory on the main thread and mirrored into
// the key "kPropertiesDataAP" of the presets file beside the settings file (PresetFile) after
// every change. Presets are addressed by their list position.
//
// A change schedules a save after a short delay, so that a burst of changes in one turn of
// the event loop is saved once. The save encodes a copy of the list and writes it on a
// thread of its own; saves run one after another, and a save that a newer one has already
// replaced is skipped. The settings file is replaced whole on each write, so a crash during
// a save leaves the previous list readable.
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
        // Where the unreadable block was kept: "<presets file>.damaged-<time>", or the key
        // "kPropertiesDataAP.damaged-<time>" of the main settings file.
        QString keptAs;
    };
    // Replaces the list with the stored one; the application start calls it once. Without a
    // block the list is empty. A block that does not decode gives an empty list and is kept
    // aside (the presets file renamed, or a block still in the main settings file moved to a
    // new key), so that the next save cannot overwrite it. A readable block still in the main
    // settings file moves to the presets file.
    LoadReport load();

    const QList<ActualPreset>& presets() const { return m_presets; }
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

    enum class NameCheck { Ok, Empty, Taken };
    // Whether `name` may name a preset: not empty, and not the name of another preset in small
    // letters; the preset at `exceptPosition` (the one being renamed) is not compared.
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

    // The file the presets are saved in.
    const QString& fileName() const { return m_fileName; }

    // The delay between a change and its save (default 100 ms).
    void setSaveDelay(int milliseconds);
    // Saves after the delay; changes made through this class call it themselves.
    void scheduleSave();
    // Starts the pending save at once, if any, and waits until every save has finished.
    void waitForSaves();

signals:
    void presetsChanged();
    // A save has written the list (`ok`) or failed to. Saves replaced by a newer one before
    // they began write nothing and do not report.
    void saveFinished(bool ok);

private:
    void changed();
    void startSave();

    Settings& m_settings;
    const QString m_fileName;
    QList<ActualPreset> m_presets;
    QTimer m_saveTimer;
    QThreadPool m_savePool;
    std::atomic<quint64> m_latestSave{0};
};

} // namespace tagmoor
