// SPDX-License-Identifier: GPL-3.0-or-later

// What a recording says again, to which questions and when.

#include "sim/faultyframe.h"
#include "sim/replay.h"
#include "tests/support/typedrecording.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using capture::End;
using capture::Kind;
using capture::Over;
using capture::Record;
using capture::Result;
using sim::Replay;
using std::chrono::milliseconds;

namespace {

Frame frameOf(const QByteArray &hex)
{
    Frame frame{};
    const QByteArray bytes = QByteArray::fromHex(hex);
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    return frame;
}

// What travelled, line by line: "> A7 02" for a frame of the host, "< A7 82" for one of the device.
class Recording
{
public:
    explicit Recording(Over link = Over::Serial)
        : over(link)
    {
        event(0ms, Kind::LinkBegan);
    }
    Recording &sent(milliseconds at, const QByteArray &hex, Result result = Result::Done)
    {
        return add(at, Kind::ToFrame, frameOf("00" + hex), result);
    }
    Recording &received(milliseconds at, const QByteArray &hex)
    {
        return add(at, Kind::FromFrame, frameOf("FC" + hex), Result::Done);
    }
    Recording &event(milliseconds at, Kind kind, End end = End::DeviceGone)
    {
        Record record;
        record.time = 1'000'000s + at;
        record.kind = kind;
        record.over = over;
        record.end = end;
        records.push_back(record);
        return *this;
    }

    std::vector<Record> records;

private:
    Recording &add(milliseconds at, Kind kind, const Frame &frame, Result result)
    {
        event(at, kind);
        records.back().frame = frame;
        records.back().result = result;
        return *this;
    }

    const Over over;
};

// A device that says what a recording says, and the time.
struct Device
{
    explicit Device(const Recording &recording)
        : replay(recording.records, [this] { return now; })
    {
    }
    void send(const QByteArray &hex, int arrived = FrameSize)
    {
        replay.command(frameOf("00" + hex), arrived);
    }
    // All that is due at a time: class and sub-command, or "gone".
    QStringList at(milliseconds time)
    {
        now = time;
        QStringList said;
        while (replay.isDue()) {
            if (const auto absence = replay.takeAbsence()) {
                said += u"gone "_s +
                        (absence->back ? QString::number(absence->back->count()) : u"for good"_s);
            } else if (const auto report = replay.takeReport()) {
                said += QString::fromLatin1(
                    QByteArray(reinterpret_cast<const char *>(report->data()) + 1, 5)
                        .toHex(' ')
                        .toUpper());
            }
        }
        return said;
    }

    milliseconds now{0};
    Replay replay;
};

} // namespace

class TestReplay : public QObject
{
    Q_OBJECT

private slots:
    void each_answer_comes_as_long_after_its_question_as_then()
    {
        Device device(Recording()
                          .sent(5000ms, "A7 02")
                          .received(5020ms, "A7 81 02 00 01")
                          .received(5045ms, "A7 82 02 00 03"));
        QCOMPARE(device.at(9000ms), QStringList());
        QVERIFY(!device.replay.untilDue());
        device.send("A7 02");
        QCOMPARE(device.replay.untilDue(), 20ms);
        QCOMPARE(device.at(9019ms), QStringList());
        QCOMPARE(device.at(9020ms), QStringList(u"A7 81 02 00 01"_s));
        QCOMPARE(device.at(9044ms), QStringList());
        QCOMPARE(device.at(9045ms), QStringList(u"A7 82 02 00 03"_s));
        QCOMPARE(device.replay.state(), u"replayed=1/1 departures=0"_s);
        QCOMPARE(device.replay.takeNews(), u"replay  this was the last command of the recording"_s);
        QCOMPARE(device.replay.takeNews(), QString());
    }

    void a_device_that_leads_goes_on_by_the_time()
    {
        Device device(Recording()
                          .sent(100ms, "01 00")
                          .received(110ms, "01 01")
                          .sent(120ms, "01 01")
                          .received(2120ms, "01 02"));
        device.send("01 00");
        QCOMPARE(device.at(10ms), QStringList(u"01 01 00 00 00"_s));
        device.now = 500ms;
        device.send("01 01");
        QCOMPARE(device.at(2499ms), QStringList());
        QCOMPARE(device.at(2500ms), QStringList(u"01 02 00 00 00"_s));
    }

    void answers_belong_to_the_last_question_of_their_class()
    {
        Device device(Recording()
                          .sent(0ms, "A5 01")
                          .sent(5ms, "A7 02")
                          .received(10ms, "A5 81 07 00 00")
                          .received(12ms, "A7 82 02 00 01"));
        device.send("A7 02");
        QCOMPARE(device.replay.takeNews(), u"replay  the host leaves out 1, first: scan: read X"_s);
        QCOMPARE(device.at(7ms), QStringList(u"A7 82 02 00 01"_s));
        QCOMPARE(device.at(1h), QStringList());
        QCOMPARE(device.replay.state(), u"replayed=0/2 departures=1"_s);
    }

    void what_was_said_without_a_question_comes_after_the_first_transfer()
    {
        Device device(Recording().received(300ms, "01 01").sent(400ms, "01 01"));
        QCOMPARE(device.at(5000ms), QStringList());
        device.replay.awake();
        device.replay.awake();
        QCOMPARE(device.at(5299ms), QStringList());
        QCOMPARE(device.at(5300ms), QStringList(u"01 01 00 00 00"_s));
        QCOMPARE(device.at(1h), QStringList());
    }

    void the_host_may_depart_and_is_told_of_it_data()
    {
        QTest::addColumn<QByteArrayList>("questions");
        QTest::addColumn<QString>("news"); // of the last
        QTest::addColumn<QStringList>("answers");
        QTest::addColumn<QString>("state");

        const QString firmware = u"A3 80 0E 00 00"_s;
        const QString rotation = u"A7 82 02 00 01"_s;
        const QString counts = u"A5 80 05 00 60"_s;
        QTest::newRow("in order") << QByteArrayList{"A3 00", "A7 02"} << QString()
                                  << QStringList{firmware, rotation}
                                  << u"replayed=2/3 departures=0"_s;
        QTest::newRow("one left out")
            << QByteArrayList{"A7 02"} << u"replay  the host leaves out 1, first: firmware: read"_s
            << QStringList(rotation) << u"replayed=0/3 departures=1"_s;
        QTest::newRow("two left out")
            << QByteArrayList{"A5 00"} << u"replay  the host leaves out 2, first: firmware: read"_s
            << QStringList(counts) << u"replayed=0/3 departures=1"_s;
        QTest::newRow("once more")
            << QByteArrayList{"A3 00", "A3 00"}
            << u"replay  the host sends once more: firmware: read"_s
            << QStringList{firmware, firmware} << u"replayed=1/3 departures=1"_s;
        QTest::newRow("once more, and on")
            << QByteArrayList{"A3 00", "A3 00", "A7 02"} << QString()
            << QStringList{firmware, firmware, rotation} << u"replayed=2/3 departures=1"_s;
        QTest::newRow("never asked")
            << QByteArrayList{"A3 00", "A7 00 02 00 03"}
            << u"replay  the host sends what is not in the recording: rotation: set 270 degrees"_s
            << QStringList(firmware) << u"replayed=1/3 departures=1"_s;
        QTest::newRow("a rate") << QByteArrayList{"B1 00 03 00 13", "A3 00"} << QString()
                                << QStringList(firmware) << u"replayed=1/3 departures=0"_s;
    }
    void the_host_may_depart_and_is_told_of_it()
    {
        QFETCH(const QByteArrayList, questions);
        Device device(Recording()
                          .sent(0ms, "B1 00 03 00 0C")
                          .sent(1ms, "A3 00")
                          .received(2ms, "A3 80 0E")
                          .sent(3ms, "A7 02")
                          .received(4ms, "A7 82 02 00 01")
                          .sent(5ms, "A5 00")
                          .received(6ms, "A5 80 05 00 60"));
        QStringList answers;
        QString news;
        for (const QByteArray &question : questions) {
            device.send(question);
            news = device.replay.takeNews();
            answers += device.at(device.now + 10ms);
        }
        QTEST(answers, "answers");
        QTEST(device.replay.state(), "state");
        if (news == u"replay  this was the last command of the recording"_s)
            news.clear();
        QTEST(news, "news");
    }

    void a_question_far_ahead_is_found_if_it_was_never_asked_before()
    {
        Recording recording;
        for (int i = 0; i < 30; ++i)
            recording.sent(milliseconds(10 * i), "A5 01");
        recording.sent(500ms, "A7 02").received(501ms, "A7 82 02 00 01");
        Device device(recording);
        device.send("A5 01");
        device.send("A7 02");
        QCOMPARE(device.replay.takeNews(),
                 u"replay  the host leaves out 29, first: scan: read X"_s);
        QCOMPARE(device.at(1ms), QStringList(u"A7 82 02 00 01"_s));
    }

    void what_a_serial_line_cuts_off_does_not_count()
    {
        const QByteArray gestures = "A2 00 05 00 01 01 DC 05 03 01 02";
        Device device(Recording().sent(0ms, gestures));
        // The last of its bytes stays behind; the frame has zeros from there.
        device.send("A2 00 05 00 01 01 DC 05 03 01", 11);
        QCOMPARE(device.replay.state(), u"replayed=1/1 departures=0"_s);
        Device whole(Recording().sent(0ms, gestures));
        whole.send("A2 00 05 00 01 01 DC 05 03 01", 64);
        QCOMPARE(whole.replay.state(), u"replayed=0/1 departures=1"_s);
    }

    void what_never_arrived_is_expected_all_the_same_and_not_answered()
    {
        Device device(Recording()
                          .sent(0ms, "A7 02")
                          .sent(1ms, "A5 00", Result::Failed)
                          .sent(2ms, "A3 00", Result::Dropped)
                          .received(3ms, "A7 82 02 00 01"));
        device.send("A7 02");
        device.send("A5 00");
        QCOMPARE(device.replay.state(), u"replayed=2/2 departures=0"_s);
        QCOMPARE(device.at(1h), QStringList(u"A7 82 02 00 01"_s));
    }

    // By USB

    void readings_that_brought_nothing_new_are_left_out()
    {
        Device device(Recording(Over::Usb)
                          .received(10ms, "")
                          .sent(20ms, "A7 02")
                          .received(80ms, "A7 81 02 00 01")
                          .received(150ms, "A7 82 02 00 03")
                          .received(220ms, "A7 82 02 00 03")
                          .sent(250ms, "A7 00 02 00 01")
                          .received(290ms, "A7 82 02 00 03"));
        device.send("A7 02");
        QCOMPARE(device.at(1s), QStringList({u"A7 81 02 00 01"_s, u"A7 82 02 00 03"_s}));
        device.send("A7 00 02 00 01");
        QCOMPARE(device.at(2s), QStringList());
    }

    void the_same_answer_to_the_same_question_is_one()
    {
        Device device(Recording(Over::Usb)
                          .sent(0ms, "A5 00")
                          .received(60ms, "A5 80 05 00 60")
                          .received(130ms, "A5 80 05 00 60")
                          .sent(500ms, "A5 00")
                          .received(550ms, "A5 80 05 00 60")
                          .received(620ms, "A5 80 05 00 60"));
        device.send("A5 00");
        QCOMPARE(device.at(400ms), QStringList(u"A5 80 05 00 60"_s));
        device.send("A5 00");
        QCOMPARE(device.at(449ms), QStringList());
        QCOMPARE(device.at(450ms), QStringList(u"A5 80 05 00 60"_s));
        QCOMPARE(device.at(1h), QStringList());
    }

    void on_a_serial_line_every_report_was_said()
    {
        Device device(Recording()
                          .sent(0ms, "A5 00")
                          .received(60ms, "A5 80 05 00 60")
                          .received(130ms, "A5 80 05 00 60"));
        device.send("A5 00");
        QCOMPARE(device.at(1s), QStringList({u"A5 80 05 00 60"_s, u"A5 80 05 00 60"_s}));
    }

    // Cables

    void the_device_goes_and_comes_back_as_it_did()
    {
        Device device(Recording()
                          .sent(0ms, "A7 02")
                          .received(10ms, "A7 81 02 00 01")
                          .event(30ms, Kind::LinkEnded, End::DeviceGone)
                          .event(430ms, Kind::LinkBegan)
                          .received(450ms, "01 01")
                          .sent(500ms, "A7 02")
                          .received(510ms, "A7 82 02 00 01")
                          .event(900ms, Kind::LinkEnded, End::DeviceGone));
        device.replay.awake();
        device.send("A7 02");
        QCOMPARE(device.at(29ms), QStringList(u"A7 81 02 00 01"_s));
        QCOMPARE(device.at(30ms), QStringList(u"gone 400"_s));
        device.replay.restart();
        QCOMPARE(device.at(5000ms), QStringList());
        device.replay.awake();
        QCOMPARE(device.at(5020ms), QStringList(u"01 01 00 00 00"_s));
        device.send("A7 02");
        QCOMPARE(device.at(6000ms), QStringList({u"A7 82 02 00 01"_s, u"gone for good"_s}));
        QCOMPARE(device.replay.state(), u"replayed=2/2 departures=0"_s);
    }

    void a_long_absence_is_cut_short_and_a_closed_link_is_none()
    {
        Device device(Recording()
                          .sent(0ms, "A7 02")
                          .event(10ms, Kind::LinkEnded, End::Closed)
                          .event(20ms, Kind::LinkBegan)
                          .event(30ms, Kind::LinkEnded, End::DeviceGone)
                          .event(3'600'000ms, Kind::LinkBegan));
        device.send("A7 02");
        QCOMPARE(device.at(29ms), QStringList());
        QCOMPARE(device.at(30ms), QStringList(u"gone 1000"_s));
    }

    void clocks_that_ran_backwards_or_stood_for_days_keep_nobody_waiting()
    {
        Device device(Recording()
                          .sent(5000ms, "A7 02")
                          .received(0ms, "A7 81 02 00 01")
                          .received(90'000'000ms, "A7 82 02 00 01"));
        device.send("A7 02");
        QCOMPARE(device.at(0ms), QStringList(u"A7 81 02 00 01"_s));
        QCOMPARE(device.at(600'000ms), QStringList(u"A7 82 02 00 01"_s));
    }

    void a_frame_on_a_bad_cable_says_what_a_recording_says()
    {
        milliseconds now{0};
        const sim::Clock clock = [&now] { return now; };
        QString problem;
        const auto plan = sim::FaultPlan::parse(u"at 3 torn\n"_s, u"plan"_s, &problem);
        QVERIFY2(plan, qPrintable(problem));
        sim::FaultyFrame frame(sim::Profile(), *plan, clock, true);
        frame.replay(Replay(Recording()
                                .sent(0ms, "A3 00")
                                .received(10ms, "A3 80 0E 00 12")
                                .event(50ms, Kind::LinkEnded, End::DeviceGone)
                                .event(90ms, Kind::LinkBegan)
                                .records,
                            clock));
        sim::Fault fault = frame.beginTransfer();
        frame.write(frameOf("00 A3 00"), fault);
        fault = frame.beginTransfer();
        QVERIFY(!frame.hasReply());
        QCOMPARE(frame.untilReply(), 10ms);
        QVERIFY(!frame.read(fault).fresh);
        now = 10ms;
        QVERIFY(frame.hasReply());
        fault = frame.beginTransfer();
        QCOMPARE(fault.kind, sim::Fault::Kind::Torn);
        const sim::FaultyFrame::Report report = frame.read(fault);
        QVERIFY(report.fresh);
        QCOMPARE(report.bytes, frameOf("FC A3 80 0E 00 12"));
        QCOMPARE(frame.read(frame.beginTransfer()).bytes, report.bytes);
        now = 50ms;
        QCOMPARE(frame.beginTransfer().kind, sim::Fault::Kind::Unplug);
        QVERIFY(!frame.plugged());
        QCOMPARE(frame.untilBack(), 40ms);
        now = 90ms;
        QVERIFY(frame.comeBack());
    }

    // Files

    void what_is_no_recording_is_refused_with_the_reason()
    {
        const QTemporaryDir place;
        QFile file(place.filePath(u"x.pcap"_s));
        QString problem;
        const sim::Clock clock = [] { return 0ms; };
        QVERIFY(!Replay::load(file.fileName(), clock, &problem));
        QCOMPARE(problem, file.fileName() + u": cannot be read: No such file or directory"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(RecordingHeader);
        file.flush();
        QVERIFY(!Replay::load(file.fileName(), clock, &problem));
        QCOMPARE(problem, file.fileName() + u": has no frame to replay"_s);
        file.write(QByteArray::fromHex("00000000 00000000 01000000 01000000 00"));
        file.flush();
        QVERIFY(!Replay::load(file.fileName(), clock, &problem));
        QCOMPARE(problem, file.fileName() + u": packet 1 tells of no traffic with a touch frame, "
                                            "or in a newer format"_s);
    }
};

QTEST_GUILESS_MAIN(TestReplay)
#include "tst_replay.moc"
