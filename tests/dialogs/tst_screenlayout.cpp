// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/screenlayout.h"

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
};

QTEST_MAIN(TestScreenLayout)
#include "tst_screenlayout.moc"
