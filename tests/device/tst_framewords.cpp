// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/framewords.h"
#include "tests/support/frames.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestFrameWords : public QObject
{
    Q_OBJECT

private slots:
    void a_command_is_told_in_words_data();
    void a_command_is_told_in_words();
    void a_report_is_told_in_words_data();
    void a_report_is_told_in_words();
    void bytes_end_with_the_payload();
};

void TestFrameWords::a_command_is_told_in_words_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");

    const auto row = [](const char *bytes, const char *words) {
        QTest::newRow(bytes) << QByteArray(bytes) << QString::fromLatin1(words);
    };
    row("01 00", "calibration: begin");
    row("01 01", "calibration: step 1");
    row("01 02", "calibration: step 2");
    row("01 03", "calibration: step 3");
    row("01 04", "calibration: step 4");
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
    row("A7 00 02 00 04", "rotation: set code 4");
    row("A7 02", "rotation: read");
    row("B1 00 03 00 13", "serial rate: set code 19");
    row("77 42", "unknown: class 0x77, sub-command 0x42");
}

void TestFrameWords::a_command_is_told_in_words()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    QCOMPARE(framewords::describeCommand(hostFrame(bytes.constData())), words);
}

void TestFrameWords::a_report_is_told_in_words_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("words");

    const auto row = [](const char *bytes, const char *words) {
        QTest::newRow(bytes) << QByteArray(bytes) << QString::fromLatin1(words);
    };
    row("", "nothing yet");
    row("01 00", "calibration: begun");
    row("01 01", "calibration: ready for step 1");
    row("01 02", "calibration: ready for step 2");
    row("01 03", "calibration: ready for step 3");
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

void TestFrameWords::a_report_is_told_in_words()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, words);
    QCOMPARE(framewords::describeReport(deviceFrame(bytes.constData())), words);
}

void TestFrameWords::bytes_end_with_the_payload()
{
    // The length counts from byte 4; calibration has data where the length would be.
    QCOMPARE(framewords::usedBytes(hostFrame("A2 08 04 00 01 00 00 00")),
             u"A2 08 04 00 01 00 00"_s);
    QCOMPARE(framewords::usedBytes(hostFrame("A3 00")), u"A3 00 00"_s);
    QCOMPARE(framewords::usedBytes(hostFrame("01 05 80 00 01")), u"01 05 80 00 01"_s);
    Frame full;
    full.fill(0xEE);
    QCOMPARE(framewords::usedBytes(full).size(), 63 * 3 - 1);
}

QTEST_GUILESS_MAIN(TestFrameWords)
#include "tst_framewords.moc"
