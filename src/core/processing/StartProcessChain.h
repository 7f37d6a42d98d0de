#pragma once

#include "batch/RunValues.h"
#include "foundation/UserPrompt.h"

#include <QObject>

#include <functional>
#include <optional>

namespace tagmoor {

class FolderAccess;
class MetadataForm;
class ProcessingOptions;
class RenameNumbering;
class Settings;
class WorkingSet;
struct EditorState;

// What the chain needs of the preset store: the proposed name, the test for a taken name, and
// the saving of the form's settings under a name.
struct PresetHooks {
    std::function<QString()> defaultName;
    std::function<bool(const QString&)> nameExists;
    std::function<void(const QString&)> save;
};

// Everything between a click on Start Process and the run screen: the confirmation by mode,
// the offer to save a preset, the output folder (or the photos' own folders), the collision
// question and the snapshot of the form. Each step runs on a later turn of the event loop,
// after the short delay that lets the previous sheet close; no step blocks. Every question
// goes through UserPrompt, so each branch runs headless with its exact texts and buttons.
class StartProcessChain : public QObject {
    Q_OBJECT
public:
    struct Objects {
        const WorkingSet& workingSet;
        MetadataForm& form;
        EditorState& editorState;
        ProcessingOptions& options;
        FolderAccess& folders;
        Settings& settings;
        UserPrompt& prompt;
        const RenameNumbering& numbering;
        const Rename& renameSettings;
    };

    explicit StartProcessChain(const Objects& objects, QObject* parent = nullptr);
    ~StartProcessChain() override;

    void setPresetHooks(PresetHooks hooks) { m_presets = std::move(hooks); }

    // The click on Start Process.
    void clickedStartProcess();

    // The run sheet closed: the cover the chain left over the run goes.
    void runClosed();

    // The run values being settled (the chain fills them in as it goes).
    const RunValues& values() const { return m_values; }
    bool isRunning() const { return m_running; }

    // The texts of the chain's alerts.
    static Alert noOptionsAlert();
    static Alert editConfirmation();
    static Alert noChangesQuestion();
    static Alert clearConfirmation();
    static Alert removeConfirmation();
    static Alert noPhotosAlert();
    static Alert outsideHomeAlert();
    static Alert accessRequiredAlert();
    static Alert overwriteQuestion();
    static Alert invalidPresetNameAlert();
    static Alert presetNameTakenAlert();
    static TextQuestion presetSheet(const QString& proposedName);
    static OpenPanelRequest destinationPanel(bool keepSourceOffered);

signals:
    // The cover over the window during the chain: on while a question stands, and over the
    // run until its sheet closes. Every on is followed by exactly one off.
    void coverChanged(bool on);
    // Everything is settled: the run screen is to appear and start this run.
    void runReady(const tagmoor::RunValues& values);
    // The chain ended without a run.
    void cancelled();

private:
    // The cover, held while it lives. A span inside one step is a local; a span that crosses
    // steps (the panel reopened after a refused folder, the grant, the run) lives in m_cover.
    class Cover {
    public:
        explicit Cover(StartProcessChain& chain) : m_chain(chain) { emit chain.coverChanged(true); }
        ~Cover() { emit m_chain.coverChanged(false); }
        Cover(const Cover&) = delete;
        Cover& operator=(const Cover&) = delete;

    private:
        StartProcessChain& m_chain;
    };

    // Why the edited keywords cannot be written (one is too long for IPTC), or nothing.
    QString keywordsRefusal() const;
    void later(int ms, void (StartProcessChain::*step)());
    void end();
    void chooseSaveOption();
    void showPresetSheet();
    void skipAndProcessed(bool suppressed);
    void startProcessing();
    void reopenDestination();
    void keepSourceFolderPath();
    void finalProcess();
    void executeFinalProcess();
    bool collisionForecast() const;

    Objects m_objects;
    PresetHooks m_presets;
    RunValues m_values;
    bool m_running = false;
    std::optional<Cover> m_cover;
};

} // namespace tagmoor
