#pragma once

#include "dates/DateTimeConfiguration.h"

#include <QDateTime>
#include <QString>
#include <QTime>

#include <array>
#include <optional>

namespace tagmoor {

// The six exclusive modes of a date rule, in the order the panel lists them.
enum class DateMode {
    keepOriginal,
    emptyValue,
    selectDate,
    updateDate,
    incrementDate,
    incrementTime,
};

// The parts of the three rows that carry a keep box. All but updateTime have a number; the
// time of the update row comes from its time picker.
enum class DatePart {
    updateDay,
    updateMonth,
    updateYear,
    updateTime,
    incrementDay,
    incrementMonth,
    incrementYear,
    incrementHour,
    incrementMinute,
    incrementSecond,
};

inline constexpr int kDatePartCount = 10;

// The mode whose row holds `part`.
DateMode modeOf(DatePart part);

// The date panel without its widgets: the mode, the numbers and keep boxes of the three rows,
// the two pickers, the date assembled so far (the field's new date slot), and the summary that
// the form's date field shows while the user works. Built for one opening; the rule it holds
// is what the panel stores when it closes. Main thread only.
class DatePanelState {
public:
    struct Opening {
        // The photo's own date of the field; empty when the photo has none.
        std::optional<QDateTime> date;
        bool isMultipleSelected = false;
        // The field is empty in every marked photo.
        bool isAllEmpty = false;
        // The stored rule and date slot of the field, and whether the user touched it.
        DateTimeConfiguration rule;
        std::optional<QDateTime> slot;
        bool isTouched = false;
        // Today, for the defaults when the photo has no date.
        QDateTime now = QDateTime::currentDateTime();
    };

    explicit DatePanelState(const Opening& opening);

    DateMode mode() const { return m_mode; }
    // Switches to `mode` (the five others go off) and, when the mode is available, builds the
    // date and summary of its row. False when the mode is not available.
    bool chooseMode(DateMode mode);
    // The update and increment modes need a date to start from: a photo without one, or a
    // selection in which none has it, can only get Keep Original, Empty Value or Select Date.
    bool isModeAvailable(DateMode mode) const;
    // A row's inputs take input only while their mode is on; a part's number only while its
    // keep box is off. The select picker only in Select Date mode.
    bool isRowEnabled(DateMode mode) const;
    bool isPartEnabled(DatePart part) const;

    int number(DatePart part) const { return m_numbers[std::size_t(part)]; }
    bool isKept(DatePart part) const { return m_keeps[std::size_t(part)]; }
    QDateTime selectDate() const { return m_selectDate; }
    QTime updateTime() const { return m_updateTime; }

    // While typing: what the part's text field is to hold (digits only, and in the increment
    // rows one leading "-").
    static QString filterTyped(DatePart part, const QString& typed);
    // End of editing: the number is put into its range, the row applied. Gives the number kept.
    int endEditing(DatePart part, const QString& text);
    // A stepper click: the number moves by `delta` within the same range, the row applied.
    int step(DatePart part, int delta);
    void setKept(DatePart part, bool kept);
    void setSelectDate(const QDateTime& date);
    void setUpdateTime(const QTime& time);

    // The range of a part's number; the day ranges follow the month of the date so far.
    int lowerBound(DatePart part) const;
    int upperBound(DatePart part) const;

    // The text the form's date field shows for the current state.
    QString summary() const { return m_summary; }
    // The date assembled so far: the field's new date slot.
    std::optional<QDateTime> resultDate() const { return m_resultDate; }
    // The rule the panel stores when it closes.
    DateTimeConfiguration rule() const;
    // Whether the user did anything since the opening. A panel that was only looked at stores
    // nothing new: its inputs hold defaults (the photo's day, month, year and time) that
    // would otherwise differ from an untouched rule and count as an edit.
    bool isChanged() const { return m_changed; }

private:
    void restore(const DateTimeConfiguration& rule);
    void apply();
    void applyUpdateRow();
    void applyIncrementRow(DateMode mode);
    QString buildSummary() const;
    int daysInMonthSoFar() const;
    int clampPart(DatePart part, int value) const;
    // The date the rows start from: the photo's date, or today.
    QDateTime startDate() const { return m_date.value_or(m_now); }

    std::optional<QDateTime> m_date;
    bool m_isMultipleSelected;
    bool m_isAllEmpty;
    QDateTime m_now;
    DateMode m_mode = DateMode::keepOriginal;
    std::array<int, kDatePartCount> m_numbers{};
    std::array<bool, kDatePartCount> m_keeps{};
    QDateTime m_selectDate;
    QTime m_updateTime;
    std::optional<QDateTime> m_resultDate;
    QString m_summary;
    bool m_changed = false;
};

} // namespace tagmoor
