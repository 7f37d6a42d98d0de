// tagmoor-cli presets and apply --preset, over a store in a scratch configuration folder.
#include "batch/BatchTestSupport.h"

#include "presets/PresetJson.h"

#include <QProcessEnvironment>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

class PresetsCommand : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(in());
        copySample(formatsDir() + "/et-GPS.jpg", in());
        copySample(formatsDir() + "/Reagan.jpg", in());
    }
    QString in() const { return tmp.path() + "/in"; }
    QString config() const { return tmp.path() + "/config"; }

    // The command line with the scratch folder as the user's configuration.
    ToolResult cli(const QStringList& args) const {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", config());
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(TAGMOOR_CLI), cliArgs(args));
        return finishTool(p);
    }
    QTemporaryDir tmp;
};

const QStringList kOptions = {"--set",  "Artist=Jane Doe",
                              "--set",  "FNumber=2.8",
                              "--set",  "Orientation=6",
                              "--set",  "Iptc.Application2.City=Paris",
                              "--date", "DateTimeOriginal=shift-time:+1:00:00",
                              "--date", "ModifyDate=select:2020-01-02 03:04:05"};

} // namespace

TEST_F(PresetsCommand, ASavedPresetAppliesAsItsOptionsDoAndOptionsBesideItWin) {
    const ToolResult saved = cli(QStringList{"presets", "save", "Trip"} + kOptions);
    ASSERT_EQ(saved.exitCode, 0) << saved.err.toStdString();

    const QString viaPreset = tmp.path() + "/preset";
    const QString viaOptions = tmp.path() + "/options";
    const ToolResult a = cli({"apply", "--preset", "Trip", "--out", viaPreset, in()});
    ASSERT_EQ(a.exitCode, 0) << a.err.toStdString();
    const ToolResult b =
        cli(QStringList{"apply"} + kOptions + QStringList{"--out", viaOptions, in()});
    ASSERT_EQ(b.exitCode, 0) << b.err.toStdString();
    const auto sums = folderChecksums(viaPreset);
    EXPECT_EQ(sums.size(), 2);
    EXPECT_EQ(sums, folderChecksums(viaOptions)) << "the same bytes either way";
    EXPECT_EQ(tagOf(viaPreset + "/et-GPS.jpg", "Exif.Image.Orientation"), "6");

    // The name in other capitals finds it; an option beside it replaces that field only.
    const QString mixed = tmp.path() + "/mixed";
    const ToolResult c = cli({"apply", "--set", "Artist=Someone Else", "--preset", "tRIP", "--date",
                              "DateTimeOriginal=keep", "--out", mixed, in()});
    ASSERT_EQ(c.exitCode, 0) << c.err.toStdString();
    EXPECT_EQ(tagOf(mixed + "/et-GPS.jpg", "Exif.Image.Artist"), "Someone Else");
    EXPECT_EQ(tagOf(mixed + "/et-GPS.jpg", "Iptc.Application2.City"), "Paris");
    EXPECT_EQ(tagOf(mixed + "/et-GPS.jpg", "Exif.Photo.DateTimeOriginal"),
              tagOf(in() + "/et-GPS.jpg", "Exif.Photo.DateTimeOriginal"));

    // What a preset cannot keep, or a name in use, is refused.
    const ToolResult empty = cli({"presets", "save", "Blank", "--set", "Artist="});
    EXPECT_EQ(empty.exitCode, 2);
    EXPECT_TRUE(empty.err.contains("only fields with a value")) << empty.err.toStdString();
    const ToolResult taken = cli({"presets", "save", "TRIP", "--set", "Artist=x"});
    EXPECT_EQ(taken.exitCode, 2);
    EXPECT_TRUE(taken.err.contains("--replace")) << taken.err.toStdString();
    EXPECT_EQ(cli({"presets", "save", "trip", "--replace", "--set", "Artist=x"}).exitCode, 0);
    EXPECT_EQ(cli({"presets", "list"}).out, "Trip\n");
}

TEST_F(PresetsCommand, ExportImportGiveAnEqualPresetAndUnknownNamesChangeNothing) {
    ASSERT_EQ(cli(QStringList{"presets", "save", "Trip"} + kOptions).exitCode, 0);
    ASSERT_EQ(cli({"presets", "save", "Studio", "--set", "Copyright=(c) Studio"}).exitCode, 0);
    EXPECT_EQ(cli({"presets", "list"}).out, "Trip\nStudio\n");
    const ToolResult shown = cli({"presets", "show", "Trip"});
    ASSERT_EQ(shown.exitCode, 0);
    const auto original = decodePresetJson(shown.out);
    ASSERT_TRUE(original.has_value());
    EXPECT_EQ(original->properties->tiffProperties->artist.text(), "Jane Doe");

    const QString file = tmp.path() + "/trip.json";
    ASSERT_EQ(cli({"presets", "export", "Trip", file}).exitCode, 0);
    ASSERT_EQ(cli({"presets", "remove", "Trip"}).exitCode, 0);
    EXPECT_EQ(cli({"presets", "list"}).out, "Studio\n");
    const ToolResult imported = cli({"presets", "import", file});
    ASSERT_EQ(imported.exitCode, 0) << imported.err.toStdString();
    EXPECT_EQ(cli({"presets", "list"}).out, "Studio\nTrip\n");
    EXPECT_EQ(decodePresetJson(cli({"presets", "show", "Trip"}).out), original);

    // Refusals exit 2 with the reason and leave the store as it was.
    writeBytes(tmp.path() + "/photo.json", readBytes(in() + "/et-GPS.jpg"));
    const auto before = folderChecksums(config());
    const QList<std::pair<QStringList, QString>> refused = {
        {{"presets", "show", "Nope"}, "no preset named 'Nope'"},
        {{"presets", "remove", "Nope"}, "no preset named 'Nope'"},
        {{"presets", "export", "Nope", tmp.path() + "/x.json"}, "no preset named 'Nope'"},
        {{"presets", "import", tmp.path() + "/photo.json"}, "is not a preset file"},
        {{"presets", "import", file}, "a preset named 'Trip' exists"},
        {{"presets", "frobnicate"}, "unknown command"},
        {{"apply", "--preset", "Nope", "--out", tmp.path() + "/o", in()}, "no preset named 'Nope'"},
    };
    for (const auto& [args, message] : refused) {
        const ToolResult r = cli(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(QString::fromUtf8(r.err).contains(message))
            << args.join(' ').toStdString() << ": " << r.err.toStdString();
    }
    EXPECT_EQ(folderChecksums(config()), before);
    EXPECT_FALSE(QFileInfo::exists(tmp.path() + "/x.json"));
    EXPECT_FALSE(QFileInfo::exists(tmp.path() + "/o"));
}
