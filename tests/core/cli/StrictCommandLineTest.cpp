// The command line refuses, before anything is written, a value that the tag would not hold as
// given, whether typed or taken from a preset; a file it was asked for that is no photo makes
// the run fail; and an interrupted run ends as a stopped one, with the photos not reached.
#include "batch/BatchTestSupport.h"

#include "model/FormFieldTable.h"
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

    // The command line with a scratch folder as the user's configuration (its presets).
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

    // Saves a preset made of `values` and `dates` under `name`, as a preset file imported.
    void importPreset(const QString& name, const QMap<QString, PropertyValue>& values,
                      const OriginalFinalDate& dates = {}) {
        ActualPreset preset = makeNewPreset(name, 0);
        for (auto it = values.begin(); it != values.end(); ++it)
            *findFormField(it.key())->keyRow().field(*preset.properties) = it.value();
        preset.timeSetting = dates;
        const QString file = tmp.path() + "/" + name + ".json";
        ASSERT_TRUE(writeBytes(file, encodePresetJson(preset)));
        const ToolResult r = cli({"presets", "import", file});
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    }

    QTemporaryDir tmp;
    QString photo;
};

bool says(const ToolResult& r, const QString& text) {
    return QString::fromUtf8(r.err).contains(text);
}

} // namespace

// Each number must fit its tag's type, a coordinate its hemisphere's range, a year 0001 to
// 9999; the limits themselves pass.
TEST_F(StrictCommandLine, OutOfRangeValuesAreRefusedBeforeAnythingIsWritten) {
    const QList<std::pair<QStringList, QString>> refused = {
        {{"--set", "ISO=-5"}, "--set: ISO takes a whole number from 0 to 65535, not -5"},
        {{"--set", "ISO=65536"}, "ISO takes a whole number from 0 to 65535, not 65536"},
        {{"--set", "Exif.Photo.StandardOutputSensitivity=-1"}, "from 0 to 4294967295, not -1"},
        {{"--set", "Exif.Photo.StandardOutputSensitivity=4294967296"}, "not 4294967296"},
        {{"--set", "FocalLengthIn35mmFormat=70000"}, "from 0 to 65535, not 70000"},
        {{"--set", "GPSAltitude=-50"}, "GPSAltitude takes a number from 0 to"},
        {{"--set", "FNumber=-2.8"}, "FNumber takes a number from 0 to 2147483647, not -2.8"},
        {{"--set", "ExposureTime=3e9"}, "not 3000000000"},
        {{"--set", "GPSLatitude=90.5"}, "GPSLatitude takes a number from -90 to 90, not 90.5"},
        {{"--set", "GPSLatitude=-91"}, "not -91"},
        {{"--set", "GPSLongitude=-180.01"}, "GPSLongitude takes a number from -180 to 180"},
        {{"--date", "DateTimeOriginal=select:10000-01-01 00:00:00"},
         "--date: DateTimeOriginal: the year 10000 is not from 0001 to 9999"},
        {{"--date", "ModifyDate=update:year=0"}, "ModifyDate: the year 0 is not from 0001"},
        {{"--date", "CreateDateXMP=update:year=12000,day=3"}, "the year 12000 is not"},
        {{"--date", "CreationDate=shift-date:10000:0:0"}, "a shift of 10000 years"},
    };
    for (const auto& [args, message] : refused) {
        const ToolResult r = apply(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(says(r, message))
            << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(out()));

    const QList<QStringList> accepted = {
        {"--set", "ISO=65535"},
        {"--set", "ISO=0"},
        {"--set", "GPSAltitude=0"},
        {"--set", "GPSLatitude=-90", "--set", "GPSLongitude=180"},
        {"--set", "Exif.Photo.StandardOutputSensitivity=4294967295"},
        {"--date", "DateTimeOriginal=select:0001-01-01 00:00:00"},
        {"--date", "ModifyDate=select:9999-12-31 23:59:59"},
        {"--date", "CreationDate=shift-date:-9998:0:0"},
    };
    for (const QStringList& args : accepted) {
        const ToolResult r = apply(QStringList{"--dry-run"} + args);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
}

// Bytes that are no UTF-8 (here straight from a shell, as a user's would come) and the stand-in
// they become are refused; other text outside ASCII is not.
TEST_F(StrictCommandLine, TextThatIsNotValidUtf8IsRefused) {
    const QString script = QStringLiteral("exec \"$0\" --form \"$1\" apply --set "
                                          "\"Artist=J$(printf '\\377')ne\" --out \"$2\" \"$3\"");
    const ToolResult raw =
        runTool(QStringLiteral("/bin/sh"), {"-c", script, QStringLiteral(TAGMOOR_CLI),
                                            valueFormName(valueForm()), out(), photo});
    EXPECT_EQ(raw.exitCode, 2) << raw.err.toStdString();
    EXPECT_TRUE(says(raw, "--set: Artist is not valid UTF-8 text")) << raw.err.toStdString();
    const ToolResult standIn = apply({"--set", QStringLiteral("City=Z%1rich").arg(QChar(0xFFFD))});
    EXPECT_EQ(standIn.exitCode, 2);
    EXPECT_TRUE(says(standIn, "City is not valid UTF-8 text")) << standIn.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(out()));

    EXPECT_EQ(apply({"--set", "City=Zürich", "--set", "Artist=山田"}).exitCode, 0);
    EXPECT_EQ(tagOf(out() + "/Reagan.jpg", "Iptc.Application2.City"), "Zürich");
}

// A preset's values pass the same checks with the same message, whether the preset came from
// the window (which lets a latitude of 91 stand) or from a file; `presets save` checks too.
TEST_F(StrictCommandLine, APresetsValuesGetTheSameChecks) {
    const QString isoMessage = "ISO takes a whole number from 0 to 65535, not -5";
    const ToolResult typed = apply({"--set", "ISO=-5"});
    ASSERT_TRUE(says(typed, isoMessage)) << typed.err.toStdString();

    importPreset("Iso", {{"ISO", PropertyValue(qint64(-5))}, {"Artist", PropertyValue("Jane")}});
    importPreset("North", {{"GPSLatitude", PropertyValue(91.0)}});
    importPreset("Deep", {{"GPSAltitude", PropertyValue(-50.0f)}});
    OriginalFinalDate far;
    DateTimeConfiguration& shift = far.rule(DateField::modifyDate);
    shift.isKeepOriginal = false;
    shift.isIDOD = true;
    shift.idod.changeYears = 20000;
    shift.idod.isKeepOriginalDays = shift.idod.isKeepOriginalMonths = true;
    far.alive(DateField::modifyDate) = true;
    importPreset("Far", {}, far);

    const QList<std::pair<QString, QString>> refused = {
        {"Iso", "--preset Iso: " + isoMessage},
        {"North", "--preset North: GPSLatitude takes a number from -90 to 90, not 91"},
        {"Deep", "--preset Deep: GPSAltitude takes a number from 0 to"},
        {"Far", "--preset Far: ModifyDate: a shift of 20000 years"},
    };
    for (const auto& [name, message] : refused) {
        const ToolResult r = apply({"--preset", name});
        EXPECT_EQ(r.exitCode, 2) << name.toStdString();
        EXPECT_TRUE(says(r, message)) << r.err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(out()));

    // A value given beside the preset replaces the refused one.
    const ToolResult mended = apply({"--preset", "Iso", "--set", "ISO=200"});
    EXPECT_EQ(mended.exitCode, 0) << mended.err.toStdString();
    EXPECT_EQ(tagOf(out() + "/Reagan.jpg", "Exif.Photo.ISOSpeedRatings"), "200");

    const ToolResult saved = cli({"presets", "save", "Bad", "--set", "ISO=-5"});
    EXPECT_EQ(saved.exitCode, 2);
    EXPECT_TRUE(says(saved, "--set: " + isoMessage)) << saved.err.toStdString();
}

// A file named on the command line that is no photo was asked for and not changed: status 1,
// for the run and for its dry run. Found in a folder it is simply no photo of the batch.
TEST_F(StrictCommandLine, ANamedFileThatIsNoPhotoFailsTheRun) {
    const QString notes = in() + "/notes.jpg";
    writeBytes(notes, "just some text");
    const QStringList args = {"apply", "--set", "Artist=Jane", "--overwrite", "--out", out()};
    for (const bool dry : {true, false}) {
        const QStringList run = dry ? args + QStringList{"--dry-run"} : args;
        const ToolResult named = cli(run + QStringList{notes, photo});
        EXPECT_EQ(named.exitCode, 1) << named.err.toStdString();
        EXPECT_TRUE(says(named, notes + ": not a photo")) << named.err.toStdString();
        EXPECT_EQ(cli(run + QStringList{in()}).exitCode, 0);
    }
    EXPECT_EQ(tagOf(out() + "/Reagan.jpg", "Exif.Image.Artist"), "Jane");
}

// Ctrl-C ends a run as Stop does: the photos in work are finished, the rest are listed as not
// reached (apart from the problems), and the run fails.
TEST_F(StrictCommandLine, AnInterruptedRunListsThePhotosNotReached) {
    constexpr int kCount = 1500;
    for (int i = 0; i < kCount; ++i)
        makeJpeg(in() + QStringLiteral("/p%1.jpg").arg(i, 4, 10, QLatin1Char('0')), 16, 16);
    QFile::remove(photo);
    QProcess p;
    p.start(QStringLiteral(TAGMOOR_CLI), cliArgs({"apply", "--json", "--threads", "2", "--set",
                                                  "Artist=Jane", "--out", out(), in()}));
    ASSERT_TRUE(p.waitForStarted());
    QElapsedTimer waited;
    waited.start();
    while (fileNames(out()).filter(QStringLiteral(".jpg")).isEmpty() && waited.elapsed() < 30000)
        QThread::usleep(200);
    ::kill(pid_t(p.processId()), SIGINT);
    const ToolResult r = finishTool(p);
    EXPECT_EQ(r.exitCode, 1) << r.err.toStdString();
    const QJsonObject result = QJsonDocument::fromJson(r.out).object();
    EXPECT_TRUE(result["stopped"].toBool()) << r.out.toStdString();
    const QJsonArray notReached = result["notReached"].toArray();
    EXPECT_GT(notReached.size(), 0);
    EXPECT_TRUE(result["problems"].toArray().isEmpty()) << r.out.toStdString();
    EXPECT_EQ(result["written"].toInt() + notReached.size(), kCount);
    EXPECT_EQ(notReached.last().toString(), in() + QStringLiteral("/p%1.jpg").arg(kCount - 1));

    // Every photo that was reached is whole and edited, and nothing else is in the folder.
    const QStringList outputs = fileNames(out());
    EXPECT_EQ(outputs.size(), result["written"].toInt());
    for (const QString& name : outputs)
        EXPECT_EQ(tagOf(out() + "/" + name, "Exif.Image.Artist"), "Jane") << name.toStdString();
    EXPECT_EQ(r.err.count(": not reached: the run was stopped\n"), notReached.size());
}
