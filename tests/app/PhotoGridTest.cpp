// The thumbnail grid places every cell from its row: where a cell is drawn is where a click
// finds it, the keys move by cells and lines, and the scroll range follows the list as it
// grows, shrinks and the window is resized.

#include "AppTestSupport.h"

#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ThumbnailProvider.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QScrollBar>

using namespace tagmoor;

namespace {

QList<CGImageProperties> records(int from, int count) {
    QList<CGImageProperties> out;
    for (int i = from; i < from + count; ++i)
        out << makeEmptyRecord(QUrl::fromLocalFile(QString("/nowhere/%1.jpg").arg(i)));
    return out;
}

} // namespace

class PhotoGridTest : public QObject {
    Q_OBJECT
private slots:
    void cellsClicksKeysAndScrolling();
};

void PhotoGridTest::cellsClicksKeysAndScrolling() {
    WorkingSet set;
    WorkingListModel model(set);
    ThumbnailProvider thumbnails;
    PhotoGridView grid(thumbnails);
    grid.setModel(&model);
    grid.resize(700, 500);
    grid.show();
    QVERIFY(QTest::qWaitForWindowExposed(&grid));

    set.appendImages(records(0, 1000));
    const int columns = grid.columnCount();
    QVERIFY(columns >= 4);
    // The cells fill the width: no strip is left on the right.
    QVERIFY(columns * grid.cellSize().width() > grid.viewport()->width() - columns);
    const int lines = (1000 + columns - 1) / columns;
    QScrollBar* bar = grid.verticalScrollBar();
    QCOMPARE(bar->maximum(), lines * grid.cellSize().height() - grid.viewport()->height());

    // Every cell on screen is found where it is drawn, also after scrolling.
    for (const int offset : {0, 1234}) {
        bar->setValue(offset);
        for (int row = 0; row < 1000; ++row) {
            const QRect rect = grid.visualRect(model.index(row));
            if (!grid.viewport()->rect().contains(rect.center()))
                continue;
            QCOMPARE(grid.indexAt(rect.center()).row(), row);
        }
    }
    QVERIFY(!grid.indexAt({columns * grid.cellSize().width() + 2, 10}).isValid());

    // A click makes the current cell; the arrow keys move by a cell and by a line, and the
    // view follows the current cell to the end of the list.
    bar->setValue(0);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                      grid.visualRect(model.index(1)).center() + QPoint(0, 20));
    QCOMPARE(grid.currentIndex().row(), 1);
    QTest::keyClick(&grid, Qt::Key_Down);
    QCOMPARE(grid.currentIndex().row(), 1 + columns);
    QTest::keyClick(&grid, Qt::Key_Right);
    QCOMPARE(grid.currentIndex().row(), 2 + columns);
    QTest::keyClick(&grid, Qt::Key_End);
    QCOMPARE(grid.currentIndex().row(), 999);
    QVERIFY(grid.viewport()->rect().contains(grid.visualRect(model.index(999))));

    // Growing, a narrower window and emptying all change the range at once.
    set.appendImages(records(1000, 500));
    const int wider = bar->maximum();
    QVERIFY(wider > 0);
    grid.resize(400, 500);
    QTRY_VERIFY(grid.columnCount() < columns);
    QVERIFY(bar->maximum() > wider);
    set.clearImages();
    QCOMPARE(bar->maximum(), 0);
    QVERIFY(!grid.indexAt({10, 10}).isValid());
}

TAGMOOR_APP_TEST_MAIN(PhotoGridTest)
#include "PhotoGridTest.moc"
