// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "config/xml_class.h"
#include "dialogs/advconnect_dlg.h"
#include "dialogs/advset_dlg.h"
#include "dialogs/calend_dlg.h"
#include "dialogs/calibration_dlg.h"
#include "dialogs/lightcheck_dlg.h"
#include "dialogs/lightset_dlg.h"
#include "dialogs/rotation_dlg.h"
#include "dialogs/test_win.h"
#include "figure.h"
#include "largestframe.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"

#include <QAbstractNativeEventFilter>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

constexpr double Bar = 100; // ms
constexpr auto Period = 5ms;
constexpr auto Part = 20s;
constexpr auto Settling = 3s;
constexpr auto Dwell = 1500ms; // on a window that comes and goes
constexpr int Changes = 4;     // from one user of the frame to the next and back
constexpr size_t FewestSamples = 1000;

[[noreturn]] void giveUp(const std::string &sentence)
{
    std::fprintf(stderr, "measure_latency: %s\n", sentence.c_str());
    std::_Exit(EXIT_FAILURE);
}

void wait(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

// Lets events of three kinds arrive on the GUI thread every few milliseconds, whatever that does,
// and keeps how long each waited: events that another thread posts, messages of the X server, which
// come the way of mouse and keyboard, and the ticks of a timer. Beside that stands how late the
// machine lets that other thread go on, which does nothing else.
class Probe : public QObject, public QAbstractNativeEventFilter
{
public:
    struct Waits
    {
        std::vector<double> posted;
        std::vector<double> fromServer;
        std::vector<double> ticks;
        std::vector<double> machine;
    };

    explicit Probe(QWidget &window)
        : target(xcb_window_t(window.winId()))
        , server(xcb_connect(nullptr, nullptr), &xcb_disconnect)
    {
        if (xcb_connection_has_error(server.get()))
            giveUp("no X server; run it by bench/run");
        kind = atom("QUORVEL_LATENCY");
        QCoreApplication::instance()->installNativeEventFilter(this);
        tick.setTimerType(Qt::PreciseTimer);
        tick.setSingleShot(true);
        connect(&tick, &QTimer::timeout, this, [this] {
            waits.ticks.push_back(since(tickDue));
            armTick();
        });
        armTick();
        sender = std::thread([this] { send(); });
    }
    ~Probe() override
    {
        ended = true;
        sender.join();
    }

    // What has been kept since the last call.
    Waits take()
    {
        const std::lock_guard lock(machineLock);
        waits.machine = std::exchange(machine, {});
        return std::exchange(waits, {});
    }

    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override
    {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE)
            return false;
        const auto *client = static_cast<const xcb_client_message_event_t *>(message);
        if (client->type != kind)
            return false;
        waits.fromServer.push_back(since(sent.at(client->data.data32[0] % sent.size())));
        return true;
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        waits.posted.push_back(since(static_cast<Posted *>(event)->at));
        return true;
    }

private:
    struct Posted : QEvent
    {
        Posted()
            : QEvent(QEvent::User)
        {
        }
        Clock::time_point at = Clock::now();
    };

    static double since(Clock::time_point time)
    {
        return std::chrono::duration<double, std::milli>(Clock::now() - time).count();
    }
    void armTick()
    {
        tickDue = Clock::now() + Period;
        tick.start(Period);
    }
    xcb_atom_t atom(const std::string &name)
    {
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(
                server.get(), xcb_intern_atom(server.get(), 0, uint16_t(name.size()), name.c_str()),
                nullptr),
            &std::free);
        if (!reply)
            giveUp("the X server does not answer");
        return reply->atom;
    }
    void send()
    {
        for (uint32_t number = 0; !ended; ++number) {
            QCoreApplication::postEvent(this, new Posted);
            xcb_client_message_event_t message{};
            message.response_type = XCB_CLIENT_MESSAGE;
            message.format = 32;
            message.window = target;
            message.type = kind;
            message.data.data32[0] = number;
            sent.at(number % sent.size()) = Clock::now();
            xcb_send_event(server.get(), 0, target, XCB_EVENT_MASK_NO_EVENT,
                           reinterpret_cast<const char *>(&message));
            xcb_flush(server.get());
            const auto due = Clock::now() + Period;
            std::this_thread::sleep_until(due);
            const std::lock_guard lock(machineLock);
            machine.push_back(since(due));
        }
    }

    const xcb_window_t target;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server; // sender's, later
    xcb_atom_t kind = XCB_ATOM_NONE;
    QTimer tick;
    Clock::time_point tickDue;
    Waits waits;            // GUI thread only
    std::mutex machineLock; // protects machine
    std::vector<double> machine;
    // A message's time is written before it is sent; no wait is long enough for it to come round.
    std::array<Clock::time_point, 65536> sent{};
    std::atomic<bool> ended = false;
    std::thread sender;
};

double share(std::vector<double> samples, double part)
{
    const auto place = samples.begin() + long(part * double(samples.size() - 1));
    std::nth_element(samples.begin(), place, samples.end());
    return *place;
}

// False when a bar does not hold; without a bar it is for information.
bool tell(const std::string &what, const Probe::Waits &waits, double bar = Bar)
{
    bool holds = true;
    const std::pair<const char *, const std::vector<double> *> kinds[] = {
        {"posted event", &waits.posted},
        {"X server's event", &waits.fromServer},
        {"timer's tick", &waits.ticks},
    };
    for (const auto &[kind, samples] : kinds) {
        if (samples->empty() || (bar > 0 && samples->size() < FewestSamples))
            giveUp(what + ": too few events came");
        holds =
            print({what + ", " + kind + ", ms", bar, Figure::HeldBy::Maximum, *samples}) && holds;
        print({"  95 % of these within, ms", 0, Figure::HeldBy::Median, {share(*samples, 0.95)}});
        print({"  99 % of these within, ms", 0, Figure::HeldBy::Median, {share(*samples, 0.99)}});
    }
    print({"  a thread that only sleeps, late by, ms", 0, Figure::HeldBy::Median, waits.machine});
    return holds;
}

// The tool with every window open that can be beside others, on the left monitor; the light and
// calibration screens come and go on the right one.
class Tool
{
public:
    Tool(const QString &home, const QString &recording)
        : window(std::make_shared<sim::SimAdapter>(largestFrame()), recording)
    {
        if (!window.recordProblem().isEmpty())
            giveUp(window.recordProblem().toStdString());
        if (!QDir::setCurrent(home)) // for the test's log
            giveUp("the folder for the log is not there");
        QObject::connect(&window, &MainWindow::Recv03, &window, [this](const UCHAR *report) {
            const Frame frame = command::frameAt(report);
            if (frame != last && command::ScanPage::decode(frame))
                ++pages;
            last = frame;
        });
        window.move(QGuiApplication::screens().last()->geometry().center());
        window.show();
        wait(Settling);
        if (!window.findChild<QPushButton *>(u"calbtn"_s)->isEnabled())
            giveUp("the frame is not linked");
        // It makes its pause when it is shown.
        only<Rotation_dlg>().show();
        wait(Settling);
    }

    void openAll()
    {
        // Some windows are made when they are first asked for.
        for (const QString &entry : {u"Light check"_s, u"Try out gestures"_s,
                                     u"Check calibration"_s, u"Support file"_s, u"Help"_s})
            choose(entry);
        question.show();
        tuio.show();
        for (QWidget *dialog : window.findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (dialog != &lights() &&
                (dialog->inherits("QDialog") || dialog->inherits("QMainWindow")))
                dialog->show();
        }
    }
    static int openWindows()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        return int(std::count_if(all.begin(), all.end(), [](const QWidget *one) {
            return one->isVisible() && (one->inherits("QDialog") || one->inherits("QMainWindow"));
        }));
    }

    void beginTest()
    {
        auto &test = only<test_win>();
        test.findChild<QLineEdit *>(u"interal_text"_s)->setText(u"0"_s);
        test.findChild<QAction *>(u"logAction"_s)->setChecked(true);
        pressTest();
    }
    void pressTest() { press(only<test_win>(), u"ALL_btn"_s); }
    void follow()
    {
        only<LightCheck_dlg>().findChild<QCheckBox *>(u"followBox"_s)->setChecked(true);
        pressCheck();
    }
    void pressCheck() { press(only<LightCheck_dlg>(), u"measureButton"_s); }
    LightSet_dlg &lights() { return only<LightSet_dlg>(); }
    Calibration_Dlg &beginCalibration()
    {
        press(window, u"calbtn"_s);
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *screen = qobject_cast<Calibration_Dlg *>(widget);
                screen && screen->isVisible())
                return *screen;
        }
        giveUp("the calibration screen does not open");
    }
    // Pages of scans since the last call.
    int takePages() { return std::exchange(pages, 0); }

    QWidget &mainWindow() { return window; }

private:
    template <typename Window>
    Window &only()
    {
        auto *found = window.findChild<Window *>();
        if (!found)
            giveUp("a window is missing");
        return *found;
    }
    static void press(QWidget &dialog, const QString &button)
    {
        dialog.findChild<QPushButton *>(button)->click();
    }
    void choose(const QString &entry)
    {
        for (QAction *action : window.findChildren<QAction *>()) {
            if (action->text().remove(u'&').startsWith(entry)) {
                action->trigger();
                return;
            }
        }
        giveUp("the menu has no entry " + entry.toStdString());
    }

    MainWindow window;
    CalEnd_dlg question;
    advconnect_dlg tuio;
    Frame last{};
    int pages = 0; // each counted once
};

} // namespace

// measure_latency: how long events wait on the GUI thread with every window open, the largest
// frame, whose transfers take the time of a real one's, a continuous signal test that is logged,
// and a recording. Prints lines of the table; the exit code is 0 when the bars hold.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    initResources();
    const QTemporaryDir home;
    XML_CLASS::useHome(home.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    if (QGuiApplication::screens().size() < 2)
        giveUp("one monitor only; run it by bench/run");
    Tool tool(home.path(), home.filePath(u"recording.pcap"_s));
    Probe probe(tool.mainWindow());
    const auto isScanning = [&tool](const char *who) {
        constexpr int FewestPages = 50; // one comes every 70 ms
        if (tool.takePages() < FewestPages)
            giveUp(std::string(who) + ": the scans do not come");
    };

    tool.openAll();
    wait(Settling);
    tell("while they open", probe.take(), 0);
    print({"windows open", 0, Figure::HeldBy::Median, {double(Tool::openWindows())}});

    tool.takePages();
    tool.beginTest();
    wait(Part);
    isScanning("the signal test");
    bool holds = tell("continuous test", probe.take());

    tool.follow();
    wait(Part);
    isScanning("the light check");
    holds = tell("light check follows, test waits", probe.take()) && holds;
    tool.pressCheck();

    tool.lights().show();
    wait(Part);
    isScanning("the light screen");
    holds = tell("light screen, test waits", probe.take()) && holds;
    tool.lights().close();

    // Who has the frame changes in the middle of scans.
    for (int i = 0; i < Changes; ++i) {
        tool.pressCheck();
        wait(Dwell);
        tool.pressCheck();
        wait(Dwell);
        tool.lights().show();
        wait(Dwell);
        tool.lights().close();
        wait(Dwell);
        Calibration_Dlg &calibration = tool.beginCalibration();
        wait(Dwell);
        calibration.reject();
        wait(Dwell);
        tool.pressTest();
        wait(Dwell);
        tool.pressTest();
        wait(Dwell);
    }
    holds = tell("from one to the other", probe.take()) && holds;
    return holds ? EXIT_SUCCESS : EXIT_FAILURE;
}
