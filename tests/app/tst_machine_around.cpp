// SPDX-License-Identifier: GPL-3.0-or-later

// The real program while what it runs on goes away under it and comes back: sleep, window manager,
// tray, message bus, home directory, descriptors; and signals at any moment. The desktop comes
// without window manager and tray: the test has its own.

#include "config/lastcalibration.h"
#include "tests/support/serialtool.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <csignal>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace outside;

namespace {

const QString Quorvel = QStringLiteral(QUORVEL_PROGRAM);
const QByteArray Simulated = "Quorvel (simulated touch frame)";
const QByteArray AskedForVersion = "[A3 00 00]";
const QByteArray NoRoom = "cannot be opened (Too many open files). Close windows and programs that "
                          "are not needed, or start this one again.";
constexpr QRect TrayIcons(0, 0, 32, 32); // the largest

// The demonstration, whose frame a click on the calibration screen touches.
class Demo
{
public:
    QString begin(const QStringList &arguments = {})
    {
        if (!tool.start(Quorvel, QStringList{u"--demo"_s} + arguments))
            return u"the tool does not start"_s;
        const auto shows = [this] {
            const auto shown = windowSized(Simulated, MainWindowSize);
            window = shown.value_or(Window()).geometry.topLeft();
            return shown.has_value();
        };
        return inTime(shows) ? QString()
                             : u"the tool shows no window: %1%2"_s.arg(
                                   QString::fromUtf8(tool.errors), QString::fromUtf8(tool.output));
    }
    QString touch(int first, int last)
    {
        for (int target = first; target <= last; ++target) {
            const QPoint place = targetAt(target);
            if (!inTime([place] { return showsTarget(place); }) || !inTime([&] {
                    return said("calibration: step " + QByteArray::number(target + 1));
                }))
                return u"target %1 is not shown"_s.arg(target);
            const QByteArray next =
                target + 1 < Targets ? "step " + QByteArray::number(target + 2) : "check";
            if (!clickUntil(place, [&] { return said("calibration: " + next); }))
                return u"target %1 was not touched"_s.arg(target);
        }
        return {};
    }
    bool opensCalibration() { return clickUntil(window + CalibrationButton, showsCalibration); }
    // A calibration that is open, from this target to where it is kept.
    QString keepCalibration(int first = 0)
    {
        if (QString problem = touch(first, Targets - 1); !problem.isEmpty())
            return problem;
        if (!inTime([] {
                return question() && !showsCalibration() && !isBlank(seen(question()->geometry));
            }))
            return u"the question does not come"_s;
        if (!clickUntil(
                question()->geometry.topLeft() + YesButton,
                [this] { return said("calibration: save"); }, SilenceMs))
            return u"the calibration is not saved"_s;
        return {};
    }
    bool said(const QByteArray &words) const
    {
        return tool.output.contains("host > frame  " + words);
    }
    bool endsWell()
    {
        Program second;
        return second.start(Quorvel, {u"--demo"_s, u"-close"_s}) && second.endsWell() &&
               tool.endsWell();
    }
    bool signalled(int signal) { return ::kill(pid_t(tool.process.processId()), signal) == 0; }

    Program tool;
    QPoint window; // the main one's corner
};

// Part of a desktop, which ends when it is told to.
class Part
{
public:
    bool start(const QString &program, const QStringList &arguments,
               const std::function<bool()> &isThere)
    {
        process.start(program, arguments);
        return process.waitForStarted() && inTime(isThere);
    }
    bool end()
    {
        process.kill();
        return process.waitForFinished();
    }

    QProcess process;
};

QByteArray output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() ? process.readAllStandardOutput() : QByteArray();
}

bool managesWindows()
{
    return !property(xcb_setup_roots_iterator(xcb_get_setup(display())).data->root,
                     "_NET_SUPPORTING_WM_CHECK")
                .isEmpty();
}

// Where the program's icon is in a tray; nothing without one.
std::optional<QPoint> iconOf(const Program &tool)
{
    const QList<QByteArray> ids = output(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--pid"_s,
                                                        QString::number(tool.process.processId())})
                                      .split('\n');
    for (const QByteArray &id : ids) {
        QRect place;
        for (const QByteArray &line :
             output(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, QString::fromLatin1(id)})
                 .split('\n')) {
            const int value = line.mid(line.indexOf('=') + 1).toInt();
            if (line.startsWith("X="))
                place.moveLeft(value);
            else if (line.startsWith("Y="))
                place.moveTop(value);
            else if (line.startsWith("WIDTH="))
                place.setWidth(value);
            else if (line.startsWith("HEIGHT="))
                place.setHeight(value);
        }
        if (place.width() > 1 && place.width() <= TrayIcons.width() && place.height() > 1 &&
            place.height() <= TrayIcons.height())
            return place.center();
    }
    return {};
}

} // namespace

class TestMachineAround : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Part> manager;
    std::unique_ptr<Part> tray;

    bool startManager()
    {
        manager = std::make_unique<Part>();
        return manager->start(u"openbox"_s, {u"--sm-disable"_s}, managesWindows);
    }
    bool startTray()
    {
        tray = std::make_unique<Part>();
        return tray->start(
            u"trayer"_s,
            {u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--widthtype"_s, u"request"_s,
             u"--height"_s, u"28"_s, u"--SetDockType"_s, u"true"_s},
            [] {
                return !output(u"xdotool"_s, {u"search"_s, u"--class"_s, u"^trayer$"_s}).isEmpty();
            });
    }
    static bool setDescriptors(const Program &tool, rlim_t most)
    {
        rlimit limit{};
        const auto pid = pid_t(tool.process.processId());
        if (::prlimit(pid, RLIMIT_NOFILE, nullptr, &limit) != 0)
            return false;
        limit.rlim_cur = std::min(most, limit.rlim_max);
        return ::prlimit(pid, RLIMIT_NOFILE, &limit, nullptr) == 0;
    }
    // The lowest number that is free.
    static rlim_t nextDescriptor(const Program &tool)
    {
        rlim_t next = 0;
        while (QFile::symLinkTarget(tool.folder() + u"fd/%1"_s.arg(next)) != QString())
            ++next;
        return next;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(startManager());
        QVERIFY(startTray());
        QVERIFY(QDir::home().mkpath(u".config"_s));
    }
    void cleanupTestCase()
    {
        tray->end();
        manager->end();
    }

    void a_frame_that_left_while_the_machine_slept_is_linked_and_calibrated()
    {
        QTemporaryDir place;
        QFile plan(place.filePath(u"plan"_s));
        QVERIFY(plan.open(QIODevice::WriteOnly) && plan.write("at 12 unplug back 300ms\n") > 0);
        plan.close();
        Demo demo;
        QCOMPARE(demo.begin({u"--faults="_s + plan.fileName()}), QString());
        QVERIFY(inTime([&] { return demo.tool.output.contains("unplugged"); }));
        QVERIFY(demo.signalled(SIGSTOP));
        QTest::qWait(1000);
        QVERIFY(demo.signalled(SIGCONT));
        QVERIFY(inTime([&] { return demo.tool.output.count(AskedForVersion) == 2; }));

        // It sleeps once more, in the middle of a calibration.
        QVERIFY(demo.opensCalibration());
        QCOMPARE(demo.touch(0, 1), QString());
        QVERIFY(demo.signalled(SIGSTOP));
        QTest::qWait(1000);
        QVERIFY(demo.signalled(SIGCONT));
        QCOMPARE(demo.keepCalibration(2), QString());
        QVERIFY(demo.endsWell());
        QVERIFY(demo.tool.output.endsWith("calibration: kept\n"));
    }

    void a_calibration_outlives_the_window_manager()
    {
        Demo demo;
        QCOMPARE(demo.begin(), QString());
        QVERIFY(demo.opensCalibration());
        QCOMPARE(demo.touch(0, 0), QString());
        QVERIFY(manager->end());
        QTest::qWait(300);
        QVERIFY(startManager());
        QVERIFY(inTime(showsCalibration));
        QCOMPARE(demo.keepCalibration(1), QString());
        // The next one too, which is left by the keyboard.
        QVERIFY(inTime([] { return !question(); }));
        QVERIFY(demo.opensCalibration());
        QVERIFY(press(u"Escape"_s));
        QVERIFY(inTime([] { return !showsCalibration(); }));
        QVERIFY(demo.endsWell());
        // No frame has been calibrated by it.
        QVERIFY(!QFile::exists(LastCalibration::filePath()));
    }

    // Targets that are elsewhere would calibrate wrongly.
    void every_showing_of_the_calibration_covers_the_whole_screen()
    {
        constexpr int Showings = 3;
        Demo demo;
        QCOMPARE(demo.begin(), QString());
        for (int i = 0; i < Showings; ++i) {
            QVERIFY(demo.opensCalibration());
            QVERIFY2(inTime([] { return showsTarget(targetAt(0)); }),
                     qPrintable(QString::number(i)));
            QVERIFY(press(u"Escape"_s));
            QVERIFY(inTime([] { return !showsCalibration(); }));
        }
        QVERIFY(demo.endsWell());
    }

    void the_icon_goes_into_the_next_tray()
    {
        Demo demo;
        QCOMPARE(demo.begin(), QString());
        QVERIFY(inTime([&] { return iconOf(demo.tool).has_value(); }));
        QVERIFY(press(u"alt+F4"_s));
        QVERIFY(inTime([] { return !windowTitled(Simulated); }));
        QVERIFY(tray->end());
        QVERIFY(inTime([&] { return !iconOf(demo.tool); }));
        QVERIFY(startTray());
        QVERIFY(inTime([&] { return iconOf(demo.tool).has_value(); }));
        QVERIFY(inTime([&] {
            const auto icon = iconOf(demo.tool);
            return icon && click(*icon) &&
                   within(1000, [] { return windowTitled(Simulated).has_value(); });
        }));
        QVERIFY(demo.endsWell());
    }

    void without_a_tray_it_goes_on_when_its_last_window_is_closed()
    {
        const auto closes = [](const QByteArray &title) {
            return inTime([&title] {
                return press(u"alt+F4"_s) && within(1000, [&] { return !windowTitled(title); });
            });
        };
        QVERIFY(tray->end());
        const auto back = qScopeGuard([this] { startTray(); });
        Demo demo;
        QCOMPARE(demo.begin(), QString());
        QVERIFY(closes(Simulated));
        const QByteArray told = "Quorvel goes on";
        const QByteArray manual = "Quorvel manual";
        QVERIFY(inTime([&] { return windowTitled(told).has_value(); }));
        QVERIFY(inTime([&] {
            return press(u"F1"_s) && within(1000, [&] { return windowTitled(manual).has_value(); });
        }));
        QVERIFY(closes(manual));
        QVERIFY(closes(told));
        QVERIFY(!demo.tool.process.waitForFinished(500));
        Program second;
        QVERIFY(second.start(Quorvel, {u"--demo"_s}));
        QVERIFY(inTime([] { return windowTitled(Simulated).has_value(); }));
        QVERIFY(second.endsWell());
        QVERIFY(demo.endsWell());
    }

    void the_message_bus_may_go()
    {
        Part bus;
        bus.process.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
        QVERIFY(bus.process.waitForReadyRead());
        const QByteArray address = bus.process.readLine().trimmed();
        const QByteArray usual = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        const auto back = qScopeGuard([&usual] { qputenv("DBUS_SESSION_BUS_ADDRESS", usual); });
        Demo demo;
        QCOMPARE(demo.begin(), QString());
        const QString path = QString::fromLatin1(address.mid(address.indexOf('=') + 1));
        QVERIFY(!path.isEmpty());
        QVERIFY(bus.end());
        QVERIFY(demo.opensCalibration());
        QCOMPARE(demo.keepCalibration(), QString());
        QVERIFY(demo.endsWell());
    }

    void without_descriptors_a_port_is_not_opened_and_that_is_said_and_with_them_it_is()
    {
        SerialTool serial;
        QCOMPARE(serial.begin({u"serial"_s}), QString());
        const auto connection = openFromMenu(serial.window, u"c"_s, "Connect", ConnectSize);
        QVERIFY(connection);
        const QPoint dialog = connection->geometry.topLeft();
        // For none more, and for one: a port takes two.
        for (const rlim_t room : {rlim_t(0), rlim_t(1)}) {
            serial.tool.errors.clear();
            QVERIFY(serial.frame.does("unplug"));
            QVERIFY(serial.frame.does("plug"));
            QVERIFY(inTime([&] { return serial.tool.errors.contains(" is gone."); }));
            const rlim_t next = nextDescriptor(serial.tool);
            QVERIFY(next > 3);
            QVERIFY(setDescriptors(serial.tool, next + room));
            const qsizetype rates = serial.frame.heard("host > frame  serial rate");
            QVERIFY2(clickUntil(
                         dialog + OpenButton, [&] { return serial.tool.errors.contains(NoRoom); },
                         SilenceMs),
                     serial.tool.errors);
            QVERIFY2(!serial.tool.errors.contains("in use"), serial.tool.errors);
            QCOMPARE(serial.frame.heard("host > frame  serial rate"), rates);

            QVERIFY(setDescriptors(serial.tool, RLIM_INFINITY));
            QVERIFY(clickUntil(
                dialog + OpenButton,
                [&] { return serial.frame.heard("host > frame  serial rate") > rates; },
                SilenceMs));
        }
        QVERIFY(press(u"Escape"_s));
        QCOMPARE(serial.end(), QString());
    }

    void settings_reach_the_frame_without_a_home_and_are_kept_when_it_is_back()
    {
        const QString settings = QDir::homePath() + u"/.config/ForQuorvel"_s;
        const QString away = QDir::homePath() + u".away"_s;
        const auto kept = [&settings](const QByteArray &duration) {
            QFile file(settings);
            return file.open(QIODevice::ReadOnly) && file.readAll().contains(duration);
        };
        SerialTool serial;
        QCOMPARE(serial.begin({u"serial"_s}), QString());
        QCOMPARE(openGestures(serial.window), QString());
        const QPoint gestures = windowSized("Advanced Setting", GesturesSize)->geometry.topLeft();
        QVERIFY(inTime([&] { return kept(">1500<"); }));
        QVERIFY(QDir().rename(QDir::homePath(), away));
        const auto home = qScopeGuard([&away] { QDir().rename(away, QDir::homePath()); });
        QVERIFY(click(gestures + LongerButton));
        QVERIFY(click(gestures + ApplyButton));
        QVERIFY(inTime([&] { return serial.frame.heard("after 2000 ms") == 1; }));
        QVERIFY(!QFile::exists(settings));

        QVERIFY(QDir().rename(away, QDir::homePath()));
        QVERIFY(kept(">1500<"));
        QVERIFY(click(gestures + ApplyButton));
        QVERIFY(inTime([&] { return kept(">2000<"); }));
        QCOMPARE(serial.end(), QString());
    }

    void a_signal_at_any_moment_of_the_start_ends_it_and_the_next_one_works()
    {
        constexpr int Starts = 8;
        constexpr int Between = 30; // ms
        struct Try
        {
            QTemporaryDir runtime;
            Program program;
        };
        std::vector<std::unique_ptr<Try>> tries;
        for (int i = 0; i < Starts; ++i) {
            auto one = std::make_unique<Try>();
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"XDG_RUNTIME_DIR"_s, one->runtime.path());
            one->program.process.setProcessEnvironment(environment);
            QVERIFY(one->program.start(Quorvel, {u"--demo"_s, u"-s"_s}));
            QTest::qWait(i * Between);
            for (const int signal : {SIGTERM, SIGHUP, SIGTERM})
                ::kill(pid_t(one->program.process.processId()), signal);
            tries.push_back(std::move(one));
        }
        for (const auto &one : tries) {
            const QProcess &process = one->program.process;
            QVERIFY(inTime([&process] { return process.state() == QProcess::NotRunning; }));
            // Before the program has begun to listen to signals, they end it as they end any other.
            const bool asAnyOther = process.exitStatus() == QProcess::CrashExit &&
                                    (process.exitCode() == SIGTERM || process.exitCode() == SIGHUP);
            QVERIFY2(asAnyOther || process.exitCode() == 0, one->program.errors);
        }
        // Where one of them has been, the next one runs and can be ended.
        for (const size_t i : {size_t(0), tries.size() / 2, tries.size() - 1}) {
            const QProcessEnvironment environment =
                tries.at(i)->program.process.processEnvironment();
            Program next;
            next.process.setProcessEnvironment(environment);
            QVERIFY(next.start(Quorvel, {u"--demo"_s}));
            QVERIFY(inTime([] { return windowTitled(Simulated).has_value(); }));
            Program close;
            close.process.setProcessEnvironment(environment);
            QVERIFY(close.start(Quorvel, {u"--demo"_s, u"-close"_s}) && close.endsWell());
            QVERIFY(next.endsWell());
        }
    }
};

QTEST_MAIN(TestMachineAround)
#include "tst_machine_around.moc"
