// Presets from hands other than ours: a list whose photos are pipes or devices, damaged
// elements, hostile preset files, and two programs changing the list at once.
#include "TestSupport.h"
#include "TimeBound.h"
#include "shell/ShellFixture.h"
#include "workingset/WaitFor.h"

#include "foundation/Settings.h"
#include "presets/PresetArchive.h"
#include "presets/PresetDictionary.h"
#include "presets/PresetFile.h"
#include "presets/PresetJson.h"
#include "presets/PresetMerge.h"
#include "presets/PresetStore.h"

#include <QDataStream>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace tagmoor {
namespace {

using test::ScratchConfig;

QStringList namesIn(const QList<ActualPreset>& presets) {
    QStringList names;
    for (const ActualPreset& p : presets)
        names << p.name.value_or(QStringLiteral("<none>"));
    return names;
}

ActualPreset named(const QString& name, const QString& artist = {}) {
    ActualPreset p = makeNewPreset(name, 0);
    if (!artist.isEmpty())
        p.properties->tiffProperties->artist = artist;
    return p;
}

// A preset made from the photo at `path`: its record names the file.
ActualPreset fromPhoto(const QString& name, const QString& path) {
    ActualPreset p = makeNewPreset(name, 0);
    p.properties = makeEmptyRecord(QUrl::fromLocalFile(path));
    p.properties->xmpDataProperties->lens = QStringLiteral("StoredLens");
    return p;
}

QByteArray streamFor(const QVariantList& list) {
    QByteArray block;
    QDataStream out(&block, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_4);
    out << list;
    return block;
}

void makeFifo(const QString& path) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0) << path.toStdString();
}

struct SafetyStore {
    explicit SafetyStore(const QString& file) : settings(file), store(settings) {
        store.setSaveDelay(0);
    }
    Settings settings;
    PresetStore store;
};

// A list whose presets name a pipe, a device, a file that is not the user's to read and a
// real photo loads at once: loading opens none of them. The photos are read afterwards, on a
// thread of the store's, without waiting on any of them, and only the real photo lends the
// preset its XMP values.
TEST(PresetSafety, LoadingOpensNoFileAndPhotosAreReadAfterwardsWithoutWaiting) {
    if (!test::haveTool(QStringLiteral("exiv2")))
        GTEST_SKIP() << "exiv2 is not installed";
    ScratchConfig cfg;
    QTemporaryDir dir;
    const QString fifo = dir.filePath("photo-now-a-pipe.jpg");
    makeFifo(fifo);
    const QString photo = test::makeJpeg(dir.filePath("p.jpg"));
    ASSERT_EQ(test::runTool("exiv2", {"-Mset Xmp.aux.Lens FileLens", photo}).exitCode, 0);
    ASSERT_TRUE(PresetFile::write(
        PresetFile::pathFor(cfg.settingsFile()),
        encodePresetArchive({fromPhoto("Pipe", fifo), fromPhoto("Zero", "/dev/zero"),
                             fromPhoto("Secret", "/etc/shadow"), fromPhoto("Photo", photo)})));

    SafetyStore s(cfg.settingsFile());
    test::finishWithin(10, "loading presets whose photo is a pipe", [&] {
        EXPECT_TRUE(s.store.load().isClean());
        s.store.waitForPhotos();
    });
    EXPECT_EQ(namesIn(s.store.presets()), QStringList({"Pipe", "Zero", "Secret", "Photo"}));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(s.store.preset(i).properties->xmpDataProperties->lens,
                  PropertyValue("StoredLens"))
            << i;
        EXPECT_FALSE(s.store.preset(i).properties->fileSize.isPresent()) << i;
    }
    const ActualPreset fromFile = s.store.preset(3);
    EXPECT_EQ(fromFile.properties->xmpDataProperties->lens, PropertyValue("FileLens"));
    EXPECT_EQ(fromFile.properties->fileSize, PropertyValue(qint64(QFileInfo(photo).size())));
    EXPECT_EQ(s.store.presets().at(3).properties->xmpDataProperties->lens,
              PropertyValue("StoredLens"))
        << "the stored list keeps the stored values";

    // One preset on its own reads its photo at once, under the same rules.
    test::finishWithin(10, "reading a preset whose photo is a pipe", [&] {
        const ActualPreset alone = presetFromDictionary(presetToDictionary(fromPhoto("P", fifo)));
        EXPECT_EQ(alone.properties->xmpDataProperties->lens, PropertyValue("StoredLens"));
    });
}

// Elements of a readable list that are no presets, or that repeat an earlier name, are left
// out with their reasons; the others are kept, the file as it was is kept aside, and the
// next start finds nothing to leave out.
TEST(PresetSafety, WhatIsNoPresetIsLeftOutWithItsReasonAndTheOthersAreKept) {
    ScratchConfig cfg;
    const QString path = PresetFile::pathFor(cfg.settingsFile());
    const QVariantMap a = presetToDictionary(named("Alpha", "A"));
    const QVariantMap b = presetToDictionary(named("Beta", "B"));
    const QVariantMap again = presetToDictionary(named("ALPHA", "other"));
    QVariantMap halfName = presetToDictionary(named("x"));
    halfName["name"] = QString(QChar(0xd800)) + "lone";
    ASSERT_TRUE(PresetFile::write(
        path, streamFor({a, QStringLiteral("not a preset"), b, again, qint64(7), halfName})));
    const QByteArray before = test::readBytes(path);

    SafetyStore s(cfg.settingsFile());
    const PresetStore::LoadReport report = s.store.load();
    EXPECT_FALSE(report.damaged);
    EXPECT_EQ(namesIn(s.store.presets()), QStringList({"Alpha", "Beta"}));
    ASSERT_EQ(report.refused.size(), 4);
    QList<qsizetype> positions;
    for (const RefusedPreset& r : report.refused) {
        positions << r.position;
        EXPECT_FALSE(r.reason.isEmpty()) << r.position;
    }
    EXPECT_EQ(positions, (QList<qsizetype>{1, 3, 4, 5}));
    EXPECT_TRUE(report.refused[0].reason.contains("not a preset"))
        << report.refused[0].reason.toStdString();
    EXPECT_EQ(report.refused[1].name, "ALPHA");
    EXPECT_TRUE(report.refused[1].reason.contains("same name"));
    EXPECT_TRUE(report.refused[3].reason.contains("name"));
    EXPECT_TRUE(report.keptAs.startsWith(path + ".damaged-")) << report.keptAs.toStdString();
    EXPECT_EQ(test::readBytes(report.keptAs), before);

    SafetyStore next(cfg.settingsFile());
    EXPECT_TRUE(next.store.load().isClean());
    EXPECT_EQ(namesIn(next.store.presets()), QStringList({"Alpha", "Beta"}));
    next.store.addPreset("Gamma");
    next.store.waitForSaves();
    SafetyStore last(cfg.settingsFile());
    last.store.load();
    EXPECT_EQ(namesIn(last.store.presets()), QStringList({"Alpha", "Beta", "Gamma"}));
    EXPECT_EQ(test::readBytes(report.keptAs), before) << "the kept copy stays";
}

// The merge of the list on disk into a program's own: each row one program's changes against
// the other's, from the same base list.
TEST(PresetMerge, NeitherProgramDropsWhatTheOtherSaved) {
    const ActualPreset a = named("A", "1"), b = named("B", "1"), c = named("C", "1");
    const ActualPreset a2 = named("A", "2"), b2 = named("B", "2"), b3 = named("B", "3");
    const ActualPreset x = named("X"), y = named("Y"), preset = named("Preset");
    const QList<ActualPreset> base{a, b, c};
    struct Row {
        const char* what;
        QList<ActualPreset> mine, theirs, expected;
    };
    const QList<Row> rows{
        {"nobody changed anything", base, base, base},
        {"they added one", base, {a, b, c, x}, {a, b, c, x}},
        {"both added one", {a, b, c, y}, {a, b, c, x}, {a, b, c, y, x}},
        {"they removed one", {a, b, c, y}, {a, c}, {a, c, y}},
        {"I removed one, they kept it", {a, c}, base, {a, c}},
        {"they changed one: it stays in its place", {a, b, c, y}, {a, b2, c}, {a, b2, c, y}},
        {"I changed what they removed: the edit stays", {a, b2, c}, {a, c}, {a, b2, c}},
        {"both changed one: both stay, theirs renamed",
         {a, b2, c},
         {a, b3, c},
         {a, b2, c, named("B (2)", "3")}},
        {"both added the same name",
         {a, b, c, preset},
         {a, b, c, named("preset", "9")},
         {a, b, c, preset, named("preset (2)", "9")}},
        {"a taken number is passed over",
         {a, b, c, preset, named("Preset (2)")},
         {a, b, c, named("preset", "9")},
         {a, b, c, preset, named("Preset (2)"), named("preset (3)", "9")}},
        {"their order is not taken; a changed one keeps its place",
         {a, b, c},
         {c, a2, b},
         {a2, b, c}},
        {"I removed all, they added", {}, {a, b, c, x}, {x}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(namesIn(mergePresetLists(base, row.mine, row.theirs)), namesIn(row.expected))
            << row.what;
        EXPECT_EQ(mergePresetLists(base, row.mine, row.theirs), row.expected) << row.what;
    }
}

// A preset file made by hand or by an attacker: values of the wrong kind, nesting without
// end, numbers no kind holds, bytes that are not UTF-8, a name no text may hold, a photo that
// is a pipe. Each is refused with its reason, quickly, and opens nothing.
TEST(PresetSafety, HostilePresetFilesAreRefusedWithTheirReason) {
    QTemporaryDir dir;
    const QString fifo = dir.filePath("pipe.jpg");
    makeFifo(fifo);
    const auto file = [](const QByteArray& preset) {
        return "{\"tagmoorPreset\": 1, \"preset\": " + preset + "}";
    };
    QByteArray deepMap = "\"x\"";
    for (int i = 0; i < 40; ++i)
        deepMap = "{\"map\": {\"k\": " + deepMap + "}}";
    const QByteArray deepArrays = QByteArray(20000, '[') + QByteArray(20000, ']');
    struct Case {
        const char* what;
        QByteArray json;
        const char* reason; // a part of the reason given
    };
    const QList<Case> cases{
        {"not JSON", "{\"tagmoorPreset\": 1, \"preset\": {", "not JSON"},
        {"no object", "[1, 2, 3]", "not a preset file"},
        {"the version as text", "{\"tagmoorPreset\": \"1\", \"preset\": {}}", "not a preset file"},
        {"a later version", "{\"tagmoorPreset\": 7, \"preset\": {\"name\": \"a\"}}", "version 7"},
        {"the preset as a list", "{\"tagmoorPreset\": 1, \"preset\": []}", "not a preset file"},
        {"a name of the wrong kind", file("{\"name\": {\"int64\": 5}}"), "no name"},
        {"no name", file("{\"index\": {\"int64\": 1}}"), "no name"},
        {"a value of no kind", file("{\"name\": \"a\", \"index\": 5}"), "neither a text"},
        {"an unknown kind", file("{\"name\": \"a\", \"index\": {\"int128\": 5}}"), "int128"},
        {"a kind holding another", file("{\"name\": \"a\", \"index\": {\"int64\": \"five\"}}"),
         "int64"},
        {"a byte of 300", file("{\"name\": \"a\", \"index\": {\"uint8\": 300}}"), "uint8"},
        {"a float of text", file("{\"name\": \"a\", \"index\": {\"float32\": \"abc\"}}"),
         "float32"},
        {"a list of no list", file("{\"name\": \"a\", \"propertite\": {\"list\": 3}}"), "list"},
        {"rules of the wrong kind", file("{\"name\": \"a\", \"TimeSetting\": 4}"), "date rules"},
        {"values nested deep", file("{\"name\": \"a\", \"propertite\": " + deepMap + "}"),
         "nested too deep"},
        {"arrays nested deep", file(deepArrays), "not JSON"},
        {"a number JSON cannot hold", file("{\"name\": \"a\", \"index\": {\"int64\": 1e400}}"),
         "not JSON"},
        {"a huge integer", file("{\"name\": \"a\", \"index\": {\"int64\": 1e300}}"), "int64"},
        {"a huge integer as text",
         file("{\"name\": \"a\", \"index\": {\"int64\": \"99999999999999999999999\"}}"), "int64"},
        {"a huge unsigned integer", file("{\"name\": \"a\", \"index\": {\"uint64\": \"-1\"}}"),
         "uint64"},
        {"bytes that are not UTF-8", file("{\"name\": \"a\xff\xfe\"}"), "not JSON"},
        {"half of a character in the name", file("{\"name\": \"a\\ud800\"}"), "name"},
    };
    for (const Case& c : cases) {
        const QString path = dir.filePath("case.json");
        ASSERT_TRUE(test::writeBytes(path, c.json));
        QString why;
        QElapsedTimer clock;
        clock.start();
        EXPECT_FALSE(readPresetJsonFile(path, &why)) << c.what;
        EXPECT_LT(clock.elapsed(), 2000) << c.what;
        EXPECT_TRUE(why.contains(QLatin1String(c.reason))) << c.what << ": " << why.toStdString();
    }

    // A sound file whose preset names a pipe for its photo is taken without opening it.
    const QString withPipe = dir.filePath("pipe-photo.json");
    ASSERT_TRUE(test::writeBytes(withPipe, encodePresetJson(fromPhoto("Piped", fifo))));
    test::finishWithin(10, "importing a preset whose photo is a pipe", [&] {
        const auto preset = readPresetJsonFile(withPipe);
        ASSERT_TRUE(preset.has_value());
        EXPECT_EQ(preset->properties->url, QUrl::fromLocalFile(fifo));
    });

    // Only a small regular file is read: a pipe, a device, a folder and a huge file are
    // refused with what they are.
    const QString huge = dir.filePath("huge.json");
    {
        QFile f(huge);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        ASSERT_TRUE(f.resize(kMaxPresetJsonBytes + 1));
    }
    for (const auto& [path, reason] :
         {std::pair{fifo, "not a regular file"},
          std::pair{QString("/dev/zero"), "not a regular file"},
          std::pair{dir.path(), "not a regular file"}, std::pair{huge, "larger than 4 MB"},
          std::pair{dir.filePath("none.json"), "No such file"}}) {
        QString why;
        test::finishWithin(10, "reading a preset file that is no small regular file",
                           [&] { EXPECT_FALSE(readPresetJsonFile(path, &why)); });
        EXPECT_TRUE(why.contains(QLatin1String(reason))) << why.toStdString();
    }
}

} // namespace
} // namespace tagmoor
