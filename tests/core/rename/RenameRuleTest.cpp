// The rename rule: base names in, base names out.
#include "rename/RenameRule.h"
#include "IcuZoneScope.h"
#include "rename/RenameNumbering.h"

#include <gtest/gtest.h>

#include <QtConcurrent>

#include <climits>

namespace tagmoor {
namespace {

Rename keep() {
    return Rename{};
}

Rename add(const char* text, RenamePosition where) {
    return AddText{QString::fromUtf8(text), where};
}

Rename replace(const char* find, const char* with) {
    return ReplaceText{QString::fromUtf8(find), QString::fromUtf8(with)};
}

Rename format(NameFormat nameFormat, RenamePosition where, qint64 start = 1, int digits = 0,
              const char* custom = "") {
    ChangeFileNameFormat rule;
    rule.nameFormatNF = nameFormat;
    rule.whereTextPositionNF = where;
    rule.startNumberAtNF = start;
    rule.minNumberDigitsNF = digits;
    rule.customFormatValueNF = QString::fromUtf8(custom);
    return rule;
}

constexpr auto before = RenamePosition::beforeName;
constexpr auto after = RenamePosition::afterName;

// 2021-05-06 07:08:09.123 in the tests' time zone, UTC.
const QDateTime kMoment(QDate(2021, 5, 6), QTime(7, 8, 9, 123), Qt::UTC);

struct Case {
    const char* what;
    Rename rule;
    const char* name;
    qint64 firstNumber;
    const char* expected;
};

TEST(RenameRule, BaseNames) {
    const Case cases[] = {
        {"keep", keep(), "IMG_001", 7, "IMG_001"},
        {"add before", add("Trip ", before), "IMG_001", 0, "Trip IMG_001"},
        {"add after", add("_edit", after), "IMG_001", 0, "IMG_001_edit"},
        {"replace ignores case and folds the name", replace("IMG", "Pic"), "img_1", 0, "Pic_1"},
        {"replace folds an upper-case name too", replace("img", "Pic"), "IMG_1", 0, "Pic_1"},
        {"no match still folds", replace("xyz", "Q"), "IMG_001", 0, "img_001"},
        {"every occurrence", replace("A", "-"), "aXa_A", 0, "-x-_-"},
        {"plain text, no pattern", replace(".", "_"), "a.b.C", 0, "a_b_c"},
        {"empty find text only folds", replace("", "Z"), "AbC", 0, "abc"},
        {"non-ASCII folds", replace("Ä", "ae"), "ÄRGER", 0, "aerger"},
        {"index after", format(NameFormat::nameAndIndex(), after, 5, 3), "a", 0, "a5"},
        {"index before, running number", format(NameFormat::nameAndIndex(), before, 5), "a", 2,
         "7a"},
        {"custom text replaces the name", format(NameFormat::nameAndIndex(), after, 1, 0, "trip"),
         "IMG_001", 41, "trip42"},
        {"counter, first photo", format(NameFormat::nameAndCounter(), after, 5, 3), "a", 0, "a005"},
        {"counter, second photo", format(NameFormat::nameAndCounter(), after, 5, 3), "a", 1,
         "a006"},
        {"counter, thousandth photo outgrows the padding",
         format(NameFormat::nameAndCounter(), after, 5, 3), "a", 999, "a1004"},
        {"counter before", format(NameFormat::nameAndCounter(), before, 5, 3), "a", 0, "005a"},
        {"counter, Auto digits", format(NameFormat::nameAndCounter(), after, 5, 0), "a", 0, "a5"},
        {"counter, zeros go before the sign", format(NameFormat::nameAndCounter(), after, -5, 3),
         "a", 0, "a0-5"},
        {"counter, seven digits", format(NameFormat::nameAndCounter(), after, 0, 7), "a", 12,
         "a0000012"},
        {"a sum past the 64-bit range wraps", format(NameFormat::nameAndIndex(), after, LLONG_MAX),
         "a", 1, "a-9223372036854775808"},
        {"date after", format(NameFormat::nameAndDate(), after), "a", 3, "a2021-05-06 7:8:09.1230"},
        {"date before, custom text", format(NameFormat::nameAndDate(), before, 1, 0, "x"), "a", 0,
         "2021-05-06 7:8:09.1230x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(renamedBase(c.rule, QString::fromUtf8(c.name), c.firstNumber, kMoment),
                  QString::fromUtf8(c.expected));
    }
}

TEST(RenameRule, ExampleUsesTheStartNumberAlone) {
    const Rename counter = format(NameFormat::nameAndCounter(), after, 5, 3);
    EXPECT_EQ(exampleBase(counter, "a", kMoment), "a005");
    EXPECT_EQ(exampleBase(replace("IMG", "Pic"), "IMG_7", kMoment), "Pic_7");
    EXPECT_EQ(exampleBase(format(NameFormat::nameAndDate(), after), "", kMoment),
              "2021-05-06 7:8:09.1230");
    // Without a moment the clock is read: the text has the pattern's shape.
    const QString now = exampleBase(format(NameFormat::nameAndDate(), before), "");
    EXPECT_TRUE(QRegularExpression("^\\d+-\\d\\d-\\d\\d \\d{1,2}:\\d{1,2}:\\d\\d\\.\\d{4}$")
                    .match(now)
                    .hasMatch())
        << now.toStdString();
}

TEST(RenameRule, PaddingAndDateTexts) {
    EXPECT_EQ(padNumber(5, 3), "005");
    EXPECT_EQ(padNumber(1234, 3), "1234");
    EXPECT_EQ(padNumber(-5, 3), "0-5");
    EXPECT_EQ(padNumber(-50, 3), "-50");
    EXPECT_EQ(padNumber(7, 0), "7");
    EXPECT_EQ(padNumber(7, -2), "7");
    EXPECT_EQ(renameDateText(QDateTime(QDate(2021, 12, 31), QTime(23, 59, 1, 5), Qt::UTC)),
              "2021-12-31 23:59:01.0050");
    EXPECT_EQ(renameDateText(QDateTime(QDate(2021, 1, 2), QTime(0, 0, 0), Qt::UTC)),
              "2021-01-02 0:0:00.0000");
    EXPECT_EQ(renameDateText(QDateTime()), "");
    // The user's zone at the moment of the call, also after this thread has made a name.
    test::IcuZoneScope berlin(u"Europe/Berlin");
    EXPECT_EQ(renameDateText(kMoment), "2021-05-06 9:8:09.1230");
}

TEST(RenameNumbering, NumbersRunOnAcrossRunsAndParallelPhotos) {
    RenameNumbering numbering;
    const Rename counter = format(NameFormat::nameAndCounter(), after, 1, 2);

    // First run: three selected photos, the second one skipped; it uses up its number anyway.
    QStringList firstRun;
    for (const char* name : {"a", "b", "c"}) {
        const qint64 number = numbering.take();
        if (QLatin1String(name) != QLatin1String("b"))
            firstRun << renamedBase(counter, QString::fromLatin1(name), number, kMoment);
    }
    EXPECT_EQ(firstRun, (QStringList{"a01", "c03"}));

    // Second run, in parallel: numbers are reserved up front and follow list order, not the
    // order in which workers finish.
    const QStringList names{"p", "q", "r", "s", "t", "u", "v", "w"};
    const qint64 first = numbering.reserve(names.size());
    EXPECT_EQ(first, 3);
    EXPECT_EQ(numbering.next(), 11);
    QList<int> positions;
    for (int i = 0; i < names.size(); ++i)
        positions << i;
    const QStringList secondRun = QtConcurrent::blockingMapped<QStringList>(
        positions, [&](int i) { return renamedBase(counter, names[i], first + i, kMoment); });
    EXPECT_EQ(secondRun, (QStringList{"p04", "q05", "r06", "s07", "t08", "u09", "v10", "w11"}));
}

} // namespace
} // namespace tagmoor
