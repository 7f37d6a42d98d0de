// tagmoor-cli history and undo over runs of tagmoor-cli apply.
#include "TestSupport.h"

#include <QScopeGuard>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

TEST(UndoCommand, HistoryListsRunsAndUndoRestoresOrNamesWhatItLeft) {
    QTemporaryDir home;
    const QByteArray oldHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    const auto restoreHome = qScopeGuard([&] { qputenv("XDG_DATA_HOME", oldHome); });
    QTemporaryDir dir;
    const QString first = copySample(formatsDir() + "/Reagan.jpg", dir.path());
    const QString second = copySample(formatsDir() + "/et-ExifTool.tif", dir.path());
    const QByteArray firstBefore = readBytes(first);

    ASSERT_EQ(runTool(TAGMOOR_CLI, {"apply", "--quiet", "--in-place", "--set", "Artist=One", first})
                  .exitCode,
              0);
    ASSERT_EQ(
        runTool(TAGMOOR_CLI, {"apply", "--quiet", "--in-place", "--set", "Artist=Two", second})
            .exitCode,
        0);
    const ToolResult history = runTool(TAGMOOR_CLI, {"history"});
    ASSERT_EQ(history.exitCode, 0);
    const QStringList lines = QString::fromUtf8(history.out).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2) << history.out.toStdString();
    const QStringList newest = lines[0].split('\t');
    const QStringList oldest = lines[1].split('\t');
    ASSERT_EQ(newest.size(), 5);
    EXPECT_EQ(newest[2], QStringLiteral("in place"));
    EXPECT_EQ(newest[3], QStringLiteral("1 photo"));
    EXPECT_EQ(newest[4], QStringLiteral("can be undone"));

    // The newer run's photo was changed since: undo leaves it, names it and fails.
    ASSERT_TRUE(writeBytes(second, readBytes(second) + "later"));
    const ToolResult leftAlone = runTool(TAGMOOR_CLI, {"undo"});
    EXPECT_EQ(leftAlone.exitCode, 1);
    EXPECT_TRUE(
        leftAlone.err.contains(QFile::encodeName(second) + ": left alone: changed since the run"))
        << leftAlone.err.toStdString();

    // A run by its id; then once more is refused.
    const ToolResult undone = runTool(TAGMOOR_CLI, {"undo", oldest[0]});
    EXPECT_EQ(undone.exitCode, 0) << undone.err.toStdString();
    EXPECT_EQ(readBytes(first), firstBefore);
    const ToolResult again = runTool(TAGMOOR_CLI, {"undo", oldest[0]});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.err.contains("undone before")) << again.err.toStdString();
    EXPECT_EQ(runTool(TAGMOOR_CLI, {"undo"}).exitCode, 1);
    const QString listed = QString::fromUtf8(runTool(TAGMOOR_CLI, {"history"}).out);
    EXPECT_EQ(listed.count(QStringLiteral("\tundone\n")), 2) << listed.toStdString();
    EXPECT_EQ(runTool(TAGMOOR_CLI, {"undo", "a", "b"}).exitCode, 2);
}

} // namespace
} // namespace tagmoor
