// SPDX-License-Identifier: GPL-3.0-or-later

// The real program, started as a user starts it.

#include "tests/support/deadpipe.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString Program = QStringLiteral(QUORVEL_PROGRAM);

// Windows on the screen with this title, as the X server knows them.
int visibleWindows(const QString &title)
{
    QProcess xdotool;
    xdotool.start(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, title});
    if (!xdotool.waitForFinished(5000))
        return -1;
    return int(xdotool.readAllStandardOutput().count('\n'));
}

bool shown()
{
    return visibleWindows(u"^Quorvel$"_s) == 1;
}

// Of the main window, without its frame; empty while there is none.
QByteArray xdotoolSays(const QStringList &words)
{
    QProcess xdotool;
    xdotool.start(u"xdotool"_s,
                  QStringList{u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"^Quorvel$"_s} +
                      words);
    return xdotool.waitForFinished(5000) ? xdotool.readAllStandardOutput() : QByteArray();
}

QByteArray placeOfWindow()
{
    for (const QByteArray &line : xdotoolSays({u"getwindowgeometry"_s}).split('\n')) {
        if (line.contains("Position:"))
            return line.simplified();
    }
    return {};
}

bool demoShown()
{
    return visibleWindows(u"^Quorvel .simulated touch frame.$"_s) == 1;
}

struct Result
{
    int code = -1;
    QByteArray output;
    QByteArray errors;
};

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private:
    std::vector<std::unique_ptr<QProcess>> running;

    QProcess *start(const QStringList &arguments, const QString &directory = QDir::tempPath())
    {
        auto process = std::make_unique<QProcess>();
        process->setWorkingDirectory(directory);
        process->start(Program, arguments);
        process->waitForStarted();
        running.push_back(std::move(process));
        return running.back().get();
    }
    Result run(const QStringList &arguments, const QString &directory = QDir::tempPath())
    {
        QProcess *process = start(arguments, directory);
        if (!process->waitForFinished(20000) || process->exitStatus() != QProcess::NormalExit)
            return {};
        return {process->exitCode(), process->readAllStandardOutput(),
                process->readAllStandardError()};
    }
    static Result runWithoutDisplay(const QStringList &arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DISPLAY"_s);
        environment.remove(u"WAYLAND_DISPLAY"_s);
        process.setProcessEnvironment(environment);
        process.start(Program, arguments);
        if (!process.waitForFinished(20000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), process.readAllStandardOutput(),
                process.readAllStandardError()};
    }
    static bool endsWith(QProcess *process, int code)
    {
        return (process->state() == QProcess::NotRunning || process->waitForFinished(10000)) &&
               process->exitStatus() == QProcess::NormalExit && process->exitCode() == code;
    }
    // A start in the tray has no window to wait for: it is there when it can be shown.
    QProcess *startHidden(const QStringList &arguments)
    {
        QProcess *process = start(arguments);
        QTest::qWait(1000);
        return process;
    }

private slots:
    void cleanup()
    {
        for (const auto &process : running) {
            process->kill();
            process->waitForFinished();
        }
        running.clear();
    }

    void a_start_shows_the_window_and_close_ends_it()
    {
        QProcess *first = start({});
        QTRY_VERIFY(shown());
        QCOMPARE(run({u"-close"_s}).code, 0);
        QVERIFY(endsWith(first, 0));
    }

    void close_anywhere_inside_an_argument_counts()
    {
        QProcess *first = start({});
        QTRY_VERIFY(shown());
        QCOMPARE(run({u"please-close-now"_s}).code, 0);
        QVERIFY(endsWith(first, 0));
    }

    void close_without_a_running_instance_ends_with_0()
    {
        QElapsedTimer time;
        time.start();
        QCOMPARE(run({u"-close"_s}).code, 0);
        QVERIFY(time.elapsed() < 8000);
    }

    void an_argument_that_merely_contains_the_option_starts_silently()
    {
        QProcess *first = startHidden({u"-silent"_s});
        QCOMPARE(first->state(), QProcess::Running);
        QVERIFY(!shown());
    }

    void a_second_start_shows_the_first_window_even_when_silent()
    {
        QProcess *first = startHidden({u"-s"_s});
        QVERIFY(!shown());
        QCOMPARE(run({u"-s"_s}).code, 0);
        QTRY_VERIFY(shown());
        QCOMPARE(first->state(), QProcess::Running);
    }

    void a_killed_first_instance_is_replaced()
    {
        QProcess *first = start({});
        QTRY_VERIFY(shown());
        first->kill();
        first->waitForFinished();
        QProcess *second = start({});
        QTRY_VERIFY(shown());
        QCOMPARE(second->state(), QProcess::Running);
    }

    void a_start_right_after_close_stays()
    {
        QProcess *first = start({});
        QTRY_VERIFY(shown());
        QCOMPARE(run({u"-close"_s}).code, 0);
        QProcess *second = start({});
        QVERIFY(endsWith(first, 0));
        QTest::qWait(1500);
        QCOMPARE(second->state(), QProcess::Running);
        QVERIFY(shown());
    }

    void qt_options_do_not_start_silently()
    {
        start({u"-style"_s, u"fusion"_s});
        QTRY_VERIFY(shown());
    }

    void the_demonstration_leaves_a_running_instance_alone()
    {
        QProcess *real = start({});
        QTRY_VERIFY(shown());
        QProcess *demo = start({u"--demo"_s});
        QTRY_VERIFY(demoShown());
        QCOMPARE(run({u"--demo"_s, u"-close"_s}).code, 0);
        QVERIFY(endsWith(demo, 0));
        QCOMPARE(real->state(), QProcess::Running);
        QVERIFY(shown());
    }

    void a_start_shows_the_window_where_the_one_before_was_left()
    {
        constexpr int SettleMs = 500; // until the window manager has placed it
        QVERIFY(QDir::home().mkpath(u".config"_s));
        QProcess *first = start({});
        QTRY_VERIFY(shown());
        QTest::qWait(SettleMs);
        const QByteArray usual = placeOfWindow();
        xdotoolSays({u"windowmove"_s, u"101"_s, u"302"_s});
        QTRY_VERIFY(placeOfWindow() != usual);
        QTest::qWait(SettleMs);
        const QByteArray left = placeOfWindow();
        QCOMPARE(run({u"-close"_s}).code, 0);
        QVERIFY(endsWith(first, 0));
        start({});
        QTRY_VERIFY(shown());
        QTest::qWait(SettleMs);
        QTRY_COMPARE(placeOfWindow(), left);
    }

    // It is compiled into a library, from where it comes along only if somebody asks for it.
    void the_window_has_its_icon()
    {
        start({});
        QTRY_VERIFY(shown());
        QProcess xprop;
        xprop.start(u"xprop"_s, {u"-name"_s, u"Quorvel"_s, u"32c"_s, u"_NET_WM_ICON"_s});
        QVERIFY(xprop.waitForFinished(5000));
        const QByteArray icon = xprop.readAllStandardOutput();
        QVERIFY2(icon.startsWith("_NET_WM_ICON(CARDINAL) = "), icon);
    }

    void the_demonstration_leaves_no_settings_behind()
    {
        const auto files = [] {
            QStringList found;
            QDirIterator all(QDir::homePath(),
                             QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                             QDirIterator::Subdirectories);
            while (all.hasNext()) {
                const QString path = all.next();
                if (!path.contains("/.cache/"_L1))
                    found.append(path);
            }
            found.sort();
            return found;
        };
        QVERIFY(QDir::home().mkpath(u".config"_s));
        const QStringList before = files();
        QProcess *demo = start({u"--demo"_s});
        QTRY_VERIFY(demoShown());
        QCOMPARE(run({u"--demo"_s, u"-close"_s}).code, 0);
        QVERIFY(endsWith(demo, 0));
        QCOMPARE(files(), before);
        QVERIFY(demo->readAllStandardOutput().endsWith("calibration: not kept\n"));
    }

    void the_demonstration_finds_its_frame_and_asks_for_the_version()
    {
        QProcess *demo = start({u"--demo"_s});
        QByteArray output;
        QTRY_VERIFY((output += demo->readAllStandardOutput()).contains("[A3 80 "));
        QVERIFY(output.contains("[A3 00 00]"));
    }

    void a_wrong_profile_is_refused_with_file_line_and_reason()
    {
        QTemporaryDir directory;
        QFile profile(directory.filePath(u"wrong.profile"_s));
        QVERIFY(profile.open(QIODevice::WriteOnly));
        profile.write("# a frame\nlights-x 600\n");
        profile.close();
        const Result result = run({u"--demo"_s, u"--profile="_s + profile.fileName()});
        QCOMPARE(result.code, 2);
        QVERIFY(result.errors.startsWith(profile.fileName().toLocal8Bit() + ":2: lights-x"));
        QCOMPARE(result.errors.count('\n'), 1);
    }

    void a_missing_fault_plan_is_refused()
    {
        const Result result = run({u"--demo"_s, u"--faults=/no/such/plan"_s});
        QCOMPARE(result.code, 2);
        QVERIFY(result.errors.contains("/no/such/plan"));
        QVERIFY(result.errors.contains("No such file"));
    }

    void an_unplugged_demonstration_comes_back()
    {
        QTemporaryDir directory;
        QFile plan(directory.filePath(u"plan"_s));
        QVERIFY(plan.open(QIODevice::WriteOnly));
        plan.write("at 20 unplug back 1s\n");
        plan.close();
        QProcess *demo = start({u"--demo"_s, u"--faults="_s + plan.fileName()});
        QByteArray output;
        QTRY_VERIFY_WITH_TIMEOUT((output += demo->readAllStandardOutput()).count("[A3 00 00]") == 2,
                                 10000);
    }

    void help_and_version_need_no_display_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("help") << u"--help"_s << QByteArray("Usage: quorvel [options]\n");
        QTest::newRow("version") << u"--version"_s << QByteArray("quorvel 3.0.1.0\n");
    }
    void help_and_version_need_no_display()
    {
        QFETCH(const QString, option);
        QFETCH(const QByteArray, text);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DISPLAY"_s);
        process.setProcessEnvironment(environment);
        process.start(Program, {option});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(process.readAllStandardOutput().startsWith(text));
        QCOMPARE(process.readAllStandardError(), QByteArray());
    }

    void without_a_display_one_sentence_says_so()
    {
        const Result start = runWithoutDisplay({});
        QCOMPARE(start.code, 1);
        QCOMPARE(start.errors.count('\n'), 1);
        QVERIFY2(start.errors.startsWith("There is no display"), start.errors.constData());
        QCOMPARE(runWithoutDisplay({u"-close"_s}).code, 0);
    }

    void what_the_toolkit_warns_of_at_the_start_is_told()
    {
        QVERIFY(qputenv("QT_STYLE_OVERRIDE", "of-nowhere"));
        const auto plain = qScopeGuard([] { qunsetenv("QT_STYLE_OVERRIDE"); });
        const Result start = run({u"-close"_s});
        QCOMPARE(start.code, 0);
        QVERIFY2(start.errors.contains("of-nowhere"), start.errors);
    }

    void close_reaches_the_running_instance_without_a_display()
    {
        QProcess *first = start({});
        QTRY_VERIFY_WITH_TIMEOUT(shown(), 10000);
        QCOMPARE(runWithoutDisplay({u"-close"_s}).code, 0);
        QVERIFY(endsWith(first, 0));
    }

    void an_argument_that_nobody_knows_is_told_with_code_2()
    {
        const Result wrong = run({u"--nonense"_s});
        QCOMPARE(wrong.code, 2);
        QCOMPARE(wrong.errors, QByteArray("There is no option --nonense; --help lists all.\n"));
        QCOMPARE(run({u"--profile=x"_s}).code, 2);
        QCOMPARE(run({u"--nonense"_s, u"-close"_s}).code, 0);
    }

    void a_hidden_start_says_which_argument_asked_for_it()
    {
        QProcess *process = startHidden({u"-silent"_s});
        QCOMPARE(run({u"-close"_s}).code, 0);
        QVERIFY(endsWith(process, 0));
        QCOMPARE(process->readAllStandardError(),
                 QByteArray("Started hidden in the tray: the argument -silent asks for it.\n"));
    }

    void the_language_is_that_of_the_session_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QByteArray>("words");
        QTest::newRow("German") << u"de_DE.UTF-8"_s
                                << QByteArray("Unsichtbar im Infobereich gestartet: Das Argument "
                                              "-silent verlangt es.\n");
        QTest::newRow("Chinese") << u"zh_CN.UTF-8"_s
                                 << QByteArray("已隐藏启动到系统托盘：这是参数 -silent 的要求。\n");
        QTest::newRow("none that it speaks")
            << u"fr_FR.UTF-8"_s
            << QByteArray("Started hidden in the tray: the argument -silent asks for it.\n");
    }
    void the_language_is_that_of_the_session()
    {
        QFETCH(const QString, language);
        QFETCH(const QByteArray, words);
        QVERIFY(qputenv("LANGUAGE", language.toLatin1()));
        const auto plain = qScopeGuard([] { qunsetenv("LANGUAGE"); });
        QProcess *process = startHidden({u"-silent"_s});
        QCOMPARE(run({u"-close"_s}).code, 0);
        QVERIFY(endsWith(process, 0));
        QCOMPARE(process->readAllStandardError(), words);
    }

    void the_name_of_a_fault_plan_hides_nothing()
    {
        QTemporaryDir directory;
        QFile plan(directory.filePath(u"long-stall.faults"_s));
        QVERIFY(plan.open(QIODevice::WriteOnly) && plan.write("at 3 stall 10ms\n") > 0);
        plan.close();
        start({u"--demo"_s, u"--faults="_s + plan.fileName()});
        QTRY_VERIFY_WITH_TIMEOUT(demoShown(), 10000);
    }

    void a_first_instance_that_hangs_is_told_of_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("second start") << QStringList();
        QTest::newRow("close") << QStringList{u"-close"_s};
    }
    void a_first_instance_that_hangs_is_told_of()
    {
        QFETCH(const QStringList, arguments);
        QProcess *first = start({});
        QTRY_VERIFY_WITH_TIMEOUT(shown(), 10000);
        QCOMPARE(::kill(pid_t(first->processId()), SIGSTOP), 0);
        const auto begin = std::chrono::steady_clock::now();
        const Result second = run(arguments);
        const auto took = std::chrono::steady_clock::now() - begin;
        ::kill(pid_t(first->processId()), SIGCONT);
        QCOMPARE(second.code, 1);
        QVERIFY2(second.errors.contains("does not answer"), second.errors.constData());
        QVERIFY(took >= std::chrono::seconds(5));
        QVERIFY(took < std::chrono::seconds(15));
    }

    void signals_end_the_program_in_good_order_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("SIGINT") << SIGINT;
    }
    void signals_end_the_program_in_good_order()
    {
        QFETCH(const int, signal);
        QProcess *process = start({u"--demo"_s});
        QTRY_VERIFY_WITH_TIMEOUT(demoShown(), 10000);
        QCOMPARE(::kill(pid_t(process->processId()), signal), 0);
        QVERIFY(endsWith(process, 0));
        const QByteArray output = process->readAllStandardOutput();
        QVERIFY2(output.endsWith("calibration: not kept\n"), output.right(300).constData());
    }

    void a_calibration_is_discarded_when_the_program_has_to_end_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGHUP") << SIGHUP;
        QTest::newRow("the display goes") << 0;
    }
    void a_calibration_is_discarded_when_the_program_has_to_end()
    {
        QFETCH(const int, signal);
        // A display that may go: this test has its own.
        QProcess server;
        server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x24"_s,
                                 u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
        QVERIFY(server.waitForReadyRead(10000));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DISPLAY"_s, u':' + QString::fromLatin1(server.readLine().trimmed()));
        QProcess tool;
        tool.setProcessEnvironment(environment);
        tool.start(Program, {u"--demo"_s});
        QProcess hand;
        hand.setProcessEnvironment(environment);
        hand.start(u"xdotool"_s, {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--name"_s,
                                  u"^Quorvel .simulated"_s, u"mousemove"_s, u"--window"_s, u"%1"_s,
                                  u"296"_s, u"77"_s, u"click"_s, u"1"_s});
        QVERIFY(hand.waitForFinished(15000));
        QByteArray output;
        const auto says = [&tool, &output](const char *words) {
            tool.waitForReadyRead(20);
            output += tool.readAllStandardOutput();
            return output.contains(words);
        };
        QTRY_VERIFY_WITH_TIMEOUT(says("calibration: step 1"), 15000);
        // What is said for whoever looks closer is said while it happens.
        QByteArray errors;
        QTRY_VERIFY((errors += tool.readAllStandardError()).contains("CAL_STEP1"));
        if (signal == 0)
            server.kill();
        else
            QCOMPARE(::kill(pid_t(tool.processId()), signal), 0);
        QTRY_VERIFY_WITH_TIMEOUT(says("calibration: discard"), 10000);
        QVERIFY(endsWith(&tool, signal == 0 ? 1 : 0));
        server.kill();
        server.waitForFinished();
    }

    void output_that_nobody_reads_does_not_end_the_program()
    {
        QProcess process;
        writeToNobody(process);
        // It tells of every frame.
        process.start(Program, {u"--demo"_s});
        const auto killed = qScopeGuard([&process] {
            process.kill();
            process.waitForFinished();
        });
        QTRY_VERIFY_WITH_TIMEOUT(process.state() == QProcess::NotRunning || demoShown(), 10000);
        QVERIFY(!process.waitForFinished(500));
        QCOMPARE(process.state(), QProcess::Running);
        QCOMPARE(::kill(pid_t(process.processId()), SIGTERM), 0);
        QVERIFY(endsWith(&process, 0));
    }

    void a_start_has_its_exit_code_although_nobody_reads_what_it_says_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<int>("code");
        QTest::newRow("help") << u"--help"_s << 0;
        QTest::newRow("a complaint") << u"--nonense"_s << 2;
    }
    void a_start_has_its_exit_code_although_nobody_reads_what_it_says()
    {
        QFETCH(const QString, argument);
        QFETCH(const int, code);
        QProcess process;
        writeToNobody(process);
        process.start(Program, {argument});
        QVERIFY(endsWith(&process, code));
    }

    void no_option_of_ours_contains_a_described_one()
    {
        const Result help = run({u"--help"_s});
        QCOMPARE(help.code, 0);
        int options = 0;
        for (const QByteArray &line : help.output.split('\n')) {
            const QByteArray option = line.trimmed().split(' ').first();
            if (!option.startsWith("--"))
                continue;
            ++options;
            QVERIFY2(!option.contains("-close") && !option.contains("-s"), option.constData());
        }
        QCOMPARE(options, 6);
    }

    void plug_ins_that_others_could_have_written_are_left_out()
    {
        QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkdir(u"plugins"_s));
        const QByteArray path = directory.filePath(u"plugins"_s).toLocal8Bit();
        QCOMPARE(::chmod(path.constData(), 0777), 0);
        const Result refused = run({u"-close"_s}, directory.path());
        QCOMPARE(refused.code, 0);
        QVERIFY2(refused.errors.contains("plug-in folder ./plugins is left out"),
                 refused.errors.constData());
        QCOMPARE(::chmod(path.constData(), 0755), 0);
        const Result accepted = run({u"-close"_s}, directory.path());
        QVERIFY2(!accepted.errors.contains("plug-in"), accepted.errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
