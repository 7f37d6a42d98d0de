// What a user of the command line expects from any tool: a version, help for each command,
// refused values that say what would be taken, machine output, and a quiet stderr.
#include "../batch/BatchTestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

ToolResult conventionsCli(const QStringList& args) {
    return runTool(QStringLiteral(TAGMOOR_CLI), args);
}

QJsonObject jsonOf(const QByteArray& out) {
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(out, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << out.toStdString();
    return doc.object();
}

TEST(CliConventions, VersionAndHelpForEveryCommand) {
    const ToolResult version = conventionsCli({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_TRUE(QRegularExpression("^tagmoor-cli \\d+\\.\\d+\\.\\d+\\n$")
                    .match(QString::fromUtf8(version.out))
                    .hasMatch())
        << version.out.toStdString();
    for (const QStringList& args :
         {QStringList{"--help"}, QStringList{"read", "--help"}, QStringList{"apply", "--help"}}) {
        const ToolResult help = conventionsCli(args);
        EXPECT_EQ(help.exitCode, 0) << args.join(' ').toStdString();
        EXPECT_TRUE(help.out.startsWith("usage: tagmoor-cli")) << args.join(' ').toStdString();
        EXPECT_TRUE(help.err.isEmpty());
    }
    EXPECT_TRUE(conventionsCli({"apply", "--help"}).out.contains("--json"));
}

// A coded field takes only the codes of its table; the message names the field and the
// values it takes, and nothing is written.
TEST(CliConventions, CodedFieldsTakeOnlyTheirCodes) {
    QTemporaryDir tmp;
    const QString photo = copySample(formatsDir() + "/Reagan.jpg", tmp.path());
    const QString out = tmp.path() + "/out";
    const QList<std::pair<QString, QString>> refused = {
        {"Orientation=99", "Orientation does not take '99'"},
        {"Exif.Image.Orientation=0", "Orientation does not take '0'"},
        {"MeteringMode=7", "MeteringMode does not take '7'"},
        {"GPSLatitudeRef=X", "GPSLatitudeRef does not take 'X'"},
    };
    for (const auto& [set, message] : refused) {
        const ToolResult r = conventionsCli({"apply", "--set", set, "--out", out, photo});
        EXPECT_EQ(r.exitCode, 2) << set.toStdString();
        EXPECT_TRUE(QString::fromUtf8(r.err).contains(message)) << r.err.toStdString();
    }
    const ToolResult r = conventionsCli({"apply", "--set", "Orientation=99", "--out", out, photo});
    EXPECT_TRUE(r.err.contains("1 (Orientation Normal)")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("8 (Orientation Rotate 270)")) << r.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(out));

    for (const char* set : {"Orientation=6", "GPSLatitudeRef=S", "MeteringMode=5"}) {
        const ToolResult ok =
            conventionsCli({"apply", "--dry-run", "--set", set, "--out", out, photo});
        EXPECT_EQ(ok.exitCode, 0) << set << ": " << ok.err.toStdString();
    }
}

// --json gives one object that a script can read, for the plan and for the run, with the
// photos that were left aside.
TEST(CliConventions, ApplyPrintsJsonForThePlanAndTheResult) {
    QTemporaryDir tmp;
    const QString in = tmp.path() + "/in";
    QDir().mkpath(in);
    copySample(formatsDir() + "/Reagan.jpg", in);
    copySample(formatsDir() + "/et-GPS.jpg", in);
    writeBytes(in + "/broken.jpg", "not a photo");
    const QString out = tmp.path() + "/out";
    const QStringList args{"apply", "--json", "--set", "Artist=Jane", "--out", out, in};

    const ToolResult plan = conventionsCli(QStringList(args) << "--dry-run");
    EXPECT_EQ(plan.exitCode, 0) << plan.err.toStdString();
    const QJsonObject p = jsonOf(plan.out);
    EXPECT_TRUE(p["dryRun"].toBool());
    EXPECT_EQ(p["total"].toInt(), 2);
    EXPECT_EQ(p["wouldWrite"].toInt(), 2);
    const QJsonObject first = p["photos"].toArray().at(0).toObject();
    EXPECT_EQ(first["target"].toString(), out + "/Reagan.jpg");
    EXPECT_TRUE(first["write"].toBool());
    EXPECT_EQ(first["set"]["Exif.Image.Artist"].toString(), QStringLiteral("Jane"));
    EXPECT_EQ(p["notPhotos"].toArray().at(0).toString(), in + "/broken.jpg");
    EXPECT_FALSE(QFileInfo::exists(out));

    const ToolResult run = conventionsCli(args);
    EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonObject r = jsonOf(run.out);
    EXPECT_EQ(r["total"].toInt(), 2);
    EXPECT_EQ(r["written"].toInt(), 2);
    EXPECT_EQ(r["skipped"].toInt(), 0);
    EXPECT_EQ(r["output"].toString(), out);
    EXPECT_TRUE(r["problems"].toArray().isEmpty());

    // A second run finds both outputs in the way: each is a problem with its reason.
    const ToolResult again = conventionsCli(args);
    EXPECT_EQ(again.exitCode, 1);
    const QJsonArray problems = jsonOf(again.out)["problems"].toArray();
    ASSERT_EQ(problems.size(), 2);
    EXPECT_FALSE(problems.at(0)["reason"].toString().isEmpty());
}

// The progress line goes to stderr only when stderr is a terminal (here a pseudo-terminal of
// script(1)), and never with --quiet.
TEST(CliConventions, ProgressOnlyOnATerminalAndNotWhenQuiet) {
    if (QStandardPaths::findExecutable(QStringLiteral("script")).isEmpty())
        GTEST_SKIP() << "script(1) is not installed";
    QTemporaryDir tmp;
    const QString photo = copySample(formatsDir() + "/Reagan.jpg", tmp.path());
    const QString base =
        QStringLiteral("%1 --form described apply --set Artist=x --overwrite --out %2/out %3")
            .arg(QStringLiteral(TAGMOOR_CLI), tmp.path(), photo);
    const auto onTerminal = [](const QString& command) {
        return runTool(QStringLiteral("script"), {"-qec", command, "/dev/null"});
    };
    const QByteArray progress = "\r\033[K1 / 1  " + photo.toUtf8();

    const ToolResult shown = onTerminal(base);
    EXPECT_EQ(shown.exitCode, 0) << shown.out.toStdString();
    EXPECT_TRUE(shown.out.contains(progress)) << shown.out.toStdString();
    const ToolResult quiet = onTerminal(base + " --quiet");
    EXPECT_EQ(quiet.exitCode, 0);
    EXPECT_FALSE(quiet.out.contains("1 / 1")) << quiet.out.toStdString();
    EXPECT_TRUE(quiet.out.contains("Batch Process Completed"));
    const ToolResult piped = conventionsCli(base.split(' ').mid(1));
    EXPECT_FALSE(piped.err.contains("1 / 1")) << piped.err.toStdString();
}

// Over damaged files the libraries warn about every odd entry; by default each photo gets at
// most one line, and --verbose brings the libraries' words back.
TEST(CliConventions, DamagedFilesGiveOneLineEachUnlessVerbose) {
    QTemporaryDir tmp;
    const QString in = tmp.path() + "/in";
    QDir().mkpath(in);
    const QStringList damaged = QDir(malformedDir()).entryList(QDir::Files);
    for (const QString& name : damaged)
        copySample(malformedDir() + "/" + name, in);
    const QStringList args{"apply", "--set", "Artist=x", "--out", tmp.path() + "/out", in};

    const ToolResult quiet = conventionsCli(args);
    EXPECT_EQ(quiet.exitCode, 1);
    const QList<QByteArray> lines = quiet.err.trimmed().split('\n');
    EXPECT_LE(lines.size(), damaged.size() + 1) << quiet.err.toStdString();
    QSet<QString> named;
    for (const QByteArray& line : lines) {
        if (line.startsWith("No Changes"))
            continue;
        EXPECT_TRUE(line.startsWith("tagmoor-cli apply: " + in.toUtf8() + "/"))
            << line.toStdString();
        const QString path = QString::fromUtf8(line).section(QStringLiteral(": "), 1, 1);
        EXPECT_FALSE(named.contains(path)) << "two lines for " << path.toStdString();
        named.insert(path);
    }

    const ToolResult verbose = conventionsCli(QStringList(args) << "--verbose");
    EXPECT_EQ(verbose.exitCode, 1);
    EXPECT_GT(verbose.err.count('\n'), 3 * lines.size()) << verbose.err.toStdString();
}

} // namespace
