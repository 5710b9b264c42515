// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/usbdevice.h"
#include "tests/support/frames.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <sys/socket.h>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::FaultPlan;
using sim::Profile;

namespace {

FaultPlan plan(const QString &text)
{
    QString problem;
    const auto parsed = FaultPlan::parse(text, u"test"_s, &problem);
    if (!parsed)
        qFatal("%s", qPrintable(problem));
    return *parsed;
}

// A frame's 63 bytes behind the report id, as SET_REPORT carries them.
QByteArray outputReport(const char *bytes)
{
    const QByteArray report = QByteArray::fromHex("FC") + QByteArray::fromHex(bytes);
    return report + QByteArray(64 - report.size(), '\0');
}

} // namespace

// The other end of the device's socket: what the kernel's host controller would say and hear.
class Host
{
public:
    explicit Host(const FaultPlan &faults = {}, Profile profile = Profile())
        : frame(
              std::move(profile), faults, [] { return 0ms; }, true)
        , log([] { return 0ms; })
    {
        int ends[2] = {-1, -1};
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            qFatal("no socket pair");
        socket = FileDescriptor(ends[0]);
        device = std::make_unique<sim::UsbDevice>(frame, log, FileDescriptor(ends[1]));
        QObject::connect(device.get(), &sim::UsbDevice::logged, device.get(),
                         [this](const QStringList &more) { lines += more; });
    }

    void say(const QByteArray &bytes)
    {
        QCOMPARE(::send(socket.get(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL),
                 ssize_t(bytes.size()));
    }

    void hang_up() { socket = FileDescriptor(); }

    // A control transfer; the eight bytes of its setup packet and the length that it ends with.
    void submit(const char *sequence, const char *setup, const QByteArray &out = {})
    {
        const QByteArray packet = QByteArray::fromHex(setup);
        const bool in = (packet[0] & 0x80) != 0;
        const QByteArray length = out.isEmpty()
                                      ? QByteArray("\0\0", 2) + packet.mid(7, 1) + packet.mid(6, 1)
                                      : QByteArray("\0\0\0", 3) + char(out.size());
        say(QByteArray::fromHex("00000001") + QByteArray::fromHex(sequence) +
            QByteArray::fromHex("00010002") + QByteArray::fromHex(in ? "00000001" : "00000000") +
            QByteArray::fromHex("00000000") + QByteArray::fromHex("00000200") + length +
            QByteArray::fromHex("00000000 00000000 00000000") + packet + out);
    }

    // Everything that the device has said by now, or says within the time.
    QByteArray hear(qsizetype atLeast, int ms = 5000)
    {
        QElapsedTimer timer;
        timer.start();
        QByteArray heard;
        do {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            std::array<char, 4096> chunk{};
            const ssize_t count = ::recv(socket.get(), chunk.data(), chunk.size(), MSG_DONTWAIT);
            if (count > 0)
                heard.append(chunk.data(), count);
        } while (heard.size() < atLeast && timer.elapsed() < ms);
        return heard;
    }

    // The status and the data of the next answer to a submitted transfer.
    QByteArray answer(int ms = 5000)
    {
        const QByteArray heard = hear(48, ms);
        return heard.isEmpty() ? QByteArray("nothing")
                               : heard.mid(20, 4).toHex() + ' ' + heard.mid(48).toHex(' ');
    }

    sim::FaultyFrame frame;
    FrameLog log;
    QStringList lines;
    FileDescriptor socket;
    std::unique_ptr<sim::UsbDevice> device;
};

namespace {

// Answers begin with the status: 0, -EPIPE for a stall, -EPROTO for a device that is gone.
constexpr auto Stall = "ffffffe0 ";
constexpr auto Absent = "ffffffb9 ";
constexpr auto Fine = "00000000 ";

constexpr auto SetReport = "21 09 FC 02 00 00 40 00";
constexpr auto GetReport = "A1 01 FC 01 00 00 40 00";

} // namespace

class TestUsbDevice : public QObject
{
    Q_OBJECT

private slots:
    void a_submitted_transfer_is_answered_byte_by_byte();
    void a_host_asks_what_the_device_is_data();
    void a_host_asks_what_the_device_is();
    void a_descriptor_is_cut_to_what_the_host_has_room_for();
    void the_configuration_is_what_the_host_set();
    void ids_come_from_the_profile();
    void a_command_goes_out_and_its_reply_comes_in();
    void a_report_of_another_kind_or_id_stalls_data();
    void a_report_of_another_kind_or_id_stalls();
    void messages_may_come_in_pieces_and_in_heaps();

    void the_interrupt_endpoint_waits_until_it_is_unlinked();
    void unlinking_what_was_answered_changes_nothing();
    void another_endpoint_stalls();
    void nonsense_from_the_host_ends_the_device_data();
    void nonsense_from_the_host_ends_the_device();
    void a_host_that_hangs_up_ends_the_device();

    void a_stall_is_answered_after_its_time();
    void a_stalled_transfer_can_be_unlinked();
    void a_recording_answers_in_place_of_the_firmware();
    void a_late_transfer_comes_late();
    void a_late_transfer_that_was_unlinked_does_not_happen();
    void a_torn_report_ends_in_zeros();
    void a_repeated_command_arrives_twice();
    void a_silent_device_loses_commands();
    void an_unplug_by_plan_fails_every_transfer_and_tells();
    void hanging_up_fails_control_transfers_under_way();
    void hanging_up_waits_for_the_next_transfer_of_a_host_that_polls();
    void hanging_up_on_a_silent_host_takes_a_moment_only();
    void frames_are_logged_both_ways();
};

void TestUsbDevice::a_submitted_transfer_is_answered_byte_by_byte()
{
    Host host;
    // GET_STATUS of the device: submit, number 9, IN, endpoint 0, two bytes.
    host.say(QByteArray::fromHex("00000001 00000009 00010002 00000001 00000000"
                                 "00000200 00000002 00000000 00000000 00000000"
                                 "80 00 0000 0000 0200"));
    QCOMPARE(host.hear(50).toHex(),
             QByteArray("00000003000000090000000000000000000000000000000000000002"
                        "000000000000000000000000"
                        "0000000000000000"
                        "0000"));
}

void TestUsbDevice::a_host_asks_what_the_device_is_data()
{
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<QByteArray>("answer");

    const auto row = [](const char *name, const char *setup, const QByteArray &answer) {
        QTest::newRow(name) << QByteArray(setup) << answer;
    };
    row("device descriptor", "80 06 00 01 00 00 12 00",
        QByteArray(Fine) + "12 01 00 02 00 00 00 40 56 51 01 00 10 30 01 02 00 01");
    row("configuration", "80 06 00 02 00 00 FF 00",
        QByteArray(Fine) + "09 02 22 00 01 01 00 80 32 "
                           "09 04 00 00 01 03 00 00 00 "
                           "09 21 11 01 00 01 22 1d 00 "
                           "07 05 81 03 40 00 0a");
    row("second configuration", "80 06 01 02 00 00 FF 00", Stall);
    row("languages", "80 06 00 03 00 00 FF 00", QByteArray(Fine) + "04 03 09 04");
    row("manufacturer", "80 06 01 03 09 04 FF 00",
        QByteArray(Fine) + "10 03 51 00 75 00 6f 00 72 00 76 00 65 00 6c 00");
    row("product", "80 06 02 03 09 04 10 00",
        QByteArray(Fine) + "2c 03 53 00 69 00 6d 00 75 00 6c 00 61 00 74 00");
    row("string that is not there", "80 06 03 03 09 04 FF 00", Stall);
    row("device qualifier", "80 06 00 06 00 00 0A 00", Stall);
    row("hid descriptor", "81 06 00 21 00 00 09 00",
        QByteArray(Fine) + "09 21 11 01 00 01 22 1d 00");
    row("report descriptor", "81 06 00 22 00 00 FF 00",
        QByteArray(Fine) + "06 00 ff 09 01 a1 01 85 fc 15 00 26 ff 00 75 08 "
                           "95 3f 09 01 81 02 95 3f 09 01 91 02 c0");
    row("status of the interface", "81 00 00 00 00 00 02 00", QByteArray(Fine) + "00 00");
    row("status of the endpoint", "82 00 00 00 81 00 02 00", QByteArray(Fine) + "00 00");
    row("interface setting", "81 0A 00 00 00 00 01 00", QByteArray(Fine) + "00");
    row("first setting", "01 0B 00 00 00 00 00 00", Fine);
    row("second setting", "01 0B 01 00 00 00 00 00", Stall);
    row("address", "00 05 05 00 00 00 00 00", Fine);
    row("clear halt", "02 01 00 00 81 00 00 00", Fine);
    row("remote wakeup", "00 03 01 00 00 00 00 00", Stall);
    row("set idle", "21 0A 00 05 00 00 00 00", Fine);
    row("get idle", "A1 02 00 00 00 00 01 00", QByteArray(Fine) + "00");
    row("get protocol", "A1 03 00 00 00 00 01 00", Stall);
    row("vendor request", "C0 01 00 00 00 00 01 00", Stall);
    row("unknown standard request", "80 0C 00 00 00 00 02 00", Stall);
}

void TestUsbDevice::a_host_asks_what_the_device_is()
{
    QFETCH(QByteArray, setup);
    QFETCH(QByteArray, answer);

    Host host;
    host.submit("00000001", setup.constData());
    QCOMPARE(host.answer(), answer);
    QCOMPARE(host.frame.transfers(), 0U);
}

void TestUsbDevice::a_descriptor_is_cut_to_what_the_host_has_room_for()
{
    Host host;
    host.submit("00000001", "80 06 00 01 00 00 08 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "12 01 00 02 00 00 00 40");
    host.submit("00000002", "80 06 00 02 00 00 09 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "09 02 22 00 01 01 00 80 32");
}

void TestUsbDevice::the_configuration_is_what_the_host_set()
{
    Host host;
    host.submit("00000001", "80 08 00 00 00 00 01 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "00");
    host.submit("00000002", "00 09 01 00 00 00 00 00");
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("00000003", "80 08 00 00 00 00 01 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "01");
    host.submit("00000004", "00 09 02 00 00 00 00 00");
    QCOMPARE(host.answer(), QByteArray(Stall));
    // A halted endpoint says so until the halt is cleared; idle keeps its rate.
    host.submit("00000005", "02 03 00 00 81 00 00 00");
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("00000006", "82 00 00 00 81 00 02 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "01 00");
    host.submit("00000007", "02 01 00 00 81 00 00 00");
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("00000008", "82 00 00 00 81 00 02 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "00 00");
    host.submit("00000009", "21 0A 00 7D 00 00 00 00");
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("0000000A", "A1 02 00 00 00 00 01 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "7d");
}

void TestUsbDevice::ids_come_from_the_profile()
{
    Profile profile;
    profile.release = 0x2FFF;
    profile.product = 0xBEEF;
    Host host({}, profile);
    host.submit("00000001", "80 06 00 01 00 00 12 00");
    QCOMPARE(host.answer(),
             QByteArray(Fine) + "12 01 00 02 00 00 00 40 56 51 ef be ff 2f 01 02 00 01");
}

void TestUsbDevice::a_command_goes_out_and_its_reply_comes_in()
{
    Host host;
    host.submit("00000001", SetReport, outputReport("A5 00"));
    // The answer tells that all 64 bytes were taken.
    QCOMPARE(host.hear(48).mid(0, 28).toHex(),
             QByteArray("00000003000000010000000000000000000000000000000000000040"));
    host.submit("00000002", GetReport);
    const QByteArray heard = host.hear(112);
    QCOMPARE(heard.size(), 112);
    QCOMPARE(heard.mid(20, 8).toHex(), QByteArray("0000000000000040"));
    QCOMPARE(heard.mid(48, 10).toHex(' '), QByteArray("fc a5 80 05 00 60 00 36 00 00"));
    QCOMPARE(host.frame.transfers(), 2U);
}

void TestUsbDevice::a_report_of_another_kind_or_id_stalls_data()
{
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<QByteArray>("out");

    QTest::newRow("get output report") << QByteArray("A1 01 FC 02 00 00 40 00") << QByteArray();
    QTest::newRow("get feature report") << QByteArray("A1 01 FC 03 00 00 40 00") << QByteArray();
    QTest::newRow("get input report 3") << QByteArray("A1 01 03 01 00 00 40 00") << QByteArray();
    QTest::newRow("set input report")
        << QByteArray("21 09 FC 01 00 00 40 00") << outputReport("A5 00");
    QTest::newRow("set output report 3")
        << QByteArray("21 09 03 02 00 00 40 00") << outputReport("A5 00");
    QTest::newRow("set without report id")
        << QByteArray(SetReport) << outputReport("A5 00").mid(1) + '\0';
    QTest::newRow("set nothing") << QByteArray("21 09 FC 02 00 00 00 00") << QByteArray();
}

void TestUsbDevice::a_report_of_another_kind_or_id_stalls()
{
    QFETCH(QByteArray, setup);
    QFETCH(QByteArray, out);

    Host host;
    host.submit("00000001", setup.constData(), out);
    QCOMPARE(host.answer(), QByteArray(Stall));
    QCOMPARE(host.frame.transfers(), 0U);
}

void TestUsbDevice::messages_may_come_in_pieces_and_in_heaps()
{
    Host host;
    const QByteArray set = QByteArray::fromHex("00000001 00000001 00010002 00000000 00000000"
                                               "00000000 00000040 00000000 00000000 00000000"
                                               "21 09 FC 02 00 00 40 00") +
                           outputReport("A7 02");
    const QByteArray get = QByteArray::fromHex("00000001 00000002 00010002 00000001 00000000"
                                               "00000200 00000040 00000000 00000000 00000000"
                                               "A1 01 FC 01 00 00 40 00");
    host.say(set.left(3));
    QVERIFY(host.hear(1, 30).isEmpty());
    host.say(set.mid(3, 57));
    QVERIFY(host.hear(1, 30).isEmpty());
    host.say(set.mid(60) + get + get);
    const QByteArray heard = host.hear(48 + 2 * 112);
    QCOMPARE(heard.size(), 48 + 2 * 112);
    QCOMPARE(heard.mid(96, 6).toHex(' '), QByteArray("fc a7 81 02 00 00"));
    QCOMPARE(heard.mid(208, 6).toHex(' '), QByteArray("fc a7 82 02 00 00"));
}

void TestUsbDevice::the_interrupt_endpoint_waits_until_it_is_unlinked()
{
    Host host;
    // Submit number 7 on endpoint 1, IN, 64 bytes.
    host.say(QByteArray::fromHex("00000001 00000007 00010002 00000001 00000001"
                                 "00000200 00000040 00000000 00000000 0000000A"
                                 "0000000000000000"));
    QVERIFY(host.hear(1, 100).isEmpty());
    // Unlink number 8 takes back number 7: answered by -ECONNRESET.
    host.say(QByteArray::fromHex("00000002 00000008 00010002 00000000 00000000"
                                 "00000007 00000000 00000000 00000000 00000000"
                                 "0000000000000000"));
    QCOMPARE(host.hear(48).toHex(), QByteArray("0000000400000008000000000000000000000000ffffff98"
                                               "000000000000000000000000000000000000000000000000"));
}

void TestUsbDevice::unlinking_what_was_answered_changes_nothing()
{
    Host host;
    host.submit("00000007", "80 00 00 00 00 00 02 00");
    QCOMPARE(host.answer(), QByteArray(Fine) + "00 00");
    host.say(QByteArray::fromHex("00000002 00000008 00010002 00000000 00000000"
                                 "00000007 00000000 00000000 00000000 00000000"
                                 "0000000000000000"));
    QCOMPARE(host.hear(48).mid(0, 24).toHex(),
             QByteArray("000000040000000800000000000000000000000000000000"));
}

void TestUsbDevice::another_endpoint_stalls()
{
    Host host;
    host.say(QByteArray::fromHex("00000001 00000007 00010002 00000001 00000002"
                                 "00000200 00000040 00000000 00000000 0000000A"
                                 "0000000000000000"));
    QCOMPARE(host.answer(), QByteArray(Stall));
    host.say(QByteArray::fromHex("00000001 00000008 00010002 00000000 00000001"
                                 "00000200 00000001 00000000 00000000 0000000A"
                                 "0000000000000000 EE"));
    QCOMPARE(host.answer(), QByteArray(Stall));
}

void TestUsbDevice::nonsense_from_the_host_ends_the_device_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("reason");

    QTest::newRow("command 5") << QByteArray::fromHex("00000005") + QByteArray(44, '\0')
                               << u"the host sent 5, which is no URB message"_s;
    QTest::newRow("transfer too large")
        << QByteArray::fromHex("00000001 00000007 00010002 00000000 00000000"
                               "00000200 00010001 00000000 00000000 00000000"
                               "21 09 FC 02 00 00 40 00")
        << u"the host sent a transfer of 65537 bytes"_s;
    QTest::newRow("negative length")
        << QByteArray::fromHex("00000001 00000007 00010002 00000000 00000000"
                               "00000200 FFFFFFFF 00000000 00000000 00000000"
                               "21 09 FC 02 00 00 40 00")
        << u"the host sent a transfer of 4294967295 bytes"_s;
}

void TestUsbDevice::nonsense_from_the_host_ends_the_device()
{
    QFETCH(QByteArray, message);
    QFETCH(QString, reason);

    Host host;
    QSignalSpy lost(host.device.get(), &sim::UsbDevice::lost);
    host.say(message);
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(lost[0][0].toString(), reason);
    // It stays silent after that.
    host.submit("00000009", "80 00 00 00 00 00 02 00");
    QVERIFY(host.hear(1, 50).isEmpty());
    QCOMPARE(lost.size(), 1);
}

void TestUsbDevice::a_host_that_hangs_up_ends_the_device()
{
    Host host;
    QSignalSpy lost(host.device.get(), &sim::UsbDevice::lost);
    host.hang_up();
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(lost[0][0].toString(), u"the host let go of the device"_s);
}

void TestUsbDevice::a_stall_is_answered_after_its_time()
{
    Host host(plan(u"at 1 stall 120ms"_s));
    QElapsedTimer timer;
    timer.start();
    host.submit("00000001", SetReport, outputReport("A7 02"));
    QCOMPARE(host.answer(), QByteArray(Stall));
    QVERIFY(timer.elapsed() >= 119);
    QVERIFY(!host.frame.firmware().hasReply());
}

void TestUsbDevice::a_recording_answers_in_place_of_the_firmware()
{
    using capture::Kind;
    const auto record = [](Kind kind, const QByteArray &hex) {
        capture::Record made;
        made.kind = kind;
        made.over = capture::Over::Usb;
        const QByteArray bytes = QByteArray::fromHex(hex);
        std::copy(bytes.begin(), bytes.end(), made.frame.begin());
        return made;
    };
    Host host;
    host.frame.replay(
        sim::Replay({record(Kind::ToFrame, "00 A7 02"),
                     record(Kind::FromFrame, "FC A7 82 02 00 03"), record(Kind::LinkEnded, "")},
                    [] { return 0ms; }));
    host.submit("00000001", SetReport, outputReport("A5 00"));
    QCOMPARE(host.answer(), QByteArray("00000000 "));
    QCOMPARE(
        host.lines.last().trimmed(),
        u"0.000  replay  the host sends what is not in the recording: scan: read light counts"_s);
    host.submit("00000002", GetReport);
    QCOMPARE(host.answer(), "00000000 " + outputReport("").toHex(' '));
    host.submit("00000003", SetReport, outputReport("A7 02"));
    QCOMPARE(host.answer(), QByteArray("00000000 "));
    host.submit("00000004", GetReport);
    QCOMPARE(host.answer(), "00000000 " + outputReport("A7 82 02 00 03").toHex(' '));
    // The device went then, and so it does now.
    QSignalSpy pulled(host.device.get(), &sim::UsbDevice::pulled);
    host.submit("00000005", GetReport);
    QTRY_COMPARE(pulled.size(), 1);
    QVERIFY(!host.frame.plugged());
}

void TestUsbDevice::a_stalled_transfer_can_be_unlinked()
{
    Host host(plan(u"at 1 stall 800ms"_s));
    host.submit("00000005", GetReport);
    QVERIFY(host.hear(1, 20).isEmpty());
    host.say(QByteArray::fromHex("00000002 00000006 00010002 00000000 00000000"
                                 "00000005 00000000 00000000 00000000 00000000"
                                 "0000000000000000"));
    QCOMPARE(host.hear(48).mid(0, 24).toHex(),
             QByteArray("0000000400000006000000000000000000000000ffffff98"));
    // Nothing follows when the stall's time is up.
    QVERIFY(host.hear(1, 1000).isEmpty());
}

void TestUsbDevice::a_late_transfer_comes_late()
{
    Host host(plan(u"at 2 late 80ms"_s));
    host.submit("00000001", SetReport, outputReport("A7 02"));
    QCOMPARE(host.answer(), QByteArray(Fine));
    QElapsedTimer timer;
    timer.start();
    host.submit("00000002", GetReport);
    QVERIFY(host.answer().startsWith("00000000 fc a7 81 02 00 00"));
    QVERIFY(timer.elapsed() >= 79);
}

void TestUsbDevice::a_late_transfer_that_was_unlinked_does_not_happen()
{
    Host host(plan(u"at 1 late 800ms"_s));
    host.submit("00000005", SetReport, outputReport("A7 02"));
    QVERIFY(host.hear(1, 10).isEmpty());
    host.say(QByteArray::fromHex("00000002 00000006 00010002 00000000 00000000"
                                 "00000005 00000000 00000000 00000000 00000000"
                                 "0000000000000000"));
    QCOMPARE(host.hear(48).size(), 48);
    QVERIFY(host.hear(1, 1000).isEmpty());
    QVERIFY(!host.frame.firmware().hasReply());
}

void TestUsbDevice::a_torn_report_ends_in_zeros()
{
    Profile profile;
    profile.noise = 0;
    Host host(plan(u"at 2 torn"_s), profile);
    host.submit("00000001", SetReport, outputReport("A5 01"));
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("00000002", GetReport);
    const QByteArray report = host.hear(112).mid(48);
    QCOMPARE(report.size(), 64);
    QVERIFY(report.left(32).toHex().startsWith("fca5813a000000c3c4"));
    QVERIFY(report[31] != '\0');
    QCOMPARE(report.mid(32), QByteArray(32, '\0'));
}

void TestUsbDevice::a_repeated_command_arrives_twice()
{
    Host host(plan(u"at 1 repeat"_s));
    host.submit("00000001", SetReport, outputReport("77 00"));
    QCOMPARE(host.answer(), QByteArray(Fine));
    QCOMPARE(host.frame.firmware().unknownCommands(), 2);
}

void TestUsbDevice::a_silent_device_loses_commands()
{
    Host host(plan(u"at 1 silent 2"_s));
    host.submit("00000001", SetReport, outputReport("A7 00 02 00 01"));
    QCOMPARE(host.answer(), QByteArray(Fine));
    host.submit("00000002", GetReport);
    QCOMPARE(host.hear(112).mid(48), QByteArray::fromHex("FC") + QByteArray(63, '\0'));
    QCOMPARE(host.frame.firmware().rotation(), 0);
}

void TestUsbDevice::an_unplug_by_plan_fails_every_transfer_and_tells()
{
    Host host(plan(u"at 1 unplug back 3s"_s));
    QSignalSpy pulled(host.device.get(), &sim::UsbDevice::pulled);
    QSignalSpy lost(host.device.get(), &sim::UsbDevice::lost);
    host.submit("00000001", SetReport, outputReport("A7 02"));
    // -EPROTO: nobody is there.
    QCOMPARE(host.answer(), QByteArray(Absent));
    QCOMPARE(pulled.size(), 1);
    QCOMPARE(lost.size(), 0);
    QVERIFY(!host.frame.plugged());
    QCOMPARE(host.frame.untilBack(), std::optional(3000ms));
    host.submit("00000002", GetReport);
    QCOMPARE(host.answer(), QByteArray(Absent));
    host.submit("00000003", "80 00 00 00 00 00 02 00");
    QCOMPARE(host.answer(), QByteArray(Absent));
    QCOMPARE(pulled.size(), 1);
    QCOMPARE(host.frame.transfers(), 1U);
    QVERIFY(!host.frame.firmware().hasReply());
}

void TestUsbDevice::hanging_up_fails_control_transfers_under_way()
{
    Host host(plan(u"at 1 stall 60s"_s));
    // Number 7 waits on the interrupt endpoint, number 8 hangs.
    host.say(QByteArray::fromHex("00000001 00000007 00010002 00000001 00000001"
                                 "00000200 00000040 00000000 00000000 0000000A"
                                 "0000000000000000"));
    host.submit("00000008", GetReport);
    QVERIFY(host.hear(1, 50).isEmpty());
    host.device->hangUp();
    const QByteArray heard = host.hear(96, 500);
    QCOMPARE(heard.size(), 48);
    QCOMPARE(heard.left(28).toHex(),
             QByteArray("0000000300000008000000000000000000000000ffffffb900000000"));
    QSignalSpy lost(host.device.get(), &sim::UsbDevice::lost);
    host.submit("0000000A", GetReport);
    host.hang_up();
    QTest::qWait(20);
    QCOMPARE(lost.size(), 0);
}

void TestUsbDevice::hanging_up_waits_for_the_next_transfer_of_a_host_that_polls()
{
    Host host;
    std::thread polling([&host] {
        std::this_thread::sleep_for(40ms);
        host.submit("00000008", GetReport);
    });
    host.device->hangUp();
    polling.join();
    QCOMPARE(host.answer(), QByteArray(Absent));
}

void TestUsbDevice::hanging_up_on_a_silent_host_takes_a_moment_only()
{
    Host host;
    QElapsedTimer timer;
    timer.start();
    host.device->hangUp();
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(host.hear(1, 20).isEmpty());
}

void TestUsbDevice::frames_are_logged_both_ways()
{
    Host host(plan(u"at 3 torn"_s));
    host.submit("00000001", SetReport, outputReport("A7 02"));
    host.answer();
    for (const char *number : {"00000002", "00000003", "00000004", "00000005"}) {
        host.submit(number, GetReport);
        host.answer();
    }
    QCOMPARE(host.lines,
             QStringList(
                 {u"     0.000  host > frame  rotation: read  [A7 02 00]"_s,
                  u"     0.000  frame > host  rotation: default is 0 degrees  [A7 81 02 00 00]"_s,
                  u"     0.000  fault  transfer 3 is torn"_s,
                  u"     0.000  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s}));
}

QTEST_GUILESS_MAIN(TestUsbDevice)
#include "tst_usbdevice.moc"
