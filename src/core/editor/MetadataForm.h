#pragma once

#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"
#include "dates/OriginalFinalDate.h"
#include "editor/FieldInput.h"
#include "editor/PerField.h"
#include "editor/SelectionMerge.h"
#include "model/CGImageProperties.h"
#include "model/Field.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace tagmoor {

class DateRuleStore;
class UserPrompt;
class WorkingSet;
struct EditorState;

// The editor form without its widgets: the text or row of every control, its placeholder,
// and the operations that show photos and take edits. The form's widgets show this state and
// forward each key stroke and choice here, so every behaviour of the editor can be driven by
// a test without a window. Main thread only.
class MetadataForm : public QObject {
    Q_OBJECT
public:
    // `isHome`: the main screen's form (edits are tracked); false for the preset panel's form,
    // which only filters its numbers.
    MetadataForm(const WorkingSet& workingSet, EditorState& state, UserPrompt& prompt, bool isHome,
                 QObject* parent = nullptr);

    bool isHome() const { return m_isHome; }
    bool isEnableComponents() const { return m_isEnableComponents; }
    void setEnableComponents(bool on);

    // What the controls hold.
    QString text(Field field) const { return m_texts[field]; }
    int popupRow(Field field) const { return m_rows[field]; }
    Placeholder placeholder(Field field) const { return m_placeholders[field]; }
    QString placeholderText(Field field) const;
    bool isEdited(Field field) const;

    // Shows the photo `index`, alone or as the first of the marked `indexes`.
    void updateMetadataInfo(int index, bool isMultipleSelected, const QList<int>& indexes);
    // Empties every control and puts every popup on its blank row; with `resetDates` the photo's
    // dates and the date rules are emptied too.
    void clearFields(bool resetDates);
    // Puts a record's values into the controls: texts where the record has one, numbers
    // without zeros, popups on the row of the record's code, dates by their summary.
    void showRecord(const CGImageProperties& record);
    // Sets the summary text of each date field whose rule was touched, and (on the main
    // screen's form) counts it as an edit.
    void refreshDateSummaries();
    // Shows a preset: the form is emptied, the preset's values stand in the controls and its
    // date rules replace this form's store. On the main screen's form the edit flags become
    // the preset's fields (see presetRunEdits), whatever was edited before.
    void showPreset(const CGImageProperties& values, const OriginalFinalDate& rules);
    // Reads every control back into a new record: the snapshot a run takes.
    CGImageProperties readForm() const;

    // The text change path: numeric check, comparison with the photos, edit flag. Gives the
    // text the control is to hold, and the limit message when there is one.
    FieldInputResult editText(Field field, const QString& typed);
    // The popup path, for every popup but the two GPS references.
    void choosePopupRow(Field field, int row);
    // The GPS reference path: asks first when the photo on display has that coordinate.
    // False when the user said "NO": the popup is to go back to its previous row.
    bool chooseReferenceRow(Field field, int row);

    // The date panel's hand-over: the field's rule and date slot are stored, and the field's
    // summary and edit flag follow.
    void commitDateRule(DateField field, const DateTimeConfiguration& rule,
                        const std::optional<QDateTime>& slot);
    // The date panel's live summary: the field shows `text` while the panel is open, without
    // any commit. A field whose rule stays untouched at the commit gets its text back.
    void showDateSummary(DateField field, const QString& text);
    // The store's touched flag of the field.
    bool isDateRuleTouched(DateField field) const;
    const std::optional<QDateTime>& dateSlot(DateField field) const;
    // What the date panel is opened with for a field: the photo's own date, and whether the
    // field is empty in every marked photo.
    std::optional<QDateTime> photoDate(DateField field) const;
    const DateTimeConfiguration& dateRule(DateField field) const;
    bool isEmptyInAllSelected(Field field) const;
    bool isMultipleSelected() const { return m_selection.size() > 1; }

    // UpdateMultipleValuesOTM: every control shows "Multiple Values" when it has no text.
    void updateMultipleValues();
    // Leaving the editing mode for cleaning: the form is read into tempProperty, the controls
    // of the edited fields are held as they stand, and the controls are emptied. Coming back,
    // each edited field gets its text or row back exactly as the user left it. Each is done
    // once: choosing an editing row while editing, or the cleaning row while cleaning, changes
    // nothing.
    void leaveEditingMode();
    void returnToEditingMode();
    bool isCheckToEditable() const { return m_isCheckToEditable; }

    // Any edit at all: what decides "No Changes in Metadata found".
    bool hasEdits() const;
    // Reset All: every control empty, every flag down, the date rules emptied.
    void resetAll();
    // Takes back the edits of the fields `which` picks (date rules included): each shows the
    // marked photos' own value again, and the run leaves it as it is.
    void revertEdits(const std::function<bool(Field)>& which);

    // The picker's hand-over: the position goes into the latitude and longitude fields (as
    // degrees without sign) and their reference popups (N/S, E/W), as edits of the user.
    void takeLocation(double latitude, double longitude);

    // The coordinate the location view and picker start from.
    std::optional<double> selectedLatitude() const { return m_selectedLatitude; }
    std::optional<double> selectedLongitude() const { return m_selectedLongitude; }

    // The shown photos whose value of a field came from their XMP sidecar rather than from
    // their own bytes: how many, and the first one's sidecar.
    struct SidecarSource {
        int photos = 0;
        QString path;
    };
    const SidecarSource& sidecarSource(Field field) const { return m_sidecarSources[field]; }

    // The merged record of the selection, or the record being compared.
    const CGImageProperties& tempProperty() const { return m_tempProperty; }

    // Whether the shifts of the date rules carry into days, months and years (one choice
    // for every date field of the run).
    bool carriesShifts() const;
    void setCarriesShifts(bool carry);
    // The zone of the run's dates as typed, and whether each photo's dates move to the local
    // time of its place (one choice for the run, kept with the edit state).
    QString datesZone() const;
    void setDatesZone(const QString& zone);
    bool shiftsToLocalTime() const;
    void setShiftToLocalTime(bool shift);

signals:
    // Every control is to be shown anew (texts, rows, placeholders, marks).
    void formReset();
    // One control changed its text or row from the core's side.
    void fieldChanged(Field field);
    // Edit flags changed: the marks are to be drawn anew.
    void editedFlagsChanged();
    void enableComponentsChanged(bool on);

private:
    DateRuleStore& dateStore() const;
    void setPlaceholders(Placeholder placeholder);
    void setFlag(Field field, bool edited);
    bool selectionHoldsText(Field field, const QString& text) const;
    bool selectionHoldsRow(Field field, int row) const;
    void updateCoordinateFlag(Field coordinate);
    // The latitude or longitude of the form as a run writes it: the degrees typed, signed by
    // the reference popup when it names a hemisphere. Nothing when the text is no number.
    std::optional<double> formCoordinate(Field coordinate) const;
    QList<const CGImageProperties*> selectedRecords() const;
    // Puts `record` (the photo `index` alone, or the merge of the marked photos) into the
    // controls, keeping what the user typed into edited fields.
    void showSelection(int index, CGImageProperties record,
                       const PerField<Placeholder>& placeholders);
    // One turn's part of a long selection's merge; the last part shows the merge.
    void continueMerge(quint64 choice);
    // Counts, for every field, the shown photos that hold its value from their sidecar.
    void noteSidecarSources();

    // A merge spread over several turns, for the choice numbered `choice`.
    struct PendingMerge {
        int index;
        SelectionMerger merger;
        qsizetype next = 0;
    };
    std::optional<PendingMerge> m_pendingMerge;
    quint64 m_choice = 0;

    const WorkingSet& m_set;
    EditorState& m_state;
    UserPrompt& m_prompt;
    const bool m_isHome;
    bool m_isEnableComponents = true;
    PerField<QString> m_texts;
    PerField<int> m_rows;
    PerField<Placeholder> m_placeholders;
    QList<int> m_selection;
    CGImageProperties m_tempProperty;
    PerField<SidecarSource> m_sidecarSources;
    std::optional<double> m_selectedLatitude;
    std::optional<double> m_selectedLongitude;
    bool m_isCheckToEditable = false;
    // The controls as they stood when the editing mode was left for cleaning.
    struct HeldEdits {
        PerField<QString> texts;
        PerField<int> rows;
    };
    std::optional<HeldEdits> m_heldEdits;
    // The text a date field showed before the panel's live summary replaced it.
    std::optional<std::pair<DateField, QString>> m_textBeforeSummary;
};

// The two placeholder texts.
QString multipleValuesText();
QString emptyValuePlaceholderText();

} // namespace tagmoor
