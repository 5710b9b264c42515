// SPDX-License-Identifier: GPL-3.0-or-later

#include "lightplot.h"

#include <QCoreApplication>
#include <QFont>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;
namespace scan = command::scan;

namespace {

constexpr int SignalPen = 3; // pixels
constexpr int GainPen = 1;
constexpr int GainPixels = 5; // a step of the AGC value
constexpr int Tail = 100;     // both curves run on for so long behind the last light
constexpr int Strip = 250;    // of the screen's edge, where a click chooses a light

// A label with three-digit numbers fits beside its bar, also at the edge of the screen.
constexpr int LabelPoints = 7;
constexpr int LabelAboveBottom = 100;
constexpr int LabelLeftOfBar = 160;
constexpr int LabelRightOfBar = 10;
constexpr int LabelFromLeftEdge = 60;
constexpr int LabelAbovePoint = 7;
constexpr int LabelBelowPoint = 20;

} // namespace

template <typename T>
void LightPlot::change(T &value, const T &to)
{
    if (value == to)
        return;
    value = to;
    stale = true;
}

void LightPlot::setScreen(QSize size, qreal newScale)
{
    change(screen, size);
    change(scale, newScale);
}

void LightPlot::setCounts(int x, int y)
{
    change(XTotal, x);
    change(YTotal, y);
}

bool LightPlot::storeX(const command::ScanPage &page)
{
    const int end = std::min(XTotal, command::MaxLightsX);
    for (int k = 0; k < scan::PairsPerPage; ++k) {
        const int i = page.first + k;
        if (XTotal == 0 || i >= command::MaxLightsX)
            return false;
        change(XLevels[size_t(i)], {UCHAR(page.pairLevel(k)), UCHAR(page.pairGain(k))});
        if (i == end - 1)
            return true;
    }
    return false;
}

void LightPlot::storeY(const command::ScanPage &page)
{
    for (int k = 0; k < scan::PairsPerPage; ++k) {
        const int i = page.first + k;
        if (YTotal == 0 || i >= command::MaxLightsY)
            return;
        change(YLevels[size_t(i)], {UCHAR(page.pairLevel(k)), UCHAR(page.pairGain(k))});
    }
}

void LightPlot::forget()
{
    setCounts(0, 0);
    XLevels = {};
    YLevels = {};
}

void LightPlot::choose(std::optional<Light> light, const QString &adc, const QString &agc)
{
    change(chosen, light);
    change(chosenAdc, adc);
    change(chosenAgc, agc);
}

std::optional<LightPlot::Light> LightPlot::lightAt(QPoint point) const
{
    if (!QRect(QPoint(0, 0), screen).contains(point))
        return {};
    const int x = point.x();
    const int height = screen.height() - point.y();
    if (x < Strip && x <= height)
        return Light{Axis::Y, height * YTotal / (screen.height() + 1)};
    if (height < Strip && x > height)
        return Light{Axis::X, x * XTotal / (screen.width() + 1)};
    return {};
}

const QPixmap &LightPlot::picture()
{
    if (stale)
        draw();
    stale = false;
    return mainmap;
}

void LightPlot::dropPicture()
{
    mainmap = {};
    stale = true;
}

QPoint LightPlot::XADC_point(int i) const
{
    return {screen.width() * i / XTotal, screen.height() - XLevels[size_t(i)].adc};
}

QPoint LightPlot::XAGC_point(int i) const
{
    return {screen.width() * i / XTotal, screen.height() - GainPixels * XLevels[size_t(i)].agc};
}

QPoint LightPlot::YADC_point(int i) const
{
    return {YLevels[size_t(i)].adc, screen.height() - screen.height() * i / YTotal};
}

QPoint LightPlot::YAGC_point(int i) const
{
    return {GainPixels * YLevels[size_t(i)].agc, screen.height() - screen.height() * i / YTotal};
}

void LightPlot::draw()
{
    if (mainmap.size() != screen)
        mainmap = QPixmap(screen);
    mainmap.fill(Qt::white);
    if (mainmap.isNull() || XTotal == 0 || YTotal == 0)
        return;
    QPainter painter(&mainmap);
    QFont font(u"Tahoma"_s);
    font.setPointSize(LabelPoints);
    painter.setFont(font);
    drawX(painter);
    drawY(painter);
}

void LightPlot::drawX(QPainter &painter) const
{
    painter.setBrush(Qt::darkGreen);
    const QPen signal(Qt::darkGreen, SignalPen);
    const QPen gain(Qt::darkGreen, GainPen);
    const int count = std::min(XTotal, command::MaxLightsX);
    for (int n = 1; n <= count; ++n) {
        const QPoint point = XADC_point(n - 1);
        painter.setPen(signal);
        if (chosen == Light{Axis::X, n - 1}) {
            painter.drawRect(point.x(), point.y(), screen.width() / XTotal,
                             screen.height() - point.y());
            drawLabel(painter, {screen.width() * n / XTotal, screen.height()},
                      {n >= 2 * XTotal / 3 ? -LabelLeftOfBar : LabelRightOfBar, -LabelAboveBottom});
        }
        if (n > 1) {
            painter.drawLine(point, XADC_point(n - 2));
            painter.setPen(gain);
            painter.drawLine(XAGC_point(n - 1), XAGC_point(n - 2));
        }
    }
    painter.setPen(signal);
    painter.drawLine(XADC_point(count - 1), XADC_point(count - 1) + QPoint(Tail, 0));
    painter.setPen(gain);
    painter.drawLine(XAGC_point(count - 1), XAGC_point(count - 1) + QPoint(Tail, 0));
}

void LightPlot::drawY(QPainter &painter) const
{
    painter.setBrush(Qt::darkRed);
    const QPen signal(Qt::darkRed, SignalPen);
    const QPen gain(Qt::darkRed, GainPen);
    const int count = std::min(YTotal, command::MaxLightsY);
    for (int n = 0; n < count; ++n) {
        const QPoint point = YADC_point(n);
        painter.setPen(signal);
        if (chosen == Light{Axis::Y, n}) {
            const int height = screen.height() / YTotal;
            painter.drawRect(0, point.y() - height, point.x(), height);
            drawLabel(painter, {0, point.y()},
                      {LabelFromLeftEdge, n >= YTotal / 3 ? -LabelAbovePoint : LabelBelowPoint});
        }
        if (n > 0) {
            painter.drawLine(point, YADC_point(n - 1));
            painter.setPen(gain);
            painter.drawLine(YAGC_point(n), YAGC_point(n - 1));
        }
    }
    painter.setPen(signal);
    painter.drawLine(YADC_point(count - 1), YADC_point(count - 1) - QPoint(0, Tail));
    painter.setPen(gain);
    painter.drawLine(YAGC_point(count - 1), YAGC_point(count - 1) - QPoint(0, Tail));
}

void LightPlot::drawLabel(QPainter &painter, QPoint anchor, QPoint offset) const
{
    painter.save();
    painter.translate(anchor);
    painter.scale(scale, scale);
    painter.drawText(offset, QCoreApplication::translate("LightSet_dlg", "Num:%1  ADC:%2  AGC:%3")
                                 .arg(QString::number(chosen->number), chosenAdc, chosenAgc));
    painter.restore();
}
