// The command line refuses, before anything is written, a value that its tag would not hold as
// given, typed or from a preset; a named file that is no photo fails the run; an interrupted
// run ends as a stopped one.
#include "batch/BatchTestSupport.h"

#include "presets/PresetJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QThread>

#include <csignal>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

class StrictCommandLine : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        photo = copySample(formatsDir() + "/Reagan.jpg", in());
    }
    QString in() const { return tmp.path() + "/in"; }
    QString out() const { return tmp.path() + "/out"; }

    // The command line with a scratch configuration folder (for its presets).
    ToolResult cli(const QStringList& args) const {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", tmp.path() + "/config");
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(TAGMOOR_CLI), cliArgs(args));
        return finishTool(p);
    }
    ToolResult apply(const QStringList& args) const {
        return cli(QStringList{"apply"} + args + QStringList{"--out", out(), photo});
    }

    QTemporaryDir tmp;
    QString photo;
};

bool says(const ToolResult& r, const QString& text) {
    return QString::fromUtf8(r.err).contains(text);
}

} // namespace

// Numbers must fit their tag's type, coordinates their range, years 0001 to 9999, text must be
// UTF-8; the limits themselves pass.
TEST_F(StrictCommandLine, OutOfRangeValuesAreRefusedBeforeAnythingIsWritten) {
    const QList<std::pair<QStringList, QString>> refused = {
        {{"--set", "ISO=-5"}, "--set: ISO takes a whole number from 0 to 65535, not -5"},
        {{"--set", "Exif.Photo.StandardOutputSensitivity=4294967296"}, "to 4294967295, not"},
        {{"--set", "GPSAltitude=-50"}, "GPSAltitude takes a number from 0 to"},
        {{"--set", "FNumber=-2.8"}, "FNumber takes a number from 0 to 2147483647, not -2.8"},
        {{"--set", "GPSLatitude=90.5"}, "GPSLatitude takes a number from -90 to 90, not 90.5"},
        {{"--set", QStringLiteral("City=Z%1rich").arg(QChar(0xFFFD))}, "City is not valid UTF-8"},
        {{"--date", "DateTimeOriginal=select:10000-01-01 00:00:00"},
         "--date: DateTimeOriginal: the year 10000 is not from 0001 to 9999"},
        {{"--date", "ModifyDate=update:year=0"}, "ModifyDate: the year 0 is not from 0001"},
        {{"--date", "CreationDate=shift-date:10000:0:0"}, "a shift of 10000 years"},
    };
    for (const auto& [args, message] : refused) {
        const ToolResult r = apply(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(says(r, message))
            << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
    // Bytes that are no UTF-8, straight from a shell as a user's would come.
    const ToolResult raw =
        runTool("/bin/sh", {"-c",
                            "exec \"$0\" --form \"$1\" apply --set \"Artist=J$(printf '\\377')\" "
                            "--out \"$2\" \"$3\"",
                            TAGMOOR_CLI, valueFormName(valueForm()), out(), photo});
    EXPECT_EQ(raw.exitCode, 2);
    EXPECT_TRUE(says(raw, "--set: Artist is not valid UTF-8 text")) << raw.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(out()));

    const QList<QStringList> accepted = {
        {"--set", "ISO=65535", "--set", "GPSAltitude=0", "--set", "City=Zürich"},
        {"--set", "GPSLatitude=-90", "--set", "GPSLongitude=180", "--date",
         "DateTimeOriginal=select:0001-01-01 00:00:00"},
    };
    for (const QStringList& args : accepted) {
        const ToolResult r = apply(QStringList{"--dry-run"} + args);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
}

// A preset's values get the same checks and the same message as typed ones: an imported file
// that carries a value a run would refuse, a value of the wrong kind or a name the command line
// cannot give is refused with its reason, and the presets already stored are kept.
TEST_F(StrictCommandLine, APresetsValuesGetTheSameChecks) {
    ASSERT_EQ(cli({"presets", "save", "Good", "--set", "ISO=200"}).exitCode, 0);

    const auto presetWith = [](const QString& name, auto change) {
        ActualPreset preset = makeNewPreset(name, 0);
        change(preset);
        return preset;
    };
    const struct {
        ActualPreset preset;
        QString reason;
    } cases[] = {
        {presetWith("Odd",
                    [](ActualPreset& p) {
                        p.properties->exifProperties->isoSpeedRating = PropertyValue(qint64(-5));
                    }),
         "ISO takes a whole number from 0 to 65535, not -5"},
        {presetWith("Far",
                    [](ActualPreset& p) {
                        p.properties->gpsProperties->latitude = PropertyValue(1000.0);
                    }),
         "GPSLatitude takes a number from -90 to 90, not 1000"},
        {presetWith("Texty",
                    [](ActualPreset& p) {
                        p.properties->exifProperties->isoSpeedRating = PropertyValue("fast");
                    }),
         "ISO takes a number, not a value of kind text"},
        {presetWith("Shift",
                    [](ActualPreset& p) {
                        IDOD shift;
                        shift.changeYears = 20000;
                        p.timeSetting->configurationModifyDate = shift;
                        p.timeSetting->alive(DateField::modifyDate) = true;
                    }),
         "ModifyDate: a shift of 20000 years"},
        {makeNewPreset("two\nlines", 0), "control character"},
        {makeNewPreset(QString("nul") + QChar(0) + "in", 0), "control character"},
        {makeNewPreset("--out", 0), "begins with \"--\""},
    };
    for (const auto& c : cases) {
        const QString file = tmp.path() + "/odd.json";
        ASSERT_TRUE(writeBytes(file, encodePresetJson(c.preset)));
        const ToolResult r = cli({"presets", "import", file});
        EXPECT_EQ(r.exitCode, 2) << c.reason.toStdString();
        EXPECT_TRUE(says(r, c.reason)) << r.err.toStdString();
    }
    EXPECT_EQ(cli({"presets", "list"}).out.trimmed(), "Good");
    EXPECT_EQ(apply({"--preset", "Good"}).exitCode, 0);

    const ToolResult saved = cli({"presets", "save", "Bad", "--set", "ISO=-5"});
    EXPECT_EQ(saved.exitCode, 2);
    EXPECT_TRUE(says(saved, "--set: ISO takes a whole number from 0 to 65535, not -5"))
        << saved.err.toStdString();
    EXPECT_EQ(cli({"presets", "save", "--x", "--set", "ISO=5"}).exitCode, 2);
}

// A named file that is no photo was asked for and not changed: status 1, for the run and its
// dry run. Found in a folder it is simply no photo of the batch.
TEST_F(StrictCommandLine, ANamedFileThatIsNoPhotoFailsTheRun) {
    const QString notes = in() + "/notes.jpg";
    writeBytes(notes, "just some text");
    for (const char* dry : {"--dry-run", "--overwrite"}) {
        const QStringList args = {"apply", dry, "--set", "Artist=Jane", "--out", out()};
        const ToolResult named = cli(args + QStringList{notes, photo});
        EXPECT_EQ(named.exitCode, 1) << named.err.toStdString();
        EXPECT_TRUE(says(named, notes + ": not a photo")) << named.err.toStdString();
        EXPECT_EQ(cli(args + QStringList{in()}).exitCode, 0);
    }
}

// Ctrl-C ends a run as Stop does: the photos in work are finished, the others are listed as
// not reached, apart from the problems, and the run fails.
TEST_F(StrictCommandLine, AnInterruptedRunListsThePhotosNotReached) {
    constexpr int kCount = 1500;
    for (int i = 0; i < kCount; ++i)
        makeJpeg(in() + QStringLiteral("/p%1.jpg").arg(i, 4, 10, QLatin1Char('0')), 16, 16);
    QFile::remove(photo);
    QProcess p;
    p.start(TAGMOOR_CLI, cliArgs({"apply", "--json", "--threads", "2", "--set", "Artist=Jane",
                                  "--out", out(), in()}));
    ASSERT_TRUE(p.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    while (fileNames(out()).filter(".jpg").isEmpty() && waited.elapsed() < 30000)
        QThread::usleep(200);
    ::kill(pid_t(p.processId()), SIGINT);
    const ToolResult r = finishTool(p);
    EXPECT_EQ(r.exitCode, 1) << r.err.toStdString();
    const QJsonObject result = QJsonDocument::fromJson(r.out).object();
    EXPECT_TRUE(result["stopped"].toBool()) << r.out.toStdString();
    EXPECT_TRUE(result["problems"].toArray().isEmpty());
    const QJsonArray notReached = result["notReached"].toArray();
    EXPECT_GT(notReached.size(), 0);
    EXPECT_EQ(result["written"].toInt() + notReached.size(), kCount);
    EXPECT_EQ(fileNames(out()).size(), result["written"].toInt());
    EXPECT_EQ(r.err.count(": not reached: the run was stopped\n"), notReached.size());
}
