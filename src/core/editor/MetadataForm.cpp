#include "editor/MetadataForm.h"

#include "batch/FormSnapshot.h"
#include "dates/DateTexts.h"
#include "editor/DateSummary.h"
#include "editor/EditorState.h"
#include "editor/FieldDisplay.h"
#include "editor/FormPopups.h"
#include "foundation/UserPrompt.h"
#include "foundation/ValueForm.h"
#include "geo/CoordinateText.h"
#include "model/FormFieldTable.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tagmoor {

namespace {

// The photo as a run will leave its position: a place put on it by the geotag panel stands in
// its GPS fields (degrees without sign, and their references).
CGImageProperties withPlacedPosition(const CGImageProperties& record,
                                     const PlacedPositions& placed) {
    const auto place = record.url ? placed.constFind(record.path()) : placed.cend();
    if (place == placed.cend())
        return record;
    CGImageProperties shown = record;
    if (!shown.gpsProperties)
        shown.gpsProperties.emplace();
    GPSProperties& gps = *shown.gpsProperties;
    gps.latitude = PropertyValue(std::fabs(place->latitude));
    gps.latitudeRef = PropertyValue(QString::fromLatin1(place->latitude < 0 ? "S" : "N"));
    gps.longitude = PropertyValue(std::fabs(place->longitude));
    gps.longitudeRef = PropertyValue(QString::fromLatin1(place->longitude < 0 ? "W" : "E"));
    if (place->elevation) {
        gps.altitude = PropertyValue(std::fabs(*place->elevation));
        gps.altitudeRef = PropertyValue(quint8(*place->elevation < 0 ? 1 : 0));
    }
    return shown;
}

// The reference popup that signs a coordinate field.
Field referenceOf(Field coordinate) {
    return coordinate == Field::GPSLatitude ? Field::GPSLatitudeRef : Field::GPSLongitudeRef;
}

} // namespace

QString multipleValuesText() {
    return QCoreApplication::translate("MetadataForm", "Multiple Values");
}

QString emptyValuePlaceholderText() {
    return QCoreApplication::translate("MetadataForm", "Empty value in all images");
}

MetadataForm::MetadataForm(const WorkingSet& workingSet, EditorState& state, UserPrompt& prompt,
                           bool isHome, QObject* parent)
    : QObject(parent), m_set(workingSet), m_state(state), m_prompt(prompt), m_isHome(isHome) {}

void MetadataForm::setEnableComponents(bool on) {
    if (m_isEnableComponents == on)
        return;
    m_isEnableComponents = on;
    emit enableComponentsChanged(on);
}

QString MetadataForm::placeholderText(Field field) const {
    switch (placeholder(field)) {
    case Placeholder::MultipleValues:
        return multipleValuesText();
    case Placeholder::EmptyInAllImages:
        return emptyValuePlaceholderText();
    case Placeholder::None:
        break;
    }
    return {};
}

bool MetadataForm::isEdited(Field field) const {
    return m_isHome && m_state.fieldEditedFlags.test(field);
}

DateRuleStore& MetadataForm::dateStore() const {
    return m_state.dateStores.forPanel(m_isHome);
}

QList<const CGImageProperties*> MetadataForm::selectedRecords() const {
    QList<const CGImageProperties*> records;
    const auto& images = m_set.workingImages();
    records.reserve(m_selection.size());
    for (int i : m_selection) {
        if (i >= 0 && i < images.size())
            records.append(&images[i]);
    }
    return records;
}

void MetadataForm::setPlaceholders(Placeholder placeholder) {
    m_placeholders.fill(placeholder);
}

void MetadataForm::clearFields(bool resetDates) {
    for (QString& text : m_texts)
        text.clear();
    m_rows.fill(FormPopups::kBlankRow);
    m_sidecarSources.fill({});
    if (resetDates) {
        m_state.originalDates = OriginalDate{};
        dateStore().reset();
    }
    emit formReset();
}

namespace {

// Selections longer than this are merged a part per turn of the event loop, each part
// stopping after kMergeTurnMs, so that marking a hundred thousand photos never stalls the
// window; shorter ones are merged at once.
constexpr qsizetype kMergeAtOnce = 8192;
constexpr qint64 kMergeTurnMs = 8;
constexpr std::size_t kMergeRun = 512;

} // namespace

void MetadataForm::updateMetadataInfo(int index, bool isMultipleSelected,
                                      const QList<int>& indexes) {
    ++m_choice; // a merge still under way is for an earlier choice
    m_pendingMerge.reset();
    const auto& images = m_set.workingImages();
    if (images.isEmpty() || index < 0 || index >= images.size()) {
        m_tempProperty = readForm();
        m_selection.clear();
        clearFields(false);
        return;
    }
    m_state.currentImageIndex = index;
    m_selection = isMultipleSelected ? indexes : QList<int>{index};
    if (!m_selection.contains(index))
        m_selection.prepend(index);
    m_state.originalDates = OriginalDate::of(images[index]);

    if (m_selection.size() > kMergeAtOnce) {
        m_pendingMerge.emplace(PendingMerge{index, SelectionMerger(images[index])});
        // The first part too waits for the next turn: the choice itself (marking every
        // photo, say) has just had a turn's worth of work.
        QTimer::singleShot(0, this, [this, choice = m_choice] { continueMerge(choice); });
    } else if (m_selection.size() > 1) {
        QList<const CGImageProperties*> records = selectedRecords();
        records.removeOne(&images[index]);
        records.prepend(&images[index]);
        MergedSelection merged = mergeSelection(records);
        showSelection(index, std::move(merged.record), merged.placeholders);
    } else {
        showSelection(index, withPlacedPosition(images[index], m_state.placedPositions),
                      PerField<Placeholder>{});
    }
}

void MetadataForm::continueMerge(quint64 choice) {
    if (choice != m_choice || !m_pendingMerge)
        return;
    const auto& images = m_set.workingImages();
    PendingMerge& merge = *m_pendingMerge;
    if (merge.index >= images.size()) {
        // The list lost the photo on display; the screen makes a new choice.
        m_pendingMerge.reset();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    std::vector<const CGImageProperties*> run;
    run.reserve(kMergeRun);
    while (merge.next < m_selection.size() && clock.elapsed() < kMergeTurnMs) {
        run.clear();
        while (merge.next < m_selection.size() && run.size() < kMergeRun) {
            const int i = m_selection[merge.next++];
            if (i != merge.index && i >= 0 && i < images.size())
                run.push_back(&images[i]);
        }
        merge.merger.add(run.data(), run.data() + run.size());
    }
    if (merge.next < m_selection.size()) {
        QTimer::singleShot(0, this, [this, choice] { continueMerge(choice); });
        return;
    }
    MergedSelection merged = merge.merger.result();
    const int index = merge.index;
    m_pendingMerge.reset();
    showSelection(index, std::move(merged.record), merged.placeholders);
}

void MetadataForm::showSelection(int index, CGImageProperties record,
                                 const PerField<Placeholder>& placeholders) {
    // What the user typed stays: an edited field keeps its text whatever the photos hold, so
    // that marking another photo never loses an edit the run is to write.
    const auto texts = m_texts;
    const auto rows = m_rows;
    for (QString& text : m_texts)
        text.clear();
    m_rows.fill(FormPopups::kBlankRow);
    m_placeholders = placeholders;
    m_tempProperty = std::move(record);
    showRecord(m_tempProperty);
    noteSidecarSources();

    const CGImageProperties& shown = m_set.workingImages()[index];
    m_selectedLatitude.reset();
    m_selectedLongitude.reset();
    if (shown.gpsProperties) {
        m_selectedLatitude = shown.gpsProperties->latitude.real();
        m_selectedLongitude = shown.gpsProperties->longitude.real();
    }

    if (m_isHome) {
        for (const FormField& field : formFields()) {
            if (!field.isDate() && m_state.fieldEditedFlags.test(field.field)) {
                m_texts[field.field] = texts[field.field];
                m_rows[field.field] = rows[field.field];
            }
        }
        // An edited position, typed or picked, is where the picker opens next.
        for (const Field field : {Field::GPSLatitude, Field::GPSLongitude}) {
            const auto coordinate = formCoordinate(field);
            if (coordinate && isEdited(field))
                (field == Field::GPSLatitude ? m_selectedLatitude : m_selectedLongitude) =
                    *coordinate;
        }
    }
    refreshDateSummaries();
    emit formReset();
}

void MetadataForm::noteSidecarSources() {
    m_sidecarSources.fill({});
    for (const CGImageProperties* record : selectedRecords()) {
        if (record->sidecarPath.isEmpty())
            continue;
        for (const FormField& field : formFields()) {
            if (!record->sidecarKeys.contains(QLatin1String(field.keyRow().key)))
                continue;
            SidecarSource& source = m_sidecarSources[field.field];
            if (source.photos++ == 0)
                source.path = record->sidecarPath;
        }
    }
}

void MetadataForm::showRecord(const CGImageProperties& record) {
    for (const FormField& field : formFields()) {
        if (field.kind == FormKind::Popup) {
            m_rows[field.field] = FieldDisplay::popupRow(record, field);
            continue;
        }
        const QString text = FieldDisplay::text(record, field);
        if (!text.isEmpty())
            m_texts[field.field] = text;
    }
}

void MetadataForm::showPreset(const CGImageProperties& values, const OriginalFinalDate& rules) {
    m_textBeforeSummary.reset();
    // The preset's values are the edits now, also those a cleaning mode held for its return.
    m_heldEdits.reset();
    for (QString& text : m_texts)
        text.clear();
    m_rows.fill(FormPopups::kBlankRow);
    showRecord(values);
    dateStore().replace(rules);
    if (m_isHome) {
        m_state.fieldEditedFlags.clearAll();
        for (const FormField& field : formFields()) {
            if (presetHoldsValue(values, field.field))
                m_state.fieldEditedFlags.set(field.field, true);
        }
    }
    refreshDateSummaries();
    emit editedFlagsChanged();
    emit formReset();
}

void MetadataForm::refreshDateSummaries() {
    const OriginalFinalDate& rules = dateStore().rules();
    bool flagged = false;
    for (DateField field : allDateFields) {
        if (!rules.alive(field))
            continue;
        const Field shown = formFieldOf(field);
        if (m_isHome && !m_state.fieldEditedFlags.test(shown)) {
            m_state.fieldEditedFlags.set(shown, true);
            flagged = true;
        }
        m_texts[shown] = dateSummary(rules.rule(field), rules.slot(field));
        emit fieldChanged(shown);
    }
    if (flagged)
        emit editedFlagsChanged();
}

CGImageProperties MetadataForm::readForm() const {
    CGImageProperties record = FormSnapshot::empty();
    const OriginalFinalDate& rules = dateStore().rules();
    for (const FormField& field : formFields()) {
        PropertyValue& value = *field.keyRow().field(record);
        switch (field.kind) {
        case FormKind::Text:
        case FormKind::Integer:
        case FormKind::Decimal:
            // A text the field cannot take leaves the empty form's value (0 for numbers).
            FormSnapshot::setText(record, field, m_texts[field.field]);
            break;
        case FormKind::Popup:
            if (auto chosen = FormPopups::valueOfRow(field.field, m_rows[field.field]))
                value = *chosen;
            else if (isEdited(field.field))
                value.clear(); // the blank row chosen on purpose: no value
            break;
        case FormKind::Date:
            if (!m_texts[field.field].isEmpty()) {
                if (const auto date = dateFieldOf(field.field); date && rules.slot(*date))
                    value = PropertyValue(*rules.slot(*date));
            }
            break;
        }
    }
    FormSnapshot::signCoordinates(record);
    return record;
}

namespace {

// Whether every marked photo still in the list passes `holds` (`whenNone` when none is). It
// stops at the first that fails, without listing the marked photos first: a paste onto many
// thousand photos asks them for each field it edits.
template <typename Images, typename Holds>
bool everyMarked(const Images& images, const QList<int>& selection, bool whenNone, Holds holds) {
    bool any = false;
    for (int i : selection) {
        if (i < 0 || i >= images.size())
            continue;
        any = true;
        if (!holds(images[i]))
            return false;
    }
    return any || whenNone;
}

} // namespace

bool MetadataForm::selectionHoldsText(Field field, const QString& text) const {
    return everyMarked(m_set.workingImages(), m_selection, text.isEmpty(),
                       [&](const CGImageProperties& record) {
                           return FieldDisplay::text(record, formField(field)) == text;
                       });
}

bool MetadataForm::selectionHoldsRow(Field field, int row) const {
    return everyMarked(m_set.workingImages(), m_selection, row == FormPopups::kBlankRow,
                       [&](const CGImageProperties& record) {
                           return FieldDisplay::popupRow(record, formField(field)) == row;
                       });
}

void MetadataForm::setFlag(Field field, bool edited) {
    if (!m_isHome || m_state.fieldEditedFlags.test(field) == edited)
        return;
    m_state.fieldEditedFlags.set(field, edited);
    emit editedFlagsChanged();
}

FieldInputResult MetadataForm::editText(Field field, const QString& typed) {
    const FormKind kind = formKind(field);
    if (kind == FormKind::Popup)
        return {typed, std::nullopt};
    if (kind == FormKind::Date) {
        // Date fields are filled by the date panel; typing in them is no edit.
        m_texts[field] = typed;
        return {typed, std::nullopt};
    }
    const FieldInputResult result = checkFieldInput(field, typed);
    m_texts[field] = result.text;
    if (result.text != typed)
        emit fieldChanged(field);
    if (m_isHome)
        setFlag(field, !selectionHoldsText(field, result.text));
    return result;
}

void MetadataForm::choosePopupRow(Field field, int row) {
    if (!FormPopups::isPopup(field))
        return;
    m_rows[field] = row;
    if (m_isHome)
        setFlag(field, !selectionHoldsRow(field, row));
}

bool MetadataForm::chooseReferenceRow(Field field, int row) {
    const bool latitude = field == Field::GPSLatitudeRef;
    const Field coordinate = latitude ? Field::GPSLatitude : Field::GPSLongitude;
    const auto& images = m_set.workingImages();
    const int current = m_state.currentImageIndex;
    if (m_isHome && current >= 0 && current < images.size() &&
        !FieldDisplay::isEmpty(images[current], formField(coordinate))) {
        const QString text =
            latitude ? QCoreApplication::translate(
                           "MetadataForm",
                           "Changing the value of GPS Latitude Ref. will change the current "
                           "selected location. You may edit the correct location using 'Edit "
                           "Location' from the right pane. Are you sure you want to continue?")
                     : QCoreApplication::translate(
                           "MetadataForm",
                           "Changing the value of GPS Longitude Ref. will change the current "
                           "selected location. You may edit the correct location using 'Edit "
                           "Location' from the right pane. Are you sure you want to continue?");
        if (!m_prompt.askYesNo(
                QCoreApplication::translate("MetadataForm", "Location coordinates will change"),
                text))
            return false;
    }
    m_rows[field] = row;
    if (m_isHome && FormPopups::referenceOfRow(row) != FormPopups::ReferenceRow::blank)
        setFlag(field, !selectionHoldsRow(field, row));
    updateCoordinateFlag(coordinate);
    return true;
}

void MetadataForm::takeLocation(double latitude, double longitude) {
    const std::array<std::pair<Field, double>, 2> coordinates{
        std::pair{Field::GPSLatitude, latitude}, std::pair{Field::GPSLongitude, longitude}};
    for (const auto& [coordinate, degrees] : coordinates) {
        const Field reference = referenceOf(coordinate);
        const int row =
            FormPopups::rowOfReference(degrees < 0 ? FormPopups::ReferenceRow::southOrWest
                                                   : FormPopups::ReferenceRow::northOrEast);
        m_rows[reference] = row;
        if (m_isHome)
            setFlag(reference, !selectionHoldsRow(reference, row));
        emit fieldChanged(reference);
        editText(coordinate, coordinateText(float(std::fabs(degrees))));
        emit fieldChanged(coordinate);
        if (m_isHome)
            updateCoordinateFlag(coordinate);
    }
}

std::optional<double> MetadataForm::formCoordinate(Field coordinate) const {
    bool ok = false;
    const double degrees = m_texts[coordinate].trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(degrees))
        return std::nullopt;
    switch (FormPopups::referenceOfRow(m_rows[referenceOf(coordinate)])) {
    case FormPopups::ReferenceRow::northOrEast:
        return std::fabs(degrees);
    case FormPopups::ReferenceRow::southOrWest:
        return -std::fabs(degrees);
    case FormPopups::ReferenceRow::blank:
        break;
    }
    return degrees;
}

void MetadataForm::updateCoordinateFlag(Field field) {
    const auto coordinate = formCoordinate(field);
    if (m_texts[field].isEmpty() || !coordinate) {
        setFlag(field, false);
        return;
    }
    // Each photo's coordinate is compared in the precision it was read with, its sign
    // included: a reference chosen anew changes the position the run writes.
    const KeyRow& row = formField(field).keyRow();
    const QList<const CGImageProperties*> records = selectedRecords();
    const bool allHold =
        !records.isEmpty() &&
        std::all_of(records.begin(), records.end(), [&](const CGImageProperties* record) {
            const PropertyValue* value = row.peek(*record);
            if (!value)
                return false;
            if (const auto d = value->float64())
                return *d == *coordinate;
            const auto f = value->float32();
            return f && *f == float(*coordinate);
        });
    if (allHold) {
        setFlag(field, false);
        return;
    }
    setFlag(field, true);
    (field == Field::GPSLatitude ? m_selectedLatitude : m_selectedLongitude) = *coordinate;
}

void MetadataForm::commitDateRule(DateField field, const DateTimeConfiguration& rule,
                                  const std::optional<QDateTime>& slot) {
    dateStore().commitPanel(field, rule, slot);
    if (m_textBeforeSummary && m_textBeforeSummary->first == field && !isDateRuleTouched(field)) {
        const Field shown = formFieldOf(field);
        m_texts[shown] = m_textBeforeSummary->second;
        emit fieldChanged(shown);
    }
    m_textBeforeSummary.reset();
    refreshDateSummaries();
}

void MetadataForm::showDateSummary(DateField field, const QString& text) {
    const Field shown = formFieldOf(field);
    if (!m_textBeforeSummary || m_textBeforeSummary->first != field)
        m_textBeforeSummary.emplace(field, m_texts[shown]);
    m_texts[shown] = text;
    emit fieldChanged(shown);
}

bool MetadataForm::isDateRuleTouched(DateField field) const {
    return dateStore().rules().alive(field);
}

const std::optional<QDateTime>& MetadataForm::dateSlot(DateField field) const {
    return dateStore().rules().slot(field);
}

const DateTimeConfiguration& MetadataForm::dateRule(DateField field) const {
    return dateStore().rules().rule(field);
}

std::optional<QDateTime> MetadataForm::photoDate(DateField field) const {
    return m_state.originalDates.get(field);
}

bool MetadataForm::isEmptyInAllSelected(Field field) const {
    for (const CGImageProperties* record : selectedRecords()) {
        if (!FieldDisplay::isEmpty(*record, formField(field)))
            return false;
    }
    return true;
}

void MetadataForm::updateMultipleValues() {
    // The standard form keeps what the marked photos hold: each placeholder was set from them
    // when the marks were last told, and "Multiple Values" on a field that is empty in every
    // photo would say something untrue.
    if (isStandardForm())
        return;
    setPlaceholders(Placeholder::MultipleValues);
    emit formReset();
}

void MetadataForm::leaveEditingMode() {
    if (m_heldEdits)
        return;
    m_tempProperty = readForm();
    m_heldEdits = HeldEdits{m_texts, m_rows};
    clearFields(false);
}

void MetadataForm::returnToEditingMode() {
    if (!m_heldEdits)
        return;
    m_isCheckToEditable = true;
    for (const FormField& field : formFields()) {
        if (field.isDate() || !isEdited(field.field))
            continue;
        m_texts[field.field] = m_heldEdits->texts[field.field];
        m_rows[field.field] = m_heldEdits->rows[field.field];
    }
    m_heldEdits.reset();
    m_isCheckToEditable = false;
    // The other fields show the marked photos again, the references among them: a position
    // typed beside an unchanged "W" is still written west.
    if (!m_selection.isEmpty()) {
        const QList<int> selection = m_selection;
        updateMetadataInfo(m_state.currentImageIndex, selection.size() > 1, selection);
        return;
    }
    refreshDateSummaries();
    emit formReset();
}

bool MetadataForm::hasEdits() const {
    return m_state.fieldEditedFlags.hasEdits();
}

void MetadataForm::resetAll() {
    m_heldEdits.reset();
    if (m_isHome)
        m_state.fieldEditedFlags.clearAll();
    m_selectedLatitude.reset();
    m_selectedLongitude.reset();
    setPlaceholders(Placeholder::None);
    clearFields(true);
    emit editedFlagsChanged();
}

void MetadataForm::revertEdits(const std::function<bool(Field)>& which) {
    if (!m_isHome)
        return;
    bool reverted = false;
    for (const FormField& field : formFields()) {
        const std::optional<DateField> date = dateFieldOf(field.field);
        const bool dateTouched = date && dateStore().rules().alive(*date);
        if (!which(field.field) || (!m_state.fieldEditedFlags.test(field.field) && !dateTouched))
            continue;
        m_state.fieldEditedFlags.set(field.field, false);
        if (date) {
            dateStore().forget(*date);
            if (m_textBeforeSummary && m_textBeforeSummary->first == *date)
                m_textBeforeSummary.reset();
        }
        // What the marked photos hold, as the form showed it before the edit.
        const bool shown = !m_selection.isEmpty();
        if (field.kind == FormKind::Popup)
            m_rows[field.field] =
                shown ? FieldDisplay::popupRow(m_tempProperty, field) : FormPopups::kBlankRow;
        else
            m_texts[field.field] = shown ? FieldDisplay::text(m_tempProperty, field) : QString();
        emit fieldChanged(field.field);
        reverted = true;
    }
    if (reverted)
        emit editedFlagsChanged();
}

bool MetadataForm::carriesShifts() const {
    return m_state.carryShifts;
}

void MetadataForm::setCarriesShifts(bool carry) {
    m_state.carryShifts = carry;
}

QString MetadataForm::datesZone() const {
    return m_state.datesZone;
}

void MetadataForm::setDatesZone(const QString& zone) {
    m_state.datesZone = zone;
}

bool MetadataForm::shiftsToLocalTime() const {
    return m_state.shiftToLocalTime;
}

void MetadataForm::setShiftToLocalTime(bool shift) {
    m_state.shiftToLocalTime = shift;
}

} // namespace tagmoor
