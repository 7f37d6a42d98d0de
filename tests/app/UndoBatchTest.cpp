// File > Undo Last Batch... of the main window.

#include "AppTestSupport.h"

#include "journal/RunJournal.h"

#include <QAction>

using namespace tagmoor;
using namespace tagmoor::test;

class UndoBatchTest : public QObject {
    Q_OBJECT
private slots:
    void asksThenUndoesTheNewestRunAndTellsWhatItLeft();
};

void UndoBatchTest::asksThenUndoesTheNewestRunAndTellsWhatItLeft() {
    TestApp t;
    // The journals of this test only (the test mode keeps them under the home folder).
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(t.home.path()));
    const auto restoreHome = qScopeGuard([&] { qputenv("HOME", oldHome); });
    auto* action = t.window().findChild<QAction*>(QStringLiteral("menuItemUndoLastBatch"));
    QVERIFY(action);

    action->trigger();
    QCOMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].text, QStringLiteral("There is no batch to undo."));

    const QString out = t.dir(QStringLiteral("out"));
    const QString made = out + QStringLiteral("/made.jpg");
    const QString changed = out + QStringLiteral("/changed.jpg");
    writeText(made, "made by the run");
    writeText(changed, "made by the run too");
    {
        const auto journal = RunJournal::start(false, out, 2);
        QVERIFY(journal);
        journal->recordCreated(made);
        journal->recordCreated(changed);
    }
    writeText(changed, "changed since");

    // "NO" leaves everything.
    t.prompt.answers = {1};
    action->trigger();
    QCOMPARE(t.prompt.alerts.size(), 2);
    QCOMPARE(t.prompt.alerts[1].buttons, (QStringList{"YES", "NO"}));
    QVERIFY(t.prompt.alerts[1].text.contains(out));
    QVERIFY(QFile::exists(made));

    t.prompt.answers = {0, 0};
    action->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 4);
    QVERIFY(!QFile::exists(made));
    QVERIFY(QFile::exists(changed));
    const QString told = t.prompt.alerts[3].text;
    QVERIFY2(told.contains(QStringLiteral("Files restored or removed: 1.")), qPrintable(told));
    QVERIFY2(told.contains(changed + QStringLiteral(": changed since the run")), qPrintable(told));
    QVERIFY(RunJournal::runs().value(0).undone);
    QVERIFY(action->isEnabled());
}

TAGMOOR_APP_TEST_MAIN(UndoBatchTest)
#include "UndoBatchTest.moc"
