#include "frames.h"
#include "sim/framelog.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::Fault;
using sim::FrameLog;

namespace {

Frame fromDevice(const char *bytes)
{
    Frame frame = hostFrame(bytes);
    frame[0] = 0xFC;
    return frame;
}

} // namespace

class TestFrameLog : public QObject
{
    Q_OBJECT

private slots:
    void a_command_is_told_in_words_data();
    void a_command_is_told_in_words();
    void a_report_is_told_in_words_data();
    void a_report_is_told_in_words();
    void a_line_has_time_direction_words_and_bytes();
    void a_report_read_again_gives_no_line_until_another_comes();
    void a_new_reply_with_the_same_bytes_gives_a_line();
    void faults_are_told_in_words_data();
    void faults_are_told_in_words();
    void bytes_end_with_the_payload();
};

void TestFrameLog::a_command_is_told_in_words_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");

    const auto row = [](const char *bytes, const char *words) {
        QTest::newRow(bytes) << QByteArray(bytes) << QString::fromLatin1(words);
    };
    row("01 00", "calibration: begin");
    row("01 03", "calibration: step 3");
    row("01 05 80 07 38 01 56 05 00 03 D6 0C 38 04",
        "calibration: check, screen 1920,312 1366x768 of 3286x1080");
    row("01 06", "calibration: discard");
    row("01 FF", "calibration: save");
    row("01 08", "unknown: class 0x01, sub-command 0x08");
    row("10 00", "reset (older devices)");
    row("A2 00 05 00 01 00 DC 05 03 01 02",
        "gestures: all 1, right button 0 after 1500 ms within 3, wheel 1 at 2");
    row("A2 03", "reset");
    row("A2 04 0C 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02",
        "adc: set range 3800 to 4000, edge range 3000 to 3200, threshold 1000, edge threshold 600");
    row("A2 05", "adc: read settings");
    row("A2 06 04 00 01 2C 01 FB", "light X 300: set offset -5");
    row("A2 07 03 00 02 05 00", "light Y 5: read");
    row("A2 07 03 00 03 05 00", "light axis 3, 5: read");
    row("A2 08 04 00 01 05 00 01", "light X 5: switch off");
    row("A2 08 04 00 01 05 00 00", "light X 5: switch on");
    row("A3 00", "firmware: read");
    row("A5 00", "scan: read light counts");
    row("A5 01", "scan: read X");
    row("A5 02", "scan: read Y");
    row("A7 00 02 00 03", "rotation: set 270 degrees");
    row("A7 00 02 00 07", "rotation: set code 7");
    row("A7 02", "rotation: read");
    row("B1 00 03 00 13", "serial rate: set code 19");
    row("77 42", "unknown: class 0x77, sub-command 0x42");
}

void TestFrameLog::a_command_is_told_in_words()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    QCOMPARE(sim::describeCommand(hostFrame(bytes.constData())), words);
}

void TestFrameLog::a_report_is_told_in_words_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");

    const auto row = [](const char *bytes, const char *words) {
        QTest::newRow(bytes) << QByteArray(bytes) << QString::fromLatin1(words);
    };
    row("", "nothing yet");
    row("01 00", "calibration: begun");
    row("01 04", "calibration: ready for step 4");
    row("01 05", "calibration: ready to check");
    row("01 FF 00 FE 03", "calibration: finished, off by -2 % and 3 %");
    row("A2 85 11 00 D8 0E A0 0F B8 0B 80 0C E8 03 58 02 F4 01 5E 01",
        "adc: range 3800 to 4000, edge range 3000 to 3200, threshold 1000, edge threshold 600; "
        "500 X lights, 350 Y lights");
    row("A2 87 0B 00 01 30 00 FB 30 20 0D 70 0D 00",
        "light X 48: on, offset -5, agc 48, adc 3360, org 3440");
    row("A2 87 0B 00 02 30 00 00 30 00 00 00 00 01",
        "light Y 48: off, offset 0, agc 48, adc 0, org 0");
    row("A3 80 0E 00 12 38 00 DE C0 17 5A 34 12 5A 60 01 21",
        "firmware: revision 0x003812, checksum 0x5A17C0DE, date 0x1605, number 0xA1234, "
        "family 0x21");
    row("A5 80 05 00 F4 01 5E 01", "scan: 500 X lights, 350 Y lights");
    row("A5 81 05 00 37 00 C3 C4", "scan: X page from light 55, level bytes: 2");
    row("A5 82 04 00 00 01 C3", "scan: Y page from light 256, level bytes: 1");
    row("A7 81 02 00 01", "rotation: default is 90 degrees");
    row("A7 82 02 00 02", "rotation: now 180 degrees");
    row("A7 82 02 00 07", "rotation: now code 7");
    row("A7 83 02 00 02", "unknown: class 0xA7, sub-command 0x83");
}

void TestFrameLog::a_report_is_told_in_words()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    QCOMPARE(sim::describeReport(fromDevice(bytes.constData())), words);
}

void TestFrameLog::a_line_has_time_direction_words_and_bytes()
{
    FrameLog log([] { return 12345ms; });
    QCOMPARE(
        log.command(hostFrame("A7 00 02 00 01")),
        QStringList(u"    12.345  host > frame  rotation: set 90 degrees  [A7 00 02 00 01]"_s));
    QCOMPARE(log.report(fromDevice("A7 82 02 00 00"), true),
             QStringList(u"    12.345  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s));
    QCOMPARE(log.note(u"plugged"_s), QStringList(u"    12.345  plugged"_s));
}

void TestFrameLog::a_report_read_again_gives_no_line_until_another_comes()
{
    FrameLog log([] { return 7ms; });
    QCOMPARE(log.report(fromDevice("A5 80 05 00 60 00 36 00"), true).size(), 1);
    for (int i = 0; i < 1000; ++i)
        QVERIFY(log.report(fromDevice("A5 80 05 00 60 00 36 00"), false).isEmpty());
    QCOMPARE(log.command(hostFrame("A7 02")).size(), 1);
    QCOMPARE(
        log.report(fromDevice("A7 82 02 00 00"), true),
        QStringList({u"     0.007  frame > host  the same again, 1000 x"_s,
                     u"     0.007  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s}));
    QCOMPARE(log.report(fromDevice("A7 82 02 00 01"), true).size(), 1);
}

void TestFrameLog::a_new_reply_with_the_same_bytes_gives_a_line()
{
    FrameLog log([] { return 7ms; });
    QCOMPARE(log.report(fromDevice("A7 82 02 00 00"), true).size(), 1);
    QCOMPARE(log.report(fromDevice("A7 82 02 00 00"), true).size(), 1);
    // A report that differs without being new was torn before.
    QCOMPARE(log.report(fromDevice("A7 82 02 00 01"), false).size(), 1);
}

void TestFrameLog::faults_are_told_in_words_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("line");

    QTest::newRow("stall") << Fault{Fault::Kind::Stall, 4, 1, 500ms, {}}
                           << u"     0.007  fault  transfer 4 stalls for 500 ms"_s;
    QTest::newRow("late") << Fault{Fault::Kind::Late, 4, 1, 2s, {}}
                          << u"     0.007  fault  transfer 4 is 2000 ms late"_s;
    QTest::newRow("torn") << Fault{Fault::Kind::Torn, 4, 1, 0ms, {}}
                          << u"     0.007  fault  transfer 4 is torn"_s;
    QTest::newRow("repeat") << Fault{Fault::Kind::Repeat, 4, 1, 0ms, {}}
                            << u"     0.007  fault  transfer 4 happens twice"_s;
    QTest::newRow("silent") << Fault{Fault::Kind::Silent, 4, 3, 0ms, {}}
                            << u"     0.007  fault  transfer 4 meets silence"_s;
    QTest::newRow("unplug") << Fault{Fault::Kind::Unplug, 4, 1, 0ms, {}}
                            << u"     0.007  fault  transfer 4 ends in an unplug"_s;
    QTest::newRow("unplug and back")
        << Fault{Fault::Kind::Unplug, 4, 1, 0ms, 3s}
        << u"     0.007  fault  transfer 4 ends in an unplug for 3000 ms"_s;
    QTest::newRow("noise") << Fault{Fault::Kind::Noise, 4, 1, 0ms, {}, 5}
                           << u"     0.007  fault  transfer 4 meets 5 bytes of noise"_s;
    QTest::newRow("lose") << Fault{Fault::Kind::Lose, 4, 1, 0ms, {}, 3}
                          << u"     0.007  fault  transfer 4 loses its last 3 bytes"_s;
}

void TestFrameLog::faults_are_told_in_words()
{
    QFETCH(Fault, fault);
    QFETCH(QString, line);

    FrameLog log([] { return 7ms; });
    QCOMPARE(log.fault(fault, 4), QStringList(line));
    QVERIFY(log.fault(Fault(), 4).isEmpty());
}

void TestFrameLog::bytes_end_with_the_payload()
{
    // The length counts from byte 4; calibration has data where the length would be.
    QCOMPARE(sim::usedBytes(hostFrame("A2 08 04 00 01 00 00 00")), u"A2 08 04 00 01 00 00"_s);
    QCOMPARE(sim::usedBytes(hostFrame("A3 00")), u"A3 00 00"_s);
    QCOMPARE(sim::usedBytes(hostFrame("01 05 80 00 01")), u"01 05 80 00 01"_s);
    Frame full;
    full.fill(0xEE);
    QCOMPARE(sim::usedBytes(full).size(), 63 * 3 - 1);
}

QTEST_GUILESS_MAIN(TestFrameLog)
#include "tst_framelog.moc"
