// Times the pure rules a run applies per photo: the date rule of each of the six fields and
// the rename rule. Prints microseconds per call.
#include "dates/DateRule.h"
#include "dates/DateTexts.h"
#include "rename/RenameRule.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <unicode/locid.h>

#include <cstdio>

using namespace tagmoor;

namespace {

template <typename Fn> void measure(const char* what, int rounds, Fn&& fn) {
    QElapsedTimer timer;
    timer.start();
    qint64 sink = 0;
    for (int i = 0; i < rounds; ++i)
        sink += fn(i);
    const double micros = double(timer.nsecsElapsed()) / 1000.0 / rounds;
    std::printf("%-44s %9.2f us/call  (%d calls, check %lld)\n", what, micros, rounds,
                static_cast<long long>(sink));
}

// The rows of every mode are filled, as the date panel leaves them.
DateRuleInputs benchRows() {
    DateRuleInputs rows;
    rows.idod = {3, -2, 1, false, false, false};
    rows.idot = {5, -7, 11, false, false, false};
    rows.updateDate.isKeepOriginalDays = true;
    rows.updateDate.isKeepOriginalTime = true;
    return rows;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale("en_US"), status);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 20000;

    const QDateTime own = *parseRuleDate("2021-05-06 10:22:33");
    const QDateTime slot = *parseRuleDate("2020-02-10 08:00:00");
    const DateRuleInputs rows = benchRows();
    const auto run = [&](const DateTimeConfiguration::Mode& mode) {
        const DateTimeConfiguration rule(mode, rows);
        return [rule, own, slot](int i) {
            const QDateTime photo = own.addSecs(i * 3607);
            return applyDateRule(rule, slot, photo).text.size();
        };
    };
    measure("applyDateRule, Select Date", rounds, run(SelectDate{}));
    measure("applyDateRule, Update Date (2 keeps)", rounds, run(rows.updateDate));
    measure("applyDateRule, increment date", rounds, run(rows.idod));
    measure("applyDateRule, increment time", rounds, run(rows.idot));
    measure("parseRuleDate", rounds, [](int i) {
        return parseRuleDate(
                   QStringLiteral("2021-05-%1 10-22-33").arg(1 + i % 28, 2, 10, QLatin1Char('0')))
            .has_value();
    });

    ChangeFileNameFormat counter;
    counter.nameFormatNF = NameFormat::nameAndCounter();
    counter.minNumberDigitsNF = 5;
    measure("renamedBase, counter", rounds,
            [&](int i) { return renamedBase(counter, QStringLiteral("IMG_1234"), i).size(); });
    ChangeFileNameFormat dated = counter;
    dated.nameFormatNF = NameFormat::nameAndDate();
    measure("renamedBase, date", rounds,
            [&](int i) { return renamedBase(dated, QStringLiteral("IMG_1234"), i).size(); });
    const Rename replace = ReplaceText{QStringLiteral("img"), QStringLiteral("Trip")};
    measure("renamedBase, replace", rounds,
            [&](int i) { return renamedBase(replace, QStringLiteral("IMG_1234"), i).size(); });
    return 0;
}
