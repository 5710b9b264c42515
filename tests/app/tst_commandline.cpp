// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/commandline.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void close_and_s_count_anywhere_inside_an_argument_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("close");
        QTest::addColumn<bool>("hidden");
        QTest::newRow("none") << QStringList() << false << false;
        QTest::newRow("close") << QStringList{u"-close"_s} << true << false;
        QTest::newRow("inside") << QStringList{u"x-closed"_s} << true << false;
        QTest::newRow("s") << QStringList{u"-s"_s} << false << true;
        QTest::newRow("silent") << QStringList{u"-silent"_s} << false << true;
        QTest::newRow("in a file's name") << QStringList{u"my-settings"_s} << false << true;
        QTest::newRow("close ends the search")
            << QStringList{u"-close"_s, u"-s"_s} << true << false;
        QTest::newRow("s before close") << QStringList{u"-s"_s, u"-close"_s} << true << true;
        QTest::newRow("other case") << QStringList{u"-S"_s} << false << false;
        QTest::newRow("in a profile's name")
            << QStringList{u"--demo"_s, u"--profile=new-screen-close"_s} << false << false;
        QTest::newRow("in a fault plan's name")
            << QStringList{u"--demo"_s, u"--faults=long-stall.faults"_s} << false << false;
        QTest::newRow("in a recording's name")
            << QStringList{u"--record=new-screen-close.pcap"_s} << false << false;
        QTest::newRow("beside another option")
            << QStringList{u"--demo"_s, u"--faults=a"_s, u"-s"_s} << false << true;
    }
    void close_and_s_count_anywhere_inside_an_argument()
    {
        QFETCH(const QStringList, arguments);
        const CommandLine asked = CommandLine::parse(arguments);
        QTEST(asked.close, "close");
        QTEST(asked.hidden, "hidden");
    }

    void values_stay_whole()
    {
        const CommandLine asked = CommandLine::parse(
            {u"--demo"_s, u"--profile=a b=c"_s, u"--faults=long-stall.faults"_s});
        QVERIFY(asked.demo);
        QCOMPARE(asked.profile, u"a b=c"_s);
        QCOMPARE(asked.faults, u"long-stall.faults"_s);
        QCOMPARE(asked.problem, QString());
    }

    void a_recording_goes_with_a_real_frame_and_with_a_simulated_one()
    {
        CommandLine asked = CommandLine::parse({u"--record=/tmp/a b.pcap"_s});
        QCOMPARE(asked.record, u"/tmp/a b.pcap"_s);
        QCOMPARE(asked.problem, QString());
        asked = CommandLine::parse({u"--demo"_s, u"--record=x"_s, u"-s"_s});
        QVERIFY(asked.demo);
        QVERIFY(asked.hidden);
        QCOMPARE(asked.record, u"x"_s);
        QCOMPARE(asked.problem, QString());
        QCOMPARE(CommandLine::parse({u"--record="_s}).problem,
                 u"--record= takes a file: --record=FILE"_s);
    }

    void who_asked_for_a_hidden_start_is_kept()
    {
        QCOMPARE(CommandLine::parse({u"-silent"_s}).hiddenBy, u"-silent"_s);
        QCOMPARE(CommandLine::parse({u"--demo"_s}).hiddenBy, QString());
    }

    void help_has_a_short_form()
    {
        QVERIFY(CommandLine::parse({u"-h"_s}).help);
        QVERIFY(CommandLine::parse({u"--help"_s}).help);
        QCOMPARE(CommandLine::parse({u"-h"_s}).problem, QString());
    }

    void what_makes_no_sense_is_told_in_one_line_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        QTest::newRow("unknown") << QStringList{u"--nonense"_s}
                                 << u"There is no option --nonense; --help lists all."_s;
        QTest::newRow("the first of two")
            << QStringList{u"-x"_s, u"-y"_s} << u"There is no option -x; --help lists all."_s;
        QTest::newRow("no value") << QStringList{u"--demo"_s, u"--profile="_s}
                                  << u"--profile= takes a file: --profile=FILE"_s;
        QTest::newRow("no partner")
            << QStringList{u"--faults=a"_s} << u"--faults=a goes with --demo only."_s;
        QTest::newRow("no dash") << QStringList{u"frame"_s} << QString();
        QTest::newRow("contains -s") << QStringList{u"--no-sense"_s} << QString();
        QTest::newRow("contains -close") << QStringList{u"--x-close"_s} << QString();
        QTest::newRow("behind -close") << QStringList{u"-close"_s, u"--nonense"_s} << QString();
    }
    void what_makes_no_sense_is_told_in_one_line()
    {
        QFETCH(const QStringList, arguments);
        QTEST(CommandLine::parse(arguments).problem, "problem");
    }
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
