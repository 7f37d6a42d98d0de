#include "app/editor/DateConfigurationPanel.h"

#include "dates/ZoneClock.h"
#include "editor/MetadataForm.h"
#include "foundation/ValueForm.h"
#include "model/FormFieldTable.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTimeEdit>
#include <QFont>
#include <QGraphicsOpacityEffect>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QTimeEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

DatePanelState::Opening openingOf(const MetadataForm& form, DateField field) {
    DatePanelState::Opening opening;
    opening.date = form.photoDate(field);
    opening.isMultipleSelected = form.isMultipleSelected();
    opening.isAllEmpty =
        form.isEmptyInAllSelected(dateFieldsInRunOrder()[std::size_t(field)]->field);
    opening.rule = form.dateRule(field);
    opening.slot = form.dateSlot(field);
    opening.isTouched = form.isDateRuleTouched(field);
    return opening;
}

constexpr DatePart kNumberParts[] = {
    DatePart::updateDay,     DatePart::updateMonth,     DatePart::updateYear,
    DatePart::incrementDay,  DatePart::incrementMonth,  DatePart::incrementYear,
    DatePart::incrementHour, DatePart::incrementMinute, DatePart::incrementSecond,
};

} // namespace

DateConfigurationPanel::DateConfigurationPanel(MetadataForm& form, DateField field, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_form(form), m_field(field),
      m_state(std::make_unique<DatePanelState>(openingOf(form, field))) {
    setObjectName(QStringLiteral("DateTimeConfiguration"));
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    build();
    showState(false);
}

DateConfigurationPanel::~DateConfigurationPanel() = default;

void DateConfigurationPanel::build() {
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(14, 12, 14, 12);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    grid->setColumnMinimumWidth(0, 16);

    auto* title = new QLabel(tr("Date/Time Configuration"));
    title->setObjectName(QStringLiteral("lblDateTimeConfiguration"));
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    grid->addWidget(title, 0, 0, 1, 5, Qt::AlignHCenter);

    m_modeGroup = new QButtonGroup(this);
    m_modeGroup->setExclusive(true);
    addModeButton(grid, 1, DateMode::keepOriginal, tr("Keep Original"), "btnKeepOriginal");
    addModeButton(grid, 2, DateMode::emptyValue, tr("Empty Value"), "btnEmptyValue");
    addModeButton(grid, 3, DateMode::selectDate, tr("Select Date:"), "btnSelectDate");
    m_selectPicker = new QDateTimeEdit;
    m_selectPicker->setObjectName(QStringLiteral("datePickerSelectDate"));
    m_selectPicker->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    m_selectPicker->setCalendarPopup(true);
    m_selectPicker->setGraphicsEffect(new QGraphicsOpacityEffect(m_selectPicker));
    grid->addWidget(m_selectPicker, 4, 1, 1, 3);
    connect(m_selectPicker, &QDateTimeEdit::dateTimeChanged, this, [this](const QDateTime& date) {
        m_state->setSelectDate(date);
        showState(true);
    });

    addModeButton(grid, 5, DateMode::updateDate, tr("Update Date:"), "btnUpdateDate");
    addPartRow(grid, 6, DatePart::updateDay, tr("Change Day:"), "lblChangeDayUpdateDate",
               "txtFieldChangeDayUpdateDate", nullptr, "btnKeepOriginalChangeDayUpdateDate");
    addPartRow(grid, 7, DatePart::updateMonth, tr("Change Month:"), "lblChangeMonthUpdateDate",
               "txtFieldChangeMonthUpdateDate", nullptr, "btnKeepOriginalChangeMonthUpdateDate");
    addPartRow(grid, 8, DatePart::updateYear, tr("Change Year:"), "lblChangeYearUpdateDate",
               "txtFieldChangeYearUpdateDate", nullptr, "btnKeepOriginalChangeYearUpdateDate");
    addPartRow(grid, 9, DatePart::updateTime, tr("Change Time:"), "lblChangeTimeUpdateDate",
               nullptr, nullptr, "btnKeepOriginalChangeTimeUpdateDate");
    m_timePicker = new QTimeEdit;
    m_timePicker->setObjectName(QStringLiteral("timePickerChangeTimeUpdateDate"));
    m_timePicker->setDisplayFormat(QStringLiteral("h:mm:ss AP"));
    grid->addWidget(m_timePicker, 9, 2);
    connect(m_timePicker, &QTimeEdit::timeChanged, this, [this](QTime time) {
        m_state->setUpdateTime(time);
        showState(true);
    });

    addModeButton(grid, 10, DateMode::incrementDate, tr("Increment/Decrement Original Date:"),
                  "btnIncrementDecrementOriginalDate");
    addPartRow(grid, 11, DatePart::incrementDay, tr("Change Day:"), "lblChangeDayIDOD",
               "txtFieldChangeDayIDOD", "stepperChangeDayIDOT", "btnKeepOriginalChangeDayIDOD");
    addPartRow(grid, 12, DatePart::incrementMonth, tr("Change Month:"), "lblChangeMonthIDOD",
               "txtFieldChangeMonthIDOD", "stepperChangeMonthIDOT",
               "btnKeepOriginalChangeMonthIDOD");
    addPartRow(grid, 13, DatePart::incrementYear, tr("Change Year:"), "lblChangeYearIDOD",
               "txtFieldChangeYearIDOD", "stepperChangeYearIDOD", "btnKeepOriginalYearIDOD");

    addModeButton(grid, 14, DateMode::incrementTime, tr("Increment/Decrement Original Time:"),
                  "btnIncrementDecrementOriginalTime");
    addPartRow(grid, 15, DatePart::incrementHour, tr("Change Hour:"), "lblChangeHourIDOT",
               "txtFieldChangeHourIDOT", "stepperChangeHourIDOT", "btnKeepOriginalChangeHourIDOT");
    addPartRow(grid, 16, DatePart::incrementMinute, tr("Change Minute:"), "lblChangeMinuteIDOT",
               "txtFieldChagneMinuteIDOT", "stepperChangeMinuteIDOT",
               "btnKeepOriginalChangeMinuteIDOT");
    addPartRow(grid, 17, DatePart::incrementSecond, tr("Change Second:"), "lblChangeSecondIDOT",
               "txtFieldChangeSecondIDOT", "stepperChangeSecondIDOT",
               "btnKeepOriginalChangeSecondIDOT");
    addCarryChoice(grid, 18);
    addZoneChoice(grid, 19);
}

// The zone of the run's dates and the shift to each place's local time: one choice for every
// date field, kept with the edit state.
void DateConfigurationPanel::addZoneChoice(QGridLayout* grid, int row) {
    auto* label = new QLabel(tr("Time zone:"));
    label->setObjectName(QStringLiteral("lblDatesZone"));
    m_zone = new QLineEdit(m_form.datesZone());
    m_zone->setObjectName(QStringLiteral("txtFieldDatesZone"));
    m_zone->setPlaceholderText(tr("none (Europe/Lisbon, +05:45)"));
    m_zone->setToolTip(tr("The dates are written with this zone's offset on each date, in "
                          "OffsetTime and the XMP dates. With the shift, the zone the camera's "
                          "clock was set to (empty: this computer's)."));
    connect(m_zone, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_form.setDatesZone(text);
        const bool refused = !text.trimmed().isEmpty() && !ZoneClock::zoneIdOf(text);
        m_zone->setStyleSheet(refused ? QStringLiteral("color: #c0392b;") : QString());
    });
    m_localTime = new QCheckBox(tr("Shift to the local time of the place"));
    m_localTime->setObjectName(QStringLiteral("btnShiftToLocalTime"));
    m_localTime->setToolTip(tr("Each photo with a GPS position gets the zone of its place, "
                               "and its dates move there from the camera's zone."));
    m_localTime->setChecked(m_form.shiftsToLocalTime());
    connect(m_localTime, &QCheckBox::toggled, this,
            [this](bool on) { m_form.setShiftToLocalTime(on); });
    grid->addWidget(label, row, 0);
    grid->addWidget(m_zone, row, 1, 1, 2);
    grid->addWidget(m_localTime, row + 1, 0, 1, 5);
}

// One choice for the shifts of all date fields, kept with the edit state.
void DateConfigurationPanel::addCarryChoice(QGridLayout* grid, int row) {
    m_carry = new QCheckBox(tr("Carry into days, months and years"));
    m_carry->setObjectName(QStringLiteral("btnCarryShifts"));
    m_carry->setToolTip(tr("Shifts count like a calendar: an hour past midnight is the next "
                           "day, a day past the month's end the next month. Off, each part "
                           "wraps within its own range. Applies to every date field."));
    m_carry->setChecked(m_form.carriesShifts());
    // In the standard form every shift carries, on each photo's own date: no choice to offer.
    m_carry->setVisible(!isStandardForm());
    grid->addWidget(m_carry, row, 0, 1, 5);
    connect(m_carry, &QCheckBox::toggled, this, [this](bool on) { m_form.setCarriesShifts(on); });
}

void DateConfigurationPanel::addModeButton(QGridLayout* grid, int row, DateMode mode,
                                           const QString& text, const char* name) {
    auto* button = new QRadioButton(text);
    button->setObjectName(QString::fromLatin1(name));
    m_modeGroup->addButton(button, int(mode));
    m_modes.insert(mode, button);
    grid->addWidget(button, row, 0, 1, 5);
    connect(button, &QRadioButton::clicked, this, [this, mode] { chooseMode(mode); });
}

void DateConfigurationPanel::addPartRow(QGridLayout* grid, int row, DatePart part,
                                        const QString& label, const char* labelName,
                                        const char* fieldName, const char* stepperName,
                                        const char* keepName) {
    auto* text = new QLabel(label);
    text->setObjectName(QString::fromLatin1(labelName));
    grid->addWidget(text, row, 1);
    if (fieldName) {
        auto* field = new QLineEdit;
        field->setObjectName(QString::fromLatin1(fieldName));
        field->setAlignment(Qt::AlignRight);
        field->setMaximumWidth(90);
        grid->addWidget(field, row, 2);
        m_numbers.insert(part, field);
        connect(field, &QLineEdit::textEdited, this,
                [this, part](const QString& typed) { numberTyped(part, typed); });
        connect(field, &QLineEdit::editingFinished, this, [this, part] { numberFinished(part); });
    }
    if (stepperName) {
        auto* stepper = new QWidget;
        stepper->setObjectName(QString::fromLatin1(stepperName));
        auto* column = new QVBoxLayout(stepper);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        for (const bool up : {true, false}) {
            auto* button = new QToolButton;
            button->setObjectName(QString::fromLatin1(up ? "up" : "down"));
            button->setArrowType(up ? Qt::UpArrow : Qt::DownArrow);
            button->setAutoRepeat(true);
            button->setFixedSize(18, 11);
            column->addWidget(button);
            connect(button, &QToolButton::clicked, this, [this, part, up] {
                m_state->step(part, up ? 1 : -1);
                showState(true);
            });
        }
        grid->addWidget(stepper, row, 3);
        m_steppers.insert(part, stepper);
    }
    auto* keep = new QCheckBox(tr("Keep Original"));
    keep->setObjectName(QString::fromLatin1(keepName));
    grid->addWidget(keep, row, 4);
    m_keeps.insert(part, keep);
    connect(keep, &QCheckBox::toggled, this, [this, part](bool on) {
        m_state->setKept(part, on);
        showState(true);
    });
}

QToolButton* DateConfigurationPanel::stepButton(DatePart part, bool up) const {
    const QWidget* stepper = m_steppers.value(part);
    return stepper ? stepper->findChild<QToolButton*>(QLatin1String(up ? "up" : "down")) : nullptr;
}

void DateConfigurationPanel::popupAt(const QWidget* anchor) {
    adjustSize();
    // Below the button with their right edges in line (the button sits at the pane's right),
    // or above it when there is no room below; always on the screen, clear of its edges.
    QPoint at = anchor->mapToGlobal(QPoint(anchor->width() - width(), anchor->height() + 2));
    if (const QScreen* screen = anchor->screen()) {
        const QRect room = screen->availableGeometry().adjusted(8, 8, -8, -8);
        if (at.y() + height() > room.bottom())
            at.setY(anchor->mapToGlobal(QPoint(0, 0)).y() - height() - 2);
        at.setX(std::clamp(at.x(), room.left(), std::max(room.left(), room.right() - width())));
        at.setY(std::clamp(at.y(), room.top(), std::max(room.top(), room.bottom() - height())));
    }
    move(at);
    show();
    raise();
}

void DateConfigurationPanel::chooseMode(DateMode mode) {
    m_state->chooseMode(mode);
    showState(true);
}

void DateConfigurationPanel::numberTyped(DatePart part, const QString& text) {
    const QString kept = DatePanelState::filterTyped(part, text);
    if (kept != text) {
        QLineEdit* field = m_numbers.value(part);
        const int cursor = field->cursorPosition() - int(text.size() - kept.size());
        field->setText(kept);
        field->setCursorPosition(std::max(0, cursor));
    }
}

void DateConfigurationPanel::numberFinished(DatePart part) {
    const QLineEdit* field = m_numbers.value(part);
    if (!field || field->text() == QString::number(m_state->number(part)))
        return;
    m_state->endEditing(part, field->text());
    showState(true);
}

void DateConfigurationPanel::showState(bool withSummary) {
    const DatePanelState& s = *m_state;
    for (auto it = m_modes.cbegin(); it != m_modes.cend(); ++it) {
        const QSignalBlocker block(it.value());
        it.value()->setChecked(s.mode() == it.key());
        it.value()->setEnabled(s.isModeAvailable(it.key()));
    }
    for (const DatePart part : kNumberParts) {
        QLineEdit* field = m_numbers.value(part);
        field->setText(QString::number(s.number(part)));
        field->setEnabled(s.isPartEnabled(part));
        if (QWidget* stepper = m_steppers.value(part))
            stepper->setEnabled(s.isPartEnabled(part));
    }
    for (auto it = m_keeps.cbegin(); it != m_keeps.cend(); ++it) {
        const QSignalBlocker block(it.value());
        it.value()->setChecked(s.isKept(it.key()));
        it.value()->setEnabled(s.isRowEnabled(modeOf(it.key())));
    }
    {
        const QSignalBlocker block(m_selectPicker);
        m_selectPicker->setDateTime(s.selectDate());
        m_selectPicker->setEnabled(s.mode() == DateMode::selectDate);
        static_cast<QGraphicsOpacityEffect*>(m_selectPicker->graphicsEffect())
            ->setOpacity(m_selectPicker->isEnabled() ? 1.0 : 0.5);
    }
    {
        const QSignalBlocker block(m_timePicker);
        m_timePicker->setTime(s.updateTime());
        m_timePicker->setEnabled(s.isPartEnabled(DatePart::updateTime));
    }
    if (withSummary)
        m_form.showDateSummary(m_field, s.summary());
}

void DateConfigurationPanel::closeEvent(QCloseEvent* event) {
    if (!m_committed) {
        m_committed = true;
        // A number still being typed counts as finished.
        for (const DatePart part : kNumberParts)
            numberFinished(part);
        if (m_state->isChanged()) {
            m_form.commitDateRule(m_field, m_state->rule(), m_state->resultDate());
        } else {
            const DateTimeConfiguration stored = m_form.dateRule(m_field);
            const std::optional<QDateTime> slot = m_form.dateSlot(m_field);
            m_form.commitDateRule(m_field, stored, slot);
        }
        emit committed();
    }
    QFrame::closeEvent(event);
}

} // namespace tagmoor
