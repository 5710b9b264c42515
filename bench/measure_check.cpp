// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/mainwindow.h"
#include "config/xml_class.h"
#include "device/records.h"
#include "dialogs/lightcheck_dlg.h"
#include "figure.h"
#include "largestframe.h"
#include "resources/resources.h"
#include "sim/sim_adapter.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <ctime>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr double TimeBar = 1.1;
constexpr double ProcessorBar = 3; // percent of a core
constexpr int Parts = 5;
constexpr auto Part = 8s; // a scan of both axes takes two
constexpr auto Settling = 3s;
constexpr int LongestMs = 120000; // for sixteen scans, which take half a minute

[[noreturn]] void giveUp(const char *sentence)
{
    std::fprintf(stderr, "%s\n", sentence);
    std::_Exit(EXIT_FAILURE);
}

double processorMs()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1000 + double(time.tv_nsec) / 1e6;
}

void wait(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

// When pages of scans come, each counted once.
struct Pages
{
    explicit Pages(MainWindow &window)
    {
        QObject::connect(&window, &MainWindow::Recv03, &window, [this](const UCHAR *report) {
            const Frame frame = command::frameAt(report);
            if (frame == last || !command::ScanPage::decode(frame))
                return;
            last = frame;
            times.push_back(double(clock.nsecsElapsed()) / 1e6);
        });
        clock.start();
    }
    // Of two pages in a row, in ms.
    double usualTime() const
    {
        std::vector<double> between;
        for (size_t i = 1; i < times.size(); ++i)
            between.push_back(times[i] - times[i - 1]);
        if (between.empty())
            giveUp("measure_check: no pages came");
        std::nth_element(between.begin(), between.begin() + long(between.size() / 2),
                         between.end());
        return between[between.size() / 2];
    }

    QElapsedTimer clock;
    Frame last{};
    std::vector<double> times;
};

} // namespace

// measure_check: what the light check's window costs on the largest frame, whose transfers take the
// time of a real one's. Prints lines of the table; the exit code is 0 when the bars hold.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    initResources();
    const QTemporaryDir home;
    XML_CLASS::useHome(home.path());
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
    MainWindow window(std::make_shared<sim::SimAdapter>(largestFrame()));
    window.show();
    wait(Settling);
    Pages pages(window);

    for (QAction *action : window.actions()) {
        if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_L))
            action->trigger();
    }
    auto *check = window.findChild<LightCheck_dlg *>();
    if (!check)
        giveUp("measure_check: the light check does not open");
    auto *measure = check->findChild<QPushButton *>(u"measureButton"_s);
    QElapsedTimer time;
    time.start();
    pages.times.clear();
    measure->click();
    while (check->shown().measurement.x.scans.empty()) {
        if (time.elapsed() > LongestMs)
            giveUp("measure_check: the measurement does not end");
        wait(10ms);
    }
    const auto taken = double(time.elapsed());
    const auto count = double(pages.times.size());
    const bool isFast = print({"measuring the largest frame / its pages on the link",
                               TimeBar,
                               Figure::HeldBy::Median,
                               {taken / (count * pages.usualTime())}});
    print({"  sixteen scans of both axes, s", 0, Figure::HeldBy::Median, {taken / 1000}});
    print({"  one page, ms", 0, Figure::HeldBy::Median, {pages.usualTime()}});

    Figure idle{"  connected, window open, % of a core", 0, Figure::HeldBy::Median, {}};
    Figure use{
        "following the largest frame, % of a core", ProcessorBar, Figure::HeldBy::Median, {}};
    const auto sample = [](Figure &figure) {
        const double before = processorMs();
        const auto begin = std::chrono::steady_clock::now();
        wait(Part);
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - begin;
        figure.samples.push_back(100 * (processorMs() - before) / took.count());
    };
    sample(idle);
    check->findChild<QCheckBox *>(u"followBox"_s)->setChecked(true);
    measure->click();
    wait(Settling);
    pages.times.clear();
    time.restart();
    for (int i = 0; i < Parts; ++i)
        sample(use);
    const double share = double(time.elapsed()) / (double(pages.times.size()) * pages.usualTime());
    const bool isLight = print(use);
    print({"  time it takes / its pages on the link", 0, Figure::HeldBy::Median, {share}});
    print(idle);
    return isFast && isLight ? EXIT_SUCCESS : EXIT_FAILURE;
}
