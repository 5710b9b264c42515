// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/framelog.h"
#include "tests/support/frames.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestFrameLog : public QObject
{
    Q_OBJECT

private slots:
    void a_line_has_time_direction_words_and_bytes();
    void a_report_read_again_gives_no_line_until_another_comes();
    void the_first_report_gives_a_line_although_nothing_is_in_it();
    void a_new_reply_with_the_same_bytes_gives_a_line();
};

void TestFrameLog::a_line_has_time_direction_words_and_bytes()
{
    FrameLog log([] { return 12345ms; });
    QCOMPARE(
        log.command(hostFrame("A7 00 02 00 01")),
        QStringList(u"    12.345  host > frame  rotation: set 90 degrees  [A7 00 02 00 01]"_s));
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 00"), true),
             QStringList(u"    12.345  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s));
    QCOMPARE(log.note(u"plugged"_s), QStringList(u"    12.345  plugged"_s));
}

void TestFrameLog::a_report_read_again_gives_no_line_until_another_comes()
{
    FrameLog log([] { return 7ms; });
    QCOMPARE(log.report(deviceFrame("A5 80 05 00 60 00 36 00"), true).size(), 1);
    for (int i = 0; i < 1000; ++i)
        QVERIFY(log.report(deviceFrame("A5 80 05 00 60 00 36 00"), false).isEmpty());
    QCOMPARE(log.command(hostFrame("A7 02")).size(), 1);
    QCOMPARE(
        log.report(deviceFrame("A7 82 02 00 00"), true),
        QStringList({u"     0.007  frame > host  the same again, 1000 x"_s,
                     u"     0.007  frame > host  rotation: now 0 degrees  [A7 82 02 00 00]"_s}));
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 01"), true).size(), 1);
    // Once is told too.
    QVERIFY(log.report(deviceFrame("A7 82 02 00 01"), false).isEmpty());
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 02"), true).first(),
             u"     0.007  frame > host  the same again, 1 x"_s);
}

void TestFrameLog::the_first_report_gives_a_line_although_nothing_is_in_it()
{
    FrameLog log([] { return 7ms; });
    QCOMPARE(log.report({}, false).size(), 1);
    QVERIFY(log.report({}, false).isEmpty());
}

void TestFrameLog::a_new_reply_with_the_same_bytes_gives_a_line()
{
    FrameLog log([] { return 7ms; });
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 00"), true).size(), 1);
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 00"), true).size(), 1);
    // A report that differs without being new was torn before.
    QCOMPARE(log.report(deviceFrame("A7 82 02 00 01"), false).size(), 1);
}

QTEST_GUILESS_MAIN(TestFrameLog)
#include "tst_framelog.moc"
