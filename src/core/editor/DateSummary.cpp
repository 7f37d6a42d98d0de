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

QString part(const char* name, int value) {
    return part(name, QString::number(value));
}

QString keepOriginal() {
    return tr("Keep Original");
}

QString updateText(const UpdateDate& u, const std::optional<QDateTime>& slot) {
    QString parts;
    if (!u.isKeepOriginalDays)
        parts += part("Day", u.changeDays);
    if (!u.isKeepOriginalMonths)
        parts += part("Month", u.changeMonths);
    if (!u.isKeepOriginalYears)
        parts += part("Year", u.changeYears);
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

QString dateSummary(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot) {
    if (rule.isEmptyValue)
        return tr("Empty Value");
    if (rule.isSelectDate)
        return rule.selectDate ? mediumDateTimeText(*rule.selectDate) : QString();
    if (rule.isUpdateDate)
        return updateText(rule.updateDate, slot);
    if (rule.isIDOD) {
        QString parts;
        if (!rule.idod.isKeepOriginalDays)
            parts += part("Day", rule.idod.changeDays);
        if (!rule.idod.isKeepOriginalMonths)
            parts += part("Month", rule.idod.changeMonths);
        if (!rule.idod.isKeepOriginalYears)
            parts += part("Year", rule.idod.changeYears);
        return incDecText(parts);
    }
    if (rule.isIDOT) {
        QString parts;
        if (!rule.idot.isKeepOriginalHours)
            parts += part("Hour", rule.idot.changeHours);
        if (!rule.idot.isKeepOriginalMinutes)
            parts += part("Minute", rule.idot.changeMinutes);
        if (!rule.idot.isKeepOriginalSeconds)
            parts += part("Second", rule.idot.changeSeconds);
        return incDecText(parts);
    }
    return keepOriginal();
}

} // namespace tagmoor
