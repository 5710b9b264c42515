// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/serialsession.h"

#include "device/filedescriptor.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::FaultPlan;
using sim::SerialSession;

namespace {

constexpr int NothingComesMs = 150;

// A program that has the terminal open as its serial port.
class Host
{
public:
    explicit Host(const QString &path)
        : terminal(::open(QFile::encodeName(path).constData(),
                          O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
    {
    }

    bool isValid() const { return terminal.isValid(); }
    void setRate(speed_t rate)
    {
        termios settings{};
        QCOMPARE(::tcgetattr(terminal.get(), &settings), 0);
        QCOMPARE(::cfsetspeed(&settings, rate), 0);
        QCOMPARE(::tcsetattr(terminal.get(), TCSANOW, &settings), 0);
    }
    void send(const char *hex)
    {
        const QByteArray bytes = QByteArray::fromHex(hex);
        QCOMPARE(::write(terminal.get(), bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    // All that has come so far, as hexadecimal text.
    QByteArray received()
    {
        char buf[4096];
        for (ssize_t count = 0; (count = ::read(terminal.get(), buf, sizeof buf)) > 0;)
            all.append(buf, count);
        return all.toHex(' ').toUpper();
    }
    bool hungUp() const
    {
        pollfd waited{terminal.get(), POLLIN, 0};
        return ::poll(&waited, 1, 0) == 1 && (waited.revents & POLLHUP) != 0;
    }

private:
    FileDescriptor terminal;
    QByteArray all;
};

constexpr auto SetRotation2 = "51 56 00 A7 00 02 00 02 00 00";
constexpr auto ReadRotation = "51 56 00 A7 02 00 00 00";
constexpr auto Rotations = "51 56 FC A7 81 02 00 00 00 00 51 56 FC A7 82 02 00 00 00 00";
constexpr auto Rotations2 = "51 56 FC A7 81 02 00 00 00 00 51 56 FC A7 82 02 00 02 00 00";
constexpr auto ReadCounts = "51 56 00 A5 00 00 00 00";
constexpr auto Counts = "51 56 FC A5 80 05 00 60 00 36 00 00 00";

} // namespace

class TestSerialSession : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void a_session_starts_unplugged();
    void a_command_is_obeyed_and_a_question_answered_once();
    void frames_are_found_in_what_comes_data();
    void frames_are_found_in_what_comes();
    void a_frame_may_come_in_pieces();
    void a_scan_fills_the_longest_frame();
    void a_reply_takes_the_time_of_its_bytes();
    void what_is_said_while_nobody_listens_is_lost();
    void a_program_that_comes_later_is_heard();

    void a_command_at_another_rate_is_noise();
    void a_rate_that_comes_near_enough_is_understood();
    void noise_ends_a_frame_that_has_begun();
    void the_baud_command_changes_the_rate_at_once();
    void a_number_that_names_no_rate_changes_none();
    void one_of_three_baud_commands_finds_the_frame_data();
    void one_of_three_baud_commands_finds_the_frame();
    void bytes_keep_the_rate_at_which_they_came();
    void a_reply_at_another_rate_than_the_lines_is_lost();
    void the_rate_outlives_an_unplug();

    void a_calibration_whose_check_is_cut_goes_by_the_touches_data();
    void a_calibration_whose_check_is_cut_goes_by_the_touches();
    void a_check_that_comes_whole_is_gone_by();
    void four_touches_in_one_place_are_as_wrong_as_can_be();
    void gestures_arrive_up_to_where_the_line_cuts_them();

    void a_fault_spoils_a_command_data();
    void a_fault_spoils_a_command();
    void a_fault_spoils_a_reply_data();
    void a_fault_spoils_a_reply();
    void a_late_command_keeps_the_next_one_waiting();
    void a_hangup_lasts_until_the_plan_says_so();
    void an_unplug_hangs_up();

    void the_link_leads_to_the_terminal_while_it_is_plugged();
    void a_left_over_link_is_replaced();
    void what_is_no_left_over_link_is_refused_data();
    void what_is_no_left_over_link_is_refused();
    void a_link_that_somebody_replaced_stays();
    void the_state_tells_the_rate();

private:
    void plug(const char *faults = "", const QString &link = {})
    {
        QString problem;
        const auto plan = FaultPlan::parse(QString::fromLatin1(faults), u"test"_s, &problem,
                                           FaultPlan::Link::Serial);
        QVERIFY2(plan, qPrintable(problem));
        session = std::make_unique<SerialSession>(
            sim::Profile(), *plan, [this] { return std::chrono::milliseconds(clock.elapsed()); },
            link);
        connect(session.get(), &SerialSession::logged, this,
                [this](const QStringList &lines) { log += lines; });
        QCOMPARE(session->plug(), QString());
        host = std::make_unique<Host>(session->place());
        QVERIFY(host->isValid());
    }
    bool logHas(const char *words) const
    {
        return log.join(u'\n').contains(QString::fromLatin1(words));
    }
    void touchFour(QPoint first);

    std::unique_ptr<QTemporaryDir> home;
    QElapsedTimer clock;
    std::unique_ptr<SerialSession> session;
    std::unique_ptr<Host> host;
    QStringList log;
};

void TestSerialSession::init()
{
    home = std::make_unique<QTemporaryDir>();
    clock.start();
    log.clear();
}

void TestSerialSession::cleanup()
{
    host.reset();
    session.reset();
}

void TestSerialSession::a_session_starts_unplugged()
{
    SerialSession unplugged(
        {}, {}, [] { return 0ms; }, home->filePath(u"frame"_s));
    QVERIFY(!unplugged.plugged());
    QCOMPARE(unplugged.place(), QString());
    QVERIFY(!unplugged.unplug());
    QVERIFY(!unplugged.touch({1, 1}));
    QVERIFY(QDir(home->path()).isEmpty());
    QCOMPARE(unplugged.rate(), 9600);
}

void TestSerialSession::a_command_is_obeyed_and_a_question_answered_once()
{
    plug();
    host->send(SetRotation2);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations2);
    QTest::qWait(NothingComesMs);
    QCOMPARE(host->received(), Rotations2);
    QVERIFY(logHas("host > frame  rotation: set 180 degrees  [A7 00 02 00 02]"));
    QVERIFY(logHas("frame > host  rotation: now 180 degrees  [A7 82 02 00 02]"));
}

void TestSerialSession::frames_are_found_in_what_comes_data()
{
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray question(ReadRotation);
    QTest::newRow("alone") << question << QByteArray(Rotations);
    QTest::newRow("byte 0 is of no account")
        << QByteArray("51 56 33 A7 02 00 00 00") << QByteArray(Rotations);
    QTest::newRow("behind noise") << "00 FF 56 51 00 " + question << QByteArray(Rotations);
    QTest::newRow("behind another command") << SetRotation2 + question << QByteArray(Rotations2);
    QTest::newRow("behind half a sync pair") << "51 " + question << QByteArray();
    QTest::newRow("behind a frame without its end")
        << "51 56 00 A7 00 02 00 " + question << QByteArray();
    QTest::newRow("the one after that")
        << "51 56 00 A7 00 02 00 " + question + question << QByteArray(Rotations);
    // Byte 3 is FF: no more than 64 bytes are a frame.
    QTest::newRow("behind the longest frame")
        << "51 56 00 77 00 FF " + QByteArray(60, '\x11').toHex() + question
        << QByteArray(Rotations);
}

void TestSerialSession::frames_are_found_in_what_comes()
{
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, answer);
    plug();
    host->send(sent.constData());
    if (answer.isEmpty())
        QTest::qWait(NothingComesMs);
    QTRY_COMPARE(host->received(), answer);
}

void TestSerialSession::a_frame_may_come_in_pieces()
{
    plug();
    for (const char *piece : {"51", "56 00", "A7 02", "00 00"}) {
        host->send(piece);
        QTest::qWait(30);
    }
    QCOMPARE(host->received(), "");
    host->send("00");
    QTRY_COMPARE(host->received(), Rotations);
}

void TestSerialSession::a_scan_fills_the_longest_frame()
{
    plug();
    host->send("51 56 00 A5 01 00 00 00");
    // 96 lights: 55 on the first page, 41 on the second.
    constexpr qsizetype Bytes = (2 + 64) + (2 + 4 + 0x2C + 2);
    QTRY_COMPARE(host->received().size(), Bytes * 3 - 1);
    QVERIFY(host->received().startsWith("51 56 FC A5 81 3A 00 00 00 "));
    QCOMPARE(host->received().mid(66 * 3, 26), "51 56 FC A5 81 2C 00 37 00");
}

void TestSerialSession::a_reply_takes_the_time_of_its_bytes()
{
    plug();
    QElapsedTimer timer;
    timer.start();
    host->send("51 56 00 A5 01 00 00 00");
    QTRY_COMPARE(host->received().size(), 118 * 3 - 1);
    QVERIFY(timer.elapsed() >= 122); // 118 bytes of 10 bits at 9600 a second
}

void TestSerialSession::what_is_said_while_nobody_listens_is_lost()
{
    plug();
    host->send("51 56 00 01 00 00 00 00");
    QTRY_COMPARE(host->received(), "51 56 FC 01 00 00 00 00 51 56 FC 01 01 00 00 00");
    host->send("51 56 00 01 01 00 00 00");
    QTRY_VERIFY(session->state().contains(u"calibration=waiting step=1"_s));
    host.reset();
    QTRY_VERIFY(logHas("nobody has the line open"));
    QVERIFY(session->touch({160, 100}));
    QTRY_VERIFY(logHas("lost: nobody has the line open"));
    host = std::make_unique<Host>(session->place());
    QTest::qWait(NothingComesMs);
    QCOMPARE(host->received(), "");
}

void TestSerialSession::a_program_that_comes_later_is_heard()
{
    plug();
    for (int round = 0; round < 5; ++round) {
        host = std::make_unique<Host>(session->place());
        host->setRate(B9600);
        host->send(ReadRotation);
        QTRY_COMPARE(host->received(), Rotations);
        host.reset();
    }
    QVERIFY(logHas("a program has opened the line"));
}

void TestSerialSession::a_command_at_another_rate_is_noise()
{
    plug();
    host->setRate(B57600);
    host->send(SetRotation2);
    QTRY_VERIFY(logHas("noise: 10 bytes at 57600 baud, listens at 9600"));
    host->setRate(B9600);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
    QVERIFY(session->state().contains(u" transfers=3 "_s)); // one command, two replies
}

void TestSerialSession::a_rate_that_comes_near_enough_is_understood()
{
    plug();
    // 57600, which real lines do not tell from 56000.
    host->send("51 56 00 B1 00 03 00 11 00 00 00");
    QTRY_COMPARE(session->rate(), 57600);
    host->setRate(B115200);
    host->send(ReadRotation);
    QTRY_VERIFY(logHas("noise: 8 bytes at 115200 baud, listens at 57600"));
    host->setRate(B57600);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
}

void TestSerialSession::noise_ends_a_frame_that_has_begun()
{
    plug();
    host->send("51 56 00 A7 00 02 00");
    QTest::qWait(50);
    host->setRate(B19200);
    host->send("02");
    QTRY_VERIFY(logHas("noise: 1 bytes at 19200 baud"));
    host->setRate(B9600);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
}

void TestSerialSession::the_baud_command_changes_the_rate_at_once()
{
    plug();
    host->send("51 56 00 B1 00 03 00 13 00 00 00");
    QTRY_COMPARE(session->rate(), 115200);
    QVERIFY(logHas("listens at 115200 baud"));
    host->send(ReadRotation);
    QTRY_VERIFY(logHas("noise: 8 bytes at 9600 baud, listens at 115200"));
    host->setRate(B115200);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
}

void TestSerialSession::a_number_that_names_no_rate_changes_none()
{
    plug();
    host->send("51 56 00 B1 00 03 00 16 00 00 00");
    host->send("51 56 00 B1 00 03 00 00 C2 01 00"); // 115200 as such
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
    QCOMPARE(session->rate(), 9600);
}

void TestSerialSession::one_of_three_baud_commands_finds_the_frame_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("rateBefore");
    QTest::newRow("9600") << QByteArray("51 56 00 B1 00 03 00 0C 00 00 00") << 9600;
    QTest::newRow("57600") << QByteArray("51 56 00 B1 00 03 00 11 00 00 00") << 57600;
    QTest::newRow("115200") << QByteArray("51 56 00 B1 00 03 00 13 00 00 00") << 115200;
}

void TestSerialSession::one_of_three_baud_commands_finds_the_frame()
{
    QFETCH(QByteArray, before);
    QFETCH(int, rateBefore);
    plug();
    host->send(before.constData());
    QTRY_COMPARE(session->rate(), rateBefore);
    const auto taken = [this] {
        return log.filter(u"noise: 11 bytes"_s).size() + log.filter(u"set code 14"_s).size();
    };
    int sent = 0;
    for (const speed_t rate : {B9600, B57600, B115200}) {
        host->setRate(rate);
        host->send("51 56 00 B1 00 03 00 0E 00 00 00");
        ++sent;
        QTRY_COMPARE(taken(), sent);
    }
    QCOMPARE(log.filter(u"set code 14"_s).size(), 1);
    QCOMPARE(session->rate(), 19200);
}

void TestSerialSession::bytes_keep_the_rate_at_which_they_came()
{
    plug();
    host->send(SetRotation2);
    // No event loop runs here.
    QThread::msleep(100);
    host->setRate(B115200);
    host->send(SetRotation2);
    QTRY_VERIFY(logHas("noise: 10 bytes at 115200 baud"));
    QVERIFY(logHas("rotation: set 180 degrees"));
}

void TestSerialSession::a_reply_at_another_rate_than_the_lines_is_lost()
{
    plug();
    host->send(ReadCounts);
    QThread::msleep(100);
    host->setRate(B115200);
    QTRY_VERIFY(logHas("lost: said at 9600 baud on a line at 115200"));
    QCOMPARE(host->received(), "");
}

void TestSerialSession::the_rate_outlives_an_unplug()
{
    plug();
    host->send("51 56 00 B1 00 03 00 11 00 00 00");
    QTRY_COMPARE(session->rate(), 57600);
    QVERIFY(session->unplug());
    QCOMPARE(session->plug(), QString());
    QCOMPARE(session->rate(), 57600);
    host = std::make_unique<Host>(session->place());
    host->setRate(B57600);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
}

// Answers each step and touches its target on a screen of 1280 x 800; the first touch is given.
void TestSerialSession::touchFour(QPoint first)
{
    host->send("51 56 00 01 00 00 00 00");
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 01 00 00 00"));
    host->send("51 56 00 01 01 00 00 00");
    QTRY_VERIFY(session->state().contains(u"calibration=waiting step=1"_s));
    QVERIFY(session->touch(first));
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 02 00 00 00"));
    host->send("51 56 00 01 02 00 00 00");
    QTRY_VERIFY(session->state().contains(u"calibration=waiting step=2"_s));
    QVERIFY(session->touch({1120, 100}));
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 03 00 00 00"));
    host->send("51 56 00 01 03 00 00 00");
    QTRY_VERIFY(session->state().contains(u"calibration=waiting step=3"_s));
    QVERIFY(session->touch({1120, 700}));
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 04 00 00 00"));
    host->send("51 56 00 01 04 00 00 00");
    QTRY_VERIFY(session->state().contains(u"calibration=waiting step=4"_s));
    QVERIFY(session->touch({160, 700}));
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 05 00 00 00"));
}

void TestSerialSession::a_calibration_whose_check_is_cut_goes_by_the_touches_data()
{
    QTest::addColumn<QPoint>("first");
    QTest::addColumn<QByteArray>("check");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QString>("kept");

    const QByteArray atOrigin("51 56 00 01 05 00 00 00");
    QTest::newRow("at the targets")
        << QPoint(160, 100) << atOrigin << QByteArray("51 56 FC 01 FF 00 00 00")
        << u"kept=1 kept-deviation=0,0 kept-screen=0,0,0,0,0,0 "_s;
    QTest::newRow("128 pixels off")
        << QPoint(288, 100) << atOrigin << QByteArray("51 56 FC 01 FF 00 03 00")
        << u"kept=1 kept-deviation=3,0 kept-screen=0,0,0,0,0,0 "_s;
    // 1280 is 00 05: the cut comes in the middle of the upper edge.
    QTest::newRow("on a screen to the right")
        << QPoint(160, 100) << QByteArray("51 56 00 01 05 00 05 38")
        << QByteArray("51 56 FC 01 FF 00 00 00")
        << u"kept=1 kept-deviation=0,0 kept-screen=1280,0,0,0,0,0 "_s;
    // 3 is 03 00: up to the width.
    QTest::newRow("on a screen at 3")
        << QPoint(160, 100) << QByteArray("51 56 00 01 05 03 00 02 00 00 05")
        << QByteArray("51 56 FC 01 FF 00 00 00")
        << u"kept=1 kept-deviation=0,0 kept-screen=3,2,1280,0,0,0 "_s;
}

void TestSerialSession::a_calibration_whose_check_is_cut_goes_by_the_touches()
{
    QFETCH(QPoint, first);
    QFETCH(QByteArray, check);
    QFETCH(QByteArray, end);
    QFETCH(QString, kept);
    plug();
    touchFour(first);
    host->send(check.constData());
    QTRY_VERIFY2(host->received().endsWith(end), host->received().constData());
    host->send("51 56 00 01 FF 00 00 00");
    QTRY_VERIFY2(session->state().contains(kept), qPrintable(session->state()));
    QVERIFY(session->state().contains(u" unknown=0 "_s));
}

void TestSerialSession::a_check_that_comes_whole_is_gone_by()
{
    plug();
    touchFour({160, 100});
    // 522 is 0A 02: 18 bytes, all that there is. Each target is 522 pixels to the right of its
    // touch, 41 per cent.
    host->send("51 56 00 01 05 0A 02 00 00 00 05 20 03 00 0A 20 03 00");
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 FF 00 29 00"));
    host->send("51 56 00 01 FF 00 00 00");
    QTRY_VERIFY2(
        session->state().contains(u"kept-deviation=41,0 kept-screen=522,0,1280,800,2560,800 "_s),
        qPrintable(session->state()));
}

void TestSerialSession::four_touches_in_one_place_are_as_wrong_as_can_be()
{
    plug();
    host->send("51 56 00 01 00 00 00 00");
    for (const char *echo : {"51 56 00 01 01 00 00 00", "51 56 00 01 02 00 00 00",
                             "51 56 00 01 03 00 00 00", "51 56 00 01 04 00 00 00"}) {
        host->send(echo);
        QTRY_VERIFY(session->state().contains(u"calibration=waiting"_s));
        QVERIFY(session->touch({5, 5}));
    }
    host->send("51 56 00 01 05 00 00 00");
    QTRY_VERIFY(host->received().endsWith("51 56 FC 01 FF 00 7F 7F"));
}

void TestSerialSession::gestures_arrive_up_to_where_the_line_cuts_them()
{
    plug();
    // The wheel's sensitivity is byte 11, and a length of 5 carries bytes 0 to 10.
    host->send("51 56 00 A2 00 05 00 01 01 DC 05 03 01");
    QTRY_VERIFY2(session->state().contains(u" gestures=1,1,1500,3,1,0 "_s),
                 qPrintable(session->state()));
}

void TestSerialSession::a_fault_spoils_a_command_data()
{
    QTest::addColumn<QByteArray>("faults");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("told");

    const QByteArray set(SetRotation2);
    const QByteArray read(ReadRotation);
    QTest::newRow("stall") << QByteArray("at 1 stall 50ms") << set + read << QByteArray(Rotations)
                           << QByteArray("fault  transfer 1 stalls for 50 ms");
    QTest::newRow("late") << QByteArray("at 1 late 50ms") << set + read << QByteArray(Rotations2)
                          << QByteArray("fault  transfer 1 is 50 ms late");
    QTest::newRow("repeat") << QByteArray("at 1 repeat") << set + read << QByteArray(Rotations2)
                            << QByteArray("fault  transfer 1 happens twice");
    QTest::newRow("silent") << QByteArray("at 1 silent 2") << set + read + read
                            << QByteArray(Rotations)
                            << QByteArray("fault  transfer 2 meets silence");
    QTest::newRow("torn") << QByteArray("at 1 torn") << set + read << QByteArray(Rotations2)
                          << QByteArray("fault  transfer 1 is torn");
    // The device waits for one more byte and takes it from the next command, which is lost.
    QTest::newRow("last byte lost")
        << QByteArray("at 1 lose 1") << set + read + read << QByteArray(Rotations2)
        << QByteArray("fault  transfer 1 loses its last 1 bytes");
    // 51 56 00 of the next one complete it: byte 7 of the line is 51, which is no quarter turn.
    QTest::newRow("three bytes lost")
        << QByteArray("at 1 lose 3") << set + read + read << QByteArray(Rotations)
        << QByteArray("fault  transfer 1 loses its last 3 bytes");
    QTest::newRow("all but one byte lost")
        << QByteArray("at 1 lose 9") << set + read + read << QByteArray(Rotations)
        << QByteArray("fault  transfer 1 loses its last 9 bytes");
    QTest::newRow("all lost") << QByteArray("at 1 lose 64") << set + read << QByteArray(Rotations)
                              << QByteArray("fault  transfer 1 loses its last 64 bytes");
    QTest::newRow("noise") << QByteArray("at 1 noise 5") << set + read << QByteArray(Rotations)
                           << QByteArray("fault  transfer 1 meets 5 bytes of noise");
}

void TestSerialSession::a_fault_spoils_a_command()
{
    QFETCH(QByteArray, faults);
    QFETCH(QByteArray, sent);
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, told);
    plug(faults.constData());
    host->send(sent.constData());
    QTRY_COMPARE(host->received(), answer);
    QVERIFY2(logHas(told.constData()), qPrintable(log.join(u'\n')));
    QTest::qWait(NothingComesMs);
    QCOMPARE(host->received(), answer);
}

void TestSerialSession::a_fault_spoils_a_reply_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("transfers");

    const QByteArray counts(Counts);
    QTest::newRow("stall") << QByteArray("stall 50ms") << counts << 3;
    QTest::newRow("late") << QByteArray("late 50ms") << counts << 2;
    QTest::newRow("repeat") << QByteArray("repeat") << counts + ' ' + counts << 2;
    QTest::newRow("silent") << QByteArray("silent 1") << QByteArray() << 2;
    QTest::newRow("torn") << QByteArray("torn") << counts << 2; // 11 bytes have no second half
    QTest::newRow("three bytes lost")
        << QByteArray("lose 3") << QByteArray("51 56 FC A5 80 05 00 60 00 36") << 2;
    QTest::newRow("all lost") << QByteArray("lose 64") << QByteArray() << 2;
}

void TestSerialSession::a_fault_spoils_a_reply()
{
    QFETCH(QByteArray, fault);
    QFETCH(QByteArray, answer);
    QFETCH(int, transfers);
    plug(("at 2 " + fault).constData());
    host->send(ReadCounts);
    QTRY_COMPARE(host->received(), answer);
    QTest::qWait(NothingComesMs);
    QCOMPARE(host->received(), answer);
    QVERIFY2(session->state().contains(u" transfers=%1 "_s.arg(transfers)),
             qPrintable(session->state()));
    QVERIFY(logHas("fault  transfer 2 "));

    // The next one is sound. Noise in front of it does not matter.
    host->send(ReadRotation);
    QTRY_VERIFY(host->received().endsWith(Rotations));
}

void TestSerialSession::a_late_command_keeps_the_next_one_waiting()
{
    plug("at 1 late 200ms\nat 3 noise 5");
    QElapsedTimer timer;
    timer.start();
    host->send(SetRotation2);
    host->send(ReadCounts);
    // Sync bytes and header, five bytes that nobody sent, the rest.
    QTRY_COMPARE(host->received().size(), (13 + 5) * 3 - 1);
    QVERIFY(timer.elapsed() >= 200);
    QVERIFY(host->received().startsWith("51 56 FC A5 80 05 "));
    QVERIFY(host->received().endsWith(" 00 60 00 36 00 00 00"));
    const qsizetype order = log.indexOf(log.filter(u"rotation: set"_s).value(0));
    QVERIFY(order < log.indexOf(log.filter(u"host > frame"_s).value(1)));
}

void TestSerialSession::a_hangup_lasts_until_the_plan_says_so()
{
    const QString link = home->filePath(u"frame"_s);
    plug("at 2 hangup back 300ms", link);
    host->send(ReadRotation);
    QTRY_VERIFY(host->hungUp());
    QVERIFY(!QFileInfo(link).isSymLink());
    QVERIFY(!session->plugged());
    QVERIFY(logHas("fault  transfer 2 ends in an unplug for 300 ms"));
    QCOMPARE(host->received(), "");
    host.reset();

    QTRY_VERIFY(QFileInfo::exists(link));
    host = std::make_unique<Host>(link);
    QVERIFY(host->isValid());
    host->setRate(B9600);
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
}

void TestSerialSession::an_unplug_hangs_up()
{
    plug("at 1 hangup");
    host->send(SetRotation2);
    QTRY_VERIFY(host->hungUp());
    QVERIFY(!session->touch({1, 1}));
    QVERIFY(!session->unplug());
    host.reset();
    QCOMPARE(session->plug(), QString());
    QCOMPARE(session->plug(), u"it is plugged already"_s);
    host = std::make_unique<Host>(session->place());
    host->send(ReadRotation);
    QTRY_COMPARE(host->received(), Rotations);
    QVERIFY(session->unplug());
    QVERIFY(host->hungUp());
    QCOMPARE(session->place(), QString());
}

void TestSerialSession::the_link_leads_to_the_terminal_while_it_is_plugged()
{
    const QString link = home->filePath(u"frame"_s);
    plug("", link);
    QCOMPARE(QFileInfo(link).symLinkTarget(), session->place());
    QVERIFY(session->unplug());
    QVERIFY(QDir(home->path()).isEmpty());
    QCOMPARE(session->plug(), QString());
    QCOMPARE(QFileInfo(link).symLinkTarget(), session->place());
    session.reset();
    QVERIFY(QDir(home->path()).isEmpty());
}

void TestSerialSession::a_left_over_link_is_replaced()
{
    const QString link = home->filePath(u"frame"_s);
    QVERIFY(QFile::link(u"/dev/pts/999999"_s, link));
    plug("", link);
    QCOMPARE(QFileInfo(link).symLinkTarget(), session->place());
}

void TestSerialSession::what_is_no_left_over_link_is_refused_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("a file") << QString();
    QTest::newRow("a link elsewhere") << u"/dev/null"_s;
    QTest::newRow("a link to nothing") << u"/nowhere/pts/1"_s;
    QTest::newRow("a link to a terminal that is there") << u"/dev/pts/ptmx"_s;
}

void TestSerialSession::what_is_no_left_over_link_is_refused()
{
    QFETCH(QString, target);
    const QString link = home->filePath(u"frame"_s);
    if (target.isEmpty()) {
        QFile file(link);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("mine");
    } else {
        QVERIFY(QFile::link(target, link));
    }
    SerialSession refused(
        {}, {}, [] { return 0ms; }, link);
    QCOMPARE(refused.plug(), link + u" exists and is no left-over link to a terminal: remove it "
                                    "or choose another name"_s);
    QVERIFY(!refused.plugged());
    QCOMPARE(refused.place(), QString());
    QCOMPARE(QFileInfo(link).symLinkTarget(), target);
    QCOMPARE(QFileInfo(link).isSymLink(), !target.isEmpty());

    SerialSession nowhere(
        {}, {}, [] { return 0ms; }, u"/nowhere/frame"_s);
    QCOMPARE(nowhere.plug(),
             u"/nowhere/frame: the link cannot be made: No such file or directory"_s);
}

void TestSerialSession::a_link_that_somebody_replaced_stays()
{
    const QString link = home->filePath(u"frame"_s);
    plug("", link);
    QVERIFY(QFile::remove(link));
    QVERIFY(QFile::link(u"/dev/null"_s, link));
    QVERIFY(session->unplug());
    QCOMPARE(QFileInfo(link).symLinkTarget(), u"/dev/null"_s);
}

void TestSerialSession::the_state_tells_the_rate()
{
    plug();
    QVERIFY2(session->state().startsWith(u"plugged=1 calibration=idle step=0 kept=0 rotation=0 "
                                         "gestures=none baud=none unknown=0 queued=0 transfers=0 "
                                         "uptime-ms="_s),
             qPrintable(session->state()));
    QVERIFY(session->state().endsWith(u" rate=9600"_s));
    host->send("51 56 00 B1 00 03 00 13 00 00 00");
    QTRY_VERIFY(session->state().endsWith(u" rate=115200"_s));
    QVERIFY(session->state().contains(u" baud=19 "_s));
}

QTEST_GUILESS_MAIN(TestSerialSession)
#include "tst_serialsession.moc"
