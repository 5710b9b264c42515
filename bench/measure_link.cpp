// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "app/readhotplug.h"
#include "config/xml_class.h"
#include "device/readreportthread.h"
#include "device/writereportthread.h"
#include "dialogs/test_win.h"
#include "figure.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"
#include "tests/support/fakeadapter.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/socket.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;
using Ms = std::chrono::duration<double, std::milli>;

constexpr int PlugTrials = 20; // for each delay
constexpr auto TextLimit = 5s;
constexpr auto BetweenTrials = 100ms;
constexpr double PlugBarMs = 150;

constexpr size_t Cycles = 100;
constexpr Ms Cycle = 67ms;
constexpr double CycleBar = 1.02;
constexpr auto CyclesLimit = 60s;

constexpr int StopTrials = 20;
constexpr auto TestRuns = 700ms; // before it is stopped
constexpr double StopBarMs = 200;

constexpr int Frames = 60;
constexpr double WriteBarMs = 52;

[[noreturn]] void giveUp(const char *sentence)
{
    std::fprintf(stderr, "%s\n", sentence);
    std::_Exit(EXIT_FAILURE);
}

// Until the loop is told to quit, or limit is over.
void handleEvents(QEventLoop &loop, std::chrono::milliseconds limit)
{
    QTimer bound;
    bound.setSingleShot(true);
    QObject::connect(&bound, &QTimer::timeout, &loop, &QEventLoop::quit);
    bound.start(limit);
    loop.exec();
}

// Knows when a label was last painted, and with which text.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QLabel *watched)
        : label(watched)
    {
        label->installEventFilter(this);
    }

    // Handles events until the label shows text; when that was.
    Clock::time_point waitFor(const QString &text)
    {
        if (shownText != text)
            handleEvents(loop, TextLimit);
        if (shownText != text)
            giveUp("the main window's status text did not change");
        return shownAt;
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && label->text() != shownText) {
            shownText = label->text();
            shownAt = Clock::now();
            loop.quit();
        }
        return false;
    }

private:
    QLabel *label; // not owned
    QEventLoop loop;
    QString shownText;
    Clock::time_point shownAt;
};

// The kernel's side of the event socket.
class Events
{
public:
    Events()
    {
        int both[2] = {};
        if (::socketpair(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0, both) != 0)
            giveUp("no socket pair");
        here = FileDescriptor(both[0]);
        there = FileDescriptor(both[1]);
    }

    FileDescriptor takeOtherEnd() { return std::move(there); }
    // What the kernel says of the USB device; "add" comes before the device has a node.
    void send(const char *action)
    {
        const QByteArray product = QByteArray::number(VendorId, 16);
        QByteArray message = QByteArray(action) + "@/devices/pci0000:00/usb1/1-1";
        message.append('\0').append("ACTION=").append(action);
        message.append('\0').append("SUBSYSTEM=usb");
        message.append('\0').append("PRODUCT=").append(product).append("/1/3010");
        message.append('\0');
        if (::send(here.get(), message.constData(), size_t(message.size()), 0) != message.size())
            giveUp("the event socket does not take a message");
    }

private:
    FileDescriptor here;
    FileDescriptor there;
};

bool measurePlug(int &argc, char **argv)
{
    const QApplication app(argc, argv);
    initResources();
    const QTemporaryDir home;
    XML_CLASS::useHome(home.path());
    const auto frame = std::make_shared<sim::SimAdapter>(
        sim::Profile(), sim::FaultPlan(), sim::SimOptions{.plugged = false, .clock = {}});
    MainWindow window(frame);
    // The event alone has to do it.
    auto *timer = window.findChild<QTimer *>(u"checkTimer"_s);
    auto *label = window.findChild<QLabel *>(u"stalab"_s);
    if (!timer || !label)
        giveUp("the main window has no checkTimer or no stalab");
    timer->stop();

    Events events;
    ReadHotplugThread hotplug(events.takeOtherEnd());
    QObject::connect(&hotplug, &ReadHotplugThread::DeviceAdd, &window, &MainWindow::OnDeviceAdded);
    QObject::connect(&hotplug, &ReadHotplugThread::DeviceRemove, &window,
                     &MainWindow::OnDeviceRemoved);
    hotplug.start();

    const QString connected = MainWindow::tr("Already link equipment");
    const QString unconnected = MainWindow::tr("Have not linked equipment");
    PaintWatch status(label);
    window.show();
    status.waitFor(unconnected);

    struct Row
    {
        std::chrono::milliseconds delay;
        std::vector<double> samples;
    };
    Row rows[] = {{5ms, {}}, {30ms, {}}, {80ms, {}}};
    for (int i = 0; i < PlugTrials; ++i) {
        for (Row &row : rows) {
            QEventLoop rest;
            handleEvents(rest, BetweenTrials);
            Clock::time_point nodeExists;
            events.send("add");
            std::thread kernel([&frame, &nodeExists, due = Clock::now() + row.delay] {
                std::this_thread::sleep_until(due);
                nodeExists = Clock::now();
                frame->plug();
            });
            const Clock::time_point shown = status.waitFor(connected);
            kernel.join();
            row.samples.push_back(Ms(shown - nodeExists).count());

            frame->unplug();
            events.send("remove");
            status.waitFor(unconnected);
        }
    }
    bool holds = true;
    for (const Row &row : rows) {
        const std::string name = "node to status text, event " + std::to_string(row.delay.count()) +
                                 " ms before the node, ms";
        if (!print({name, PlugBarMs, Figure::HeldBy::Maximum, row.samples}))
            holds = false;
    }
    return holds;
}

// How long a press on "Stop" waits while a signal test asks as fast as it can. Another thread
// presses, whatever the window is doing.
bool measureStop(int &argc, char **argv)
{
    const QApplication app(argc, argv);
    initResources();
    const QTemporaryDir home;
    XML_CLASS::useHome(home.path());
    MainWindow window(std::make_shared<sim::SimAdapter>(sim::Profile()));
    auto *test = window.findChild<test_win *>();
    auto *button = test->findChild<QPushButton *>(u"ALL_btn"_s);
    test->findChild<QLineEdit *>(u"interal_text"_s)->setText(u"0"_s);
    test->show();

    std::vector<double> delays;
    for (int i = 0; i < StopTrials; ++i) {
        button->click();
        QEventLoop loop;
        Clock::time_point pressed;
        Clock::time_point stopped;
        std::thread finger([&, pause = TestRuns + i * 13ms] {
            std::this_thread::sleep_for(pause);
            pressed = Clock::now();
            QMetaObject::invokeMethod(button, [&] {
                button->click();
                stopped = Clock::now();
                loop.quit();
            });
        });
        handleEvents(loop, TextLimit);
        finger.join();
        if (button->text() != test_win::tr("All Test"))
            giveUp("the signal test did not stop");
        delays.push_back(Ms(stopped - pressed).count());
    }
    return print(
        {"Stop of a signal test at interval 0, ms", StopBarMs, Figure::HeldBy::Maximum, delays});
}

bool measureReader(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    sim::SimAdapter frame{sim::Profile()};
    if (!frame.DoFindDev(u"col03"_s, true))
        giveUp("the simulated frame cannot be opened");

    std::array<Clock::time_point, Cycles + 1> ends;
    size_t finished = 0;
    std::array<UCHAR, FrameSize> buf{};
    ReadReportThread reader(buf.data());
    reader.setHIDAdapter(&frame, command::ReportId);
    QObject::connect(&reader, &ReadReportThread::ReadOver, &reader, [&ends, &finished] {
        if (finished < ends.size()) {
            ends[finished] = Clock::now();
            ++finished;
        }
    });
    reader.start();
    const auto deadline = Clock::now() + CyclesLimit;
    while (finished < ends.size()) {
        if (Clock::now() > deadline)
            giveUp("the reader does not finish its cycles");
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    reader.terminate();
    reader.wait();

    std::vector<double> shares;
    for (size_t i = 1; i < ends.size(); ++i)
        shares.push_back(Ms(ends[i] - ends[i - 1]) / Cycle);
    return print({"reader cycle / 67 ms", CycleBar, Figure::HeldBy::Median, shares});
}

// From the moment a frame is asked to be sent until the adapter has it.
bool measureWriter()
{
    FakeAdapter device;
    Frame frame{};
    writereportthread writer(frame.data());
    writer.setHIDAdapter(&device, command::ReportId);
    std::vector<double> delays;
    for (int i = 0; i < Frames; ++i) {
        const auto asked = Clock::now();
        writer.start();
        if (!writer.wait())
            giveUp("the writer does not end");
        delays.push_back(Ms(device.sent().last().when - asked).count());
    }
    return print(
        {"frame sent after it was asked for, ms", WriteBarMs, Figure::HeldBy::Median, delays});
}

} // namespace

// measure_link plug|stop|reader|writer: measures the program's own parts on a simulated frame.
// "plug" and "stop" need an X server. Prints lines of the table; the exit code is 0 when every bar
// holds.
int main(int argc, char **argv)
{
    const std::string_view figure = argc == 2 ? argv[1] : "";
    if (figure == "plug")
        return measurePlug(argc, argv) ? 0 : 1;
    if (figure == "stop")
        return measureStop(argc, argv) ? 0 : 1;
    if (figure == "reader")
        return measureReader(argc, argv) ? 0 : 1;
    if (figure == "writer")
        return measureWriter() ? 0 : 1;
    giveUp("use: measure_link plug|stop|reader|writer");
}
