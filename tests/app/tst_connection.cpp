// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "device/posix_qextserialport.h"
#include "dialogs/advconnect_dlg.h"
#include "dialogs/connect_dlg.h"
#include "dialogs/smoothing_dlg.h"
#include "sim/serialsession.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/pty.h"
#include "tests/support/settingshome.h"
#include "tests/support/shownwindow.h"
#include "tests/support/widgets.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSerialPort>
#include <QTest>

#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;

// The connection dialog as the main window has it, with a pseudo-terminal for a port and a frame
// of the test's for USB.
class TestConnection : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;
    connect_dlg *dialog = nullptr;

    const QByteArray To9600 = QByteArray::fromHex("51 56 00 B1 00 03 00 0C 00 00 00");
    const QByteArray To115200 = QByteArray::fromHex("51 56 00 B1 00 03 00 13 00 00 00");

    const QByteArray Question = QByteArray::fromHex("51 56 00 A7 02 00 00 00");

    void makeWindow()
    {
        window = shownWindow(frame);
        QVERIFY(window);
        dialog = window->findChild<connect_dlg *>();
        QVERIFY(dialog);
    }
    QAction *connectAction() const { return window->findChild<QMenu *>()->actions().at(2); }
    void showDialog()
    {
        connectAction()->trigger();
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
    }
    QString state() const { return in<QPlainTextEdit>(dialog, "stateText")->toPlainText(); }
    void press(const char *name) const
    {
        QVERIFY(in(dialog, name)->isEnabled());
        QTest::mouseClick(in(dialog, name), Qt::LeftButton);
    }
    void choose(const char *radio) const
    {
        QTest::mouseClick(in<QRadioButton>(dialog, radio), Qt::LeftButton, {}, QPoint(10, 10));
    }
    void openByDialog(const QString &port, const QString &rate = u"9600"_s)
    {
        if (!dialog->isVisible())
            showDialog();
        choose("uartRadio");
        in<QComboBox>(dialog, "portBox")->setEditText(port);
        in<QComboBox>(dialog, "rateBox")->setCurrentText(rate);
        press("openButton");
    }
    static std::unique_ptr<sim::SerialSession> simulatedFrame()
    {
        auto simulated = std::make_unique<sim::SerialSession>(
            sim::Profile(), sim::FaultPlan(), [start = std::chrono::steady_clock::now()] {
                return std::chrono::duration_cast<std::chrono::milliseconds>(
                    std::chrono::steady_clock::now() - start);
            });
        if (const QString problem = simulated->plug(); !problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        return simulated;
    }
    QByteArray arrived(Pty &line, qsizetype count)
    {
        QByteArray bytes;
        [&] { QTRY_VERIFY((bytes += line.received()).size() >= count); }();
        return bytes;
    }
    static speed_t rateOf(const QString &path)
    {
        const FileDescriptor terminal(
            ::open(path.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
        termios settings{};
        if (!terminal.isValid() || ::tcgetattr(terminal.get(), &settings) != 0)
            return B0;
        return ::cfgetospeed(&settings);
    }

private slots:
    void init()
    {
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        makeWindow();
    }
    void cleanup()
    {
        window.reset();
        frame.reset();
        home.reset();
    }

    void the_menu_and_the_buttons_slot_show_the_dialog()
    {
        QVERIFY(connectAction()->isEnabled());
        QCOMPARE(connectAction()->text(), u"&Connect"_s);
        showDialog();
        QCOMPARE(dialog->windowTitle(), u"Connect"_s);
        dialog->close();
        QMetaObject::invokeMethod(window.get(), "on_conbtn_clicked");
        QVERIFY(QTest::qWaitForWindowExposed(dialog));
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open."_s);
    }

    void nothing_is_opened_at_start()
    {
        Pty line;
        openByDialog(line.path());
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        arrived(line, 3 * To9600.size());
        window.reset();
        line.received();

        makeWindow();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        showDialog();
        QTest::qWait(100);
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        QCOMPARE(line.received(), QByteArray());
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void open_sends_the_rate_and_then_frames_at_it()
    {
        Pty line;
        openByDialog(line.path(), u"115200"_s);
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(state().contains(u"The serial port %1 is open."_s.arg(line.path())));
        QCOMPARE(arrived(line, 3 * To115200.size() + Question.size()),
                 To115200 + To115200 + To115200 + Question);
        QCOMPARE(rateOf(line.path()), speed_t(B115200));
        line.send(QByteArray::fromHex("51 56 FC A7 82 02 00 00 00 00"));
        QTRY_VERIFY(state().contains(u"A frame answers at 115200 baud."_s));
        line.received();
        UCHAR query[64] = {0, 0xA3, 0x00, 0x00};
        emit window->Write03(query);
        QCOMPARE(arrived(line, 8), QByteArray::fromHex("51 56 00 A3 00 00 00 00"));
    }

    void another_rate_reopens_the_port()
    {
        Pty line;
        openByDialog(line.path(), u"115200"_s);
        arrived(line, 3 * To115200.size());
        openByDialog(line.path(), u"57600"_s);
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QCOMPARE(rateOf(line.path()), speed_t(B57600));
        QCOMPARE(arrived(line, 33).mid(7, 1), QByteArray::fromHex("11"));
        QVERIFY(!state().contains(u"cannot"_s));
    }

    void another_port_is_opened_instead_of_the_first()
    {
        Pty first;
        Pty second;
        openByDialog(first.path());
        openByDialog(second.path());
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(state().contains(second.path()));
        QSerialPort other(first.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void close_closes_the_port_and_shows_it()
    {
        Pty line;
        openByDialog(line.path());
        press("closeButton");
        QCOMPARE(window->connectState(), MainWindow::SerialClosed);
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open."_s);
        QVERIFY(!in(dialog, "closeButton")->isEnabled());
        QVERIFY(dialog->isVisible());
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void a_frame_that_answers_on_the_line_shows()
    {
        Pty line;
        openByDialog(line.path());
        QVERIFY(!state().contains(u"answers"_s));
        line.send(QByteArray::fromHex("51 56 FC A3 80 02 00 12 38 01"));
        QTRY_VERIFY(state().contains(u"A touch frame answers there."_s));
    }

    void a_silent_line_shows()
    {
        Pty line;
        openByDialog(line.path(), u"57600"_s);
        QTRY_VERIFY(state().endsWith(u"\nNo answer: check cable and rate."_s));
        QVERIFY(state().contains(u"Nothing has come from a touch frame there yet."_s));
    }

    void find_finds_a_frame_that_has_not_heard_of_the_rate()
    {
        const std::unique_ptr<sim::SerialSession> simulated = simulatedFrame();
        PortSettings settings;
        settings.BaudRate = BAUD38400;
        QVERIFY(window->OpenUart(simulated->place(), settings));
        QTRY_COMPARE(simulated->rate(), 38400);
        window->CLoseUart();

        showDialog();
        choose("uartRadio");
        in<QComboBox>(dialog, "portBox")->setEditText(simulated->place());
        in<QComboBox>(dialog, "rateBox")->setCurrentText(u"115200"_s);
        press("findButton");
        QTRY_VERIFY_WITH_TIMEOUT(state().contains(u"A frame answers at 38400 baud."_s), 15'000);
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QCOMPARE(in<QComboBox>(dialog, "rateBox")->currentText(), u"38400"_s);
        QCOMPARE(simulated->rate(), 38400);
    }

    void a_frame_that_hears_of_the_rate_is_found_at_the_chosen_one()
    {
        const std::unique_ptr<sim::SerialSession> simulated = simulatedFrame();
        openByDialog(simulated->place(), u"115200"_s);
        QTRY_VERIFY(state().contains(u"A frame answers at 115200 baud."_s));
        press("findButton");
        QTRY_VERIFY(in(dialog, "findButton")->text() == u"Fi&nd"_s);
        QVERIFY(state().contains(u"A frame answers at 115200 baud."_s));
        QCOMPARE(simulated->rate(), 115200);
    }

    void a_search_in_vain_closes_the_port()
    {
        Pty line;
        showDialog();
        choose("uartRadio");
        in<QComboBox>(dialog, "portBox")->setEditText(line.path());
        press("findButton");
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::SerialClosed, 15'000);
        QVERIFY2(state().contains(u"No frame answers at 9600, 19200, 38400, 57600, 115200 baud."_s),
                 qPrintable(state()));
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void a_port_that_is_not_there_fails_with_the_reason_in_an_open_dialog()
    {
        openByDialog(u"/dev/no-such-port"_s);
        QCOMPARE(window->connectState(), MainWindow::SerialFailed);
        QVERIFY(dialog->isVisible());
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          u"There is no serial port /dev/no-such-port. Check the cable and the "
                          u"name, such as ttyUSB0."_s);
        // The next attempt starts afresh.
        Pty line;
        openByDialog(line.path());
        QVERIFY(!state().contains(u"no-such-port"_s));
    }

    void a_port_that_another_program_holds_fails_with_the_reason()
    {
        Pty line;
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
        openByDialog(line.path());
        QCOMPARE(window->connectState(), MainWindow::SerialFailed);
        QVERIFY(state().contains(
            u"The serial port %1 is in use by tst_connection (process %2)."_s.arg(line.path())
                .arg(QCoreApplication::applicationPid())));
        other.close();
        press("openButton");
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(!state().contains(u"in use"_s));
    }

    void settings_that_the_port_refuses_are_told()
    {
        Pty line;
        XML_CLASS().read_connect();
        home->edit("BAUDRATE", "22");
        showDialog();
        choose("uartRadio");
        in<QComboBox>(dialog, "portBox")->setEditText(line.path());
        press("openButton");
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(state().contains(u"There is no baud rate number 22."_s));
        QCOMPARE(home->element("BAUDRATE"), "22");
    }

    void a_usb_frame_takes_over_and_the_dialog_shows_it()
    {
        Pty line;
        openByDialog(line.path());
        frame->present = true;
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::UsbConnected, 5000);
        QVERIFY(state().startsWith(u"A touch frame is connected by USB."_s));
        QVERIFY(state().contains(u"The frame took over from the serial port."_s));
        // The port is still open, and can be closed without a word to the frame.
        press("closeButton");
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        QCOMPARE(state(), u"A touch frame is connected by USB."_s);
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void a_port_opened_beside_a_plugged_frame_is_taken_over_at_the_next_look()
    {
        frame->present = true;
        window->OnDeviceAdded();
        Pty line;
        openByDialog(line.path());
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::UsbConnected, 5000);
        QVERIFY(state().contains(u"The frame took over from the serial port."_s));
        // Once more, with the port open all the time.
        press("openButton");
        QVERIFY(!state().contains(u"cannot"_s) && !state().contains(u"already"_s));
    }

    void after_a_take_over_and_an_unplug_the_port_is_closed_and_opens_again()
    {
        Pty line;
        openByDialog(line.path());
        frame->present = true;
        window->OnDeviceAdded();
        frame->present = false;
        window->OnDeviceRemoved();
        QCOMPARE(window->connectState(), MainWindow::NotConnected);
        QVERIFY(!window->findChild<Posix_QextSerialPort *>()->isOpen());
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open.\n"
                          "The frame on USB that had taken over from the serial port %1 is gone. "
                          "Open the port again to use it."_s.arg(line.path()));
        press("openButton");
        QCOMPARE(window->connectState(), MainWindow::SerialOpen);
        QVERIFY(state().startsWith(u"The serial port"_s));
    }

    void choosing_usb_closes_the_port_and_finds_a_frame()
    {
        Pty line;
        openByDialog(line.path());
        frame->present = true;
        choose("usbRadio");
        press("openButton");
        QCOMPARE(window->connectState(), MainWindow::UsbConnected);
        QCOMPARE(state(), u"A touch frame is connected by USB."_s);
        QSerialPort other(line.path());
        QVERIFY(other.open(QIODevice::ReadWrite));
    }

    void choosing_usb_without_a_frame_closes_the_port_and_says_so()
    {
        Pty line;
        openByDialog(line.path());
        choose("usbRadio");
        press("openButton");
        QCOMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(state().contains(u"No touch frame was found by USB."_s));
        frame->present = true;
        QTRY_COMPARE_WITH_TIMEOUT(window->connectState(), MainWindow::UsbConnected, 5000);
        QVERIFY(state().startsWith(u"A touch frame is connected by USB."_s));
    }

    void a_frame_that_may_not_be_opened_is_told_when_usb_is_chosen()
    {
        frame->setProblem({u"/dev/usb/hiddev3"_s, EACCES});
        showDialog();
        press("openButton");
        QVERIFY(state().contains(u"/dev/usb/hiddev3"_s));
        QVERIFY(state().contains(u"70-quorvel.rules"_s));
    }

    void usb_after_a_failed_port_does_not_repeat_its_reason()
    {
        openByDialog(u"/dev/no-such-port"_s);
        choose("usbRadio");
        press("openButton");
        QVERIFY(!state().contains(u"no-such-port"_s));
        QVERIFY(state().contains(u"No touch frame was found by USB."_s));
    }

    void a_hang_up_shows_with_its_reason()
    {
        Pty line;
        openByDialog(line.path());
        line.hangUp();
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(dialog->isVisible());
        QVERIFY(state().startsWith(u"No touch frame is connected, no serial port is open."_s));
        QVERIFY(state().contains(u"is gone"_s));
        QVERIFY(!in(dialog, "closeButton")->isEnabled());
    }

    void a_hang_up_behind_a_closed_dialog_is_there_when_it_opens()
    {
        Pty line;
        openByDialog(line.path());
        dialog->close();
        line.hangUp();
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        showDialog();
        QVERIFY(state().contains(u"is gone"_s));
    }

    void a_lost_frame_leaves_the_dialog_open()
    {
        showDialog();
        frame->present = true;
        window->OnDeviceAdded();
        QVERIFY(state().startsWith(u"A touch frame is connected by USB."_s));
        auto *smoothing = window->findChild<smoothing_dlg *>();
        smoothing->show();
        frame->present = false;
        window->OnDeviceRemoved();
        QVERIFY(!smoothing->isVisible());
        QVERIFY(dialog->isVisible());
        QCOMPARE(state(), u"No touch frame is connected, no serial port is open."_s);
    }

    void choices_are_there_again_after_a_restart()
    {
        Pty line;
        openByDialog(line.path(), u"115200"_s);
        window.reset();
        makeWindow();
        showDialog();
        QVERIFY(in<QRadioButton>(dialog, "uartRadio")->isChecked());
        QCOMPARE(in<QComboBox>(dialog, "portBox")->currentText(), line.path());
        QCOMPARE(in<QComboBox>(dialog, "rateBox")->currentText(), u"115200"_s);
    }

    void what_was_tried_in_vain_is_there_again_after_a_restart()
    {
        openByDialog(u"/dev/no-such-port"_s, u"57600"_s);
        window.reset();
        makeWindow();
        QVERIFY(in<QRadioButton>(dialog, "uartRadio")->isChecked());
        QCOMPARE(in<QComboBox>(dialog, "portBox")->currentText(), u"/dev/no-such-port"_s);
        QCOMPARE(in<QComboBox>(dialog, "rateBox")->currentText(), u"57600"_s);
    }

    void no_window_makes_the_form_for_tuio()
    {
        showDialog();
        QVERIFY(!window->findChild<advconnect_dlg *>());
        for (const QWidget *widget : QApplication::allWidgets())
            QVERIFY(!qobject_cast<const advconnect_dlg *>(widget));
    }
};

QTEST_MAIN(TestConnection)
#include "tst_connection.moc"
