#include "editor/DateSummary.h"

#include "dates/DateTexts.h"

#include <QCoreApplication>

namespace tagmoor {

namespace {

QString part(const char* name, const QString& value) {
    return QStringLiteral(" ") + QCoreApplication::translate("DateSummary", name) +
           QStringLiteral(": ") + value + QStringLiteral(" ");
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
    return QCoreApplication::translate("DateSummary", "Keep Original");
}

QString updateText(const UpdateDate& u, const std::optional<QDateTime>& slot, SummaryParts shown) {
    Parts row{shown, {}};
    row.add(QT_TRANSLATE_NOOP("DateSummary", "Day"), u.changeDays, u.isKeepOriginalDays);
    row.add(QT_TRANSLATE_NOOP("DateSummary", "Month"), u.changeMonths, u.isKeepOriginalMonths);
    row.add(QT_TRANSLATE_NOOP("DateSummary", "Year"), u.changeYears, u.isKeepOriginalYears);
    QString parts = row.text;
    if (parts.isEmpty() && u.isKeepOriginalTime)
        return keepOriginal();
    if (u.isKeepOriginalTime)
        parts += QStringLiteral(" ") + QCoreApplication::translate("DateSummary", "Time") +
                 QStringLiteral(": ") + keepOriginal();
    else
        parts += part(QT_TRANSLATE_NOOP("DateSummary", "Time"),
                      slot ? formatWithPattern(*slot, u"h:mm:ss a") : QString());
    return QCoreApplication::translate("DateSummary", "Update: ") + parts;
}

QString incDecText(const QString& parts) {
    return parts.isEmpty() ? keepOriginal()
                           : QCoreApplication::translate("DateSummary", "Inc/Dec: ") + parts;
}

} // namespace

QString dateSummary(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot,
                    SummaryParts shown) {
    if (rule.is<EmptyValue>())
        return QCoreApplication::translate("DateSummary", "Empty Value");
    if (const auto* select = rule.as<SelectDate>())
        return select->selectDate ? mediumDateTimeText(*select->selectDate) : QString();
    if (const auto* update = rule.as<UpdateDate>())
        return updateText(*update, slot, shown);
    if (const auto* idod = rule.as<IDOD>()) {
        Parts row{shown, {}};
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Day"), idod->changeDays,
                idod->isKeepOriginalDays);
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Month"), idod->changeMonths,
                idod->isKeepOriginalMonths);
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Year"), idod->changeYears,
                idod->isKeepOriginalYears);
        return incDecText(row.text);
    }
    if (const auto* idot = rule.as<IDOT>()) {
        Parts row{shown, {}};
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Hour"), idot->changeHours,
                idot->isKeepOriginalHours);
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Minute"), idot->changeMinutes,
                idot->isKeepOriginalMinutes);
        row.add(QT_TRANSLATE_NOOP("DateSummary", "Second"), idot->changeSeconds,
                idot->isKeepOriginalSeconds);
        return incDecText(row.text);
    }
    return keepOriginal();
}

} // namespace tagmoor
