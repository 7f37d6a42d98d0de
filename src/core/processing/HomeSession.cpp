#include "processing/HomeSession.h"

#include "dates/DateField.h"
#include "editor/EditorState.h"
#include "editor/FormPopups.h"
#include "exchange/PhotoTemplates.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "metadata/ExtraTags.h"
#include "presets/PresetExtras.h"
#include "presets/PresetForm.h"
#include "presets/PresetStore.h"
#include "processing/ProcessingOptions.h"
#include "processing/ReviewValues.h"
#include "rename/Rename.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>

#include <cmath>

namespace tagmoor {

HomeSession::HomeSession(const Objects& objects, QObject* parent)
    : QObject(parent), m_objects(objects),
      m_form(objects.workingSet, objects.editorState, objects.prompt, true),
      m_chain({objects.workingSet, m_form, objects.editorState, objects.processingOptions,
               objects.folderAccess, objects.settings, objects.prompt, objects.renameNumbering,
               objects.renameSettings}),
      m_batch(objects.prompt, objects.renameNumbering),
      m_exchange(objects.workingSet, objects.editorState, objects.prompt) {
    // The chain's preset sheet saves the form and its date rules as a new preset.
    PresetStore& presets = objects.presets;
    m_chain.setPresetHooks({[&presets] { return presets.defaultName(); },
                            [&presets](const QString& name) {
                                return presets.checkName(name) == PresetStore::NameCheck::Taken;
                            },
                            [this, &presets](const QString& name) {
                                const qsizetype position = presets.addPreset(name);
                                presets.replaceValues(position, presetValuesOf(m_form),
                                                      m_objects.editorState.editorDates().rules());
                                presets.replaceExtras(position,
                                                      presetExtrasOf(m_objects.editorState.extras));
                            }});
    connect(&objects.events, &AppEvents::UpdateMetadataInfoOTM, &m_form,
            [this](const QList<int>& indexes, bool isMultipleSelected, int index) {
                m_form.updateMetadataInfo(index, isMultipleSelected, indexes);
            });
    connect(&objects.workingSet, &WorkingSet::imagesReset, this, [this] {
        if (m_objects.workingSet.isEmpty())
            startNewList();
    });
    connect(&objects.events, &AppEvents::PresetsDetailsOTM, this, [this](PresetsMenuChoice c) {
        if (c.row != PresetMenuRow::savedPreset)
            return;
        const ActualPreset preset = m_objects.presets.preset(c.presetIndex);
        m_presetName = preset.name.value_or(QString());
        // A preset that holds edits beyond the form puts them into the tab as well.
        if (preset.extras)
            setExtraEdits(*preset.extras);
        emit summaryChanged();
    });
    connect(&m_form, &MetadataForm::editedFlagsChanged, this, &HomeSession::summaryChanged);
    connect(&m_form, &MetadataForm::formReset, this, &HomeSession::summaryChanged);
    connect(&m_exchange, &ListExchange::imported, this, &HomeSession::summaryChanged);
}

void HomeSession::startProcess() {
    if (m_objects.workingSet.isScanning())
        return;
    m_chain.clickedStartProcess();
}

RunValues HomeSession::reviewValues() {
    RunValues values = reviewRunValues(m_objects.processingOptions, m_objects.settings,
                                       m_objects.renameSettings, m_form, m_objects.editorState);
    // The review shows each photo's texts with their placeholders filled in, as the run will.
    PhotoTemplates::addTo(values,
                          PhotoTemplates::markedPhotos(m_objects.workingSet.workingImages()),
                          !values.photoValues.empty());
    return values;
}

bool HomeSession::copyMetadata() {
    const auto& images = m_objects.workingSet.workingImages();
    const int shown = m_objects.editorState.currentImageIndex;
    if (shown < 0 || shown >= images.size())
        return false;
    m_clipboard.copy(images[shown], readExtraValuesOf(images[shown].path()));
    return true;
}

void HomeSession::pasteMetadata(const QList<bool>& ticked) {
    ExtraEdits extras = extraEdits();
    m_clipboard.paste(m_form, extras, ticked);
    setExtraEdits(extras);
}

TickQuestion HomeSession::pasteQuestion() const {
    TickQuestion question;
    question.alert = {QCoreApplication::translate("HomeSession", "Paste Metadata"),
                      QCoreApplication::translate("HomeSession",
                                                  "The ticked values become edits of the marked "
                                                  "photos: %1.")
                          .arg(m_objects.workingSet.markedCount()),
                      {QCoreApplication::translate("HomeSession", "Paste"),
                       QCoreApplication::translate("HomeSession", "Cancel")}};
    for (const MetadataClipboard::Entry& entry : m_clipboard.entries()) {
        // A long text shows its start; the whole of it is pasted.
        const QString value = entry.value.simplified();
        question.items << QStringLiteral("%1: %2").arg(
            entry.label, value.size() > 60 ? value.left(59) + QChar(0x2026) : value);
    }
    return question;
}

bool HomeSession::askAndPasteMetadata() {
    if (m_clipboard.isEmpty()) {
        m_objects.prompt.ask(Alert::ok(
            QCoreApplication::translate("HomeSession", "Paste Metadata"),
            QCoreApplication::translate("HomeSession",
                                        "Nothing has been copied. Choose Copy Metadata on a photo "
                                        "whose values you want to give other photos.")));
        return false;
    }
    const TickAnswer answer = m_objects.prompt.askToTick(pasteQuestion());
    if (answer.button != 0 || !answer.ticked.contains(true))
        return false;
    pasteMetadata(answer.ticked);
    return true;
}

void HomeSession::resetAll() {
    letGoOfTheEdits();
    // The values behind the clean boxes go as well, not only what the boxes show.
    m_objects.processingOptions.clearChoices();
}

void HomeSession::startNewList() {
    letGoOfTheEdits();
    emit newListStarted();
}

void HomeSession::letGoOfTheEdits() {
    m_presetName.clear();
    setExtraEdits(ExtraEdits{});
    m_form.resetAll();
    m_objects.renameSettings = Rename{};
    m_objects.processingOptions.reset();
    m_location.reset();
    EditorState& state = m_objects.editorState;
    state.photoValues.clear();
    state.placedPositions.clear();
    state.datesZone.clear();
    state.shiftToLocalTime = false;
}

void HomeSession::placePhotos(const PlacedPositions& positions) {
    for (auto it = positions.cbegin(); it != positions.cend(); ++it)
        m_objects.editorState.placedPositions.insert(it.key(), it.value());
    // The photo on display shows its new place.
    const QList<int> marked = m_objects.workingSet.markedIndices();
    m_form.updateMetadataInfo(m_objects.editorState.currentImageIndex, marked.size() > 1, marked);
    emit summaryChanged();
}

void HomeSession::finishRun() {
    RunValues live;
    m_batch.clickedFinish(live, m_objects.editorState.editorDates(),
                          m_objects.settings.isOverwriteIfAFileWithASameNameOrDefault());
    m_objects.renameSettings = live.renameSettings;
    m_chain.runClosed();
    // The list empties, so the edits and the options start anew; the add screen comes back.
    m_objects.workingSet.clearImages();
    emit m_objects.events.UpdateVCOTM(RootPage::addFiles);
    emit m_objects.events.AfterFinishOTM();
}

std::optional<SharedLocation> HomeSession::takePositionOf(const CGImageProperties& record) {
    const auto lat = record.gpsProperties ? record.gpsProperties->latitude.real() : std::nullopt;
    const auto lon = record.gpsProperties ? record.gpsProperties->longitude.real() : std::nullopt;
    if (!lat || !lon)
        return std::nullopt;
    m_location.set(*lat, *lon);
    return m_location;
}

void HomeSession::locationPickerOpening() {
    if (m_form.selectedLatitude() && m_form.selectedLongitude())
        m_location.set(*m_form.selectedLatitude(), *m_form.selectedLongitude());
}

void HomeSession::takePickedLocation() {
    m_form.takeLocation(m_location.latitude(), m_location.longitude());
}

const ExtraEdits& HomeSession::extraEdits() const {
    return m_objects.editorState.extras;
}

void HomeSession::setExtraEdits(const ExtraEdits& edits) {
    if (m_objects.editorState.extras == edits)
        return;
    m_objects.editorState.extras = edits;
    emit extraEditsChanged();
    emit summaryChanged();
}

void HomeSession::setRating(int stars) {
    ExtraEdits edits = extraEdits();
    edits.rating = stars;
    setExtraEdits(edits);
}

std::optional<std::pair<double, double>> HomeSession::editedPosition() const {
    const auto signedCoordinate = [this](Field coordinate, Field reference) {
        bool ok = false;
        const double degrees = m_form.text(coordinate).trimmed().toDouble(&ok);
        const bool negative = FormPopups::referenceOfRow(m_form.popupRow(reference)) ==
                              FormPopups::ReferenceRow::southOrWest;
        return ok ? std::optional<double>(negative ? -std::fabs(degrees) : degrees) : std::nullopt;
    };
    if (!m_form.isEdited(Field::GPSLatitude) && !m_form.isEdited(Field::GPSLongitude))
        return std::nullopt;
    const auto latitude = signedCoordinate(Field::GPSLatitude, Field::GPSLatitudeRef);
    const auto longitude = signedCoordinate(Field::GPSLongitude, Field::GPSLongitudeRef);
    if (!latitude || !longitude)
        return std::nullopt;
    return std::pair{*latitude, *longitude};
}

QList<RunSummaryItem> HomeSession::summary() const {
    const EditorState& state = m_objects.editorState;
    std::optional<QString> location;
    if (const auto position = editedPosition())
        location = QStringLiteral("%1, %2")
                       .arg(position->first, 0, 'f', 4)
                       .arg(position->second, 0, 'f', 4);
    const bool anyEdit = state.fieldEditedFlags.hasEdits();
    QList<RunSummaryItem> items =
        runSummary({state.fieldEditedFlags, state.editorDates().rules(), m_objects.renameSettings,
                    location, anyEdit ? m_presetName : QString(), &state.extras});
    if (!state.photoValues.empty())
        items << RunSummaryItem{RunSummaryItem::Kind::table,
                                QCoreApplication::translate("HomeSession", "imported tables: %1")
                                    .arg(state.photoValues.size()),
                                -1};
    return items;
}

void HomeSession::clearSummaryItem(const RunSummaryItem& item) {
    switch (item.kind) {
    case RunSummaryItem::Kind::fields:
        m_form.revertEdits([](Field f) { return !dateFieldOf(f) && !isPositionField(f); });
        break;
    case RunSummaryItem::Kind::date:
        if (item.dateIndex >= 0 && item.dateIndex < int(allDateFields.size())) {
            const DateField date = allDateFields[std::size_t(item.dateIndex)];
            m_form.revertEdits([date](Field f) { return dateFieldOf(f) == date; });
        }
        break;
    case RunSummaryItem::Kind::rename:
        m_objects.renameSettings = Rename{};
        break;
    case RunSummaryItem::Kind::location:
        m_form.revertEdits(isPositionField);
        break;
    case RunSummaryItem::Kind::preset:
        m_form.revertEdits([](Field) { return true; });
        m_presetName.clear();
        break;
    case RunSummaryItem::Kind::table:
        m_objects.editorState.photoValues.clear();
        break;
    case RunSummaryItem::Kind::keywords:
    case RunSummaryItem::Kind::rating:
    case RunSummaryItem::Kind::label:
    case RunSummaryItem::Kind::texts:
        clearExtraItem(item.kind);
        return;
    }
    emit summaryChanged();
}

void HomeSession::clearExtraItem(RunSummaryItem::Kind kind) {
    ExtraEdits edits = extraEdits();
    if (kind == RunSummaryItem::Kind::keywords) {
        edits.addKeywords.clear();
        edits.removeKeywords.clear();
    } else if (kind == RunSummaryItem::Kind::rating) {
        edits.rating.reset();
    } else if (kind == RunSummaryItem::Kind::label) {
        edits.label.reset();
    } else {
        edits.texts = {};
        edits.persons.reset();
    }
    setExtraEdits(edits);
}

} // namespace tagmoor
