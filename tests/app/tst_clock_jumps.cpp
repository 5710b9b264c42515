// SPDX-License-Identifier: GPL-3.0-or-later

// The clock on the wall is set back by an hour while the tool waits for this and that; the machine
// has slept, by its clocks.

#include "app/mainwindow.h"
#include "capture/watch.h"
#include "device/link.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/fastclock.h"
#include "tests/support/settingshome.h"

#include <QApplication>
#include <QDateTime>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>

#include <chrono>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int Hour = 3600;
constexpr int Speed = 10;

} // namespace

class TestClockJumps : public QObject
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

    // A frame that had no power meanwhile does not leave the bus for that, so nobody tells of it.
    void after_a_sleep_a_frame_is_told_once_more_what_is_kept()
    {
        const SettingsHome home;
        const auto frame = std::make_shared<FakeAdapter>();
        MainWindow window(frame);
        QTRY_COMPARE(frame->sent().size(), 2); // the gestures and a question
        // What is being changed is not kept yet, and is not lost either.
        auto *slider = window.findChild<QSlider *>(u"rbran"_s);
        window.findChild<useradv_dlg *>()->show();
        slider->setValue(slider->value() + 1);
        const int changed = slider->value();
        frame->forgetSent();
        fastclock::sleepOn(2);
        QTRY_COMPARE(frame->sent().size(), 1);
        QCOMPARE(frame->sentBytes(11), QByteArrayList({"a2 00 05 00 01 01 dc 05 03 01 02"}));
        QCOMPARE(slider->value(), changed);
        QTest::qWait(1500);
        QCOMPARE(frame->sent().size(), 1);
    }

    void gestures_that_nobody_chose_are_not_told_after_a_sleep()
    {
        const SettingsHome home;
        const auto frame = std::make_shared<FakeAdapter>();
        MainWindow window(frame);
        QTRY_COMPARE(frame->sent().size(), 2);
        frame->forgetSent();
        home.setContent("<?xml version='1.0' encoding='UTF-8'?><XML></XML>");
        QLoggingCategory::setFilterRules(u"quorvel.settings=true"_s);
        const auto quiet = qScopeGuard([] { QLoggingCategory::setFilterRules({}); });
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is not told gestures"_s));
        fastclock::sleepOn(2);
        QTest::qWait(1500);
        QCOMPARE(frame->sent().size(), 0);
    }

    void a_machine_that_is_busy_for_a_moment_has_not_slept()
    {
        Link link(std::make_shared<FakeAdapter>());
        QSignalSpy wokeUp(&link, &Link::wokeUp);
        link.start();
        QVERIFY(link.isLinked());
        std::this_thread::sleep_for(1500ms);
        QTest::qWait(1200);
        QCOMPARE(wokeUp.count(), 0);
        fastclock::sleepOn(2);
        QTRY_COMPARE(wokeUp.count(), 1);
    }

    void before_the_link_begins_the_machine_may_have_slept_and_without_a_frame()
    {
        fastclock::sleepOn(100);
        const auto frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        Link link(frame);
        QSignalSpy wokeUp(&link, &Link::wokeUp);
        link.start();
        QTest::qWait(700);
        fastclock::sleepOn(100);
        QTest::qWait(700);
        frame->present = true;
        QTRY_VERIFY(link.isLinked());
        QTest::qWait(1200);
        QCOMPARE(wokeUp.count(), 0);
    }
};

QTEST_MAIN(TestClockJumps)
#include "tst_clock_jumps.moc"
