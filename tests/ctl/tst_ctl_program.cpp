// SPDX-License-Identifier: GPL-3.0-or-later

// The command line program itself, on a simulated frame's serial line: what signals, pipes and
// closed descriptors do to it and to the frame.

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
constexpr int LongEnoughMs = 20'000;
}

class TestCtlProgram : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        home = std::make_unique<QTemporaryDir>();
        frame = std::make_unique<QProcess>();
        frame->start(QStringLiteral(QUORVEL_SIM_PROGRAM),
                     {u"serial"_s, u"--quit-at-end"_s, u"--link"_s, home->filePath(u"frame"_s)});
        QVERIFY(frame->waitForReadyRead(LongEnoughMs));
    }
    void cleanup()
    {
        frame->closeWriteChannel();
        QVERIFY(frame->waitForFinished(LongEnoughMs));
    }

    void a_signal_leaves_a_calibration_and_the_frame_as_it_was_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
    }
    void a_signal_leaves_a_calibration_and_the_frame_as_it_was()
    {
        QFETCH(int, signal);
        QProcess ctl;
        begin(ctl, {u"calibrate"_s, u"--screen"_s, u"1280x800"_s, u"--save"_s});
        QTRY_VERIFY_WITH_TIMEOUT(ctl.bytesAvailable() > 0, LongEnoughMs);
        QVERIFY(state().contains(u"calibration=waiting"_s) || state().contains(u"step=1"_s));
        ::kill(pid_t(ctl.processId()), signal);
        QVERIFY(ctl.waitForFinished(LongEnoughMs));
        QCOMPARE(ctl.exitStatus(), QProcess::NormalExit);
        QCOMPARE(ctl.exitCode(), 128 + signal);
        QCOMPARE(ctl.readAllStandardError(),
                 "quorvelctl: Ended before it was done. The calibration was discarded.\n");
        QVERIFY2(isIdle(), qPrintable(state()));
    }

    void a_reader_that_leaves_ends_a_calibration_and_the_frame_is_as_it_was()
    {
        QProcess shell;
        begin(shell, {u"calibrate"_s, u"--screen"_s, u"1280x800"_s, u"--save"_s}, u" | true"_s);
        QVERIFY(shell.waitForFinished(LongEnoughMs));
        QVERIFY(shell.readAllStandardError().startsWith("quorvelctl: The targets cannot be shown"));
        QVERIFY2(isIdle(), qPrintable(state()));
    }

    void a_full_disk_is_told_and_has_a_code()
    {
        QProcess shell;
        begin(shell, {u"status"_s}, u" >/dev/full"_s);
        QVERIFY(shell.waitForFinished(LongEnoughMs));
        QCOMPARE(shell.exitCode(), 7);
        QCOMPARE(shell.readAllStandardError().count('\n'), 1);
    }

    void closed_descriptors_are_no_serial_ports_data()
    {
        QTest::addColumn<QString>("closed");
        QTest::newRow("input") << u" <&-"_s;
        QTest::newRow("output") << u" >&-"_s;
        QTest::newRow("errors") << u" 2>&-"_s;
        QTest::newRow("all") << u" <&- >&- 2>&-"_s;
    }
    void closed_descriptors_are_no_serial_ports()
    {
        QFETCH(QString, closed);
        QProcess shell;
        begin(shell, {u"rotation"_s, u"set"_s, u"90"_s}, closed);
        QVERIFY(shell.waitForFinished(LongEnoughMs));
        QCOMPARE(shell.exitCode(), 0);
        QVERIFY2(state().contains(u"rotation=1"_s), qPrintable(state()));
    }

    void nothing_but_the_document_is_written()
    {
        for (const QString &command : {u"list"_s, u"status"_s, u"versions"_s}) {
            QProcess ctl;
            begin(ctl, {command, u"--json"_s});
            QVERIFY(ctl.waitForFinished(LongEnoughMs));
            QCOMPARE(ctl.exitCode(), 0);
            QCOMPARE(ctl.readAllStandardError(), "");
            const QByteArray out = ctl.readAllStandardOutput();
            QCOMPARE(out.count('\n'), 1);
            QVERIFY2(QJsonDocument::fromJson(out).isObject(), out);
        }
    }

    void two_programs_do_not_share_a_line()
    {
        QProcess first;
        begin(first, {u"watch"_s});
        QTRY_VERIFY_WITH_TIMEOUT(first.bytesAvailable() > 0, LongEnoughMs);
        QProcess second;
        begin(second, {u"status"_s});
        QVERIFY(second.waitForFinished(LongEnoughMs));
        QCOMPARE(second.exitCode(), 5);
        first.terminate();
        QVERIFY(first.waitForFinished(LongEnoughMs));
        QCOMPARE(first.exitCode(), 0);
        QProcess third;
        begin(third, {u"status"_s});
        QVERIFY(third.waitForFinished(LongEnoughMs));
        QCOMPARE(third.exitCode(), 0);
    }

private:
    // Starts the program; with something of a shell behind it, in one.
    void begin(QProcess &process, const QStringList &arguments, const QString &behind = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QUORVELCTL_PORT"_s, home->filePath(u"frame"_s));
        environment.insert(u"HOME"_s, home->path());
        process.setProcessEnvironment(environment);
        const QString program = QStringLiteral(QUORVELCTL_PROGRAM);
        if (behind.isEmpty())
            process.start(program, arguments);
        else
            process.start(u"sh"_s, {u"-c"_s, program + u' ' + arguments.join(u' ') + behind});
    }

    // What the frame says of itself.
    QString state()
    {
        frame->readAllStandardOutput();
        frame->write("state\n");
        QByteArray said;
        while (!said.contains("ok state") && frame->waitForReadyRead(LongEnoughMs))
            said += frame->readAllStandardOutput();
        return QString::fromUtf8(said.mid(said.indexOf("ok state")));
    }
    bool isIdle()
    {
        return state().contains(u"calibration=idle"_s) && state().contains(u"kept=0"_s);
    }

    std::unique_ptr<QTemporaryDir> home;
    std::unique_ptr<QProcess> frame;
};

QTEST_GUILESS_MAIN(TestCtlProgram)
#include "tst_ctl_program.moc"
