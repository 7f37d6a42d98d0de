#include "editor/DateSummary.h"

#include "dates/DateTexts.h"

#include <QCoreApplication>

namespace tagmoor {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("DateSummary", text);
}

QString part(const char* name, const QString& value) {
    return QStringLiteral(" ") + tr(name) + QStringLiteral(": ") + value + QStringLiteral(" ");
}

// The parts of a row, each added when its keep box is off (and, for the live summary, when
// its number is not 0).
struct Parts {
    SummaryParts shown;
    QString text;

    void add(const char* name, int value, bool kept) {
        if (kept || (shown == SummaryParts::nonZero && value == 0))
            return;
        text += part(name, QString::number(value));
    }
};

QString keepOriginal() {
    return tr("Keep Original");
}

QString updateText(const UpdateDate& u, const std::optional<QDateTime>& slot, SummaryParts shown) {
    Parts row{shown, {}};
    row.add("Day", u.changeDays, u.isKeepOriginalDays);
    row.add("Month", u.changeMonths, u.isKeepOriginalMonths);
    row.add("Year", u.changeYears, u.isKeepOriginalYears);
    QString parts = row.text;
    if (parts.isEmpty() && u.isKeepOriginalTime)
        return keepOriginal();
    if (u.isKeepOriginalTime)
        parts += QStringLiteral(" ") + tr("Time") + QStringLiteral(": ") + keepOriginal();
    else
        parts += part("Time", slot ? formatWithPattern(*slot, u"h:mm:ss a") : QString());
    return tr("Update: ") + parts;
}

QString incDecText(const QString& parts) {
    return parts.isEmpty() ? keepOriginal() : tr("Inc/Dec: ") + parts;
}

} // namespace

QString dateSummary(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot,
                    SummaryParts shown) {
    if (rule.isEmptyValue)
        return tr("Empty Value");
    if (rule.isSelectDate)
        return rule.selectDate ? mediumDateTimeText(*rule.selectDate) : QString();
    if (rule.isUpdateDate)
        return updateText(rule.updateDate, slot, shown);
    if (rule.isIDOD) {
        Parts row{shown, {}};
        row.add("Day", rule.idod.changeDays, rule.idod.isKeepOriginalDays);
        row.add("Month", rule.idod.changeMonths, rule.idod.isKeepOriginalMonths);
        row.add("Year", rule.idod.changeYears, rule.idod.isKeepOriginalYears);
        return incDecText(row.text);
    }
    if (rule.isIDOT) {
        Parts row{shown, {}};
        row.add("Hour", rule.idot.changeHours, rule.idot.isKeepOriginalHours);
        row.add("Minute", rule.idot.changeMinutes, rule.idot.isKeepOriginalMinutes);
        row.add("Second", rule.idot.changeSeconds, rule.idot.isKeepOriginalSeconds);
        return incDecText(row.text);
    }
    return keepOriginal();
}

} // namespace tagmoor
