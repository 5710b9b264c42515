// SPDX-License-Identifier: GPL-3.0-or-later

// The whole tool on a simulated frame at a serial line, from the button to what the frame keeps.

#include "app/mainwindow.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/useradv_dlg.h"
#include "resources/resources.h"
#include "sim/serialsession.h"
#include "sim/sim_adapter.h"
#include "tests/support/calibrating.h"
#include "tests/support/settingshome.h"
#include "tests/support/signalcurves.h"
#include "tests/support/targets.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

PortSettings at(BaudRateType rate)
{
    PortSettings settings;
    settings.BaudRate = rate;
    return settings;
}

} // namespace

// The frame lives in the same event loop as the tool.
class TestSerialFrame : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    QElapsedTimer clock;
    std::unique_ptr<sim::SerialSession> frame;
    std::unique_ptr<MainWindow> window;
    QStringList log;

    QString link() const { return home->filePath(u"frame"_s); }
    void start(BaudRateType rate = BAUD115200, const char *faults = "")
    {
        QString problem;
        const auto plan = sim::FaultPlan::parse(QString::fromLatin1(faults), u"plan"_s, &problem,
                                                sim::FaultPlan::Link::Serial);
        QVERIFY2(plan, qPrintable(problem));
        frame = std::make_unique<sim::SerialSession>(
            sim::Profile(), *plan, [this] { return std::chrono::milliseconds(clock.elapsed()); },
            link());
        connect(frame.get(), &sim::SerialSession::logged, this,
                [this](const QStringList &lines) { log += lines; });
        QCOMPARE(frame->plug(), QString());
        window = std::make_unique<MainWindow>(std::make_shared<sim::SimAdapter>(
            sim::Profile(), sim::FaultPlan(), sim::SimOptions{.plugged = false, .clock = {}}));
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        open(rate);
    }
    void open(BaudRateType rate)
    {
        // On a busy machine the frame may look at the line too late, and take noise for a rate.
        const auto isTold = [&] { return frame->rate() == bitsPerSecond(rate); };
        for (int tries = 0; tries < 3; ++tries) {
            QVERIFY(window->OpenUart(link(), at(rate)));
            QCOMPARE(window->connectState(), MainWindow::SerialOpen);
            if (QTest::qWaitFor(isTold))
                return;
            window->CLoseUart();
        }
        QFAIL("the frame was not told its rate");
    }
    template <typename Widget>
    Widget *the() const
    {
        return window->findChild<Widget *>();
    }
    QString field(const char *name) const
    {
        return in<QLineEdit>(the<LightSet_dlg>(), name)->text();
    }
    bool stateHas(const QString &words) const { return frame->state().contains(words); }
    bool logHas(const QString &words) const { return log.join(u'\n').contains(words); }
    void calibrate()
    {
        press(window.get(), "calbtn");
        QTRY_VERIFY(calibrationScreen()->isVisible());
        for (int i = 0; i < 4; ++i) {
            QTRY_VERIFY(stateHas(u"calibration=waiting step=%1 "_s.arg(i + 1)));
            QTRY_COMPARE(calibrationScreen()->currentTarget(), i);
            QVERIFY(frame->touch(Targets[i]));
        }
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void init()
    {
        home = std::make_unique<SettingsHome>();
        QVERIFY(QDir::setCurrent(home->folder()));
        clock.start();
        log.clear();
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        QDir::setCurrent(QDir::rootPath());
        home.reset();
    }

    void the_frame_follows_to_any_rate_data()
    {
        QTest::addColumn<int>("rate");
        QTest::newRow("9600") << int(BAUD9600);
        QTest::newRow("19200") << int(BAUD19200);
        QTest::newRow("57600") << int(BAUD57600);
        QTest::newRow("115200") << int(BAUD115200);
        QTest::newRow("256000") << int(BAUD256000);
    }
    void the_frame_follows_to_any_rate()
    {
        QFETCH(int, rate);
        start(BaudRateType(rate));
        the<Rotation_dlg>()->show();
        QTRY_COMPARE(in<QLabel>(the<Rotation_dlg>(), "Rotationlab")->text(), u"0"_s);
    }

    void a_line_that_is_opened_again_at_another_rate_finds_the_frame()
    {
        start(BAUD115200);
        window->CLoseUart();
        QCOMPARE(window->connectState(), MainWindow::SerialClosed);
        open(BAUD57600);
        window->CLoseUart();
        open(BAUD9600);
        the<Rotation_dlg>()->show();
        QTRY_COMPARE(in<QLabel>(the<Rotation_dlg>(), "Rotationlab")->text(), u"0"_s);
    }

    void four_touches_and_yes_calibrate_the_frame()
    {
        start();
        const Answer answer(true);
        calibrate();
        // The check is cut behind the left edge, so the frame goes by the touches.
        QTRY_VERIFY2(stateHas(u" kept=1 kept-deviation=0,0 kept-screen=0,0,0,0,0,0 "_s),
                     qPrintable(frame->state()));
        QCOMPARE(answer.asked, 1);
        QVERIFY(!calibrationScreen()->isVisible());
        QVERIFY(stateHas(u" unknown=0 "_s));
    }

    void rotation_270_is_set_and_shown()
    {
        start();
        auto *rotation = the<Rotation_dlg>();
        rotation->show();
        const auto *shown = in<QLabel>(rotation, "Rotationlab");
        QTRY_COMPARE(shown->text(), u"0"_s);
        press(rotation, "rotation270btn");
        QTRY_COMPARE(shown->text(), u"270"_s);
        QVERIFY(stateHas(u" rotation=3 "_s));
        QCOMPARE(shown->toolTip(), QString());
    }

    void gestures_that_are_applied_arrive()
    {
        start();
        auto *gestures = the<useradv_dlg>();
        gestures->show();
        in<QSlider>(gestures, "rbspeed")->setValue(2000);
        in<QSlider>(gestures, "rbran")->setValue(4);
        press(gestures, "okbtn");
        // The line cuts the command in front of the wheel's sensitivity.
        QTRY_VERIFY2(stateHas(u" gestures=1,1,2000,4,1,0 "_s), qPrintable(frame->state()));
    }

    void the_signal_test_draws_both_axes()
    {
        start();
        auto *test = the<test_win>();
        test->show();
        press(test, "ALL_btn");
        QTRY_VERIFY(pixelsOfCurves(test, Qt::darkGreen) > 100 &&
                    pixelsOfCurves(test, Qt::darkRed) > 100);
        press(test, "ALL_btn");
        QVERIFY(logHas(u"frame > host"_s));
    }

    void the_light_screen_shows_the_frame_and_adjusts_a_light()
    {
        start();
        auto *lights = the<LightSet_dlg>();
        lights->show();
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        QCOMPARE(field("EdgeADCThreshold"), u"600"_s);
        QTRY_COMPARE(lights->size(), QSize(1280, 800));
        QTest::mouseClick(lights, Qt::LeftButton, {}, QPoint(640, 760));
        QCOMPARE(field("LightNum"), u"47"_s);
        QTRY_VERIFY(in(lights, "LightAddBtn")->isEnabled());
        QVERIFY(field("LightADC").toInt() > 1000);
        press(lights, "LightAddBtn");
        QTRY_VERIFY(logHas(u"[A2 06 04 00 01 2F 00 01]"_s));
        QTRY_VERIFY(in(lights, "LightAddBtn")->isEnabled());
        QCOMPARE(field("LightAGCSet"), u"1"_s);
        // As the frame tells it when it is asked anew.
        lights->close();
        log.clear();
        lights->show();
        QTRY_VERIFY(logHas(u"host > frame"_s) && logHas(u"[A2 87 0B 00 01 2F 00 01 "_s));
        QTRY_COMPARE(field("LightAGCSet"), u"1"_s);
    }

    void a_line_that_hangs_up_can_be_opened_again()
    {
        // Three baud commands, of which the frame understands two, come before.
        start(BAUD115200, "at 3 hangup back 200ms");
        the<Rotation_dlg>()->show();
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QTRY_VERIFY(frame->plugged());
        open(BAUD115200);
        press(the<Rotation_dlg>(), "rotation90btn");
        QTRY_COMPARE(in<QLabel>(the<Rotation_dlg>(), "Rotationlab")->text(), u"90"_s);
    }

    void noise_and_lost_bytes_cost_no_more_than_the_frames_they_hit()
    {
        start(BAUD115200, "at 4 noise 5\nat 8 lose 3\n");
        auto *rotation = the<Rotation_dlg>();
        rotation->show();
        const auto *shown = in<QLabel>(rotation, "Rotationlab");
        QTRY_VERIFY(logHas(u"meets 5 bytes of noise"_s));
        for (int i = 0; i < 3; ++i) {
            // A press right behind the pause of another one is dropped.
            QTest::qWait(50);
            press(rotation, "rotation180btn");
        }
        QTRY_VERIFY(logHas(u"loses its last 3 bytes"_s));
        QTRY_COMPARE(shown->text(), u"180"_s);
    }
};

QTEST_MAIN(TestSerialFrame)
#include "tst_serial_frame.moc"
