// SPDX-License-Identifier: GPL-3.0-or-later

// Every command on frames whose transfers fail, one after the other: each ends in time, with the
// right code and one sentence, and what a setting became is never kept quiet.
//
// A run mostly waits, so several run at once, each in a process of its own: this program, called
// with a command and a fault plan, prints what became of it.

#include "finger.h"
#include "run.h"
#include "steadyframe.h"
#include "tests/support/runs.h"
#include "tests/support/settingshome.h"
#include "tests/support/targets.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int RunsAtOnce = 4;
constexpr int ShortTimeoutMs = 700; // where most runs end without an answer
constexpr int UsualTimeoutMs = 3000;
// Of the longest command with several answers, each at the last moment; on a busy machine.
constexpr int LongestTimeouts = 10;

// All that a command can set.
QJsonObject stateOf(sim::SimAdapter &frame)
{
    // What is gone has forgotten a calibration.
    const bool plugged = frame.plugged();
    QJsonObject state;
    frame.inspect([&](const sim::Firmware &model) {
        const sim::LightState light = model.light(command::settings::AxisX, 3);
        state = {
            {u"rotation"_s, model.rotation()},
            {u"threshold"_s, model.adcSettings().threshold},
            {u"offset"_s, light.offset},
            {u"off"_s, light.off},
            {u"gestures"_s, model.gestures().has_value()},
            {u"calibrated"_s, model.calibrationKept()},
            {u"calibrating"_s, plugged && model.calibration() != sim::Firmware::Calibration::Idle}};
    });
    return state;
}

// A command on a frame that was as new, with what goes wrong.
QJsonObject run(const QString &command, const QString &faults, int timeoutMs)
{
    QString problem;
    const auto plan = sim::FaultPlan::parse(faults, u"plan"_s, &problem);
    if (!plan)
        return {{u"problem"_s, problem}};
    const auto frame = quickFrame({}, *plan);
    const SettingsHome home;
    QDir::setCurrent(home.folder());
    QElapsedTimer time;
    time.start();
    const Outcome outcome =
        runCtl(u"%1 --json --timeout %2"_s.arg(command).arg(timeoutMs / 1000.0),
               std::make_shared<SteadyFrame>(frame),
               [&](ctl::Session &session) { new Finger(&session, frame, Targets); });
    return {{u"code"_s, outcome.code},
            {u"out"_s, QString::fromUtf8(outcome.out)},
            {u"err"_s, QString::fromUtf8(outcome.err)},
            {u"state"_s, stateOf(*frame)},
            {u"transfers"_s, int(frame->transfers())},
            {u"ms"_s, int(time.elapsed())}};
}

// The value of a word "name=value" of the line that a simulated frame tells its state with.
QString valueOf(const QString &state, const QString &name)
{
    return state.section(u' ' + name + u'=', 1).section(u' ', 0, 0).trimmed();
}

// The same with the frame on a serial line, in a process of its own. Its state tells less. At the
// rate that it listens at first: on a busy machine it hears too late at which it is told another.
QJsonObject runOnLine(const QString &command, const QString &faults, int timeoutMs)
{
    const SettingsHome home;
    QDir::setCurrent(home.folder());
    const QString line = home.filePath(u"frame"_s);
    QFile plan(home.filePath(u"plan"_s));
    if (!plan.open(QIODevice::WriteOnly) || plan.write(faults.toUtf8()) < 0)
        return {};
    plan.close();
    QProcess frame;
    frame.start(QStringLiteral(QUORVEL_SIM_PROGRAM), {u"serial"_s, u"--quit-at-end"_s, u"--link"_s,
                                                      line, u"--faults"_s, plan.fileName()});
    if (!frame.waitForReadyRead(UsualTimeoutMs))
        return {};
    QTimer finger;
    QObject::connect(&finger, &QTimer::timeout, &frame,
                     [&frame] { frame.write("touch 240 135\n"); });
    finger.start(50);
    QElapsedTimer time;
    time.start();
    const Outcome outcome = runCtl(
        u"%1 --json --timeout %2 --port %3"_s.arg(command).arg(timeoutMs / 1000.0).arg(line));
    const auto ms = int(time.elapsed());
    finger.stop();
    frame.write("state\n");
    frame.closeWriteChannel();
    frame.waitForFinished(UsualTimeoutMs);
    const QString said = QString::fromUtf8(frame.readAllStandardOutput());
    const QString state = said.section(u"ok state"_s, -1).section(u'\n', 0, 0);
    return {{u"code"_s, outcome.code},
            {u"out"_s, QString::fromUtf8(outcome.out)},
            {u"err"_s, QString::fromUtf8(outcome.err)},
            {u"state"_s, QJsonObject{{u"rotation"_s, valueOf(state, u"rotation"_s)},
                                     {u"gestures"_s, valueOf(state, u"gestures"_s)},
                                     {u"calibrated"_s, valueOf(state, u"kept"_s)},
                                     {u"calibrating"_s, valueOf(state, u"plugged"_s) == u"1"_s
                                                            ? valueOf(state, u"calibration"_s)
                                                            : u"idle"_s}}},
            {u"transfers"_s, valueOf(state, u"transfers"_s).toInt()},
            {u"ms"_s, ms}};
}

// The same for several plans, in processes of their own. How: "usb" or "serial".
QList<QJsonObject> runAll(const QString &how, const QString &command, const QStringList &plans,
                          int timeoutMs)
{
    const auto runOf = [&](const QString &plan) {
        return QStringList{how, command, plan, QString::number(timeoutMs)};
    };
    Runs runs(RunsAtOnce);
    for (const QString &plan : plans)
        runs.add(runOf(plan));
    QList<QJsonObject> results;
    for (const QString &plan : plans)
        results += runs.take(runOf(plan));
    return results;
}

// "at 2 torn", "at 7 torn" and so on, up to the last transfer.
QString every(int step, int first, int last, const QString &fault)
{
    QStringList lines;
    for (int transfer = first; transfer <= last; transfer += step)
        lines += fault.arg(transfer);
    return lines.join(u'\n');
}

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private slots:
    void unplugged_data() { rows({3}); }
    void unplugged() { checkEach(u"at %1 unplug"_s); }

    void unplugged_and_back_at_once_data() { rows({3}); }
    void unplugged_and_back_at_once() { checkEach(u"at %1 unplug back 0ms"_s); }

    void silent_for_good_data() { rows({1, 6}); }
    void silent_for_good() { checkEach(u"at %1 silent 1000000"_s); }

    void silent_for_a_while_data() { rows({1, 6}); }
    void silent_for_a_while() { checkEach(u"at %1 silent 5"_s, 3); }

    void stalled_data() { rows({1, 6}); }
    void stalled() { checkEach(u"at %1 stall 200ms"_s); }

    void late_data() { rows({}); }
    void late() { checkTogether(u"at %1 late 100ms"_s); }

    void torn_data() { rows({}); }
    void torn() { checkTogether(u"at %1 torn"_s); }

    void repeated_data() { rows({}); }
    void repeated() { checkTogether(u"at %1 repeat"_s); }

    void noise_on_the_line_data() { rows({1, 6}); }
    void noise_on_the_line() { checkOnLine(u"at %1 noise 5"_s); }

    void bytes_lost_on_the_line_data() { rows({1, 6}); }
    void bytes_lost_on_the_line() { checkOnLine(u"at %1 lose 3"_s); }

    void a_line_that_hangs_up_data() { rows({3}); }
    void a_line_that_hangs_up() { checkOnLine(u"at %1 hangup"_s); }

private:
    void rows(const QList<int> &codes)
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QList<int>>("codes"); // besides 0
        for (const char *command :
             {"status", "versions", "rotation show", "rotation set 90", "reset", "adc show",
              "adc set --threshold 1234", "lights scan", "lights scan --gains", "lights show x 3",
              "lights set x 3 5", "lights off x 3", "lights on x 3", "gestures defaults",
              "calibrate --screen 1280x800 --touch-time 0.7 --save",
              "calibrate --screen 1280x800 --touch-time 0.7 --discard", "watch --for 0.3",
              "record traffic.pcap --for 0.3"})
            QTest::newRow(command) << QString::fromLatin1(command) << codes;
    }

    // At each transfer that the command makes, or each so many.
    void checkEach(const QString &fault, int step = 1)
    {
        check(
            [&](int transfers) {
                QStringList plans;
                for (int transfer = 1; transfer <= transfers; transfer += step)
                    plans += fault.arg(transfer);
                return plans;
            },
            ShortTimeoutMs);
    }

    // The same on a serial line.
    void checkOnLine(const QString &fault)
    {
        check(
            [&](int transfers) {
                QStringList plans;
                for (int transfer = 1; transfer <= transfers; ++transfer)
                    plans += fault.arg(transfer);
                return plans;
            },
            UsualTimeoutMs / 2, u"serial"_s);
    }

    // A fault that costs nothing but time: at each of the transfers, several in one run.
    void checkTogether(const QString &fault)
    {
        check(
            [&](int transfers) {
                constexpr int Step = 5;
                QStringList plans;
                for (int first = 1; first <= Step; ++first)
                    plans += every(Step, first, 2 * transfers, fault);
                return plans;
            },
            UsualTimeoutMs);
    }

    void check(const std::function<QStringList(int transfers)> &plansFor, int timeoutMs,
               const QString &how = u"usb"_s)
    {
        QFETCH(QString, command);
        QFETCH(QList<int>, codes);
        const QJsonObject well = runAll(how, command, {QString()}, UsualTimeoutMs).first();
        QVERIFY2(well[u"code"_s] == 0, qPrintable(well[u"err"_s].toString()));
        const QStringList plans = plansFor(well[u"transfers"_s].toInt());
        // What shows a state only leaves it as it was.
        const QJsonObject asNew = runAll(how, u"rotation show"_s, {QString()}, UsualTimeoutMs)
                                      .first()[u"state"_s]
                                      .toObject();
        const QList<QJsonObject> spoilt = runAll(how, command, plans, timeoutMs);
        for (int i = 0; i < plans.size(); ++i) {
            const QString problem = problemOf(spoilt[i], well, codes, asNew, timeoutMs);
            if (!problem.isEmpty())
                QFAIL(qPrintable(u"%1: %2\n%3%4"_s.arg(plans[i], problem,
                                                       spoilt[i][u"out"_s].toString(),
                                                       spoilt[i][u"err"_s].toString())));
        }
    }

    static QString problemOf(const QJsonObject &spoilt, const QJsonObject &well,
                             const QList<int> &codes, const QJsonObject &asNew, int timeoutMs)
    {
        if (spoilt.contains(u"problem"_s))
            return spoilt[u"problem"_s].toString();
        const int code = spoilt[u"code"_s].toInt(-1);
        const QString err = spoilt[u"err"_s].toString();
        if (spoilt[u"ms"_s].toInt() > LongestTimeouts * timeoutMs)
            return u"it took too long"_s;
        if (code != 0 && !codes.contains(code))
            return u"it ended with %1"_s.arg(code);
        if (code == 0)
            return err.isEmpty() ? problemOfSuccess(spoilt, well) : u"it complains"_s;
        if (err.count(u'\n') != 1 || !err.startsWith(u"quorvelctl: "_s))
            return u"it is not one sentence"_s;
        const QByteArray last = spoilt[u"out"_s].toString().toUtf8().trimmed().split('\n').last();
        const QJsonObject error = QJsonDocument::fromJson(last)[u"error"_s].toObject();
        if (error[u"code"_s] != code)
            return u"the document says something else"_s;
        // A frame that says something else than it was told is told of in words.
        if (spoilt[u"state"_s] != asNew && !error.contains(u"unconfirmed"_s) &&
            !error[u"message"_s].toString().contains(u" says"_s))
            return u"what was set is not told of"_s;
        return {};
    }

    static QString problemOfSuccess(const QJsonObject &spoilt, const QJsonObject &well)
    {
        QJsonObject state = spoilt[u"state"_s].toObject();
        const QJsonObject wanted = well[u"state"_s].toObject();
        // The frame does not tell these: they were sent, and may have been lost, the end of a
        // calibration too.
        for (const QString &untold : {u"gestures"_s, u"calibrated"_s, u"calibrating"_s})
            state[untold] = wanted[untold];
        return state == wanted ? QString() : u"a setting is said to be made and is not"_s;
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--run"_s) {
        QLoggingCategory::setFilterRules(u"quorvel.link=false"_s);
        const auto runOne = arguments.value(2) == u"serial"_s ? runOnLine : run;
        const QJsonObject result =
            runOne(arguments.value(3), arguments.value(4), arguments.value(5).toInt());
        std::fputs(QJsonDocument(result).toJson(QJsonDocument::Compact).constData(), stdout);
        return 0;
    }
    TestFaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_faults.moc"
