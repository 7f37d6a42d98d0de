#include "TestSupport.h"
#include "TimeBound.h"
#include "foundation/Settings.h"
#include "shell/LaunchState.h"
#include "shell/LoginItem.h"
#include "shell/ShellFixture.h"
#include "shell/StartSequence.h"

#include <QDir>
#include <QSettings>

#include <sys/stat.h>

namespace tagmoor {
namespace {

using test::ScratchConfig;
using Action = StartPlan::UpdateAction;

TEST(Settings, MistypedAndCorruptValuesCountAsAbsentAndAreSeeded) {
    ScratchConfig cfg;
    {
        Settings s(cfg.settingsFile());
        EXPECT_FALSE(s.startup());
        EXPECT_FALSE(s.autoCheckForUpdate());
        EXPECT_EQ(Settings::defaultFor(Settings::AutoCheckForUpdateOTM), QVariant(qint64(1)));
        EXPECT_FALSE(Settings::defaultFor(Settings::StartupOTM));
        s.raw().setValue(Settings::LoginStartStatusOTM, "banana");
        s.raw().setValue(Settings::AutoCheckForUpdateOTM, "often");
        s.setStartup(false);
        s.setLastVersionString("1.4");
        s.sync();
    }
    { // Read back from the file: types survive, the wrong ones read as absent.
        Settings s(cfg.settingsFile());
        EXPECT_EQ(s.startup(), false) << "present with value false";
        EXPECT_EQ(s.lastVersionString(), "1.4");
        EXPECT_FALSE(s.loginStartStatus());
        EXPECT_FALSE(s.autoCheckForUpdate());
        s.seedDefaults({Settings::LoginStartStatusOTM, Settings::AutoCheckForUpdateOTM,
                        Settings::IsPresetSavingSettingInHomeOTM, Settings::StartupOTM});
        s.sync();
    }
    {
        Settings s(cfg.settingsFile());
        EXPECT_EQ(s.loginStartStatus(), false);
        EXPECT_EQ(s.autoCheckForUpdate(), 1);
        EXPECT_EQ(s.isPresetSavingSettingInHome(), true);
        EXPECT_EQ(s.startup(), false) << "seeding leaves a valid value alone";
    }

    // A file of garbage: nothing readable, and the seeded values are kept afterwards.
    QByteArray junk;
    for (int i = 0; i < 4096; ++i)
        junk.append(char((i * 7919) & 0xff));
    ASSERT_TRUE(test::writeBytes(cfg.settingsFile(), "[General\n=\x01\x02]]]\n" + junk));
    {
        Settings s(cfg.settingsFile());
        EXPECT_FALSE(s.loginStartStatus());
        EXPECT_FALSE(s.startup());
        s.seedDefaults({Settings::LoginStartStatusOTM});
        s.setStartup(true);
        s.sync();
    }
    Settings again(cfg.settingsFile());
    EXPECT_EQ(again.loginStartStatus(), false);
    EXPECT_EQ(again.startup(), true);
}

// Each key's default is one value: what seeding stores, what `OrDefault` gives while nothing
// is stored, and what it gives again after a mistyped value was seeded over. A key without a
// default seeds nothing.
TEST(Settings, EachKeyHasOneDefaultForSeedingAndReading) {
    ScratchConfig cfg;
    Settings fresh(cfg.settingsFile());
    int withDefault = 0;
#define TAGMOOR_CHECK_NO_DEFAULT(name, Type, getter, setter)                                       \
    EXPECT_FALSE(Settings::defaultFor(Settings::name)) << #name;                                   \
    fresh.seedDefaults({Settings::name});                                                          \
    EXPECT_FALSE(fresh.contains(Settings::name)) << #name;
#define TAGMOOR_CHECK_DEFAULT(name, Type, getter, setter, defaultValue)                            \
    {                                                                                              \
        ++withDefault;                                                                             \
        EXPECT_FALSE(fresh.getter()) << #name;                                                     \
        EXPECT_EQ(fresh.getter##OrDefault(), Type(defaultValue)) << #name;                         \
        fresh.raw().setValue(Settings::name, QByteArray("\x01"));                                  \
        fresh.seedDefaults({Settings::name});                                                      \
        EXPECT_EQ(fresh.getter(), std::optional<Type>(Type(defaultValue))) << #name;               \
        EXPECT_EQ(fresh.raw().value(Settings::name), Settings::defaultFor(Settings::name))         \
            << #name;                                                                              \
    }
    TAGMOOR_SETTINGS_KEYS(TAGMOOR_CHECK_NO_DEFAULT, TAGMOOR_CHECK_DEFAULT)
#undef TAGMOOR_CHECK_NO_DEFAULT
#undef TAGMOOR_CHECK_DEFAULT
    EXPECT_EQ(withDefault, 9);
    // The preset offer's default is the value the window's start seeds.
    EXPECT_TRUE(Settings(cfg.settingsFile()).isPresetSavingSettingInHomeOrDefault());
}

// A settings file that QSettings would read in part and overwrite at its next write is kept
// aside whole, and the settings start anew; a sound file, comments and continued lines
// included, is read as it is.
TEST(Settings, ADamagedFileIsKeptAsideNotOverwritten) {
    QByteArray junk;
    for (int i = 0; i < 4096; ++i)
        junk.append(char((i * 7919) & 0xff));
    // A NUL inside a value: the literal's own size, less its closing NUL.
    static constexpr char withNul[] = "[General]\nlastVersion=1.0\0\n";
    const QList<QByteArray> damaged{
        junk,
        "[General]\nStartupOTM=true\nthis line is no setting\n",
        QByteArray(withNul, sizeof withNul - 1),
        "[General]\nlastVersion=caf\xe9\n",
        "[General\nStartupOTM=true\n",
    };
    for (const QByteArray& bytes : damaged) {
        ScratchConfig cfg;
        ASSERT_TRUE(test::writeBytes(cfg.settingsFile(), bytes));
        QList<Settings::Problem> told;
        {
            Settings s(cfg.settingsFile());
            EXPECT_FALSE(s.startup());
            s.setStartup(true);
            s.setProblemHandler([&](const Settings::Problem& p) { told << p; });
        }
        const QStringList kept =
            QDir(cfg.path()).entryList({"Tagmoor.conf.damaged-*"}, QDir::Files);
        ASSERT_EQ(kept.size(), 1) << bytes.left(40).toStdString();
        EXPECT_EQ(test::readBytes(cfg.path() + "/" + kept[0]), bytes);
        ASSERT_EQ(told.size(), 1);
        EXPECT_EQ(told[0].kind, Settings::Problem::Kind::KeptAside);
        EXPECT_EQ(told[0].path, cfg.path() + "/" + kept[0]);
        EXPECT_EQ(Settings(cfg.settingsFile()).startup(), true) << "a new file in its place";
    }

    // A pipe in the file's place is moved aside without a wait.
    ScratchConfig cfg;
    ASSERT_EQ(::mkfifo(QFile::encodeName(cfg.settingsFile()).constData(), 0600), 0);
    test::finishWithin(10, "opening settings that are a pipe", [&] {
        Settings s(cfg.settingsFile());
        EXPECT_TRUE(s.keptAsideAs().startsWith(cfg.settingsFile() + ".damaged-"));
        s.setStartup(true);
    });

    const QByteArray sound = "; written by hand\n[General]\nlastVersion=1.2\n# a note\n"
                             "UpdateFeedURL=\"http://a\\\n b\"\n\n[Other]\nx=1\n";
    ScratchConfig clean;
    ASSERT_TRUE(test::writeBytes(clean.settingsFile(), sound));
    Settings s(clean.settingsFile());
    EXPECT_TRUE(s.keptAsideAs().isEmpty());
    EXPECT_EQ(s.lastVersionString(), "1.2");
}

// Settings that cannot be written are told once however often they are written, to a
// handler set before or after.
TEST(Settings, AFileThatCannotBeWrittenIsToldOnce) {
    ScratchConfig cfg;
    // A folder whose place a file takes: no user, root included, can write there.
    ASSERT_TRUE(test::writeBytes(cfg.path() + "/blocked", "a file"));
    const QString file = cfg.path() + "/blocked/Tagmoor.conf";
    Settings s(file);
    s.setStartup(true);
    s.setLastVersionString("2.0");
    QList<Settings::Problem> told;
    s.setProblemHandler([&](const Settings::Problem& p) { told << p; });
    s.setIsPopUp(false);
    s.seedDefaults({Settings::AutoCheckForUpdateOTM});
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told[0].kind, Settings::Problem::Kind::NotWritable);
    EXPECT_EQ(told[0].path, file);
    EXPECT_EQ(s.lastVersionString(), "2.0") << "the values last while the program runs";
}

TEST(StartSequence, FirstStartSeedsAndSchedulesNoUpdateCheck) {
    ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    settings.setIsPopUp(true);
    LoginItem login("/usr/bin/tagmoor");
    LaunchState state;
    StartSequence start(settings, login, state, "2.1");

    const StartPlan plan = start.applicationWillFinishLaunching();
    EXPECT_TRUE(plan.showWelcomeWindow);
    EXPECT_TRUE(plan.firstStart);
    EXPECT_EQ(plan.updateAction, Action::None);
    EXPECT_EQ(plan.usageEvents, QStringList{"install"});
    EXPECT_EQ(settings.isPopUp(), false);
    EXPECT_EQ(settings.firstRun(), false);
    EXPECT_EQ(settings.lastVersionString(), "2.1");
    EXPECT_EQ(settings.openWithItems(), false);
    EXPECT_EQ(settings.loginStartStatus(), false);
    EXPECT_EQ(settings.isPresetSavingSettingInHome(), true);
    EXPECT_EQ(settings.isOverwriteIfAFileWithASameName(), false);
    EXPECT_FALSE(settings.autoCheckForUpdate()) << "stored on the second start, not the first";
    EXPECT_FALSE(QFile::exists(cfg.autostartEntry()));
    EXPECT_FALSE(state.launchFinished);

    // Leaving the welcome window with the login box on.
    start.welcomeLeft(true);
    EXPECT_EQ(settings.startup(), true);
    EXPECT_EQ(settings.loginStartStatus(), true);
    EXPECT_TRUE(QFile::exists(cfg.autostartEntry()));
    EXPECT_TRUE(test::readBytes(cfg.autostartEntry()).contains("Exec=/usr/bin/tagmoor\n"));
    start.applicationDidFinishLaunching();
    EXPECT_TRUE(state.launchFinished);
}

TEST(StartSequence, StandardFormFirstStartGreetsOnceAndAsksNothing) {
    ValueFormScope scope(ValueForm::standard);
    ScratchConfig cfg;
    Settings settings(cfg.settingsFile());
    LoginItem login("/usr/bin/tagmoor");
    LaunchState state;
    StartSequence start(settings, login, state, "2.1");
    bool shownWelcome = true;
    const StartPlan plan =
        start.applicationWillFinishLaunching([&](bool welcome) { shownWelcome = welcome; });
    EXPECT_FALSE(plan.showWelcomeWindow);
    EXPECT_FALSE(shownWelcome) << "the main window comes first";
    EXPECT_TRUE(plan.firstStart);
    EXPECT_EQ(settings.startup(), true) << "files opened from now on are taken";
    EXPECT_EQ(settings.loginStartStatus(), false);
    EXPECT_FALSE(QFile::exists(cfg.autostartEntry()));
}

TEST(StartSequence, LaterStartsPickTheUpdateModeVersionAndOverwriteValue) {
    struct Row {
        std::optional<qint64> mode;
        Action action;
    };
    for (const Row& row :
         {Row{std::nullopt, Action::AutoInstallUpdates}, Row{0, Action::CheckForUpdate},
          Row{1, Action::AutoInstallUpdates}, Row{2, Action::None}, Row{-5, Action::None}}) {
        ScratchConfig cfg;
        Settings settings(cfg.settingsFile());
        settings.setFirstRun(false);
        settings.setStartup(false); // only presence counts
        settings.setIsPopUp(true);
        settings.setIsOverwriteIfAFileWithASameName(true);
        settings.setLoginStartStatus(true);
        if (row.mode)
            settings.setAutoCheckForUpdate(*row.mode);
        LoginItem login("/opt/Tag moor/tagmoor");
        LaunchState state;
        const StartPlan plan =
            StartSequence(settings, login, state, "1.2").applicationWillFinishLaunching();
        EXPECT_EQ(plan.updateAction, row.action);
        EXPECT_EQ(plan.updateDelayMs, 5000);
        EXPECT_FALSE(plan.showWelcomeWindow);
        EXPECT_FALSE(plan.firstStart);
        EXPECT_TRUE(state.isOverwriteIfAFileWithASameName);
        EXPECT_EQ(settings.isPopUp(), false);
        EXPECT_EQ(settings.autoCheckForUpdate(), row.mode.value_or(1));
        EXPECT_TRUE(
            test::readBytes(cfg.autostartEntry()).contains("Exec=\"/opt/Tag moor/tagmoor\""));
    }

    // The stored version moves forward only when both parse as one number and it grew.
    struct VersionRow {
        QString stored, current, after;
        bool event;
    };
    for (const VersionRow& row :
         {VersionRow{"1.0", "1.2", "1.2", true}, VersionRow{"1.3", "1.2", "1.3", false},
          VersionRow{"1.2.3", "1.3", "1.2.3", false}, VersionRow{"1.2", "1.2.1", "1.2", false},
          VersionRow{"V1", "1.0", "V1", false}}) {
        ScratchConfig cfg;
        Settings settings(cfg.settingsFile());
        settings.setFirstRun(false);
        settings.setLastVersionString(row.stored);
        settings.setAutoCheckForUpdate(2);
        LoginItem login;
        LaunchState state;
        const StartPlan plan =
            StartSequence(settings, login, state, row.current).applicationWillFinishLaunching();
        EXPECT_EQ(settings.lastVersionString(), row.after) << row.stored.toStdString();
        EXPECT_EQ(plan.usageEvents.contains("tagmoorupdated"), row.event);
    }
}

TEST(LoginItem, WritesAndRemovesTheAutostartEntryRepeatedly) {
    ScratchConfig cfg;
    LoginItem login("/usr/bin/tagmoor");
    EXPECT_EQ(LoginItem::entryPath(), cfg.autostartEntry());
    login.apply(false);
    login.apply(false);
    EXPECT_FALSE(login.isInstalled());
    login.apply(true);
    login.apply(true);
    EXPECT_TRUE(login.isInstalled());
    const QByteArray text = test::readBytes(cfg.autostartEntry());
    EXPECT_TRUE(text.startsWith("[Desktop Entry]\n"));
    EXPECT_TRUE(text.contains("Type=Application\n"));
    login.apply(false);
    EXPECT_FALSE(login.isInstalled());
}

// The arguments of an Exec value as a desktop reads them: the string escapes first, then the
// quoting of arguments, then the doubled percent sign.
QStringList execArguments(const QString& value) {
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar next = i + 1 < value.size() ? value[i + 1] : QChar();
        if (value[i] != u'\\' || !QStringLiteral("sntr\\").contains(next)) {
            text += value[i];
            continue;
        }
        ++i;
        text += next == u's'   ? QChar(u' ')
                : next == u'n' ? QChar(u'\n')
                : next == u't' ? QChar(u'\t')
                : next == u'r' ? QChar(u'\r')
                               : next;
    }
    QStringList arguments;
    QString current;
    bool quoted = false, any = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (quoted && c == u'\\' && i + 1 < text.size()) {
            current += text[++i];
        } else if (c == u'"') {
            quoted = !quoted;
            any = true;
        } else if (c == u' ' && !quoted) {
            if (any || !current.isEmpty())
                arguments << current;
            current.clear();
            any = false;
        } else {
            current += c;
        }
    }
    if (any || !current.isEmpty())
        arguments << current;
    for (QString& a : arguments)
        a.replace(QStringLiteral("%%"), QStringLiteral("%"));
    return arguments;
}

QString execLine(const QString& entry) {
    for (const QString& line : QString::fromUtf8(test::readBytes(entry)).split(u'\n')) {
        if (line.startsWith(QStringLiteral("Exec=")))
            return line.mid(5);
    }
    return {};
}

TEST(LoginItem, FollowsTheProgramWhereverItMovesAndKeepsTheUsersChoice) {
    ScratchConfig cfg;
    // Any path reads back whole from the entry, reserved characters and all.
    const QStringList programs{
        "/usr/bin/tagmoor",
        "/opt/Tag moor/tagmoor",
        "/opt/it's \"new\"/$HOME/`id`/100% done/a\\b/(x)|y;z&*?#<>~/tagmoor",
        "/home/j/Apps\tand\nlines/tagmoor",
    };
    for (const QString& program : programs) {
        LoginItem(program).apply(true);
        EXPECT_EQ(execArguments(execLine(cfg.autostartEntry())), QStringList{program})
            << execLine(cfg.autostartEntry()).toStdString();
    }

    // The program moved: the entry follows, and what the user added stays.
    LoginItem("/usr/bin/tagmoor").apply(true);
    QByteArray text = test::readBytes(cfg.autostartEntry());
    test::writeBytes(cfg.autostartEntry(), text + "X-GNOME-Autostart-Delay=10\n");
    LoginItem moved("/opt/tagmoor/bin/tagmoor");
    moved.apply(true);
    EXPECT_EQ(execLine(cfg.autostartEntry()), "/opt/tagmoor/bin/tagmoor");
    EXPECT_TRUE(test::readBytes(cfg.autostartEntry()).contains("X-GNOME-Autostart-Delay=10\n"));
    EXPECT_TRUE(moved.isInstalled());

    // Turned off on the desktop's side: neither on nor off touches it, and it counts as off.
    for (const QByteArray& off :
         {QByteArray("Hidden=true"), QByteArray("X-GNOME-Autostart-enabled = false")}) {
        const QByteArray hidden = "[Desktop Entry]\nType=Application\nName=Tagmoor\n"
                                  "Exec=/old/place/tagmoor\n" +
                                  off + "\n";
        test::writeBytes(cfg.autostartEntry(), hidden);
        moved.apply(true);
        EXPECT_EQ(test::readBytes(cfg.autostartEntry()), hidden);
        EXPECT_FALSE(moved.isInstalled());
        moved.apply(false);
        EXPECT_EQ(test::readBytes(cfg.autostartEntry()), hidden);
    }
    // The same key in another group does not count.
    test::writeBytes(cfg.autostartEntry(), "[Desktop Entry]\nExec=/x\n[Desktop Action a]\n"
                                           "Hidden=true\n");
    moved.apply(true);
    EXPECT_EQ(execLine(cfg.autostartEntry()), "/opt/tagmoor/bin/tagmoor");
    EXPECT_TRUE(moved.isInstalled());

    // A pipe in the entry's place never stalls the start.
    QFile::remove(cfg.autostartEntry());
    ASSERT_EQ(::mkfifo(QFile::encodeName(cfg.autostartEntry()).constData(), 0600), 0);
    test::finishWithin(10, "applying the login item over a FIFO", [&] { moved.apply(true); });
    EXPECT_TRUE(moved.isInstalled());
}

} // namespace
} // namespace tagmoor
