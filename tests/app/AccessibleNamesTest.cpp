// Every control a user can reach has a name that a screen reader can say: the windows and
// sheets are opened one by one and each interactive widget in them is asked for its name.
#include "AppTestSupport.h"
#include "app/workingset/HomeScreen.h"
#include "workingset/ScanController.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextEdit>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

bool isInteractive(QWidget* w) {
    // Qt's own parts of a scroll area, a table or a combo box are named by Qt.
    if (w->objectName().startsWith(QLatin1String("qt_")) || qobject_cast<QScrollBar*>(w) ||
        qobject_cast<QHeaderView*>(w) || w->inherits("QComboBoxListView") ||
        w->inherits("QTableCornerButton") || w->inherits("QLineEditIconButton"))
        return false;
    return qobject_cast<QAbstractButton*>(w) || qobject_cast<QLineEdit*>(w) ||
           qobject_cast<QComboBox*>(w) || qobject_cast<QAbstractItemView*>(w) ||
           qobject_cast<QPlainTextEdit*>(w) || qobject_cast<QTextEdit*>(w) ||
           qobject_cast<QAbstractSpinBox*>(w) || qobject_cast<QAbstractSlider*>(w);
}

// "class objectName in window" for each interactive widget without a name.
QStringList unnamed(QWidget* window) {
    QStringList found;
    for (QWidget* w : window->findChildren<QWidget*>()) {
        if (!isInteractive(w))
            continue;
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
        if (!a || a->text(QAccessible::Name).trimmed().isEmpty())
            found << QStringLiteral("%1 %2 in %3")
                         .arg(QString::fromLatin1(w->metaObject()->className()), w->objectName(),
                              window->objectName());
    }
    return found;
}

} // namespace

class AccessibleNamesTest : public QObject {
    Q_OBJECT
private slots:
    void everyControlOfEveryWindowHasAName();
};

void AccessibleNamesTest::everyControlOfEveryWindowHasAName() {
    TestApp t(true, ValueForm::standard);
    t.window().show();
    QStringList missing = unnamed(&t.window()); // the add screen

    const QString folder = t.dir(QStringLiteral("photos"));
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), folder + QStringLiteral("/a.jpg"));
    QFile(folder + QStringLiteral("/a.jpg")).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    t.app->scans().addFromDrop({folder});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 20000);
    QCoreApplication::processEvents();
    missing << unnamed(&t.window()); // the home screen and its panes
    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));

    // The sheets and windows the home screen opens, each as it first comes up.
    t.app->showPreferences();
    const auto openDialogs = [&] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top != &t.window() && top->isVisible())
                missing << unnamed(top);
        }
        for (QDialog* dialog : t.window().findChildren<QDialog*>()) {
            if (dialog->isVisible()) {
                missing << unnamed(dialog);
                dialog->reject();
            }
        }
    };
    openDialogs();
    home->clickedRename();
    openDialogs();
    home->clickShowEditorGPS();
    openDialogs();
    home->openReview();
    openDialogs();
    home->openPreview(0);
    openDialogs();

    missing.removeDuplicates();
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char('\n'))));
}

TAGMOOR_APP_TEST_MAIN(AccessibleNamesTest)
#include "AccessibleNamesTest.moc"
