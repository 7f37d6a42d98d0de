#include "DateRuleArgument.h"

#include "dates/DateTexts.h"
#include "editor/FieldValueCheck.h"
#include "model/FormFieldTable.h"

#include <QRegularExpression>

namespace tagmoor::cli {

namespace {

// "+1:00:-30" -> {1, 0, -30}; each part an optional sign and digits.
std::optional<std::array<int, 3>> threeParts(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(':'));
    if (parts.size() != 3)
        return std::nullopt;
    std::array<int, 3> out{};
    for (int i = 0; i < 3; ++i) {
        static const QRegularExpression number(QStringLiteral("^[+-]?\\d{1,6}$"));
        if (!number.match(parts[i].trimmed()).hasMatch())
            return std::nullopt;
        out[i] = parts[i].trimmed().toInt();
    }
    return out;
}

std::optional<DateRuleArgument> fail(QString* error, const QString& message) {
    *error = message;
    return std::nullopt;
}

} // namespace

std::optional<DateRuleArgument> DateRuleArgument::parse(const QString& text, QString* error) {
    const int eq = int(text.indexOf(QLatin1Char('=')));
    if (eq <= 0)
        return fail(error, QStringLiteral("--date wants FIELD=RULE, not '%1'").arg(text));
    const QString fieldName = text.left(eq);
    const QString ruleText = text.mid(eq + 1).trimmed();
    const FormField* field = findFormField(fieldName);
    if (!field || !field->isDate())
        return fail(error, QStringLiteral("'%1' is not a date field (DateTimeOriginal, "
                                          "CreationDate, ModifyDate, CreateDateXMP, "
                                          "ModifyDateXMP, CreateDatePhotoshop)")
                               .arg(fieldName));
    DateRuleArgument arg;
    arg.field = *dateFieldOf(field->field);
    DateTimeConfiguration& rule = arg.rule;

    const int colon = int(ruleText.indexOf(QLatin1Char(':')));
    const QString mode = (colon < 0 ? ruleText : ruleText.left(colon)).toLower();
    const QString value = colon < 0 ? QString() : ruleText.mid(colon + 1).trimmed();

    if (mode == QLatin1String("keep")) {
        rule = KeepOriginal{};
    } else if (mode == QLatin1String("empty")) {
        rule = EmptyValue{};
    } else if (mode == QLatin1String("select")) {
        arg.slot = sharedDateFormatter().parse(value);
        if (!arg.slot)
            return fail(
                error,
                QStringLiteral("select wants a date 'YYYY-MM-DD HH:MM:SS', not '%1'").arg(value));
        rule = SelectDate{arg.slot};
    } else if (mode == QLatin1String("update")) {
        // The parts given are the new values; the rest stay the photo's own. The slot holds
        // the new values, as the date panel leaves it.
        UpdateDate u;
        u.isKeepOriginalDays = u.isKeepOriginalMonths = u.isKeepOriginalYears = true;
        u.isKeepOriginalTime = true;
        int year = 2000, month = 1, day = 1;
        QTime time(0, 0, 0);
        for (const QString& part : value.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QString key = part.section(QLatin1Char('='), 0, 0).trimmed().toLower();
            const QString v = part.section(QLatin1Char('='), 1).trimmed();
            bool ok = false;
            if (key == QLatin1String("time")) {
                time = QTime::fromString(v, QStringLiteral("HH:mm:ss"));
                ok = time.isValid();
                u.isKeepOriginalTime = !ok;
                u.changeHours = time.hour();
                u.changeMinutes = time.minute();
                u.changeSeconds = time.second();
            } else {
                const int n = v.toInt(&ok);
                if (key == QLatin1String("day")) {
                    day = n;
                    u.changeDays = n;
                    u.isKeepOriginalDays = false;
                } else if (key == QLatin1String("month")) {
                    month = n;
                    u.changeMonths = n;
                    u.isKeepOriginalMonths = false;
                } else if (key == QLatin1String("year")) {
                    year = n;
                    u.changeYears = n;
                    u.isKeepOriginalYears = false;
                } else {
                    ok = false;
                }
            }
            if (!ok)
                return fail(error,
                            QStringLiteral("update takes day=D,month=M,year=Y,time=HH:MM:SS, "
                                           "not '%1'")
                                .arg(part));
        }
        if (u.isKeepOriginalDays && u.isKeepOriginalMonths && u.isKeepOriginalYears &&
            u.isKeepOriginalTime)
            return fail(error,
                        QStringLiteral("update needs at least one of day, month, year, time"));
        if (!u.isKeepOriginalYears) {
            if (auto refused = refusedYear(arg.field, year))
                return fail(error, *refused);
        }
        const QDate date(year, month, day);
        if (!date.isValid())
            return fail(
                error,
                QStringLiteral("update: %1-%2-%3 is not a date").arg(year).arg(month).arg(day));
        arg.slot = QDateTime(date, time);
        rule = u;
    } else if (mode == QLatin1String("shift-date") || mode == QLatin1String("shift-time")) {
        const auto parts = threeParts(value);
        if (!parts)
            return fail(error,
                        QStringLiteral("%1 wants three signed numbers like +1:0:-2, not '%2'")
                            .arg(mode, value));
        // A part of zero keeps the photo's own value.
        if (mode == QLatin1String("shift-date")) {
            IDOD d;
            d.changeYears = (*parts)[0];
            d.changeMonths = (*parts)[1];
            d.changeDays = (*parts)[2];
            d.isKeepOriginalYears = d.changeYears == 0;
            d.isKeepOriginalMonths = d.changeMonths == 0;
            d.isKeepOriginalDays = d.changeDays == 0;
            rule = d;
        } else {
            IDOT t;
            t.changeHours = (*parts)[0];
            t.changeMinutes = (*parts)[1];
            t.changeSeconds = (*parts)[2];
            t.isKeepOriginalHours = t.changeHours == 0;
            t.isKeepOriginalMinutes = t.changeMinutes == 0;
            t.isKeepOriginalSeconds = t.changeSeconds == 0;
            rule = t;
        }
    } else {
        return fail(error, QStringLiteral("unknown date rule '%1' (keep, empty, select, update, "
                                          "shift-date, shift-time)")
                               .arg(ruleText));
    }
    if (auto refused = refusedDateRule(arg.field, arg.rule, arg.slot))
        return fail(error, *refused);
    return arg;
}

} // namespace tagmoor::cli
