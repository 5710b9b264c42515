// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/screenlayout.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

class TestScreenLayout : public QObject
{
    Q_OBJECT

private slots:
    void a_scaling_is_found_from_rounded_sizes_data()
    {
        QTest::addColumn<QSize>("native");
        QTest::addColumn<QSize>("counted");
        QTest::addColumn<qreal>("scale");
        QTest::newRow("none") << QSize(1280, 800) << QSize(1280, 800) << 1.0;
        QTest::newRow("whole") << QSize(2560, 1600) << QSize(1280, 800) << 2.0;
        QTest::newRow("a half") << QSize(1920, 1200) << QSize(1280, 800) << 1.5;
        QTest::newRow("a quarter, cut off") << QSize(1366, 768) << QSize(1092, 614) << 1.25;
        QTest::newRow("a quarter, rounded up") << QSize(1366, 768) << QSize(1093, 615) << 1.25;
        QTest::newRow("upright") << QSize(1200, 1920) << QSize(800, 1280) << 1.5;
        // Of one side alone, 4/3 fits as well.
        QTest::newRow("narrow") << QSize(15, 1200) << QSize(12, 960) << 1.25;
        QTest::newRow("low") << QSize(1200, 15) << QSize(960, 12) << 1.25;
    }
    void a_scaling_is_found_from_rounded_sizes()
    {
        QFETCH(const QSize, native);
        QFETCH(const QSize, counted);
        QTEST(ScreenLayout::scaleBetween(native, counted), "scale");
    }

    void sizes_that_no_scaling_connects_give_what_is_nearest()
    {
        QCOMPARE(ScreenLayout::scaleBetween({3000, 1000}, {1000, 1000}), 3.0);
        // Rounding takes less than a point.
        QCOMPARE(ScreenLayout::scaleBetween({1000, 1000}, {999, 999}), 1000. / 999);
    }

    // Such a desktop may scale by a fraction that the toolkit does not know of.
    void a_screen_for_itself_has_the_scale_of_its_own_sizes()
    {
        const QScreen *screen = QGuiApplication::primaryScreen();
        const QSize counted = screen->geometry().size();
        QVERIFY(!counted.isEmpty() && counted.width() % 2 == 0 && counted.height() % 2 == 0);
        ScreenLayout layout{.screens = {{QPoint(0, 0), counted * 3 / 2}},
                            .desktop = counted * 3 / 2};
        QCOMPARE(layout.scaleOf(screen), screen->devicePixelRatio());
        layout.isEachForItself = true;
        QCOMPARE(layout.scaleOf(screen), 1.5);
        // One that has come since.
        layout.screens.clear();
        QCOMPARE(layout.scaleOf(screen), screen->devicePixelRatio());
    }

    void without_a_server_screens_are_as_large_as_the_toolkit_has_them()
    {
        const QScreen *screen = QGuiApplication::primaryScreen();
        const QRect whole(
            screen->geometry().topLeft(),
            (QSizeF(screen->geometry().size()) * screen->devicePixelRatio()).toSize());
        const ScreenLayout layout = ScreenLayout::current();
        QCOMPARE(layout.screens, {whole});
        QCOMPARE(layout.desktop, whole.size());
        QCOMPARE(layout.millimetres, {screen->physicalSize()});
        QVERIFY(!layout.isEachForItself);
        QCOMPARE(layout.scaleOf(screen), screen->devicePixelRatio());
    }
};

QTEST_MAIN(TestScreenLayout)
#include "tst_screenlayout.moc"
