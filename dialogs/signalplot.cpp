// SPDX-License-Identifier: GPL-3.0-or-later

#include "signalplot.h"

#include <QFontMetrics>
#include <QPainter>

#include <cstdlib>

namespace {

constexpr QPoint NumberFromPoint(-3, -7);
constexpr int NumberPointSize = 6;
constexpr int DotRadius = 2;

constexpr int ScaleLeft = 35;
constexpr int ScaleTop = 25;
constexpr int ScaleRight = 935;
constexpr int ScaleBottom = 515;
constexpr int Ticks = 11;
constexpr int TickDistance = 44; // not 490 / 11: ticks and plot differ a little, as they always did
constexpr int TickUnits = 100;
constexpr int MajorTick = 5;
constexpr int MinorTick = 2;
constexpr int LabelLeft = 8;
constexpr int LabelBelowTick = 5;

// Longer lines are few, except in a picture of noise, and are not kept.
constexpr int LongestKept = 32;
constexpr int KeptDirections = (LongestKept + 1) * (2 * LongestKept + 1);

size_t slot(SignalPlot::Axis axis)
{
    return axis == SignalPlot::Axis::X ? 0 : 1;
}

// colour on top of below, both premultiplied: what the painter does for text.
QRgb blend(QRgb colour, QRgb below)
{
    constexpr quint32 Mask = 0xFF00FF;
    constexpr quint32 Half = 0x800080;
    const quint32 share = 255 - quint32(qAlpha(colour));
    quint32 redBlue = (below & Mask) * share;
    redBlue = (redBlue + ((redBlue >> 8) & Mask) + Half) >> 8 & Mask;
    quint32 alphaGreen = (below >> 8 & Mask) * share;
    alphaGreen = (alphaGreen + ((alphaGreen >> 8) & Mask) + Half) & ~Mask;
    return colour + (redBlue | alphaGreen);
}

void setColours(QPainter &painter, SignalPlot::Axis axis)
{
    const bool x = axis == SignalPlot::Axis::X;
    painter.setPen(x ? Qt::darkGreen : Qt::darkRed);
    painter.setBrush(x ? Qt::green : Qt::red);
}

} // namespace

QFont SignalPlot::numberFont()
{
    QFont font;
    font.setPointSize(NumberPointSize);
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    return font;
}

void SignalPlot::drawScale(QPixmap &background, const QFont &font)
{
    QPainter painter(&background);
    painter.setFont(font);
    painter.drawLine(ScaleLeft, ScaleTop, ScaleLeft, ScaleBottom);
    painter.drawLine(ScaleLeft, ScaleBottom, ScaleRight, ScaleBottom);
    for (int i = 0; i < Ticks; ++i) {
        const int major = ScaleTop + TickDistance * i;
        const int minor = major + TickDistance / 2;
        painter.drawLine(ScaleLeft, major, ScaleLeft + MajorTick, major);
        painter.drawLine(ScaleLeft, minor, ScaleLeft + MinorTick, minor);
        painter.drawText(LabelLeft, major + LabelBelowTick,
                         QString::number(FullScale - TickUnits * i));
    }
}

QImage SignalPlot::makePicture(int ratio)
{
    QImage picture(Size * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::white);
    return picture;
}

struct SignalPlot::Canvas
{
    QRgb *pixels; // rows without gaps
    QRect area;   // device pixels
    QPainter painter;

    explicit Canvas(QImage &picture)
        : pixels(reinterpret_cast<QRgb *>(picture.bits()))
        , area(picture.rect())
        , painter(&picture)
    {
    }

    void lay(const Stamp &stamp, QPoint at)
    {
        const int width = area.width();
        if (area.contains(stamp.bounds.translated(at))) {
            QRgb *point = pixels + at.y() * width + at.x();
            for (const Pixel &pixel : stamp.pixels)
                put(point[pixel.y * width + pixel.x], pixel.colour);
            return;
        }
        for (const Pixel &pixel : stamp.pixels) {
            const int x = at.x() + pixel.x;
            const int y = at.y() + pixel.y;
            if (x >= 0 && x < width && y >= 0 && y < area.height())
                put(pixels[y * width + x], pixel.colour);
        }
    }

    static void put(QRgb &below, QRgb colour)
    {
        below = qAlpha(colour) == 255 ? colour : blend(colour, below);
    }
};

void SignalPlot::draw(QImage &picture, std::span<const Curve> curves, int upper, int lower)
{
    if (ratio != int(picture.devicePixelRatio())) {
        ratio = int(picture.devicePixelRatio());
        marks = {};
        lines = {};
    }
    picture.fill(Qt::white);
    Canvas canvas(picture);
    for (const Curve &curve : curves)
        drawCurve(canvas, curve);
    canvas.painter.setPen(QPen(Qt::black, 0, Qt::DashLine));
    for (const int limit : {upper, lower})
        canvas.painter.drawLine(0, row(limit), Size.width(), row(limit));
}

void SignalPlot::drawCurve(Canvas &canvas, const Curve &curve)
{
    std::vector<Stamp> &kept = marks[slot(curve.axis)];
    if (kept.size() < curve.points.size())
        kept.resize(curve.points.size());
    setColours(canvas.painter, curve.axis);
    for (size_t i = 0; i < curve.points.size(); ++i) {
        Stamp &mark = kept[i];
        if (mark.pixels.empty())
            mark = makeMark(curve.axis, int(i) + 1);
        canvas.lay(mark, curve.points[i] * ratio);
        if (i > 0)
            drawLine(canvas, curve.axis, curve.points[i], curve.points[i - 1]);
    }
}

void SignalPlot::drawLine(Canvas &canvas, Axis axis, QPoint from, QPoint to)
{
    const QPoint way = to - from;
    // A curve runs to the right, and its lines back.
    if (way.x() > 0 || way.x() < -LongestKept || std::abs(way.y()) > LongestKept) {
        canvas.painter.drawLine(from, to);
        return;
    }
    std::vector<Stamp> &kept = lines[slot(axis)];
    if (kept.empty())
        kept.resize(KeptDirections);
    Stamp &line = kept[size_t((way.y() + LongestKept) * (LongestKept + 1) - way.x())];
    if (line.pixels.empty())
        line = makeLine(axis, way);
    canvas.lay(line, from * ratio);
}

SignalPlot::Stamp SignalPlot::makeMark(Axis axis, int number) const
{
    const QString text = QString::number(number);
    const QFont font = numberFont();
    const int reach = QFontMetrics(font).horizontalAdvance(text) + QFontMetrics(font).height() +
                      std::abs(NumberFromPoint.y());
    return makeStamp(reach, [&](QPainter &painter) {
        setColours(painter, axis);
        painter.setFont(font);
        painter.drawText(NumberFromPoint, text);
        painter.drawEllipse(QPoint(0, 0), DotRadius, DotRadius);
    });
}

SignalPlot::Stamp SignalPlot::makeLine(Axis axis, QPoint to) const
{
    return makeStamp(LongestKept + 2, [&](QPainter &painter) {
        setColours(painter, axis);
        painter.drawLine(QPoint(0, 0), to);
    });
}

// What a drawing around a point covers that reaches no further than so far to all sides.
SignalPlot::Stamp SignalPlot::makeStamp(int reach,
                                        const std::function<void(QPainter &)> &drawing) const
{
    QImage image(QSize(2 * reach, 2 * reach) * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(reach, reach);
    drawing(painter);
    painter.end();
    Stamp stamp;
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(row[x]) == 0)
                continue;
            const QPoint place(x - reach * ratio, y - reach * ratio);
            stamp.pixels.push_back({qint16(place.x()), qint16(place.y()), row[x]});
            stamp.bounds |= QRect(place, QSize(1, 1));
        }
    }
    return stamp;
}
