// SPDX-License-Identifier: GPL-3.0-or-later

// What the windows do when the link changes under them: nobody believes or answers a frame that is
// not theirs, and nobody loses what was not applied yet.

#include "app/lightcheckaction.h"
#include "app/mainwindow.h"
#include "app/statusline.h"
#include "device/posix_qextserialport.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "dialogs/test_win.h"
#include "dialogs/version_dlg.h"
#include "doctor/usbchecks.h"
#include "resources/resources.h"
#include "tests/support/calibrating.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/farend.h"
#include "tests/support/madeupmachine.h"
#include "tests/support/openline.h"
#include "tests/support/settingshome.h"
#include "tests/support/shownwindow.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QCheckBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <QToolTip>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A calibration command on a serial line, which carries two bytes behind the header.
QByteArray onLine(const char *sub)
{
    return QByteArray::fromHex("51 56 00 01") + QByteArray::fromHex(sub) +
           QByteArray::fromHex("00 00 00");
}

} // namespace

class TestLinkChange : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;

    template <typename Dialog>
    QString text(const char *label) const
    {
        return window->findChild<Dialog *>()
            ->template findChild<QLabel *>(QString::fromLatin1(label))
            ->text();
    }
    void plug()
    {
        frame->present = true;
        window->OnDeviceAdded();
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    }
    void unplug()
    {
        frame->present = false;
        window->OnDeviceRemoved();
        QVERIFY(window->connectState() != MainWindow::UsbConnected);
    }
    // What comes at the far end while the window is at work.
    static QByteArray arrived(const FarEnd &line, qsizetype count)
    {
        QByteArray bytes;
        [&] { QTRY_VERIFY((bytes += line.take(count - bytes.size(), 1)).size() >= count); }();
        return bytes;
    }
    // Edits a setting without applying it.
    QSlider *editSmoothing()
    {
        auto *dialog = window->findChild<smoothing_dlg *>();
        dialog->show();
        auto *level = dialog->findChild<QSlider *>(u"smo_lv"_s);
        level->setValue(level->value() == 6 ? 4 : 6);
        edited = level->value();
        return level;
    }
    int edited = 0;
    bool keepsTheEdit(const QSlider *level) const
    {
        return window->findChild<smoothing_dlg *>()->isVisible() && level->value() == edited;
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        hidver = {};
        QGuiApplication::setQuitOnLastWindowClosed(false);
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        window = shownWindow(frame);
        QVERIFY(window);
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
    }

    // Calibration

    void a_usb_frame_plugged_in_during_a_calibration_on_a_serial_line_inherits_nothing()
    {
        const auto line = openLine(*window);
        press(window, "calbtn");
        QCOMPARE(line->take(8), onLine("00"));
        line->give(QByteArray::fromHex("51 56 FC 01 01 00 00 00"));
        QCOMPARE(arrived(*line, 8), onLine("01"));

        plug();
        QVERIFY(!calibrationScreen()->isVisible());
        QCOMPARE(line->take(8), onLine("06"));
        // What the serial frame says now is answered to nobody.
        line->give(QByteArray::fromHex("51 56 FC 01 02 00 00 00"));
        QTest::qWait(300);
        for (const QByteArray &sent : frame->sentBytes(1))
            QVERIFY(sent != "01");
        QCOMPARE(line->take(1, 100), QByteArray());
    }

    void closing_the_port_during_a_calibration_resets_the_frame_on_it()
    {
        const auto line = openLine(*window);
        press(window, "calbtn");
        QCOMPARE(line->take(8), onLine("00"));
        window->CLoseUart();
        QVERIFY(!calibrationScreen()->isVisible());
        QCOMPARE(line->take(8), onLine("06"));
        QCOMPARE(line->take(1, 100), QByteArray());
    }

    void a_lost_line_ends_its_calibration()
    {
        const auto line = openLine(*window);
        press(window, "calbtn");
        QCOMPARE(line->take(8), onLine("00"));
        line->fd = {};
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(!calibrationScreen()->isVisible());
        plug();
        QTest::qWait(200);
        for (const QByteArray &sent : frame->sentBytes(1))
            QVERIFY(sent != "01");
    }

    void opening_a_port_during_a_calibration_by_usb_resets_that_frame_first()
    {
        plug();
        press(window, "calbtn");
        QTRY_VERIFY(frame->sentBytes(2).contains("01 00"));
        const auto line = openLine(*window);
        QCOMPARE(frame->lastSent(2), QByteArray("01 06"));
        QVERIFY(!calibrationScreen()->isVisible());
        QCOMPARE(line->take(1, 100), QByteArray());
    }

    // What a device said

    void the_rotation_of_a_removed_frame_is_not_known()
    {
        frame->setReport(QByteArray::fromHex("FC A7 82 02 00 01"));
        plug();
        QTRY_COMPARE(text<Rotation_dlg>("Rotationlab"), u"90"_s);
        unplug();
        QCOMPARE(text<Rotation_dlg>("Rotationlab"), u"-1"_s);
        frame->setReport({});
        plug();
        QTest::qWait(50);
        QCOMPARE(text<Rotation_dlg>("Rotationlab"), u"-1"_s);
    }

    void the_versions_of_a_removed_frame_are_zero()
    {
        frame->setReport(
            QByteArray::fromHex("FC A3 80 0E 00 12 38 00 DE C0 17 5A 34 12 50 60 01 02"));
        plug();
        QTRY_COMPARE(hidver.P_FID, 2u);
        unplug();
        QCOMPARE(hidver.VendorID, 0u);
        QCOMPARE(hidver.VersionNumber, 0u);
        QCOMPARE(hidver.SVNNUM, 0u);
        QCOMPARE(hidver.CHECKSUM, 0u);
        window->findChild<Version_Dlg *>()->show();
        QVERIFY2(!text<Version_Dlg>("label_5").contains(u"5A17C0DE"_s),
                 qPrintable(text<Version_Dlg>("label_5")));
    }

    void the_light_of_a_removed_frame_is_not_shown_for_the_next()
    {
        auto *screen = window->findChild<LightSet_dlg *>();
        const auto field = [screen](const char *name) {
            return screen->findChild<QLineEdit *>(QString::fromLatin1(name))->text();
        };
        const QString before = field("LightNum");
        plug();
        frame->setReport(
            QByteArray::fromHex("FC A2 85 11 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02 60 00 36 00"));
        QTRY_COMPARE(field("MinADC"), u"3800"_s);
        frame->setReport(QByteArray::fromHex("FC A2 87 0B 00 01 07 00 05 30 34 12 78 56 00"));
        QTRY_COMPARE(field("LightAGCSet"), u"5"_s);
        unplug();
        QCOMPARE(field("MinADC"), QString());
        QCOMPARE(field("LightAGCSet"), QString());
        QCOMPARE(field("LightNum"), before);
    }

    void what_was_said_over_a_serial_line_goes_with_it()
    {
        const auto line = openLine(*window);
        line->give(QByteArray::fromHex("51 56 FC A7 82 02 00 03 00 00"));
        QTRY_COMPARE(text<Rotation_dlg>("Rotationlab"), u"270"_s);
        plug();
        QCOMPARE(text<Rotation_dlg>("Rotationlab"), u"-1"_s);
    }

    void a_light_check_can_measure_while_something_is_linked()
    {
        QVERIFY(window->findChild<LightCheckAction *>());
        window->findChild<LightCheckAction *>()->trigger();
        auto *check = window->findChild<LightCheck_dlg *>();
        QVERIFY(check);
        const auto *measure = check->findChild<QPushButton *>(u"measureButton"_s);
        QVERIFY(!measure->isEnabled());
        auto line = openLine(*window);
        QVERIFY(measure->isEnabled());
        window->CLoseUart();
        QVERIFY(!measure->isEnabled());
        QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
        QVERIFY(!measure->isEnabled());
        plug();
        QVERIFY(measure->isEnabled());
        unplug();
        QVERIFY(!measure->isEnabled());
        line = openLine(*window);
        QVERIFY(measure->isEnabled());
        line->fd = {};
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(!measure->isEnabled());
    }

    void a_light_check_asks_for_versions_where_they_are_told_data()
    {
        QTest::addColumn<quint32>("version");
        QTest::addColumn<QByteArray>("asked");
        QTest::newRow("current") << 0x3010u << QByteArray("a3 00");
        QTest::newRow("older") << 0x2FFFu << QByteArray("a2 05");
    }
    void a_light_check_asks_for_versions_where_they_are_told()
    {
        QFETCH(const quint32, version);
        QFETCH(const QByteArray, asked);
        frame->version = version;
        plug();
        window->findChild<LightCheckAction *>()->trigger();
        QTRY_COMPARE(frame->sent().size(),
                     version == 0x3010u ? 2 : 1); // what every link begins with
        frame->forgetSent();
        auto *check = window->findChild<LightCheck_dlg *>();
        auto *measure = check->findChild<QPushButton *>(u"measureButton"_s);
        QTest::mouseClick(measure, Qt::LeftButton);
        QTRY_COMPARE(frame->sentBytes(2).value(0), asked);
        unplug();
        QTest::mouseClick(measure, Qt::LeftButton); // no longer
        const auto line = openLine(*window);
        QTest::mouseClick(measure, Qt::LeftButton);
        QCOMPARE(line->take(5), QByteArray::fromHex("51 56 00 A2 05"));
    }

    // Dialogs and what was not applied yet

    void showing_the_window_closes_no_dialog_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("how");
        for (const char *how : {"-W", "tray icon", "tray menu", "show"}) {
            QTest::addRow("not connected, %s", how) << 2 << QString::fromLatin1(how);
            QTest::addRow("closed, %s", how) << 4 << QString::fromLatin1(how);
            QTest::addRow("failed, %s", how) << 5 << QString::fromLatin1(how);
        }
    }
    void showing_the_window_closes_no_dialog()
    {
        QFETCH(const int, state);
        QFETCH(const QString, how);
        if (state == 4)
            window->CLoseUart();
        if (state == 5)
            QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
        QCOMPARE(int(window->connectState()), state);
        const QSlider *level = editSmoothing();
        window->hide();
        if (how == "-W"_L1)
            window->handleMessage(u"-W"_s);
        else if (how == "tray icon"_L1)
            window->iconActivated(QSystemTrayIcon::Trigger);
        else if (how == "show"_L1)
            window->show();
        else
            for (QWidget *widget : QApplication::topLevelWidgets())
                if (auto *menu = qobject_cast<QMenu *>(widget); menu && !menu->parentWidget())
                    menu->actions().first()->trigger();
        QVERIFY(window->isVisible());
        QVERIFY(keepsTheEdit(level));
    }

    void closing_a_port_closes_no_dialog()
    {
        const auto line = openLine(*window);
        const QSlider *level = editSmoothing();
        window->CLoseUart();
        QVERIFY(keepsTheEdit(level));
        QVERIFY(!in(window, "calbtn")->isEnabled());
        QCOMPARE(in<QLabel>(window, "stalab")->text(), u"Have not linked equipment"_s);
    }

    void a_port_that_does_not_open_costs_neither_the_usb_link_nor_a_dialog()
    {
        plug();
        const QSlider *level = editSmoothing();
        QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        QVERIFY(keepsTheEdit(level));
        QVERIFY(in(window, "calbtn")->isEnabled());
        QVERIFY2(window->uartProblem().contains(u"There is no serial port"_s),
                 qPrintable(window->uartProblem()));
    }

    void a_port_that_does_not_open_without_a_usb_link_closes_the_dialogs()
    {
        editSmoothing();
        QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
        QVERIFY(!window->findChild<smoothing_dlg *>()->isVisible());
    }

    void a_removal_behind_a_hidden_window_closes_the_dialogs_at_the_next_click_on_the_tray_icon()
    {
        plug();
        editSmoothing();
        window->hide();
        unplug();
        QVERIFY(window->findChild<smoothing_dlg *>()->isVisible());
        window->iconActivated(QSystemTrayIcon::Trigger);
        QVERIFY(!window->findChild<smoothing_dlg *>()->isVisible());
        editSmoothing();
        window->iconActivated(QSystemTrayIcon::Trigger);
        QVERIFY(window->findChild<smoothing_dlg *>()->isVisible());
    }

    // The box before a reset

    void a_reset_box_whose_frame_goes_resets_nobody()
    {
        plug();
        bool asked = false;
        QTimer::singleShot(100, this, [&] {
            asked = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            unplug();
            frame->forgetSent();
            QVERIFY(!QApplication::activeModalWidget());
            plug();
            QTRY_VERIFY(frame->sentBytes(2).contains("a3 00"));
            frame->forgetSent();
        });
        press(window, "pushButton_2");
        QVERIFY(asked);
        QTest::qWait(200);
        QCOMPARE(frame->sentBytes(2), QByteArrayList());
    }

    void an_end_of_the_program_with_the_reset_box_open_resets_nobody()
    {
        plug();
        QTRY_VERIFY(frame->sentBytes(2).contains("a3 00"));
        frame->forgetSent();
        bool asked = false;
        QTimer::singleShot(0, this, [&] {
            QTimer::singleShot(100, this, [&] {
                asked = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
                window->handleMessage(u"-C"_s);
            });
            press(window, "pushButton_2");
        });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(asked);
        window.reset();
        QCOMPARE(frame->sentBytes(2), QByteArrayList());
    }

    // The status line

    void the_status_line_says_by_what_a_frame_is_linked_or_what_to_try()
    {
        const auto *status = in<QLabel>(window, "stalab");
        QCOMPARE(status->toolTip(), doctor::whyNothingIsLinked(doctor::Machine()).words());
        QCOMPARE(status->accessibleName(), QString()); // so that its text is read
        plug();
        QCOMPARE(status->toolTip(), u"Linked by USB, at /dev/usb/fake."_s);
        QCOMPARE(status->accessibleDescription(), status->toolTip());
        unplug();
        const auto line = openLine(*window);
        QCOMPARE(status->toolTip(), u"Linked over the serial port %1."_s.arg(line->node));
        line->fd = {};
        QTRY_VERIFY(status->toolTip().contains(u" is gone. "_s));
    }

    void the_status_line_looks_again_when_its_tip_is_shown()
    {
        QLabel label;
        MadeUpMachine machine;
        machine.unplug();
        QPushButton button;
        const StatusLine line(&label, &button, machine);
        QVERIFY2(label.toolTip().startsWith(u"No touch frame is on USB. Plug the frame in"_s),
                 qPrintable(label.toolTip()));
        machine.addUsb("5156", u"1-2"_s, {}, {});
        QHelpEvent asksForTip(QEvent::ToolTip, QPoint(), QPoint());
        QCoreApplication::sendEvent(&label, &asksForTip);
        QVERIFY2(label.toolTip().contains(u"no driver uses it"_s), qPrintable(label.toolTip()));
        QCOMPARE(label.accessibleDescription(), label.toolTip());
    }

    void the_tip_of_the_status_line_is_wrapped_and_shows_every_character()
    {
        QLabel label;
        MadeUpMachine machine;
        QPushButton button;
        StatusLine line(&label, &button, machine);
        line.show({.kind = Link::SerialOpen, .port = u"/dev/<b>odd</b>"_s, .problem = {}});
        line.setCalibrationNote(u"It was kept."_s);
        label.show();
        QVERIFY(QTest::qWaitForWindowExposed(&label));
        const QPoint inside = label.rect().center();
        QHelpEvent asksForTip(QEvent::ToolTip, inside, label.mapToGlobal(inside));
        QCoreApplication::sendEvent(&label, &asksForTip);
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), u"<p>It was kept.<br>Linked over the serial port "
                                   "/dev/&lt;b&gt;odd&lt;/b&gt;."_s);
        QToolTip::hideText();
    }

    void a_calibration_that_is_kept_says_how_good_it_is()
    {
        plug();
        press(window, "calbtn");
        QTRY_VERIFY(calibrationScreen()->isVisible());
        Answer answer(true);
        for (const UCHAR step : {0, 1, 2, 3, 4, 5, 0xFF}) {
            UCHAR reply[64] = {0xFC, 0x01, step, 0x00, 0x02, 0xFC}; // off by 2 and -4 per cent
            calibrationScreen()->DoRecv03(reply);
        }
        QCOMPARE(answer.asked, 1);
        QCOMPARE(in<QLabel>(window, "stalab")->toolTip(),
                 u"Calibration accuracy: 97%.\nLinked by USB, at /dev/usb/fake."_s);
    }

    void a_calibration_that_ends_by_itself_says_why()
    {
        const auto *status = in<QLabel>(window, "stalab");
        plug();
        press(window, "calbtn");
        for (int tick = 0; tick < 60; ++tick)
            calibrationScreen()->ontimer();
        QVERIFY(!calibrationScreen()->isVisible());
        QVERIFY2(status->toolTip().startsWith(u"The calibration ended because no target"_s),
                 qPrintable(status->toolTip()));
        QCOMPARE(status->accessibleDescription(), status->toolTip());
        press(window, "calbtn");
        QVERIFY(!status->toolTip().contains(u"calibration"_s));
        unplug();
        QVERIFY2(status->toolTip().startsWith(
                     u"The calibration ended because the touch frame was lost."_s),
                 qPrintable(status->toolTip()));
        plug();
        press(window, "calbtn");
        QTest::keyClick(calibrationScreen(), Qt::Key_Escape);
        QCOMPARE(status->toolTip(), u"Linked by USB, at /dev/usb/fake."_s);
        unplug();
        const auto line = openLine(*window);
        press(window, "calbtn");
        window->CLoseUart();
        QVERIFY2(status->toolTip().startsWith(u"The calibration ended with the link to the touch "
                                              "frame. It was discarded.\n"_s),
                 qPrintable(status->toolTip()));
    }

    // Minimised windows

    void a_minimised_window_comes_back_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"-W", "tray icon", "tray menu"})
            QTest::addRow("%s", how) << QString::fromLatin1(how);
    }
    void a_minimised_window_comes_back()
    {
        QFETCH(const QString, how);
        window->showMinimized();
        QTRY_VERIFY(window->windowState() & Qt::WindowMinimized);
        QTest::qWait(100);
        if (how == "-W"_L1)
            window->handleMessage(u"-W"_s);
        else if (how == "tray icon"_L1)
            window->iconActivated(QSystemTrayIcon::Trigger);
        else
            for (QWidget *widget : QApplication::topLevelWidgets())
                if (auto *menu = qobject_cast<QMenu *>(widget); menu && !menu->parentWidget())
                    menu->actions().first()->trigger();
        QTRY_VERIFY(!(window->windowState() & Qt::WindowMinimized));
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
};

QTEST_MAIN(TestLinkChange)
#include "tst_link_change.moc"
