// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "device/commands.h"
#include "device/struct.h"
#include "signalplot.h"

#include <QImage>
#include <QPixmap>
#include <QPoint>

#include <array>
#include <span>
#include <vector>

class QPainter;
class QWidget;

// What a signal test shows: the scale, and on it the curves of what has come of both axes.
class SignalPicture
{
public:
    // Thresholds of the progress of an axis: 0 while it is not under test, else 1 more than its
    // complete scans.
    static constexpr int UnderTest = 1;
    static constexpr int ForRipple = 3;
    static constexpr int Saturated = 5;

    // How many of an axis's lights there is room for.
    static int room(UCHAR axis, int lights);

    // A new level of a light, in signal units. Both axes are drawn on the scale of X.
    void setLevel(UCHAR axis, int light, int lightsX, int level);
    void forget();
    // What is shown is another test, or another part of it.
    void change() { outdated = true; }

    // At this place of a window.
    void paint(QPainter &painter, QPoint corner, const QWidget *window, const TEST_DATA &test,
               int progressX, int progressY);

private:
    struct AxisData
    {
        std::span<QPoint> adc;
        std::span<QPoint> agc;
        std::span<QPoint> ripple;
    };

    AxisData data(UCHAR axis);
    void makeMaps(int ratio, const QFont &font);
    void draw(const TEST_DATA &test, int progressX, int progressY);

    // Pixels of the picture, by light.
    std::array<QPoint, command::MaxLightsX> XADC_point;
    std::array<QPoint, command::MaxLightsY> YADC_point;
    std::array<QPoint, command::MaxLightsX> XAGC_point;
    std::array<QPoint, command::MaxLightsY> YAGC_point;
    std::array<QPoint, command::MaxLightsX> XRIP_point;
    std::array<QPoint, command::MaxLightsY> YRIP_point;

    SignalPlot plot;
    QPixmap BGmap;        // the scale
    QImage mainmap;       // the curves
    bool outdated = true; // mainmap does not show what the points say
};
