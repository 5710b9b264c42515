// SPDX-License-Identifier: GPL-3.0-or-later

// Each function here belongs to a desktop of its own: CMakeLists.txt names it and the screens.

#include "app/mainwindow.h"
#include "dialogs/calibration_dlg.h"
#include "resources/resources.h"
#include "tests/support/calibrating.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/photograph.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;

class TestScreens : public QObject
{
    Q_OBJECT

private:
    // Calibrates on the screen with this native geometry and compares the check command and the
    // four targets as they stand on the glass.
    void calibrateOn(QRect native, const QByteArray &check, qreal ratio)
    {
        auto frame = std::make_shared<FakeAdapter>();
        MainWindow window(frame);
        QScreen *wanted = nullptr;
        for (QScreen *screen : QGuiApplication::screens()) {
            if (screen->geometry().topLeft() == native.topLeft())
                wanted = screen;
        }
        QVERIFY(wanted);
        QCOMPARE(wanted->devicePixelRatio(), ratio);
        window.move(wanted->geometry().topLeft() + QPoint(60, 60));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_COMPARE(window.screen(), wanted);
        press(&window, "calbtn");
        Calibration_Dlg *screen = calibrationScreen();
        QTRY_VERIFY(screen->isVisible());
        QVERIFY(QTest::qWaitForWindowExposed(screen));
        QTRY_COMPARE(frame->lastSent(2), QByteArray("01 00"));
        QCOMPARE(screen->calibratedScreen(), native);

        const int left = native.width() / 8;
        const int top = native.height() / 8;
        const QPoint targets[] = {
            {left, top}, {left * 7, top}, {left * 7, top * 7}, {left, top * 7}};
        for (int step = 1; step <= 4; ++step) {
            frame->setReport(QByteArray("\xFC\x01", 2) + char(step));
            QTRY_COMPARE(frame->lastSent(2), "01 0" + QByteArray::number(step));
            const QPoint target = targets[step - 1];
            // Without a compositor the half-transparent window stands opaque on the glass. The
            // middle of the cross is white, and so is the edge of the middle ring.
            const QPoint ring(qRound(24 * ratio), 0);
            QTRY_COMPARE(photograph(native).pixelColor(target), QColor(Qt::white));
            const QImage glass = photograph(native);
            QVERIFY(glass.pixelColor(target + ring) == QColor(Qt::white) ||
                    glass.pixelColor(target + ring - QPoint(1, 0)) == QColor(Qt::white));
            QCOMPARE(glass.pixelColor(target + QPoint(qRound(4 * ratio), 0)), QColor(Qt::blue));
            QCOMPARE(glass.pixelColor(native.width() - 1, native.height() - 1), QColor(Qt::blue));
            QCOMPARE(glass.pixelColor(0, 0), QColor(Qt::blue));
        }
        frame->setReport(QByteArray("\xFC\x01\x05", 3));
        QTRY_COMPARE(frame->lastSent(14), check);
        QTest::keyClick(screen, Qt::Key_Escape);
        QTRY_COMPARE(frame->lastSent(2), QByteArray("01 06"));
    }

private slots:
    void initTestCase() { initResources(); }

    void one_screen()
    {
        calibrateOn(QRect(0, 0, 1280, 800), "01 05 00 00 00 00 00 05 20 03 00 05 20 03", 1);
    }

    void one_screen_at_scale_one_and_a_half()
    {
        calibrateOn(QRect(0, 0, 1280, 800), "01 05 00 00 00 00 00 05 20 03 00 05 20 03", 1.5);
    }

    void one_odd_screen_at_scale_one_and_a_quarter()
    {
        calibrateOn(QRect(0, 0, 1366, 768), "01 05 00 00 00 00 56 05 00 03 56 05 00 03", 1.25);
    }

    void the_right_one_of_two()
    {
        calibrateOn(QRect(1280, 0, 1280, 800), "01 05 00 05 00 00 00 05 20 03 00 0a 20 03", 1);
    }

    void one_to_the_left_of_the_primary()
    {
        QCOMPARE(QGuiApplication::primaryScreen()->geometry().x(), 1024);
        calibrateOn(QRect(0, 0, 1024, 768), "01 05 00 00 00 00 00 04 00 03 00 09 20 03", 1);
    }

    void a_rotated_one()
    {
        calibrateOn(QRect(1280, 0, 800, 1280), "01 05 00 05 00 00 20 03 00 05 20 08 00 05", 1);
    }

    void the_right_one_of_two_at_scale_one_and_a_half()
    {
        calibrateOn(QRect(1280, 0, 1280, 800), "01 05 00 05 00 00 00 05 20 03 00 0a 20 03", 1.5);
    }

    void pictures_of_the_main_window_follow_the_scale()
    {
        MainWindow window(std::make_shared<FakeAdapter>());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPixmap picture = window.findChild<QLabel *>(u"label_6"_s)->pixmap();
        QCOMPARE(window.devicePixelRatioF(), 2.0);
        QCOMPARE(picture.size(), QSize(96, 96));
    }
};

QTEST_MAIN(TestScreens)
#include "tst_screens.moc"
