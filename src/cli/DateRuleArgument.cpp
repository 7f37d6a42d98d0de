#include "DateRuleArgument.h"

#include "dates/DateTexts.h"
#include "editor/FieldValueCheck.h"
#include "model/FormFieldTable.h"

#include <QRegularExpression>

#include <algorithm>
#include <iterator>

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

std::optional<DateRuleArgument> failDateRule(QString* error, const QString& message) {
    *error = message;
    return std::nullopt;
}

// Each rule word's reading of the text after its colon: it fills the argument's rule (and
// slot), or gives the message of what is wrong. `word` is the rule word as written, lowered.
using RuleReader = std::optional<QString> (*)(DateRuleArgument& arg, const QString& word,
                                              const QString& value);

std::optional<QString> readKeep(DateRuleArgument& arg, const QString&, const QString&) {
    arg.rule = KeepOriginal{};
    return std::nullopt;
}

std::optional<QString> readEmpty(DateRuleArgument& arg, const QString&, const QString&) {
    arg.rule = EmptyValue{};
    return std::nullopt;
}

std::optional<QString> readSelect(DateRuleArgument& arg, const QString&, const QString& value) {
    arg.slot = sharedDateFormatter().parse(value);
    if (!arg.slot)
        return QStringLiteral("select wants a date 'YYYY-MM-DD HH:MM:SS', not '%1'").arg(value);
    arg.rule = SelectDate{arg.slot};
    return std::nullopt;
}

// The new values of an update, with the date and time they make.
struct UpdateParts {
    UpdateDate rule;
    int year = 2000;
    int month = 1;
    int day = 1;
    QTime time{0, 0, 0};
};

// One "key=value" part of an update; false when the key or its value is not one it takes.
bool readUpdatePart(UpdateParts& parts, const QString& part) {
    const QString key = part.section(QLatin1Char('='), 0, 0).trimmed().toLower();
    const QString v = part.section(QLatin1Char('='), 1).trimmed();
    UpdateDate& u = parts.rule;
    bool ok = false;
    if (key == QLatin1String("time")) {
        parts.time = QTime::fromString(v, QStringLiteral("HH:mm:ss"));
        ok = parts.time.isValid();
        u.isKeepOriginalTime = !ok;
        u.changeHours = parts.time.hour();
        u.changeMinutes = parts.time.minute();
        u.changeSeconds = parts.time.second();
        return ok;
    }
    const int n = v.toInt(&ok);
    if (key == QLatin1String("day")) {
        parts.day = n;
        u.changeDays = n;
        u.isKeepOriginalDays = false;
    } else if (key == QLatin1String("month")) {
        parts.month = n;
        u.changeMonths = n;
        u.isKeepOriginalMonths = false;
    } else if (key == QLatin1String("year")) {
        parts.year = n;
        u.changeYears = n;
        u.isKeepOriginalYears = false;
    } else {
        return false;
    }
    return ok;
}

// The parts given are the new values; the rest stay the photo's own. The slot holds the new
// values, as the date panel leaves it.
std::optional<QString> readUpdate(DateRuleArgument& arg, const QString&, const QString& value) {
    UpdateParts parts;
    UpdateDate& u = parts.rule;
    u.isKeepOriginalDays = u.isKeepOriginalMonths = u.isKeepOriginalYears = true;
    u.isKeepOriginalTime = true;
    for (const QString& part : value.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        if (!readUpdatePart(parts, part))
            return QStringLiteral("update takes day=D,month=M,year=Y,time=HH:MM:SS, not '%1'")
                .arg(part);
    }
    if (u.isKeepOriginalDays && u.isKeepOriginalMonths && u.isKeepOriginalYears &&
        u.isKeepOriginalTime)
        return QStringLiteral("update needs at least one of day, month, year, time");
    if (!u.isKeepOriginalYears) {
        if (auto refused = refusedYear(arg.field, parts.year))
            return refused;
    }
    const QDate date(parts.year, parts.month, parts.day);
    if (!date.isValid())
        return QStringLiteral("update: %1-%2-%3 is not a date")
            .arg(parts.year)
            .arg(parts.month)
            .arg(parts.day);
    arg.slot = QDateTime(date, parts.time);
    arg.rule = u;
    return std::nullopt;
}

std::optional<QString> shiftPartsError(const QString& word, const QString& value) {
    return QStringLiteral("%1 wants three signed numbers like +1:0:-2, not '%2'").arg(word, value);
}

// A part of zero keeps the photo's own value.
std::optional<QString> readShiftDate(DateRuleArgument& arg, const QString& word,
                                     const QString& value) {
    const auto parts = threeParts(value);
    if (!parts)
        return shiftPartsError(word, value);
    IDOD d;
    d.changeYears = (*parts)[0];
    d.changeMonths = (*parts)[1];
    d.changeDays = (*parts)[2];
    d.isKeepOriginalYears = d.changeYears == 0;
    d.isKeepOriginalMonths = d.changeMonths == 0;
    d.isKeepOriginalDays = d.changeDays == 0;
    arg.rule = d;
    return std::nullopt;
}

std::optional<QString> readShiftTime(DateRuleArgument& arg, const QString& word,
                                     const QString& value) {
    const auto parts = threeParts(value);
    if (!parts)
        return shiftPartsError(word, value);
    IDOT t;
    t.changeHours = (*parts)[0];
    t.changeMinutes = (*parts)[1];
    t.changeSeconds = (*parts)[2];
    t.isKeepOriginalHours = t.changeHours == 0;
    t.isKeepOriginalMinutes = t.changeMinutes == 0;
    t.isKeepOriginalSeconds = t.changeSeconds == 0;
    arg.rule = t;
    return std::nullopt;
}

struct RuleWord {
    const char* word;
    RuleReader read;
};

constexpr RuleWord kRuleWords[] = {
    {"keep", readKeep},     {"empty", readEmpty},          {"select", readSelect},
    {"update", readUpdate}, {"shift-date", readShiftDate}, {"shift-time", readShiftTime},
};

// The date field named before the "="; nothing when the name is no date field's.
std::optional<DateField> dateFieldNamed(const QString& name) {
    const FormField* field = findFormField(name);
    if (!field || !field->isDate())
        return std::nullopt;
    return dateFieldOf(field->field);
}

} // namespace

std::optional<DateRuleArgument> DateRuleArgument::parse(const QString& text, QString* error) {
    const int eq = int(text.indexOf(QLatin1Char('=')));
    if (eq <= 0)
        return failDateRule(error, QStringLiteral("--date wants FIELD=RULE, not '%1'").arg(text));
    const QString fieldName = text.left(eq);
    const QString ruleText = text.mid(eq + 1).trimmed();
    const auto field = dateFieldNamed(fieldName);
    if (!field)
        return failDateRule(error, QStringLiteral("'%1' is not a date field (DateTimeOriginal, "
                                                  "CreationDate, ModifyDate, CreateDateXMP, "
                                                  "ModifyDateXMP, CreateDatePhotoshop)")
                                       .arg(fieldName));
    DateRuleArgument arg;
    arg.field = *field;

    const int colon = int(ruleText.indexOf(QLatin1Char(':')));
    const QString word = (colon < 0 ? ruleText : ruleText.left(colon)).toLower();
    const QString value = colon < 0 ? QString() : ruleText.mid(colon + 1).trimmed();
    const auto rule =
        std::find_if(std::begin(kRuleWords), std::end(kRuleWords),
                     [&](const RuleWord& r) { return word == QLatin1String(r.word); });
    if (rule == std::end(kRuleWords))
        return failDateRule(error,
                            QStringLiteral("unknown date rule '%1' (keep, empty, select, update, "
                                           "shift-date, shift-time)")
                                .arg(ruleText));
    if (auto problem = rule->read(arg, word, value))
        return failDateRule(error, *problem);
    if (auto refused = refusedDateRule(arg.field, arg.rule, arg.slot))
        return failDateRule(error, *refused);
    return arg;
}

} // namespace tagmoor::cli
