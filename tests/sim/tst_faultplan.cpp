// SPDX-License-Identifier: GPL-3.0-or-later

#include "sim/faultplan.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using sim::Fault;
using sim::FaultPlan;

class TestFaultPlan : public QObject
{
    Q_OBJECT

private slots:
    void every_fault_is_read();
    void faults_may_stand_in_any_order();
    void an_empty_plan_spoils_nothing();
    void silence_lasts_for_its_count();
    void a_serial_line_has_faults_of_its_own();
    void a_serial_fault_is_refused_on_usb();
    void a_wrong_serial_fault_is_refused_data();
    void a_wrong_serial_fault_is_refused();
    void a_wrong_text_is_refused_with_line_and_reason_data();
    void a_wrong_text_is_refused_with_line_and_reason();
    void a_file_that_is_not_there_is_refused();
    void faults_are_told_in_words_data();
    void faults_are_told_in_words();
    void the_plans_that_come_along_are_right();
};

void TestFaultPlan::every_fault_is_read()
{
    QString problem;
    const auto plan = FaultPlan::parse(u"# all of them\n"
                                       "at 4 stall 500ms\n"
                                       "at 9 late 2s  # late\n"
                                       "at 12 torn\n"
                                       "at 13 repeat\n"
                                       "at 20 silent 5\n"
                                       "at 40 unplug back 600s\n"
                                       "at 41 unplug\n"_s,
                                       u"f.faults"_s, &problem);
    QVERIFY2(plan, qPrintable(problem));
    const std::vector<Fault> expected = {
        {Fault::Kind::Stall, 4, 1, 500ms, {}}, {Fault::Kind::Late, 9, 1, 2s, {}},
        {Fault::Kind::Torn, 12, 1, 0ms, {}},   {Fault::Kind::Repeat, 13, 1, 0ms, {}},
        {Fault::Kind::Silent, 20, 5, 0ms, {}}, {Fault::Kind::Unplug, 40, 1, 0ms, 600s},
        {Fault::Kind::Unplug, 41, 1, 0ms, {}},
    };
    QCOMPARE(plan->faults(), expected);
}

void TestFaultPlan::faults_may_stand_in_any_order()
{
    QString problem;
    const auto plan =
        FaultPlan::parse(u"at 9 torn\nat 3 repeat\nat 5 torn"_s, u"f.faults"_s, &problem);
    QVERIFY2(plan, qPrintable(problem));
    QCOMPARE(plan->at(3).kind, Fault::Kind::Repeat);
    QCOMPARE(plan->at(5).kind, Fault::Kind::Torn);
    QCOMPARE(plan->at(9).kind, Fault::Kind::Torn);
    for (const quint64 sound : {1, 2, 4, 6, 8, 10})
        QCOMPARE(plan->at(sound).kind, Fault::Kind::None);
}

void TestFaultPlan::an_empty_plan_spoils_nothing()
{
    QCOMPARE(FaultPlan().at(1), Fault());
    QString problem;
    const auto plan = FaultPlan::parse(u"# nothing\n\n"_s, u"f.faults"_s, &problem);
    QVERIFY(plan);
    QCOMPARE(plan->at(1), Fault());
}

void TestFaultPlan::silence_lasts_for_its_count()
{
    QString problem;
    const auto plan = FaultPlan::parse(u"at 3 silent 2"_s, u"f.faults"_s, &problem);
    QVERIFY(plan);
    QCOMPARE(plan->at(2).kind, Fault::Kind::None);
    QCOMPARE(plan->at(3).kind, Fault::Kind::Silent);
    QCOMPARE(plan->at(4).kind, Fault::Kind::Silent);
    QCOMPARE(plan->at(5).kind, Fault::Kind::None);
}

void TestFaultPlan::a_serial_line_has_faults_of_its_own()
{
    QString problem;
    const auto plan = FaultPlan::parse(u"at 2 noise 5\nat 3 lose 64\nat 4 hangup\n"
                                       "at 5 hangup back 2s\nat 6 unplug\nat 7 stall 1s\n"_s,
                                       u"f.faults"_s, &problem, FaultPlan::Link::Serial);
    QVERIFY2(plan, qPrintable(problem));
    const std::vector<Fault> expected = {
        {Fault::Kind::Noise, 2, 1, 0ms, {}, 5},  {Fault::Kind::Lose, 3, 1, 0ms, {}, 64},
        {Fault::Kind::Unplug, 4, 1, 0ms, {}, 0}, {Fault::Kind::Unplug, 5, 1, 0ms, 2s, 0},
        {Fault::Kind::Unplug, 6, 1, 0ms, {}, 0}, {Fault::Kind::Stall, 7, 1, 1s, {}, 0},
    };
    QCOMPARE(plan->faults(), expected);
}

void TestFaultPlan::a_serial_fault_is_refused_on_usb()
{
    QString problem;
    QVERIFY(!FaultPlan::parse(u"at 2 torn\nat 3 noise 5"_s, u"f.faults"_s, &problem));
    QCOMPARE(problem, u"f.faults:2: noise happens on a serial line only"_s);
    QVERIFY(!FaultPlan::parse(u"at 3 lose 5"_s, u"f.faults"_s, &problem));
    QCOMPARE(problem, u"f.faults:1: lose happens on a serial line only"_s);
    // A cable is pulled out of either.
    QVERIFY(FaultPlan::parse(u"at 3 hangup back 1s"_s, u"f.faults"_s, &problem));
}

void TestFaultPlan::a_wrong_serial_fault_is_refused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *text, const char *problem) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(problem);
    };
    row("noise without count", "\nat 4 noise",
        "f.faults:2: noise has no count of bytes, such as: at 12 noise 5");
    row("lose without count", "at 4 lose",
        "f.faults:1: lose has no count of bytes, such as: at 12 lose 5");
    row("noise with two counts", "at 4 noise 1 2", "f.faults:1: noise takes one value, not 2");
    row("noise of no number", "at 4 noise loud", "f.faults:1: loud is not a number");
    row("nothing lost", "at 4 lose 0", "f.faults:1: the count is 0: it lies between 1 and 64");
    row("too much lost", "at 4 lose 65", "f.faults:1: the count is 65: it lies between 1 and 64");
    row("hangup for a while", "at 4 hangup 2s",
        "f.faults:1: 2s does not follow hangup: write back and a duration");
}

void TestFaultPlan::a_wrong_serial_fault_is_refused()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);

    QString said;
    QVERIFY(!FaultPlan::parse(text, u"f.faults"_s, &said, FaultPlan::Link::Serial));
    QCOMPARE(said, problem);
}

void TestFaultPlan::a_wrong_text_is_refused_with_line_and_reason_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");

    const auto row = [](const char *name, const char *text, const char *problem) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(problem);
    };
    row("not a fault at all", "\nafter 4 torn",
        "f.faults:2: after is not how a fault begins: write at N and a fault");
    row("only at", "at", "f.faults:1: write at N and a fault, such as: at 12 torn");
    row("no fault", "at 4", "f.faults:1: write at N and a fault, such as: at 12 torn");
    row("transfer that is no number", "at once torn", "f.faults:1: once is not a number");
    row("transfer 0", "at 0 torn",
        "f.faults:1: the transfer is 0: it lies between 1 and 1000000000");
    row("transfer too high", "at 1000000001 torn",
        "f.faults:1: the transfer is 1000000001: it lies between 1 and 1000000000");
    row("unknown fault", "at 4 smoke",
        "f.faults:1: smoke is not a fault: there are stall, late, torn, repeat, silent, unplug, "
        "hangup, noise and lose");
    row("stall without duration", "at 4 stall",
        "f.faults:1: stall has no duration, such as 250ms or 2s");
    row("late without duration", "at 4 late",
        "f.faults:1: late has no duration, such as 250ms or 2s");
    row("stall with two durations", "at 4 stall 1s 2s", "f.faults:1: stall takes one value, not 2");
    row("duration without unit", "at 4 stall 250",
        "f.faults:1: 250 is not a duration such as 250ms or 2s, at most 600s");
    row("duration without number", "at 4 stall ms",
        "f.faults:1: ms is not a duration such as 250ms or 2s, at most 600s");
    row("negative duration", "at 4 late -1s",
        "f.faults:1: -1s is not a duration such as 250ms or 2s, at most 600s");
    row("duration too long", "at 4 late 601s",
        "f.faults:1: 601s is not a duration such as 250ms or 2s, at most 600s");
    row("duration in ms too long", "at 4 late 600001ms",
        "f.faults:1: 600001ms is not a duration such as 250ms or 2s, at most 600s");
    row("torn with a value", "at 4 torn 3", "f.faults:1: torn takes no value");
    row("repeat with a value", "at 4 repeat 3", "f.faults:1: repeat takes no value");
    row("silent without count", "at 4 silent",
        "f.faults:1: silent has no count of transfers, such as: at 12 silent 5");
    row("silent with two counts", "at 4 silent 1 2", "f.faults:1: silent takes one value, not 2");
    row("silent for a while", "at 4 silent 2s", "f.faults:1: 2s is not a number");
    row("silent for nothing", "at 4 silent 0",
        "f.faults:1: the count is 0: it lies between 1 and 1000000000");
    row("unplug for a while", "at 4 unplug 2s",
        "f.faults:1: 2s does not follow unplug: write back and a duration");
    row("back without duration", "at 4 unplug back",
        "f.faults:1: back has no duration, such as 250ms or 2s");
    row("back at some time", "at 4 unplug back soon",
        "f.faults:1: soon is not a duration such as 250ms or 2s, at most 600s");
    row("back twice", "at 4 unplug back 1s 2s", "f.faults:1: back takes one value, not 2");
    row("same transfer twice", "at 4 torn\n# again\nat 4 repeat",
        "f.faults:3: line 1 has a fault for this transfer already");
    row("a fault in a silence", "at 4 silent 3\nat 6 torn",
        "f.faults:2: line 1 has a fault for this transfer already");
    row("a silence over a fault", "at 6 torn\nat 4 silent 3",
        "f.faults:2: line 1 has a fault for this transfer already");
}

void TestFaultPlan::a_wrong_text_is_refused_with_line_and_reason()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);

    QString said;
    QVERIFY(!FaultPlan::parse(text, u"f.faults"_s, &said));
    QCOMPARE(said, problem);
}

void TestFaultPlan::a_file_that_is_not_there_is_refused()
{
    QTemporaryDir home;
    const QString path = home.filePath(u"none.faults"_s);
    QString problem;
    QVERIFY(!FaultPlan::load(path, &problem));
    QCOMPARE(problem, path + u": cannot be read: No such file or directory"_s);
}

void TestFaultPlan::faults_are_told_in_words_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<QString>("line");

    QTest::newRow("stall") << Fault{Fault::Kind::Stall, 4, 1, 500ms, {}}
                           << u"fault  transfer 4 stalls for 500 ms"_s;
    QTest::newRow("late") << Fault{Fault::Kind::Late, 4, 1, 2s, {}}
                          << u"fault  transfer 4 is 2000 ms late"_s;
    QTest::newRow("torn") << Fault{Fault::Kind::Torn, 4, 1, 0ms, {}}
                          << u"fault  transfer 4 is torn"_s;
    QTest::newRow("repeat") << Fault{Fault::Kind::Repeat, 4, 1, 0ms, {}}
                            << u"fault  transfer 4 happens twice"_s;
    QTest::newRow("silent") << Fault{Fault::Kind::Silent, 4, 3, 0ms, {}}
                            << u"fault  transfer 4 meets silence"_s;
    QTest::newRow("unplug") << Fault{Fault::Kind::Unplug, 4, 1, 0ms, {}}
                            << u"fault  transfer 4 ends in an unplug"_s;
    QTest::newRow("unplug and back") << Fault{Fault::Kind::Unplug, 4, 1, 0ms, 3s}
                                     << u"fault  transfer 4 ends in an unplug for 3000 ms"_s;
    QTest::newRow("noise") << Fault{Fault::Kind::Noise, 4, 1, 0ms, {}, 5}
                           << u"fault  transfer 4 meets 5 bytes of noise"_s;
    QTest::newRow("lose") << Fault{Fault::Kind::Lose, 4, 1, 0ms, {}, 3}
                          << u"fault  transfer 4 loses its last 3 bytes"_s;
}

void TestFaultPlan::faults_are_told_in_words()
{
    QFETCH(Fault, fault);
    QFETCH(QString, line);

    QCOMPARE(sim::words(fault, 4), line);
}

void TestFaultPlan::the_plans_that_come_along_are_right()
{
    const QDir folder(QStringLiteral(SIM_DIR) + u"/faults"_s);
    const QStringList names = folder.entryList(QDir::Files);
    QCOMPARE(names.size(), 4);
    for (const QString &name : names) {
        QString problem;
        const bool forUsb = name != "noisy-line.faults"_L1;
        QCOMPARE(FaultPlan::load(folder.filePath(name), &problem).has_value(), forUsb);
        const auto plan = FaultPlan::load(folder.filePath(name), &problem, FaultPlan::Link::Serial);
        QVERIFY2(plan, qPrintable(problem));
        QVERIFY(!plan->faults().empty());
    }
}

QTEST_GUILESS_MAIN(TestFaultPlan)
#include "tst_faultplan.moc"
