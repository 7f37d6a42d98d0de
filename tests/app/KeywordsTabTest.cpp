// The Keywords & More tab: the marked photos' keywords with their counts, keywords added and
// removed, rating (buttons and the keys 0 to 5 on the list), label and texts, all reaching the
// summary, the run and the written files.
#include "WindowRunSupport.h"
#include "app/editor/KeywordsMorePanel.h"
#include "app/shell/PreferencesWindow.h"
#include "app/workingset/PhotoListViews.h"
#include "editor/EditorState.h"
#include "extras/CopiesInStep.h"
#include "foundation/Settings.h"
#include "processing/HomeSession.h"
#include "processing/SidecarSettings.h"
#include "workingset/SupportedExtensions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QToolButton>
#include <QTreeWidget>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// Each row of the keyword list as "keyword count".
QStringList rowsOf(QTreeWidget* tree) {
    QStringList rows;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        rows << tree->topLevelItem(i)->text(0) + QLatin1Char(' ') + tree->topLevelItem(i)->text(1);
    return rows;
}

QToolButton* removeButtonOf(QTreeWidget* tree, const QString& keyword) {
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        if (tree->topLevelItem(i)->text(0) == keyword)
            return qobject_cast<QToolButton*>(tree->itemWidget(tree->topLevelItem(i), 2));
    }
    return nullptr;
}

} // namespace

class KeywordsTabTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
    }
    void listsCountsAndEditsTheMarkedPhotosKeywords();
    void ratingKeysWorkOnTheListOnly();
    void preferencesHoldCopiesSidecarsAndFormats();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void KeywordsTabTest::listsCountsAndEditsTheMarkedPhotosKeywords() {
    TestApp t(true, ValueForm::standard);
    const QString pictures = m_home->filePath(QStringLiteral("Pictures"));
    HomeScreen* home =
        dropPhotos(t,
                   {copySample(pictures, QStringLiteral("et-IPTC.jpg"), QStringLiteral("a.jpg")),
                    copySample(pictures, QStringLiteral("et-XMP.jpg"), QStringLiteral("b.jpg"))},
                   2);
    auto* panel = named<KeywordsMorePanel>(home, QStringLiteral("KeywordsMorePanel"));
    QVERIFY(panel && !panel->isVisible());
    QSignalSpy shown(panel, &KeywordsMorePanel::keywordsShown);
    named<QToolButton>(home, QStringLiteral("btnKeywordsMore"))->click();
    QVERIFY(panel->isVisible());
    QVERIFY(shown.wait(10000));
    auto* tree = named<QTreeWidget>(panel, QStringLiteral("treeKeywords"));
    QCOMPARE(rowsOf(tree), (QStringList{"ExifTool 2", "IPTC 1", "Test 2", "XMP 1"}));

    // Add one (completion offers what is seen), remove one, and take an added one back.
    auto* add = named<QLineEdit>(panel, QStringLiteral("txtAddKeyword"));
    QTest::keyClicks(add, QStringLiteral("Places|Lisbon"));
    QTest::keyClick(add, Qt::Key_Return);
    QTest::keyClicks(add, QStringLiteral("Tram"));
    QTest::keyClick(add, Qt::Key_Return);
    removeButtonOf(tree, QStringLiteral("Test"))->click();
    removeButtonOf(tree, QStringLiteral("Tram"))->click();
    QCOMPARE(rowsOf(tree),
             (QStringList{"ExifTool 2", "IPTC 1", "Test 2", "XMP 1", "Places|Lisbon new"}));
    QVERIFY(tree->topLevelItem(2)->font(0).strikeOut());
    QTest::keyClicks(add, QStringLiteral("Bad||Level"));
    QTest::keyClick(add, Qt::Key_Return);
    QCOMPARE(t.prompt.alerts.size(), 1);
    add->clear();

    named<QToolButton>(panel, QStringLiteral("btnRating4"))->click();
    auto* label = named<QComboBox>(panel, QStringLiteral("cmbLabel"));
    label->setCurrentIndex(label->findData(QStringLiteral("Red")));
    emit label->activated(label->currentIndex());
    QTest::keyClicks(named<QLineEdit>(panel, QStringLiteral("txtExtra-event")),
                     QStringLiteral("Festa"));
    const ExtraEdits& edits = t.app->homeSession().extraEdits();
    QCOMPARE(edits.addKeywords, QStringList{"Places|Lisbon"});
    QCOMPARE(edits.removeKeywords, QStringList{"Test"});
    QCOMPARE(edits.rating, std::optional(4));
    QCOMPARE(edits.label, std::optional(QStringLiteral("Red")));
    QCOMPARE(edits.texts[std::size_t(ExtraText::Event)], std::optional(QStringLiteral("Festa")));
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblRunSummary"))->text().contains("rating: 4"),
             true);

    const QString out = m_home->filePath(QStringLiteral("Out"));
    t.prompt.alerts.clear();
    runInto(t, home, out);
    const QString written = out + QStringLiteral("/b.jpg");
    QCOMPARE(exiv2Value(written, "Xmp.dc.subject"), QStringLiteral("ExifTool, XMP, Lisbon"));
    QCOMPARE(exiv2Value(written, "Xmp.xmp.Rating"), QStringLiteral("4"));
    QCOMPARE(exiv2Value(written, "Xmp.xmp.Label"), QStringLiteral("Red"));

    // Finish: the next list starts without them, and the tab shows so.
    finish(home);
    QTRY_COMPARE(t.app->homeSession().extraEdits(), ExtraEdits{});
    QVERIFY(!named<QToolButton>(panel, QStringLiteral("btnRating4"))->isChecked());
    QCOMPARE(label->currentIndex(), 0);
    QVERIFY(named<QLineEdit>(panel, QStringLiteral("txtExtra-event"))->text().isEmpty());
}

void KeywordsTabTest::ratingKeysWorkOnTheListOnly() {
    TestApp t(true, ValueForm::standard);
    const QString pictures = m_home->filePath(QStringLiteral("Keys"));
    HomeScreen* home = dropPhotos(
        t, {copySample(pictures, QStringLiteral("Reagan.jpg"), QStringLiteral("a.jpg"))}, 1);
    const HomeSession& session = t.app->homeSession();
    auto* table = named<PhotoTableView>(home);
    QTest::keyClick(table, Qt::Key_3);
    QCOMPARE(session.extraEdits().rating, std::optional(3));
    QTest::keyClick(table, Qt::Key_0, Qt::KeypadModifier);
    QCOMPARE(session.extraEdits().rating, std::optional(0));
    QTest::keyClick(table, Qt::Key_6);
    QTest::keyClick(table, Qt::Key_5, Qt::ControlModifier);
    QCOMPARE(session.extraEdits().rating, std::optional(0));
    QTest::keyClick(named<PhotoGridView>(home), Qt::Key_5);
    QCOMPARE(session.extraEdits().rating, std::optional(5));
    QVERIFY(named<QToolButton>(home, QStringLiteral("btnRating5"))->isChecked());

    // Typed into a field, a digit is text.
    QTest::keyClicks(named<QLineEdit>(home, QStringLiteral("txtAddKeyword")), QStringLiteral("2"));
    QCOMPARE(session.extraEdits().rating, std::optional(5));

    // Nothing marked: the keys set nothing.
    t.app->homeSession().clearSummaryItem(session.summary().first());
    t.set().setAllSelected(false);
    QTest::keyClick(table, Qt::Key_2);
    QCOMPARE(session.extraEdits().rating, std::nullopt);
}

// Copies in step: on by default, kept apart by the described form whatever the switch says; the
// box turns the process's switch at once and is stored for the next start; the sidecar and
// formats choices are stored and reach the next run and scan.
void KeywordsTabTest::preferencesHoldCopiesSidecarsAndFormats() {
    {
        TestApp described(true, ValueForm::described);
        QCOMPARE(copiesInStep(), kCopiesInStepByDefault);
        QVERIFY(!described.app->homeSession().reviewValues().extras.syncsCopies());
    }
    TestApp t(true, ValueForm::standard);
    QCOMPARE(copiesInStep(), kCopiesInStepByDefault);
    QCOMPARE(t.app->homeSession().reviewValues().extras.syncsCopies(), kCopiesInStepByDefault);
    t.app->showPreferences();
    PreferencesWindow* preferences = t.app->preferencesWindow();
    auto* copies = named<QCheckBox>(preferences, QStringLiteral("btnCopiesInStep"));
    QCOMPARE(copies->isChecked(), kCopiesInStepByDefault);
    if (copies->isChecked())
        copies->click();
    copies->click();
    QVERIFY(copiesInStep());
    QCOMPARE(t.app->settings().copiesInStep(), std::optional(true));

    auto* sidecars = named<QComboBox>(preferences, QStringLiteral("comboBoxSidecarWrite"));
    QCOMPARE(sidecars->currentData().toString(), QStringLiteral("fallback"));
    sidecars->setCurrentIndex(sidecars->findData(QStringLiteral("always")));
    emit sidecars->activated(sidecars->currentIndex());
    QCOMPARE(t.app->settings().sidecarWrite(), std::optional(QStringLiteral("always")));
    QCOMPARE(t.app->homeSession().reviewValues().sidecar.write, SidecarWrite::always);

    auto* classic = named<QCheckBox>(preferences, QStringLiteral("btnClassicExtensionsOnly"));
    QVERIFY(!classic->isChecked());
    QVERIFY(supportedExtensions().contains(QStringLiteral("heic")));
    classic->click();
    QVERIFY(!supportedExtensions().contains(QStringLiteral("heic")));
    classic->click();
    QVERIFY(supportedExtensions().contains(QStringLiteral("heic")));
    preferences->close();

    // The stored choice holds at the next start.
    t.app.reset();
    AppDelegate::Options options;
    options.settingsFile = t.home.filePath(QStringLiteral("settings.ini"));
    options.loginExecutable = QStringLiteral("/usr/bin/tagmoor");
    t.app = std::make_unique<AppDelegate>(t.prompt, options);
    t.app->start();
    QVERIFY(copiesInStep());
    setCopiesInStep(false);
}

TAGMOOR_APP_TEST_MAIN(KeywordsTabTest)
#include "KeywordsTabTest.moc"
