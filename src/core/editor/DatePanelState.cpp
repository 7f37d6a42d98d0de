#include "editor/DatePanelState.h"

#include "dates/DateTexts.h"
#include "editor/DateSummary.h"

#include <algorithm>

namespace tagmoor {

namespace {

std::size_t at(DatePart part) {
    return std::size_t(part);
}

bool isIncrementPart(DatePart part) {
    return modeOf(part) == DateMode::incrementDate || modeOf(part) == DateMode::incrementTime;
}

// The rule text of the assembly: the year in plain decimal, the rest in two digits, and the
// time joined by hyphens, as the date rules build it.
QString ruleText(const DateParts& p) {
    return QString::number(p.year) + QString::asprintf("-%02d-%02d ", p.month, p.day) +
           QString::asprintf("%02d-%02d-%02d", p.hour, p.minute, p.second);
}

// The rule's mode for the panel's mode, with the values of its row.
DateTimeConfiguration::Mode modeOfRows(DateMode mode, const DateRuleInputs& rows) {
    switch (mode) {
    case DateMode::keepOriginal:
        break;
    case DateMode::emptyValue:
        return EmptyValue{};
    case DateMode::selectDate:
        return SelectDate{rows.selectDate};
    case DateMode::updateDate:
        return rows.updateDate;
    case DateMode::incrementDate:
        return rows.idod;
    case DateMode::incrementTime:
        return rows.idot;
    }
    return KeepOriginal{};
}

} // namespace

DateMode modeOf(DatePart part) {
    switch (part) {
    case DatePart::updateDay:
    case DatePart::updateMonth:
    case DatePart::updateYear:
    case DatePart::updateTime:
        return DateMode::updateDate;
    case DatePart::incrementDay:
    case DatePart::incrementMonth:
    case DatePart::incrementYear:
        return DateMode::incrementDate;
    case DatePart::incrementHour:
    case DatePart::incrementMinute:
    case DatePart::incrementSecond:
        return DateMode::incrementTime;
    }
    return DateMode::keepOriginal;
}

DatePanelState::DatePanelState(const Opening& opening)
    : m_date(opening.date), m_isMultipleSelected(opening.isMultipleSelected),
      m_isAllEmpty(opening.isAllEmpty), m_now(opening.now) {
    const QDateTime start = startDate();
    const DateParts parts = datePartsOf(start);
    m_numbers[at(DatePart::updateDay)] = parts.day;
    m_numbers[at(DatePart::updateMonth)] = parts.month;
    m_numbers[at(DatePart::updateYear)] = parts.year;
    m_selectDate = start;
    m_updateTime = QTime(parts.hour, parts.minute, parts.second);
    if (opening.isTouched) {
        restore(opening.rule);
        // The date assembled at the last closing stays the slot until the user changes
        // something, so looking at a rule does not undo it.
        m_resultDate = opening.slot;
    }
    m_summary = buildSummary();
}

void DatePanelState::restore(const DateTimeConfiguration& rule) {
    const DateRuleInputs& rows = rule.inputs();
    const UpdateDate& u = rows.updateDate;
    m_numbers[at(DatePart::updateDay)] = u.changeDays;
    m_numbers[at(DatePart::updateMonth)] = u.changeMonths;
    m_numbers[at(DatePart::updateYear)] = u.changeYears;
    m_keeps[at(DatePart::updateDay)] = u.isKeepOriginalDays;
    m_keeps[at(DatePart::updateMonth)] = u.isKeepOriginalMonths;
    m_keeps[at(DatePart::updateYear)] = u.isKeepOriginalYears;
    m_keeps[at(DatePart::updateTime)] = u.isKeepOriginalTime;
    if (const QTime time(u.changeHours, u.changeMinutes, u.changeSeconds); time.isValid())
        m_updateTime = time;

    m_numbers[at(DatePart::incrementDay)] = rows.idod.changeDays;
    m_numbers[at(DatePart::incrementMonth)] = rows.idod.changeMonths;
    m_numbers[at(DatePart::incrementYear)] = rows.idod.changeYears;
    m_keeps[at(DatePart::incrementDay)] = rows.idod.isKeepOriginalDays;
    m_keeps[at(DatePart::incrementMonth)] = rows.idod.isKeepOriginalMonths;
    m_keeps[at(DatePart::incrementYear)] = rows.idod.isKeepOriginalYears;

    m_numbers[at(DatePart::incrementHour)] = rows.idot.changeHours;
    m_numbers[at(DatePart::incrementMinute)] = rows.idot.changeMinutes;
    m_numbers[at(DatePart::incrementSecond)] = rows.idot.changeSeconds;
    m_keeps[at(DatePart::incrementHour)] = rows.idot.isKeepOriginalHours;
    m_keeps[at(DatePart::incrementMinute)] = rows.idot.isKeepOriginalMinutes;
    m_keeps[at(DatePart::incrementSecond)] = rows.idot.isKeepOriginalSeconds;

    if (rows.selectDate && rows.selectDate->isValid())
        m_selectDate = *rows.selectDate;

    // The panel lists its modes in the order of the rule's.
    m_mode = DateMode(rule.mode().index());
}

bool DatePanelState::isModeAvailable(DateMode mode) const {
    switch (mode) {
    case DateMode::keepOriginal:
    case DateMode::emptyValue:
    case DateMode::selectDate:
        return true;
    case DateMode::updateDate:
    case DateMode::incrementDate:
    case DateMode::incrementTime:
        return m_date || (m_isMultipleSelected && !m_isAllEmpty);
    }
    return false;
}

bool DatePanelState::chooseMode(DateMode mode) {
    if (!isModeAvailable(mode))
        return false;
    m_changed = true;
    m_mode = mode;
    apply();
    return true;
}

bool DatePanelState::isRowEnabled(DateMode mode) const {
    return m_mode == mode && isModeAvailable(mode);
}

bool DatePanelState::isPartEnabled(DatePart part) const {
    return isRowEnabled(modeOf(part)) && !isKept(part);
}

QString DatePanelState::filterTyped(DatePart part, const QString& typed) {
    QString kept;
    for (qsizetype i = 0; i < typed.size(); ++i) {
        const QChar c = typed.at(i);
        if (c.isDigit() && c.unicode() < 128)
            kept += c;
        else if (c == QLatin1Char('-') && i == 0 && isIncrementPart(part))
            kept += c;
    }
    return kept;
}

int DatePanelState::daysInMonthSoFar() const {
    if (m_resultDate)
        if (const auto n = daysInMonth(*m_resultDate))
            return *n;
    if (m_date)
        if (const auto n = daysInMonth(*m_date))
            return *n;
    return 31;
}

int DatePanelState::lowerBound(DatePart part) const {
    switch (part) {
    case DatePart::updateDay:
    case DatePart::updateMonth:
        return 1;
    case DatePart::updateYear:
    case DatePart::updateTime:
        return 0;
    case DatePart::incrementDay:
        return -(daysInMonthSoFar() - 1);
    case DatePart::incrementMonth:
        return -11;
    case DatePart::incrementYear:
        return -100;
    case DatePart::incrementHour:
        return -23;
    case DatePart::incrementMinute:
    case DatePart::incrementSecond:
        return -59;
    }
    return 0;
}

int DatePanelState::upperBound(DatePart part) const {
    switch (part) {
    case DatePart::updateDay:
        return daysInMonthSoFar();
    case DatePart::updateMonth:
        return 12;
    case DatePart::updateYear:
        return datePartsOf(m_now).year;
    case DatePart::updateTime:
        return 0;
    default:
        return -lowerBound(part);
    }
}

int DatePanelState::clampPart(DatePart part, int value) const {
    return std::clamp(value, lowerBound(part), upperBound(part));
}

int DatePanelState::endEditing(DatePart part, const QString& text) {
    m_changed = true;
    // Digits beyond the range of an int are out of range anyway: the bound takes over.
    const qint64 typed = filterTyped(part, text).toLongLong();
    const int value = int(std::clamp<qint64>(typed, -1'000'000'000, 1'000'000'000));
    m_numbers[at(part)] = clampPart(part, value);
    if (modeOf(part) == m_mode)
        apply();
    return number(part);
}

int DatePanelState::step(DatePart part, int delta) {
    m_changed = true;
    m_numbers[at(part)] = clampPart(part, number(part) + delta);
    if (modeOf(part) == m_mode)
        apply();
    return number(part);
}

void DatePanelState::setKept(DatePart part, bool kept) {
    m_changed = true;
    m_keeps[at(part)] = kept;
    if (modeOf(part) == m_mode)
        apply();
}

void DatePanelState::setSelectDate(const QDateTime& date) {
    m_changed = true;
    m_selectDate = date;
    if (m_mode == DateMode::selectDate)
        apply();
}

void DatePanelState::setUpdateTime(const QTime& time) {
    m_changed = true;
    m_updateTime = time;
    if (m_mode == DateMode::updateDate)
        apply();
}

void DatePanelState::apply() {
    switch (m_mode) {
    case DateMode::keepOriginal:
    case DateMode::emptyValue:
        break;
    case DateMode::selectDate:
        m_resultDate = m_selectDate;
        break;
    case DateMode::updateDate:
        applyUpdateRow();
        break;
    case DateMode::incrementDate:
    case DateMode::incrementTime:
        applyIncrementRow(m_mode);
        break;
    }
    m_summary = buildSummary();
}

void DatePanelState::applyUpdateRow() {
    // A kept part, or a number of 0, is taken from the photo's date.
    const QDateTime start = startDate();
    const DateParts own = datePartsOf(start);
    const auto value = [&](DatePart part, int ownValue) {
        const int n = isKept(part) ? 0 : number(part);
        return n == 0 ? ownValue : n;
    };
    const int day = value(DatePart::updateDay, own.day);
    const int month = value(DatePart::updateMonth, own.month);
    const int year = value(DatePart::updateYear, own.year);
    const QDateTime timeSource =
        isKept(DatePart::updateTime) ? start : QDateTime(start.date(), m_updateTime);
    const QString text = QString::asprintf("%02d-%02d-%02d ", year, month, day) +
                         formatWithPattern(timeSource, u"HH:mm:ss Z");
    m_resultDate = parseZonedDate(text);
}

void DatePanelState::applyIncrementRow(DateMode mode) {
    // The numbers that are not zero take the place of those parts of the date so far.
    const QDateTime base = m_resultDate ? *m_resultDate : startDate();
    DateParts parts = datePartsOf(base);
    const auto put = [&](DatePart part, int& target) {
        if (!isKept(part) && number(part) != 0)
            target = number(part);
    };
    if (mode == DateMode::incrementDate) {
        put(DatePart::incrementDay, parts.day);
        put(DatePart::incrementMonth, parts.month);
        put(DatePart::incrementYear, parts.year);
    } else {
        put(DatePart::incrementHour, parts.hour);
        put(DatePart::incrementMinute, parts.minute);
        put(DatePart::incrementSecond, parts.second);
    }
    m_resultDate = parseRuleDate(ruleText(parts));
}

QString DatePanelState::buildSummary() const {
    if (m_mode == DateMode::selectDate)
        return m_selectDate.isValid() ? mediumDateTimeText(m_selectDate) : QString();
    return dateSummary(rule(), m_resultDate, SummaryParts::nonZero);
}

DateTimeConfiguration DatePanelState::rule() const {
    // Every row is kept, so that the panel opens again as it was left.
    DateRuleInputs rows;
    if (m_mode == DateMode::selectDate)
        rows.selectDate = m_selectDate;

    UpdateDate& u = rows.updateDate;
    u.changeDays = number(DatePart::updateDay);
    u.changeMonths = number(DatePart::updateMonth);
    u.changeYears = number(DatePart::updateYear);
    u.changeHours = m_updateTime.hour();
    u.changeMinutes = m_updateTime.minute();
    u.changeSeconds = m_updateTime.second();
    u.timeMode = m_updateTime.hour() >= 12 ? TimeMode::pm : TimeMode::am;
    u.isKeepOriginalDays = isKept(DatePart::updateDay);
    u.isKeepOriginalMonths = isKept(DatePart::updateMonth);
    u.isKeepOriginalYears = isKept(DatePart::updateYear);
    u.isKeepOriginalTime = isKept(DatePart::updateTime);

    rows.idod = {number(DatePart::incrementDay),   number(DatePart::incrementMonth),
                 number(DatePart::incrementYear),  isKept(DatePart::incrementDay),
                 isKept(DatePart::incrementMonth), isKept(DatePart::incrementYear)};
    rows.idot = {number(DatePart::incrementHour),   number(DatePart::incrementMinute),
                 number(DatePart::incrementSecond), isKept(DatePart::incrementHour),
                 isKept(DatePart::incrementMinute), isKept(DatePart::incrementSecond)};
    return {modeOfRows(m_mode, rows), rows};
}

} // namespace tagmoor
