// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/posix_qextserialport.h"

#include "tests/support/farend.h"
#include "tests/support/quickest.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QSignalSpy>
#include <QTest>

#include <dlfcn.h>
#include <grp.h>
#include <sys/stat.h>

#include <cstdarg>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// What a driver answers instead of the pseudo-terminal's; nothing: that answers itself.
std::optional<int> unsentByDriver;
std::optional<unsigned> hardwareStatus; // or TIOCSER_TEMT
struct DriverSettings
{
    tcflag_t control = 0;
    tcflag_t input = 0;
    unsigned rate = 9600;
};
std::optional<DriverSettings> driverSettings;

} // namespace

extern "C" int ioctl(int fd, unsigned long request, ...) noexcept
{
    using Ioctl = int (*)(int, unsigned long, void *);
    static const auto real = reinterpret_cast<Ioctl>(::dlsym(RTLD_NEXT, "ioctl"));
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    if (request == TIOCOUTQ && unsentByDriver) {
        *static_cast<int *>(argument) = *unsentByDriver;
        return 0;
    }
    if (request == TIOCSERGETLSR && hardwareStatus) {
        *static_cast<unsigned *>(argument) = *hardwareStatus;
        return 0;
    }
    if (request == TCGETS2 && driverSettings) {
        constexpr tcflag_t Format = CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS;
        const int result = real(fd, request, argument);
        auto *said = static_cast<termios2 *>(argument);
        said->c_cflag = (said->c_cflag & ~Format) | driverSettings->control;
        said->c_iflag = (said->c_iflag & ~tcflag_t(IXON)) | driverSettings->input;
        said->c_ospeed = driverSettings->rate;
        return result;
    }
    return real(fd, request, argument);
}

// The C library compares what it has set with what a pseudo-terminal took of it. Its header and the
// kernel's exclude each other, so this has another name here.
extern "C" int setAttributes(int fd, int when, const void *attributes) noexcept
    __asm__("tcsetattr");

extern "C" int setAttributes(int fd, int when, const void *attributes) noexcept
{
    using Set = int (*)(int, int, const void *);
    static const auto real = reinterpret_cast<Set>(::dlsym(RTLD_NEXT, "tcsetattr"));
    return driverSettings ? 0 : real(fd, when, attributes);
}

namespace {

QByteArray read(Posix_QextSerialPort &port, qint64 maxSize)
{
    QByteArray bytes(maxSize, Qt::Uninitialized);
    const qint64 n = port.readData(bytes.data(), maxSize);
    return n < 0 ? "failed"_ba : bytes.first(n);
}

qint64 write(Posix_QextSerialPort &port, const QByteArray &bytes)
{
    return port.writeData(bytes.constData(), bytes.size());
}

} // namespace

class TestPosixQextSerialPort : public QObject
{
    Q_OBJECT

private slots:
    void every_name_has_its_number();
    void every_number_names_its_rate_data();
    void every_number_names_its_rate();
    void a_number_out_of_the_list_names_no_rate();
    void a_new_port_is_closed_and_empty();
    void an_absolute_and_a_bare_name_open_the_same_port();
    void a_rate_set_before_open_is_in_force();
    void bytes_travel_both_ways();
    void bytes_are_told_in_both_query_modes_data();
    void bytes_are_told_in_both_query_modes();
    void bytes_that_remain_are_told_again_while_some_are_read();
    void bytes_that_nobody_reads_are_told_once();
    void bytes_that_come_in_pieces_during_a_setter_are_told_once_and_later_data();
    void bytes_that_come_in_pieces_during_a_setter_are_told_once_and_later();
    void bytes_are_never_told_inside_a_setter();
    void written_bytes_leave_without_an_event_loop();
    void bytes_have_left_before_the_rate_changes();
    void a_byte_is_waited_for_as_long_as_its_format_makes_it_data();
    void a_byte_is_waited_for_as_long_as_its_format_makes_it();
    void bytes_of_several_writes_are_waited_for_together();
    void a_byte_has_3_milliseconds_more_to_pass_an_adapter();
    void a_rate_waits_for_a_slow_reader();
    void bytes_have_left_before_the_port_closes_data();
    void bytes_have_left_before_the_port_closes();
    void a_line_that_takes_nothing_keeps_its_rate();
    void a_line_that_takes_nothing_is_waited_for_as_long_as_the_time_out_says_data();
    void a_line_that_takes_nothing_is_waited_for_as_long_as_the_time_out_says();
    void a_line_that_takes_nothing_is_waited_for_once();
    void a_line_that_takes_nothing_for_long_is_not_gone();
    void a_line_that_goes_on_is_waited_for_again();
    void a_line_that_has_moved_is_waited_for_although_more_was_written_since();
    void what_the_driver_has_not_sent_is_waited_for_once();
    void a_line_that_takes_nothing_is_closed_soon();
    void no_more_than_16384_bytes_wait_for_a_line();
    void writing_to_a_line_that_takes_nothing_ends();
    void a_full_line_goes_on_when_its_reader_does();
    void unread_bytes_are_kept_up_to_a_bound();
    void what_cannot_be_set_is_refused_with_a_reason_data();
    void what_cannot_be_set_is_refused_with_a_reason();
    void two_stop_bits_after_five_data_bits_are_refused();
    void a_parity_that_another_program_left_behind_is_taken_back();
    void a_setting_that_the_port_drops_is_refused();
    void a_setting_is_in_force_when_the_driver_says_so();
    void a_rate_is_in_force_when_the_driver_is_within_2_percent_of_it();
    void settings_that_the_port_drops_at_open_are_named();
    void stop_bits_and_flow_control_reach_the_port();
    void settings_of_no_meaning_leave_the_defaults();
    void an_absent_port_is_refused_with_a_reason_data();
    void an_absent_port_is_refused_with_a_reason();
    void a_port_open_elsewhere_is_refused_with_a_reason();
    void a_port_of_another_user_is_refused_with_a_reason_data();
    void a_port_of_another_user_is_refused_with_a_reason();
    void a_port_that_does_not_open_is_left_to_others();
    void a_second_open_is_refused_and_changes_nothing();
    void a_closed_port_takes_and_gives_nothing();
    void a_hang_up_closes_once_and_rests();
    void a_hang_up_is_told_at_once_to_who_asks();
    void a_hang_up_seen_while_writing_closes_once();
    void a_port_reopened_before_its_hang_up_is_told_stays_open();
    void a_port_reopened_after_a_hang_up_owes_nothing_to_the_lost_line();
    void a_port_opens_again_after_a_hang_up();
};

void TestPosixQextSerialPort::every_number_names_its_rate_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("rate");
    const std::array<int, 22> rates = {50,    75,    110,   134,    150,    200,   300,   600,
                                       1200,  1800,  2400,  4800,   9600,   14400, 19200, 38400,
                                       56000, 57600, 76800, 115200, 128000, 256000};
    for (int number = 0; number < 22; number++)
        QTest::addRow("%d", rates[unsigned(number)]) << number << rates[unsigned(number)];
}

// Settings files and the controller go by them.
void TestPosixQextSerialPort::every_name_has_its_number()
{
    const auto numbers = [](std::initializer_list<int> names) { return QList<int>(names); };
    QCOMPARE(
        numbers({BAUD50,    BAUD75,     BAUD110,    BAUD134,   BAUD150,   BAUD200,
                 BAUD300,   BAUD600,    BAUD1200,   BAUD1800,  BAUD2400,  BAUD4800,
                 BAUD9600,  BAUD14400,  BAUD19200,  BAUD38400, BAUD56000, BAUD57600,
                 BAUD76800, BAUD115200, BAUD128000, BAUD256000}),
        numbers({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}));
    QCOMPARE(numbers({DATA_5, DATA_6, DATA_7, DATA_8}), numbers({0, 1, 2, 3}));
    QCOMPARE(numbers({PAR_NONE, PAR_ODD, PAR_EVEN, PAR_MARK, PAR_SPACE}), numbers({0, 1, 2, 3, 4}));
    QCOMPARE(numbers({STOP_1, STOP_1_5, STOP_2}), numbers({0, 1, 2}));
    QCOMPARE(numbers({FLOW_OFF, FLOW_HARDWARE, FLOW_XONXOFF}), numbers({0, 1, 2}));
}

void TestPosixQextSerialPort::every_number_names_its_rate()
{
    QFETCH(int, number);
    QFETCH(int, rate);
    QCOMPARE(bitsPerSecond(BaudRateType(number)), rate);

    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    QCOMPARE(int(far.settings().c_ospeed), 9600);
    QVERIFY2(port.setBaudRate(BaudRateType(number)), qPrintable(port.errorString()));
    QCOMPARE(int(far.settings().c_ospeed), rate);
    QCOMPARE(int(far.settings().c_ispeed), rate);
}

void TestPosixQextSerialPort::a_number_out_of_the_list_names_no_rate()
{
    QCOMPARE(bitsPerSecond(BaudRateType(-1)), 0);
    QCOMPARE(bitsPerSecond(BaudRateType(22)), 0);
    QCOMPARE(bitsPerSecond(BaudRateType(9600)), 0);
}

void TestPosixQextSerialPort::a_new_port_is_closed_and_empty()
{
    Posix_QextSerialPort port(u"COM1"_s, {});
    QVERIFY(!port.isOpen());
    QCOMPARE(port.size(), 0);
    QCOMPARE(port.mode(), Posix_QextSerialPort::Polling);
    QCOMPARE(port.errorString(), QString());
    port.close();
    QCOMPARE(port.errorString(), QString());
}

void TestPosixQextSerialPort::an_absolute_and_a_bare_name_open_the_same_port()
{
    FarEnd far;
    QVERIFY(far.node.startsWith(u"/dev/"));
    for (const QString &name : {far.node, far.node.sliced(5)}) {
        Posix_QextSerialPort port({}, {});
        port.setPortName(name);
        QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
        QVERIFY(port.isOpen());
        QCOMPARE(write(port, "name"_ba), 4);
        QCOMPARE(far.take(4), "name"_ba);
    }
}

void TestPosixQextSerialPort::a_rate_set_before_open_is_in_force()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD57600, .StopBits = STOP_2});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(int(far.settings().c_ospeed), 57600);
    QVERIFY(far.settings().c_cflag & CSTOPB);
    port.close();
    QVERIFY(port.setBaudRate(BAUD14400));
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(int(far.settings().c_ospeed), 14400);
    QVERIFY(far.settings().c_cflag & CSTOPB);
}

void TestPosixQextSerialPort::bytes_travel_both_ways()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD115200});
    QVERIFY(port.open(QIODevice::ReadWrite));

    QByteArray all;
    for (int value = 0; value < 256; value++)
        all += char(value);
    QCOMPARE(write(port, all), 256);
    QCOMPARE(far.take(256), all);

    far.give(all);
    QTRY_COMPARE(port.size(), 256);
    QCOMPARE(read(port, 5), all.first(5));
    QCOMPARE(port.size(), 251);
    QCOMPARE(read(port, 1000), all.sliced(5));
    QCOMPARE(port.size(), 0);
    QCOMPARE(read(port, 1), QByteArray());
}

void TestPosixQextSerialPort::bytes_are_told_in_both_query_modes_data()
{
    QTest::addColumn<Posix_QextSerialPort::QueryMode>("mode");
    QTest::newRow("polling") << Posix_QextSerialPort::Polling;
    QTest::newRow("event driven") << Posix_QextSerialPort::EventDriven;
}

void TestPosixQextSerialPort::bytes_are_told_in_both_query_modes()
{
    QFETCH(Posix_QextSerialPort::QueryMode, mode);
    FarEnd far;
    Posix_QextSerialPort port(far.node, {}, mode);
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy told(&port, &Posix_QextSerialPort::readyRead);
    far.give("Q"_ba);
    QVERIFY(told.wait(2000));
    QCOMPARE(port.size(), 1);
}

void TestPosixQextSerialPort::bytes_that_remain_are_told_again_while_some_are_read()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QByteArray got;
    QList<qint64> sizes;
    connect(&port, &Posix_QextSerialPort::readyRead, this, [&] {
        sizes += port.size();
        got += read(port, 2);
    });
    far.give("abcdefg"_ba);
    QTRY_COMPARE(got, "abcdefg"_ba);
    QCOMPARE(sizes, (QList<qint64>{7, 5, 3, 1}));
}

void TestPosixQextSerialPort::bytes_that_nobody_reads_are_told_once()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy told(&port, &Posix_QextSerialPort::readyRead);
    far.give("abc"_ba);
    QVERIFY(told.wait(2000));
    QTest::qWait(100);
    QCOMPARE(told.count(), 1);
    far.give("d"_ba);
    QVERIFY(told.wait(2000));
    QCOMPARE(port.size(), 4);
}

void TestPosixQextSerialPort::
    bytes_that_come_in_pieces_during_a_setter_are_told_once_and_later_data()
{
    QTest::addColumn<bool>("readAtOnce");
    QTest::newRow("and not when they have been read by then") << true;
    QTest::newRow("all of them") << false;
}

void TestPosixQextSerialPort::bytes_that_come_in_pieces_during_a_setter_are_told_once_and_later()
{
    QFETCH(const bool, readAtOnce);
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 2000});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy told(&port, &Posix_QextSerialPort::readyRead);
    // More than a pseudo-terminal holds, so that the setter waits for the far end.
    const QByteArray bytes(Posix_QextSerialPort::MaxWaiting, 'x');
    QCOMPARE(write(port, bytes), bytes.size());
    std::thread other([&] {
        for (int i = 0; i < 3; i++) {
            std::this_thread::sleep_for(30ms);
            far.give("abc"_ba);
        }
        std::this_thread::sleep_for(30ms);
        far.take(bytes.size(), 3000);
    });
    const bool set = port.setBaudRate(BAUD9600);
    other.join();
    QVERIFY2(set, qPrintable(port.errorString()));
    QCOMPARE(told.count(), 0);
    QCOMPARE(port.size(), 9);
    if (readAtOnce)
        QCOMPARE(read(port, 9).size(), 9);
    QTest::qWait(100);
    QCOMPARE(told.count(), readAtOnce ? 0 : 1);
}

void TestPosixQextSerialPort::bytes_are_never_told_inside_a_setter()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    bool inside = false;
    int toldInside = 0;
    QSignalSpy told(&port, &Posix_QextSerialPort::readyRead);
    connect(&port, &Posix_QextSerialPort::readyRead, this, [&] { toldInside += inside ? 1 : 0; });
    far.give("abc"_ba);
    QCOMPARE(write(port, QByteArray(100, 'x')), 100);
    inside = true;
    QVERIFY(port.setBaudRate(BAUD57600));
    inside = false;
    QTRY_COMPARE(told.count(), 1);
    QCOMPARE(toldInside, 0);
}

void TestPosixQextSerialPort::written_bytes_leave_without_an_event_loop()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, "request"_ba), 7);
    QCOMPARE(far.take(7), "request"_ba);
}

// As the window does it: the same command at three rates, then the rate asked for.
void TestPosixQextSerialPort::bytes_have_left_before_the_rate_changes()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QByteArray command = QByteArray::fromHex("5156fcb100030013000000");
    int left = 0;
    QElapsedTimer clock;
    clock.start();
    for (const BaudRateType rate : {BAUD9600, BAUD57600, BAUD115200}) {
        QVERIFY(port.setBaudRate(rate));
        QCOMPARE(far.waiting(), left);
        QCOMPARE(write(port, command), 11);
        left += 11;
    }
    QVERIFY(port.setBaudRate(BAUD256000));
    QCOMPARE(far.waiting(), 33);
    // 110 bits at 9600, 57600 and 115200 baud take 14.3 ms on a wire.
    QVERIFY2(clock.nsecsElapsed() >= 14'300'000, QByteArray::number(clock.nsecsElapsed()));
    QVERIFY2(clock.elapsed() < 1000, QByteArray::number(clock.elapsed()));
    QCOMPARE(far.take(33), command + command + command);
}

void TestPosixQextSerialPort::a_byte_is_waited_for_as_long_as_its_format_makes_it_data()
{
    QTest::addColumn<PortSettings>("format");
    QTest::addColumn<int>("bits"); // with the start bit
    QTest::newRow("5 data bits") << PortSettings{.DataBits = DATA_5} << 7;
    QTest::newRow("8 data bits") << PortSettings{.DataBits = DATA_8} << 10;
    QTest::newRow("a parity bit") << PortSettings{.Parity = PAR_EVEN} << 11;
    QTest::newRow("2 stop bits") << PortSettings{.StopBits = STOP_2} << 11;
    QTest::newRow("all of them") << PortSettings{.DataBits = DATA_7,
                                                 .Parity = PAR_MARK,
                                                 .StopBits = STOP_2}
                                 << 11;
}

// A pseudo-terminal keeps neither data bits nor parity, but its port does.
void TestPosixQextSerialPort::a_byte_is_waited_for_as_long_as_its_format_makes_it()
{
    QFETCH(const PortSettings, format);
    QFETCH(const int, bits);
    FarEnd far;
    Posix_QextSerialPort port(far.node, format);
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QByteArray bytes(192, 'x'); // a bit of each is 20 ms at 9600 baud
    bool passed = true;
    const auto wait = quickest((bits + 1) * 20ms, [&] {
        passed = passed && port.setBaudRate(BAUD9600);
        const auto time = took([&] {
            passed = passed && write(port, bytes) == bytes.size() && port.setBaudRate(BAUD57600);
        });
        passed = passed && far.take(bytes.size()) == bytes;
        return time;
    });
    QVERIFY2(passed, qPrintable(port.errorString()));
    QVERIFY2(wait >= bits * 20ms && wait < (bits + 1) * 20ms,
             QByteArray::number(qint64(wait.count())));
}

void TestPosixQextSerialPort::bytes_of_several_writes_are_waited_for_together()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 4; i++)
        QCOMPARE(write(port, QByteArray(48, 'x')), 48);
    QVERIFY2(port.setBaudRate(BAUD57600), qPrintable(port.errorString()));
    // 192 bytes of ten bits at 9600 baud.
    QVERIFY2(clock.elapsed() >= 200, QByteArray::number(clock.elapsed()));
}

void TestPosixQextSerialPort::a_byte_has_3_milliseconds_more_to_pass_an_adapter()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    bool passed = true;
    const auto rest = quickest(4ms, [&] {
        passed = passed && port.setBaudRate(BAUD256000);
        return took(
            [&] { passed = passed && write(port, "x"_ba) == 1 && port.setBaudRate(BAUD9600); });
    });
    QVERIFY(passed);
    QVERIFY2(rest >= 3ms && rest < 4ms, QByteArray::number(qint64(rest.count())));
}

void TestPosixQextSerialPort::a_rate_waits_for_a_slow_reader()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 4000});
    QVERIFY(port.open(QIODevice::ReadWrite));
    // More than a pseudo-terminal holds, so that most of it waits for the reader.
    const QByteArray bytes(Posix_QextSerialPort::MaxWaiting, 'x');
    QCOMPARE(write(port, bytes), bytes.size());
    QVERIFY(far.waiting() < bytes.size() / 2);

    qsizetype taken = 0;
    qsizetype takenWhenRateChanged = -1;
    std::thread reader([&] {
        while (taken < bytes.size()) {
            if (takenWhenRateChanged < 0 && far.settings().c_ospeed != 256000)
                takenWhenRateChanged = taken + far.waiting();
            const QByteArray part = far.take(1024, 3000);
            if (part.isEmpty())
                return;
            taken += part.size();
            std::this_thread::sleep_for(2ms);
        }
    });
    const bool set = port.setBaudRate(BAUD9600);
    reader.join();
    QVERIFY2(set, qPrintable(port.errorString()));
    QCOMPARE(taken, bytes.size());
    QCOMPARE(int(far.settings().c_ospeed), 9600);
    // Never before all bytes were on the line; after the last one the reader looks no more.
    QVERIFY2(takenWhenRateChanged == -1 || takenWhenRateChanged == bytes.size(),
             QByteArray::number(takenWhenRateChanged));
}

void TestPosixQextSerialPort::bytes_have_left_before_the_port_closes_data()
{
    QTest::addColumn<bool>("gone");
    QTest::newRow("is closed") << false;
    QTest::newRow("is gone") << true;
}

void TestPosixQextSerialPort::bytes_have_left_before_the_port_closes()
{
    QFETCH(const bool, gone);
    FarEnd far;
    auto port = std::make_unique<Posix_QextSerialPort>(
        far.node, PortSettings{.BaudRate = BAUD256000, .Timeout_Millisec = 2000});
    QVERIFY(port->open(QIODevice::ReadWrite));
    const QByteArray bytes(Posix_QextSerialPort::MaxWaiting, 'x');
    QCOMPARE(write(*port, bytes), bytes.size());
    QByteArray got;
    std::thread reader([&] { got = far.take(bytes.size(), 3000); });
    if (gone)
        port.reset();
    else
        port->close();
    reader.join();
    QCOMPARE(got.size(), bytes.size());
    QVERIFY(!port || !port->isOpen());
}

void TestPosixQextSerialPort::a_line_that_takes_nothing_keeps_its_rate()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 100});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray(Posix_QextSerialPort::MaxWaiting, 'x')),
             Posix_QextSerialPort::MaxWaiting);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!port.setBaudRate(BAUD9600));
    QVERIFY2(clock.elapsed() < Posix_QextSerialPort::MaxDrainMs + 500,
             QByteArray::number(clock.elapsed()));
    QVERIFY(port.errorString().contains(u"does not take the bytes that wait"));
    QCOMPARE(int(far.settings().c_ospeed), 256000);
    QVERIFY(port.isOpen());
}

void TestPosixQextSerialPort::
    a_line_that_takes_nothing_is_waited_for_as_long_as_the_time_out_says_data()
{
    QTest::addColumn<PortSettings>("settings");
    QTest::addColumn<long>("timeout"); // set later; -1: not
    QTest::addColumn<qint64>("atLeast");
    QTest::addColumn<qint64>("lessThan");
    // 16384 bytes of ten bits need 640 ms at 256000 baud by themselves.
    const PortSettings fast{.BaudRate = BAUD256000};
    PortSettings patient = fast;
    patient.Timeout_Millisec = 1500;
    QTest::newRow("none") << patient << 0L << qint64(630) << qint64(1500);
    QTest::newRow("a second and a half") << patient << -1L << qint64(2130) << qint64(2900);
    QTest::newRow("more than any window can wait")
        << fast << 60'000L << qint64(2990) << qint64(4000);
}

void TestPosixQextSerialPort::a_line_that_takes_nothing_is_waited_for_as_long_as_the_time_out_says()
{
    QFETCH(const PortSettings, settings);
    QFETCH(const long, timeout);
    QFETCH(const qint64, atLeast);
    QFETCH(const qint64, lessThan);
    FarEnd far;
    Posix_QextSerialPort port(far.node, settings);
    QVERIFY(port.open(QIODevice::ReadWrite));
    if (timeout >= 0)
        QVERIFY(port.setTimeout(timeout));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(write(port, QByteArray(Posix_QextSerialPort::MaxWaiting, 'x')),
             Posix_QextSerialPort::MaxWaiting);
    QVERIFY(!port.setBaudRate(BAUD9600));
    const qint64 waited = clock.elapsed();
    QVERIFY2(waited >= atLeast && waited < lessThan, QByteArray::number(waited));
}

void TestPosixQextSerialPort::a_line_that_takes_nothing_is_waited_for_once()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray(Posix_QextSerialPort::MaxWaiting, 'x')),
             Posix_QextSerialPort::MaxWaiting);
    QVERIFY(!port.setBaudRate(BAUD9600));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!port.setBaudRate(BAUD57600));
    QVERIFY(!port.setStopBits(STOP_2));
    QVERIFY(port.errorString().contains(u"does not take the bytes that wait"));
    port.close();
    QVERIFY2(clock.elapsed() < 400, QByteArray::number(clock.elapsed()));

    // Another opening begins anew.
    far.take(1'000'000, 200);
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray("again")), 5);
    QVERIFY2(port.setBaudRate(BAUD57600), qPrintable(port.errorString()));
}

void TestPosixQextSerialPort::a_line_that_takes_nothing_for_long_is_not_gone()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000});
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray(Posix_QextSerialPort::MaxWaiting, 'x')),
             Posix_QextSerialPort::MaxWaiting);
    for (int i = 0; i < 12; i++)
        QVERIFY(!port.setBaudRate(BAUD9600));
    QTest::qWait(50);
    QCOMPARE(hungUp.size(), 0);
    QVERIFY(port.isOpen());
    // What waits goes on with its reader.
    QByteArray taken;
    QTRY_COMPARE((taken += far.take(Posix_QextSerialPort::MaxWaiting, 10)).size(),
                 Posix_QextSerialPort::MaxWaiting);
}

void TestPosixQextSerialPort::a_line_that_goes_on_is_waited_for_again()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 100});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QByteArray bytes(Posix_QextSerialPort::MaxWaiting - 1000, 'x');
    QCOMPARE(write(port, bytes), bytes.size());
    QVERIFY(!port.setBaudRate(BAUD9600));
    // Some leave, more are written than have left, and then the rest leaves.
    QCOMPARE(far.take(500).size(), 500);
    QCOMPARE(write(port, QByteArray(900, 'y')), 900);
    QVERIFY(port.setTimeout(2000));
    std::thread reader([&] { far.take(bytes.size() + 400, 3000); });
    QTest::qSleep(100); // what the reader takes makes room a little later
    const bool set = port.setBaudRate(BAUD9600);
    reader.join();
    QVERIFY2(set, qPrintable(port.errorString()));
}

void TestPosixQextSerialPort::a_line_that_has_moved_is_waited_for_although_more_was_written_since()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 0});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const auto fill = [&port] {
        int times = 0;
        while (write(port, QByteArray(64, 'x')) > 0)
            times++;
        return times;
    };
    QVERIFY(fill() > 0);
    QVERIFY(!port.setBaudRate(BAUD9600));
    QCOMPARE(far.take(6000).size(), 6000);
    QTest::qWait(100);
    QVERIFY(fill() > 0); // as many wait as before
    QVERIFY(port.setTimeout(300));
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!port.setBaudRate(BAUD9600));
    QVERIFY2(clock.elapsed() >= 300, QByteArray::number(clock.elapsed()));
}

// A pseudo-terminal has no such driver.
void TestPosixQextSerialPort::what_the_driver_has_not_sent_is_waited_for_once()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 300});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const auto setBy = [&port](BaudRateType rate, bool &set) {
        QElapsedTimer clock;
        clock.start();
        set = port.setBaudRate(rate);
        return clock.elapsed();
    };
    bool set = true;
    const QScopedValueRollback driver(unsentByDriver, std::optional(1));
    QCOMPARE(write(port, "x"_ba), 1); // which has not left
    QVERIFY(setBy(BAUD9600, set) >= 300);
    QVERIFY(!set);
    QVERIFY(setBy(BAUD9600, set) < 250);
    QVERIFY(!set);
    unsentByDriver = 0;
    setBy(BAUD9600, set);
    QVERIFY(set);
    // The shift register has the last of it.
    const QScopedValueRollback hardware(hardwareStatus, std::optional(0U));
    QVERIFY(setBy(BAUD57600, set) >= 300);
    QVERIFY(!set);
    hardwareStatus = TIOCSER_TEMT;
    setBy(BAUD57600, set);
    QVERIFY(set);
}

void TestPosixQextSerialPort::a_line_that_takes_nothing_is_closed_soon()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 100});
    QVERIFY(port.open(QIODevice::ReadWrite));
    write(port, QByteArray(Posix_QextSerialPort::MaxWaiting, 'x'));
    QElapsedTimer clock;
    clock.start();
    port.close();
    QVERIFY(!port.isOpen());
    QVERIFY2(clock.elapsed() < Posix_QextSerialPort::MaxDrainMs + 500,
             QByteArray::number(clock.elapsed()));
}

void TestPosixQextSerialPort::no_more_than_16384_bytes_wait_for_a_line()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 0});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray(16385, 'x')), -1);
    QVERIFY2(port.errorString().contains(u"takes no more bytes"), qPrintable(port.errorString()));
    QCOMPARE(far.waiting(), 0);
    QCOMPARE(write(port, QByteArray(16384, 'x')), 16384);
}

void TestPosixQextSerialPort::writing_to_a_line_that_takes_nothing_ends()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000, .Timeout_Millisec = 0});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QByteArray part(64, 'x');
    qint64 accepted = 0;
    qint64 answer = 0;
    while (accepted < 20 * Posix_QextSerialPort::MaxWaiting && (answer = write(port, part)) > 0)
        accepted += answer;
    QCOMPARE(answer, -1);
    QVERIFY(accepted >= Posix_QextSerialPort::MaxWaiting);
    QVERIFY2(port.errorString().contains(u"takes no more bytes"), qPrintable(port.errorString()));
    QVERIFY(port.isOpen());
}

void TestPosixQextSerialPort::a_full_line_goes_on_when_its_reader_does()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD256000});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    QByteArray all;
    for (int n = 0; n < 1000; n++) {
        const QByteArray part = QByteArray::number(n).rightJustified(32, '.');
        if (write(port, part) < 0)
            break;
        all += part;
    }
    QVERIFY(all.size() > far.waiting());
    QTest::qWait(50);
    QVERIFY(port.isOpen());
    QByteArray got;
    QDeadlineTimer deadline(5s);
    while (got.size() < all.size() && !deadline.hasExpired()) {
        got += far.take(all.size() - got.size(), 10);
        QTest::qWait(1);
    }
    QCOMPARE(got, all);
    QCOMPARE(hungUp.count(), 0);
}

void TestPosixQextSerialPort::unread_bytes_are_kept_up_to_a_bound()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    fcntl(far.fd.get(), F_SETFL, O_NONBLOCK);
    const QByteArray part(1024, 'y');
    QDeadlineTimer deadline(20s);
    qint64 given = 0;
    // Until the line takes nothing for a while.
    for (int refused = 0; refused < 50 && !deadline.hasExpired();) {
        const ssize_t n = ::write(far.fd.get(), part.constData(), size_t(part.size()));
        given += n > 0 ? n : 0;
        refused = n > 0 ? 0 : refused + 1;
        QTest::qWait(1);
    }
    QVERIFY(given > 16384);
    QCOMPARE(port.size(), 16384);
    // Reading makes room for the rest.
    qint64 got = 0;
    connect(&port, &Posix_QextSerialPort::readyRead, this,
            [&] { got += read(port, Posix_QextSerialPort::MaxWaiting).size(); });
    got += read(port, 1).size();
    QTRY_COMPARE(got, given);
}

void TestPosixQextSerialPort::what_cannot_be_set_is_refused_with_a_reason_data()
{
    using Port = Posix_QextSerialPort;
    QTest::addColumn<std::function<bool(Port &)>>("set");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const std::function<bool(Port &)> &set,
                        const QString &reason) { QTest::newRow(name) << set << reason; };
    row(
        "rate -1", [](Port &p) { return p.setBaudRate(BaudRateType(-1)); },
        u"no baud rate number -1"_s);
    row(
        "rate 22", [](Port &p) { return p.setBaudRate(BaudRateType(22)); },
        u"no baud rate number 22"_s);
    row(
        "data bits 4", [](Port &p) { return p.setDataBits(DataBitsType(4)); },
        u"no data bits setting number 4"_s);
    row(
        "parity 5", [](Port &p) { return p.setParity(ParityType(5)); }, u"no parity number 5"_s);
    row(
        "1.5 stop bits", [](Port &p) { return p.setStopBits(STOP_1_5); },
        u"1.5 stop bits cannot be set"_s);
    row(
        "stop bits 3", [](Port &p) { return p.setStopBits(StopBitsType(3)); },
        u"no stop bits setting number 3"_s);
    row(
        "flow control 3", [](Port &p) { return p.setFlowControl(FlowType(3)); },
        u"no flow control number 3"_s);
    row(
        "time-out -1", [](Port &p) { return p.setTimeout(-1); }, u"time-out of -1 ms cannot be"_s);
}

void TestPosixQextSerialPort::what_cannot_be_set_is_refused_with_a_reason()
{
    QFETCH(std::function<bool(Posix_QextSerialPort &)>, set);
    QFETCH(QString, reason);
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(!set(port));
    QVERIFY2(port.errorString().contains(reason), qPrintable(port.errorString()));

    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(port.errorString(), QString());
    const termios2 before = far.settings();
    QVERIFY(!set(port));
    QVERIFY2(port.errorString().contains(reason), qPrintable(port.errorString()));
    QCOMPARE(far.settings().c_ospeed, before.c_ospeed);
    QCOMPARE(far.settings().c_cflag, before.c_cflag);
    QCOMPARE(far.settings().c_iflag, before.c_iflag);
}

void TestPosixQextSerialPort::two_stop_bits_after_five_data_bits_are_refused()
{
    Posix_QextSerialPort port(u"ttyS0"_s, {});
    QVERIFY(port.setDataBits(DATA_5));
    QVERIFY(!port.setStopBits(STOP_2));
    QVERIFY2(port.errorString().contains(u"makes 1.5 stop bits of 2"),
             qPrintable(port.errorString()));
    QVERIFY(port.setStopBits(STOP_1));
    QVERIFY(port.setDataBits(DATA_6));
    QVERIFY(port.setStopBits(STOP_2));
}

// Without parity its bit means nothing, and with one it makes another of it.
void TestPosixQextSerialPort::a_parity_that_another_program_left_behind_is_taken_back()
{
    FarEnd far;
    termios2 left = far.settings();
    left.c_cflag |= CMSPAR;
    QCOMPARE(::ioctl(far.fd.get(), TCSETS2, &left), 0);
    QVERIFY(far.settings().c_cflag & CMSPAR);
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QVERIFY(!(far.settings().c_cflag & CMSPAR));
}

// A pseudo-terminal always has eight bits and no parity, and reports success nevertheless.
void TestPosixQextSerialPort::a_setting_that_the_port_drops_is_refused()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    for (const DataBitsType bits : {DATA_5, DATA_6, DATA_7}) {
        QVERIFY(!port.setDataBits(bits));
        QVERIFY2(port.errorString().contains(u"does not do %1 data bits"_s.arg(5 + int(bits))),
                 qPrintable(port.errorString()));
    }
    QVERIFY2(port.setDataBits(DATA_8), qPrintable(port.errorString()));
    for (const ParityType parity : {PAR_ODD, PAR_EVEN, PAR_MARK, PAR_SPACE}) {
        QVERIFY(!port.setParity(parity));
        QVERIFY2(port.errorString().contains(u"does not do this parity"),
                 qPrintable(port.errorString()));
    }
    // Refused and taken back, not left half set.
    QVERIFY(!(far.settings().c_cflag & CMSPAR));
    QVERIFY2(port.setParity(PAR_NONE), qPrintable(port.errorString()));
    QCOMPARE(far.settings().c_cflag & tcflag_t(CSIZE | PARENB | PARODD | CMSPAR), tcflag_t(CS8));

    port.close();
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(port.errorString(), QString());
}

// A pseudo-terminal has one format, drivers of hardware have more.
void TestPosixQextSerialPort::a_setting_is_in_force_when_the_driver_says_so()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QScopedValueRollback driver(driverSettings, std::optional(DriverSettings()));
    const auto agree = [&port](const auto &all, const auto &set, const QString &reason) {
        for (const auto &[unused, said] : all) {
            for (const auto &[wanted, needed] : all) {
                driverSettings = said;
                const bool same = said.control == needed.control && said.input == needed.input;
                QCOMPARE(set(wanted), same);
                QVERIFY2(same || port.errorString().contains(reason),
                         qPrintable(port.errorString()));
            }
        }
    };
    const std::pair<ParityType, DriverSettings> parities[] = {
        {PAR_NONE, {.control = 0}},
        {PAR_ODD, {.control = PARENB | PARODD}},
        {PAR_EVEN, {.control = PARENB}},
        {PAR_MARK, {.control = PARENB | PARODD | CMSPAR}},
        {PAR_SPACE, {.control = PARENB | CMSPAR}}};
    agree(
        parities, [&port](ParityType parity) { return port.setParity(parity); },
        u"does not do this parity"_s);
    // Without a parity it does not matter of what kind it would be.
    driverSettings = DriverSettings{.control = PARODD};
    QVERIFY2(port.setParity(PAR_NONE), qPrintable(port.errorString()));

    const std::pair<DataBitsType, DriverSettings> sizes[] = {{DATA_5, {.control = CS5}},
                                                             {DATA_6, {.control = CS6}},
                                                             {DATA_7, {.control = CS7}},
                                                             {DATA_8, {.control = CS8}}};
    agree(
        sizes, [&port](DataBitsType bits) { return port.setDataBits(bits); }, u" data bits"_s);
    const std::pair<StopBitsType, DriverSettings> stops[] = {{STOP_1, {.control = 0}},
                                                             {STOP_2, {.control = CSTOPB}}};
    agree(
        stops, [&port](StopBitsType bits) { return port.setStopBits(bits); },
        u"does not do this number of stop bits"_s);
    const std::pair<FlowType, DriverSettings> flows[] = {{FLOW_OFF, {.control = 0}},
                                                         {FLOW_HARDWARE, {.control = CRTSCTS}},
                                                         {FLOW_XONXOFF, {.input = IXON}}};
    agree(
        flows, [&port](FlowType flow) { return port.setFlowControl(flow); },
        u"does not do this flow control"_s);
}

void TestPosixQextSerialPort::a_rate_is_in_force_when_the_driver_is_within_2_percent_of_it()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    const QScopedValueRollback driver(driverSettings, std::optional(DriverSettings()));
    for (const unsigned rate : {56448U, 57600U, 58752U}) {
        driverSettings->rate = rate;
        QVERIFY2(port.setBaudRate(BAUD57600), qPrintable(port.errorString()));
    }
    for (const unsigned rate : {56447U, 58753U}) {
        driverSettings->rate = rate;
        QVERIFY(!port.setBaudRate(BAUD57600));
        QCOMPARE(
            port.errorString(),
            u"%1 runs at %2 baud instead of 57600. Choose another rate."_s.arg(far.node).arg(rate));
    }
}

void TestPosixQextSerialPort::settings_that_the_port_drops_at_open_are_named()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.DataBits = DATA_7, .Parity = PAR_EVEN});
    QCOMPARE(port.errorString(), QString());
    QVERIFY(port.open(QIODevice::ReadWrite));
    QVERIFY2(port.errorString().contains(u"7 data bits"), qPrintable(port.errorString()));
    QVERIFY2(port.errorString().contains(u"parity"), qPrintable(port.errorString()));
    // What the port does take can still be set.
    QVERIFY2(port.setBaudRate(BAUD115200), qPrintable(port.errorString()));
    QVERIFY2(port.setStopBits(STOP_2), qPrintable(port.errorString()));
}

void TestPosixQextSerialPort::stop_bits_and_flow_control_reach_the_port()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QVERIFY(!(far.settings().c_cflag & tcflag_t(CSTOPB | CRTSCTS)));
    QVERIFY(!(far.settings().c_iflag & IXON));
    QVERIFY(port.setStopBits(STOP_2));
    QVERIFY(far.settings().c_cflag & CSTOPB);
    QVERIFY(port.setStopBits(STOP_1));
    QVERIFY(!(far.settings().c_cflag & CSTOPB));
    QVERIFY(port.setFlowControl(FLOW_HARDWARE));
    QVERIFY(far.settings().c_cflag & CRTSCTS);
    QVERIFY(port.setFlowControl(FLOW_XONXOFF));
    QVERIFY(!(far.settings().c_cflag & CRTSCTS));
    QVERIFY(far.settings().c_iflag & IXON);
    QVERIFY(port.setFlowControl(FLOW_OFF));
    QVERIFY(!(far.settings().c_iflag & IXON));
}

void TestPosixQextSerialPort::settings_of_no_meaning_leave_the_defaults()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BaudRateType(99),
                                         .DataBits = DataBitsType(-7),
                                         .Parity = ParityType(1000),
                                         .StopBits = STOP_1_5,
                                         .FlowControl = FlowType(3),
                                         .Timeout_Millisec = -1});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(int(far.settings().c_ospeed), 9600);
    QCOMPARE(far.settings().c_cflag & tcflag_t(CSIZE | PARENB | CSTOPB | CRTSCTS), tcflag_t(CS8));
}

void TestPosixQextSerialPort::an_absent_port_is_refused_with_a_reason_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("default") << u"COM1"_s << u"There is no serial port /dev/COM1."_s;
    QTest::newRow("absolute") << u"/nowhere/ttyS0"_s << u"no serial port /nowhere/ttyS0"_s;
    QTest::newRow("empty") << QString() << u"No serial port is chosen."_s;
    QTest::newRow("file") << u"/etc/passwd"_s << u"/etc/passwd is not a serial port."_s;
    QTest::newRow("directory") << u"/dev/pts"_s << u"/dev/pts cannot be opened"_s;
}

void TestPosixQextSerialPort::an_absent_port_is_refused_with_a_reason()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    Posix_QextSerialPort port(name, {});
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY(!port.isOpen());
    QVERIFY2(port.errorString().contains(reason), qPrintable(port.errorString()));
}

void TestPosixQextSerialPort::a_port_open_elsewhere_is_refused_with_a_reason()
{
    FarEnd far;
    Posix_QextSerialPort first(far.node, {});
    QVERIFY(first.open(QIODevice::ReadWrite));
    Posix_QextSerialPort second(far.node, {});
    QVERIFY(!second.open(QIODevice::ReadWrite));
    QVERIFY2(second.errorString().contains(far.node +
                                           u" is in use by tst_posix_qexts (process %1)."_s.arg(
                                               QCoreApplication::applicationPid())),
             qPrintable(second.errorString()));
    QVERIFY(second.isInUse());
    // Who waits for it and tries again fills no log.
    QTest::failOnWarning(QRegularExpression(u"is in use"_s));
    QVERIFY(!second.open(QIODevice::ReadWrite));
    first.close();
    QVERIFY2(second.open(QIODevice::ReadWrite), qPrintable(second.errorString()));
    QCOMPARE(second.errorString(), QString());
    QVERIFY(!second.isInUse());
}

void TestPosixQextSerialPort::a_port_of_another_user_is_refused_with_a_reason_data()
{
    QTest::addColumn<uid_t>("owner");
    QTest::addColumn<gid_t>("group");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("reason"); // %1: the port
    constexpr uid_t Root = 0;
    constexpr uid_t Daemon = 1;
    constexpr gid_t Dialout = 20;
    const QString refused = u"This user may not open the serial port %1"_s;
    const QString join = refused + u". Join the group dialout, then log in again."_s;
    const QString ask = u" Ask who looks after this machine for access."_s;
    const QString ofRoot = refused + u": it is for its owner root alone."_s + ask;
    const QString ofDaemon = refused + u": it is for its owner daemon alone."_s + ask;
    const QString notSetUp =
        refused + u": it belongs to root alone. The device manager (udev) has usually not set up "
                  "such a port. Plug its adapter in again, run \"sudo udevadm trigger\" or restart "
                  "this machine."_s;
    QTest::newRow("a group may") << Root << Dialout << 0660 << join;
    QTest::newRow("the owner may") << Root << Dialout << 0600 << ofRoot;
    QTest::newRow("the group may read only") << Root << Dialout << 0640 << ofRoot;
    QTest::newRow("the group may write only") << Root << Dialout << 0620 << ofRoot;
    QTest::newRow("as the kernel makes it") << Root << gid_t(0) << 0600 << notSetUp;
    QTest::newRow("the group root may") << Root << gid_t(0) << 0660 << notSetUp;
    QTest::newRow("a user and the group root may") << Daemon << gid_t(0) << 0660 << ofDaemon;
}

void TestPosixQextSerialPort::a_port_of_another_user_is_refused_with_a_reason()
{
    QFETCH(const uid_t, owner);
    QFETCH(const gid_t, group);
    QFETCH(const int, mode);
    QFETCH(const QString, reason);
    if (geteuid() != 0)
        QFAIL("needs root, to make a port that this user may not open");
    FarEnd far;
    const QByteArray node = far.node.toLocal8Bit();
    QCOMPARE(chown(node.constData(), owner, group), 0);
    QCOMPARE(chmod(node.constData(), mode_t(mode)), 0);
    // The test itself may open everything as root; for this one attempt it may not.
    std::array<gid_t, 128> groups{};
    const int groupCount = getgroups(int(groups.size()), groups.data());
    QVERIFY(groupCount >= 0);
    const gid_t ownGroup = getegid();
    QCOMPARE(setgroups(0, nullptr), 0);
    QCOMPARE(setegid(65534), 0);
    QCOMPARE(seteuid(65534), 0);
    Posix_QextSerialPort port(far.node, {});
    const bool opened = port.open(QIODevice::ReadWrite);
    const QString said = port.errorString();
    QCOMPARE(seteuid(0), 0);
    QCOMPARE(setegid(ownGroup), 0);
    QCOMPARE(setgroups(size_t(groupCount), groups.data()), 0);
    QVERIFY(!opened);
    QCOMPARE(said, reason.arg(far.node));
}

void TestPosixQextSerialPort::a_port_that_does_not_open_is_left_to_others()
{
    Posix_QextSerialPort port(u"/dev/full"_s, {});
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY2(port.errorString().contains(u"is not a serial port"), qPrintable(port.errorString()));
    FileDescriptor lock;
    QVERIFY(devicelock::takeAt(u"/dev/full"_s, lock) == devicelock::Outcome::Taken);
}

void TestPosixQextSerialPort::a_second_open_is_refused_and_changes_nothing()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    port.setPortName(u"COM1"_s);
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY(port.errorString().contains(u"is open already"));
    QVERIFY(port.isOpen());
    QCOMPARE(write(port, "still"_ba), 5);
    QCOMPARE(far.take(5), "still"_ba);
    port.close();
    QVERIFY(!port.open(QIODevice::ReadWrite));
    QVERIFY(port.errorString().contains(u"/dev/COM1"));
}

void TestPosixQextSerialPort::a_closed_port_takes_and_gives_nothing()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QCOMPARE(read(port, 1), "failed"_ba);
    QVERIFY(port.errorString().contains(u"not open"));
    QCOMPARE(write(port, "x"_ba), -1);
    QVERIFY(port.open(QIODevice::ReadWrite));
    far.give("abc"_ba);
    QTRY_COMPARE(port.size(), 3);
    port.close();
    QCOMPARE(port.size(), 0);
    QCOMPARE(write(port, "x"_ba), -1);
    QVERIFY(port.errorString().contains(u"not open"));
    QCOMPARE(read(port, 1), "failed"_ba);
    QCOMPARE(far.waiting(), 0);
}

void TestPosixQextSerialPort::a_hang_up_closes_once_and_rests()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    bool openWhenTold = true;
    connect(&port, &Posix_QextSerialPort::hangUp, this, [&] { openWhenTold = port.isOpen(); });
    far.fd = {};
    QVERIFY(hungUp.wait(2000));
    QVERIFY(!openWhenTold);
    const auto before = processorTime();
    QTest::qWait(300);
    const auto spent = processorTime() - before;
    QVERIFY2(spent < 100ms, QByteArray::number(qint64(spent.count())));
    QCOMPARE(hungUp.count(), 1);
    QVERIFY(!port.isOpen());
    QVERIFY2(port.errorString().contains(u"is gone"), qPrintable(port.errorString()));
    QCOMPARE(write(port, "x"_ba), -1);
}

void TestPosixQextSerialPort::a_hang_up_is_told_at_once_to_who_asks()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    port.lookForHangUp();
    QVERIFY(port.open(QIODevice::ReadWrite));
    port.lookForHangUp();
    QCOMPARE(hungUp.count(), 0);
    far.fd = {};
    port.lookForHangUp();
    QCOMPARE(hungUp.count(), 1);
    QVERIFY(!port.isOpen());
    QTest::qWait(50);
    QCOMPARE(hungUp.count(), 1);
}

void TestPosixQextSerialPort::a_hang_up_seen_while_writing_closes_once()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    far.fd = {};
    // Before the event loop could tell.
    write(port, "x"_ba);
    QCOMPARE(write(port, "y"_ba), -1);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!port.setBaudRate(BAUD115200));
    QVERIFY2(clock.elapsed() < 500, QByteArray::number(clock.elapsed()));
    QTRY_COMPARE(hungUp.count(), 1);
    QTest::qWait(50);
    QCOMPARE(hungUp.count(), 1);
    QVERIFY(!port.isOpen());
}

void TestPosixQextSerialPort::a_port_reopened_before_its_hang_up_is_told_stays_open()
{
    FarEnd lost;
    FarEnd fresh;
    Posix_QextSerialPort port(lost.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    lost.fd = {};
    write(port, "x"_ba);
    port.close();
    port.setPortName(fresh.node);
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    QTest::qWait(100);
    QCOMPARE(hungUp.count(), 0);
    QVERIFY(port.isOpen());
    QCOMPARE(write(port, "fresh"_ba), 5);
    QCOMPARE(fresh.take(5), "fresh"_ba);
}

void TestPosixQextSerialPort::a_port_reopened_after_a_hang_up_owes_nothing_to_the_lost_line()
{
    FarEnd lost;
    FarEnd fresh;
    Posix_QextSerialPort port(lost.node, {});
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(write(port, QByteArray(1920, 'x')), 1920); // two seconds at 9600 baud
    lost.fd = {};
    port.lookForHangUp();
    QVERIFY(!port.isOpen());
    port.setPortName(fresh.node);
    QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
    QElapsedTimer clock;
    clock.start();
    QVERIFY2(port.setBaudRate(BAUD57600), qPrintable(port.errorString()));
    QVERIFY2(clock.elapsed() < 1000, QByteArray::number(clock.elapsed()));
}

void TestPosixQextSerialPort::a_port_opens_again_after_a_hang_up()
{
    FarEnd far;
    Posix_QextSerialPort port(far.node, {.BaudRate = BAUD19200});
    QSignalSpy hungUp(&port, &Posix_QextSerialPort::hangUp);
    for (int times = 1; times <= 3; times++) {
        port.setPortName(far.node);
        QVERIFY2(port.open(QIODevice::ReadWrite), qPrintable(port.errorString()));
        QCOMPARE(int(far.settings().c_ospeed), 19200);
        far.give("back"_ba);
        QTRY_COMPARE(port.size(), 4);
        QCOMPARE(read(port, 4), "back"_ba);
        far.fd = {};
        QTRY_COMPARE(hungUp.count(), times);
        far = FarEnd();
    }
}

QTEST_GUILESS_MAIN(TestPosixQextSerialPort)
#include "tst_posix_qextserialport.moc"
