#include "processing/StartProcessChain.h"

#include "batch/PhotoPipeline.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "exchange/PhotoTemplates.h"
#include "foundation/Settings.h"
#include "model/FormFieldTable.h"
#include "model/Keywords.h"
#include "presets/PresetCheck.h"
#include "processing/FolderAccess.h"
#include "processing/ProcessingOptions.h"
#include "processing/ReviewValues.h"
#include "processing/SidecarSettings.h"
#include "rename/RenameNumbering.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

namespace tagmoor {

namespace {

Alert warning(const char* title, const char* text) {
    return Alert::ok(QCoreApplication::translate("StartProcessChain", title),
                     QCoreApplication::translate("StartProcessChain", text));
}

Alert question(const char* title, const char* text) {
    return Alert::yesNo(QCoreApplication::translate("StartProcessChain", title),
                        QCoreApplication::translate("StartProcessChain", text));
}

bool isInPhotoLibrary(const QString& path) {
    return path.contains(QLatin1String(".photoslibrary/Masters/")) ||
           path.contains(QLatin1String(".photoslibrary/originals/"));
}

} // namespace

Alert StartProcessChain::noOptionsAlert() {
    return warning(
        QT_TRANSLATE_NOOP("StartProcessChain", "No options selected for removing metadata"),
        QT_TRANSLATE_NOOP("StartProcessChain",
                          "Please select what needs to be removed in order to process the selected "
                          "images."));
}
Alert StartProcessChain::editConfirmation() {
    return question(QT_TRANSLATE_NOOP("StartProcessChain",
                                      "Are you sure to edit metadata of all the selected images?"),
                    QT_TRANSLATE_NOOP(
                        "StartProcessChain",
                        "The selected images will be processed to have the new metadata values you "
                        "have edited. Please click on YES to process all the selected images "
                        "otherwise click NO."));
}
Alert StartProcessChain::noChangesQuestion() {
    return question(
        QT_TRANSLATE_NOOP("StartProcessChain", "No Changes in Metadata found"),
        QT_TRANSLATE_NOOP(
            "StartProcessChain",
            "There are no changes observed in the Metadata for all the selected images. "
            "Do you still wish to proceed?"));
}
Alert StartProcessChain::clearConfirmation() {
    return question(QT_TRANSLATE_NOOP("StartProcessChain",
                                      "Are you sure to edit metadata of all the selected images?"),
                    QT_TRANSLATE_NOOP(
                        "StartProcessChain",
                        "The selected images will be processed to have the new metadata values you "
                        "have edited and unedited values will be cleared. Please click on YES to "
                        "process all the selected images otherwise click NO."));
}
Alert StartProcessChain::removeConfirmation() {
    return question(
        QT_TRANSLATE_NOOP(
            "StartProcessChain",
            "Are you sure to delete the selected metadata for all the selected images?"),
        QT_TRANSLATE_NOOP(
            "StartProcessChain",
            "The selected metadata items will be removed for all the selected images. "
            "Are you sure to proceed?"));
}
Alert StartProcessChain::noPhotosAlert() {
    return warning(QT_TRANSLATE_NOOP("StartProcessChain", "There are no photos selected"),
                   QT_TRANSLATE_NOOP("StartProcessChain", "Please select photos for processing"));
}
Alert StartProcessChain::outsideHomeAlert() {
    return warning(
        QT_TRANSLATE_NOOP("StartProcessChain", "Files cannot be saved in the selected folder"),
        QT_TRANSLATE_NOOP("StartProcessChain",
                          "Please select output folder within your user folder."));
}
Alert StartProcessChain::accessRequiredAlert() {
    return warning(QT_TRANSLATE_NOOP("StartProcessChain", "Access to User Directory required."),
                   QT_TRANSLATE_NOOP(
                       "StartProcessChain",
                       "Please allow access to your 'User Directory' to save processed images at "
                       "their source location."));
}
Alert StartProcessChain::overwriteQuestion() {
    return {QCoreApplication::translate("StartProcessChain",
                                        "Overwrite files with same source and destination path?"),
            QCoreApplication::translate(
                "StartProcessChain",
                "The output folder for some of the files is same as their source and these will "
                "be overwritten. Please choose how to proceed."),
            {QCoreApplication::translate("StartProcessChain", "Overwrite"),
             QCoreApplication::translate("StartProcessChain", "Do not Overwrite")}};
}
Alert StartProcessChain::invalidPresetNameAlert() {
    return warning(
        QT_TRANSLATE_NOOP("StartProcessChain", "Invalid Preset name."),
        QT_TRANSLATE_NOOP("StartProcessChain", "You need to enter a name for saving the preset."));
}
Alert StartProcessChain::presetNameTakenAlert() {
    return warning(
        QT_TRANSLATE_NOOP("StartProcessChain", "Name already exists"),
        QT_TRANSLATE_NOOP("StartProcessChain",
                          "The entered name already exists. Please enter a new preset name."));
}

TextQuestion StartProcessChain::presetSheet(const QString& proposedName) {
    return {{QCoreApplication::translate("StartProcessChain", "Save selected settings as a preset"),
             QCoreApplication::translate(
                 "StartProcessChain",
                 "If you want to save the selected settings as a preset to be used for next batch "
                 "processing, enter a name and click on Save and Process otherwise click on Skip "
                 "and Process."),
             {QCoreApplication::translate("StartProcessChain", "Save and Process"),
              QCoreApplication::translate("StartProcessChain", "Skip and Process")}},
            proposedName,
            QCoreApplication::translate("StartProcessChain", "Do not show again")};
}

OpenPanelRequest StartProcessChain::destinationPanel(bool keepSourceOffered) {
    OpenPanelRequest request;
    request.prompt = QCoreApplication::translate("StartProcessChain", "Choose Destination Folder");
    request.message =
        QCoreApplication::translate("StartProcessChain", "Please select an output folder");
    request.canChooseFiles = false;
    request.canChooseDirectories = true;
    request.allowsMultipleSelection = false;
    request.canCreateDirectories = true;
    if (keepSourceOffered)
        request.accessoryButton =
            QCoreApplication::translate("StartProcessChain", "Keep Source Folder Path");
    return request;
}

StartProcessChain::StartProcessChain(const Objects& objects, QObject* parent)
    : QObject(parent), m_objects(objects) {}

// Out of line so that a cover still held goes while the chain is whole.
StartProcessChain::~StartProcessChain() {
    m_cover.reset();
}

void StartProcessChain::runClosed() {
    m_cover.reset();
}

void StartProcessChain::later(int ms, void (StartProcessChain::*step)()) {
    QTimer::singleShot(ms, this, step);
}

void StartProcessChain::end() {
    m_running = false;
    m_cover.reset();
    emit cancelled();
}

QString StartProcessChain::keywordsRefusal() const {
    if (!m_objects.editorState.fieldEditedFlags.test(Field::Keywords))
        return {};
    const CGImageProperties form = m_objects.form.readForm();
    const PropertyValue* value = formField(Field::Keywords).keyRow().peek(form);
    for (const QString& keyword : keywordsOfValue(value ? value->variant() : QVariant())) {
        if (QString refusal = keywordRefusal(keyword); !refusal.isEmpty())
            return refusal;
    }
    return {};
}

void StartProcessChain::clickedStartProcess() {
    if (m_running)
        return;
    ProcessingOptions& options = m_objects.options;
    if (options.isRemoveGroups() && !options.clean().any()) {
        m_objects.prompt.ask(noOptionsAlert());
        return;
    }
    // A keyword that IPTC has no room for is refused before anything is written.
    if (!options.isRemoveGroups()) {
        if (const QString refusal = keywordsRefusal(); !refusal.isEmpty()) {
            m_objects.prompt.ask(Alert::ok(
                QCoreApplication::translate("StartProcessChain", "Keyword too long"), refusal));
            return;
        }
    }
    m_running = true;
    m_values = RunValues{};
    m_values.processingMode = options.mode();
    m_values.clean = options.clean();
    m_values.overwriteExisting =
        options.overwriteExisting || m_objects.settings.isOverwriteIfAFileWithASameNameOrDefault();
    m_values.renameSettings = m_objects.renameSettings;

    Alert confirmation;
    switch (options.mode()) {
    case ProcessingMode::keepUnedited:
        confirmation = m_objects.editorState.fieldEditedFlags.hasEdits() ||
                               m_objects.editorState.extras.writesTags() ||
                               m_objects.editorState.writesPhotoValues()
                           ? editConfirmation()
                           : noChangesQuestion();
        break;
    case ProcessingMode::clearUnedited:
        confirmation = clearConfirmation();
        break;
    case ProcessingMode::removeGroups:
        confirmation = removeConfirmation();
        break;
    }
    const bool yes = [&] {
        const Cover cover(*this);
        return m_objects.prompt.ask(confirmation) == 0;
    }();
    if (!yes) {
        end();
        return;
    }
    chooseSaveOption();
}

void StartProcessChain::chooseSaveOption() {
    if (m_objects.options.isRemoveGroups()) {
        if (!m_objects.options.clean().any()) {
            m_objects.prompt.ask(noOptionsAlert());
            end();
            return;
        }
        startProcessing();
        return;
    }
    // The stored preference says whether to offer a preset (on by default); "Do not show
    // again" in the sheet turns it off, as the preference's check box does.
    if (!m_objects.settings.isPresetSavingSettingInHomeOrDefault()) {
        startProcessing();
        return;
    }
    showPresetSheet();
}

void StartProcessChain::showPresetSheet() {
    const QString proposed = m_presets.defaultName ? m_presets.defaultName() : QString();
    QString text = proposed;
    m_cover.emplace(*this);
    while (true) {
        const TextAnswer answer = m_objects.prompt.askForText(presetSheet(text));
        if (answer.button != 0) {
            skipAndProcessed(answer.suppressed);
            return;
        }
        text = answer.text.trimmed();
        if (text.isEmpty()) {
            m_objects.prompt.ask(invalidPresetNameAlert());
            continue;
        }
        if (presetNameRefusal(text)) {
            m_objects.prompt.ask(
                Alert::ok(QCoreApplication::translate("StartProcessChain", "Invalid Preset name."),
                          unfitPresetNameText()));
            continue;
        }
        if (m_presets.nameExists && m_presets.nameExists(text)) {
            m_objects.prompt.ask(presetNameTakenAlert());
            continue;
        }
        if (m_presets.save)
            m_presets.save(text);
        skipAndProcessed(answer.suppressed);
        return;
    }
}

void StartProcessChain::skipAndProcessed(bool suppressed) {
    if (suppressed)
        m_objects.settings.setIsPresetSavingSettingInHome(false);
    m_cover.reset();
    later(100, &StartProcessChain::startProcessing);
}

void StartProcessChain::startProcessing() {
    const WorkingSet& set = m_objects.workingSet;
    if (set.markedCount() == 0) {
        m_objects.prompt.ask(noPhotosAlert());
        end();
        return;
    }
    bool offerKeepSource = true;
    for (const CGImageProperties& record : set.workingImages()) {
        if (record.isSelected && isInPhotoLibrary(record.path()))
            offerKeepSource = false;
    }
    m_cover.emplace(*this);
    const PanelAnswer answer =
        m_objects.prompt.openPanelWithAccessory(destinationPanel(offerKeepSource));
    if (answer.accessoryClicked) {
        keepSourceFolderPath();
        return;
    }
    if (answer.paths.isEmpty()) {
        end();
        return;
    }
    const QString folder = answer.paths.first();
    if (!m_objects.folders.mayHoldOutput(folder)) {
        later(300, &StartProcessChain::reopenDestination);
        return;
    }
    m_objects.folders.grant(folder);
    m_values.destinationFolder = QFileInfo(folder).absoluteFilePath();
    m_values.isDestinationPathAsSource = false;
    m_cover.reset();
    later(100, &StartProcessChain::finalProcess);
}

void StartProcessChain::reopenDestination() {
    m_objects.prompt.ask(outsideHomeAlert());
    m_cover.reset();
    later(100, &StartProcessChain::startProcessing);
}

void StartProcessChain::keepSourceFolderPath() {
    m_cover.reset();
    if (!m_objects.folders.homeAccessGranted()) {
        m_cover.emplace(*this);
        if (!m_objects.folders.askForHomeAccess(m_objects.prompt)) {
            // A cancelled grant leaves the user at the main screen, free to try again.
            end();
            return;
        }
        m_cover.reset();
    }
    m_values.destinationFolder.reset();
    m_values.isDestinationPathAsSource = true;
    later(300, &StartProcessChain::finalProcess);
}

void StartProcessChain::finalProcess() {
    if (m_values.isDestinationPathAsSource && !m_objects.folders.homeAccessGranted()) {
        m_objects.prompt.ask(accessRequiredAlert());
        end();
        return;
    }
    if (!m_values.isDestinationPathAsSource && !m_values.overwriteExisting && collisionForecast()) {
        const Cover cover(*this);
        if (m_objects.prompt.ask(overwriteQuestion()) == 0)
            m_values.overwriteExisting = true;
    }
    // The snapshot: the form as it stands, the flags and the date rules.
    m_values.editedProperties = m_objects.form.readForm();
    m_values.fieldEditedFlags = m_objects.editorState.fieldEditedFlags;
    m_values.editorDates = m_objects.editorState.editorDates().rules();
    m_values.carryShifts = m_objects.editorState.carryShifts;
    m_values.extras = m_objects.editorState.extras;
    m_values.photoValues = m_objects.editorState.photoValues;
    m_values.sidecar = sidecarOptionsFrom(m_objects.settings);
    addEditorPhotoValues(m_values, m_objects.editorState);
    // An imported table's cells may hold placeholders too.
    PhotoTemplates::addTo(m_values,
                          PhotoTemplates::markedPhotos(m_objects.workingSet.workingImages()),
                          !m_values.photoValues.empty());
    later(100, &StartProcessChain::executeFinalProcess);
}

void StartProcessChain::executeFinalProcess() {
    m_running = false;
    // The cover stays over the run screen until runClosed().
    m_cover.emplace(*this);
    emit runReady(m_values);
}

bool StartProcessChain::collisionForecast() const {
    if (!m_values.destinationFolder)
        return false;
    // Every photo of the list, marked or not, with the rename number as it stands: the names
    // of a numbered format are all forecast with one number.
    const PhotoPipeline pipeline(m_values);
    const auto& images = m_objects.workingSet.workingImages();
    const int total = int(images.size());
    for (int i = 0; i < total; ++i) {
        const PhotoPlan plan = pipeline.plan(images[i], i + 1, total, m_objects.numbering.next());
        if (plan.hasUrl && !plan.finalPath.isEmpty() && QFileInfo::exists(plan.finalPath))
            return true;
    }
    return false;
}

} // namespace tagmoor
