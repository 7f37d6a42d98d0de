// The preset list: names, changes, and its life in the settings file across starts.
#include "TestSupport.h"
#include "shell/ShellFixture.h"
#include "workingset/WaitFor.h"

#include "foundation/Settings.h"
#include "presets/PresetArchive.h"
#include "presets/PresetCheck.h"
#include "presets/PresetFile.h"
#include "presets/PresetStore.h"

#include <QSettings>

#include <sys/stat.h>

namespace tagmoor {
namespace {

using test::ScratchConfig;

QStringList namesOf(const QList<ActualPreset>& presets) {
    QStringList names;
    for (const ActualPreset& p : presets)
        names << p.name.value_or(QStringLiteral("<none>"));
    return names;
}

// The block in the presets file, when there is one.
std::optional<QByteArray> storedBlock(const QString& settingsFile) {
    QByteArray block;
    if (PresetFile::read(PresetFile::pathFor(settingsFile), &block) != PresetFile::ReadStatus::Ok)
        return std::nullopt;
    return block;
}

// A store whose saves start at once, as after the delay.
struct StoreOnFile {
    explicit StoreOnFile(const QString& file) : settings(file), store(settings) {
        store.setSaveDelay(0);
    }
    Settings settings;
    PresetStore store;
};

TEST(PresetStore, DefaultNameSkipsTakenNamesInAnyCase) {
    ScratchConfig cfg;
    StoreOnFile s(cfg.settingsFile());
    EXPECT_EQ(s.store.defaultName(), "Preset");
    s.store.addPreset(QStringLiteral("preset"));
    EXPECT_EQ(s.store.defaultName(), "Preset1") << "the small-letter name blocks the word";
    s.store.addPreset(QStringLiteral("PRESET1"));
    EXPECT_EQ(s.store.defaultName(), "Preset2");
    s.store.addPreset();
    s.store.addPreset();
    EXPECT_EQ(namesOf(s.store.presets()), QStringList({"preset", "PRESET1", "Preset2", "Preset3"}));
    s.store.removePreset(2);
    EXPECT_EQ(s.store.defaultName(), "Preset2");
}

TEST(PresetStore, RenameRefusesEmptyUnfitAndTakenNamesWithTheirAlerts) {
    ScratchConfig cfg;
    StoreOnFile s(cfg.settingsFile());
    s.store.addPreset(QStringLiteral("Beach"));
    s.store.addPreset(QStringLiteral("City"));

    EXPECT_EQ(s.store.renamePreset(1, QString()),
              Alert::ok("No name specified!", "Please enter a Preset name to be saved."));
    EXPECT_EQ(s.store.renamePreset(1, QStringLiteral("bEACH")),
              Alert::ok("Preset name already exists",
                        "A Preset with same name already exists. Please enter a new Preset "
                        "name."));
    // A name the next load would refuse is never taken.
    for (const QString& unfit :
         {QStringLiteral("two\nlines"), QStringLiteral("--x"), QStringLiteral("tab\there")})
        EXPECT_EQ(s.store.renamePreset(1, unfit),
                  Alert::ok("Invalid Preset name.", unfitPresetNameText()))
            << unfit.toStdString();
    EXPECT_EQ(namesOf(s.store.presets()), QStringList({"Beach", "City"})) << "old names stay";

    EXPECT_EQ(s.store.renamePreset(1, QStringLiteral("CITY")), std::nullopt)
        << "a preset may change the capitals of its own name";
    EXPECT_EQ(s.store.renamePreset(5, QStringLiteral("x")), std::nullopt);
    EXPECT_EQ(namesOf(s.store.presets()), QStringList({"Beach", "CITY"}));
    EXPECT_EQ(s.store.checkName(QStringLiteral("Beach ")), PresetStore::NameCheck::Ok);
}

TEST(PresetStore, ChangesKeepOrderAndIndexesAndSurviveARestart) {
    ScratchConfig cfg;
    CGImageProperties values = makeEmptyRecord(std::nullopt);
    values.iptcProperties->city = QStringLiteral("Lyon");
    OriginalFinalDate rules;
    rules.configurationModifyDate = EmptyValue{};
    {
        StoreOnFile s(cfg.settingsFile());
        EXPECT_FALSE(s.store.load().damaged);
        EXPECT_TRUE(s.store.presets().isEmpty());
        for (const char* name : {"A", "B", "C", "D"})
            s.store.addPreset(QString::fromLatin1(name));
        s.store.removePreset(0);
        EXPECT_EQ(s.store.addPreset(QStringLiteral("E")), 3);
        EXPECT_TRUE(s.store.replaceValues(1, values, rules));
        EXPECT_FALSE(s.store.replaceValues(4, values, rules));
        EXPECT_FALSE(s.store.removePreset(-1));
        // The fixed menu rows stand around the list and are never stored.
        EXPECT_EQ(namesOf(s.store.menuRows()),
                  QStringList({"New Configuration", "B", "C", "D", "E", "Edit Presets..."}));
    }
    StoreOnFile again(cfg.settingsFile());
    EXPECT_FALSE(again.store.load().damaged);
    const QList<ActualPreset>& p = again.store.presets();
    EXPECT_EQ(namesOf(p), QStringList({"B", "C", "D", "E"}));
    EXPECT_EQ(p[0].index, 1);
    EXPECT_EQ(p[3].index, 3) << "the count before the addition, never renumbered";
    EXPECT_EQ(p[1].properties, values);
    EXPECT_EQ(p[1].timeSetting, rules);
    EXPECT_EQ(p[0].properties, makeEmptyRecord(std::nullopt));
}

TEST(PresetStore, ABurstOfChangesIsSavedOnceAfterTheDelay) {
    ScratchConfig cfg;
    StoreOnFile s(cfg.settingsFile());
    s.store.setSaveDelay(20);
    QList<bool> saves;
    QObject::connect(&s.store, &PresetStore::saveFinished, [&](bool ok) { saves << ok; });
    s.store.addPreset(QStringLiteral("one"));
    s.store.addPreset(QStringLiteral("two"));
    s.store.renamePreset(0, QStringLiteral("uno"));
    EXPECT_FALSE(storedBlock(cfg.settingsFile())) << "nothing is written within the same turn";
    ASSERT_TRUE(test::waitFor([&] { return !saves.isEmpty(); }, 5000));
    test::serveEvents(100);
    EXPECT_EQ(saves, QList<bool>{true});
    const auto stored = decodePresetArchive(storedBlock(cfg.settingsFile()).value_or(QByteArray()));
    ASSERT_TRUE(stored.has_value());
    EXPECT_EQ(namesOf(*stored), QStringList({"uno", "two"}));

    // Saves taken in a row are written in order; the last list is what stays.
    for (int i = 0; i < 20; ++i) {
        s.store.addPreset();
        s.store.waitForSaves();
    }
    s.store.removePreset(0);
    s.store.waitForSaves();
    EXPECT_EQ(decodePresetArchive(*storedBlock(cfg.settingsFile()))->size(), 21);
}

TEST(PresetStore, ASaveReplacesThePresetsFileWholeAndLeavesTheSettingsAlone) {
    ScratchConfig cfg;
    StoreOnFile s(cfg.settingsFile());
    s.settings.setIsPopUp(true);
    s.settings.sync();
    s.store.addPreset();
    s.store.waitForSaves();
    const QByteArray presetsPath = QFile::encodeName(s.store.fileName());
    const QByteArray settingsPath = QFile::encodeName(cfg.settingsFile());
    struct stat before {};
    struct stat settingsBefore {};
    ASSERT_EQ(::stat(presetsPath.constData(), &before), 0);
    ASSERT_EQ(::stat(settingsPath.constData(), &settingsBefore), 0);
    s.store.addPreset();
    s.store.waitForSaves();
    struct stat after {};
    struct stat settingsAfter {};
    ASSERT_EQ(::stat(presetsPath.constData(), &after), 0);
    ASSERT_EQ(::stat(settingsPath.constData(), &settingsAfter), 0);
    // A new file took the old one's place: the old bytes were never written over.
    EXPECT_NE(before.st_ino, after.st_ino);
    EXPECT_EQ(settingsBefore.st_ino, settingsAfter.st_ino) << "the main file is not rewritten";
    EXPECT_EQ(settingsBefore.st_size, settingsAfter.st_size);
    Settings reader(cfg.settingsFile());
    EXPECT_EQ(reader.isPopUp(), true) << "other keys are kept";
    EXPECT_FALSE(reader.holdsAnyValue(Settings::kPropertiesDataAP));
    EXPECT_EQ(decodePresetArchive(*storedBlock(cfg.settingsFile()))->size(), 2);
}

TEST(PresetStore, ADamagedBlockLoadsEmptyAndIsKeptAside) {
    const QByteArray valid = encodePresetArchive({makeNewPreset(QStringLiteral("X"), 0)});
    const QList<QVariant> damaged{
        QVariant(QByteArray("\x13\x37garbage\x00\xff", 11)),
        QVariant(valid.left(valid.size() - 3)),
        QVariant(QStringLiteral("a text where bytes belong")),
    };
    for (const QVariant& stored : damaged) {
        ScratchConfig cfg;
        {
            QSettings raw(cfg.settingsFile(), QSettings::NativeFormat);
            raw.setValue(Settings::kPropertiesDataAP, stored);
            raw.setValue(QStringLiteral("kPropertiesDataAP.damaged-20000101-000000"), 1);
        }
        StoreOnFile s(cfg.settingsFile());
        const PresetStore::LoadReport report = s.store.load();
        EXPECT_TRUE(report.damaged);
        EXPECT_TRUE(s.store.presets().isEmpty());
        EXPECT_TRUE(report.keptAs.startsWith("kPropertiesDataAP.damaged-"))
            << report.keptAs.toStdString();
        EXPECT_FALSE(s.settings.holdsAnyValue(Settings::kPropertiesDataAP));

        // A new save writes the key again and leaves the kept block alone.
        s.store.addPreset(QStringLiteral("fresh"));
        s.store.waitForSaves();
        Settings reader(cfg.settingsFile());
        EXPECT_EQ(reader.raw().value(report.keptAs), stored);
        EXPECT_EQ(namesOf(*decodePresetArchive(*storedBlock(cfg.settingsFile()))),
                  QStringList{"fresh"});
    }

    // Two damages within one second keep both blocks.
    ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    const QDateTime when = QDateTime::currentDateTimeUtc();
    settings.raw().setValue(Settings::kPropertiesDataAP, QByteArray("1"));
    const QString first = settings.moveAside(Settings::kPropertiesDataAP, when);
    settings.raw().setValue(Settings::kPropertiesDataAP, QByteArray("2"));
    const QString second = settings.moveAside(Settings::kPropertiesDataAP, when);
    EXPECT_EQ(second, first + "-2");
    EXPECT_EQ(settings.raw().value(first), QByteArray("1"));
    EXPECT_EQ(settings.moveAside(Settings::kPropertiesDataAP, when), QString()) << "nothing left";
}

// A long list is read on several threads: it comes back whole and in its order.
TEST(PresetStore, ALongListComesBackInOrder) {
    QList<ActualPreset> presets;
    for (int i = 0; i < 300; ++i) {
        ActualPreset p = makeNewPreset(QStringLiteral("P%1").arg(i), i);
        p.properties->tiffProperties->artist = QStringLiteral("Artist %1").arg(i);
        // A row of a mode that is not chosen is kept too.
        DateRuleInputs rows;
        rows.idod.changeDays = i % 7;
        p.timeSetting->configurationModifyDate = {KeepOriginal{}, rows};
        p.timeSetting->modifyDateAlive = i % 2 == 0;
        presets.append(p);
    }
    EXPECT_EQ(decodePresetArchive(encodePresetArchive(presets)), presets);
}

// The presets file itself damaged (cut short, overwritten by something else): the list
// starts empty, the file is kept aside byte for byte, and the next save starts a new one.
// A readable block left in the main settings by an earlier version moves to the presets file.
TEST(PresetStore, ADamagedPresetsFileIsKeptAsideAndTheOldKeyMovesOver) {
    ScratchConfig cfg;
    const QString path = PresetFile::pathFor(cfg.settingsFile());
    {
        StoreOnFile s(cfg.settingsFile());
        s.store.addPreset(QStringLiteral("kept"));
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    for (const QByteArray& damaged : {whole.left(whole.size() - 5), QByteArray("[General]\n")}) {
        test::writeBytes(path, damaged);
        StoreOnFile s(cfg.settingsFile());
        const PresetStore::LoadReport report = s.store.load();
        EXPECT_TRUE(report.damaged);
        EXPECT_TRUE(s.store.presets().isEmpty());
        EXPECT_TRUE(report.keptAs.startsWith(path + ".damaged-")) << report.keptAs.toStdString();
        EXPECT_EQ(test::readBytes(report.keptAs), damaged);
        EXPECT_FALSE(QFileInfo::exists(path));
        s.store.addPreset(QStringLiteral("fresh"));
        s.store.waitForSaves();
        EXPECT_EQ(namesOf(*decodePresetArchive(*storedBlock(cfg.settingsFile()))),
                  QStringList{"fresh"});
    }

    ScratchConfig old;
    {
        Settings settings(old.settingsFile());
        settings.setPropertiesData(encodePresetArchive({makeNewPreset(QStringLiteral("A"), 0)}));
        settings.setIsPopUp(true);
    }
    StoreOnFile s(old.settingsFile());
    EXPECT_FALSE(s.store.load().damaged);
    EXPECT_EQ(namesOf(s.store.presets()), QStringList{"A"});
    Settings reader(old.settingsFile());
    EXPECT_FALSE(reader.holdsAnyValue(Settings::kPropertiesDataAP)) << "moved, not copied";
    EXPECT_EQ(reader.isPopUp(), true);
    EXPECT_EQ(namesOf(*decodePresetArchive(*storedBlock(old.settingsFile()))), QStringList{"A"});
}

} // namespace
} // namespace tagmoor
