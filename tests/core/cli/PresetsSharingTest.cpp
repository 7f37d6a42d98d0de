// The window's presets and the command line's are one list in one file: both may write it at
// once, and no file a preset names can make either of them wait.
#include "batch/BatchTestSupport.h"
#include "workingset/WaitFor.h"

#include "foundation/Settings.h"
#include "presets/PresetArchive.h"
#include "presets/PresetFile.h"
#include "presets/PresetStore.h"

#include <QProcessEnvironment>
#include <QtConcurrent>

#include <sys/stat.h>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

class PresetsSharing : public ::testing::Test {
protected:
    QString config() const { return tmp.path() + "/config"; }
    // Where the command line keeps its settings under that configuration folder.
    QString settingsFile() const { return config() + "/Tagmoor/Tagmoor.conf"; }
    QString presetsFile() const { return PresetFile::pathFor(settingsFile()); }

    ToolResult cli(const QStringList& args, int timeoutMs = 60000) const {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", config());
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(TAGMOOR_CLI), cliArgs(args));
        return finishTool(p, timeoutMs);
    }

    QStringList storedNames() const {
        QByteArray block;
        if (PresetFile::read(presetsFile(), &block) != PresetFile::ReadStatus::Ok)
            return {};
        QStringList names;
        for (const ActualPreset& p : decodePresetArchive(block).value_or(QList<ActualPreset>{}))
            names << p.name.value_or(QString());
        return names;
    }

    QTemporaryDir tmp;
};

QStringList namesOf(const QList<ActualPreset>& presets) {
    QStringList names;
    for (const ActualPreset& p : presets)
        names << p.name.value_or(QString());
    return names;
}

// The window adds presets and saves after each, while the command line saves its own in a
// row of runs: at the end the file and the window's list hold every one of both.
TEST_F(PresetsSharing, TheWindowAndTheCommandLineWritingAtOnceDropNothing) {
    Settings settings(settingsFile());
    PresetStore window(settings);
    window.setSaveDelay(5);
    window.load();
    window.watchFile(true);

    constexpr int kCliPresets = 8;
    QFuture<QList<int>> commandLine = QtConcurrent::run([this] {
        QList<int> codes;
        for (int i = 0; i < kCliPresets; ++i)
            codes << cli({"presets", "save", QStringLiteral("Cli%1").arg(i), "--set",
                          QStringLiteral("Artist=cli %1").arg(i)})
                         .exitCode;
        return codes;
    });
    // At most 100 of the window's own: each save writes the whole list, and a list that grows
    // for as long as a slow (instrumented) command line runs would make every save so long
    // that the command line's wait for the lock runs out; no window saves that often.
    QStringList windowNames;
    while (!commandLine.isFinished() || windowNames.size() < 12) {
        if (windowNames.size() < 100) {
            windowNames << QStringLiteral("Win%1").arg(windowNames.size());
            window.addPreset(windowNames.last());
        }
        serveEvents(25);
    }
    EXPECT_EQ(commandLine.result(), QList<int>(kCliPresets, 0));
    window.waitForSaves();
    serveEvents(600); // the last change of the file seen by the window
    window.waitForSaves();

    QStringList expected = windowNames;
    for (int i = 0; i < kCliPresets; ++i)
        expected << QStringLiteral("Cli%1").arg(i);
    QStringList stored = storedNames();
    QStringList listed = namesOf(window.presets());
    expected.sort();
    stored.sort();
    listed.sort();
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(listed, expected);

    // A preset the command line changes or removes while the window is open is changed or
    // removed in the window's list too, and stays so after the window's next save.
    ASSERT_EQ(cli({"presets", "remove", "Win0"}).exitCode, 0);
    ASSERT_EQ(cli({"presets", "save", "Cli0", "--replace", "--set", "Artist=changed"}).exitCode, 0);
    ASSERT_TRUE(waitFor([&] { return !namesOf(window.presets()).contains("Win0"); }, 5000));
    window.addPreset("Last");
    window.waitForSaves();
    {
        Settings again(settingsFile());
        PresetStore reread(again);
        reread.load();
        const QStringList names = namesOf(reread.presets());
        EXPECT_FALSE(names.contains("Win0"));
        EXPECT_TRUE(names.contains("Last"));
        const qsizetype cli0 = names.indexOf("Cli0");
        ASSERT_GE(cli0, 0);
        EXPECT_EQ(reread.presets().at(cli0).properties->tiffProperties->artist,
                  PropertyValue("changed"));
        EXPECT_EQ(names.count("Cli0"), 1);
    }
}

// A preset whose photo became a named pipe, and preset files that are pipes or devices:
// every command ends, and an import of what is no small regular file is refused with 2.
TEST_F(PresetsSharing, NoFileAPresetNamesOrAnImportGivesMakesACommandWait) {
    const QString fifo = tmp.path() + "/photo.jpg";
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    ActualPreset piped = makeNewPreset("Piped", 0);
    piped.properties = makeEmptyRecord(QUrl::fromLocalFile(fifo));
    piped.properties->tiffProperties->artist = QStringLiteral("Jane");
    QDir().mkpath(QFileInfo(presetsFile()).absolutePath());
    ASSERT_TRUE(PresetFile::write(presetsFile(), encodePresetArchive({piped})));

    const ToolResult list = cli({"presets", "list"}, 15000);
    EXPECT_EQ(list.exitCode, 0) << "presets list waited on the pipe";
    EXPECT_EQ(list.out, "Piped\n");
    EXPECT_EQ(cli({"presets", "show", "Piped"}, 15000).exitCode, 0);
    const QString in = tmp.path() + "/in";
    QDir().mkpath(in);
    copySample(formatsDir() + "/Reagan.jpg", in);
    const ToolResult apply =
        cli({"apply", "--preset", "Piped", "--out", tmp.path() + "/out", in}, 15000);
    EXPECT_EQ(apply.exitCode, 0) << apply.err.toStdString();
    EXPECT_EQ(tagOf(tmp.path() + "/out/Reagan.jpg", "Exif.Image.Artist"), "Jane");

    const QString huge = tmp.path() + "/huge.json";
    {
        QFile f(huge);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_TRUE(f.resize(5 * 1024 * 1024));
    }
    for (const auto& [file, reason] :
         {std::pair{QString("/dev/zero"), "not a regular file"},
          std::pair{fifo, "not a regular file"}, std::pair{huge, "larger than 4 MB"}}) {
        const ToolResult import = cli({"presets", "import", file}, 15000);
        EXPECT_EQ(import.exitCode, 2) << file.toStdString();
        EXPECT_TRUE(import.err.contains(reason)) << import.err.toStdString();
    }
    EXPECT_EQ(cli({"presets", "list"}, 15000).out, "Piped\n") << "nothing was imported";
}

} // namespace
