#include "dates/DateRule.h"

#include "dates/DateArithmetic.h"
#include "dates/DateTexts.h"
#include "dates/OriginalDate.h"
#include "dates/PhotoDateRule.h"

namespace tagmoor {

namespace {

// The numbers one step decides; a part left empty comes from the work date (or the base).
// 64-bit sums: a stored rule may hold any int, and an overflow must not happen.
struct Decided {
    std::optional<qint64> year = std::nullopt;
    std::optional<qint64> month = std::nullopt;
    std::optional<qint64> day = std::nullopt;
    std::optional<qint64> hour = std::nullopt;
    std::optional<qint64> minute = std::nullopt;
    std::optional<qint64> second = std::nullopt;
};

QString twoDigits(qint64 value) {
    return QString::asprintf("%02lld", value);
}

// The work date of one rule computation and the assembly that ends each step.
class RuleWork {
public:
    RuleWork(const QDateTime& base, const QDateTime& own)
        : m_base(base), m_work(base), m_own(datePartsOf(own)) {}

    const DateParts& own() const { return m_own; }
    const std::optional<QDateTime>& work() const { return m_work; }

    // The work date, or the base when the last step's text was refused.
    const QDateTime& current() const { return m_work ? *m_work : m_base; }

    // Builds the rule text "year-MM-dd HH-mm-ss" from the decided numbers and the current
    // date's other parts; the work date becomes what parseRuleDate makes of it.
    void assemble(const Decided& decided) {
        const DateParts from = datePartsOf(current());
        const QString text = QString::number(decided.year.value_or(from.year)) + QLatin1Char('-') +
                             twoDigits(decided.month.value_or(from.month)) + QLatin1Char('-') +
                             twoDigits(decided.day.value_or(from.day)) + QLatin1Char(' ') +
                             twoDigits(decided.hour.value_or(from.hour)) + QLatin1Char('-') +
                             twoDigits(decided.minute.value_or(from.minute)) + QLatin1Char('-') +
                             twoDigits(decided.second.value_or(from.second));
        m_work = parseRuleDate(text);
    }

private:
    QDateTime m_base;
    std::optional<QDateTime> m_work;
    DateParts m_own;
};

// A sum wrapped once into 1...top: above the top it comes down by `top`, at or below zero it
// goes up by `top`. A sum still outside the range afterwards stays so.
qint64 wrapOnce(qint64 sum, qint64 top) {
    if (sum > top)
        return sum - top;
    if (sum <= 0)
        return sum + top;
    return sum;
}

void runUpdateDate(const UpdateDate& rule, RuleWork& work) {
    const DateParts& own = work.own();
    if (rule.isKeepOriginalDays)
        work.assemble({.day = own.day});
    if (rule.isKeepOriginalMonths)
        work.assemble({.month = own.month});
    if (rule.isKeepOriginalYears)
        work.assemble({.year = own.year});
    if (rule.isKeepOriginalTime)
        work.assemble({.hour = own.hour, .minute = own.minute, .second = own.second});
}

void runIDOD(const IDOD& rule, RuleWork& work) {
    const DateParts& own = work.own();

    qint64 day = own.day;
    if (!rule.isKeepOriginalDays) {
        const qint64 sum = qint64(own.day) + rule.changeDays;
        const qint64 length = daysInMonth(work.current()).value_or(30);
        day = wrapOnce(sum, length);
    }
    work.assemble({.day = day});

    qint64 month = own.month;
    if (!rule.isKeepOriginalMonths)
        month = wrapOnce(qint64(own.month) + rule.changeMonths, 12);
    work.assemble({.month = month});

    qint64 year = own.year;
    if (!rule.isKeepOriginalYears)
        year = qint64(own.year) + rule.changeYears;
    work.assemble({.year = year});
}

void runIDOT(const IDOT& rule, RuleWork& work) {
    const DateParts& own = work.own();

    const qint64 hour =
        rule.isKeepOriginalHours ? own.hour : wrapOnce(qint64(own.hour) + rule.changeHours, 24);
    work.assemble({.hour = hour});

    const qint64 minute = rule.isKeepOriginalMinutes
                              ? own.minute
                              : wrapOnce(qint64(own.minute) + rule.changeMinutes, 60);
    work.assemble({.minute = minute});

    const qint64 second = rule.isKeepOriginalSeconds
                              ? own.second
                              : wrapOnce(qint64(own.second) + rule.changeSeconds, 60);
    work.assemble({.second = second});
}

} // namespace

std::optional<QDateTime> wrappedDate(const UpdateDate& rule, const QDateTime& base,
                                     const QDateTime& own) {
    RuleWork work(base, own);
    runUpdateDate(rule, work);
    return work.work();
}

std::optional<QDateTime> wrappedDate(const IDOD& rule, const QDateTime& base,
                                     const QDateTime& own) {
    RuleWork work(base, own);
    runIDOD(rule, work);
    return work.work();
}

std::optional<QDateTime> wrappedDate(const IDOT& rule, const QDateTime& base,
                                     const QDateTime& own) {
    RuleWork work(base, own);
    runIDOT(rule, work);
    return work.work();
}

DateRuleOutcome applyDateRule(const DateTimeConfiguration& rule,
                              const std::optional<QDateTime>& slot,
                              const std::optional<QDateTime>& own) {
    return PhotoDateRule(DateRuleKind::wrapping).apply(rule, slot, own);
}

DateRuleOutcome applyDateRule(DateField field, const CGImageProperties& record,
                              const OriginalFinalDate& rules) {
    return applyDateRule(rules.rule(field), rules.slot(field), OriginalDate::of(record).get(field));
}

} // namespace tagmoor
