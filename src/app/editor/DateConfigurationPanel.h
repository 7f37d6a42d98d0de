#pragma once

#include "dates/DateField.h"
#include "editor/DatePanelState.h"

#include <QFrame>
#include <QHash>

#include <memory>

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QDateTimeEdit;
class QGridLayout;
class QLineEdit;
class QRadioButton;
class QTimeEdit;
class QToolButton;

namespace tagmoor {

class MetadataForm;

// The popover in which the user sets the rule of one date field: six exclusive modes with
// their inputs. While it is open the form's date field shows the summary of what is set; when
// it closes (a click outside, Escape, or close()) the rule goes to the form's store. A thin
// view over DatePanelState.
class DateConfigurationPanel : public QFrame {
    Q_OBJECT
public:
    DateConfigurationPanel(MetadataForm& form, DateField field, QWidget* parent = nullptr);
    ~DateConfigurationPanel() override;

    // Shows the panel just below `anchor` (the date button).
    void popupAt(const QWidget* anchor);

    const DatePanelState& state() const { return *m_state; }
    QRadioButton* modeButton(DateMode mode) const { return m_modes.value(mode); }
    QLineEdit* numberField(DatePart part) const { return m_numbers.value(part); }
    QCheckBox* keepBox(DatePart part) const { return m_keeps.value(part); }
    // The up and down buttons beside an increment field.
    QToolButton* stepButton(DatePart part, bool up) const;
    QDateTimeEdit* selectDatePicker() const { return m_selectPicker; }
    QTimeEdit* timePicker() const { return m_timePicker; }
    QCheckBox* carryBox() const { return m_carry; }
    QLineEdit* zoneField() const { return m_zone; }
    QCheckBox* localTimeBox() const { return m_localTime; }

signals:
    // The rule was stored; the panel is about to go.
    void committed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void build();
    void addCarryChoice(QGridLayout* grid, int row);
    void addZoneChoice(QGridLayout* grid, int row);
    void addModeButton(QGridLayout* grid, int row, DateMode mode, const QString& text,
                       const char* name);
    void addPartRow(QGridLayout* grid, int row, DatePart part, const QString& label,
                    const char* labelName, const char* fieldName, const char* stepperName,
                    const char* keepName);
    void chooseMode(DateMode mode);
    void numberTyped(DatePart part, const QString& text);
    void numberFinished(DatePart part);
    // Puts the state into the controls, and its summary into the form's date field.
    void showState(bool withSummary);

    MetadataForm& m_form;
    DateField m_field;
    std::unique_ptr<DatePanelState> m_state;
    bool m_committed = false;
    QButtonGroup* m_modeGroup = nullptr;
    QHash<DateMode, QRadioButton*> m_modes;
    QHash<DatePart, QLineEdit*> m_numbers;
    QHash<DatePart, QCheckBox*> m_keeps;
    QHash<DatePart, QWidget*> m_steppers;
    QDateTimeEdit* m_selectPicker = nullptr;
    QTimeEdit* m_timePicker = nullptr;
    QCheckBox* m_carry = nullptr;
    QLineEdit* m_zone = nullptr;
    QCheckBox* m_localTime = nullptr;
};

} // namespace tagmoor
