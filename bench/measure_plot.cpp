// SPDX-License-Identifier: GPL-3.0-or-later

#include "device/commands.h"
#include "dialogs/signalplot.h"
#include "figure.h"
#include "tests/support/plainplot.h"

#include <QApplication>

#include <qcustomplot.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>

namespace {

using Ms = std::chrono::duration<double, std::milli>;

constexpr int Upper = 1000;
constexpr int Lower = 650;
constexpr int WarmUps = 5;
constexpr int Drawings = 60; // of each kind, in turns
constexpr double PlainBar = 0.25;
constexpr double LibraryBar = 0.1;

[[noreturn]] void giveUp(const char *sentence)
{
    std::fprintf(stderr, "%s\n", sentence);
    std::_Exit(EXIT_FAILURE);
}

double timeOf(const std::function<void()> &drawing)
{
    const auto begin = std::chrono::steady_clock::now();
    drawing();
    return Ms(std::chrono::steady_clock::now() - begin).count();
}

struct AxisPoints
{
    std::vector<QPoint> signal;
    std::vector<QPoint> agc;
    std::vector<QPoint> ripple;
};

// Levels as a frame has them: lower towards the ends, noisy, and a dead light now and then.
AxisPoints makePoints(int lights, std::minstd_rand &random)
{
    constexpr int DeadOneIn = 40;
    constexpr int Width = 870;
    AxisPoints points;
    for (int i = 0; i < lights; ++i) {
        const int x = (i + 1) * Width / lights;
        const double arch = 700 + 250 * std::sin(3.14 * i / lights);
        const int noise = int(random() % 40);
        const int level = random() % DeadOneIn == 0 ? noise : int(arch) + noise;
        points.signal.emplace_back(x, SignalPlot::row(level));
        points.agc.emplace_back(x, 0);
        points.ripple.emplace_back(x, SignalPlot::Size.height() - int(random() % 20));
    }
    return points;
}

// The same points, lines and labels in a QCustomPlot of the picture's size, without the scale,
// grid and smooth edges that the picture does not have either.
void fill(QCustomPlot &library, const std::vector<SignalPlot::Curve> &curves)
{
    library.setGeometry(QRect(QPoint(0, 0), SignalPlot::Size));
    library.setNotAntialiasedElements(QCP::aeAll);
    library.setPlottingHints(QCP::phFastPolylines | QCP::phCacheLabels);
    library.axisRect()->setAutoMargins(QCP::msNone);
    library.axisRect()->setMargins(QMargins());
    for (QCPAxis *axis : {library.xAxis, library.yAxis}) {
        axis->setVisible(false);
        axis->grid()->setVisible(false);
    }
    library.xAxis->setRange(0, SignalPlot::Size.width());
    library.yAxis->setRange(0, SignalPlot::Size.height());
    library.yAxis->setRangeReversed(true);

    for (const SignalPlot::Curve &curve : curves) {
        const bool x = curve.axis == SignalPlot::Axis::X;
        const QPen pen(x ? Qt::darkGreen : Qt::darkRed);
        QCPGraph *graph = library.addGraph();
        graph->setPen(pen);
        graph->setScatterStyle(
            QCPScatterStyle(QCPScatterStyle::ssCircle, pen, QBrush(x ? Qt::green : Qt::red), 4));
        int number = 0;
        for (const QPoint &point : curve.points) {
            graph->addData(point.x(), point.y());
            auto *label = new QCPItemText(&library);
            label->setFont(SignalPlot::numberFont());
            label->setColor(pen.color());
            label->setPositionAlignment(Qt::AlignLeft | Qt::AlignBottom);
            label->position->setCoords(point.x() - 3, point.y() - 7);
            label->setText(QString::number(++number));
        }
    }
    for (const int limit : {Upper, Lower}) {
        QCPGraph *graph = library.addGraph();
        graph->setPen(QPen(Qt::black, 0, Qt::DashLine));
        graph->addData(0, SignalPlot::row(limit));
        graph->addData(SignalPlot::Size.width(), SignalPlot::row(limit));
    }
}

} // namespace

// What a drawing of the signal test's picture costs with all curves of the most lights there can
// be. "--save DIR" keeps the pictures instead, to be looked at.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    std::minstd_rand random(1);
    const AxisPoints x = makePoints(command::MaxLightsX, random);
    const AxisPoints y = makePoints(command::MaxLightsY, random);
    std::vector<SignalPlot::Curve> curves;
    for (const auto &[axis, points] :
         {std::pair(SignalPlot::Axis::X, &x), std::pair(SignalPlot::Axis::Y, &y)}) {
        for (const std::vector<QPoint> *curve : {&points->signal, &points->agc, &points->ripple})
            curves.push_back({axis, *curve});
    }

    SignalPlot plot;
    QImage picture = SignalPlot::makePicture(1);
    QPixmap plainPicture(SignalPlot::Size);
    QCustomPlot library;
    fill(library, curves);

    Figure kept{"  the window's way, ms", 0, Figure::HeldBy::Median, {}};
    Figure plain{"  point by point, ms", 0, Figure::HeldBy::Median, {}};
    Figure other{"  QCustomPlot, ms", 0, Figure::HeldBy::Median, {}};
    for (int i = -WarmUps; i < Drawings; ++i) {
        const double keptTime = timeOf([&] { plot.draw(picture, curves, Upper, Lower); });
        const double plainTime = timeOf([&] { drawPlainly(plainPicture, curves, Upper, Lower); });
        // Draws into the library's own picture; a queued refresh leaves the screen alone.
        const double otherTime = timeOf([&] { library.replot(QCustomPlot::rpQueuedRefresh); });
        if (i < 0)
            continue;
        kept.samples.push_back(keptTime);
        plain.samples.push_back(plainTime);
        other.samples.push_back(otherTime);
    }
    if (picture != plainPicture.toImage().convertToFormat(picture.format()))
        giveUp("measure_plot: the picture is not the one drawn point by point");
    if (argc == 3 && QLatin1String(argv[1]) == QLatin1String("--save")) {
        const QString directory = QString::fromLocal8Bit(argv[2]);
        return picture.save(directory + QLatin1String("/plot.png")) &&
                       library.savePng(directory + QLatin1String("/qcustomplot.png"))
                   ? EXIT_SUCCESS
                   : EXIT_FAILURE;
    }

    bool holds = print({"drawing 2550 signal points / point by point", PlainBar,
                        Figure::HeldBy::Median, ratios(kept.samples, plain.samples)});
    holds = print({"drawing 2550 signal points / QCustomPlot", LibraryBar, Figure::HeldBy::Median,
                   ratios(kept.samples, other.samples)}) &&
            holds;
    for (const Figure &time : {kept, plain, other})
        print(time);
    return holds ? EXIT_SUCCESS : EXIT_FAILURE;
}
