// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "tests/support/hand.h"

#include <QApplication>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace Qt::StringLiterals;

// Each function has a desktop of its own, see CMakeLists.txt.
class TestCalibrationScreens : public QObject
{
    Q_OBJECT

private:
    Calibration_Dlg window;
    QByteArrayList sent; // sub-commands

    void show(int number)
    {
        window.setPrimaryScr(number);
        window.setWindowFlags(Qt::WindowFlags(0x12));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }

private slots:
    void init()
    {
        connect(&window, &Calibration_Dlg::Write03, this, [this](const UCHAR *frame) {
            QCOMPARE(frame[1], UCHAR(1));
            sent.append(QByteArray::number(frame[2], 16));
        });
    }

    // A kiosk runs the tool alone.
    void escape_leaves_at_once_without_a_window_manager()
    {
        show(0);
        QCOMPARE(window.geometry(), QGuiApplication::primaryScreen()->geometry());
        QVERIFY(QTest::qWaitForWindowActive(&window));
        // As from the keyboard, to whatever window has it.
        QVERIFY(hand::press(u"Escape"_s));
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(sent, QByteArrayList({"0", "6"}));
    }

    void the_question_has_the_keyboard_without_a_window_manager()
    {
        show(0);
        QVERIFY(QTest::qWaitForWindowActive(&window));
        bool asked = false;
        QTimer::singleShot(300, this, [&asked] {
            asked = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
            // Keys would else go to what is under the pointer.
            QVERIFY(hand::mouse(QPoint(5, 5)));
            QVERIFY(hand::press(u"Escape"_s));
        });
        for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF}) {
            UCHAR reply[64] = {0xFC, 0x01, step};
            window.DoRecv03(reply);
        }
        QVERIFY(asked);
        QCOMPARE(sent, QByteArrayList({"0", "1", "2", "3", "4", "5", "6"}));
    }

    void without_an_x_server_the_screen_is_filled_and_left_all_the_same()
    {
        QCOMPARE(QGuiApplication::platformName(), u"offscreen"_s);
        show(0);
        const QRect geometry = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(window.geometry(), geometry);
        QCOMPARE(window.calibratedScreen(), geometry);
        QCOMPARE(window.targetsX()[1], geometry.width() / 8 * 7);
        QTest::keyClick(&window, Qt::Key_Escape);
        QVERIFY(!window.isVisible());
        QCOMPARE(sent, QByteArrayList({"0", "6"}));
    }

    void the_question_comes_up_on_the_calibrated_screen()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        for (int number : {1, 0}) {
            show(number);
            QRect asked;
            QTimer poll;
            connect(&poll, &QTimer::timeout, this, [&asked] {
                auto *question = qobject_cast<CalEnd_dlg *>(QApplication::activeModalWidget());
                if (!question || !question->isActiveWindow())
                    return;
                asked = question->frameGeometry();
                question->reject();
            });
            poll.start(10);
            for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF}) {
                UCHAR reply[64] = {0xFC, 0x01, step};
                window.DoRecv03(reply);
            }
            const QRect place = QGuiApplication::screens().at(number)->geometry();
            QVERIFY2(place.contains(asked), qPrintable(QDebug::toString(asked)));
            const QPoint aside = asked.center() - place.center();
            QVERIFY2(aside.manhattanLength() < 60, qPrintable(QDebug::toString(aside)));
        }
    }

    void a_monitor_that_goes_ends_the_calibration_on_it()
    {
        QStringList why;
        connect(&window, &Calibration_Dlg::endedByItself, this,
                [&why](const QString &words) { why += words; });
        QCOMPARE(QGuiApplication::screens().size(), 2);
        show(1);
        QCOMPARE(QProcess::execute(u"xrandr"_s, {u"--delmonitor"_s, u"RIGHT"_s}), 0);
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(sent, QByteArrayList({"0", "6"}));
        QCOMPARE(why, QStringList(u"The calibration ended because the screens have changed. It "
                                  "was discarded."_s));

        // On the one that is left it can be done.
        QTRY_COMPARE(QGuiApplication::screens().size(), 1);
        show(0);
        QTRY_COMPARE(window.geometry(), QGuiApplication::primaryScreen()->geometry());
        QTest::qWait(300);
        QVERIFY(window.isVisible());
        QTest::keyClick(&window, Qt::Key_Escape);
        QCOMPARE(sent, QByteArrayList({"0", "6", "0", "6"}));
        QCOMPARE(why.size(), 1);
    }

    void a_window_manager_that_forgot_the_whole_screen_is_asked_again()
    {
        const QRect screen = QGuiApplication::screens().at(1)->geometry();
        show(1);
        QTRY_COMPARE(window.geometry(), screen);
        // As it leaves a window that was hidden and shown before it had noticed.
        window.windowHandle()->setWindowStates(Qt::WindowNoState);
        window.windowHandle()->setPosition(screen.topLeft() - QPoint(127, 0));
        QTRY_VERIFY(window.geometry() != screen);
        QTRY_COMPARE(window.geometry(), screen);
        QVERIFY(window.isFullScreen());
        QVERIFY(window.isVisible());
        QCOMPARE(sent, QByteArrayList({"0"}));
    }

    // The frame is told of all of the desktop.
    void a_monitor_that_goes_ends_the_calibration_beside_it()
    {
        int ended = 0;
        connect(&window, &Calibration_Dlg::endedByItself, this, [&ended] { ++ended; });
        show(0);
        QCOMPARE(QProcess::execute(u"xrandr"_s, {u"--delmonitor"_s, u"RIGHT"_s}), 0);
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(sent, QByteArrayList({"0", "6"}));
        QCOMPARE(ended, 1);
    }
};

QTEST_MAIN(TestCalibrationScreens)
#include "tst_calibration_screens.moc"
