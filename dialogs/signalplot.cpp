#include "signalplot.h"

#include <QFontMetrics>
#include <QPainter>

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

void SignalPlot::draw(QPixmap &picture, std::span<const Curve> curves, int upper, int lower)
{
    if (ratio != picture.devicePixelRatio()) {
        ratio = picture.devicePixelRatio();
        marks = {};
    }
    picture.fill(Qt::white);
    QPainter painter(&picture);
    for (const Curve &curve : curves)
        drawCurve(painter, curve);
    painter.setPen(QPen(Qt::black, 0, Qt::DashLine));
    for (const int limit : {upper, lower})
        painter.drawLine(0, row(limit), Size.width(), row(limit));
}

void SignalPlot::drawCurve(QPainter &painter, const Curve &curve)
{
    std::vector<Mark> &kept = marks[curve.axis == Axis::X ? 0 : 1];
    if (kept.size() < curve.points.size())
        kept.resize(curve.points.size());
    setColours(painter, curve.axis);
    for (size_t i = 0; i < curve.points.size(); ++i) {
        Mark &mark = kept[i];
        if (mark.pixmap.isNull())
            mark = makeMark(curve.axis, int(i) + 1);
        painter.drawPixmap(curve.points[i] + mark.corner, mark.pixmap);
        if (i > 0)
            painter.drawLine(curve.points[i], curve.points[i - 1]);
    }
}

SignalPlot::Mark SignalPlot::makeMark(Axis axis, int number) const
{
    const QString text = QString::number(number);
    const QFont font = numberFont();
    constexpr int Spare = 2; // letters may reach a little further than they say
    const QRect dot(-DotRadius - 1, -DotRadius - 1, 2 * DotRadius + 3, 2 * DotRadius + 3);
    const QRect area = QFontMetrics(font)
                           .boundingRect(text)
                           .translated(NumberFromPoint)
                           .adjusted(-Spare, -Spare, Spare, Spare)
                           .united(dot);
    Mark mark{QPixmap(area.size() * ratio), area.topLeft()};
    mark.pixmap.setDevicePixelRatio(ratio);
    mark.pixmap.fill(Qt::transparent);
    QPainter painter(&mark.pixmap);
    painter.translate(-area.topLeft());
    setColours(painter, axis);
    painter.setFont(font);
    painter.drawText(NumberFromPoint, text);
    painter.drawEllipse(QPoint(0, 0), DotRadius, DotRadius);
    return mark;
}
