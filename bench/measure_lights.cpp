// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/records.h"
#include "dialogs/lightset_dlg.h"
#include "figure.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

using namespace std::chrono_literals;

namespace {

using Ms = std::chrono::duration<double, std::milli>;

constexpr QSize ScreenSize(1920, 1080);
constexpr int LightsX = 500;
constexpr int LightsY = 350;
constexpr double RepaintBar = 4;
constexpr int WarmUps = 5;
constexpr int Repaints = 60;        // of each window, in turns
constexpr auto SettleTime = 1500ms; // the light screen paints after its first request

[[noreturn]] void giveUp(const char *sentence)
{
    std::fprintf(stderr, "%s\n", sentence);
    std::_Exit(EXIT_FAILURE);
}

// What the light screen is compared with: an empty picture, filled and shown.
class EmptyPicture : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        picture.fill(Qt::white);
        QPainter(this).drawPixmap(0, 0, picture);
    }

private:
    QPixmap picture{ScreenSize};
};

void wait(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

// Until the X server has done all that it was asked to.
void waitForServer()
{
    auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        giveUp("measure_lights: no X server; run it by bench/run");
    const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
        xcb_get_input_focus_reply(x11->connection(), xcb_get_input_focus(x11->connection()),
                                  nullptr),
        &std::free);
    if (!reply)
        giveUp("measure_lights: the X server does not answer");
}

// Each on a monitor of its own: the X server does little for a window that is covered.
void present(QWidget &window, QScreen *monitor)
{
    window.setScreen(monitor);
    window.setGeometry(monitor->geometry());
    window.setWindowState(Qt::WindowFullScreen);
    window.show();
    wait(SettleTime);
    if (window.geometry() != monitor->geometry() || window.size() != ScreenSize)
        giveUp("measure_lights: a window does not fill its monitor; run it by bench/run");
}

double timeRepaint(QWidget &window)
{
    const auto begin = std::chrono::steady_clock::now();
    window.repaint();
    waitForServer();
    return Ms(std::chrono::steady_clock::now() - begin).count();
}

void tell(LightSet_dlg &screen, Frame report)
{
    screen.DoRecv03(report.data());
}

void sendScan(LightSet_dlg &screen, UCHAR axis, int lights, int (*level)(std::minstd_rand &),
              std::minstd_rand &random)
{
    for (int first = 0; first < lights; first += command::scan::PairsPerPage) {
        command::ScanPage page{
            .axis = axis, .first = first, .size = 2 * command::scan::PairsPerPage};
        std::generate_n(page.bytes.begin(), page.size, [&] { return UCHAR(level(random)); });
        tell(screen, page.encode());
    }
}

int healthy(std::minstd_rand &random)
{
    return 200 + int(random() % 8);
}

int noise(std::minstd_rand &random)
{
    return int(random() % 256);
}

void tellCounts(LightSet_dlg &screen)
{
    tell(screen, command::LightCounts{LightsX, LightsY}.encode());
    command::LightReport middle;
    middle.light = {command::settings::AxisX, LightsX / 2};
    tell(screen, middle.encode());
}

bool measure(LightSet_dlg &screen, EmptyPicture &empty, const char *name,
             int (*level)(std::minstd_rand &), double bar)
{
    std::minstd_rand random(1);
    Figure drawn;
    drawn.name = std::string("  ") + name + ", ms";
    Figure plain;
    plain.name = "  empty picture, ms";
    for (int i = -WarmUps; i < Repaints; ++i) {
        sendScan(screen, command::scan::AxisY, LightsY, level, random);
        sendScan(screen, command::scan::AxisX, LightsX, level, random);
        const double time = timeRepaint(screen);
        const double emptyTime = timeRepaint(empty);
        if (i < 0)
            continue;
        drawn.samples.push_back(time);
        plain.samples.push_back(emptyTime);
    }
    const bool holds = print({std::string("repaint, ") + name + " / empty picture", bar,
                              Figure::HeldBy::Median, ratios(drawn.samples, plain.samples)});
    print(drawn);
    print(plain);
    return holds;
}

} // namespace

// What a repaint of the light setting screen costs with the most lights there can be.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    const QList<QScreen *> monitors = QGuiApplication::screens();
    if (monitors.size() != 2)
        giveUp("measure_lights: two monitors are needed; run it by bench/run");
    EmptyPicture empty;
    present(empty, monitors[0]);
    LightSet_dlg screen;
    present(screen, monitors[1]);
    tellCounts(screen);
    if (screen.grab().toImage().pixelColor(1000, 10) != QColor(Qt::white))
        giveUp("measure_lights: the light screen paints nothing yet");
    bool holds = measure(screen, empty, "500 and 350 healthy lights", healthy, RepaintBar);
    holds = measure(screen, empty, "500 and 350 noisy lights", noise, RepaintBar) && holds;
    return holds ? EXIT_SUCCESS : EXIT_FAILURE;
}
