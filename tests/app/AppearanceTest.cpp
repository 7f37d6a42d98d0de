// The window's colours and sharpness: a dark choice darkens every screen, the desktop's wish
// is followed, and pictures are made for a display scaled to twice the pixels.
#include "app/shell/Appearance.h"
#include "AppTestSupport.h"
#include "app/shell/PreferencesWindow.h"
#include "app/workingset/ThumbnailProvider.h"
#include "workingset/ScanController.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// The share of a widget's pixels that are light: most of a light screen, little of a dark one.
double lightShare(QWidget* widget) {
    const QImage image = widget->grab().toImage();
    if (qEnvironmentVariableIsSet("APPEARANCE_DUMP"))
        image.save(QStringLiteral("/tmp/appearance-%1.png").arg(widget->objectName()));
    qint64 light = 0;
    for (int y = 0; y < image.height(); y += 2)
        for (int x = 0; x < image.width(); x += 2)
            light += QColor(image.pixel(x, y)).lightness() > 170 ? 1 : 0;
    return double(light) / double(std::max(1, (image.width() / 2) * (image.height() / 2)));
}

} // namespace

class AppearanceTest : public QObject {
    Q_OBJECT
private slots:
    void aDarkChoiceDarkensEveryScreenAndLightTakesItBack();
    void theDesktopsWishIsFollowed();
    void picturesAreMadeForTheScreensPixels();
};

void AppearanceTest::aDarkChoiceDarkensEveryScreenAndLightTakesItBack() {
    TestApp t(true, ValueForm::standard);
    t.window().resize(1280, 800);
    t.window().show();
    t.app->showPreferences();
    PreferencesWindow* preferences = t.app->preferencesWindow();
    QVERIFY(preferences);
    auto* box = named<QComboBox>(preferences, QStringLiteral("comboBoxAppearance"));
    QVERIFY(box);

    box->setCurrentIndex(box->findData(QStringLiteral("dark")));
    emit box->activated(box->currentIndex());
    QCOMPARE(t.app->settings().appearance(), std::optional<QString>(QStringLiteral("dark")));
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 80);
    QCoreApplication::processEvents();
    QVERIFY2(lightShare(&t.window()) < 0.1, "the add screen stays light");
    QVERIFY2(lightShare(preferences) < 0.1, "the preferences stay light");

    // The home screen, with its list, editor and summary.
    const QStringList photos = copySamples(t.dir(QStringLiteral("photos")));
    t.app->scans().addFromDrop({t.home.filePath(QStringLiteral("photos"))});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() > 0, 20000);
    QCoreApplication::processEvents();
    QVERIFY2(lightShare(&t.window()) < 0.15, "the home screen stays light");

    box->setCurrentIndex(box->findData(QStringLiteral("light")));
    emit box->activated(box->currentIndex());
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 180);
    QCoreApplication::processEvents();
    QVERIFY(lightShare(&t.window()) > 0.6);
}

void AppearanceTest::theDesktopsWishIsFollowed() {
    qputenv("GTK_THEME", "Adwaita:dark");
    QCOMPARE(Appearance::desktopPrefersDark(), std::optional<bool>(true));
    Appearance appearance;
    appearance.apply(Appearance::Choice::System);
    QVERIFY(appearance.isDark());
    qputenv("GTK_THEME", "Adwaita");
    QCOMPARE(Appearance::desktopPrefersDark(), std::optional<bool>(false));
    Appearance light;
    light.apply(Appearance::Choice::System);
    QVERIFY(!light.isDark());
    qunsetenv("GTK_THEME");
}

void AppearanceTest::picturesAreMadeForTheScreensPixels() {
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    TestApp t(true, ValueForm::standard);
    t.window().resize(1280, 800);
    t.window().show();
    auto* icon = named<QLabel>(&t.window(), QStringLiteral("imgView"));
    QVERIFY(icon);
    QCOMPARE(icon->pixmap().devicePixelRatio(), 2.0);
    QCOMPARE(icon->pixmap().width(), 2 * 112);

    // The grid asks for its pictures at twice their shown side.
    QSignalSpy ready(&t.app->thumbnails(), &ThumbnailProvider::thumbnailReady);
    const QString folder = t.dir(QStringLiteral("photos"));
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), folder + QStringLiteral("/a.jpg"));
    t.app->scans().addFromDrop({folder});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 20000);
    auto sides = [&] {
        QList<int> seen;
        for (const QList<QVariant>& signal : ready)
            seen.append(signal.at(1).toInt());
        return seen;
    };
    QTRY_VERIFY_WITH_TIMEOUT(sides().contains(240), 10000);
    QVERIFY2(!sides().contains(120), "a picture made for half the pixels");
}

namespace {

// Every picture of this test is looked at on a display scaled to twice its pixels.
void prepareAppearanceTest() {
    qputenv("QT_SCALE_FACTOR", "2");
    qunsetenv("GTK_THEME");
}

} // namespace

TAGMOOR_APP_TEST_MAIN_PREPARED(AppearanceTest, prepareAppearanceTest)
#include "AppearanceTest.moc"
