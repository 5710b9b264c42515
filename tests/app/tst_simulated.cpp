// SPDX-License-Identifier: GPL-3.0-or-later

// The whole tool on a simulated frame, from the button to what the frame keeps.

#include "app/demo.h"
#include "app/mainwindow.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/useradv_dlg.h"
#include "dialogs/version_dlg.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/calibrating.h"
#include "tests/support/settingshome.h"
#include "tests/support/settled.h"
#include "tests/support/shownwindow.h"
#include "tests/support/targets.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QScopeGuard>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestSimulated : public QObject
{
    Q_OBJECT

private:
    std::optional<SettingsHome> home; // of one test
    std::shared_ptr<sim::SimAdapter> frame;
    std::unique_ptr<MainWindow> window;

    void start(const sim::Profile &profile = {}, const QString &faults = {})
    {
        QString problem;
        const auto plan = sim::FaultPlan::parse(faults, u"plan"_s, &problem);
        QVERIFY2(plan, qPrintable(problem));
        frame = std::make_shared<sim::SimAdapter>(profile, *plan);
        window = shownWindow(frame);
        QVERIFY(window);
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    }
    void beginCalibration()
    {
        press(window, "calbtn");
        QTRY_VERIFY(calibrationScreen()->isVisible());
    }
    int step() const
    {
        int now = 0;
        frame->inspect([&now](const sim::Firmware &firmware) {
            now = firmware.calibration() == sim::Firmware::Calibration::Waiting
                      ? firmware.calibrationStep()
                      : 0;
        });
        return now;
    }
    void touchTargets(int count, QPoint missedBy = {})
    {
        for (int i = 0; i < count; ++i) {
            QTRY_COMPARE(step(), i + 1);
            QTRY_COMPARE(calibrationScreen()->currentTarget(), i);
            frame->touch(Targets[i] + missedBy);
        }
    }
    std::optional<sim::KeptCalibration> kept() const
    {
        std::optional<sim::KeptCalibration> calibration;
        frame->inspect(
            [&](const sim::Firmware &firmware) { calibration = firmware.keptCalibration(); });
        return calibration;
    }

private slots:
    void initTestCase()
    {
        initResources();
        QGuiApplication::setQuitOnLastWindowClosed(false);
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
    }

    void four_touches_and_yes_calibrate_the_frame()
    {
        start();
        beginCalibration();
        Answer answer(true);
        touchTargets(4);
        QTRY_VERIFY(kept());
        QCOMPARE(answer.asked, 1);
        QCOMPARE(kept()->screen, (command::CalibrationCheck{0, 0, 1280, 800, 1280, 800}));
        QCOMPARE(kept()->deviationX, 0);
        QVERIFY(!calibrationScreen()->isVisible());
    }

    void four_touches_and_no_keep_nothing()
    {
        start();
        beginCalibration();
        Answer answer(false);
        touchTargets(4, QPoint(40, 40));
        QTRY_COMPARE(answer.asked, 1);
        QTest::qWait(200);
        QVERIFY(!kept());
        QCOMPARE(step(), 0);
    }

    void a_second_calibration_follows_the_first()
    {
        start();
        for (int round = 0; round < 2; ++round) {
            beginCalibration();
            Answer answer(true);
            touchTargets(4, QPoint(round * 26, 0));
            QTRY_COMPARE(answer.asked, 1);
            QTRY_VERIFY(kept() && kept()->deviationX == 2 * round);
        }
    }

    void an_unplug_in_the_middle_leaves_nothing_half_saved()
    {
        start();
        beginCalibration();
        touchTargets(2);
        frame->unplug();
        window->OnDeviceRemoved();
        QVERIFY(!calibrationScreen()->isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        QTest::qWait(300);
        QVERIFY(!kept());
        QCOMPARE(step(), 0);

        beginCalibration();
        Answer answer(true);
        touchTargets(4);
        QTRY_VERIFY(kept());
    }

    void escape_in_the_middle_lets_the_frame_go()
    {
        start();
        beginCalibration();
        touchTargets(1);
        QTRY_COMPARE(step(), 2);
        QTest::keyClick(calibrationScreen(), Qt::Key_Escape);
        QTRY_COMPARE(step(), 0);
        QVERIFY(!kept());
    }

    void a_bad_cable_only_slows_the_calibration_down()
    {
        start({}, u"at 12 late 200ms\nat 25 repeat\nat 40 torn\nat 55 late 300ms\n"_s);
        beginCalibration();
        Answer answer(true);
        touchTargets(4);
        QTRY_VERIFY(kept());
    }

    void every_page_of_a_scan_arrives_through_a_window_blocked_for_two_seconds()
    {
        sim::Profile largest;
        largest.lightsX = 500;
        start(largest);
        QList<int> pages;
        connect(window.get(), &MainWindow::Recv03, this, [&pages](UCHAR *buf) {
            const int first = buf[5] | buf[6] << 8;
            if (buf[1] == 0xA5 && buf[2] == 0x81 && (pages.isEmpty() || pages.last() != first))
                pages.append(first);
        });
        UCHAR counts[64] = {0x00, 0xA5, 0x00};
        emit window->Write03(counts);
        UCHAR scan[64] = {0x00, 0xA5, 0x01};
        emit window->Write03(scan);
        std::this_thread::sleep_for(2s);
        QTRY_COMPARE(pages, QList<int>({0, 55, 110, 165, 220, 275, 330, 385, 440, 495}));
    }

    void versions_come_from_the_frame()
    {
        sim::Profile profile;
        profile.revision = 0x123456;
        profile.checksum = 0x89ABCDEF;
        profile.date = 0x1605;
        profile.number = 0x54321;
        profile.family = 2;
        start(profile);
        QTRY_COMPARE(hidver.P_FID, 2u);
        QCOMPARE(hidver.VersionNumber, 0x3010u);
        QCOMPARE(hidver.SVNNUM, 0x123456u);
        QCOMPARE(hidver.CHECKSUM, 0x89ABCDEFu);
        QCOMPARE(hidver.P_DATE, 0x1605u);
        QCOMPARE(hidver.P_NUM, 0x54321u);
    }

    void a_version_that_comes_while_it_is_shown_shows_and_a_lost_one_is_asked_for_again()
    {
        // What is asked for at the connection is lost.
        start({}, u"at 1 silent 12"_s);
        auto *versions = window->findChild<Version_Dlg *>();
        const auto *shown = versions->findChild<QLabel *>(u"label_5"_s);
        QTRY_VERIFY(frame->transfers() > 12);
        QTest::qWait(200);
        QCOMPARE(hidver.CHECKSUM, 0u);
        press(window, "pushButton");
        QCOMPARE(shown->text(), u"SID: 00000000 - 000000"_s);
        QTRY_COMPARE(shown->text(), u"SID: 5A17C0DE - 003812"_s);
    }

    void gestures_are_there_again_after_a_restart_a_replug_and_an_edited_file()
    {
        const auto gestures = [this] {
            std::optional<command::Gestures> set;
            frame->inspect([&](const sim::Firmware &firmware) { set = firmware.gestures(); });
            return set;
        };
        const auto dialog = [this] { return window->findChild<useradv_dlg *>(); };
        const auto slider = [&dialog] { return dialog()->findChild<QSlider *>(u"rbspeed"_s); };
        home.emplace();
        start();
        QTRY_COMPARE(gestures(), (command::Gestures{1, 1, 1500, 3, 1, 2}));
        dialog()->show();
        slider()->setValue(2000);
        QTest::mouseClick(dialog()->findChild<QPushButton *>(u"okbtn"_s), Qt::LeftButton);
        const command::Gestures longer{1, 1, 2000, 3, 1, 2};
        QTRY_COMPARE(gestures(), longer);

        frame->unplug();
        window->OnDeviceRemoved();
        frame->plug();
        frame->change([](sim::Firmware &firmware) { firmware.restart(); });
        QTRY_COMPARE(gestures(), longer);

        window.reset();
        start();
        QTRY_COMPARE(gestures(), longer);
        QCOMPARE(slider()->value(), 2000);

        home->edit("RB_DURATION", "500");
        dialog()->show();
        QCOMPARE(slider()->value(), 500);
        dialog()->close();
        frame->unplug();
        window->OnDeviceRemoved();
        frame->plug();
        QTRY_COMPARE(gestures(), (command::Gestures{1, 1, 500, 3, 1, 2}));
    }

    void a_turn_by_270_degrees_is_shown_when_the_frame_says_so()
    {
        start();
        auto *dialog = window->findChild<Rotation_dlg *>();
        const auto *shown = dialog->findChild<QLabel *>(u"Rotationlab"_s);
        dialog->show();
        QTRY_COMPARE(shown->text(), u"0"_s);
        QTRY_COMPARE(shown->toolTip(), QString());
        // A press right behind the pause of the showing is dropped.
        QTRY_VERIFY(isSettled(dialog));
        press(dialog, "rotation270btn");
        QTRY_COMPARE(shown->text(), u"270"_s);
        QTRY_COMPARE(shown->toolTip(), QString());
        int turn = -1;
        frame->inspect([&turn](const sim::Firmware &firmware) { turn = firmware.rotation(); });
        QCOMPARE(turn, 3);
    }

    void a_frame_that_says_no_more_is_not_taken_to_have_turned()
    {
        start();
        auto *dialog = window->findChild<Rotation_dlg *>();
        const auto *shown = dialog->findChild<QLabel *>(u"Rotationlab"_s);
        dialog->show();
        QTRY_COMPARE(shown->text(), u"0"_s);
        QTRY_COMPARE(shown->toolTip(), QString());
        frame->unplug();
        window->OnDeviceRemoved();
        QVERIFY(dialog->isVisible());
        QTRY_VERIFY(isSettled(dialog));
        press(dialog, "rotation90btn");
        QTest::qWait(200);
        QCOMPARE(shown->text(), u"-1"_s);
        QVERIFY(shown->toolTip().contains(u"has not answered since"_s));
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
        QTRY_VERIFY(isSettled(dialog));
        press(dialog, "rotation90btn");
        QTRY_COMPARE(shown->text(), u"90"_s);
        QTRY_COMPARE(shown->toolTip(), QString());
    }

    void clicks_on_the_calibration_screen_are_touches_in_a_demonstration()
    {
        QString problem;
        const auto demo = Demo::create({}, {}, &problem);
        QVERIFY2(demo, qPrintable(problem));
        frame = demo->adapter();
        window = std::make_unique<MainWindow>(frame);
        // Where the icon has a mark of its own, in the colour that this has.
        const auto mark = [this] {
            const QIcon all = window->windowIcon();
            const QImage icon = all.pixmap(all.availableSizes().constLast(), 1).toImage();
            return icon.pixelColor(QPoint(icon.width(), icon.height()) * 72 / 100);
        };
        QVERIFY(mark() != QColor(Qt::yellow));
        demo->attachTo(*window);
        QCOMPARE(mark(), QColor(Qt::yellow));
        QCOMPARE(window->windowTitle(), u"Quorvel (simulated touch frame)"_s);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
        beginCalibration();
        Answer answer(true);
        for (int i = 0; i < 4; ++i) {
            QTRY_COMPARE(step(), i + 1);
            QTest::mouseClick(calibrationScreen(), Qt::LeftButton, {}, Targets[i]);
        }
        QTRY_VERIFY(demo->calibrationKept());
        QCOMPARE(kept()->deviationX, 0);
        QCOMPARE(kept()->deviationY, 0);

        // Told of, and not only found when somebody looks.
        window->findChild<QTimer *>(u"checkTimer"_s)->stop();
        frame->unplug();
        QTRY_COMPARE(window->connectState(), MainWindow::NotConnected);
        frame->plug();
        QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected);
    }

    void a_demonstration_has_settings_of_its_own_while_it_runs()
    {
        const QString usual = QDir::homePath() + u"/.config/ForQuorvel"_s;
        QCOMPARE(XML_CLASS::filePath(), usual);
        QString problem;
        auto demo = Demo::create({}, {}, &problem);
        QVERIFY2(demo, qPrintable(problem));
        QVERIFY(XML_CLASS::filePath() != usual);
        demo.reset();
        QCOMPARE(XML_CLASS::filePath(), usual);
    }

    void without_room_for_its_settings_a_demonstration_says_so()
    {
        const QByteArray usual = qgetenv("TMPDIR");
        const auto back = qScopeGuard([&usual] {
            if (usual.isNull())
                qunsetenv("TMPDIR");
            else
                qputenv("TMPDIR", usual);
        });
        qputenv("TMPDIR", "/proc"); // where nobody makes directories
        QString problem;
        QVERIFY(!Demo::create({}, {}, &problem));
        // And why.
        const QString begin = u"Cannot make a directory for the settings of the demonstration: "_s;
        QVERIFY2(problem.startsWith(begin) && problem.size() > begin.size(), qPrintable(problem));
    }
};

QTEST_MAIN(TestSimulated)
#include "tst_simulated.moc"
