// The date rules of the command line, FIELD=WORD:VALUE: each word gives its rule with the value
// read into the right parts, and each way of writing one wrongly is refused with its reason.
#include "batch/BatchTestSupport.h"

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

class DateRuleWords : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        copySample(formatsDir() + "/et-GPS.jpg", in()); // taken 2002:07:13 15:58:28, modified later
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }

    ToolResult dryRun(const QString& rule) const {
        return runTool(QStringLiteral(TAGMOOR_CLI),
                       {"apply", "--dry-run", "--date", rule, "--out", out(), in()});
    }
    QTemporaryDir tmp;
};

} // namespace

TEST_F(DateRuleWords, EachWordSetsItsRuleFromItsParts) {
    const QString set = "  set Exif.Photo.DateTimeOriginal = ";
    const QList<std::pair<QString, QString>> cases = {
        {"DateTimeOriginal=shift-date:+1:2:3", set + "\"2003-09-16 15:58:28\""},
        {"DateTimeOriginal=Shift-Time:-1:0:2", set + "\"2002-07-13 14:58:30\""},
        {"DateTimeOriginal=update:day=1,time=08:00:00", set + "\"2002-07-01 08:00:00\""},
        {"DateTimeOriginal=update: year=2010 , month=12", set + "\"2010-12-13 15:58:28\""},
        {"datetimeoriginal=select:2020-01-02 03:04:05", set + "\"2020-01-02 03:04:05\""},
        {"ModifyDate=EMPTY", "  erase Exif.Image.DateTime"},
    };
    for (const auto& [rule, line] : cases) {
        const ToolResult r = dryRun(rule);
        ASSERT_EQ(r.exitCode, 0) << rule.toStdString() << ": " << r.err.toStdString();
        const QStringList plan = QString::fromUtf8(r.out).split('\n');
        EXPECT_TRUE(plan.contains(line)) << rule.toStdString() << "\n" << r.out.toStdString();
    }
}

TEST_F(DateRuleWords, AWronglyWrittenRuleIsRefusedWithItsReason) {
    const QList<std::pair<QString, QString>> cases = {
        {"ModifyDate", "--date wants FIELD=RULE, not 'ModifyDate'"},
        {"Artist=keep", "'Artist' is not a date field"},
        {"ModifyDate=later:1", "unknown date rule 'later:1'"},
        {"ModifyDate=select:yesterday",
         "select wants a date 'YYYY-MM-DD HH:MM:SS', not 'yesterday'"},
        {"ModifyDate=update:hour=3",
         "update takes day=D,month=M,year=Y,time=HH:MM:SS, not 'hour=3'"},
        {"ModifyDate=update:day=x", "not 'day=x'"},
        {"ModifyDate=update:time=25:00:00", "not 'time=25:00:00'"},
        {"ModifyDate=update:", "update needs at least one of day, month, year, time"},
        {"ModifyDate=update:day=31,month=2", "update: 2000-2-31 is not a date"},
        {"ModifyDate=update:year=10000", "ModifyDate: the year 10000 is not from 0001 to 9999"},
        {"ModifyDate=shift-date:1:2",
         "shift-date wants three signed numbers like +1:0:-2, not '1:2'"},
        {"ModifyDate=SHIFT-TIME:a:0:0", "shift-time wants three signed numbers"},
    };
    for (const auto& [rule, message] : cases) {
        const ToolResult r = dryRun(rule);
        EXPECT_EQ(r.exitCode, 2) << rule.toStdString();
        EXPECT_TRUE(QString::fromUtf8(r.err).contains(message))
            << rule.toStdString() << ": " << r.err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(out()));
}
