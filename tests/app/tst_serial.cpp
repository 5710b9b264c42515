// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "device/posix_qextserialport.h"
#include "resources/resources.h"
#include "tests/support/fakeadapter.h"
#include "tests/support/farend.h"
#include "tests/support/openline.h"
#include "tests/support/quickest.h"
#include "tests/support/settingshome.h"
#include "tests/support/shownwindow.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <dlfcn.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Called before any line of this process gets other settings.
std::function<void()> beforeSettingsChange;
// What lines of this process were asked to be, as a pseudo-terminal does not become all of it.
QList<tcflag_t> flagsAsked;

template <typename Function>
Function libraryFunction(const char *name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void announceChange(tcflag_t flags)
{
    flagsAsked.append(flags);
    if (beforeSettingsChange)
        beforeSettingsChange();
}

} // namespace

extern "C" int tcsetattr(int fd, int actions, const termios *settings) noexcept
{
    static const auto real = libraryFunction<int (*)(int, int, const termios *)>("tcsetattr");
    announceChange(settings->c_cflag);
    return real(fd, actions, settings);
}

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    static const auto real = libraryFunction<int (*)(int, unsigned long, void *)>("ioctl");
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    if (request == TCSETS2 || request == TCSETSW2 || request == TCSETSF2)
        announceChange(static_cast<const termios2 *>(argument)->c_cflag);
    return real(fd, request, argument);
}

namespace {

// Long enough for bytes to come through the pseudo-terminal.
constexpr int SettleMs = 100;

} // namespace

// The serial link as the window runs it, with a pseudo-terminal for the line.
class TestSerial : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SettingsHome> home;
    std::shared_ptr<FakeAdapter> frame;
    std::unique_ptr<MainWindow> window;
    QByteArrayList frames; // what was received, in hexadecimal digits

    QString status() const { return window->findChild<QLabel *>(u"stalab"_s)->text(); }
    bool deviceButtonsEnabled() const
    {
        return window->findChild<QPushButton *>(u"calbtn"_s)->isEnabled();
    }
    void send(const QByteArray &bytes)
    {
        UCHAR buffer[64] = {};
        memcpy(buffer, bytes.constData(), size_t(bytes.size()));
        emit window->Write03(buffer);
    }

private slots:
    void initTestCase() { initResources(); }
    void init()
    {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        home = std::make_unique<SettingsHome>();
        frame = std::make_shared<FakeAdapter>();
        frame->present = false;
        window = shownWindow(frame);
        QVERIFY(window);
        frames.clear();
        connect(window.get(), &MainWindow::Recv03, this, [this](const UCHAR *bytes) {
            frames += QByteArray(reinterpret_cast<const char *>(bytes), 6 + bytes[3])
                          .toHex(' ')
                          .toUpper();
        });
    }
    void cleanup()
    {
        beforeSettingsChange = {};
        window.reset();
        frame.reset();
        home.reset();
    }

    // Opening

    void each_baud_command_leaves_at_its_own_rate_and_then_the_port_changes_data();
    void each_baud_command_leaves_at_its_own_rate_and_then_the_port_changes();
    void the_baud_commands_of_a_second_opening_leave_at_the_same_rates();
    void a_second_opening_announces_the_rate_in_the_default_format();
    void every_rate_is_set_or_refused_with_a_reason_data();
    void every_rate_is_set_or_refused_with_a_reason();
    void every_character_format_is_set_or_refused_with_a_reason_data();
    void every_character_format_is_set_or_refused_with_a_reason();
    void data_bits_are_set_before_stop_bits_and_those_before_the_parity();
    void several_refusals_are_all_told();
    void a_line_that_takes_no_bytes_gets_no_command_at_a_wrong_rate();
    void a_failed_opening_says_why_data();
    void a_failed_opening_says_why();
    void a_good_opening_forgets_the_last_problem();
    void flow_control_and_time_out_are_not_applied();

    // Receiving

    void a_whole_frame_in_one_piece_needs_no_further_byte();
    void a_frame_cut_anywhere_is_received();
    void two_frames_in_one_piece_are_both_received();
    void noise_before_between_and_inside_frames_costs_no_other_frame();
    void a_doubled_first_sync_byte_is_no_start();
    void a_frame_without_payload_has_six_bytes_behind_the_sync_pair();
    void half_a_frame_waits_over_closing_and_opening();
    void a_receiver_with_an_event_loop_of_its_own_gets_one_frame_at_a_time();
    void receiving_while_a_usb_frame_is_connected_hands_on_whole_frames();

    // Closing and losing

    void a_hang_up_closes_once_and_the_same_port_opens_again();
    void a_hang_up_while_opening_shows();
    void a_hang_up_in_the_middle_of_a_frame_keeps_the_beginning();
    void a_hang_up_costs_no_processor_time();
    void nothing_is_written_to_a_closed_port_data();
    void nothing_is_written_to_a_closed_port();
    void closing_leaves_the_state_closed_whatever_it_was();
    void a_hang_up_under_a_usb_frame_changes_nothing_that_shows();
};

void TestSerial::each_baud_command_leaves_at_its_own_rate_and_then_the_port_changes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<int>("rate");
    QTest::newRow("50") << 0 << "51 56 00 B1 00 03 00 00 00 00 00"_ba << 50;
    QTest::newRow("9600") << 12 << "51 56 00 B1 00 03 00 0C 00 00 00"_ba << 9600;
    QTest::newRow("57600") << 17 << "51 56 00 B1 00 03 00 11 00 00 00"_ba << 57600;
    QTest::newRow("115200") << 19 << "51 56 00 B1 00 03 00 13 00 00 00"_ba << 115200;
    QTest::newRow("256000") << 21 << "51 56 00 B1 00 03 00 15 00 00 00"_ba << 256000;
}

void TestSerial::each_baud_command_leaves_at_its_own_rate_and_then_the_port_changes()
{
    QFETCH(int, code);
    QFETCH(QByteArray, command);
    QFETCH(int, rate);
    FarEnd line;
    // The rate in force when each byte arrived.
    QList<std::pair<int, QByteArray>> arrivals;
    const auto look = [&] {
        const int now = int(line.settings().c_ospeed);
        if (const QByteArray bytes = line.take(4096, SettleMs); !bytes.isEmpty())
            arrivals += {now, bytes.toHex(' ').toUpper()};
    };
    beforeSettingsChange = look;
    QVERIFY(window->OpenUart(line.node, {.BaudRate = BaudRateType(code)}));
    beforeSettingsChange = {};
    look();
    QCOMPARE(window->uartProblem(), QString());
    const QList<std::pair<int, QByteArray>> expected = {
        {9600, command}, {57600, command}, {115200, command}};
    QCOMPARE(arrivals, expected);
    QCOMPARE(int(line.settings().c_ospeed), rate);
    QCOMPARE(int(line.settings().c_ispeed), rate);

    send(QByteArray::fromHex("00 A3 00 00"));
    look();
    QCOMPARE(arrivals.size(), 4);
    QCOMPARE(arrivals.last(), (std::pair{rate, "51 56 00 A3 00 00 00 00"_ba}));
}

void TestSerial::the_baud_commands_of_a_second_opening_leave_at_the_same_rates()
{
    const auto line = openLine(*window, {.BaudRate = BAUD256000});
    window->CLoseUart();
    QList<int> rates;
    const auto look = [&] {
        const int now = int(line->settings().c_ospeed);
        if (line->take(4096, SettleMs).size() == 11)
            rates += now;
    };
    beforeSettingsChange = look;
    QVERIFY(window->OpenUart(line->node, {.BaudRate = BAUD57600}));
    beforeSettingsChange = {};
    QCOMPARE(rates, (QList<int>{9600, 57600, 115200}));
    QCOMPARE(int(line->settings().c_ospeed), 57600);
}

void TestSerial::a_second_opening_announces_the_rate_in_the_default_format()
{
    const PortSettings twoStopBits{.StopBits = STOP_2};
    const auto line = openLine(*window, twoStopBits);
    QVERIFY(line->settings().c_cflag & CSTOPB);
    window->CLoseUart();
    qsizetype announced = 0;
    int wrong = 0;
    beforeSettingsChange = [&] {
        const auto arrived = line->take(11, SettleMs).size();
        announced += arrived;
        wrong += arrived > 0 && (line->settings().c_cflag & CSTOPB) ? 1 : 0;
    };
    QVERIFY(window->OpenUart(line->node, twoStopBits));
    QCOMPARE(announced, 33);
    QCOMPARE(wrong, 0);
    QVERIFY(line->settings().c_cflag & CSTOPB);
}

void TestSerial::every_rate_is_set_or_refused_with_a_reason_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("rate"); // 0: refused
    const int rates[] = {50,    75,    110,   134,    150,    200,   300,   600,
                         1200,  1800,  2400,  4800,   9600,   14400, 19200, 38400,
                         56000, 57600, 76800, 115200, 128000, 256000};
    for (int code = 0; code < 22; code++)
        QTest::addRow("%d", rates[code]) << code << rates[code];
    QTest::newRow("number 22") << 22 << 0;
    QTest::newRow("number -1") << -1 << 0;
}

void TestSerial::every_rate_is_set_or_refused_with_a_reason()
{
    QFETCH(int, code);
    QFETCH(int, rate);
    const auto line = openLine(*window, {.BaudRate = BaudRateType(code)});
    if (rate > 0) {
        QCOMPARE(window->uartProblem(), QString());
        QCOMPARE(int(line->settings().c_ospeed), rate);
    } else {
        QVERIFY2(window->uartProblem().contains(u"There is no baud rate number %1."_s.arg(code)),
                 qPrintable(window->uartProblem()));
        QCOMPARE(int(line->settings().c_ospeed), 115200);
    }
    QCOMPARE(window->connectState(), MainWindow::SerialOpen);
}

// A pseudo-terminal has eight data bits and no parity, whatever it is asked for, and says nothing.
void TestSerial::every_character_format_is_set_or_refused_with_a_reason_data()
{
    QTest::addColumn<PortSettings>("settings");
    QTest::addColumn<QString>("problem"); // empty: set
    const auto row = [](const char *name, const PortSettings &settings, const QString &problem) {
        QTest::newRow(name) << settings << problem;
    };
    row("5 data bits", {.DataBits = DATA_5}, u"does not do 5 data bits. Choose another number."_s);
    row("6 data bits", {.DataBits = DATA_6}, u"does not do 6 data bits. Choose another number."_s);
    row("7 data bits", {.DataBits = DATA_7}, u"does not do 7 data bits. Choose another number."_s);
    row("8 data bits", {.DataBits = DATA_8}, {});
    row("data bits number 9", {.DataBits = DataBitsType(9)},
        u"There is no data bits setting number 9."_s);
    row("no parity", {.Parity = PAR_NONE}, {});
    row("odd parity", {.Parity = PAR_ODD}, u"does not do this parity. Choose another parity."_s);
    row("even parity", {.Parity = PAR_EVEN}, u"does not do this parity. Choose another parity."_s);
    row("mark parity", {.Parity = PAR_MARK}, u"does not do this parity. Choose another parity."_s);
    row("space parity", {.Parity = PAR_SPACE},
        u"does not do this parity. Choose another parity."_s);
    row("parity number 5", {.Parity = ParityType(5)}, u"There is no parity number 5."_s);
    row("1 stop bit", {.StopBits = STOP_1}, {});
    row("1.5 stop bits", {.StopBits = STOP_1_5}, u"1.5 stop bits cannot be set here."_s);
    row("2 stop bits", {.StopBits = STOP_2}, {});
    row("stop bits number 3", {.StopBits = StopBitsType(3)},
        u"There is no stop bits setting number 3."_s);
}

void TestSerial::every_character_format_is_set_or_refused_with_a_reason()
{
    QFETCH(PortSettings, settings);
    QFETCH(QString, problem);
    const auto line = openLine(*window, settings);
    if (problem.isEmpty())
        QCOMPARE(window->uartProblem(), QString());
    QVERIFY2(window->uartProblem().contains(problem), qPrintable(window->uartProblem()));
    const tcflag_t two = settings.StopBits == STOP_2 ? CSTOPB : 0;
    QCOMPARE(line->settings().c_cflag & tcflag_t(CSIZE | PARENB | CMSPAR | CSTOPB), CS8 | two);
    QCOMPARE(window->connectState(), MainWindow::SerialOpen);
    QVERIFY(deviceButtonsEnabled());
}

void TestSerial::data_bits_are_set_before_stop_bits_and_those_before_the_parity()
{
    FarEnd line;
    flagsAsked.clear();
    QVERIFY(
        window->OpenUart(line.node, {.DataBits = DATA_7, .Parity = PAR_EVEN, .StopBits = STOP_2}));
    const auto firstAsked = [](tcflag_t mask, tcflag_t value) {
        const auto found = std::find_if(flagsAsked.cbegin(), flagsAsked.cend(),
                                        [=](tcflag_t f) { return (f & mask) == value; });
        return found == flagsAsked.cend() ? -1 : int(found - flagsAsked.cbegin());
    };
    const int dataBits = firstAsked(CSIZE, CS7);
    const int stopBits = firstAsked(CSTOPB, CSTOPB);
    const int parity = firstAsked(PARENB, PARENB);
    QVERIFY(dataBits >= 0);
    QVERIFY(stopBits > dataBits);
    QVERIFY(parity > stopBits);
}

void TestSerial::several_refusals_are_all_told()
{
    const auto line = openLine(*window, {.BaudRate = BaudRateType(40),
                                         .DataBits = DATA_7,
                                         .Parity = PAR_MARK,
                                         .StopBits = STOP_1_5});
    for (const QString &part : {u"no baud rate number 40"_s, u"7 data bits"_s, u"1.5 stop bits"_s,
                                u"does not do this parity"_s})
        QVERIFY2(window->uartProblem().contains(part), qPrintable(window->uartProblem()));
}

void TestSerial::a_line_that_takes_no_bytes_gets_no_command_at_a_wrong_rate()
{
    std::optional<FarEnd> line;
    FileDescriptor other;
    bool stopped = false;
    bool opened = false;
    const auto opening = quickest(1s, [&] {
        line.emplace();
        other = FileDescriptor(::open(line->node.toLocal8Bit().constData(),
                                      O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
        // Stopped rather than full: newer toolkits drop what waits on a line that they open.
        stopped = ::ioctl(other.get(), TCXONC, TCOOFF) == 0;
        return took([&] { opened = window->OpenUart(line->node, {.BaudRate = BAUD256000}); });
    });
    QVERIFY(stopped);
    QVERIFY(opened);
    QVERIFY2(opening < 1s, QByteArray::number(qint64(opening / 1ms)));
    QVERIFY2(window->uartProblem().contains(u"does not take the bytes that wait"),
             qPrintable(window->uartProblem()));
    // Only the first command was given to the line, which is still at its rate.
    QCOMPARE(int(line->settings().c_ospeed), 9600);
    QCOMPARE(::ioctl(other.get(), TCXONC, TCOON), 0);
    QByteArray bytes;
    QTRY_VERIFY((bytes += line->take(4096, 10)).size() >= 11);
    QTest::qWait(SettleMs);
    bytes += line->take(4096, SettleMs);
    QCOMPARE(bytes, QByteArray::fromHex("51 56 00 B1 00 03 00 15 00 00 00"));
}

void TestSerial::a_failed_opening_says_why_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("problem");
    QTest::newRow("no such port") << u"ttyQuorvel7"_s
                                  << u"There is no serial port /dev/ttyQuorvel7. Check the cable "
                                     "and the name, such as ttyUSB0."_s;
    QTest::newRow("no name") << QString()
                             << u"No serial port is chosen. Enter a name such as ttyUSB0."_s;
    QTest::newRow("a file")
        << u"/etc/passwd"_s
        << u"/etc/passwd is not a serial port. Choose a name such as ttyUSB0."_s;
}

void TestSerial::a_failed_opening_says_why()
{
    QFETCH(QString, name);
    QFETCH(QString, problem);
    QVERIFY(!window->OpenUart(name, {}));
    QCOMPARE(window->uartProblem(), problem);
    QCOMPARE(window->connectState(), MainWindow::SerialFailed);
    QVERIFY(!deviceButtonsEnabled());
}

void TestSerial::a_good_opening_forgets_the_last_problem()
{
    QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
    QVERIFY(!window->uartProblem().isEmpty());
    const auto line = openLine(*window);
    QCOMPARE(window->uartProblem(), QString());
    // An open port is not opened twice, and says so.
    QVERIFY(!window->OpenUart(line->node, {}));
    QVERIFY2(window->uartProblem().contains(u"is open already. Close it first."),
             qPrintable(window->uartProblem()));
    window->CLoseUart();
    QCOMPARE(window->uartProblem(), QString());
}

void TestSerial::flow_control_and_time_out_are_not_applied()
{
    const auto line = openLine(*window, {.FlowControl = FLOW_HARDWARE, .Timeout_Millisec = 9000});
    QVERIFY(!(line->settings().c_cflag & CRTSCTS));
    QVERIFY(!(line->settings().c_iflag & IXON));
    QCOMPARE(window->uartProblem(), QString());
}

void TestSerial::a_whole_frame_in_one_piece_needs_no_further_byte()
{
    const auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 56 FC A3 80 01 02 03 04"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 01 02 03 04"_ba}));
}

void TestSerial::a_frame_cut_anywhere_is_received()
{
    const auto line = openLine(*window);
    const QByteArray bytes = QByteArray::fromHex("51 56 FC A7 82 02 00 03 51 56");
    for (qsizetype cut = 1; cut < bytes.size(); cut++) {
        line->give(bytes.first(cut));
        QTest::qWait(5);
        QCOMPARE(frames.size(), cut - 1);
        line->give(bytes.sliced(cut));
        QTRY_COMPARE(frames.size(), cut);
        QCOMPARE(frames.last(), "FC A7 82 02 00 03 51 56"_ba);
    }
}

void TestSerial::two_frames_in_one_piece_are_both_received()
{
    const auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 56 FC A3 80 00 01 02 51 56 FC A7 82 02 00 03 00 00"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 01 02"_ba, "FC A7 82 02 00 03 00 00"_ba}));
}

void TestSerial::noise_before_between_and_inside_frames_costs_no_other_frame()
{
    const auto line = openLine(*window);
    // Before and between.
    line->give(QByteArray::fromHex("00 56 51 00 51 56 FC A3 80 00 01 02 51 57 FF"
                                   "51 56 FC A3 80 00 03 04"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 01 02"_ba, "FC A3 80 00 03 04"_ba}));
    frames.clear();
    // Inside: a report id, then a length, that cannot be.
    line->give(QByteArray::fromHex("51 56 F0 A3 80 00 05 06 51 56 FC A3 80 FF 07"
                                   "51 56 FC A3 80 00 09 0A"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 09 0A"_ba}));
    QTest::qWait(50);
    QCOMPARE(frames.size(), 1);
}

void TestSerial::a_doubled_first_sync_byte_is_no_start()
{
    const auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 51 56 FC A3 80 00 01 02"));
    line->give(QByteArray::fromHex("51 56 FC A3 80 00 03 04"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 03 04"_ba}));
}

void TestSerial::a_frame_without_payload_has_six_bytes_behind_the_sync_pair()
{
    const auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 56 FC A3 80 00 01"));
    QTest::qWait(50);
    QCOMPARE(frames, QByteArrayList());
    line->give(QByteArray::fromHex("02"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 01 02"_ba}));
}

void TestSerial::half_a_frame_waits_over_closing_and_opening()
{
    const auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 56 FC A3 80"));
    QTest::qWait(50);
    line->give(QByteArray::fromHex("02 AA"));
    QTest::qWait(50);
    window->CLoseUart();
    QVERIFY(window->OpenUart(line->node, {}));
    line->give(QByteArray::fromHex("BB CC DD"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 02 AA BB CC DD"_ba}));
}

void TestSerial::a_receiver_with_an_event_loop_of_its_own_gets_one_frame_at_a_time()
{
    const auto line = openLine(*window);
    int depth = 0;
    int deepest = 0;
    connect(window.get(), &MainWindow::Recv03, this, [&] {
        deepest = std::max(deepest, ++depth);
        if (frames.size() == 1) {
            line->give(QByteArray::fromHex("51 56 FC A3 80 00 03 04"));
            QTest::qWait(SettleMs);
        }
        depth--;
    });
    line->give(QByteArray::fromHex("51 56 FC A3 80 00 01 02 51 56 FC A3 80 00 05 06"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A3 80 00 01 02"_ba, "FC A3 80 00 05 06"_ba,
                                         "FC A3 80 00 03 04"_ba}));
    QCOMPARE(deepest, 1);
}

void TestSerial::receiving_while_a_usb_frame_is_connected_hands_on_whole_frames()
{
    const auto line = openLine(*window);
    frame->present = true;
    window->OnDeviceAdded();
    QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    line->give(QByteArray::fromHex("51 56 FC A7 82 02 00 03 00 00"));
    QTRY_VERIFY(frames.contains("FC A7 82 02 00 03 00 00"_ba));
}

void TestSerial::a_hang_up_closes_once_and_the_same_port_opens_again()
{
    const QString name = home->filePath(u"ttyAdapter"_s);
    const auto *port = window->findChild<Posix_QextSerialPort *>();
    QSignalSpy hungUp(port, &Posix_QextSerialPort::hangUp);
    for (int times = 1; times <= 3; times++) {
        FarEnd line;
        QFile::remove(name);
        QVERIFY(QFile::link(line.node, name));
        QVERIFY2(window->OpenUart(name, {}), qPrintable(window->uartProblem()));
        QCOMPARE(window->uartProblem(), QString());
        QCOMPARE(status(), u"Already link equipment"_s);
        QCOMPARE(line.take(33).size(), 33);
        line.give(QByteArray::fromHex("51 56 FC A3 80 00 01 02"));
        QTRY_COMPARE(frames.size(), times);

        line.fd = {};
        if (times == 2) { // noticed while writing
            send(QByteArray::fromHex("00 A3 00 00"));
            send(QByteArray::fromHex("00 A3 00 00"));
        }
        QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
        QVERIFY(!port->isOpen());
        QCOMPARE(status(), u"Have not linked equipment"_s);
        QVERIFY(!deviceButtonsEnabled());
        QCOMPARE(window->uartProblem(), u"The serial port %1 is gone. Plug it in and open it "
                                        "again."_s.arg(name));
        QTest::qWait(SettleMs);
        QCOMPARE(hungUp.count(), times);
    }
}

void TestSerial::a_hang_up_while_opening_shows()
{
    FarEnd line;
    beforeSettingsChange = [&] {
        if (line.fd.isValid() && line.take(11, SettleMs).size() == 11)
            line.fd = {};
    };
    QVERIFY(window->OpenUart(line.node, {.BaudRate = BAUD115200}));
    beforeSettingsChange = {};
    QVERIFY(!line.fd.isValid());
    QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
    QVERIFY2(window->uartProblem().contains(u" is gone. "), qPrintable(window->uartProblem()));
    QVERIFY(!deviceButtonsEnabled());
}

void TestSerial::a_hang_up_in_the_middle_of_a_frame_keeps_the_beginning()
{
    auto line = openLine(*window);
    line->give(QByteArray::fromHex("51 56 FC A3 80 00"));
    QTest::qWait(SettleMs);
    line.reset();
    QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
    line = openLine(*window);
    // The header's bytes that had not been read are gone with the line, its sync bytes are not.
    line->give(QByteArray::fromHex("FC A7 82 00 01 02"));
    QTRY_COMPARE(frames, (QByteArrayList{"FC A7 82 00 01 02"_ba}));
}

void TestSerial::a_hang_up_costs_no_processor_time()
{
    auto line = openLine(*window);
    line.reset();
    QTRY_COMPARE(window->connectState(), MainWindow::SerialClosed);
    const auto before = processorTime();
    QTest::qWait(500);
    const auto spent = processorTime() - before;
    QVERIFY2(spent < 150ms, QByteArray::number(qint64(spent.count())));
}

void TestSerial::nothing_is_written_to_a_closed_port_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("closed") << int(MainWindow::SerialClosed);
    QTest::newRow("lost") << int(MainWindow::SerialClosed);
    QTest::newRow("failed") << int(MainWindow::SerialFailed);
    QTest::newRow("never open") << int(MainWindow::NotConnected);
}

void TestSerial::nothing_is_written_to_a_closed_port()
{
    QFETCH(int, state);
    const QByteArray how = QTest::currentDataTag();
    const auto *port = window->findChild<Posix_QextSerialPort *>();
    std::unique_ptr<FarEnd> line;
    if (how == "closed" || how == "lost")
        line = openLine(*window);
    if (how == "closed")
        window->CLoseUart();
    if (how == "lost")
        line->fd = {};
    if (how == "failed")
        QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
    QTRY_COMPARE(int(window->connectState()), state);
    QVERIFY(!port->isOpen());
    // A closed port would refuse the bytes, and say so.
    const QString before = port->errorString();
    send(QByteArray::fromHex("00 A3 00 00"));
    QCOMPARE(port->errorString(), before);
    if (how == "closed")
        QCOMPARE(line->take(4096, SettleMs), QByteArray());
}

void TestSerial::closing_leaves_the_state_closed_whatever_it_was()
{
    QCOMPARE(window->connectState(), MainWindow::NotConnected);
    window->CLoseUart();
    QCOMPARE(window->connectState(), MainWindow::SerialClosed);
    QVERIFY(!window->OpenUart(u"ttyQuorvel7"_s, {}));
    QCOMPARE(window->connectState(), MainWindow::SerialFailed);
    window->CLoseUart();
    QCOMPARE(window->connectState(), MainWindow::SerialClosed);
    const auto line = openLine(*window);
    window->CLoseUart();
    window->CLoseUart();
    QCOMPARE(window->connectState(), MainWindow::SerialClosed);
    QVERIFY(window->OpenUart(line->node, {}));
    QCOMPARE(window->connectState(), MainWindow::SerialOpen);

    frame->present = true;
    window->OnDeviceAdded();
    QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    window->CLoseUart();
    QCOMPARE(window->connectState(), MainWindow::SerialClosed);
    QCOMPARE(frame->nowReading.load(), 0);
    QTRY_COMPARE(window->connectState(), MainWindow::UsbConnected); // still plugged in
}

void TestSerial::a_hang_up_under_a_usb_frame_changes_nothing_that_shows()
{
    const auto line = openLine(*window);
    frame->present = true;
    window->OnDeviceAdded();
    QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    const auto *port = window->findChild<Posix_QextSerialPort *>();
    QVERIFY(port->isOpen());
    line->fd = {};
    QTRY_VERIFY(!port->isOpen());
    QCOMPARE(window->connectState(), MainWindow::UsbConnected);
    QCOMPARE(status(), u"Already link equipment"_s);
}

QTEST_MAIN(TestSerial)
#include "tst_serial.moc"
