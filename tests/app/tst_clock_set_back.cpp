// SPDX-License-Identifier: GPL-3.0-or-later

// The clock on the wall is set back by an hour while the tool waits for this and that.

#include "app/mainwindow.h"
#include "capture/watch.h"
#include "device/link.h"
#include "dialogs/calibration_dlg.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/fastclock.h"
#include "tests/support/settingshome.h"

#include <QApplication>
#include <QDateTime>
#include <QTest>

#include <chrono>
#include <memory>

using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Hour = 3600;
constexpr int Speed = 10;

} // namespace

class TestClockSetBack : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { initResources(); }
    void cleanup() { fastclock::setSpeed(1); }

    void only_the_clock_on_the_wall_shows_another_time()
    {
        const auto steady = Clock::now();
        const QDateTime before = QDateTime::currentDateTimeUtc();
        fastclock::setWall(-Hour);
        const qint64 seconds = before.secsTo(QDateTime::currentDateTimeUtc());
        QVERIFY2(seconds <= -Hour + 5 && seconds >= -Hour, qPrintable(QString::number(seconds)));
        QVERIFY(Clock::now() >= steady && Clock::now() < steady + 5s);
    }

    void a_calibration_that_nobody_touches_ends_as_late_as_ever()
    {
        fastclock::setSpeed(Speed);
        Calibration_Dlg window;
        window.setPrimaryScr(0);
        window.show();
        const auto begin = Clock::now();
        QTest::qWait(5000);
        fastclock::setWall(-Hour);
        QTRY_VERIFY_WITH_TIMEOUT(!window.isVisible(), 120'000);
        const auto took = Clock::now() - begin;
        QVERIFY(took > 28s && took < 60s);
    }

    void reports_of_a_frame_keep_coming_and_a_frame_is_found()
    {
        const SettingsHome home;
        const auto frame = std::make_shared<sim::SimAdapter>(sim::Profile());
        MainWindow window(frame);
        QTRY_COMPARE(window.connectState(), MainWindow::UsbConnected);
        int reports = 0;
        connect(&window, &MainWindow::Recv03, this, [&reports](const UCHAR *) { ++reports; });
        QTRY_VERIFY(reports > 2);
        fastclock::setWall(-Hour);
        reports = 0;
        QTRY_VERIFY(reports > 10);
        frame->unplug();
        window.OnDeviceRemoved();
        QVERIFY(window.connectState() != MainWindow::UsbConnected);
        // Nobody tells of it: the tool looks by itself, twice a second.
        frame->plug();
        QTRY_COMPARE_WITH_TIMEOUT(window.connectState(), MainWindow::UsbConnected, 3000);
    }

    void the_times_of_a_recording_go_forward()
    {
        Link link(std::make_shared<sim::SimAdapter>(sim::Profile()));
        const capture::Watch watch(link);
        const auto before = watch.now();
        fastclock::setWall(-Hour);
        QTest::qWait(20);
        QVERIFY(watch.now() > before);
        QVERIFY(watch.now() < before + 10s);
    }
};

QTEST_MAIN(TestClockSetBack)
#include "tst_clock_set_back.moc"
