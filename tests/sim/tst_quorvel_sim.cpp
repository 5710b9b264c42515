// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/farend.h"
#include "tests/support/typedrecording.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongEnoughMs = 20'000;

struct Outcome
{
    int code;
    QByteArray out;
    QByteArray err;
};

// Runs the program to its end.
Outcome run(const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(QUORVEL_SIM_PROGRAM), arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(LongEnoughMs)) {
        process.kill();
        process.waitForFinished();
        return {-1, process.readAllStandardOutput(), "it did not end"};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

// The program while it runs, and what it has printed so far.
struct Running
{
    explicit Running(const QStringList &arguments)
    {
        process.start(QStringLiteral(QUORVEL_SIM_PROGRAM), arguments);
    }
    bool says(const char *words)
    {
        process.waitForReadyRead(10);
        out += process.readAllStandardOutput();
        return out.contains(words);
    }
    bool ends()
    {
        const bool hasEnded = process.waitForFinished(LongEnoughMs);
        out += process.readAllStandardOutput();
        return hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    QProcess process;
    QByteArray out;
};

// What a frame at the end of a serial line answers: so many bytes, and what comes close behind
// them.
QByteArray answer(const QString &line, const QByteArray &commands, qsizetype size)
{
    const LineEnd host{
        FileDescriptor(::open(QFile::encodeName(line).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC))};
    host.give(commands);
    const QByteArray first = host.take(size, LongEnoughMs);
    return first + host.take(size, 50);
}

// Without a plug the program needs no virtual host controller.
const QStringList Unplugged = {u"usb"_s, u"--unplugged"_s, u"--quit-at-end"_s};

} // namespace

class TestQuorvelSim : public QObject
{
    Q_OBJECT

private slots:
    void help_names_commands_and_exit_codes();
    void the_version_is_the_projects();
    void wrong_usage_is_refused_data();
    void wrong_usage_is_refused();
    void a_wrong_profile_is_refused_with_file_and_line();
    void a_wrong_fault_plan_is_refused_with_file_and_line();
    void a_log_that_cannot_be_written_fails();
    void commands_are_answered_in_order();
    void a_wrong_line_is_refused_and_nothing_else_happens_data();
    void a_wrong_line_is_refused_and_nothing_else_happens();
    void what_follows_quit_is_not_done();
    void a_last_line_without_line_feed_counts();
    void an_endless_line_is_refused();
    void waiting_takes_its_time();
    void the_log_file_holds_what_was_printed();
    void a_serial_line_is_linked_answers_and_is_gone_at_the_end();
    void a_recording_is_replayed_and_departures_are_told();
    void what_is_no_recording_is_refused();
    void a_link_that_cannot_be_made_fails();
    void a_serial_line_hangs_up_and_comes_back();
    void a_serial_fault_is_for_serial_lines();
    void the_end_of_input_alone_ends_nothing_and_a_signal_does_data();
    void the_end_of_input_alone_ends_nothing_and_a_signal_does();
};

void TestQuorvelSim::help_names_commands_and_exit_codes()
{
    const Outcome outcome = run({u"--help"_s});
    QCOMPARE(outcome.code, 0);
    for (const char *word :
         {"usb", "serial", "--link", "--profile", "--faults", "--log", "--unplugged",
          "--quit-at-end", "touch X Y", "wait MS", "Exit codes: 0"})
        QVERIFY2(outcome.out.simplified().contains(word), word);
    QCOMPARE(outcome.err, "");
}

void TestQuorvelSim::the_version_is_the_projects()
{
    const Outcome outcome = run({u"--version"_s});
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.out, QByteArray("quorvel-sim " QUORVEL_VERSION "\n"));
}

void TestQuorvelSim::wrong_usage_is_refused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("words");

    QTest::newRow("nothing") << QStringList()
                             << QByteArray("say how the frame is attached: quorvel-sim usb, or "
                                           "quorvel-sim serial\n");
    QTest::newRow("unknown door") << QStringList(u"bluetooth"_s)
                                  << QByteArray("'bluetooth' is no way to attach the frame: "
                                                "there are usb and serial\n");
    QTest::newRow("two doors") << QStringList({u"usb"_s, u"usb"_s})
                               << QByteArray("'usb usb' is no way to attach the frame: "
                                             "there are usb and serial\n");
    QTest::newRow("both doors") << QStringList({u"usb"_s, u"serial"_s})
                                << QByteArray("'usb serial' is no way to attach the frame: "
                                              "there are usb and serial\n");
    QTest::newRow("link on USB") << QStringList({u"usb"_s, u"--link"_s, u"/tmp/x"_s})
                                 << QByteArray("--link goes with serial and takes a path\n");
    QTest::newRow("empty link") << QStringList({u"serial"_s, u"--link"_s, QString()})
                                << QByteArray("--link goes with serial and takes a path\n");
    QTest::newRow("replay of nothing") << QStringList(u"replay"_s)
                                       << QByteArray("say what is replayed: quorvel-sim replay "
                                                     "FILE\n");
    QTest::newRow("replay on an unknown door")
        << QStringList({u"replay"_s, u"x"_s, u"bluetooth"_s})
        << QByteArray("'bluetooth' is no way to attach the frame: there are usb and serial\n");
    QTest::newRow("unknown option")
        << QStringList({u"usb"_s, u"--loud"_s}) << QByteArray("Unknown option 'loud'.\n");
    QTest::newRow("option without value") << QStringList({u"usb"_s, u"--profile"_s})
                                          << QByteArray("Missing value after '--profile'.\n");
}

void TestQuorvelSim::wrong_usage_is_refused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, words);

    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.code, 2);
    QCOMPARE(outcome.err, words + "see quorvel-sim --help\n");
    QCOMPARE(outcome.out, "");
}

void TestQuorvelSim::a_wrong_profile_is_refused_with_file_and_line()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"frame.profile"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# mine\nlights-x 600\n");
    file.close();
    const Outcome outcome = run(Unplugged + QStringList({u"--profile"_s, file.fileName()}));
    QCOMPARE(outcome.code, 2);
    QCOMPARE(outcome.err,
             file.fileName().toUtf8() + ":2: lights-x is 600: the largest frame has 500\n");
}

void TestQuorvelSim::a_wrong_fault_plan_is_refused_with_file_and_line()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"bad.faults"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("at 1 smoke\n");
    file.close();
    const Outcome outcome = run(Unplugged + QStringList({u"--faults"_s, file.fileName()}));
    QCOMPARE(outcome.code, 2);
    QVERIFY2(outcome.err.startsWith(file.fileName().toUtf8() + ":1: smoke is not a fault"),
             outcome.err.constData());
}

void TestQuorvelSim::a_log_that_cannot_be_written_fails()
{
    const Outcome outcome = run(Unplugged + QStringList({u"--log"_s, u"/nowhere/at/all"_s}));
    QCOMPARE(outcome.code, 1);
    QCOMPARE(outcome.err, "/nowhere/at/all: cannot be written: No such file or directory\n");
}

void TestQuorvelSim::commands_are_answered_in_order()
{
    const Outcome outcome = run(Unplugged, "state\nwait 10\n\nunplug\ntouch 1 2\nquit\n");
    QCOMPARE(outcome.code, 0);
    const QByteArrayList lines = outcome.out.split('\n');
    QCOMPARE(lines.value(0), "ok unplugged");
    QVERIFY2(lines.value(1).startsWith(
                 "ok state plugged=0 calibration=idle step=0 kept=0 rotation=0 gestures=none "
                 "baud=none unknown=0 queued=0 transfers=0 uptime-ms="),
             lines.value(1).constData());
    QCOMPARE(lines.value(2), "ok wait");
    QCOMPARE(lines.value(3), "ok quit");
    QCOMPARE(outcome.err, "error: unplug: it is unplugged already\n"
                          "error: touch: the frame is unplugged and feels nothing\n");
}

void TestQuorvelSim::a_wrong_line_is_refused_and_nothing_else_happens_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("answer");

    const QByteArray touch = "error: touch: takes two numbers, such as: touch 160 100\n";
    const QByteArray wait = "error: wait: takes milliseconds between 0 and 600000\n";
    QTest::newRow("unknown") << QByteArray("press 1 2")
                             << QByteArray("error: press: there is no such command; there are "
                                           "touch X Y, plug, unplug, state, wait MS and quit\n");
    QTest::newRow("touch alone") << QByteArray("touch") << touch;
    QTest::newRow("touch with one") << QByteArray("touch 1") << touch;
    QTest::newRow("touch with three") << QByteArray("touch 1 2 3") << touch;
    QTest::newRow("touch with words") << QByteArray("touch left top") << touch;
    QTest::newRow("wait alone") << QByteArray("wait") << wait;
    QTest::newRow("wait negative") << QByteArray("wait -1") << wait;
    QTest::newRow("wait too long") << QByteArray("wait 600001") << wait;
    QTest::newRow("wait with words") << QByteArray("wait long") << wait;
    QTest::newRow("plug with a value")
        << QByteArray("plug 1") << QByteArray("error: plug: takes no values\n");
    QTest::newRow("quit with a value")
        << QByteArray("quit now") << QByteArray("error: quit: takes no values\n");
}

void TestQuorvelSim::a_wrong_line_is_refused_and_nothing_else_happens()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, answer);

    const Outcome outcome = run(Unplugged, line + "\n");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.err, answer);
    QCOMPARE(outcome.out, "ok unplugged\n");
}

void TestQuorvelSim::what_follows_quit_is_not_done()
{
    const Outcome outcome = run({u"usb"_s, u"--unplugged"_s}, "quit\nstate\ntouch 1 2\n");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.out, "ok unplugged\nok quit\n");
    QCOMPARE(outcome.err, "");
}

void TestQuorvelSim::a_last_line_without_line_feed_counts()
{
    const Outcome outcome = run(Unplugged, "wait 0");
    QCOMPARE(outcome.code, 0);
    QCOMPARE(outcome.out, "ok unplugged\nok wait\n");
}

void TestQuorvelSim::an_endless_line_is_refused()
{
    const Outcome outcome = run(Unplugged, QByteArray(1001, 'a'));
    QCOMPARE(outcome.code, 0);
    QVERIFY2(outcome.err.startsWith("error: a line of more than 1000 bytes is no command\n"),
             outcome.err.constData());
}

void TestQuorvelSim::waiting_takes_its_time()
{
    QElapsedTimer timer;
    timer.start();
    const Outcome outcome = run(Unplugged, "wait 150\nwait 150\n");
    QCOMPARE(outcome.code, 0);
    QVERIFY(timer.elapsed() >= 299);
    QCOMPARE(outcome.out, "ok unplugged\nok wait\nok wait\n");
}

void TestQuorvelSim::the_log_file_holds_what_was_printed()
{
    QTemporaryDir home;
    QFile log(home.filePath(u"sim.log"_s));
    const QStringList arguments = Unplugged + QStringList({u"--log"_s, log.fileName()});
    const Outcome first = run(arguments, "wait 0\nbad\n");
    const Outcome second = run(arguments, "state\n");
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(log.readAll(), first.out + second.out);
}

void TestQuorvelSim::a_serial_line_is_linked_answers_and_is_gone_at_the_end()
{
    QTemporaryDir home;
    const QString link = home.filePath(u"frame"_s);
    Running sim({u"serial"_s, u"--link"_s, link});
    QTRY_VERIFY_WITH_TIMEOUT(sim.says("ok plug /dev/pts/"), LongEnoughMs);
    QVERIFY(sim.out.contains("ok plug " + QFileInfo(link).symLinkTarget().toUtf8() + '\n'));

    const QByteArray commands = QByteArray::fromHex("51 56 00 A7 00 02 00 03 00 00"
                                                    "51 56 00 A7 02 00 00 00");
    QCOMPARE(answer(link, commands, 20).toHex(' '),
             "51 56 fc a7 81 02 00 00 00 00 51 56 fc a7 82 02 00 03 00 00");

    sim.process.write("touch 1 2\nstate\nquit\n");
    QVERIFY(sim.ends());
    QVERIFY2(sim.out.contains("host > frame  rotation: set 270 degrees  [A7 00 02 00 03]"),
             sim.out.constData());
    QVERIFY(sim.out.contains("ok touch 1,2\n"));
    QVERIFY(sim.out.contains(" rotation=3 "));
    QVERIFY(sim.out.contains(" rate=9600\n"));
    QCOMPARE(sim.process.readAllStandardError(), "");
    QVERIFY(!QFileInfo(link).isSymLink());
}

void TestQuorvelSim::a_recording_is_replayed_and_departures_are_told()
{
    QTemporaryDir home;
    // The host asks for the rotation, 20 ms later it is 90 degrees.
    QFile file(home.filePath(u"asked.pcap"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        RecordingHeader +
        typedPacket("05000000 00000000", filledUp("5176 01 00 02 00 0000 00000000 00 A7 02", 76)) +
        typedPacket("05000000 204E0000",
                    filledUp("5176 01 01 02 00 0000 00000000 FC A7 82 02 00 01", 76)));
    file.close();

    const QString link = home.filePath(u"frame"_s);
    Running sim({u"replay"_s, file.fileName(), u"--link"_s, link});
    QTRY_VERIFY_WITH_TIMEOUT(sim.says("ok plug /dev/pts/"), LongEnoughMs);
    const QByteArray commands = QByteArray::fromHex("51 56 00 A3 00 00 00 00"
                                                    "51 56 00 A7 02 00 00 00");
    QCOMPARE(answer(link, commands, 10).toHex(' '), "51 56 fc a7 82 02 00 01 00 00");

    sim.process.write("touch 1 2\nstate\nquit\n");
    QVERIFY(sim.ends());
    QVERIFY2(
        sim.out.contains("replay  the host sends what is not in the recording: firmware: read\n"),
        sim.out.constData());
    QVERIFY(sim.out.contains(" replayed=1/1 departures=1 rate=9600\n"));
    QVERIFY(sim.out.contains("\nok replay replayed=1/1 departures=1\n"));
    QCOMPARE(sim.process.readAllStandardError(), "error: touch: a recording feels nothing\n");
}

void TestQuorvelSim::what_is_no_recording_is_refused()
{
    const Outcome outcome = run({u"replay"_s, QStringLiteral(QUORVEL_SIM_PROGRAM)});
    QCOMPARE(outcome.code, 2);
    QVERIFY2(outcome.err.startsWith(QUORVEL_SIM_PROGRAM ": is no capture file: "),
             outcome.err.constData());
    QCOMPARE(outcome.out, "");
}

void TestQuorvelSim::a_link_that_cannot_be_made_fails()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"mine"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const Outcome outcome = run({u"serial"_s, u"--link"_s, file.fileName()});
    QCOMPARE(outcome.code, 1);
    QCOMPARE(outcome.err, file.fileName().toUtf8() +
                              " exists and is no left-over link to a terminal: remove it or "
                              "choose another name\n");
    QVERIFY(file.exists());
}

void TestQuorvelSim::a_serial_line_hangs_up_and_comes_back()
{
    QTemporaryDir home;
    const Outcome outcome =
        run({u"serial"_s, u"--link"_s, home.filePath(u"frame"_s), u"--quit-at-end"_s},
            "unplug\nunplug\ntouch 1 2\nplug\nstate\n");
    QCOMPARE(outcome.code, 0);
    QVERIFY2(outcome.out.contains("  unplugged\nok unplug\n"), outcome.out.constData());
    QCOMPARE(outcome.out.count("ok plug /dev/pts/"), 2);
    QVERIFY(outcome.out.contains("ok state plugged=1 "));
    QCOMPARE(outcome.err, "error: unplug: it is unplugged already\n"
                          "error: touch: the frame is unplugged and feels nothing\n");
    QVERIFY(QDir(home.path()).isEmpty());
}

void TestQuorvelSim::a_serial_fault_is_for_serial_lines()
{
    QTemporaryDir home;
    QFile file(home.filePath(u"noisy.faults"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("at 1 noise 5\nat 2 lose 3\nat 3 hangup back 1s\n");
    file.close();
    const QStringList faults = {u"--faults"_s, file.fileName()};
    const Outcome usb = run(Unplugged + faults);
    QCOMPARE(usb.code, 2);
    QCOMPARE(usb.err, file.fileName().toUtf8() + ":1: noise happens on a serial line only\n");
    QCOMPARE(run(QStringList({u"serial"_s, u"--quit-at-end"_s}) + faults).code, 0);
}

void TestQuorvelSim::the_end_of_input_alone_ends_nothing_and_a_signal_does_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void TestQuorvelSim::the_end_of_input_alone_ends_nothing_and_a_signal_does()
{
    QFETCH(int, signal);

    Running sim({u"usb"_s, u"--unplugged"_s});
    sim.process.write("wait 0\n");
    sim.process.closeWriteChannel();
    QTRY_VERIFY_WITH_TIMEOUT(sim.says("ok wait"), LongEnoughMs);
    QVERIFY(!sim.process.waitForFinished(200));
    QCOMPARE(::kill(pid_t(sim.process.processId()), signal), 0);
    QVERIFY(sim.ends());
}

QTEST_GUILESS_MAIN(TestQuorvelSim)
#include "tst_quorvel_sim.moc"
