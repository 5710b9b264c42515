// SPDX-License-Identifier: GPL-3.0-or-later

#include "signalpicture.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace scan = command::scan;

namespace {

constexpr int CurveWidth = 870;

} // namespace

int SignalPicture::room(UCHAR axis, int lights)
{
    return std::min(lights, axis == scan::AxisX ? command::MaxLightsX : command::MaxLightsY);
}

void SignalPicture::setLevel(UCHAR axis, int light, int lightsX, int level)
{
    const AxisData points = data(axis);
    const auto at = size_t(light);
    const QPoint point((light + 1) * CurveWidth / lightsX, SignalPlot::row(level));
    const int change = std::abs(point.y() - points.adc[at].y());
    points.ripple[at] = {point.x(), SignalPlot::Size.height() - change};
    points.adc[at] = point;
    points.agc[at] = {point.x(), 0};
    outdated = true;
}

void SignalPicture::forget()
{
    for (const UCHAR axis : {scan::AxisX, scan::AxisY}) {
        const AxisData points = data(axis);
        for (const std::span<QPoint> curve : {points.adc, points.agc, points.ripple})
            std::fill(curve.begin(), curve.end(), QPoint());
    }
    outdated = true;
}

void SignalPicture::paint(QPainter &painter, QPoint corner, const QWidget *window,
                          const TEST_DATA &test, int progressX, int progressY)
{
    // In between whole ratios what is kept would not fit the pixels: it is drawn larger then and
    // made smaller.
    const qreal shown = window->devicePixelRatioF();
    const int ratio = qCeil(shown);
    // Not before they are seen: most users never open this window.
    if (BGmap.isNull() || BGmap.devicePixelRatio() != ratio)
        makeMaps(ratio, window->font());
    painter.setRenderHint(QPainter::SmoothPixmapTransform, shown != ratio);
    painter.drawPixmap(corner, BGmap);
    if (progressX == 0 && progressY == 0)
        return;
    if (outdated)
        draw(test, progressX, progressY);
    painter.drawImage(corner + SignalPlot::PictureInBackground, mainmap);
}

SignalPicture::AxisData SignalPicture::data(UCHAR axis)
{
    if (axis == scan::AxisX)
        return {XADC_point, XAGC_point, XRIP_point};
    return {YADC_point, YAGC_point, YRIP_point};
}

void SignalPicture::makeMaps(int ratio, const QFont &font)
{
    BGmap = QPixmap(SignalPlot::BackgroundSize * ratio);
    BGmap.setDevicePixelRatio(ratio);
    BGmap.fill(Qt::white);
    SignalPlot::drawScale(BGmap, font);
    mainmap = SignalPlot::makePicture(ratio);
    outdated = true;
}

void SignalPicture::draw(const TEST_DATA &test, int progressX, int progressY)
{
    std::vector<SignalPlot::Curve> curves;
    const auto add = [&](SignalPlot::Axis axis, const AxisData &points, int lights, int progress) {
        const auto count = size_t(lights);
        if (test.showADC && progress > UnderTest)
            curves.push_back({axis, points.adc.first(count)});
        if (test.showAGC && progress > UnderTest)
            curves.push_back({axis, points.agc.first(count)});
        if (test.showRip && progress > ForRipple)
            curves.push_back({axis, points.ripple.first(count)});
    };
    add(SignalPlot::Axis::X, data(scan::AxisX), room(scan::AxisX, test.X_total), progressX);
    add(SignalPlot::Axis::Y, data(scan::AxisY), room(scan::AxisY, test.Y_total), progressY);
    plot.draw(mainmap, curves, test.upper, test.lower);
    outdated = false;
}
